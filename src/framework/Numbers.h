// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

#include <QLatin1String>
#include <QStringView>

#include "text/Size.h"

namespace JobXml {

using REPORTGENERATOR::Size;

/// Converts numbers to texts and back, exactly as Qt 5 does, without an intermediate QString. Common numbers take a
/// fast path; all other floating-point numbers are converted by Qt itself.
namespace Numbers {

/// The ASCII text of a number, stored in the object itself. Allocates no memory and cannot be copied.
class Text
{
public:
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    /// Not terminated by a NUL.
    const char *data() const { return m_begin; }
    int size() const { return m_size; }
    QLatin1String latin1() const { return QLatin1String(m_begin, m_size); }

private:
    friend Text twoDecimals(double value);
    friend Text decimal(qint64 value);
    friend Text decimal(quint64 value);

    explicit Text(double value);
    explicit Text(qint64 value);
    explicit Text(quint64 value);

    void formatWithQt(double value);
    void storeDigits(char *begin, bool negative);

    // Room for a sign, the digits of the greatest double, a point and two decimals. Not initialized.
    char m_room[1 + std::numeric_limits<double>::max_exponent10 + 1 + 3];
    const char *m_begin;
    int m_size;
};

/// QString::number(value, 'f', 2), for every double.
Text twoDecimals(double value);

/// QString::number(value).
Text decimal(qint64 value);
Text decimal(quint64 value);

/// The functions of the same names of QString: a text that is not a number is 0.
int toInt(QStringView text);
qint64 toLongLong(QStringView text);
float toFloat(QStringView text);
double toDouble(QStringView text);

/// The same for UTF-8. A byte order mark at the start is a character like any other.
int toInt(const char *utf8, Size size);
qint64 toLongLong(const char *utf8, Size size);
float toFloat(const char *utf8, Size size);
double toDouble(const char *utf8, Size size);

} // namespace Numbers
} // namespace JobXml
