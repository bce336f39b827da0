// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <QLatin1String>

#include <jobxml/Visit.h>

#include "documents/xml/XmlBlanks.h"

namespace TunerDocuments {

/// What nearly all texts of a document are, and no rule has to examine: quick checks that say no when in doubt.
namespace PlainText {

inline bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Whether a float is exactly the number with these digits, of which there are at most nine.
inline bool isExactFloat(const char *digits, const char *end)
{
    qint64 number = 0;
    for (const char *at = digits; at != end; ++at)
        number = number * 10 + (*at - '0');
    return qint64(float(number)) == number;
}

/// Whether a number is one that every reader and writer keeps: a few digits, with at most two decimals for the types
/// that have any.
inline bool isNumber(QLatin1String text, JobXml::MemberKind kind)
{
    const char *at = text.data();
    const char *const end = at + text.size();
    if (at != end && *at == '-' && kind != JobXml::MemberKind::UInt64)
        ++at;
    const char *const digits = at;
    while (at != end && isDigit(*at))
        ++at;
    const bool is64Bit = kind == JobXml::MemberKind::Int64 || kind == JobXml::MemberKind::UInt64;
    const int safeDigits = is64Bit ? 18 : 9;
    const char *const wholeEnd = at;
    if (at == digits || at - digits > safeDigits)
        return false;
    const bool isFloat = kind == JobXml::MemberKind::Float;
    const bool mayHaveDecimals = isFloat || kind == JobXml::MemberKind::Double;
    bool hasDecimals = false;
    if (at != end && *at == '.' && mayHaveDecimals) {
        const char *const decimals = ++at;
        for (; at != end && isDigit(*at); ++at)
            hasDecimals = hasDecimals || *at != '0';
        if (at == decimals || at - decimals > 2)
            return false;
    }
    // Below 100,000, floats are less than a hundredth apart.
    constexpr int safeDigitsOfFloat = 5;
    const bool isKept =
        !isFloat || wholeEnd - digits <= safeDigitsOfFloat || (!hasDecimals && isExactFloat(digits, wholeEnd));
    return at == end && isKept;
}

/// Whether there are only spaces; compares eight at a time.
inline bool areSpaces(const char *at, const char *end)
{
    constexpr char spaces[] = "        ";
    constexpr std::ptrdiff_t most = sizeof spaces - 1;
    constexpr std::ptrdiff_t some = most / 2;
    if (end - at < some)
        return std::all_of(at, end, [](char character) { return character == ' '; });
    if (end - at < most)
        return std::memcmp(at, spaces, some) == 0 && std::memcmp(end - some, spaces, some) == 0;
    for (; end - at > most; at += most) {
        if (std::memcmp(at, spaces, most) != 0)
            return false;
    }
    return std::memcmp(end - most, spaces, most) == 0;
}

/// Whether there are only blanks. In nearly all documents, these are a line end and a few spaces.
inline bool isBlank(const char *at, const char *end)
{
    at += at != end && *at == '\n' ? 1 : 0;
    return areSpaces(at, end) || std::all_of(at, end, XmlBlanks::isBlank);
}

inline bool isBoolean(QLatin1String text)
{
    return text == QLatin1String("true") || text == QLatin1String("false") || text == QLatin1String("1")
        || text == QLatin1String("0");
}

} // namespace PlainText

} // namespace TunerDocuments
