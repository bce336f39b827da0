// SPDX-License-Identifier: MIT
#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

std::optional<MemberView> findMember(const DataObject &object, bool (*fits)(const MemberView &))
{
    std::optional<MemberView> found;
    visit(object, [&](const MemberView &member) {
        if (fits(member))
            found.emplace(member);
    });
    return found;
}

} // namespace

std::vector<MemberView> membersOf(const DataObject &object)
{
    std::vector<MemberView> members;
    visit(object, [&](const MemberView &member) { members.push_back(member); });
    return members;
}

std::optional<MemberView> memberNamed(const DataObject &object, const QString &name)
{
    std::optional<MemberView> found;
    visit(object, [&](const MemberView &member) {
        if (member.GetName() == name)
            found.emplace(member);
    });
    return found;
}

std::optional<MemberView> choiceOf(const DataObject &object)
{
    return findMember(object, [](const MemberView &member) { return member.GetKind() == MemberKind::Choice; });
}

std::optional<MemberView> chosenIn(const DataObject &object)
{
    return findMember(object, [](const MemberView &member) {
        return member.GetKind() == MemberKind::Alternative && member.IsChosen();
    });
}

bool hasData(const MemberView &alternative)
{
    bool isAnySet = alternative.IsSet();
    if (!isAnySet && alternative.GetSize() != 0)
        visit(alternative.GetChild(), [&](const MemberView &member) { isAnySet |= member.IsSet(); });
    return isAnySet;
}

QStringList alternativesWithData(const DataObject &item)
{
    QStringList names;
    visit(item, [&](const MemberView &member) {
        if (member.GetKind() == MemberKind::Alternative && hasData(member))
            names.append(member.GetName());
    });
    return names;
}

void chooseAgain(DataObject &item, const QVariant &choice)
{
    visit(item, [&](MemberEditor &member) {
        if (member.GetKind() != MemberKind::Choice)
            return;
        [[maybe_unused]] const bool isStored = member.SetValue(choice);
        Q_ASSERT(isStored); // it is the value that it had
    });
}

bool holdsObjects(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Object:
    case MemberKind::ObjectList:
    case MemberKind::Alternative:
        return true;
    default:
        return false;
    }
}

bool isNumber(const MemberView &member)
{
    return isNumeric(member.GetKind());
}

const DataObject *objectAt(const DataObject &root, const QVector<Step> &steps)
{
    const DataObject *object = &root;
    for (const Step &step : steps) {
        const auto member = memberNamed(*object, step.member);
        const int index = qMax(step.index, 0);
        if (!member || index >= member->GetSize())
            return nullptr;
        object = &member->GetChild(index);
    }
    return object;
}

} // namespace TunerDocuments
