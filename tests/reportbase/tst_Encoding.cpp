// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encoded.h"
#include "text/Encoding.h"

Q_DECLARE_METATYPE(Encoding)

/// The encodings of XML documents, byte by byte.
class EncodingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreKnown_data();
    void namesAreKnown();
    void otherNamesAreNotKnown();
    void declaredEncodingMustMatchTheFirstBytes_data();
    void declaredEncodingMustMatchTheFirstBytes();
    void firstBytesDetermineTheEncoding_data();
    void firstBytesDetermineTheEncoding();
    void charactersAreTheseBytes_data();
    void charactersAreTheseBytes();
    void everyCharacterIsDecodedFromItsBytes_data();
    void everyCharacterIsDecodedFromItsBytes();
    void singleBytesAreDecodedAndEncoded_data();
    void singleBytesAreDecodedAndEncoded();
    void characterThatTheEncodingLacksIsAQuestionMark();
    void decodingEndsBeforeAnIncompleteCharacter_data();
    void decodingEndsBeforeAnIncompleteCharacter();
};

namespace {

const QList<Encoding> unicode{Encoding::Utf8, Encoding::Utf16LittleEndian, Encoding::Utf16BigEndian,
                              Encoding::Utf32LittleEndian, Encoding::Utf32BigEndian};

QString decoded(Encoding encoding, const QByteArray &bytes)
{
    const Encodings::Decoded result = Encodings::decode(encoding, bytes.constData(), bytes.size());
    if (result.isInvalid)
        return QStringLiteral("(invalid)");
    return result.size == bytes.size() ? result.text : QStringLiteral("(incomplete)");
}

} // namespace

void EncodingTest::namesAreKnown_data()
{
    QTest::addColumn<QString>("usual");
    for (const char *name : {"UTF-8", "utf-8", "Utf-8", "UTF8", "UTF_8"})
        QTest::newRow(name) << QStringLiteral("UTF-8");
    for (const char *name : {"ISO-8859-1", "iso-8859-1", "ISO_8859-1", "ISO8859-1", "latin1", "Latin-1"})
        QTest::newRow(name) << QStringLiteral("ISO-8859-1");
    for (const char *name : {"ISO-8859-15", "iso8859-15", "latin9", "LATIN-9"})
        QTest::newRow(name) << QStringLiteral("ISO-8859-15");
    for (const char *name : {"windows-1252", "Windows-1252", "WINDOWS1252", "cp1252", "CP-1252"})
        QTest::newRow(name) << QStringLiteral("windows-1252");
    for (const char *name : {"US-ASCII", "us-ascii", "ASCII"})
        QTest::newRow(name) << QStringLiteral("US-ASCII");
}

void EncodingTest::namesAreKnown()
{
    QFETCH(const QString, usual);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(Encodings::isKnown(name));
    const auto encoding = Encodings::declared(name, std::nullopt);
    QVERIFY(encoding.has_value());
    QCOMPARE(Encodings::name(*encoding), usual);
}

void EncodingTest::otherNamesAreNotKnown()
{
    for (const char *name :
         {"", " ", "UTF", "UTF-7", "UTF-80", "UTF-8 ", "-", "ISO-8859-2", "windows-1251", "Shift_JIS", "EUC-JP",
          "GB18030", "Big5", "KOI8-R", "EBCDIC-CP-US", "System", "locale", "klingon"}) {
        QVERIFY2(!Encodings::isKnown(QString::fromLatin1(name)), name);
        QVERIFY2(!Encodings::declared(QString::fromLatin1(name), std::nullopt), name);
    }
    QVERIFY(!Encodings::isKnown(QString()));
}

void EncodingTest::declaredEncodingMustMatchTheFirstBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ofFirstBytes"); // null if they do not determine it
    QTest::addColumn<QString>("result"); // null if the name is refused
    const auto row = [](const char *name, const char *ofFirstBytes, const char *result) {
        QTest::addRow("%s in %s", name, ofFirstBytes ? ofFirstBytes : "other bytes")
            << QString::fromLatin1(name) << QString::fromLatin1(ofFirstBytes) << QString::fromLatin1(result);
    };
    row("UTF-8", nullptr, "UTF-8");
    row("UTF-8", "UTF-8", "UTF-8");
    row("ISO-8859-1", "UTF-8", nullptr);
    row("US-ASCII", "UTF-8", nullptr);
    row("UTF-8", "UTF-16LE", nullptr);
    row("ISO-8859-1", "UTF-16BE", nullptr);
    row("windows-1252", "UTF-32LE", nullptr);
    for (const char *family : {"UTF-16", "UTF-32"}) {
        const QByteArray little = QByteArray(family) + "LE", big = QByteArray(family) + "BE";
        row(family, little.constData(), little.constData());
        row(family, big.constData(), big.constData());
        row(little.constData(), little.constData(), little.constData());
        row(big.constData(), big.constData(), big.constData());
        row(little.constData(), big.constData(), nullptr);
        row(big.constData(), little.constData(), nullptr);
        row(family, nullptr, nullptr);
        row(little.constData(), nullptr, nullptr);
        row(big.constData(), "UTF-8", nullptr);
    }
    row("UTF-16", "UTF-32LE", nullptr);
    row("UTF-32", "UTF-16LE", nullptr);
}

