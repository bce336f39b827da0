// SPDX-License-Identifier: MIT
#include "documents/edit/PathEdits.h"

#include <algorithm>
#include <numeric>

#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/edit/ItemContent.h"
#include "documents/values/FindMember.h"
#include "json/JsonText.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

[[noreturn]] void fail(const QString &path, const QString &why)
{
    throw PathFailure(path + QStringLiteral(": ") + why);
}

QVector<int> firstItems(int size)
{
    QVector<int> items(size);
    std::iota(items.begin(), items.end(), 0);
    return items;
}

Path withLastStep(const Path &path, const Path::Step &step)
{
    QVector<Path::Step> steps = path.steps();
    steps.last() = step;
    return Path(steps);
}

/// Stores what the path says about a new item: `id=gain`.
void fulfill(DataObject &item, const QVector<Path::Condition> &conditions, const QString &path)
{
    for (const Path::Condition &condition : conditions) {
        try {
            const Paths::Target target = Paths::find(item, Path(QVector<Path::Step>{{condition.member}}).text());
            const QVariant value = TypedValue::parse(target.member, condition.text);
            if (target.member.IsSet() && target.member.GetValue() != value)
                throw TypedValue::Mismatch(QStringLiteral("'%1' is also %2")
                                               .arg(condition.member, ValueText::ofValue(target.member.GetValue())));
            Paths::edit(item, target, [&](MemberEditor &member) { Contents::store(member, value, true); });
        } catch (const PathFailure &failure) {
            fail(path, failure.text());
        } catch (const TypedValue::Mismatch &mismatch) {
            fail(path, mismatch.text());
        }
    }
}

/// Where a new item is inserted, so that its path leads to it.
int positionOf(const DataObject &root, const Path &path, const Paths::Target &list)
{
    const Path::Step step = path.steps().last();
    QVector<int> fitting;
    if (step.conditions.isEmpty()) {
        fitting = firstItems(list.member.GetSize());
    } else {
        const QVector<Paths::Target> found = Paths::findAll(root, withLastStep(path, {step.member, step.conditions}));
        for (const Paths::Target &item : found)
            fitting.append(item.steps.last().index);
    }
    const auto size = fitting.size();
    if (step.position == 0 && !step.conditions.isEmpty() && size > 0)
        fail(path.text(), QStringLiteral("exists already; add [%1] to the path for another one").arg(size + 1));
    if (step.position > size + 1)
        fail(path.text(),
             QStringLiteral("there are only %1, so a new one can be at [%2] at most").arg(size).arg(size + 1));
    return step.position == 0 || step.position > size ? list.member.GetSize() : fitting.at(step.position - 1);
}

} // namespace

PathEdits::PathEdits(const TunerProperties &document) : m_document(document) { }

PathEdits::~PathEdits() = default;

MemberEdit &PathEdits::editOf(const Paths::Target &target)
{
    const QVector<Step> object = target.steps.mid(0, target.steps.size() - 1);
    return m_edits.at(object).members[target.steps.last().member];
}

/// The same, with everything on the way set.
MemberEdit &PathEdits::settingEditOf(const Paths::Target &target)
{
    ObjectEdit *edit = &m_edits;
    const DataObject *object = &m_document;
    for (int depth = 0;; ++depth) {
        const Step &step = target.steps.at(depth);
        const MemberView member = *memberNamed(*object, step.member);
        MemberEdit &changed = edit->members[step.member];
        if (holdsObjects(member) && !member.IsSet())
            changed.flag = true;
        if (depth + 1 == target.steps.size())
            return changed;
        const int index = qMax(step.index, 0);
        edit = &changed.children[index];
        object = &member.GetChild(index);
    }
}

DataObject &PathEdits::newObject(const QVector<Step> &steps)
{
    m_owners.push_back(std::make_unique<TunerProperties>());
    return Contents::newObjectAt(*m_owners.back(), steps);
}

// --- Adding ----------------------------------------------------------------------------------------------------------

void PathEdits::add(const QString &text, const QByteArray &content, const QString &contentName)
{
    const Path path = Path::parse(text);
    if (path.isPattern())
        fail(text, QStringLiteral("is a pattern, not the place of one new item"));
    const Path::Step step = path.steps().last();
    const Paths::Target target = Paths::find(m_document, withLastStep(path, {step.member}).text());
    const MemberKind kind = target.member.GetKind();
    if (kind != MemberKind::ObjectList && (step.position != 0 || !step.conditions.isEmpty()))
        fail(target.path, QStringLiteral("is not a list of items"));
    if (kind == MemberKind::ObjectList)
        addItem(target, step, content, contentName);
    else if (kind == MemberKind::EnumerationList)
        addNames(target, content);
    else if (holdsObjects(target.member))
        addObject(target, content, contentName);
    else
        fail(target.path, QStringLiteral("is a value; set it instead"));
}

