// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include <QString>
#include <QVector>

#include <tunerdocuments/Diff.h>

namespace TunerDocuments {

/// How many differences of each kind there are.
class ChangeCounts
{
public:
    void add(Difference::Kind kind) { ++m_counts[std::size_t(kind)]; }
    int of(Difference::Kind kind) const { return m_counts[std::size_t(kind)]; }

private:
    std::array<int, Difference::Renamed + 1> m_counts{};
};

/// "added", "removed", "changed", "moved" or "renamed".
const char *nameOf(Difference::Kind kind);

/// The side on which the difference has its item or member: the second one if that alone has it.
const DifferencePlace &placeOf(const Difference &difference);

/// The differences of an object with lists of its own, which a page shows together.
struct ChangeGroup
{
    QString path{}; ///< in the first document, also of an added object; empty for the document itself
    QVector<JobXml::Step> steps{}; ///< in the first document, or in the second one
    bool isInSecond = false; ///< whether the steps are those in the second document
    const JobXml::DataObject *object = nullptr; ///< at the steps; null for the document itself
    const Difference *whole = nullptr; ///< if the object as a whole was added or removed
    QVector<const Difference *> rows{}; ///< those of the object, and of what has no group of its own
    std::vector<ChangeGroup> groups{}; ///< of the objects in it
    ChangeCounts counts{}; ///< of all of them
};

/// The differences by object: the document, its cards, and their nodes. Groups refer to the differences.
ChangeGroup groupedChanges(const JobXml::DataObject &first, const JobXml::DataObject &second,
                           const QVector<Difference> &differences);

} // namespace TunerDocuments
