// SPDX-License-Identifier: MIT
#include <QtTest>

#include <QBuffer>

#include "Encoded.h"
#include "reportbase/WatchedDevice.h"

using REPORTGENERATOR::WatchedDevice;

namespace {

QString equalSigns(int count)
{
    return QString(count, QLatin1Char('='));
}

/// Returns a limited number of bytes at a time, as a pipe may.
class SlowDevice : public QIODevice
{
public:
    SlowDevice(const QByteArray &content, int pieceSize) : m_content(content), m_pieceSize(pieceSize)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_position == m_content.size(); }

protected:
    qint64 readData(char *bytes, qint64 size) override
    {
        const int piece = int(std::min({size, qint64(m_content.size() - m_position), qint64(m_pieceSize)}));
        std::copy_n(m_content.constData() + m_position, piece, bytes);
        m_position += piece;
        return piece;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_content;
    int m_position = 0;
    int m_pieceSize;
};

/// Everything that is readable, in pieces of the reader's size.
QByteArray readable(const QByteArray &document, int pieceSize = 8192)
{
    SlowDevice slow(document, pieceSize);
    WatchedDevice device(slow);
    QByteArray bytes;
    char piece[8192];
    for (qint64 read = 1; read > 0;) {
        read = device.read(piece, sizeof(piece));
        bytes.append(piece, int(std::max(read, qint64(0))));
    }
    return bytes;
}

} // namespace

/// A device returns an XML document in any encoding in UTF-8, as far as it may be read.
class WatchedDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deviceReturnsTheWholeDocument();
    void deviceEndsWhereTheWatchRefuses();
    void deviceCannotBeWritten();
    void aDocumentThatComesSlowlyBeginsWithFourBytes();
    void documentOfLessThanFourBytesIsReturned();
    void charactersAreCheckedInAnyEncoding_data();
    void charactersAreCheckedInAnyEncoding();
    void bytesOfOtherCharactersAreNotTakenForMarkup_data();
    void bytesOfOtherCharactersAreNotTakenForMarkup();
    void aDeclarationIsFoundInPieces();
    void bytesOfACharacterMayComeInPieces_data();
    void bytesOfACharacterMayComeInPieces();
    void documentEndsBeforeWrongBytes_data();
    void documentEndsBeforeWrongBytes();
    void whatOnlyBeginsLikeADeclarationIsLookedAt();
    void documentEndsInADeclarationOfAnotherEncoding_data();
    void documentEndsInADeclarationOfAnotherEncoding();
    void byteOrderMarkOfUtf8AllowsNoOtherEncoding();
    void anEncodingIsNotHidden_data();
    void anEncodingIsNotHidden();
};

void WatchedDeviceTest::deviceReturnsTheWholeDocument()
{
    QByteArray document = "<a b='c'>" + QByteArray(20000, 'x') + "</a>";
    QBuffer buffer(&document);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    WatchedDevice device(buffer);
    QVERIFY(device.isSequential());
    QCOMPARE(device.read(5), QByteArray("<a b="));
    QCOMPARE(device.atEnd(), false);
    QCOMPARE(device.readAll(), document.mid(5));
    QCOMPARE(device.atEnd(), true);
    QCOMPARE(device.watch().refusal(), QString());
}

void WatchedDeviceTest::deviceEndsWhereTheWatchRefuses()
{
    QByteArray document = "<a " + equalSigns(5000).toLatin1() + ">";
    QBuffer buffer(&document);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    WatchedDevice device(buffer);
    QCOMPARE(device.atEnd(), false);
    QCOMPARE(device.read(1000), document.left(1000));
    QCOMPARE(device.atEnd(), false);
    QCOMPARE(device.read(1000), document.mid(1000, 27));
    QCOMPARE(device.watch().isRefused(), true);
    QCOMPARE(device.atEnd(), true);
    char byte = 0;
    QCOMPARE(device.read(&byte, 1), qint64(-1));
}

void WatchedDeviceTest::deviceCannotBeWritten()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    WatchedDevice device(buffer);
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QIODevice): ReadOnly device");
    QCOMPARE(device.write("x"), qint64(-1));
    QCOMPARE(buffer.data(), QByteArray());
}

