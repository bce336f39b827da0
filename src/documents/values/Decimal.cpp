// SPDX-License-Identifier: MIT
#include "documents/values/Decimal.h"

#include <algorithm>

namespace TunerDocuments {

namespace {

/// Takes one part of a text after the other.
class Parts
{
public:
    explicit Parts(const QString &text) : m_text(text) { }

    QString takeDigits()
    {
        const int begin = m_at;
        while (m_at < m_text.size() && m_text.at(m_at) >= QLatin1Char('0') && m_text.at(m_at) <= QLatin1Char('9'))
            ++m_at;
        return m_text.mid(begin, m_at - begin);
    }

    /// Whether one of these characters was there.
    bool takeOneOf(const char *characters)
    {
        const bool isThere = !atEnd() && QLatin1String(characters).contains(m_text.at(m_at));
        m_at += isThere ? 1 : 0;
        return isThere;
    }

    /// A sign, which may be missing. Whether it is a minus sign.
    bool takeSign()
    {
        const bool isNegative = takeOneOf("-");
        if (!isNegative)
            takeOneOf("+");
        return isNegative;
    }

    bool atEnd() const { return m_at == m_text.size(); }

private:
    const QString &m_text;
    int m_at = 0;
};

void removeLeadingZeros(QString &digits)
{
    const auto isZero = [](QChar digit) { return digit == QLatin1Char('0'); };
    digits.remove(0, int(std::find_if_not(digits.cbegin(), digits.cend(), isZero) - digits.cbegin()));
}

} // namespace

Decimal::Decimal(const QString &text)
{
    Parts parts(text);
    m_isNegative = parts.takeSign();
    m_digits = parts.takeDigits();
    m_isWhole = parts.atEnd() && !m_digits.isEmpty();
    if (parts.takeOneOf(".")) {
        const QString fraction = parts.takeDigits();
        m_decimals = fraction.size();
        m_digits += fraction;
    }
    bool hasExponent = true;
    if (parts.takeOneOf("eE")) {
        const bool isNegative = parts.takeSign();
        QString size = parts.takeDigits();
        hasExponent = !size.isEmpty();
        removeLeadingZeros(size);
        constexpr int longest = 18; // digits; no number that can be stored needs more
        const qint64 exponent = size.left(longest).toLongLong();
        m_decimals += isNegative ? exponent : -exponent;
    }
    m_isNumber = parts.atEnd() && !m_digits.isEmpty() && hasExponent;
    while (m_digits.endsWith(QLatin1Char('0'))) {
        m_digits.chop(1);
        --m_decimals;
    }
    removeLeadingZeros(m_digits);
}

qint64 Decimal::decimals() const
{
    return isZero() ? 0 : std::max(m_decimals, qint64(0));
}

bool Decimal::isAsLargeAs(const Decimal &other) const
{
    return m_digits == other.m_digits && (isZero() || m_decimals == other.m_decimals);
}

QString Decimal::inDigits() const
{
    constexpr qint64 mostZeros = 18;
    if (!m_isNumber || decimals() > 0 || -m_decimals > mostZeros)
        return {};
    if (isZero())
        return QStringLiteral("0");
    return QString(m_isNegative ? QStringLiteral("-") : QString()) + m_digits
        + QString(int(-m_decimals), QLatin1Char('0'));
}

} // namespace TunerDocuments
