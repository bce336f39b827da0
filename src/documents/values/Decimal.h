// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TunerDocuments {

/// A decimal number of any size, as it is written: "-0012.50e3". Comparisons are exact.
class Decimal
{
public:
    /// The text must have no blanks around the number.
    explicit Decimal(const QString &text);

    /// Whether the text is a number; the other functions have no meaning if it is not.
    bool isNumber() const { return m_isNumber; }
    /// Whether it is written without a point and an exponent.
    bool isWhole() const { return m_isWhole; }
    bool isNegative() const { return m_isNegative; } ///< also of "-0"
    bool isZero() const { return m_digits.isEmpty(); } ///< whatever its sign is

    /// How many decimals it has, without zeros at the end.
    qint64 decimals() const;

    /// Whether another number has the same size, in whatever notation and with whatever sign.
    bool isAsLargeAs(const Decimal &other) const;

    /// In digits only, for a whole number of any size that a type may have; null for others.
    QString inDigits() const;

private:
    QString m_digits; // without zeros at both ends
    qint64 m_decimals = 0; // of the last digit; negative if zeros follow it
    bool m_isNegative = false;
    bool m_isWhole = false;
    bool m_isNumber = false;
};

} // namespace TunerDocuments
