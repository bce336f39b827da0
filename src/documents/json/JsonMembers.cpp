// SPDX-License-Identifier: MIT
#include "documents/json/JsonMembers.h"

#include <cstring>

using namespace JobXml;

namespace TunerDocuments {
namespace JsonReading {

bool isNamed(const MemberView &member, const QByteArray &key)
{
    const QLatin1String name = member.GetName();
    return name.size() == key.size() && std::memcmp(name.data(), key.constData(), std::size_t(name.size())) == 0;
}

Members::Members(DataObject &object)
{
    visit(object, [this](const MemberEditor &member) { m_all.append(Entry(member)); });
}

MemberEditor *Members::find(const QByteArray &name)
{
    for (auto left = m_all.size(); left > 0; --left) {
        if (m_next == m_all.size())
            m_next = 0;
        MemberEditor &member = *m_all[m_next++];
        if (isNamed(member, name))
            return &member;
    }
    return nullptr;
}

MemberEditor *Members::choice()
{
    return m_all[0]->GetKind() == MemberKind::Choice ? &*m_all[0] : nullptr;
}

QStringList Members::names() const
{
    QStringList result;
    for (const Entry &member : m_all)
        result.append(member->GetName());
    return result;
}

} // namespace JsonReading
} // namespace TunerDocuments
