// SPDX-License-Identifier: MIT
#include "documents/compare/EditBinder.h"

#include <algorithm>
#include <utility>

#include <tunerdocuments/Patch.h>

#include "documents/compare/ChangeLine.h"
#include "documents/compare/Contents.h"
#include "documents/values/FindMember.h"
#include "json/JsonText.h"

using namespace JobXml;

namespace TunerDocuments {

/// The changes of one list, until all of them are known.
struct EditBinder::ListChanges
{
    struct Placed
    {
        int position;
        int index; ///< of an item of the list; -1 for one that is added
        const DataObject *added;
        QString path;
    };

    struct Removed
    {
        int index;
        QString path;
    };

    MemberView list;
    MemberEdit &edit;
    QVector<Removed> removed{};
    std::vector<Placed> placed{};
    bool hasOtherItems = false;
    std::optional<bool> isSet{};
};

namespace {

ValueState stateIn(const DataObject &object, const MemberView &member)
{
    const auto same = memberNamed(object, member.GetName());
    return {same->GetValue(), same->IsSet()};
}

const DataObject *childOf(const ChangePlace &place)
{
    return place.member.GetSize() == 0 ? nullptr : &place.member.GetChild();
}

void requireItem(const ChangePlace &place, const QString &path)
{
    if (place.index < 0)
        throw PatchFailure(path, QStringLiteral("is not an item of a list"));
}

void requireObject(const ChangePlace &place, const QString &path)
{
    const MemberKind kind = place.member.GetKind();
    if (kind == MemberKind::ObjectList)
        throw PatchFailure(path, QStringLiteral("is a list; only its items and its flag change"));
    if (kind != MemberKind::Object && kind != MemberKind::Alternative)
        throw PatchFailure(path, QStringLiteral("is a value; it can be changed, but neither added nor removed"));
}

void requireFlag(bool expected, const MemberView &member, const QString &path)
{
    if (member.IsSet() != expected)
        throw PatchFailure(path,
                           member.IsSet() ? QStringLiteral("expected it not to be set, but it is")
                                          : QStringLiteral("expected it to be set, but it is not"));
}

/// Null is an object that equals a new one.
void requireAlike(const DataObject *expected, const DataObject *present, const QString &path)
{
    QString found;
    if (expected && present) {
        findDifferences(*expected, *present, [&](const Difference &difference) {
            if (found.isNull())
                found = difference.text();
        });
    } else if (const DataObject *const one = expected ? expected : present) {
        found = Contents::text(*one, Contents::Amount::Brief, true);
        if (!found.isEmpty())
            found.prepend(expected ? QStringLiteral("- ") : QStringLiteral("+ "));
    }
    if (!found.isEmpty())
        throw PatchFailure(path, QStringLiteral("differs from what the changes expect: ") + found);
}

[[noreturn]] void throwTwice(const QString &path)
{
    throw PatchFailure(path, QStringLiteral("is changed twice"));
}

void changeFlag(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path)
{
    if (place.index >= 0 || !holdsObjects(place.member))
        throw PatchFailure(path, QStringLiteral("is neither an object nor a list, so it has no flag alone"));
    requireFlag(change.before().flag(), place.member, path);
    if (edit.flag)
        throwTwice(path);
    edit.flag = change.after().flag();
}

void changeValue(const Change &change, const MemberView &member, MemberEdit &edit, const QString &path)
{
    const ValueState expected = change.before().value(member);
    const ValueState present{member.GetValue(), member.IsSet()};
    if (expected.text() != present.text())
        throw PatchFailure(path, QStringLiteral("expected %1, but it is %2").arg(expected.text(), present.text()));
    if (edit.value)
        throwTwice(path);
    edit.value = change.after().value(member);
    if (member.GetKind() == MemberKind::Choice)
        edit.value->isSet = true; // it has no flag
}

} // namespace

EditBinder::EditBinder(const TunerProperties &document) : m_finder(document) { }

EditBinder::~EditBinder() = default;

void EditBinder::add(const Change &change)
{
    const QString path = change.path();
    try {
        addAt(change, path);
    } catch (const JsonFailure &failure) {
        throw PatchFailure(path, failure.text(QString()).mid(2)); // after the colon
    }
}

const ObjectEdit &EditBinder::edits()
{
    for (const auto &changes : m_lists)
        arrange(*changes);
    for (const auto &[edit, path] : qAsConst(m_replaced)) {
        if (!edit->children.empty())
            throwTwice(path);
    }
    return m_root;
}

void EditBinder::addAt(const Change &change, const QString &path)
{
    const bool isNew = change.kind() == Difference::Added;
    const ChangePlace place = m_finder.find(path, isNew);
    const bool isList = place.member.GetKind() == MemberKind::ObjectList;
    MemberEdit &edit = m_root.at(place.steps).members[place.member.GetName()];
    switch (change.kind()) {
    case Difference::Removed:
    case Difference::Added:
        if (isList)
            addOrRemoveItem(change, place, edit, path);
        else
            addOrRemoveObject(change, place, edit, path);
        break;
    case Difference::Moved:
        requireItem(place, path);
        listChanges(place, edit).placed.push_back({change.after().position(), place.index, nullptr, path});
        break;
    case Difference::Renamed:
        requireItem(place, path);
        rename(change, place, path);
        break;
    case Difference::Changed:
        if (change.isFlagOnly())
            changeFlag(change, place, edit, path);
        else if (holdsObjects(place.member))
            replaceObject(change, place, edit, path);
        else
            changeValue(change, place.member, edit, path);
        break;
    }
}

void EditBinder::addOrRemoveItem(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path)
{
    ListChanges &list = listChanges(place, edit);
    list.hasOtherItems = true;
    if (const auto isSet = change.after().listIsSet())
        list.isSet = isSet;
    if (change.kind() == Difference::Added) {
        const DataObject *const object = kept(change.after().object(place.stepsToChild()));
        list.placed.push_back({change.after().position(), -1, object, path});
        return;
    }
    requireItem(place, path);
    const DataObject &item = place.member.GetChild(place.index);
    requireAlike(kept(change.before().object(place.stepsToChild())), &item, path);
    list.removed.append({place.index, path});
}

void EditBinder::addOrRemoveObject(const Change &change, const ChangePlace &place, MemberEdit &edit,
                                   const QString &path)
{
    const bool isAdded = change.kind() == Difference::Added;
    requireObject(place, path);
    if (isAdded && (place.member.IsSet() || !Contents::textOfChild(place.member).isEmpty()))
        throw PatchFailure(path, QStringLiteral("exists already"));
    if (!isAdded && !place.member.IsSet())
        throw PatchFailure(path, QStringLiteral("is not set"));
    if (!isAdded)
        requireAlike(kept(change.before().object(place.stepsToChild())), childOf(place), path);
    replace(edit, isAdded ? kept(change.after().object(place.stepsToChild())) : nullptr, isAdded, path);
}

void EditBinder::replaceObject(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path)
{
    requireObject(place, path);
    requireFlag(change.before().objectIsSet(), place.member, path);
    requireAlike(kept(change.before().object(place.stepsToChild())), childOf(place), path);
    replace(edit, kept(change.after().object(place.stepsToChild())), change.after().objectIsSet(), path);
}

void EditBinder::replace(MemberEdit &edit, const DataObject *replacement, bool isSet, const QString &path)
{
    if (edit.isReplaced || edit.flag)
        throwTwice(path);
    m_replaced.append({&edit, path});
    edit.isReplaced = true;
    edit.replacement = replacement;
    edit.flag = isSet;
}

void EditBinder::rename(const Change &change, const ChangePlace &place, const QString &path)
{
    const QVector<Step> steps = place.stepsToChild() + ChangeLine::stepsToIdentity(place.member.GetChild(place.index));
    const auto present = chosenIn(place.member.GetChild(place.index));
    const DataObject &holder =
        present && present->GetSize() != 0 ? present->GetChild() : place.member.GetChild(place.index);
    const DataObject *const before = kept(change.before().identity(steps));
    const DataObject *const after = kept(change.after().identity(steps));
    ObjectEdit &edit = m_root.at(steps);
    visit(holder, [&](const MemberView &member) {
        if (!member.IsIdentifying())
            return;
        const ValueState expected = stateIn(*before, member);
        const ValueState found{member.GetValue(), member.IsSet()};
        const QString memberPath = joinedPath(path, member.GetName());
        if (expected.text() != found.text())
            throw PatchFailure(memberPath,
                               QStringLiteral("expected %1, but it is %2").arg(expected.text(), found.text()));
        MemberEdit &name = edit.members[member.GetName()];
        if (name.value)
            throwTwice(memberPath);
        name.value = stateIn(*after, member);
    });
}

EditBinder::ListChanges &EditBinder::listChanges(const ChangePlace &place, MemberEdit &edit)
{
    ListChanges *&known = m_listsByEdit[&edit];
    if (!known) {
        m_lists.push_back(std::make_unique<ListChanges>(ListChanges{place.member, edit}));
        known = m_lists.back().get();
    }
    return *known;
}

void EditBinder::arrange(const ListChanges &changes)
{
    const int size = changes.list.GetSize();
    MemberEdit &edit = changes.edit;
    QVector<bool> isTaken(size, false); // items that are removed or have another place
    for (const ListChanges::Removed &removed : changes.removed) {
        if (std::exchange(isTaken[removed.index], true) || edit.children.count(removed.index) != 0)
            throwTwice(removed.path);
    }
    const int isAdded =
        int(std::count_if(changes.placed.begin(), changes.placed.end(), [](const auto &one) { return one.index < 0; }));
    QVector<int> order(size - changes.removed.size() + isAdded, -1);
    for (const ListChanges::Placed &placed : changes.placed) {
        if (placed.position < 0)
            throw PatchFailure(placed.path, QStringLiteral("the position is missing"));
        if (placed.position >= order.size())
            throw PatchFailure(placed.path,
                               QStringLiteral("cannot be at %1, since there will be only %2")
                                   .arg(placed.position + 1)
                                   .arg(order.size()));
        if (order[placed.position] >= 0)
            throw PatchFailure(placed.path, QStringLiteral("two items cannot be at %1").arg(placed.position + 1));
        if (placed.index >= 0 && std::exchange(isTaken[placed.index], true))
            throwTwice(placed.path);
        if (placed.index < 0)
            edit.added.append(placed.added);
        order[placed.position] = placed.index >= 0 ? placed.index : size + int(edit.added.size()) - 1;
    }
    auto free = order.begin();
    for (int i = 0; i < size; ++i) {
        if (isTaken[i])
            continue;
        free = std::find(free, order.end(), -1);
        *free = i;
    }
    if (!edit.flag && changes.hasOtherItems)
        edit.flag = changes.isSet.value_or(!order.isEmpty());
    edit.order = order;
}

const DataObject *EditBinder::kept(const WholeObject &whole)
{
    if (whole.owner)
        m_owners.push_back(whole.owner);
    return whole.object;
}

} // namespace TunerDocuments
