// SPDX-License-Identifier: MIT
#include "documents/values/ExactNotation.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include <QStringList>

#include "documents/values/Decimal.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// "nan", "inf" or "-inf", for what is written with such a word; null for everything else.
QString specialNumber(const QString &text)
{
    QString word = text.toLower();
    if (word.startsWith(QLatin1Char('+')))
        word.remove(0, 1);
    word.replace(QLatin1String("infinity"), QLatin1String("inf"));
    static const QStringList words = {QStringLiteral("nan"), QStringLiteral("inf"), QStringLiteral("-inf")};
    return words.contains(word) ? word : QString();
}

bool isSameNumber(const QString &written, const QString &typed)
{
    const QString special = specialNumber(typed);
    if (!special.isNull())
        return special == specialNumber(written);
    const Decimal first(written);
    const Decimal second(typed);
    return first.isNumber() && second.isNumber() && first.isNegative() == second.isNegative()
        && first.isAsLargeAs(second);
}

bool isSameWholeNumber(const QString &written, const QString &typed)
{
    const Decimal first(written);
    const Decimal second(typed);
    return first.isWhole() && second.isNumber() && first.isAsLargeAs(second)
        && (first.isZero() || first.isNegative() == second.isNegative());
}

/// Without the blanks of XML, of which readers skip others, too.
QString trimmed(const QString &text)
{
    const auto isBlank = [](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\n')
            || character == QLatin1Char('\r');
    };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
    return QString(begin, int(end - begin));
}

/// No value for a text that the model does not write for either, and reads nevertheless.
std::optional<bool> booleanOf(const QString &text)
{
    const QString lower = text.toLower();
    if (lower == QLatin1String("true") || lower == QLatin1String("1"))
        return true;
    if (lower == QLatin1String("false") || lower == QLatin1String("0"))
        return false;
    return {};
}

} // namespace

bool isExactNotation(MemberKind kind, const QString &written, const QString &typed)
{
    switch (kind) {
    case MemberKind::Boolean:
        return booleanOf(written) && booleanOf(written) == booleanOf(typed);
    case MemberKind::Int:
    case MemberKind::Int64:
    case MemberKind::UInt64:
        return isSameWholeNumber(trimmed(written), typed);
    case MemberKind::Float:
    case MemberKind::Double:
        return isSameNumber(trimmed(written), typed);
    default:
        return true;
    }
}

} // namespace TunerDocuments
