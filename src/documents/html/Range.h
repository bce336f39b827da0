// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QVector>

#include "documents/html/Members.h"

namespace TunerDocuments {

/// A number and its limits, compared without conversion: a 64-bit integer has more digits than a floating-point number.
class Range
{
public:
    /// Of the members value, min, max and step, if all of them are numbers.
    static std::optional<Range> of(const Members &members);

    /// Whether there is a position to show, possibly at an end.
    bool hasLocation() const { return m_isSet && m_isFinite && m_min <= m_max; }
    bool isInside() const { return hasLocation() && m_value >= m_min && m_value <= m_max; }

    /// Whether the range spans decades: on a linear axis, nearly all values would be at its start.
    bool isLogarithmic() const;

    /// From 0 to 1; values beyond an end are at the end.
    double position() const;

    /// The positions of the steps or, on a logarithmic axis, of the powers of ten between the ends; none if there are
    /// too many for a picture.
    QVector<double> ticks() const;

private:
    Range(const JobXml::MemberView &value, const JobXml::MemberView &min, const JobXml::MemberView &max,
          const JobXml::MemberView &step);

    long double amount(const JobXml::MemberView &member) const;
    long double positionOf(long double number) const;

    bool m_integers;
    long double m_value;
    long double m_min;
    long double m_max;
    long double m_step;
    bool m_isSet;
    bool m_isFinite;
};

} // namespace TunerDocuments
