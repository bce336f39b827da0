// SPDX-License-Identifier: MIT
#include "text/ExactNumber.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace ExactNumber {

namespace {

template <class T>
QString shortest(T value)
{
    if (std::isnan(value))
        return QStringLiteral("nan"); // its sign has no meaning
    const T size = std::abs(value);
    const bool plain = value == T(0) || (size >= T(1e-6) && size < T(1e16));
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return QString::fromLatin1(text, int(end - text));
}

} // namespace

QString text(float value)
{
    return shortest(value);
}

QString text(double value)
{
    return shortest(value);
}

} // namespace ExactNumber
