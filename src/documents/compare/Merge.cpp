// SPDX-License-Identifier: MIT
#include <tunerdocuments/Merge.h>

#include <algorithm>
#include <memory>
#include <vector>

#include <QStringList>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/compare/Edits.h"
#include "documents/compare/MergedList.h"
#include "documents/compare/ObjectPlace.h"

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

class Merging
{
public:
    void merge(const Objects &objects, const ObjectPlace &place, ObjectEdit &edit)
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
    void merge(const Members &members, const ObjectPlace &parent, ObjectEdit &edit)
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
    bool mergeChoice(const Objects &objects, const ObjectPlace &place, ObjectEdit &edit)
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

    void mergeValues(const Members &members, const ObjectPlace &parent, ObjectEdit &edit)
    {
        const QString base = textOf(members.base);
        const QString ours = textOf(members.ours);
        const QString theirs = textOf(members.theirs);
        if (theirs == base || theirs == ours)
            return;
        const ObjectPlace place = parent.below(members.ours);
        if (ours == base)
            edit.members[members.ours.GetName()].value = {members.theirs.GetValue(), members.theirs.IsSet()};
        else
            conflicts.append({MergeConflict::Changed, place.path, place.steps, base, ours, theirs});
    }

    // --- Objects ---

    void mergeObjects(const Members &members, const ObjectPlace &parent, MemberEdit &edit)
    {
        if (Contents::childrenAreAlike(members.theirs, members.base)
            || Contents::childrenAreAlike(members.theirs, members.ours))
            return;
        const ObjectPlace place = parent.below(members.ours);
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

    void mergeLists(const Members &lists, const ObjectPlace &parent, MemberEdit &edit)
    {
        const MergedList merged(lists.base, lists.ours, lists.theirs);
        const QVector<MergeSlot> &all = merged.slots();
        const QStringList stepsInOurs = Paths::stepsTo(lists.ours);
        const QStringList stepsInBase = Paths::stepsTo(lists.base);
        const auto placeOf = [&](const MergeSlot &slot) {
            const bool isInOurs = slot.ours >= 0;
            const int index = isInOurs ? slot.ours : slot.base;
            return parent.below((isInOurs ? stepsInOurs : stepsInBase)[index], {lists.ours.GetName(), index});
        };
        QVector<bool> isKept(all.size());
        for (int i = 0; i < all.size(); ++i)
            isKept[i] = mergeItem(lists, all[i], placeOf, edit);
        const MergedList::Order order = merged.order(isKept);
        if (order.isConflict) {
            const ObjectPlace place = parent.below(lists.ours);
            conflicts.append({MergeConflict::Reordered, place.path, place.steps});
        }
        setOrder(lists, all, order.slots, edit);
        const bool areUsual = isUsual(lists.base) && isUsual(lists.ours) && isUsual(lists.theirs);
        edit.flag = areUsual ? !order.slots.isEmpty() : mergedFlag(lists);
    }

    static bool isUsual(const MemberView &list) { return list.IsSet() == (list.GetSize() != 0); }

    /// Returns whether the item is in the result.
    template <class PlaceOf>
    bool mergeItem(const Members &lists, const MergeSlot &slot, const PlaceOf &placeOf, MemberEdit &edit)
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
            const ObjectPlace place = placeOf(slot);
            merge(Objects{base ? *base : newObject(place.steps), *ours, *theirs}, place, edit.children[slot.ours]);
            return true;
        }
        if (!base || (!ours && !theirs))
            return base == nullptr;
        if (Contents::areAlike(*base, ours ? *ours : *theirs))
            return false;
        const ObjectPlace place = placeOf(slot);
        conflicts.append({ours ? MergeConflict::RemovedInTheirs : MergeConflict::RemovedInOurs, place.path, place.steps,
                          textOf(base), textOf(ours), textOf(theirs)});
        return ours != nullptr;
    }

    /// The items of ours and copies of those that only theirs has.
    static void setOrder(const Members &lists, const QVector<MergeSlot> &all, const QVector<int> &order,
                         MemberEdit &edit)
    {
        QVector<int> indexes;
        bool isChanged = order.size() != lists.ours.GetSize();
        for (const int slot : order) {
            if (all[slot].ours < 0)
                edit.added.append(&lists.theirs.GetChild(all[slot].theirs));
            const int index = all[slot].ours >= 0 ? all[slot].ours : lists.ours.GetSize() + int(edit.added.size()) - 1;
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
    MergeResult result(ours);
    ObjectEdit edit;
    Merging merging;
    merging.merge(Objects{base, ours, theirs}, {}, edit);
    apply(edit, result.document);
    result.conflicts = merging.conflicts;
    return result;
}

} // namespace TunerDocuments
