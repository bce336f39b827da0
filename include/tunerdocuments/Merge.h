// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// A place that both sides have changed differently.
struct TUNERDOCUMENTS_EXPORT MergeConflict
{
    /// Which contradiction it is.
    enum Kind {
        Changed, ///< two values; or two kinds of value, of an item that both have changed
        RemovedInOurs, ///< the item or object that theirs has changed
        RemovedInTheirs, ///< the item or object that ours has changed
        Reordered, ///< a list; its items have the order of ours
    };

    Kind kind = Changed; ///< which contradiction it is
    QString path{}; ///< in ours, or in the base for what ours has removed
    QVector<JobXml::Step> steps{}; ///< the same

    /// \name The three sides
    /// The values, or the contents of the objects, as text; null for one that does not exist and for lists.
    /// @{
    QString base{};
    QString ours{};
    QString theirs{};
    /// @}

    /// On one line: "quantity: changed on both sides: 2 in ours, 3 in theirs, 1 in the base".
    QString text() const;
};

/// What merge() returns.
struct TUNERDOCUMENTS_EXPORT MergeResult
{
    /// With the changes of both sides; where they conflict, it is that of ours.
    JobXml::TunerProperties document;
    QVector<MergeConflict> conflicts{}; ///< in the order of ours
};

/// Makes the changes of two documents that were made from the same one. Items of lists are paired as findDifferences()
/// does. A member that one side has changed has the value of that side; the same change on both sides is one change.
///
/// Items that both sides have added are the same item if they have the same identity, or the same content without one;
/// different values in them conflict. Other items are added after the item that they follow on their side, those of
/// ours first. An item that one side has removed and the other one has changed is a conflict. Moves are merged if they
/// concern different items and the order is the same whichever side comes first.
///
/// Changes nothing and checks nothing. The result has the validate flag of ours.
TUNERDOCUMENTS_EXPORT MergeResult merge(const JobXml::TunerProperties &base, const JobXml::TunerProperties &ours,
                                        const JobXml::TunerProperties &theirs);

} // namespace TunerDocuments
