// SPDX-License-Identifier: MIT
#include "documents/compare/MergedList.h"

#include <algorithm>
#include <list>
#include <vector>

#include <QHash>

#include <tunerdocuments/Path.h>

#include "documents/compare/Contents.h"
#include "documents/compare/Pairs.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// What makes two added items the same one.
QString keyOf(const DataObject &item)
{
    const QString identity = Paths::identityOf(item);
    return identity.isNull() ? QLatin1Char('{') + Contents::text(item, Contents::Amount::Whole, true) : identity;
}

} // namespace

MergedList::MergedList(const MemberView &base, const MemberView &ours, const MemberView &theirs)
{
    const Pairs inOurs(base, ours);
    const Pairs inTheirs(base, theirs);
    for (int i = 0; i < ours.GetSize(); ++i) {
        const int ofBase = inOurs.ofSecond(i);
        m_slots.append({ofBase, i, ofBase < 0 ? -1 : inTheirs.ofFirst(ofBase)});
    }
    for (int i = 0; i < base.GetSize(); ++i) {
        if (inOurs.ofFirst(i) < 0)
            m_slots.append({i, -1, inTheirs.ofFirst(i)});
    }
    addTheirs(ours, theirs, inTheirs);
    m_ours = sideOf(&MergeSlot::ours, ours.GetSize(), inOurs);
    m_theirs = sideOf(&MergeSlot::theirs, theirs.GetSize(), inTheirs);
}

/// Adds the items that theirs has added, to the slots of the same ones of ours.
void MergedList::addTheirs(const MemberView &ours, const MemberView &theirs, const Pairs &inTheirs)
{
    QHash<QString, QVector<int>> added; // by ours, the last one first
    for (int i = ours.GetSize() - 1; i >= 0; --i) {
        if (m_slots[i].base < 0)
            added[keyOf(ours.GetChild(i))].append(i);
    }
    for (int i = 0; i < theirs.GetSize(); ++i) {
        if (inTheirs.ofSecond(i) >= 0)
            continue;
        const auto same = added.isEmpty() ? added.end() : added.find(keyOf(theirs.GetChild(i)));
        if (same == added.end() || same->isEmpty())
            m_slots.append({-1, -1, i});
        else
            m_slots[same->takeLast()].theirs = i;
    }
}

MergedList::Side MergedList::sideOf(int MergeSlot::*index, int size, const Pairs &pairs) const
{
    Side side{QVector<int>(size, -1), QVector<bool>(m_slots.size(), false)};
    const QVector<bool> moved = pairs.moved();
    for (int i = 0; i < m_slots.size(); ++i) {
        if (m_slots[i].*index >= 0)
            side.slots[m_slots[i].*index] = i;
        side.isMoved[i] = m_slots[i].base >= 0 && moved[m_slots[i].base];
    }
    return side;
}

/// The order of one side, into which the other one's additions and moves are inserted, each after the item that it
/// follows on its own side.
class MergedList::Interleaved
{
public:
    /// `isKept`: the slots that are in the result. `withMoves`: whether the moves of the other side are made.
    /// `othersFirst`: whether its items come before those that the main side has added at the same place.
    Interleaved(const Side &main, const Side &other, const QVector<bool> &isKept, bool withMoves, bool othersFirst)
        : m_places(std::size_t(isKept.size())), m_isIn(isKept.size(), false), m_isOwn(isKept.size(), true)
    {
        QVector<bool> isInOther(isKept.size(), false);
        for (const int slot : other.slots)
            isInOther[slot] = true;
        QVector<bool> isInMain(isKept.size(), false);
        for (const int slot : main.slots) {
            isInMain[slot] = true;
            m_isOwn[slot] = !isInOther[slot];
            if (isKept[slot] && !(withMoves && other.isMoved[slot]))
                append(slot);
        }
        int previous = -1;
        for (const int slot : other.slots) {
            if (!isKept[slot])
                continue;
            if (!m_isIn[slot])
                insertAfter(previous, slot, othersFirst || isInMain[slot]);
            previous = slot;
        }
    }

    QVector<int> slots() const { return QVector<int>(m_order.begin(), m_order.end()); }

private:
    std::list<int>::iterator &placeOf(int slot) { return m_places[std::size_t(slot)]; }

    void append(int slot)
    {
        placeOf(slot) = m_order.insert(m_order.end(), slot);
        m_isIn[slot] = true;
    }

    void insertAfter(int previous, int slot, bool directly)
    {
        auto place = previous < 0 ? m_order.begin() : std::next(placeOf(previous));
        while (!directly && place != m_order.end() && m_isOwn[*place])
            ++place;
        placeOf(slot) = m_order.insert(place, slot);
        m_isIn[slot] = true;
        m_isOwn[slot] = false;
    }

    std::list<int> m_order;
    std::vector<std::list<int>::iterator> m_places;
    QVector<bool> m_isIn;
    QVector<bool> m_isOwn; ///< added by the main side
};

MergedList::Order MergedList::order(const QVector<bool> &isKept) const
{
    const auto oursFirst = [&](bool withMoves) {
        return Interleaved(m_ours, m_theirs, isKept, withMoves, false).slots();
    };
    if (common(m_ours.slots) == common(m_theirs.slots))
        return {oursFirst(false)};
    for (int slot = 0; slot < m_slots.size(); ++slot) {
        if (m_ours.isMoved[slot] && m_theirs.isMoved[slot])
            return {oursFirst(false), true};
    }
    const QVector<int> order = oursFirst(true);
    const QVector<int> mirrored = Interleaved(m_theirs, m_ours, isKept, true, true).slots();
    if (common(order) != common(mirrored))
        return {oursFirst(false), true};
    return {order};
}

/// Of these slots, those in all three lists.
QVector<int> MergedList::common(const QVector<int> &slots) const
{
    QVector<int> result;
    std::copy_if(slots.begin(), slots.end(), std::back_inserter(result), [this](int slot) {
        return m_slots[slot].base >= 0 && m_slots[slot].ours >= 0 && m_slots[slot].theirs >= 0;
    });
    return result;
}

} // namespace TunerDocuments