void EncodingTest::declaredEncodingMustMatchTheFirstBytes()
{
    QFETCH(const QString, name);
    QFETCH(const QString, ofFirstBytes);
    QFETCH(const QString, result);
    std::optional<Encoding> first;
    for (const Encoding encoding : unicode) {
        if (Encodings::name(encoding) == ofFirstBytes)
            first = encoding;
    }
    QCOMPARE(first.has_value(), !ofFirstBytes.isNull());
    const auto declared = Encodings::declared(name, first);
    QCOMPARE(declared ? Encodings::name(*declared) : QString(), result);
}

void EncodingTest::firstBytesDetermineTheEncoding_data()
{
    QTest::addColumn<QString>("name");
    for (const char *bytes : {"FFFE0000", "FFFE00003C000000", "3C000000", "3C0000003F000000"})
        QTest::newRow(bytes) << QStringLiteral("UTF-32LE");
    for (const char *bytes : {"0000FEFF", "0000003C"})
        QTest::newRow(bytes) << QStringLiteral("UTF-32BE");
    for (const char *bytes : {"FFFE", "FFFE3C00", "FFFE0001", "3C00", "3C003F00", "3C000001"})
        QTest::newRow(bytes) << QStringLiteral("UTF-16LE");
    for (const char *bytes : {"FEFF", "FEFF003C", "003C", "003C003F"})
        QTest::newRow(bytes) << QStringLiteral("UTF-16BE");
    for (const char *bytes : {"EFBBBF", "EFBBBF3C"})
        QTest::newRow(bytes) << QStringLiteral("UTF-8");
    for (const char *bytes : {"3C", "3C3F786D", "20", "20003C00", "EFBB", "EFBB3C", "FF", "FE", "00", "0000", "000000"})
        QTest::newRow(bytes) << QString();
}

void EncodingTest::firstBytesDetermineTheEncoding()
{
    QFETCH(const QString, name);
    const QByteArray bytes = QByteArray::fromHex(QTest::currentDataTag());
    const auto encoding = Encodings::ofFirstBytes(bytes.constData(), bytes.size());
    QCOMPARE(encoding ? Encodings::name(*encoding) : QString(), name);
}

void EncodingTest::charactersAreTheseBytes_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    // '<', U+00E4, U+20AC, U+1F4E1
    const auto row = [](Encoding encoding, const char *bytes) {
        QTest::newRow(qPrintable(Encodings::name(encoding))) << encoding << QByteArray(bytes);
    };
    row(Encoding::Utf8, "3c c3 a4 e2 82 ac f0 9f 93 a1");
    row(Encoding::Utf16LittleEndian, "3c 00 e4 00 ac 20 3d d8 e1 dc");
    row(Encoding::Utf16BigEndian, "00 3c 00 e4 20 ac d8 3d dc e1");
    row(Encoding::Utf32LittleEndian, "3c 00 00 00 e4 00 00 00 ac 20 00 00 e1 f4 01 00");
    row(Encoding::Utf32BigEndian, "00 00 00 3c 00 00 00 e4 00 00 20 ac 00 01 f4 e1");
}

void EncodingTest::charactersAreTheseBytes()
{
    QFETCH(const Encoding, encoding);
    QFETCH(const QByteArray, bytes);
    const QString text = QStringLiteral("<\u00E4\u20AC\U0001F4E1");
    QCOMPARE(Encodings::encode(encoding, text).toHex(' '), bytes);
    QCOMPARE(decoded(encoding, QByteArray::fromHex(bytes)), text);
}

void EncodingTest::everyCharacterIsDecodedFromItsBytes_data()
{
    QTest::addColumn<Encoding>("encoding");
    for (const Encoding encoding : unicode)
        QTest::newRow(qPrintable(Encodings::name(encoding))) << encoding;
}

void EncodingTest::everyCharacterIsDecodedFromItsBytes()
{
    QFETCH(const Encoding, encoding);
    QString text;
    for (uint character = 0; character <= 0x10FFFF; ++character) {
        if (character < 0x10000 && !QChar::isSurrogate(character))
            text += QChar(ushort(character));
        else if (character >= 0x10000)
            text.append(QChar(QChar::highSurrogate(character))).append(QChar(QChar::lowSurrogate(character)));
    }
    const QByteArray bytes = encoded(Encodings::name(encoding).toLatin1(), text);
    QVERIFY(decoded(encoding, bytes) == text);
    QVERIFY(Encodings::encode(encoding, text) == bytes);
    if (encoding == Encoding::Utf8)
        QCOMPARE(Encodings::checkUtf8(bytes.constData(), bytes.size()).size, bytes.size());
}

