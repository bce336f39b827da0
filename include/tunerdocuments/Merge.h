// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// A place that both sides have changed differently. What later versions know about it, functions of this class will
/// return.
struct TUNERDOCUMENTS_EXPORT MergeConflict
{
    /// Which contradiction it is.
    enum Kind : int {
        Changed, ///< two values; or two kinds of value, of an item that both have changed
        RemovedInOurs, ///< the item or object that theirs has changed
        RemovedInTheirs, ///< the item or object that ours has changed
        Reordered, ///< a list; its items have the order of ours
    };

    /// No place.
    MergeConflict() = default;
    /// A contradiction at that place, with the three sides.
    MergeConflict(Kind which, const QString &atPath, const QVector<JobXml::Step> &atSteps, const QString &inBase = {},
                  const QString &inOurs = {}, const QString &inTheirs = {})
        : kind(which), path(atPath), steps(atSteps), base(inBase), ours(inOurs), theirs(inTheirs)
    {
    }

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

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// What merge() returns, to which later versions may add functions.
struct TUNERDOCUMENTS_EXPORT MergeResult
{
    /// An empty document.
    MergeResult() = default;
    /// A copy of the document, with its validate flag, and no conflicts.
    explicit MergeResult(const JobXml::TunerProperties &merged) : document(merged) { }

    /// With the changes of both sides; where they conflict, it is that of ours.
    JobXml::TunerProperties document{};
    QVector<MergeConflict> conflicts{}; ///< in the order of ours

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
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

/// A document that was loaded, and its text. What later versions accept besides, functions of this class will set.
struct TUNERDOCUMENTS_EXPORT MergeInput
{
    /// An empty document.
    MergeInput() = default;
    /// A document that was read from these bytes.
    MergeInput(const Document &loaded, const QByteArray &text) : document(loaded), bytes(text) { }

    Document document{}; ///< as it was read
    QByteArray bytes{}; ///< from which it was read; required for XML only

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// What unmergedContent() returns: the content of theirs that merge() does not see, since no document has it. Later
/// versions may add functions for other kinds of content.
struct TUNERDOCUMENTS_EXPORT UnmergedContent
{
    /// Values that the reader has converted, such as a number that is not one, and what it has skipped: unknown
    /// attributes and elements, texts between elements, values that are there twice, unknown names. With line, column
    /// and path, in the order of the text.
    QVector<Finding> losses{};
    QVector<Finding> comments{}; ///< with line and column

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// Finds what merging would lose of theirs if that is XML, apart from what the text of the base or of ours has at the
/// same place: that was there before, or stays if ours is edited in place. Places are compared as merge() pairs items,
/// so a renamed item has the same ones. Comments have no place; they are compared by their text, and counted.
///
/// Other forms have no such content, or are refused when they are read.
TUNERDOCUMENTS_EXPORT UnmergedContent unmergedContent(const MergeInput &base, const MergeInput &ours,
                                                      const MergeInput &theirs);

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::MergeConflict, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::MergeResult, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::MergeInput, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::UnmergedContent, Q_MOVABLE_TYPE);
