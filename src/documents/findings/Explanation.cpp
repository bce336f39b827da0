// SPDX-License-Identifier: MIT
#include "documents/findings/Explanation.h"

#include "documents/findings/ModelMember.h"
#include "text/Suggestion.h"

using JobXml::MemberKind;
using JobXml::Step;

namespace TunerDocuments::Explanation {

namespace {

QString shortened(const QString &text, int most)
{
    if (text.size() <= most)
        return text;
    return text.left(text.at(most - 1).isHighSurrogate() ? most - 1 : most) + QStringLiteral("...");
}

QString expected(const QStringList &choices)
{
    return QStringLiteral("expected ") + Suggestion::listed(choices);
}

/// What the member accepts if it can be listed; the elements of an object if there is no member.
QStringList choicesOf(const ModelMember &member, bool isObject)
{
    if (member.kind == MemberKind::Boolean)
        return {QStringLiteral("true"), QStringLiteral("false")};
    if (!isObject)
        return member.names;
    QStringList elements;
    for (const ModelMember &element : member.members) {
        if (element.kind != MemberKind::Choice)
            elements.append(element.name);
    }
    return elements;
}

} // namespace

void explainText(Finding &problem, const QVector<Step> &steps, const QString &text)
{
    constexpr int mostKept = 400;
    constexpr int mostShown = 40;
    const ModelMember *const member = memberOf(steps, problem.member);
    const bool isElement = problem.member.isNull();
    if (!text.isNull())
        problem.value = shortened(text, mostKept);
    if (!member || (isElement && text.isNull()))
        return;
    problem.choices = choicesOf(*member, isElement);
    if (problem.choices.isEmpty())
        return;
    const QString hint = text.isNull() ? QString() : Suggestion::hint(text, problem.choices);
    problem.suggestion = hint.isNull() ? QString() : hint.mid(int(qstrlen("; ")));
    const QString shown = shortened(text, mostShown);
    if (text.isNull())
        problem.explanation = expected(problem.choices);
    else if (isElement) // the message has the name
        problem.explanation = expected(problem.choices) + hint;
    else if (member->kind == MemberKind::Boolean)
        problem.explanation = QLatin1Char('\'') + shown + QStringLiteral("' is neither true nor false");
    else
        problem.explanation = Suggestion::unknownWordAmong(shown, QStringLiteral("name"), problem.choices);
}

void explainNumber(Finding &problem, int number)
{
    problem.value = QString::number(number);
    problem.explanation =
        QLatin1Char('\'') + problem.value + QStringLiteral("' is out of range; ") + expected(problem.choices);
}

std::optional<int> numberIn(const QVariant &value)
{
    const QVariantList values = value.userType() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
    for (const QVariant &each : values) {
        if (each.userType() == QMetaType::Int)
            return each.toInt();
    }
    return {};
}

} // namespace TunerDocuments::Explanation
