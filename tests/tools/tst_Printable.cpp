// SPDX-License-Identifier: MIT
#include <console/Console.h>
#include <files/FileName.h>
#include <text/Ascii.h>
#include <text/Printable.h>

#include <QTest>

#include "Rows.h"

/// Characters that may reach a terminal, and escapes of the others.
class PrintableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void charactersThatMoveOrHideTextAreNotPrintable_data();
    void charactersThatMoveOrHideTextAreNotPrintable();
    void lettersAndSignsArePrintable();
    void textIsEscapedByUtf16Units();
    void bytesThatAreNotUtf8AreEscapedOneByOne_data();
    void bytesThatAreNotUtf8AreEscapedOneByOne();
    void layoutRemains();
    void differentNamesAreShownDifferently();
    void onlyUtf8IsDecoded();
    void longTextsAreExaminedToTheLastByte();
    void printableAsciiEndsWithTilde_data();
    void printableAsciiEndsWithTilde();
};

void PrintableTest::charactersThatMoveOrHideTextAreNotPrintable_data()
{
    const Rows<uint, uint> row("first", "last");
    row("C0, ESC and BEL among them", 0x00, 0x1F);
    row("DEL and C1, CSI and OSC among them", 0x7F, 0x9F);
    row("soft hyphen", 0xAD, 0xAD);
    row("combining grapheme joiner", 0x34F, 0x34F);
    row("Arabic letter mark", 0x61C, 0x61C);
    row("Hangul fillers", 0x115F, 0x1160);
    row("Khmer vowels without a shape", 0x17B4, 0x17B5);
    row("Mongolian selectors and vowel separator", 0x180B, 0x180E);
    row("zero-width space, joiners, left-to-right and right-to-left mark", 0x200B, 0x200F);
    row("line and paragraph separator, embeddings, overrides", 0x2028, 0x202E);
    row("word joiner, invisible operators, isolates", 0x2060, 0x206F);
    row("Hangul filler", 0x3164, 0x3164);
    row("halves of surrogate pairs", 0xD800, 0xDFFF);
    row("private characters", 0xE000, 0xF8FF);
    row("variation selectors", 0xFE00, 0xFE0F);
    row("byte order mark", 0xFEFF, 0xFEFF);
    row("halfwidth Hangul filler", 0xFFA0, 0xFFA0);
    row("interlinear annotations", 0xFFF9, 0xFFFB);
    row("no characters", 0xFFFE, 0xFFFF);
    row("musical format controls", 0x1D173, 0x1D17A);
    row("tags and further variation selectors", 0xE0000, 0xE0FFF);
    row("private planes", 0xF0000, 0x10FFFF);
}

void PrintableTest::charactersThatMoveOrHideTextAreNotPrintable()
{
    QFETCH(uint, first);
    QFETCH(uint, last);
    for (uint character = first; character <= last; ++character)
        QVERIFY2(!Printable::isPrintable(character), qPrintable(QString::number(character, 16)));
}

void PrintableTest::lettersAndSignsArePrintable()
{
    for (uint character = 0x20; character < 0x7F; ++character)
        QVERIFY(Printable::isPrintable(character));
    for (const uint character :
         {0xA0U, 0xE9U, 0x300U, 0x431U, 0x5D0U, 0x627U, 0xB5U, 0x3A9U, 0x20ACU, 0x4E2DU, 0xAC00U, 0xFFFDU, 0x1F600U})
        QVERIFY2(Printable::isPrintable(character), qPrintable(QString::number(character, 16)));
}

