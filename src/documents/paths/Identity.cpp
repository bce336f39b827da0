// SPDX-License-Identifier: MIT
#include "documents/paths/Identity.h"

#include <algorithm>

#include <QStringList>

#include "documents/paths/Notation.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

using Condition = Path::Condition;

QVector<Condition> identifyingTexts(const DataObject &object)
{
    QVector<Condition> own;
    QVector<Condition> chosen;
    visit(object, [&](const MemberView &member) {
        if (member.IsIdentifying())
            own.append({member.GetName(), member.GetValue().toString()});
        else if (member.GetKind() == MemberKind::Alternative && member.IsChosen() && member.GetSize() != 0)
            chosen = identifyingTexts(member.GetChild());
    });
    return own.isEmpty() ? chosen : own;
}

QString identityOf(const QVector<Condition> &texts)
{
    QStringList parts;
    for (const Condition &text : texts) {
        if (text.text.isNull())
            return QString();
        parts.append(written(text));
    }
    return parts.isEmpty() ? QString() : parts.join(QLatin1Char(','));
}

QString identityOf(const DataObject &object)
{
    return identityOf(identifyingTexts(object));
}

namespace {

bool isText(const QString &text, const Condition &condition)
{
    return !text.isNull() && text == condition.text;
}

bool haveAll(const QVector<Condition> &texts, const QVector<Condition> &conditions)
{
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition &condition) {
        return std::any_of(texts.begin(), texts.end(), [&](const Condition &text) {
            return text.member == condition.member && isText(text.text, condition);
        });
    });
}

} // namespace

Identities::Identities(const MemberView &list) : m_list(list)
{
    if (list.GetSize() == 0)
        return;
    visit(list.GetChild(), [this](const MemberView &member) {
        if (member.IsIdentifying())
            m_members.append(member); // of all items, which are of one class
    });
}

bool Identities::fits(int item, const QVector<Condition> &conditions) const
{
    if (conditions.isEmpty())
        return true;
    const DataObject &object = m_list.GetChild(item);
    return m_members.isEmpty() ? haveAll(identifyingTexts(object), conditions) : hasTexts(object, conditions);
}

bool Identities::isAlike(int item, const QVector<Condition> &all) const
{
    const DataObject &object = m_list.GetChild(item);
    if (!m_members.isEmpty())
        return hasTexts(object, all);
    const QVector<Condition> texts = identifyingTexts(object);
    return texts.size() == all.size() && haveAll(texts, all);
}

bool Identities::hasTexts(const DataObject &object, const QVector<Condition> &conditions) const
{
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition &condition) {
        return std::any_of(m_members.begin(), m_members.end(), [&](const MemberView &member) {
            return member.GetName() == condition.member && isText(member.Of(object).GetValue().toString(), condition);
        });
    });
}

} // namespace TunerDocuments::Paths
