// SPDX-License-Identifier: MIT
#include "json/Overflows.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include <QString>

namespace Overflows {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// After the string that begins there.
char *skipString(char *at, const char *end)
{
    for (++at; at < end && *at != '"'; ++at)
        at += *at == '\\' && at + 1 < end ? 1 : 0;
    return at < end ? at + 1 : at;
}

/// Turns the digits of the exponent into zeros, and an integer part that is too large by itself into a fraction.
void makeSmaller(char *begin, char *end)
{
    constexpr int harmless = 300; // digits; a double has room for 308
    char *const exponent =
        std::find_if(begin, end, [](char character) { return character == 'e' || character == 'E'; });
    std::replace_if(exponent, end, isDigit, '0');
    char *const digits = begin + (*begin == '-' ? 1 : 0);
    char *const point = std::find_if_not(digits, exponent, isDigit);
    if (point - digits <= harmless)
        return;
    if (point != exponent)
        *point = '0';
    digits[1] = '.';
}

/// Replaces the number that begins there, if it is too large. Returns where it ends.
char *replaceNumber(char *begin, const char *end)
{
    char *const digits = begin + (*begin == '-' ? 1 : 0);
    if (digits + 1 < end && *digits == '0' && isDigit(digits[1]))
        return digits + 1; // a number has no leading zeros
    double value = 0;
    const auto read = std::from_chars(static_cast<const char *>(begin), end, value);
    const auto size = std::max(read.ptr - begin, std::ptrdiff_t(1));
    // QByteArray::toDouble() is 0 instead of infinite in Qt 6.
    const bool isOutOfRange = read.ec == std::errc::result_out_of_range; // also of a number that is almost 0
    if (isOutOfRange && std::isinf(QString::fromLatin1(begin, int(size)).toDouble()))
        makeSmaller(begin, begin + size);
    return begin + size;
}

} // namespace

QByteArray replaced(const QByteArray &text)
{
    QByteArray result(text.constData(), text.size());
    const char *const end = result.constEnd();
    for (char *at = result.data(); at < end;) {
        if (*at == '"')
            at = skipString(at, end);
        else if (*at == '-' || isDigit(*at))
            at = replaceNumber(at, end);
        else
            ++at;
    }
    return result;
}

QByteArray originalToken(QByteArray token, const QByteArray &original, REPORTGENERATOR::Size end)
{
    constexpr int shownControlSize = 8; // "<U+000A>"
    for (auto at = token.size(); at > 0 && end > 0;) {
        const char character = original.at(--end);
        if (uchar(character) < 0x20)
            at -= shownControlSize;
        else
            token[--at] = character;
    }
    return token;
}

} // namespace Overflows
