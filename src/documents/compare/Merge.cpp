// SPDX-License-Identifier: MIT
#include <tunerdocuments/Merge.h>

#include <algorithm>
#include <list>
#include <memory>
#include <vector>

#include <QHash>
#include <QStringList>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/compare/Edits.h"
#include "documents/compare/Pairs.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// The three forms of a member, or of an object: T is MemberView or DataObject.
template <class T>
struct Three
{
    const T &base;
    const T &ours;
    const T &theirs;
};

using Members = Three<MemberView>;
using Objects = Three<DataObject>;

/// Where an object is: in ours, and the base.
struct Place
{
    QString path{};
    QVector<Step> steps{};

    Place below(const QString &step, const Step &to) const
    {
        return {path.isEmpty() ? step : path + QLatin1Char('/') + step, steps + QVector<Step>{to}};
    }
    Place below(const MemberView &member) const { return below(member.GetName(), {member.GetName(), -1}); }
};

/// The items of three lists that are the same item; -1 for a list that does not have it.
struct Slot
{
    int base = -1;
    int ours = -1;
    int theirs = -1;
};

// --- The order of a list ---------------------------------------------------------------------------------------------

/// A side of a merge that contributes to the order: its items as numbers of slots, and those that it has moved.
struct OrderedSide
{
    QVector<int> slots{};
    QVector<bool> isMoved{}; ///< by slot
};

/// The order of one side, into which the other one's additions and moves are inserted, each after the item that it
/// follows on its own side.
class MergedOrder
{
public:
    /// `isKept`: the slots that are in the result. `withMoves`: whether the moves of the other side are made.
    /// `othersFirst`: whether its items come before those that the main side has added at the same place.
    MergedOrder(const OrderedSide &main, const OrderedSide &other, const QVector<bool> &isKept, bool withMoves,
                bool othersFirst)
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

/// The merged order of a list, and whether the sides' orders contradict each other.
struct ListOrder
{
    QVector<int> slots{};
    bool isConflict = false;
};

/// Of these slots, those in all three lists.
QVector<int> common(const QVector<int> &slots, const QVector<Slot> &all)
{
    QVector<int> result;
    std::copy_if(slots.begin(), slots.end(), std::back_inserter(result),
                 [&](int slot) { return all[slot].base >= 0 && all[slot].ours >= 0 && all[slot].theirs >= 0; });
    return result;
}

ListOrder orderOf(const OrderedSide &ours, const OrderedSide &theirs, const QVector<Slot> &all,
                  const QVector<bool> &isKept)
{
    const auto oursFirst = [&](bool withMoves) { return MergedOrder(ours, theirs, isKept, withMoves, false).slots(); };
    if (common(ours.slots, all) == common(theirs.slots, all))
        return {oursFirst(false)};
    for (int slot = 0; slot < all.size(); ++slot) {
        if (ours.isMoved[slot] && theirs.isMoved[slot])
            return {oursFirst(false), true};
    }
    const QVector<int> order = oursFirst(true);
    const QVector<int> mirrored = MergedOrder(theirs, ours, isKept, true, true).slots();
    if (common(order, all) != common(mirrored, all))
        return {oursFirst(false), true};
    return {order};
}

// --- Merging ---------------------------------------------------------------------------------------------------------

class Merging
{
public:
    void merge(const Objects &objects, const Place &place, ObjectEdit &edit)
    {
        if (mergeChoice(objects, place, edit))
            return;
        const std::vector<MemberView> base = membersOf(objects.base);
        const std::vector<MemberView> ours = membersOf(objects.ours);
        const std::vector<MemberView> theirs = membersOf(objects.theirs);
        for (std::size_t i = 0; i < ours.size(); ++i)
            merge(Members{base[i], ours[i], theirs[i]}, place, edit);
    }

    QVector<MergeConflict> conflicts{};

private:
    void merge(const Members &members, const Place &parent, ObjectEdit &edit)
    {
        MemberEdit &own = edit.members[members.ours.GetName()];
        switch (members.ours.GetKind()) {
        case MemberKind::Choice:
            break; // see mergeChoice()
        case MemberKind::Object:
        case MemberKind::Alternative:
            own.flag = mergedFlag(members);
            mergeObjects(members, parent, own);
            break;
        case MemberKind::ObjectList:
            mergeLists(members, parent, own);
            break;
        default:
            mergeValues(members, parent, edit);
        }
        if (isNothing(own, members.ours))
            edit.members.erase(members.ours.GetName());
    }

    static bool isNothing(const MemberEdit &edit, const MemberView &ours)
    {
        return !edit.value && edit.flag.value_or(ours.IsSet()) == ours.IsSet() && !edit.isReplaced && !edit.order
            && std::all_of(edit.children.begin(), edit.children.end(),
                           [](const auto &child) { return child.second.members.empty(); });
    }

    /// A flag that both sides have changed is the same on both.
    static bool mergedFlag(const Members &members)
    {
        return members.ours.IsSet() == members.base.IsSet() ? members.theirs.IsSet() : members.ours.IsSet();
    }

    // --- Values ---

