// SPDX-License-Identifier: MIT
#include "documents/values/ExactNotation.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <tuple>

#include <QRegularExpression>
#include <QStringList>

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// A decimal number of any size: its digits without zeros around them, and the power of ten by which they are
/// multiplied.
struct Decimal
{
    bool isNegative = false;
    QString digits;
    qint64 exponent = 0;

    bool operator==(const Decimal &other) const
    {
        return std::tie(isNegative, digits, exponent) == std::tie(other.isNegative, other.digits, other.exponent);
    }
};

/// No value for a text that is not a number.
std::optional<Decimal> decimalOf(const QString &text)
{
    static const QRegularExpression notation(
        QStringLiteral(R"(^([+-]?)0*([0-9]*)(?:\.([0-9]*))?(?:[eE]([+-]?[0-9]{1,9}))?\z)"));
    const QRegularExpressionMatch match = notation.match(text);
    static const QRegularExpression anyDigit(QStringLiteral("^[+-]?\\.?[0-9]"));
    if (!match.hasMatch() || !anyDigit.match(text).hasMatch())
        return {};
    const QString fraction = match.captured(3);
    Decimal number{match.captured(1) == QLatin1String("-"), match.captured(2) + fraction,
                   match.captured(4).toLongLong() - fraction.size()};
    while (number.digits.endsWith(QLatin1Char('0'))) {
        number.digits.chop(1);
        ++number.exponent;
    }
    while (number.digits.startsWith(QLatin1Char('0')))
        number.digits.remove(0, 1);
    if (number.digits.isEmpty())
        number.exponent = 0;
    return number;
}

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
    const auto number = decimalOf(written);
    return number && number == decimalOf(typed);
}

bool isSameWholeNumber(const QString &written, const QString &typed)
{
    static const QRegularExpression whole(QStringLiteral(R"(^[+-]?[0-9]+\z)"));
    auto first = decimalOf(written);
    auto second = decimalOf(typed);
    if (!whole.match(written).hasMatch() || !first || !second)
        return false;
    for (Decimal *const number : {&*first, &*second})
        number->isNegative = number->isNegative && !number->digits.isEmpty(); // there is only one 0
    return first == second;
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
