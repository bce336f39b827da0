// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/html/Cards.h"
#include "documents/html/Changes.h"

namespace TunerDocuments {

/// One of two documents that are compared.
struct ComparedDocument
{
    const JobXml::TunerProperties &document;
    QString source; ///< the name of its file
};

/// The content of a page of differences: a summary, the changes of the document itself, and a card for each object with
/// changes, in which values are side by side.
class Comparison
{
public:
    Comparison(const ComparedDocument &first, const ComparedDocument &second, const QVector<Difference> &differences,
               Markup &out);

    QString title() const;
    bool hasCards() const { return !m_changes.groups.empty(); }

    void showHeader();
    void showSummary();
    void showDocument();
    void showCards();

private:
    /// The unit of the values of a node, found once for all of them.
    struct KnownUnit
    {
        const JobXml::DataObject &document;
        QVector<JobXml::Step> steps{};
        Unit unit{};
    };

    void showCard(const ChangeGroup &card, bool isOpen);
    void showNode(const ChangeGroup &node, const QString &outer);
    void showTallies(const ChangeCounts &counts);
    void showRows(const ChangeGroup &group);
    void showRow(const Difference &difference, const QString &outer);
    void showSide(const char *htmlClass, const Difference &difference, const DifferencePlace &place,
                  const QString &text, KnownUnit &unit);
    void showContent(const JobXml::DataObject *object, const Unit &unit);

    static const Unit &unitAt(const DifferencePlace &place, KnownUnit &known);

    Markup &m_out;
    Problems m_problems; // none
    Objects m_objects;
    Cards m_cards;
    const ComparedDocument m_first;
    const ComparedDocument m_second;
    const ChangeGroup m_changes;
    const bool m_isShort;
    const bool m_isLarge;
    KnownUnit m_unitBefore;
    KnownUnit m_unitAfter;
};

} // namespace TunerDocuments
