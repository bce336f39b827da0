// SPDX-License-Identifier: MIT
#include "documents/paths/ItemSteps.h"

#include <utility>

#include <QHash>
#include <QStringList>

#include <tunerdocuments/Path.h>

#include "documents/paths/Identity.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

/// The identity in the step to an item; null if the item is selected by its position.
QString identityInStep(const QString &identity)
{
    // Every path into the item repeats its identity: a longer one would make many paths much larger than the document.
    constexpr int longestIdentity = 80;
    return identity.size() > longestIdentity ? QString() : identity;
}

QString stepText(const QString &list, const QString &identity, int position)
{
    QString step = list;
    if (!identity.isNull())
        step += QLatin1Char('[') + identity + QLatin1Char(']');
    if (position > 0)
        step += QStringLiteral("[%1]").arg(position);
    return step;
}

QVector<QString> identitiesIn(const MemberView &list)
{
    QVector<QString> identities;
    identities.reserve(list.GetSize());
    for (int i = 0; i < list.GetSize(); ++i)
        identities.append(identityOf(list.GetChild(i)));
    return identities;
}

} // namespace

ItemSteps::ItemSteps(const MemberView &list) : ItemSteps(list.GetName(), identitiesIn(list)) { }

ItemSteps::ItemSteps(const QString &list, QVector<QString> identities)
    : m_list(list), m_identities(std::move(identities)), m_positions(m_identities.size())
{
    QHash<QString, int> alike;
    for (QString &identity : m_identities) {
        identity = identityInStep(identity);
        ++alike[identity];
    }
    QHash<QString, int> passed;
    for (int i = 0; i < m_identities.size(); ++i) {
        const QString &identity = m_identities.at(i);
        if (identity.isNull())
            m_positions[i] = i + 1;
        else if (alike.value(identity) > 1)
            m_positions[i] = ++passed[identity];
    }
}

QString ItemSteps::at(int index) const
{
    return stepText(m_list, m_identities.at(index), m_positions.at(index));
}

QString stepTo(const MemberView &list, int index)
{
    const QVector<Path::Condition> texts = identifyingTexts(list.GetChild(index));
    const QString identity = identityInStep(identityOf(texts));
    if (identity.isNull())
        return stepText(list.GetName(), identity, index + 1);
    const Identities identities(list);
    int alike = 0;
    int position = 0;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (!identities.isAlike(i, texts))
            continue;
        ++alike;
        if (i <= index)
            ++position;
    }
    return stepText(list.GetName(), identity, alike > 1 ? position : 0);
}

QStringList stepsTo(const MemberView &list)
{
    const ItemSteps steps(list);
    QStringList result;
    for (int i = 0; i < list.GetSize(); ++i)
        result.append(steps.at(i));
    return result;
}

} // namespace TunerDocuments::Paths
