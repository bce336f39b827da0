// SPDX-License-Identifier: MIT
#include "documents/html/Range.h"

#include <cmath>

using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

constexpr int mostTicks = 24;

bool isInteger(const MemberView &member)
{
    return member.GetKind() == MemberKind::Int || member.GetKind() == MemberKind::Int64;
}

} // namespace

std::optional<Range> Range::of(const Members &members)
{
    const MemberView *const value = members.find("value", isNumber);
    const MemberView *const min = members.find("min", isNumber);
    const MemberView *const max = members.find("max", isNumber);
    const MemberView *const step = members.find("step", isNumber);
    if (!value || !min || !max || !step)
        return {};
    return Range(*value, *min, *max, *step);
}

Range::Range(const MemberView &value, const MemberView &min, const MemberView &max, const MemberView &step)
    : m_integers(isInteger(value) && isInteger(min) && isInteger(max)), m_value(amount(value)), m_min(amount(min)),
      m_max(amount(max)), m_step(amount(step)), m_isSet(value.IsSet() && min.IsSet() && max.IsSet()),
      m_isFinite(std::isfinite(m_value) && std::isfinite(m_min) && std::isfinite(m_max))
{
}

long double Range::amount(const MemberView &member) const
{
    return m_integers ? static_cast<long double>(member.GetValue().toLongLong()) : member.GetValue().toDouble();
}

bool Range::isLogarithmic() const
{
    constexpr long double fewest = 1000;
    return hasLocation() && m_min > 0 && m_max / m_min >= fewest;
}

long double Range::positionOf(long double number) const
{
    return isLogarithmic() ? std::log(number / m_min) / std::log(m_max / m_min) : (number - m_min) / (m_max - m_min);
}

double Range::position() const
{
    if (m_value <= m_min || m_min == m_max)
        return 0;
    return m_value >= m_max ? 1 : double(positionOf(m_value));
}

QVector<double> Range::ticks() const
{
    QVector<double> positions;
    if (isLogarithmic()) {
        const int first = int(std::floor(std::log10(m_min)));
        const int last = int(std::ceil(std::log10(m_max)));
        if (last - first > mostTicks)
            return {};
        for (int exponent = first; exponent <= last; ++exponent) {
            const long double number = std::pow(10.0L, exponent);
            if (number > m_min && number < m_max)
                positions.append(double(positionOf(number)));
        }
        return positions;
    }
    const long double count = m_step > 0 && hasLocation() ? (m_max - m_min) / m_step : 0;
    const bool isWhole = std::abs(count - std::round(count)) < 1e-4L; // steps like 0.1 are not exact
    if (count < 2 || count > mostTicks || !isWhole)
        return {};
    const auto steps = int(std::lround(count));
    for (int i = 1; i < steps; ++i)
        positions.append(double(i) / steps);
    return positions;
}

} // namespace TunerDocuments
