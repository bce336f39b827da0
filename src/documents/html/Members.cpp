// SPDX-License-Identifier: MIT
#include "documents/html/Members.h"

#include <algorithm>

using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

bool isText(const MemberView &member)
{
    return member.GetKind() == MemberKind::Text;
}

bool isIdentifyingText(const MemberView &member)
{
    return isText(member) && member.IsIdentifying();
}

bool isNumber(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Int:
    case MemberKind::Int64:
    case MemberKind::UInt64:
    case MemberKind::Float:
    case MemberKind::Double:
        return true;
    default:
        return false;
    }
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
