// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <QtTest>

#include "Heap.h"
#include "QtFigures.h"
#include "framework/Numbers.h"

using namespace JobXml;

namespace {

using Double = std::numeric_limits<double>;
using Float = std::numeric_limits<float>;
using Int64 = std::numeric_limits<qint64>;

template <class Bits, class Number>
Bits bitsOf(Number number)
{
    static_assert(sizeof(Bits) == sizeof(Number));
    Bits bits;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

double doubleOf(quint64 bits)
{
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

// Always the same sequence, so that failures are reproducible.
class Random
{
public:
    quint64 bits() { return m_generator(); }
    quint64 below(quint64 limit) { return m_generator() % limit; }
    bool heads() { return (m_generator() >> 40) & 1; }
    double withSign(double number) { return heads() ? -number : number; }

private:
    std::mt19937_64 m_generator{20};
};

// The results of the four functions for a text. Compares the bits, because -0 and 0 compare equal.
struct Readings
{
    int asInt = 0;
    qint64 asLongLong = 0;
    float asFloat = 0;
    double asDouble = 0;

    bool operator==(const Readings &other) const
    {
        return asInt == other.asInt && asLongLong == other.asLongLong
            && bitsOf<quint32>(asFloat) == bitsOf<quint32>(other.asFloat)
            && bitsOf<quint64>(asDouble) == bitsOf<quint64>(other.asDouble);
    }

    QString toString() const
    {
        return QStringLiteral("int %1, long long %2, float %3, double %4")
            .arg(asInt)
            .arg(asLongLong)
            .arg(double(asFloat), 0, 'g', 9)
            .arg(asDouble, 0, 'g', 17);
    }
};

// Later versions read fewer texts as whole numbers, see WholeNumber.h; all others alike.
constexpr bool qtReadsTheSame = QtFigures::isQt5;

Readings byQt(const QString &text)
{
    return {text.toInt(), text.toLongLong(), text.toFloat(), text.toDouble()};
}

// Qt's converter drops one byte order mark, so this one protects a mark in the text.
Readings byQt(const QByteArray &utf8)
{
    return byQt(QString::fromStdString("\xEF\xBB\xBF" + utf8.toStdString()));
}

Readings byNumbers(QStringView text)
{
    return {Numbers::toInt(text), Numbers::toLongLong(text), Numbers::toFloat(text), Numbers::toDouble(text)};
}

Readings byNumbers(const QByteArray &utf8)
{
    const char *const bytes = utf8.constData();
    const auto size = utf8.size();
    return {Numbers::toInt(bytes, size), Numbers::toLongLong(bytes, size), Numbers::toFloat(bytes, size),
            Numbers::toDouble(bytes, size)};
}

// The difference to reading the text with Qt; null if there is none.
QString difference(const QByteArray &ascii)
{
    const QString text = QString::fromLatin1(ascii);
    const Readings expected = byQt(text);
    const Readings ofText = byNumbers(text);
    const Readings ofBytes = byNumbers(ascii);
    if (ofText == expected && ofBytes == expected)
        return {};
    return QStringLiteral("\"%1\": %2 as a text and %3 as bytes, not %4")
        .arg(text, ofText.toString(), ofBytes.toString(), expected.toString());
}

// The difference to writing the number with Qt; null if there is none.
QString difference(double number)
{
    const Numbers::Text text = Numbers::twoDecimals(number);
    const QString expected = QString::number(number, 'f', 2);
    if (text.latin1() == expected)
        return {};
    return QStringLiteral("%1: %2, not %3").arg(number, 0, 'g', 17).arg(text.latin1(), expected);
}

// A number with this many digits, of which `decimals` are after the point. Without decimals there is no point.
QByteArray decimalText(Random &random, int digits, int decimals)
{
    QByteArray text(random.heads() ? "-" : "");
    for (int left = digits; left > 0; --left) {
        if (left == decimals)
            text += '.';
        text += char('0' + random.below(10));
    }
    return text;
}

class AllocationCounter final : public Heap::Watcher
{
public:
    int count = 0;

private:
    bool mayAllocate(std::size_t) override
    {
        ++count;
        return true;
    }
};

} // namespace

Q_DECLARE_METATYPE(Readings)

/// Numbers are converted to texts and back exactly like in Qt. Tests literal texts, and compares many numbers with Qt.
class NumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDoubleIsWrittenWithTwoDecimals_data();
    void aDoubleIsWrittenWithTwoDecimals();
    void theGreatestDoubleIsWrittenInFull();
    void aWholeNumberIsWrittenInDecimal_data();
    void aWholeNumberIsWrittenInDecimal();
    void aTextIsReadAsItsNumberOrAs0_data();
    void aTextIsReadAsItsNumberOrAs0();
    void bytesAreReadAsUtf8_data();
    void bytesAreReadAsUtf8();
    void readingStopsAtTheEnd();
    void numbersDoNotDependOnTheLanguage();
    void ordinaryNumbersAllocateNothing();
    void anyDoubleIsWrittenAsByQt();
    void doublesOfOrdinarySizeAreWrittenAsByQt();
    void doublesNextToTiesAreWrittenAsByQt();
    void floatsAreWrittenAsByQt();
    void anyWholeNumberIsWrittenAsByQt();
    void numbersOfAnyLengthAreReadAsByQt();
    void numbersAboutAsLongAsADoubleHoldsAreReadAsByQt();
    void writtenNumbersAreReadAsByQt();
    void anyCharactersOfNumbersAreReadAsByQt();
};

void NumbersTest::aDoubleIsWrittenWithTwoDecimals_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, double number, const char *text) {
        QTest::newRow(name) << number << QString::fromLatin1(text);
    };
    row("zero", 0.0, "0.00");
    row("negative zero has no sign", -0.0, "0.00");
    row("one", 1, "1.00");
    row("a digit before the point", 9.99, "9.99");
    row("two digits", 10, "10.00");
    row("two digits, at most", 99.99, "99.99");
    row("three digits", 100, "100.00");
    row("decimals that begin with 0", 1.05, "1.05");
    row("more digits", -1234567.89, "-1234567.89");
    row("a tie goes up", 0.125, "0.13");
    row("a tie goes up to an even digit", 0.375, "0.38");
    row("a tie goes up to an odd digit", 0.625, "0.63");
    row("a negative tie goes away from 0", -0.125, "-0.13");
    row("a great tie", 1e12 + 0.125, "1000000000000.13");
    row("the greatest ties", 1e15 + 0.125, "1000000000000000.13");
    row("no tie", 2.5, "2.50");
    row("stored as less than a tie", 1.005, "1.00");
    row("stored as less than a tie, as a float", double(1.005f), "1.00");
    row("stored as more than a tie", 0.005, "0.01");
    row("carried to the point", 0.995, "0.99"); // stored as less
    row("carried over the point", 0.996, "1.00");
    row("carried into a new digit", 9.996, "10.00");
    row("just below a tie", std::nextafter(0.125, 0), "0.12");
    row("just above a tie", std::nextafter(0.125, 1), "0.13");
    row("rounded to 0", 0.004, "0.00");
    row("-0.001 keeps its sign", -0.001, "-0.00");
    row("-0.004 keeps its sign", -0.004, "-0.00");
    row("-0.005", -0.005, "-0.01");
    row("2^-7, the least tie-like power", 0.0078125, "0.01");
    row("2^-8", 0.00390625, "0.00");
    row("the least normal number", Double::min(), "0.00");
    row("the least number", Double::denorm_min(), "0.00");
    row("the negative least number", -Double::denorm_min(), "-0.00");
    row("2^52 - 0.5", 4503599627370495.5, "4503599627370495.50");
    row("2^52", 4503599627370496.0, "4503599627370496.00");
    row("-(2^52 - 0.5)", -4503599627370495.5, "-4503599627370495.50");
    row("2^53 - 1", 9007199254740991.0, "9007199254740991.00");
    row("2^53", 9007199254740992.0, "9007199254740992.00");
    row("2^53 + 2", 9007199254740994.0, "9007199254740994.00");
    row("-2^53", -9007199254740992.0, "-9007199254740992.00");
    row("10^22", 1e22, "10000000000000000000000.00");
    row("the greatest float", double(Float::max()), "340282346638528859811704183484516925440.00");
    row("infinity", Double::infinity(), "inf");
    row("negative infinity", -Double::infinity(), "-inf");
    row("no number", Double::quiet_NaN(), "nan");
    row("negative no number", -Double::quiet_NaN(), "nan");
}

