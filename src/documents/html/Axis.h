// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <optional>

#include <QString>
#include <QVector>

namespace TunerDocuments {

/// The axis of a bar chart.
class Axis
{
public:
    struct Tick
    {
        double at; ///< from 0 to 1
        QString label; ///< empty where labels would be too close to each other
    };

    /// Logarithmic if the numbers are positive and more than a decade apart, since the smallest bars would otherwise
    /// have no visible length; linear with a zero if not. Numbers that are not finite have no position.
    explicit Axis(const QVector<double> &numbers);

    bool isLogarithmic() const { return m_isLogarithmic; }
    const QVector<Tick> &ticks() const { return m_ticks; }
    /// The numbers at the ends, which may exceed the range of a double.
    long double least() const { return atEnd(m_least); }
    long double most() const { return atEnd(m_most); }
    /// The start of a bar, from 0 to 1.
    double base() const { return m_isLogarithmic ? 0.0 : position(0.0L); }
    /// From 0 to 1; no value for a number that has no position.
    std::optional<double> at(double number) const;

private:
    long double atEnd(long double end) const { return m_isLogarithmic ? std::pow(10.0L, end) : end; }
    double position(long double number) const { return double((number - m_least) / (m_most - m_least)); }
    void layOutDecades(double least, double most);
    void layOutLinearly(double least, double most);

    bool m_isLogarithmic = false;
    long double m_least = 0; // exponents if the axis is logarithmic
    long double m_most = 1;
    QVector<Tick> m_ticks;
};

/// A number in few characters: 100 k, 2.5 M.
QString brief(long double number);

} // namespace TunerDocuments