void WatchedDeviceTest::aDocumentThatComesSlowlyBeginsWithFourBytes()
{
    SlowDevice slow("<abc/>", 1);
    WatchedDevice device(slow);
    char piece[100];
    QCOMPARE(device.read(piece, sizeof(piece)), qint64(4));
    QCOMPARE(device.read(piece, sizeof(piece)), qint64(1));
    QCOMPARE(device.atEnd(), false);

    // What is left of them in UTF-8 without a byte order mark may be less.
    for (const QByteArray &document : {QByteArray("\xEF\xBB\xBF<abc/>"), encoded("UTF-16", QStringLiteral("<abc/>"))}) {
        for (const int pieceSize : {1, 4, 5, 7}) {
            SlowDevice slowDocument(document, pieceSize);
            WatchedDevice watchedDocument(slowDocument);
            QVERIFY(watchedDocument.read(piece, sizeof(piece)) >= 4);
        }
    }
}

void WatchedDeviceTest::documentOfLessThanFourBytesIsReturned()
{
    QCOMPARE(readable(QByteArray()), QByteArray());
    QCOMPARE(readable("<a"), QByteArray("<a"));
    QCOMPARE(readable("<a/", 1), QByteArray("<a/"));
}

void WatchedDeviceTest::charactersAreCheckedInAnyEncoding_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("withMark");
    QTest::addColumn<bool>("withDeclaration");
    for (const char *encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("%s", encoding) << QByteArray(encoding) << false << false;
        QTest::addRow("%s, declared", encoding) << QByteArray(encoding) << false << true;
    }
    for (const char *encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"})
        QTest::addRow("%s with mark", encoding) << QByteArray(encoding) << true << false;
    for (const char *encoding : {"ISO-8859-1", "ISO-8859-15", "windows-1252", "US-ASCII"})
        QTest::addRow("%s, declared", encoding) << QByteArray(encoding) << false << true;
}

void WatchedDeviceTest::charactersAreCheckedInAnyEncoding()
{
    QFETCH(const QByteArray, encoding);
    QFETCH(const bool, withMark);
    QFETCH(const bool, withDeclaration);
    const QString mark = withMark ? QString(QChar(QChar::ByteOrderMark)) : QString();
    const auto declaration = [&](const QByteArray &name) {
        return withDeclaration ? QStringLiteral("<?xml version='1.0' encoding = \"") + QString::fromLatin1(name)
                               : QString();
    };
    // Everything after the name stays in its column.
    const QString blanks(encoding.size() - 5, QLatin1Char(' '));
    const QString afterName = QString::fromLatin1(withDeclaration ? "\" standalone='yes'?>" : "");
    const QString afterUtf8 = QString::fromLatin1(withDeclaration ? "\"%1 standalone='yes'?>" : "%1")
                                  .arg(withDeclaration ? blanks : QString());
    // A comment, unless characters are mistaken for others.
    const QString begin = QStringLiteral("<!-- <a ") + equalSigns(5000) + QStringLiteral(" \" --><a");
    for (const int pieceSize : {8192, 1000, 64, 1}) {
        for (const int before : {0, 1000, 9000}) {
            const auto document = [&](int count) {
                return begin + QString(before, QLatin1Char(' ')) + equalSigns(count);
            };
            const QByteArray expected = (declaration("UTF-8") + afterUtf8 + document(1024)).toUtf8();
            for (const int count : {1024, 1025}) {
                const QString text = mark + declaration(encoding) + afterName + document(count);
                QCOMPARE(readable(encoded(encoding, text), pieceSize), expected);
            }
        }
    }
}

void WatchedDeviceTest::bytesOfOtherCharactersAreNotTakenForMarkup_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("character");
    // U+0122, U+0127, U+013C, U+013D, U+013E: the second byte is that of a quote, '<', '=' or '>'
    for (const int code : {0x0122, 0x0127, 0x013C, 0x013D, 0x013E}) {
        QTest::addRow("U+%04X, UTF-16LE", code) << QByteArray("UTF-16LE") << QString(QChar(code));
        QTest::addRow("U+%04X, UTF-16BE", code) << QByteArray("UTF-16BE") << QString(QChar(code));
    }
}