    static QString textOf(const MemberView &member) { return ValueText::ofMember(member); }

    /// Merges the choice of an item. Returns true if the item as a whole is a conflict: both sides have changed it, and
    /// now it has two kinds of value.
    bool mergeChoice(const Objects &objects, const Place &place, ObjectEdit &edit)
    {
        const auto ours = choiceOf(objects.ours);
        if (!ours)
            return false;
        const auto theirs = choiceOf(objects.theirs);
        if (textOf(*ours) == textOf(*theirs))
            return false;
        if (Contents::areAlike(objects.base, objects.ours)) {
            edit.members[theirs->GetName()].value = ValueState{theirs->GetValue(), true};
            return false;
        }
        const auto whole = [](const DataObject &object) {
            return Contents::text(object, Contents::Amount::Brief, true);
        };
        conflicts.append({MergeConflict::Changed, place.path, place.steps, whole(objects.base), whole(objects.ours),
                          whole(objects.theirs)});
        return true;
    }

    void mergeValues(const Members &members, const Place &parent, ObjectEdit &edit)
    {
        const QString base = textOf(members.base);
        const QString ours = textOf(members.ours);
        const QString theirs = textOf(members.theirs);
        if (theirs == base || theirs == ours)
            return;
        const Place place = parent.below(members.ours);
        if (ours == base)
            edit.members[members.ours.GetName()].value = {members.theirs.GetValue(), members.theirs.IsSet()};
        else
            conflicts.append({MergeConflict::Changed, place.path, place.steps, base, ours, theirs});
    }

    // --- Objects ---

    void mergeObjects(const Members &members, const Place &parent, MemberEdit &edit)
    {
        if (Contents::childrenAreAlike(members.theirs, members.base)
            || Contents::childrenAreAlike(members.theirs, members.ours))
            return;
        const Place place = parent.below(members.ours);
        const QString base = Contents::textOfChild(members.base);
        const QString ours = Contents::textOfChild(members.ours);
        const QString theirs = Contents::textOfChild(members.theirs);
        if (Contents::childrenAreAlike(members.ours, members.base)) {
            edit.isReplaced = true;
            edit.replacement = theirs.isEmpty() ? nullptr : &members.theirs.GetChild();
        } else if (ours.isEmpty()) {
            conflicts.append({MergeConflict::RemovedInOurs, place.path, place.steps, base, QString(), theirs});
        } else if (theirs.isEmpty()) {
            conflicts.append({MergeConflict::RemovedInTheirs, place.path, place.steps, base, ours, QString()});
        } else {
            const DataObject &inBase = base.isEmpty() ? newObject(place.steps) : members.base.GetChild();
            merge(Objects{inBase, members.ours.GetChild(), members.theirs.GetChild()}, place, edit.children[0]);
        }
    }

    /// A new object of the class of that place, for what both sides have added.
    const DataObject &newObject(const QVector<Step> &steps)
    {
        m_owners.push_back(std::make_unique<TunerProperties>());
        return Contents::newObjectAt(*m_owners.back(), steps);
    }

    // --- Lists ---

    void mergeLists(const Members &lists, const Place &parent, MemberEdit &edit)
    {
        const Pairs inOurs(lists.base, lists.ours);
        const Pairs inTheirs(lists.base, lists.theirs);
        const QVector<Slot> all = slotsOf(lists, inOurs, inTheirs);
        const QStringList stepsInOurs = Paths::stepsTo(lists.ours);
        const QStringList stepsInBase = Paths::stepsTo(lists.base);
        const auto placeOf = [&](const Slot &slot) {
            const bool isInOurs = slot.ours >= 0;
            const int index = isInOurs ? slot.ours : slot.base;
            return parent.below((isInOurs ? stepsInOurs : stepsInBase)[index], {lists.ours.GetName(), index});
        };
        QVector<bool> isKept(all.size());
        for (int i = 0; i < all.size(); ++i)
            isKept[i] = mergeItem(lists, all[i], placeOf, edit);
        const ListOrder order = orderOf(sideOf(all, &Slot::ours, lists.ours.GetSize(), inOurs),
                                        sideOf(all, &Slot::theirs, lists.theirs.GetSize(), inTheirs), all, isKept);
        if (order.isConflict) {
            const Place place = parent.below(lists.ours);
            conflicts.append({MergeConflict::Reordered, place.path, place.steps});
        }
        setOrder(lists, all, order.slots, edit);
        const bool areUsual = isUsual(lists.base) && isUsual(lists.ours) && isUsual(lists.theirs);
        edit.flag = areUsual ? !order.slots.isEmpty() : mergedFlag(lists);
    }

    static bool isUsual(const MemberView &list) { return list.IsSet() == (list.GetSize() != 0); }

