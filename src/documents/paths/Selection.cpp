// SPDX-License-Identifier: MIT
#include "documents/paths/Selection.h"

#include <QStringList>

#include "documents/paths/Identity.h"
#include "documents/paths/ItemSteps.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

bool isEveryMember(const Path::Step &step)
{
    return step.member == QLatin1String("*");
}

constexpr int mostListed = 5;

QString listed(const QStringList &steps)
{
    if (steps.size() <= mostListed)
        return steps.join(QStringLiteral(", "));
    return QStringList(steps.mid(0, mostListed)).join(QStringLiteral(", "))
        + QStringLiteral(" and %1 more").arg(steps.size() - mostListed);
}

/// "; did you mean 'audio'?": the nearest text to the first one that no item has, if not all items are listed. Null
/// without.
QString hintFor(const MemberView &list, const Path::Step &step)
{
    constexpr int shortest = 2; // every letter is near to every other one
    constexpr int longest = 80; // longer ones are not in paths
    if (list.GetSize() <= mostListed)
        return QString();
    for (const Path::Condition &condition : step.conditions) {
        QStringList known;
        for (int i = 0; i < list.GetSize(); ++i) {
            const QVector<Path::Condition> texts = identifyingTexts(list.GetChild(i));
            for (const Path::Condition &text : texts) {
                if (text.member == condition.member && text.text.size() <= longest)
                    known.append(text.text);
            }
        }
        if (condition.text.size() >= shortest && !known.contains(condition.text))
            return Suggestion::hint(condition.text, known);
    }
    return QString();
}

void checkConditions(const MemberView &list, const Path::Step &step)
{
    QStringList identifying;
    for (int i = 0; i < list.GetSize(); ++i) {
        const QVector<Path::Condition> texts = identifyingTexts(list.GetChild(i));
        for (const Path::Condition &text : texts) {
            if (!identifying.contains(text.member))
                identifying.append(text.member);
        }
    }
    for (const Path::Condition &condition : step.conditions) {
        if (!identifying.contains(condition.member))
            throw PathFailure(
                QStringLiteral("'%1' does not identify a %2; use %3")
                    .arg(condition.member, step.member,
                         identifying.isEmpty() ? QStringLiteral("its position") : Suggestion::listed(identifying)));
    }
}

} // namespace

bool hasAsterisk(const Path::Step &step)
{
    return step.isAll || isEveryMember(step);
}

bool selectsMember(const Path::Step &step, const MemberView &member)
{
    return isEveryMember(step) || step.member == member.GetName();
}

bool choosesItem(const Path::Step &step)
{
    return step.position > 0 || !step.conditions.isEmpty();
}

QVector<int> fittingItems(const MemberView &list, const Path::Step &step)
{
    const Identities identities(list);
    QVector<int> fitting;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (!identities.fits(i, step.conditions))
            continue;
        fitting.append(i);
        if (fitting.size() == step.position)
            break;
    }
    return fitting;
}

int itemOf(const MemberView &list, const Path::Step &step)
{
    if (list.GetSize() == 0)
        throw PathFailure(QStringLiteral("there is no %1").arg(step.member));
    const QVector<int> fitting = fittingItems(list, step);
    if (fitting.isEmpty()) {
        checkConditions(list, step);
        throw PathFailure(QStringLiteral("there is no such %1; there are %2%3")
                              .arg(step.member, listed(stepsTo(list)), hintFor(list, step)));
    }
    if (step.position > fitting.size())
        throw PathFailure(
            QStringLiteral("position %1 is out of range; only %2 match").arg(step.position).arg(fitting.size()));
    if (step.position > 0 || fitting.size() == 1)
        return fitting.last();
    const ItemSteps steps(list);
    QStringList candidates;
    for (const int i : fitting)
        candidates.append(steps.at(i));
    throw PathFailure(QStringLiteral("%1 items match; choose one: %2").arg(fitting.size()).arg(listed(candidates)));
}

} // namespace TunerDocuments::Paths