void PrintableTest::textIsEscapedByUtf16Units()
{
    QString text = QStringLiteral("\u00E9\U0001F600 a\nb\rc\td\u001B[31m\u009D\u200B\u202E\u2028\U000E0041\"\\");
    text += QChar(0xD800);
    QCOMPARE(Printable::onOneLine(text),
             QStringLiteral("\u00E9\U0001F600")
                 + QStringLiteral(R"( a\nb\rc\td\u001b[31m\u009d\u200b\u202e\u2028\udb40\udc41"\\ud800)"));
    QCOMPARE(Printable::quoted(QStringLiteral("\"a\\b\"")), QStringLiteral(R"("\"a\\b\"")"));
    QCOMPARE(Printable::onOneLine(QStringLiteral("a\u202Eb")), QStringLiteral(R"(a\u202eb)"));
    QCOMPARE(Printable::quoted(QStringLiteral("a\u200Bb")), QStringLiteral(R"("a\u200bb")"));
}

void PrintableTest::bytesThatAreNotUtf8AreEscapedOneByOne_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("shown");
    const auto row = [](const char *what, const char *hex, const char *shown) {
        QTest::newRow(what) << 'a' + QByteArray::fromHex(hex) + 'b' << 'a' + QByteArray(shown) + 'b';
    };
    row("no first byte", "80BF", R"(\x80\xbf)");
    row("never a byte of UTF-8", "C0C1F5FF", R"(\xc0\xc1\xf5\xff)");
    row("two bytes, one there", "C3", R"(\xc3)");
    row("three bytes, two there", "E282", R"(\xe2\x82)");
    row("four bytes, three there", "F09F98", R"(\xf0\x9f\x98)");
    row("more bytes than it takes", "E08080F0808080", R"(\xe0\x80\x80\xf0\x80\x80\x80)");
    row("half of a surrogate pair", "EDA080", R"(\xed\xa0\x80)");
    row("beyond Unicode", "F4908080", R"(\xf4\x90\x80\x80)");
    row("UTF-8", "C3A9E282ACF09F9880", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

void PrintableTest::bytesThatAreNotUtf8AreEscapedOneByOne()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, shown);
    QCOMPARE(Printable::escaped(bytes), shown);
    QCOMPARE(FileName(bytes).shown(), QString::fromUtf8(shown));
    QCOMPARE(Printable::decoded(bytes).has_value(), shown == bytes);
}

void PrintableTest::layoutRemains()
{
    QCOMPARE(Printable::escaped(QByteArray("a\n\tb\r\n\x1B]52;c;\x07")), QByteArray("a\n\tb\\r\n\\u001b]52;c;\\u0007"));
}

void PrintableTest::differentNamesAreShownDifferently()
{
    QCOMPARE(FileName("\xFF.xml").shown(), QStringLiteral(R"(\xff.xml)"));
    QCOMPARE(FileName("\\xff.xml").shown(), QStringLiteral(R"(\\xff.xml)"));
    QCOMPARE(FileName("\xEF\xBF\xBD.xml").shown(), QStringLiteral("\uFFFD.xml"));
    QCOMPARE(FileName("\xEF\xBB\xBF.xml").shown(), QStringLiteral(R"(\ufeff.xml)"));
    QCOMPARE(FileName("a\n\x1B\xE2\x80\xAE.xml").shown(), QStringLiteral(R"(a\n\u001b\u202e.xml)"));
}

void PrintableTest::onlyUtf8IsDecoded()
{
    QCOMPARE(Printable::decoded("\xEF\xBB\xBFz\xC3\xA9"), std::optional<QString>(QStringLiteral("\uFEFFz\u00E9")));
    QCOMPARE(Printable::decoded(""), std::optional<QString>(QString()));
    QCOMPARE(Printable::decoded("\xFF"), std::optional<QString>());
    QCOMPARE(Printable::decoded(QByteArray("a\0b", 3)), std::optional<QString>(QString::fromUtf8("a\0b", 3)));
}

void PrintableTest::longTextsAreExaminedToTheLastByte()
{
    QVERIFY(Printable::isUtf8(QByteArray()));
    for (const int size : {1, 255, 256, 257, 600}) {
        const QByteArray letters(size, 'x');
        QVERIFY(Printable::isUtf8(letters));
        for (int at = 0; at < size; ++at) {
            QByteArray bytes = letters;
            bytes[at] = '\xE4'; // which needs two more
            QVERIFY2(!Printable::isUtf8(bytes), qPrintable(QString::number(at)));
            bytes.replace(at, 1, "\xE2\x82\xAC"); // across the pieces in which a text is examined
            QVERIFY2(Printable::isUtf8(bytes), qPrintable(QString::number(at)));
        }
    }
}

void PrintableTest::printableAsciiEndsWithTilde_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 3, 4, 5, 8, 11})
        QTest::newRow(qPrintable(QString::number(size))) << size;
}

void PrintableTest::printableAsciiEndsWithTilde()
{
    QFETCH(int, size);
    QVERIFY(REPORTGENERATOR::isPrintableAscii(QString()));
    for (int at = 0; at < size; ++at) {
        QString text(size, QLatin1Char('x'));
        for (uint unit = 0; unit <= 0xFFFF; ++unit) {
            text[at] = QChar(ushort(unit));
            QVERIFY2(REPORTGENERATOR::isPrintableAscii(text) == (unit >= ' ' && unit <= '~'),
                     qPrintable(QString::number(unit, 16)));
        }
    }
}

TEST_SUITE(PrintableTest)
#include "tst_Printable.moc"
