// SPDX-License-Identifier: MIT
#include "documents/compare/Edits.h"

#include <jobxml/Visit.h>

#include "documents/compare/Contents.h"

using namespace JobXml;

namespace TunerDocuments {

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
        const MemberEdit *const found = edit.of(member);
        if (!found)
            return;
        if (member.GetKind() == MemberKind::Choice)
            chosen = found->value->value;
        else
            applyTo(member, *found);
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