void NumbersTest::aDoubleIsWrittenWithTwoDecimals()
{
    QFETCH(double, number);
    QFETCH(QString, text);
    QCOMPARE(QString(Numbers::twoDecimals(number).latin1()), text);
    QCOMPARE(QString::number(number, 'f', 2), text);
    QCOMPARE(QStringLiteral("%1").arg(number, 0, 'f', 2), text);
}

void NumbersTest::theGreatestDoubleIsWrittenInFull()
{
    const Numbers::Text greatest = Numbers::twoDecimals(Double::max());
    const Numbers::Text least = Numbers::twoDecimals(Double::lowest());
    QCOMPARE(greatest.size(), 312); // 309 digits, the point, two decimals
    QCOMPARE(least.size(), 313);
    QVERIFY(QString(greatest.latin1()).startsWith(QLatin1String("17976931348623157")));
    QCOMPARE(QString(greatest.latin1()), QString::number(Double::max(), 'f', 2));
    QCOMPARE(QString(least.latin1()), QLatin1Char('-') + QString(greatest.latin1()));
}

void NumbersTest::aWholeNumberIsWrittenInDecimal_data()
{
    QTest::addColumn<qint64>("number");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("unsignedText"); // of the same bits

    const auto row = [](qint64 number, const char *text, const char *unsignedText) {
        QTest::newRow(text) << number << QString::fromLatin1(text) << QString::fromLatin1(unsignedText);
    };
    row(0, "0", "0");
    row(9, "9", "9");
    row(10, "10", "10");
    row(99, "99", "99");
    row(100, "100", "100");
    row(101, "101", "101");
    row(1000, "1000", "1000");
    row(2147483647, "2147483647", "2147483647");
    row(-1, "-1", "18446744073709551615");
    row(-10, "-10", "18446744073709551606");
    row(-100, "-100", "18446744073709551516");
    row(-2147483648LL, "-2147483648", "18446744071562067968");
    row(Int64::max(), "9223372036854775807", "9223372036854775807");
    row(Int64::min(), "-9223372036854775808", "9223372036854775808");
}

