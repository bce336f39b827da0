// SPDX-License-Identifier: MIT
#include "documents/json/JsonChoice.h"

#include <algorithm>

#include "documents/json/JsonNumbers.h"
#include "json/JsonText.h"

using namespace JobXml;

namespace TunerDocuments {
namespace JsonReading {

QVariant nameOrNumber(const Json &json)
{
    if (json.isText())
        return JsonText::toString(json.text());
    if (json.isNull())
        return QString();
    const std::optional<int> number = json.isWholeNumber() ? fitting<int>(json) : std::nullopt;
    return number ? QVariant(*number) : QVariant();
}

namespace {

/// The value of that member in an object; null if there is none.
const Json *find(const Json &object, const MemberView &member)
{
    const Json::Object &members = object.members();
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const Json::Member &entry) { return isNamed(member, entry.key); });
    return found == members.end() ? nullptr : &found->value;
}

QByteArray singleAlternative(Members &members, const Json &json)
{
    QByteArray single;
    int count = 0;
    for (const Json::Member &entry : json.members()) {
        const MemberEditor *const member = members.find(entry.key);
        if (!member || member->GetKind() != MemberKind::Alternative || entry.value.isDuplicate())
            continue;
        single = entry.key;
        ++count;
    }
    return count == 1 ? single : QByteArray();
}

} // namespace

Choice::Choice(Members &members, const Json &json) : m_member(members.choice())
{
    if (!m_member)
        return;
    m_given = find(json, *m_member);
    if (!m_given)
        m_inferred = singleAlternative(members, json);
}

void Choice::restoreAfter(const MemberView &alternative) const
{
    const QByteArray name = m_given && m_given->isText() ? m_given->text() : m_inferred;
    if (isNamed(alternative, name))
        return;
    const QVariant value = m_given ? nameOrNumber(*m_given) : QVariant(JsonText::toString(name));
    if (!value.isValid() || !m_member->SetValue(value))
        chooseNothing();
}

void Choice::chooseNothing() const
{
    [[maybe_unused]] const bool isStored = m_member->SetValue(QString());
    Q_ASSERT(isStored); // every choice may be none
}

} // namespace JsonReading
} // namespace TunerDocuments