    /// All items, those of ours first.
    static QVector<Slot> slotsOf(const Members &lists, const Pairs &inOurs, const Pairs &inTheirs)
    {
        QVector<Slot> all;
        QHash<QString, QVector<int>> added; // by ours, the last one first
        for (int i = 0; i < lists.ours.GetSize(); ++i) {
            const int base = inOurs.ofSecond(i);
            all.append({base, i, base < 0 ? -1 : inTheirs.ofFirst(base)});
        }
        for (int i = lists.ours.GetSize() - 1; i >= 0; --i) {
            if (all[i].base < 0)
                added[keyOf(lists.ours.GetChild(i))].append(i);
        }
        for (int i = 0; i < lists.base.GetSize(); ++i) {
            if (inOurs.ofFirst(i) < 0)
                all.append({i, -1, inTheirs.ofFirst(i)});
        }
        for (int i = 0; i < lists.theirs.GetSize(); ++i) {
            if (inTheirs.ofSecond(i) >= 0)
                continue;
            const auto same = added.isEmpty() ? added.end() : added.find(keyOf(lists.theirs.GetChild(i)));
            if (same == added.end() || same->isEmpty())
                all.append({-1, -1, i});
            else
                all[same->takeLast()].theirs = i;
        }
        return all;
    }

    /// What makes two added items the same one.
    static QString keyOf(const DataObject &item)
    {
        const QString identity = Paths::identityOf(item);
        return identity.isNull() ? QLatin1Char('{') + Contents::text(item, Contents::Amount::Whole, true) : identity;
    }

    /// Returns whether the item is in the result.
    template <class PlaceOf>
    bool mergeItem(const Members &lists, const Slot &slot, const PlaceOf &placeOf, MemberEdit &edit)
    {
        const auto itemOf = [](const MemberView &list, int index) {
            return index < 0 ? nullptr : &list.GetChild(index);
        };
        const DataObject *const base = itemOf(lists.base, slot.base);
        const DataObject *const ours = itemOf(lists.ours, slot.ours);
        const DataObject *const theirs = itemOf(lists.theirs, slot.theirs);
        const auto textOf = [](const DataObject *item) {
            return item ? Contents::text(*item, Contents::Amount::Brief, true) : QString();
        };
        if (ours && theirs) {
            if (Contents::areAlike(*ours, *theirs) || (base && Contents::areAlike(*base, *theirs)))
                return true;
            const Place place = placeOf(slot);
            merge(Objects{base ? *base : newObject(place.steps), *ours, *theirs}, place, edit.children[slot.ours]);
            return true;
        }
        if (!base || (!ours && !theirs))
            return base == nullptr;
        if (Contents::areAlike(*base, ours ? *ours : *theirs))
            return false;
        const Place place = placeOf(slot);
        conflicts.append({ours ? MergeConflict::RemovedInTheirs : MergeConflict::RemovedInOurs, place.path, place.steps,
                          textOf(base), textOf(ours), textOf(theirs)});
        return ours != nullptr;
    }

    static OrderedSide sideOf(const QVector<Slot> &all, int Slot::*index, int size, const Pairs &pairs)
    {
        OrderedSide side{QVector<int>(size, -1), QVector<bool>(all.size(), false)};
        const QVector<bool> moved = pairs.moved();
        for (int i = 0; i < all.size(); ++i) {
            if (all[i].*index >= 0)
                side.slots[all[i].*index] = i;
            side.isMoved[i] = all[i].base >= 0 && moved[all[i].base];
        }
        return side;
    }

    /// The items of ours and copies of those that only theirs has.
    static void setOrder(const Members &lists, const QVector<Slot> &all, const QVector<int> &order, MemberEdit &edit)
    {
        QVector<int> indexes;
        bool isChanged = order.size() != lists.ours.GetSize();
        for (const int slot : order) {
            if (all[slot].ours < 0)
                edit.added.append(&lists.theirs.GetChild(all[slot].theirs));
            const int index = all[slot].ours >= 0 ? all[slot].ours : lists.ours.GetSize() + edit.added.size() - 1;
            isChanged = isChanged || index != indexes.size();
            indexes.append(index);
        }
        if (isChanged)
            edit.order = indexes;
    }

    std::vector<std::unique_ptr<TunerProperties>> m_owners;
};

} // namespace

QString MergeConflict::text() const
{
    const auto sides = [this] {
        return QStringLiteral("%1 in ours, %2 in theirs, %3 in the base").arg(ours, theirs, base);
    };
    const auto because = [&] {
        switch (kind) {
        case RemovedInOurs:
            return QStringLiteral("removed in ours, changed in theirs: %1 in theirs, %2 in the base").arg(theirs, base);
        case RemovedInTheirs:
            return QStringLiteral("changed in ours, removed in theirs: %1 in ours, %2 in the base").arg(ours, base);
        case Reordered:
            return QStringLiteral("reordered differently on both sides");
        case Changed:
            break;
        }
        return QStringLiteral("changed on both sides: ") + sides();
    };
    return path.isEmpty() ? because() : path + QStringLiteral(": ") + because();
}

MergeResult merge(const TunerProperties &base, const TunerProperties &ours, const TunerProperties &theirs)
{
    MergeResult result{ours};
    ObjectEdit edit;
    Merging merging;
    merging.merge(Objects{base, ours, theirs}, {}, edit);
    apply(edit, result.document);
    result.conflicts = merging.conflicts;
    return result;
}

} // namespace TunerDocuments