void EncodingTest::singleBytesAreDecodedAndEncoded_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QString>("characters"); // of the bytes 80 to FF, in which U+FFFD is none
    const auto range = [](ushort first, ushort last) {
        QString text;
        for (int character = first; character <= last; ++character)
            text += QChar(ushort(character));
        return text;
    };
    QTest::newRow("ASCII") << Encoding::Ascii << QString(128, QChar(0xFFFD));
    QTest::newRow("ISO 8859-1") << Encoding::Latin1 << range(0x80, 0xFF);
    QTest::newRow("ISO 8859-15") << Encoding::Latin9
                                 << range(0x80, 0xA3) + QStringLiteral("\u20AC\u00A5\u0160\u00A7\u0161")
            + range(0xA9, 0xB3) + QStringLiteral("\u017D\u00B5\u00B6\u00B7\u017E\u00B9\u00BA\u00BB\u0152\u0153\u0178")
            + range(0xBF, 0xFF);
    QTest::newRow("Windows-1252") << Encoding::Windows1252
                                  << QStringLiteral("\u20AC\uFFFD\u201A\u0192\u201E\u2026\u2020\u2021"
                                                    "\u02C6\u2030\u0160\u2039\u0152\uFFFD\u017D\uFFFD"
                                                    "\uFFFD\u2018\u2019\u201C\u201D\u2022\u2013\u2014"
                                                    "\u02DC\u2122\u0161\u203A\u0153\uFFFD\u017E\u0178")
            + range(0xA0, 0xFF);
}

void EncodingTest::singleBytesAreDecodedAndEncoded()
{
    QFETCH(const Encoding, encoding);
    QFETCH(const QString, characters);
    QCOMPARE(characters.size(), 128);
    for (int byte = 0; byte <= 0xFF; ++byte) {
        const QChar character = byte < 0x80 ? QChar(ushort(byte)) : characters.at(byte - 0x80);
        const QByteArray bytes(1, char(byte));
        if (character == QChar(0xFFFD)) {
            QCOMPARE(decoded(encoding, bytes), QStringLiteral("(invalid)"));
            continue;
        }
        QCOMPARE(decoded(encoding, bytes), QString(character));
        QCOMPARE(Encodings::encode(encoding, QString(character)), bytes);
        QVERIFY(Encodings::canEncode(encoding, character.unicode()));
    }
}

void EncodingTest::characterThatTheEncodingLacksIsAQuestionMark()
{
    QCOMPARE(Encodings::encode(Encoding::Latin1, QStringLiteral("a\u20ACb\U0001F4E1c")), QByteArray("a?b?c"));
    QCOMPARE(Encodings::encode(Encoding::Latin9, QStringLiteral("\u20AC\u00A4")), QByteArray("\xA4?"));
    QCOMPARE(Encodings::encode(Encoding::Ascii, QStringLiteral("\u00E4\u007F")), QByteArray("?\x7F"));
    QCOMPARE(Encodings::canEncode(Encoding::Latin1, 0x20AC), false);
    QCOMPARE(Encodings::canEncode(Encoding::Latin9, 0xA4), false);
    QCOMPARE(Encodings::canEncode(Encoding::Ascii, 0x80), false);
    QCOMPARE(Encodings::canEncode(Encoding::Windows1252, 0x81), false);
    for (const Encoding encoding : unicode)
        QCOMPARE(Encodings::canEncode(encoding, 0x10FFFF), true);
}

void EncodingTest::decodingEndsBeforeAnIncompleteCharacter_data()
{
    QTest::addColumn<Encoding>("encoding");
    for (const Encoding encoding : unicode)
        QTest::newRow(qPrintable(Encodings::name(encoding))) << encoding;
}

void EncodingTest::decodingEndsBeforeAnIncompleteCharacter()
{
    QFETCH(const Encoding, encoding);
    const QByteArray first = Encodings::encode(encoding, QStringLiteral("a"));
    const QByteArray both = Encodings::encode(encoding, QStringLiteral("a\U0001F4E1"));
    for (auto size = first.size(); size < both.size(); ++size) {
        const Encodings::Decoded result = Encodings::decode(encoding, both.constData(), size);
        QCOMPARE(result.text, QStringLiteral("a"));
        QCOMPARE(result.size, first.size());
        QCOMPARE(result.isInvalid, false);
    }
}

TEST_SUITE(EncodingTest)
#include "tst_Encoding.moc"
