// SPDX-License-Identifier: MIT
#include "documents/paths/Notation.h"

#include <algorithm>

#include <QStringList>

#include "text/Printable.h"

namespace TunerDocuments::Paths {

namespace {

/// Whether a path uses the character for something else.
bool isSpecial(QChar character)
{
    switch (character.unicode()) {
    case '[':
    case ']':
    case ',':
    case '=':
    case '/':
    case '"':
    case '\'':
    case '\\':
        return true;
    default:
        return false;
    }
}

} // namespace

QString written(const QString &text)
{
    const bool isPlain = !text.isEmpty() && !text.front().isSpace() && !text.back().isSpace()
        && std::none_of(text.begin(), text.end(), isSpecial) && text == Printable::onOneLine(text);
    return isPlain ? text : Printable::quoted(text);
}

QString written(const Path::Condition &condition)
{
    return condition.member + QLatin1Char('=') + written(condition.text);
}

QString written(const Path::Step &step)
{
    QString text = step.member;
    QStringList conditions;
    for (const Path::Condition &condition : step.conditions)
        conditions.append(written(condition));
    if (!conditions.isEmpty())
        text += QLatin1Char('[') + conditions.join(QLatin1Char(',')) + QLatin1Char(']');
    if (step.isAll)
        text += QStringLiteral("[*]");
    return step.position > 0 ? text + QStringLiteral("[%1]").arg(step.position) : text;
}

} // namespace TunerDocuments::Paths
