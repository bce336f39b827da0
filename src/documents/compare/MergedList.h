// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

class Pairs;

/// The items of three lists that are the same item; -1 for a list that does not have it.
struct MergeSlot
{
    int base = -1;
    int ours = -1;
    int theirs = -1;
};

/// The merged form of a list: the items that it may have, and the order of those that it has.
class MergedList
{
public:
    /// The slots of the result, and whether the orders of the sides contradict each other.
    struct Order
    {
        QVector<int> slots{};
        bool isConflict = false;
    };

    MergedList(const JobXml::MemberView &base, const JobXml::MemberView &ours, const JobXml::MemberView &theirs);

    /// All items, those of ours first.
    const QVector<MergeSlot> &slots() const { return m_slots; }

    /// The order of the slots that are kept: that of ours with the additions and moves of theirs.
    Order order(const QVector<bool> &isKept) const;

private:
    /// A side that contributes to the order: its items as numbers of slots, and those that it has moved.
    struct Side
    {
        QVector<int> slots{};
        QVector<bool> isMoved{}; ///< by slot
    };

    class Interleaved;

    void addTheirs(const JobXml::MemberView &ours, const JobXml::MemberView &theirs, const Pairs &inTheirs);
    Side sideOf(int MergeSlot::*index, int size, const Pairs &pairs) const;
    QVector<int> common(const QVector<int> &slots) const;

    QVector<MergeSlot> m_slots;
    Side m_ours;
    Side m_theirs;
};

} // namespace TunerDocuments