void WatchedDeviceTest::bytesOfOtherCharactersAreNotTakenForMarkup()
{
    QFETCH(const QByteArray, encoding);
    QFETCH(const QString, character);
    const QString begin = QStringLiteral("<") + character + QString(5000, QLatin1Char(' '));
    const QString good = begin + equalSigns(1024);
    QCOMPARE(readable(encoded(encoding, good)), good.toUtf8());
    QCOMPARE(readable(encoded(encoding, begin + equalSigns(1025))), good.toUtf8());
    const QString many = QStringLiteral("<a ") + (character + QLatin1Char(' ')).repeated(5000);
    QCOMPARE(readable(encoded(encoding, many)), many.toUtf8());
}

void WatchedDeviceTest::aDeclarationIsFoundInPieces()
{
    const QByteArray document = "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE4\xF6'/>";
    for (const int pieceSize : {1, 4, 5, 6, 20, 37, 38, 39, 100})
        QCOMPARE(readable(document, pieceSize),
                 QByteArray("<?xml version='1.0' encoding='UTF-8'     ?><a b='\xC3\xA4\xC3\xB6'/>"));
}

void WatchedDeviceTest::bytesOfACharacterMayComeInPieces_data()
{
    QTest::addColumn<QByteArray>("encoding");
    for (const char *encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"})
        QTest::newRow(encoding) << QByteArray(encoding);
}

void WatchedDeviceTest::bytesOfACharacterMayComeInPieces()
{
    QFETCH(const QByteArray, encoding);
    const QString text = QStringLiteral("<a>\u00E4\u20AC\U0001F600</a>");
    for (int pieceSize = 1; pieceSize < 12; ++pieceSize)
        QCOMPARE(readable(encoded(encoding, text), pieceSize), text.toUtf8());
}

void WatchedDeviceTest::documentEndsBeforeWrongBytes_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &document, const char *expected) {
        QTest::newRow(name) << document << QByteArray(expected);
    };
    row("a byte that is never in UTF-8", "<a>\xFF</a>", "<a>");
    row("the second byte of a character alone", "<a>\x80</a>", "<a>");
    row("a character of UTF-8 without its end", "<a>\xE2\x82</a>", "<a>");
    row("a character of UTF-8 without its end at the end", "<a/>\xE2\x82", "<a/>");
    row("a longer form of a character", "<a>\xC1\x81</a>", "<a>");
    row("half of a surrogate pair in UTF-8", "<a>\xED\xA0\x80</a>", "<a>");
    row("a number beyond Unicode", "<a>\xF4\x90\x80\x80</a>", "<a>");
    row("UTF-8 where ASCII is declared", "<?xml version='1.0' encoding='ASCII'?><a>\xC3\xA4",
        "<?xml version='1.0' encoding='UTF-8'?><a>");
    row("a byte without a character in windows-1252", "<?xml version='1.0' encoding='cp1252'?><a>\x80\x81",
        "<?xml version='1.0' encoding='UTF-8' ?><a>\xE2\x82\xAC");
    row("half of a surrogate pair in UTF-16", QByteArray::fromHex("3C00 6100 00D8 3E00"), "<a");
    row("the second half first", QByteArray::fromHex("003C 0061 DC00 D800"), "<a");
    row("half of a character at the end", QByteArray::fromHex("3C00 6100 3E"), "<a");
    row("a surrogate in UTF-32", QByteArray::fromHex("3C000000 61000000 00D80000"), "<a");
    row("a number beyond Unicode in UTF-32", QByteArray::fromHex("0000003C 00000061 00110000"), "<a");
    row("in a declaration", QByteArray::fromHex("3C00 3F00 00D8"), "<?");
}

void WatchedDeviceTest::documentEndsBeforeWrongBytes()
{
    QFETCH(const QByteArray, document);
    QFETCH(const QByteArray, expected);
    for (const int pieceSize : {1, 2, 3, 5, 8192}) {
        SlowDevice slow(document, pieceSize);
        WatchedDevice device(slow);
        QCOMPARE(device.readAll(), expected);
        QCOMPARE(device.watch().refusal(), QStringLiteral("Encountered incorrectly encoded content."));
    }
}

