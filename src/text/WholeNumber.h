// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <optional>
#include <type_traits>

#include <QStringView>

#include "text/Utf16.h"

/// Whole numbers as documents, paths and command lines may spell them: blanks of any kind, a sign, decimal digits, and
/// blanks again. This is what QString::toInt() of Qt 5 accepts. That of Qt 6 knows fewer blanks and no U+2212, and
/// stops at a NUL, so a document would contain other numbers with it.
namespace WholeNumber {

/// The value of a digit; above 9 for every other character.
template <class Character>
constexpr unsigned digitOf(Character character)
{
    return unsigned(character) - '0';
}

constexpr bool isMinus(unsigned character)
{
    return character == '-' || character == 0x2212;
}

constexpr bool isBlank(unsigned character)
{
    if (character < 0x80)
        return character == ' ' || (character >= '\t' && character <= '\r');
    switch (character) {
    case 0x0085: // next line
    case 0x00A0: // no-break space
    case 0x1680: // ogham space mark
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
    case 0x202F: // narrow no-break space
    case 0x205F: // medium mathematical space
    case 0x3000: // ideographic space
        return true;
    default:
        return character >= 0x2000 && character <= 0x200A; // en quad to hair space
    }
}

/// The number that the text is; no value if it is none, or out of range. The text is UTF-16 or ASCII.
template <class Integer, class Character>
std::optional<Integer> read(const Character *text, qsizetype size)
{
    using Limits = std::numeric_limits<Integer>;
    static_assert(Limits::is_signed && Limits::digits10 + 1 <= std::numeric_limits<quint64>::digits10,
                  "the digits of every such number, and of somewhat larger ones, fit in 64 bits");
    using Unit = std::make_unsigned_t<Character>;
    const Character *end = text + (size > 0 ? size : 0);
    while (text != end && isBlank(Unit(*text)))
        ++text;
    while (text != end && isBlank(Unit(end[-1])))
        --end;

    const bool isNegative = text != end && isMinus(Unit(*text));
    if (isNegative || (text != end && *text == '+'))
        ++text;
    if (text == end)
        return std::nullopt;

    while (text != end && *text == '0')
        ++text;
    if (end - text > Limits::digits10 + 1)
        return std::nullopt; // too large, or not a number at all
    quint64 number = 0;
    for (; text != end; ++text) {
        const unsigned digit = digitOf(Unit(*text));
        if (digit > 9)
            return std::nullopt;
        number = number * 10 + digit;
    }
    if (number > quint64(Limits::max()) + (isNegative ? 1 : 0))
        return std::nullopt;
    return Integer(isNegative ? 0 - number : number);
}

template <class Integer>
std::optional<Integer> read(QStringView text)
{
    return read<Integer>(Utf16::units(text), text.size());
}

} // namespace WholeNumber
