// SPDX-License-Identifier: MIT
#include <limits>

#include <QtTest>

#include "Skip.h"
#include "text/WholeNumber.h"

namespace {

using Int64 = std::numeric_limits<qint64>;

const QString minusSign{QChar(0x2212)};

template <class Integer>
QString shown(std::optional<Integer> number)
{
    return number ? QString::number(*number) : QStringLiteral("none");
}

/// "12 12", or "none 2147483648" for a number that is too large for an int.
QString read(const QString &text)
{
    return shown(WholeNumber::read<int>(text)) + QLatin1Char(' ') + shown(WholeNumber::read<qint64>(text));
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
QString readByQt(const QString &text)
{
    bool isInt = false;
    bool isInt64 = false;
    const int asInt = text.toInt(&isInt);
    const qint64 asInt64 = text.toLongLong(&isInt64);
    return (isInt ? QString::number(asInt) : QStringLiteral("none")) + QLatin1Char(' ')
        + (isInt64 ? QString::number(asInt64) : QStringLiteral("none"));
}
#endif

/// Every UTF-16 code unit in turn.
template <class Use>
void forEachUnit(Use use)
{
    for (int unit = 0; unit <= 0xFFFF; ++unit)
        use(QChar(ushort(unit)));
}

QString hex(QChar character)
{
    return QString::number(character.unicode(), 16);
}

} // namespace

/// The grammar of whole numbers, which is the same with every version of Qt.
class WholeNumberTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberIsReadFromTheWholeText_data();
    void numberIsReadFromTheWholeText();
    void asciiAndUtf16AreReadAlike_data();
    void asciiAndUtf16AreReadAlike();
    void twentyFiveCharactersAreBlank();
    void onlyAsciiDigitsAreDigits();
    void signsArePlusMinusAndTheMinusSign();
    void noOtherCharacterIsPartOfANumber();
    void everyCharacterIsReadAsByQt5();
};

void WholeNumberTest::numberIsReadFromTheWholeText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("numbers");

    const auto row = [](const QString &text, const char *numbers) {
        QTest::newRow(qPrintable(QLatin1Char('"') + text + QLatin1Char('"'))) << text << QString::fromLatin1(numbers);
    };
    const auto ascii = [&](const char *text, const char *numbers) { row(QString::fromLatin1(text), numbers); };

    ascii("0", "0 0");
    ascii("-0", "0 0");
    ascii("+0", "0 0");
    ascii("7", "7 7");
    ascii("+7", "7 7");
    ascii("-7", "-7 -7");
    ascii("007", "7 7");
    ascii("-007", "-7 -7");
    ascii("00000000000000000000000000000000000000000000000042", "42 42");

    ascii("2147483647", "2147483647 2147483647");
    ascii("2147483648", "none 2147483648");
    ascii("-2147483648", "-2147483648 -2147483648");
    ascii("-2147483649", "none -2147483649");
    ascii("4294967297", "none 4294967297"); // 1 in the lower 32 bits
    ascii("9999999999", "none 9999999999");
    ascii("9223372036854775807", "none 9223372036854775807");
    ascii("9223372036854775808", "none none");
    ascii("-9223372036854775808", "none -9223372036854775808");
    ascii("-9223372036854775809", "none none");
    ascii("9999999999999999999", "none none");
    ascii("18446744073709551617", "none none"); // 1 in the lower 64 bits
    ascii("0000000000000000000009223372036854775807", "none 9223372036854775807");
    ascii("100000000000000000000000000000000000000000", "none none");

    for (const char *text :
         {"",     " ",    "\t\n", "-",  "+",   " - ", "--1",   "++1",   "+-1",   "-+1", "- 1", "+ 1", "1-", "1+", "1 2",
          "1\t2", "0x10", "1e3",  "1.", "1.0", ".",   "1,000", "1'000", "1_000", "a",   "1a",  "a1",  "/",  ":"})
        ascii(text, "none none");

    row(QString(), "none none");
    row(minusSign + QStringLiteral("5"), "-5 -5");
    row(minusSign + QStringLiteral("2147483648"), "-2147483648 -2147483648");
    row(minusSign, "none none");
    row(minusSign + QStringLiteral("-5"), "none none");
    row(QStringLiteral("5") + minusSign, "none none");
    row(QStringLiteral("\u00A05"), "5 5");
    row(QStringLiteral("5\u00A0"), "5 5");
    row(QStringLiteral(" \t\u2028\u3000-5\u0085\r\n"), "-5 -5");
    row(QStringLiteral("-\u00A05"), "none none");
    row(QStringLiteral("1\u00A0000"), "none none");
    row(QStringLiteral("1\u2009000"), "none none");
    row(QStringLiteral("\uFF0B5"), "none none"); // fullwidth plus
    row(QStringLiteral("\uFF0D5"), "none none"); // fullwidth minus
    row(QStringLiteral("\uFF15"), "none none"); // fullwidth 5
    row(QStringLiteral("\u0665"), "none none"); // Arabic 5
    row(QStringLiteral("\U0001D7D3"), "none none"); // mathematical bold 5
    row(QStringLiteral("\u200B5"), "none none"); // zero width space
    row(QStringLiteral("\u180E5"), "none none"); // Mongolian vowel separator, which was a space
    row(QStringLiteral("\uFEFF5"), "none none"); // byte order mark

    const QString nul(1, QChar(0));
    QTest::newRow("a NUL") << nul << QStringLiteral("none none");
    QTest::newRow("a NUL before a digit") << nul + QStringLiteral("5") << QStringLiteral("none none");
    QTest::newRow("a NUL after a digit") << QStringLiteral("5") + nul << QStringLiteral("none none");
    QTest::newRow("a NUL between digits")
        << QStringLiteral("5") + nul + QStringLiteral("5") << QStringLiteral("none none");
    QTest::newRow("a NUL after a blank") << QStringLiteral("5 ") + nul << QStringLiteral("none none");
}

