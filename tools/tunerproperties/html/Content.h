// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <vector>

#include <jobxml/TunerProperties.h>

#include "html/Objects.h"

class Axis;

/// The content of a page, in sections. Only the header names members; everything else follows their shape: lists of
/// numbers become charts, lists of objects with lists of their own become cards, and members without a section of their
/// own are facts.
class Content
{
public:
    Content(const JobXml::TunerProperties &document, Problems &problems, const QString &source);

    /// The name of the document, or of its source if it has none.
    const QString &title() const { return m_title; }
    Markup takeHeader() { return std::move(m_header); }
    Markup takeOverview() { return std::move(m_overview); }
    Markup takeCards() { return std::move(m_cards); }
    bool hasCards() const { return m_hasCards; }

private:
    void showHeader(Members &members, const QString &version, const QString &source);
    void showOverview(const Members &facts, const std::vector<JobXml::MemberView> &objects,
                      const std::vector<JobXml::MemberView> &charts);
    void showObject(const JobXml::MemberView &member);
    void showChart(const JobXml::MemberView &list);
    void showBar(const Axis &axis, const JobXml::DataObject &item);
    void showTicks(const Axis &axis);
    void showCards(const JobXml::MemberView &list);
    /// `fallbackTitle` is the title of an object without a name.
    void showCard(const JobXml::DataObject &object, const QString &fallbackTitle, const ObjectPath &path, bool isOpen);
    void showNode(const JobXml::DataObject &object, const ObjectPath &path);

    Problems &m_problems;
    QString m_title;
    bool m_hasCards = false;
    Markup m_header;
    Markup m_overview;
    Markup m_cards;
};
