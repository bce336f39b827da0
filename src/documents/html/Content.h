// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include <jobxml/TunerProperties.h>

#include "documents/html/Objects.h"

namespace TunerDocuments {

class Axis;

/// The content of a page, in sections, which are shown in the order of their functions. Only the header names members;
/// everything else follows their shape: lists of numbers become charts, lists of objects with lists of their own become
/// cards, and members without a section of their own are facts.
class Content
{
public:
    Content(const JobXml::TunerProperties &document, Problems &problems, const QString &source, Markup &out);

    /// The name of the document, or of its source if it has none.
    QString title() const;
    bool hasCards() const;

    void showHeader();
    /// The findings about what the header shows.
    void showHeaderFindings();
    void showOverview();
    void showCards();

private:
    using View = JobXml::MemberView;

    bool hasName() const;
    void showObject(const View &member);
    void showChart(const View &list);
    void showBar(const Axis &axis, const JobXml::DataObject &item);
    void showTicks(const Axis &axis);
    void showLabels(const Axis &axis);

    Markup &m_out;
    Problems &m_problems;
    const QString m_source;
    const QString m_version;
    Members m_facts; // without those below
    const std::vector<View> m_objects;
    const std::vector<View> m_charts;
    const std::vector<View> m_lists; // of cards
    const std::optional<View> m_kind;
    const std::optional<View> m_name;
};

} // namespace TunerDocuments