void WholeNumberTest::numberIsReadFromTheWholeText()
{
    QFETCH(QString, text);
    QFETCH(QString, numbers);
    QCOMPARE(read(text), numbers);
}

void WholeNumberTest::asciiAndUtf16AreReadAlike_data()
{
    numberIsReadFromTheWholeText_data();
}

void WholeNumberTest::asciiAndUtf16AreReadAlike()
{
    QFETCH(QString, text);
    QFETCH(QString, numbers);
    const QByteArray latin1 = text.toLatin1();
    if (QString::fromLatin1(latin1) != text || latin1 != text.toUtf8())
        return; // not ASCII
    QCOMPARE(shown(WholeNumber::read<int>(latin1.constData(), latin1.size())) + QLatin1Char(' ')
                 + shown(WholeNumber::read<qint64>(latin1.constData(), latin1.size())),
             numbers);
}

void WholeNumberTest::twentyFiveCharactersAreBlank()
{
    const QString blanks = QStringLiteral(
        "\t\n\v\f\r "
        "\u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029\u202F"
        "\u205F\u3000");
    QCOMPARE(int(blanks.size()), 25);
    forEachUnit([&](QChar unit) {
        const QString expected = QString::fromLatin1(blanks.contains(unit) ? "12 12" : "none none");
        const QString number = QStringLiteral("12");
        if (!unit.isDigit())
            QVERIFY2(read(number + unit) == expected, qPrintable(hex(unit)));
        if (!unit.isDigit() && unit != QLatin1Char('-') && unit != QLatin1Char('+') && unit != minusSign.at(0))
            QVERIFY2(read(unit + number) == expected, qPrintable(hex(unit)));
    });
}

void WholeNumberTest::onlyAsciiDigitsAreDigits()
{
    forEachUnit([](QChar unit) {
        const bool isDigit = unit >= QLatin1Char('0') && unit <= QLatin1Char('9');
        const QString expected =
            isDigit ? QStringLiteral("%1 %1").arg(unit.unicode() - '0') : QStringLiteral("none none");
        QVERIFY2(read(unit) == expected, qPrintable(hex(unit)));
    });
}

void WholeNumberTest::signsArePlusMinusAndTheMinusSign()
{
    forEachUnit([](QChar unit) {
        if (unit == QLatin1Char('-') || unit == minusSign.at(0))
            QVERIFY2(read(unit + QStringLiteral("12")) == QLatin1String("-12 -12"), qPrintable(hex(unit)));
        else if (unit == QLatin1Char('+'))
            QVERIFY2(read(unit + QStringLiteral("12")) == QLatin1String("12 12"), qPrintable(hex(unit)));
        QVERIFY2(unit.isDigit() || read(unit + QStringLiteral("-12")) != QLatin1String("12 12"), qPrintable(hex(unit)));
    });
}

void WholeNumberTest::noOtherCharacterIsPartOfANumber()
{
    forEachUnit([](QChar unit) {
        if (unit >= QLatin1Char('0') && unit <= QLatin1Char('9'))
            return;
        for (const char *rest : {"2", "23", "234"}) { // also where digits are grouped
            const QString text = QStringLiteral("1") + unit + QString::fromLatin1(rest);
            QVERIFY2(read(text) == QLatin1String("none none"), qPrintable(hex(unit)));
        }
    });
}

// The accepted texts come from Qt 5, whose functions earlier versions of the library called.
void WholeNumberTest::everyCharacterIsReadAsByQt5()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    forEachUnit([](QChar unit) {
        const QString digits = QStringLiteral("12");
        const QString minus = QStringLiteral("-");
        for (const QString &text :
             {QString(unit), unit + digits, digits + unit, QStringLiteral("1") + unit + QStringLiteral("234"),
              unit + digits + unit, unit + minus + digits, minus + unit + digits, minus + digits + unit,
              QString(unit) + unit + digits})
            QVERIFY2(read(text) == readByQt(text), qPrintable(hex(unit)));
    });
#else
    SKIP("This version of Qt knows fewer blanks and no minus sign, and stops at a NUL.");
#endif
}

TEST_SUITE(WholeNumberTest)
#include "tst_WholeNumber.moc"