void NumbersTest::aWholeNumberIsWrittenInDecimal()
{
    QFETCH(qint64, number);
    QFETCH(QString, text);
    QFETCH(QString, unsignedText);
    QCOMPARE(QString(Numbers::decimal(number).latin1()), text);
    QCOMPARE(QString::number(number), text);
    QCOMPARE(QString(Numbers::decimal(quint64(number)).latin1()), unsignedText);
    QCOMPARE(QString::number(quint64(number)), unsignedText);
}

void NumbersTest::aTextIsReadAsItsNumberOrAs0_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Readings>("readings");

    const auto row = [](const QString &text, const Readings &readings) {
        QTest::newRow(qPrintable(QLatin1Char('"') + text + QLatin1Char('"'))) << text << readings;
    };
    const auto whole = [&](const char *text, int number) {
        row(QString::fromLatin1(text), {number, number, float(number), double(number)});
    };
    const auto real = [&](const char *text, float single, double number) {
        row(QString::fromLatin1(text), {0, 0, single, number});
    };
    const auto none = [&](const char *text) { row(QString::fromUtf8(text), {}); };
    const float infinity = Float::infinity();

    whole("0", 0);
    whole("7", 7);
    whole("-12", -12);
    whole("007", 7);
    whole("00000000000000000000001", 1);
    whole("+1", 1);
    whole(" 1", 1);
    whole("1 ", 1);
    whole("123456789", 123456789);
    whole("1234567890", 1234567890);
    whole("2147483647", 2147483647);
    whole("-2147483648", -2147483647 - 1);
    row(QStringLiteral("-0"), {0, 0, -0.0F, -0.0});
    row(QStringLiteral("2147483648"), {0, 2147483648LL, 2147483648.0F, 2147483648.0});
    row(QStringLiteral("-2147483649"), {0, -2147483649LL, -2147483648.0F, -2147483649.0});
    row(QStringLiteral("999999999999999999"), {0, 999999999999999999LL, 1e18F, 1e18});
    row(QStringLiteral("9007199254740993"), {0, 9007199254740993LL, 9007199254740992.0F, 9007199254740992.0});
    row(QStringLiteral("9223372036854775807"), {0, Int64::max(), 9223372036854775808.0F, 9223372036854775808.0});
    row(QStringLiteral("9223372036854775808"), {0, 0, 9223372036854775808.0F, 9223372036854775808.0});
    row(QStringLiteral("-9223372036854775808"), {0, Int64::min(), -9223372036854775808.0F, -9223372036854775808.0});
    row(QStringLiteral("-9223372036854775809"), {0, 0, -9223372036854775808.0F, -9223372036854775808.0});

    real("0.00", 0, 0);
    real("-0.00", -0.0F, -0.0);
    real("0.1", 0.1F, 0.1);
    real("-12.50", -12.5F, -12.5);
    real("1.", 1, 1);
    real("-1.", -1, -1);
    real(".5", 0.5F, 0.5);
    real("-.5", -0.5F, -0.5);
    real("1e3", 1000, 1000);
    real("1E-3", 0.001F, 0.001);
    real("12345.67", 12345.67F, 12345.67);
    real("16777217.0", 16777216, 16777217); // a tie between two floats
    real("99999999999999.9", 1e14F, 99999999999999.9);
    real("900719925474099.35", 900719925474099.35F, 900719925474099.35);
    real("0.00000000000001", 1e-14F, 1e-14);
    real("0.00000000000000000000000000000000000000000001", 1e-44F, 1e-44);
    real("12345678901234567890.5", 12345678901234567890.5F, 12345678901234567890.5);
    real("0.12345678901234567891", 0.12345678901234567891F, 0.12345678901234567891);
    real("1e39", infinity, 1e39);
    real("-1e39", -infinity, -1e39);
    real("1e-46", 0, 1e-46);
    real("1e400", infinity, Double::infinity());
    real("-1e400", -infinity, -Double::infinity());
    real("1e-400", 0, 0);
    real("inf", infinity, Double::infinity());
    real("-inf", -infinity, -Double::infinity());
    real("nan", Float::quiet_NaN(), Double::quiet_NaN());

    for (const char *text :
         {"",    " ",   "-",    "+",   ".",        "-.",           "0x10",    "1,000",  "1..2",  "1.2.3", "--1",
          "+-1", "-+1", "1-",   "- 1", "1 2",      "1e",           "e1",      "1a",     "a1",    "/",     ":",
          "1/",  "1:",  "1.5x", "1,5", "infinite", "\u0661\u0662", "1\u0662", "\uFF11", "\u0131"})
        none(text);
    QTest::newRow("a tab and a line feed") << QStringLiteral("\t1\n") << Readings{1, 1, 1, 1};
    QTest::newRow("blanks that are not ASCII")
        << QStringLiteral("\u00A0\u2028") + QStringLiteral("1\u3000") << Readings{1, 1, 1, 1};
    QTest::newRow("a minus that is not ASCII")
        << QString(QChar(0x2212)) + QStringLiteral("1") << Readings{-1, -1, -1, -1};
    QTest::newRow("null") << QString() << Readings{};
    QTest::newRow("a NUL inside") << QStringLiteral("1") + QChar(0) + QStringLiteral("2") << Readings{};
    QTest::newRow("a NUL at the end") << QStringLiteral("12") + QChar(0) << Readings{};
    QTest::newRow("a character whose low byte is a digit") << QString(QChar(0x0131)) + QChar(0x3132) << Readings{};
    QTest::newRow("a byte order mark") << QString(QChar(QChar::ByteOrderMark)) << Readings{};
    QTest::newRow("a byte order mark and a number")
        << QString(QChar(QChar::ByteOrderMark)) + QStringLiteral("1") << Readings{};
}

