// SPDX-License-Identifier: MIT
#include "documents/findings/ModelMember.h"

#include <algorithm>

#include <jobxml/TunerProperties.h>

using namespace JobXml;

namespace TunerDocuments {

namespace {

QVector<ModelMember> membersOf(DataObject &sample)
{
    QVector<ModelMember> members;
    visit(sample, [&](MemberEditor &member) {
        ModelMember entry{member.GetName(), member.GetKind(), member.GetNames()};
        switch (member.GetKind()) {
        case MemberKind::ObjectList:
            entry.members = membersOf(member.AppendChild());
            break;
        case MemberKind::Object:
        case MemberKind::Alternative:
            entry.members = membersOf(member.EditChild());
            break;
        default:
            break;
        }
        members.append(entry);
    });
    return members;
}

const ModelMember &document()
{
    static const ModelMember whole = [] {
        TunerProperties sample;
        sample.SetValidate(false);
        return ModelMember{sample.GetObjectName(), MemberKind::Object, {}, membersOf(sample)};
    }();
    return whole;
}

const ModelMember *find(const ModelMember &object, const QString &name)
{
    const auto found = std::find_if(object.members.begin(), object.members.end(),
                                    [&](const ModelMember &member) { return member.name == name; });
    return found == object.members.end() ? nullptr : &*found;
}

} // namespace

const ModelMember *memberOf(const QVector<Step> &steps, const QString &name)
{
    const ModelMember *member = &document();
    for (const Step &step : steps) {
        member = find(*member, step.member);
        if (!member)
            return nullptr;
    }
    return name.isNull() ? member : find(*member, name);
}

bool isAboutKeptItem(const Problem &problem)
{
    const ModelMember *const member = memberOf(problem.steps, problem.member);
    return member && member->kind == MemberKind::ObjectList;
}

} // namespace TunerDocuments
