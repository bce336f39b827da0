// SPDX-License-Identifier: MIT
#include "documents/html/Axis.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace TunerDocuments {

namespace {

constexpr int mostLabels = 6;

/// Each row of a chart draws all ticks, so more of them would take more room than the bars.
constexpr int mostTicks = 12;

/// The largest power of ten that is not above the number, which is positive; logarithms alone may be inexact at the
/// powers.
int decadeOf(double number)
{
    int decade = int(std::floor(std::log10(number)));
    if (std::pow(10.0, decade + 1) <= number)
        ++decade;
    return decade;
}

/// The least of 1, 2, 5, 10, 20, ... that is at least the number.
long double roundStep(long double number)
{
    const long double decade = std::pow(10.0L, std::floor(std::log10(number)));
    for (const long double factor : {1.0L, 2.0L, 5.0L}) {
        if (factor * decade >= number)
            return factor * decade;
    }
    return 10.0L * decade;
}

/// Of six digits at most.
QString shortest(long double number)
{
    char text[32];
    const char *const end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::general, 6).ptr;
    return QString::fromLatin1(text, int(end - text));
}

} // namespace

QString brief(long double number)
{
    struct Prefix
    {
        long double factor;
        const char *letter;
    };
    constexpr Prefix prefixes[] = {{1e12L, "T"}, {1e9L, "G"}, {1e6L, "M"}, {1e3L, "k"}};
    const long double size = std::abs(number);
    if (size < 1e15L) {
        for (const Prefix &prefix : prefixes) {
            if (size >= prefix.factor)
                return shortest(number / prefix.factor) + QChar(0xA0) + QLatin1String(prefix.letter);
        }
    }
    return shortest(number);
}

Axis::Axis(const QVector<double> &numbers)
{
    QVector<double> finite;
    std::copy_if(numbers.begin(), numbers.end(), std::back_inserter(finite),
                 [](double number) { return std::isfinite(number); });
    if (finite.isEmpty())
        finite.append(0.0);
    const auto [least, most] = std::minmax_element(finite.begin(), finite.end());
    m_isLogarithmic = *least > 0 && *most / 10 > *least;
    if (m_isLogarithmic)
        layOutDecades(*least, *most);
    else
        layOutLinearly(std::min(*least, 0.0), std::max(*most, 0.0));
}

void Axis::layOutDecades(double least, double most)
{
    // A bar without length would look like no bar.
    const int first = decadeOf(least) - (std::pow(10.0, decadeOf(least)) >= least ? 1 : 0);
    const int last = decadeOf(most) + (std::pow(10.0, decadeOf(most)) < most ? 1 : 0);
    m_least = first;
    m_most = last;
    const int each = (last - first) / mostLabels + 1;
    const int step = last - first < mostTicks ? 1 : each;
    for (int decade = first; decade <= last; decade += step) {
        const bool hasLabel = (decade - first) % each == 0;
        m_ticks.append({position(decade), hasLabel ? brief(std::pow(10.0L, decade)) : QString()});
    }
}

void Axis::layOutLinearly(double least, double most)
{
    constexpr int intervals = 4;
    long double range = static_cast<long double>(most) - static_cast<long double>(least);
    if (!(range > 0))
        range = 1; // all numbers are 0
    const long double step = roundStep(range / intervals);
    m_least = std::floor(least / step) * step;
    m_most = std::ceil((least + range) / step) * step;
    for (int i = 0; i <= int(std::lround((m_most - m_least) / step)); ++i) {
        const long double number = m_least + i * step;
        m_ticks.append({position(number), brief(number)});
    }
}

std::optional<double> Axis::at(double number) const
{
    if (!std::isfinite(number))
        return {};
    return position(m_isLogarithmic ? std::log10(static_cast<long double>(number)) : number);
}

} // namespace TunerDocuments