void NumbersTest::aTextIsReadAsItsNumberOrAs0()
{
    QFETCH(QString, text);
    QFETCH(Readings, readings);
    QCOMPARE(byNumbers(text).toString(), readings.toString());
    QVERIFY(byNumbers(text) == readings);
    QVERIFY(byNumbers(text.toUtf8()) == readings);
    QVERIFY(!qtReadsTheSame || byQt(text) == readings);
}

void NumbersTest::bytesAreReadAsUtf8_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<int>("number");

    QTest::newRow("one mark at the start") << QByteArray("\xEF\xBB\xBF"
                                                         "1")
                                           << 0;
    QTest::newRow("two marks at the start") << QByteArray("\xEF\xBB\xBF\xEF\xBB\xBF"
                                                          "1")
                                            << 0;
    QTest::newRow("part of a mark") << QByteArray("\xEF\xBB") << 0;
    QTest::newRow("a mark at the end") << QByteArray("1\xEF\xBB\xBF") << 0;
    QTest::newRow("invalid UTF-8 at the end") << QByteArray("1\xFF") << 0;
    QTest::newRow("invalid UTF-8 at the start") << QByteArray("\xB1"
                                                              "1")
                                                << 0; // '1' with its highest bit set
    QTest::newRow("a digit in two bytes") << QByteArray("\xC0\xB1") << 0;
    QTest::newRow("a space that is not ASCII") << QByteArray("\xC2\xA0"
                                                             "12\xE2\x80\x83")
                                               << 12;
    QTest::newRow("a NUL inside") << QByteArray("1\0"
                                                "2",
                                                3)
                                  << 0;
    QTest::newRow("a NUL at the start") << QByteArray("\0"
                                                      "1",
                                                      2)
                                        << 0;
}

