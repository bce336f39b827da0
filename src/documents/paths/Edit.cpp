// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

namespace TunerDocuments::Paths {

using JobXml::MemberEditor;
using JobXml::MemberKind;

namespace {

using Action = std::function<void(MemberEditor &member)>;

void editBelow(JobXml::DataObject &object, const Target &target, int depth, const Action &action)
{
    const JobXml::Step &step = target.steps[depth];
    QVariant choice;
    bool isChosen = true;
    JobXml::visit(object, [&](MemberEditor &member) {
        if (member.GetKind() == MemberKind::Choice)
            choice = member.GetValue();
        if (member.GetName() != step.member)
            return;
        if (depth + 1 == target.steps.size()) {
            action(member);
            return;
        }
        isChosen = member.IsChosen();
        editBelow(member.EditChild(step.index < 0 ? 0 : step.index), target, depth + 1, action);
    });
    if (isChosen)
        return;
    JobXml::visit(object, [&](MemberEditor &member) { // changing an alternative has chosen it
        if (member.GetKind() == MemberKind::Choice && !member.SetValue(choice))
            member.Reset();
    });
}

} // namespace

void edit(JobXml::DataObject &root, const Target &target, const Action &action)
{
    editBelow(root, target, 0, action);
}

} // namespace TunerDocuments::Paths