void WatchedDeviceTest::whatOnlyBeginsLikeADeclarationIsLookedAt()
{
    const QByteArray good = "<?xm <a '?><a" + equalSigns(1024).toLatin1();
    const QByteArray styled = "<?xml-style encoding='UTF-16'?><a" + equalSigns(1024).toLatin1();
    for (const int pieceSize : {1, 4, 5, 6, 8192}) {
        QCOMPARE(readable(good, pieceSize), good);
        QCOMPARE(readable(good + '=', pieceSize), good);
        QCOMPARE(readable(styled, pieceSize), styled);
        QCOMPARE(readable(styled + '=', pieceSize), styled);
    }
}

void WatchedDeviceTest::documentEndsInADeclarationOfAnotherEncoding_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QString>("refusal");
    const auto row = [](const QByteArray &encoding, const char *encodingOfBytes, bool isKnown) {
        const QByteArray declaration = "<?xml version='1.0' encoding='" + encoding + "'?";
        const QByteArray document = encoded(encodingOfBytes, QString::fromLatin1(declaration + "><a/>"));
        QTest::addRow("%s in %s", encoding.constData(), encodingOfBytes)
            << document << declaration
            << (isKnown ? QStringLiteral("the XML declaration names the encoding '%1', but the document begins in "
                                         "another one")
                        : QStringLiteral("the encoding '%1' is not supported, only UTF-8, UTF-16, UTF-32, US-ASCII, "
                                         "ISO-8859-1, ISO-8859-15 and windows-1252"))
                   .arg(QString::fromLatin1(encoding));
    };
    for (const char *unknown : {"none", "Shift_JIS", "ISO-2022-JP", "UTF-7", "ISO-8859-2", "windows-1251"})
        row(unknown, "UTF-8", false);
    for (const char *other : {"UTF-8", "ISO-8859-1", "US-ASCII", "UTF-32", "UTF-16BE"})
        row(other, "UTF-16LE", true);
    for (const char *other : {"utf-8", "windows-1252", "UTF-16", "UTF-32LE"})
        row(other, "UTF-32BE", true);
    for (const char *other : {"UTF-16", "UTF-16LE", "UTF-32", "UTF-32BE"})
        row(other, "UTF-8", true);
}

void WatchedDeviceTest::documentEndsInADeclarationOfAnotherEncoding()
{
    QFETCH(const QByteArray, document);
    QFETCH(const QByteArray, expected);
    QFETCH(const QString, refusal);
    for (const int pieceSize : {1, 7, 8192}) {
        SlowDevice slow(document, pieceSize);
        WatchedDevice device(slow);
        QCOMPARE(device.readAll(), expected); // without the '>', so that the reader reports no error of its own
        QCOMPARE(device.watch().refusal(), refusal);
    }
}

void WatchedDeviceTest::byteOrderMarkOfUtf8AllowsNoOtherEncoding()
{
    const QByteArray declaration = "<?xml version='1.0' encoding='ISO-8859-1'?";
    QCOMPARE(readable("\xEF\xBB\xBF" + declaration + "><a/>"), declaration);
}

void WatchedDeviceTest::anEncodingIsNotHidden_data()
{
    QTest::addColumn<QByteArray>("declaration");
    for (const char *rest : {"encoding='UTF-8' encoding='UTF-7'", "encoding='UTF&#45;7'", "encoding='UTF&#x2D;7'",
                             "xmlns:encoding='UTF-8' encoding='UTF-7'", "xmlns='encoding=x' encoding='UTF-7'",
                             "xmlns:a='?>' encoding='UTF-7'", "xmlns='?>' encoding='UTF-7'"})
        QTest::newRow(rest) << "<?xml version='1.0' " + QByteArray(rest) + "?>";
}

void WatchedDeviceTest::anEncodingIsNotHidden()
{
    QFETCH(const QByteArray, declaration);
    for (const int pieceSize : {1, 50, 8192}) {
        SlowDevice slow(declaration + "<a " + QByteArray("+AD0-").repeated(1025) + ">", pieceSize);
        WatchedDevice device(slow);
        const QByteArray passedOn = device.readAll();
        QCOMPARE(device.watch().refusal(),
                 QStringLiteral("the XML declaration has to consist of version, encoding and standalone"));
        QVERIFY(declaration.startsWith(passedOn));
    }
}

TEST_SUITE(WatchedDeviceTest)
#include "tst_WatchedDevice.moc"