void NumbersTest::bytesAreReadAsUtf8()
{
    QFETCH(QByteArray, utf8);
    QFETCH(int, number);
    QVERIFY2(byNumbers(utf8) == (Readings{number, number, float(number), double(number)}),
             qPrintable(byNumbers(utf8).toString()));
    QVERIFY(!qtReadsTheSame || byNumbers(utf8) == byQt(utf8));
}

void NumbersTest::readingStopsAtTheEnd()
{
    const QString text = QStringLiteral("-12.5678");
    const QByteArray utf8 = text.toLatin1();
    const auto part = [&](int size) { return byNumbers(QByteArray::fromRawData(utf8.constData(), size)); };
    QVERIFY(part(0) == Readings{});
    QVERIFY(part(1) == Readings{});
    QVERIFY(part(2) == (Readings{-1, -1, -1, -1}));
    QVERIFY(part(3) == (Readings{-12, -12, -12, -12}));
    QVERIFY(part(4) == (Readings{0, 0, -12, -12})); // "-12."
    QVERIFY(part(5) == (Readings{0, 0, -12.5F, -12.5}));
    for (int size = 0; size <= text.size(); ++size)
        QVERIFY(byNumbers(QStringView(text).left(size)) == part(size));
}

// Other languages use a decimal comma or group digits.
void NumbersTest::numbersDoNotDependOnTheLanguage()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString small = Numbers::twoDecimals(-1234.5).latin1();
    const QString huge = Numbers::twoDecimals(1e16).latin1();
    const Readings comma = byNumbers(QStringLiteral("1,5"));
    const Readings point = byNumbers(QStringLiteral(" 1.5"));
    QLocale::setDefault(before);
    QCOMPARE(small, QStringLiteral("-1234.50"));
    QCOMPARE(huge, QStringLiteral("10000000000000000.00"));
    QVERIFY(comma == Readings{});
    QVERIFY(point == (Readings{0, 0, 1.5F, 1.5}));
}

void NumbersTest::ordinaryNumbersAllocateNothing()
{
    const QString text = QStringLiteral("-12345678.90");
    const QString whole = QStringLiteral("-123456789");
    AllocationCounter ofOrdinary;
    AllocationCounter ofHuge;
    int written = 0;
    double read = 0;
    Heap::watch(&ofOrdinary);
    for (double number = 1e-5; number < 4e15; number *= 10)
        written += Numbers::twoDecimals(number).size() + Numbers::decimal(qint64(number)).size();
    read += Numbers::toDouble(text) + double(Numbers::toFloat(text)) + double(Numbers::toInt(whole))
        + double(Numbers::toLongLong(whole)) + Numbers::toDouble("1.25", 4) + double(Numbers::toInt("12", 2));
    Heap::watch(&ofHuge);
    written += Numbers::twoDecimals(1e16).size();
    Heap::watch(nullptr);
    QVERIFY(written > 0 && read < 0);
    QCOMPARE(ofOrdinary.count, 0);
    QVERIFY(ofHuge.count > 0 || !Heap::isWatched); // converted by Qt, which shows that allocations are counted
}

