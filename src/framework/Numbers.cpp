// SPDX-License-Identifier: MIT
#include "framework/Numbers.h"

#include <cfloat>
#include <cstring>
#include <optional>

#include <QByteArray>
#include <QString>

#include "text/Ascii.h"
#include "text/Utf16.h"
#include "text/WholeNumber.h"

namespace JobXml {

namespace {

// "00" to "99": a division by 100 costs as much as one by 10 and yields two digits.
struct Pairs
{
    constexpr Pairs()
    {
        char *end = digits;
        for (char tens = '0'; tens <= '9'; ++tens) {
            for (char ones = '0'; ones <= '9'; ++ones) {
                *end++ = tens;
                *end++ = ones;
            }
        }
    }
    char digits[200]{};
};
constexpr Pairs pairs;

inline char *writePair(char *end, quint64 pair)
{
    std::memcpy(end - 2, pairs.digits + 2 * pair, 2);
    return end - 2;
}

// Writes the digits of the number before `end`; returns their beginning.
Q_ALWAYS_INLINE char *writeDigits(char *end, quint64 number)
{
    while (number >= 100) {
        end = writePair(end, number % 100);
        number /= 100;
    }
    if (number >= 10)
        return writePair(end, number);
    *--end = char('0' + number);
    return end;
}

// The end of the texts of the fast path: a sign and 19 digits, 20 digits, or a sign, 16 digits, a point and two
// decimals.
constexpr int shortTextEnd = 20;

constexpr int mantissaBits = std::numeric_limits<double>::digits - 1;
constexpr quint64 mantissaMask = (quint64(1) << mantissaBits) - 1;
constexpr int exponentMask = 0x7FF;
constexpr int exponentOfOne = 1023;
static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == sizeof(quint64));

// Whether an operation on doubles rounds once, to a double, and not first to a wider type.
constexpr bool roundsOnce = FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1;

// Skips the sign, if there is one.
template <class Char>
Q_ALWAYS_INLINE bool takeSign(const Char *&text, qsizetype &size)
{
    if (size <= 0 || *text != '-')
        return false;
    ++text;
    --size;
    return true;
}

// The number, if the text consists of digits and an optional '-', and is short enough that every such number fits the
// type. All other texts are passed on.
template <class Integer, class Char, class ReadOther>
Q_ALWAYS_INLINE Integer plainInteger(const Char *text, qsizetype size, ReadOther readOther)
{
    const bool negative = takeSign(text, size);
    if (size <= 0 || size > std::numeric_limits<Integer>::digits10)
        return readOther();
    const Char *const end = text + size;
    Integer number = 0;
    for (; text != end; ++text) {
        const unsigned digit = WholeNumber::digitOf(*text);
        if (digit > 9)
            return readOther();
        number = number * 10 + Integer(digit);
    }
    return negative ? -number : number;
}

// The number, if the text consists of digits and an optional '-' and point, and is short enough. A double represents up
// to 15 digits exactly, and the power of ten too: their quotient is rounded once, so it is the nearest double.
template <class Char>
Q_ALWAYS_INLINE std::optional<double> plainDouble(const Char *text, qsizetype size)
{
    static constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};

    // Includes the point. Without one there may be 16 digits; their conversion to a double also rounds once.
    constexpr int mostCharacters = std::numeric_limits<double>::digits10 + 1;

    const bool negative = takeSign(text, size);
    if (!roundsOnce || size <= 0 || size > mostCharacters)
        return std::nullopt;
    const Char *const end = text + size;

    qint64 digits = 0;
    const auto readDigits = [&] {
        const Char *const begin = text;
        for (; text != end; ++text) {
            const unsigned digit = WholeNumber::digitOf(*text);
            if (digit > 9)
                break;
            digits = digits * 10 + qint64(digit);
        }
        return text - begin;
    };
    if (readDigits() == 0)
        return std::nullopt;
    double number = 0;
    if (text == end) {
        number = double(digits);
    } else {
        if (*text++ != '.')
            return std::nullopt;
        const auto decimals = readDigits(); // may be 0: "1." is a number
        if (text != end)
            return std::nullopt;
        number = double(digits) / powersOfTen[decimals];
    }
    return negative ? -number : number;
}

// With the size, because a text may contain a NUL. The converter drops a byte order mark at the start, which is part of
// the text here.
QString textOf(const char *utf8, Size size)
{
    static constexpr char mark[] = {'\xEF', '\xBB', '\xBF'};
    const bool marked = size >= int(sizeof mark) && std::memcmp(utf8, mark, sizeof mark) == 0;
    const QString text = QString::fromUtf8(utf8, size);
    return marked ? QChar(QChar::ByteOrderMark) + text : text;
}

