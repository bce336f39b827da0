// SPDX-License-Identifier: MIT
#include "documents/html/Members.h"

#include <algorithm>

#include <tunerdocuments/Value.h>

using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

/// Whether the member is set, or differs from that of a new object.
bool holdsAnything(const MemberView &member)
{
    if (member.IsSet())
        return true;
    if (isValue(member)) // as texts: 0.0 and -0.0 are equal numbers
        return ValueText::ofValue(member.GetValue()) != ValueText::ofValue(member.GetDefaultValue());
    if (isList(member))
        return member.GetSize() != 0;
    if (member.GetSize() == 0)
        return false;
    const Members inside(member.GetChild());
    return std::any_of(inside.begin(), inside.end(), holdsAnything);
}

} // namespace

bool isText(const MemberView &member)
{
    return member.GetKind() == MemberKind::Text;
}

bool isIdentifyingText(const MemberView &member)
{
    return isText(member) && member.IsIdentifying();
}

bool isBoolean(const MemberView &member)
{
    return member.GetKind() == MemberKind::Boolean;
}

bool isList(const MemberView &member)
{
    return member.GetKind() == MemberKind::ObjectList;
}

bool isValue(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Object:
    case MemberKind::ObjectList:
    case MemberKind::Alternative:
        return false;
    default:
        return true;
    }
}

bool isAlternative(const MemberView &member)
{
    return member.GetKind() == MemberKind::Alternative;
}

bool isChosenAlternative(const MemberView &member)
{
    return isAlternative(member) && member.IsChosen();
}

bool isKeptAlternative(const MemberView &member)
{
    return isAlternative(member) && !member.IsChosen() && holdsAnything(member);
}

bool isIrrelevant(const MemberView &member)
{
    if (member.GetKind() == MemberKind::Choice) {
        const QVariant choice = member.GetValue(); // a number if it has no name
        return choice.userType() == QMetaType::QString && choice.toString().isNull();
    }
    return isAlternative(member) && !member.IsChosen() && !holdsAnything(member);
}

Members::Members(const JobXml::DataObject &object)
{
    JobXml::visit(object, [this](const View &member) { m_members.push_back(member); });
}

const MemberView *Members::find(Test test) const
{
    const auto found = std::find_if(m_members.begin(), m_members.end(), test);
    return found == m_members.end() ? nullptr : &*found;
}

const MemberView *Members::find(const char *name, Test test) const
{
    const auto fits = [&](const View &member) { return member.GetName() == QLatin1String(name) && test(member); };
    const auto found = std::find_if(m_members.begin(), m_members.end(), fits);
    return found == m_members.end() ? nullptr : &*found;
}

const MemberView *Members::find(const QString &name) const
{
    const auto found =
        std::find_if(m_members.begin(), m_members.end(), [&](const View &member) { return member.GetName() == name; });
    return found == m_members.end() ? nullptr : &*found;
}

std::vector<MemberView> Members::takeAll(Test test)
{
    std::vector<View> taken;
    const auto rest = std::stable_partition(m_members.begin(), m_members.end(), test);
    taken.assign(m_members.begin(), rest);
    m_members.erase(m_members.begin(), rest);
    return taken;
}

std::optional<MemberView> Members::take(const View *member)
{
    if (!member)
        return {};
    const View taken = *member;
    m_members.erase(m_members.begin() + (member - m_members.data()));
    return taken;
}

} // namespace TunerDocuments
