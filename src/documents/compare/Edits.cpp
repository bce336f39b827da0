// SPDX-License-Identifier: MIT
#include "documents/compare/Edits.h"

#include <jobxml/Visit.h>

#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"

using namespace JobXml;

namespace TunerDocuments {

QString ValueState::text() const
{
    const bool isNothing = value.type() == QVariant::List
        ? value.toList().isEmpty()
        : value.type() == QVariant::String && value.toString().isNull();
    if (isSet)
        return ValueText::ofValue(value);
    return isNothing ? ValueText::notSet() : ValueText::ofValue(value) + QLatin1Char(' ') + ValueText::notSet();
}

ObjectEdit &ObjectEdit::at(const QVector<Step> &steps)
{
    ObjectEdit *edit = this;
    for (const Step &step : steps)
        edit = &edit->members[step.member].children[qMax(step.index, 0)];
    return *edit;
}

namespace {

void applyTo(DataObject &object, const ObjectEdit &edit);

void applyTo(MemberEditor &member, const MemberEdit &edit)
{
    if (edit.value) {
        Contents::store(member, edit.value->value, edit.value->isSet);
        return;
    }
    const bool isSet = edit.flag.value_or(member.IsSet());
    if (edit.isReplaced) {
        member.Reset();
        if (edit.replacement)
            Contents::copy(*edit.replacement, member.EditChild());
    }
    for (const auto &[index, child] : edit.children)
        applyTo(member.EditChild(index), child);
    for (const DataObject *const object : edit.added)
        Contents::copy(*object, member.AppendChild());
    if (edit.order)
        member.ArrangeChildren(*edit.order);
    member.SetFlag(isSet); // all of this sets it
}

void applyTo(DataObject &object, const ObjectEdit &edit)
{
    const auto choice = choiceOf(object);
    QVariant chosen = choice ? choice->GetValue() : QVariant();
    visit(object, [&](MemberEditor &member) {
        const auto found = edit.members.find(member.GetName());
        if (found == edit.members.end())
            return;
        if (member.GetKind() == MemberKind::Choice)
            chosen = found->second.value->value;
        else
            applyTo(member, found->second);
    });
    if (!choice)
        return;
    visit(object, [&](MemberEditor &member) { // last, since changing an alternative chooses it
        if (member.GetKind() == MemberKind::Choice)
            Contents::store(member, chosen, true);
    });
}

} // namespace

void apply(const ObjectEdit &edit, TunerProperties &document)
{
    TunerProperties changed = document;
    changed.SetValidate(false);
    applyTo(static_cast<DataObject &>(changed), edit);
    const bool validate = document.GetValidate();
    document = changed;
    document.SetValidate(validate);
}

} // namespace TunerDocuments