void NumbersTest::anyDoubleIsWrittenAsByQt()
{
    Random random;
    for (int i = 0; i < 100000; ++i) {
        const QString wrong = difference(doubleOf(random.bits()));
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

// Exponents of 2 from -15 to 56.
void NumbersTest::doublesOfOrdinarySizeAreWrittenAsByQt()
{
    Random random;
    for (int i = 0; i < 900000; ++i) {
        const double ofOneToTwo = doubleOf((random.bits() >> 12) | (quint64(1023) << 52));
        const QString wrong = difference(random.withSign(std::ldexp(ofOneToTwo, int(random.below(72)) - 15)));
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

// Eighths include the exact ties; thousandths that end in 5 are next to one.
void NumbersTest::doublesNextToTiesAreWrittenAsByQt()
{
    Random random;
    for (int i = 0; i < 250000; ++i) {
        const double steps = double(random.bits() >> (14 + random.below(49)));
        for (const double tie : {random.withSign(steps / 8), random.withSign(steps / 1000)}) {
            for (const double number : {std::nextafter(tie, -1e300), tie, std::nextafter(tie, 1e300)}) {
                const QString wrong = difference(number);
                if (!wrong.isNull())
                    QFAIL(qPrintable(wrong));
            }
        }
    }
}

void NumbersTest::floatsAreWrittenAsByQt()
{
    Random random;
    for (int i = 0; i < 400000; ++i) {
        const float ofHundredths = float(random.below(1000000000)) / 100;
        const float ofTies = float(random.below(2000000)) / 200;
        for (const float number : {ofHundredths, -ofTies}) {
            const QString wrong = difference(double(number));
            if (!wrong.isNull())
                QFAIL(qPrintable(wrong));
        }
    }
}

void NumbersTest::anyWholeNumberIsWrittenAsByQt()
{
    Random random;
    for (int i = 0; i < 150000; ++i) {
        const quint64 bits = random.bits() >> random.below(64);
        const qint64 number = random.heads() ? -qint64(bits >> 1) : qint64(bits);
        if (Numbers::decimal(bits).latin1() != QString::number(bits)
            || Numbers::decimal(number).latin1() != QString::number(number))
            QFAIL(qPrintable(QString::number(bits)));
    }
}

void NumbersTest::numbersOfAnyLengthAreReadAsByQt()
{
    Random random;
    for (int i = 0; i < 150000; ++i) {
        const int digits = int(random.below(21));
        const QString wrong = difference(decimalText(random, digits, int(random.below(quint64(digits) + 2))));
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

// 14 to 17 digits, for which rounding twice would differ from rounding once.
void NumbersTest::numbersAboutAsLongAsADoubleHoldsAreReadAsByQt()
{
    Random random;
    for (int i = 0; i < 250000; ++i) {
        const int digits = 14 + int(random.below(4));
        const QString wrong = difference(decimalText(random, digits, int(random.below(quint64(digits)))));
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

void NumbersTest::writtenNumbersAreReadAsByQt()
{
    Random random;
    for (int i = 0; i < 150000; ++i) {
        const double number = random.withSign(double(random.bits() >> random.below(60)) / 100);
        const Numbers::Text text = Numbers::twoDecimals(number);
        const QString wrong = difference(QByteArray(text.data(), text.size()));
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

void NumbersTest::anyCharactersOfNumbersAreReadAsByQt()
{
    static constexpr char characters[] = "0123456789.-+eE x";
    Random random;
    for (int i = 0; i < 250000; ++i) {
        QByteArray text;
        for (quint64 left = random.below(10); left > 0; --left)
            text += characters[random.below(sizeof characters - 1)];
        // Sometimes a number with one changed character instead.
        if (random.heads()) {
            text = decimalText(random, 1 + int(random.below(12)), int(random.below(4)));
            text[int(random.below(quint64(text.size())))] = characters[random.below(sizeof characters - 1)];
        }
        const QString wrong = difference(text);
        if (!wrong.isNull())
            QFAIL(qPrintable(wrong));
    }
}

TEST_SUITE_WITHOUT_APPLICATION(NumbersTest)
#include "tst_Numbers.moc"
