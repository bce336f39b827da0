// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

#include <QByteArray>
#include <QLocale>

#include <tunerdocuments/Value.h>

#include "json/Json.h"

namespace TunerDocuments {
namespace JsonReading {

/// A whole number in decimal digits, if it is written like one; no value if it is out of range.
template <class T>
struct Digits
{
    explicit Digits(const QByteArray &text)
    {
        const char *const end = text.constEnd();
        const char *const first = text.constBegin() + (text.startsWith('-') ? 1 : 0);
        const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
        isWholeNumber = first != end && std::all_of(first, end, isDigit) && (*first != '0' || first + 1 == end);
        T number = 0;
        const auto read = std::from_chars(text.constBegin(), end, number);
        if (isWholeNumber && read.ec == std::errc() && read.ptr == end)
            value = number;
    }

    bool isWholeNumber = false;
    std::optional<T> value;
};

/// A number that JSON holds as a number, if it fits.
template <class T>
std::optional<T> fitting(const Json &json)
{
    using Limits = std::numeric_limits<T>;
    const bool fits = json.isNegative() ? std::is_signed_v<T> && json.toNumber<qint64>() >= qint64(Limits::min())
                                        : json.toNumber<quint64>() <= quint64(Limits::max());
    return fits ? std::optional<T>(json.toNumber<T>()) : std::nullopt;
}

/// The number without the decimals, if they are all 0.
template <class T>
std::optional<T> wholePart(const Json &json)
{
    if (!json.isReal())
        return {};
    const QByteArray digits = QByteArray::number(json.toNumber<double>(), 'f', QLocale::FloatingPointShortest);
    return Digits<T>(digits).value;
}

/// For numbers that JSON cannot hold as numbers.
template <class T>
std::optional<T> specialNumber(const QByteArray &text)
{
    using Limits = std::numeric_limits<T>;
    if (text == "NaN")
        return Limits::quiet_NaN();
    if (text == "Infinity")
        return Limits::infinity();
    if (text == "-Infinity")
        return -Limits::infinity();
    return {};
}

/// "-2147483648 to 2147483647"
template <class T>
QString rangeOf()
{
    using Limits = std::numeric_limits<T>;
    const auto text = [](T number) {
        if constexpr (std::is_integral_v<T>)
            return QString::number(number);
        else
            return ValueText::exactly(number);
    };
    return text(Limits::lowest()) + QStringLiteral(" to ") + text(Limits::max());
}

} // namespace JsonReading
} // namespace TunerDocuments