// The functions that read what the fast paths do not. Never inlined, so that the fast paths need no stack frame.
template <class Integer>
Q_NEVER_INLINE Integer readInteger(QStringView text)
{
    return WholeNumber::read<Integer>(text).value_or(0);
}

template <class Integer>
Q_NEVER_INLINE Integer readInteger(const char *utf8, Size size)
{
    if (REPORTGENERATOR::isAscii(utf8, size))
        return WholeNumber::read<Integer>(utf8, size).value_or(0);
    return readInteger<Integer>(QStringView(textOf(utf8, size)));
}

template <auto read>
Q_NEVER_INLINE auto readByQt(QStringView text)
{
    return (text.toString().*read)(nullptr);
}

template <auto read>
Q_NEVER_INLINE auto readByQt(const char *utf8, Size size)
{
    return (textOf(utf8, size).*read)(nullptr);
}

} // namespace

namespace Numbers {

Q_NEVER_INLINE void Text::formatWithQt(double value)
{
    const QByteArray text = QString::number(value, 'f', 2).toLatin1();
    std::memcpy(m_room, text.constData(), size_t(text.size()));
    m_begin = m_room;
    m_size = int(text.size());
}

Q_ALWAYS_INLINE void Text::storeDigits(char *begin, bool negative)
{
    if (negative)
        *--begin = '-';
    m_begin = begin;
    m_size = int(m_room + shortTextEnd - begin);
}

Text::Text(double value)
{
    // A normal value is mantissa / 2^shift. A subnormal one is so near to 0 that it is written like the smallest normal
    // one.
    quint64 bits;
    std::memcpy(&bits, &value, sizeof bits);
    const int shift = exponentOfOne + mantissaBits - (int(bits >> mantissaBits) & exponentMask);
    if (shift <= 0) { // from 2^52 on, infinities, NaN
        formatWithQt(value);
        return;
    }

    // Exact in 60 bits; ties are rounded away from 0, like in Qt. Beyond a shift of 60, the result is always 0.
    const quint64 mantissa = (bits & mantissaMask) | (mantissaMask + 1);
    const quint64 hundredths = shift > 60 ? 0 : (mantissa * 100 + (quint64(1) << (shift - 1))) >> shift;
    char *const decimals = writePair(m_room + shortTextEnd, hundredths % 100);
    decimals[-1] = '.';
    storeDigits(writeDigits(decimals - 1, hundredths / 100), value < 0); // -0.001 keeps its sign, -0.0 has none
}

Text::Text(qint64 value)
{
    const bool negative = value < 0;
    const quint64 number = negative ? 0 - quint64(value) : quint64(value);
    storeDigits(writeDigits(m_room + shortTextEnd, number), negative);
}

Text::Text(quint64 value)
{
    storeDigits(writeDigits(m_room + shortTextEnd, value), false);
}

Text twoDecimals(double value)
{
    return Text(value);
}

Text decimal(qint64 value)
{
    return Text(value);
}

Text decimal(quint64 value)
{
    return Text(value);
}

int toInt(QStringView text)
{
    return plainInteger<int>(Utf16::units(text), text.size(), [=] { return readInteger<int>(text); });
}

qint64 toLongLong(QStringView text)
{
    return plainInteger<qint64>(Utf16::units(text), text.size(), [=] { return readInteger<qint64>(text); });
}

// Reads a double first, like Qt. The numbers of the fast path are within the range of a float.
float toFloat(QStringView text)
{
    const auto number = plainDouble(Utf16::units(text), text.size());
    return number ? float(*number) : readByQt<&QString::toFloat>(text);
}

double toDouble(QStringView text)
{
    const auto number = plainDouble(Utf16::units(text), text.size());
    return number ? *number : readByQt<&QString::toDouble>(text);
}

int toInt(const char *utf8, Size size)
{
    return plainInteger<int>(utf8, size, [=] { return readInteger<int>(utf8, size); });
}

qint64 toLongLong(const char *utf8, Size size)
{
    return plainInteger<qint64>(utf8, size, [=] { return readInteger<qint64>(utf8, size); });
}

float toFloat(const char *utf8, Size size)
{
    const auto number = plainDouble(utf8, size);
    return number ? float(*number) : readByQt<&QString::toFloat>(utf8, size);
}

double toDouble(const char *utf8, Size size)
{
    const auto number = plainDouble(utf8, size);
    return number ? *number : readByQt<&QString::toDouble>(utf8, size);
}

} // namespace Numbers
} // namespace JobXml