void PathEdits::addItem(const Paths::Target &list, const Path::Step &step, const QByteArray &content,
                        const QString &contentName)
{
    const Path path = withLastStep(Path::parse(list.path), step);
    const int position = positionOf(m_document, path, list);
    DataObject &item = newObject(list.steps);
    readItem(item, list.steps, content, contentName);
    fulfill(item, step.conditions, path.text());
    MemberEdit &edit = settingEditOf(list);
    const int size = list.member.GetSize();
    edit.added = {&item};
    QVector<int> order = firstItems(size);
    order.insert(position, size);
    edit.order = order;
    edit.flag = true;
}

void PathEdits::addObject(const Paths::Target &target, const QByteArray &content, const QString &contentName)
{
    if (target.member.IsSet())
        fail(target.path, QStringLiteral("exists already"));
    DataObject &object = newObject(target.steps);
    readItem(object, target.steps, content, contentName);
    MemberEdit &edit = settingEditOf(target);
    edit.isReplaced = true;
    edit.replacement = &object;
    edit.flag = true;
    if (target.member.GetKind() != MemberKind::Alternative)
        return;
    // What the item holds is what was added last.
    Paths::Target item = target;
    const DataObject &holder = *objectAt(m_document, target.steps.mid(0, target.steps.size() - 1));
    item.steps.last().member = choiceOf(holder)->GetName();
    editOf(item).value = ValueState{QString(target.member.GetName()), true};
}

void PathEdits::addNames(const Paths::Target &list, const QByteArray &content)
{
    try {
        const QVariantList added = TypedValue::parse(list.member, JsonText::toString(content.trimmed())).toList();
        if (added.isEmpty())
            fail(list.path, QStringLiteral("the name to add is missing"));
        settingEditOf(list).value = ValueState{list.member.GetValue().toList() + added, true};
    } catch (const TypedValue::Mismatch &mismatch) {
        fail(list.path, mismatch.text());
    }
}

// --- Removing and moving ---------------------------------------------------------------------------------------------

void PathEdits::remove(const QStringList &paths)
{
    for (const QString &text : paths) {
        const Path path = Path::parse(text);
        if (!path.isPattern()) {
            removeTarget(Paths::find(m_document, text));
            continue;
        }
        const QVector<Paths::Target> targets = Paths::findAll(m_document, path);
        if (targets.isEmpty())
            fail(text, QStringLiteral("nothing fits the pattern"));
        for (const Paths::Target &target : targets)
            removeTarget(target);
    }
}

void PathEdits::removeTarget(const Paths::Target &target)
{
    const MemberKind kind = target.member.GetKind();
    if (kind == MemberKind::Choice)
        fail(target.path, QStringLiteral("follows from the value that the item holds; remove that instead"));
    if (!target.isItem()) {
        removeObject(target);
        return;
    }
    MemberEdit &list = editOf(target);
    QVector<int> order = list.order.value_or(firstItems(target.member.GetSize()));
    order.removeAll(target.steps.last().index);
    list.order = order;
    list.flag = !order.isEmpty();
}

/// A member as a whole.
void PathEdits::removeObject(const Paths::Target &target)
{
    MemberEdit &edit = editOf(target);
    if (!holdsObjects(target.member)) {
        edit.value = ValueState{target.member.GetDefaultValue(), false};
        return;
    }
    edit.flag = false;
    if (target.member.GetKind() == MemberKind::ObjectList) {
        edit.order = QVector<int>();
        return;
    }
    edit.isReplaced = true;
    if (target.member.GetKind() == MemberKind::Alternative)
        chooseRemaining(target.steps.mid(0, target.steps.size() - 1));
}

/// Whichever alternative is left would be chosen when the item is read. If it is a single one, it is chosen; several
/// are removed, since their order in a text would decide.
void PathEdits::chooseRemaining(const QVector<Step> &steps)
{
    const DataObject &item = *objectAt(m_document, steps);
    ObjectEdit &edit = m_edits.at(steps);
    const auto isRemoved = [&](const QString &name) {
        const auto found = edit.members.find(name);
        return found != edit.members.end() && found->second.isReplaced;
    };
    const auto chosen = chosenIn(item);
    if (!chosen || !isRemoved(chosen->GetName()))
        return;
    QStringList remaining = alternativesWithData(item);
    remaining.erase(std::remove_if(remaining.begin(), remaining.end(), isRemoved), remaining.end());
    visit(item, [&](const MemberView &member) {
        MemberEdit &other = edit.members[member.GetName()];
        if (member.GetKind() == MemberKind::Choice) {
            other.value = ValueState{remaining.size() == 1 ? remaining.first() : member.GetDefaultValue(), true};
        } else if (remaining.size() != 1 || member.GetName() != remaining.first()) {
            other.isReplaced = true;
            other.flag = false;
        }
    });
}

void PathEdits::move(const QString &path, int position)
{
    const Paths::Target target = Paths::find(m_document, path);
    if (!target.isItem())
        fail(target.path, QStringLiteral("is not an item of a list"));
    const int size = target.member.GetSize();
    if (position < 1 || position > size)
        fail(target.path, QStringLiteral("cannot be at %1; there are %2").arg(position).arg(size));
    QVector<int> order = firstItems(size);
    order.move(target.steps.last().index, position - 1);
    editOf(target).order = order;
}

} // namespace TunerDocuments
