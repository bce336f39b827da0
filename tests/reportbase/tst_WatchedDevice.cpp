// SPDX-License-Identifier: MIT
#include <QtTest>

#include <QBuffer>
#include <QTextCodec>

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

/// All readable bytes, in pieces of the reader's size.
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

QByteArray encoded(const QByteArray &encoding, const QString &text, bool withMark)
{
    const QString whole = (withMark ? QString(QChar(QChar::ByteOrderMark)) : QString()) + text;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(encoding)->fromUnicode(whole.constData(), whole.size(), &state);
}

} // namespace

/// A device returns an XML document as far as it may be read, in any encoding.
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
    void whatOnlyBeginsLikeADeclarationIsLookedAt();
    void anEncodingThatNobodyKnowsIsLeftToTheReader();
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
    QCOMPARE(device.watch().isRefused(), false);
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
    for (const char *encoding : {"ISO-8859-1", "ISO-8859-15", "windows-1252", "Shift_JIS", "ISO-2022-JP", "UTF-7"})
        QTest::addRow("%s, declared", encoding) << QByteArray(encoding) << false << true;
}

void WatchedDeviceTest::charactersAreCheckedInAnyEncoding()
{
    QFETCH(const QByteArray, encoding);
    QFETCH(const bool, withMark);
    QFETCH(const bool, withDeclaration);
    const QString declaration = QStringLiteral("<?xml version='1.0' encoding = \"") + QString::fromLatin1(encoding)
        + QStringLiteral("\" standalone='yes'?>");
    // A comment, unless characters are mistaken for others.
    const QString begin = (withDeclaration ? declaration : QString()) + QStringLiteral("<!-- <a ") + equalSigns(5000)
        + QStringLiteral(" \" --><a");
    for (const int pieceSize : {8192, 1000, 64}) {
        for (const int before : {0, 1000, 9000}) {
            const QString text = begin + QString(before, QLatin1Char(' '));
            const QByteArray good = encoded(encoding, text + equalSigns(1024) + QLatin1Char('>'), withMark);
            QCOMPARE(readable(good, pieceSize), good);
            // It ends before the first '=' too many, or one character earlier.
            const QByteArray bad = encoded(encoding, text + equalSigns(1025) + QLatin1Char('>'), withMark);
            const QByteArray passedOn = readable(bad, pieceSize);
            QVERIFY(bad.startsWith(passedOn));
            QVERIFY(passedOn.size() < good.size());
            QVERIFY(passedOn.size() >= good.size() - 24);
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
    const QByteArray good = encoded(encoding, begin + equalSigns(1024), false);
    QCOMPARE(readable(good), good);
    QCOMPARE(readable(encoded(encoding, begin + equalSigns(1025), false)), good);
    const QByteArray many = encoded(encoding, QStringLiteral("<a ") + character.repeated(5000), false);
    QCOMPARE(readable(many), many);
}

void WatchedDeviceTest::aDeclarationIsFoundInPieces()
{
    // "+AD0-" is a '=' in UTF-7, and five other characters in any other encoding
    const QByteArray document = "<?xml version='1.0' encoding='UTF-7'?><a " + QByteArray("+AD0-").repeated(1025) + ">";
    constexpr int upToTheLast = 41 + 1024 * 5;
    for (const int pieceSize : {1, 4, 5, 6, 20, 37, 38, 39, 100}) {
        const int passedOn = readable(document, pieceSize).size();
        QVERIFY2(passedOn < upToTheLast + 5, qPrintable(QString::number(pieceSize))); // never the whole of the last one
        QVERIFY2(passedOn > upToTheLast - pieceSize - 5, qPrintable(QString::number(pieceSize)));
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

void WatchedDeviceTest::anEncodingThatNobodyKnowsIsLeftToTheReader()
{
    const QByteArray good = "<?xml version='1.0' encoding='none'?><a" + equalSigns(1024).toLatin1();
    QCOMPARE(readable(good), good);
    QCOMPARE(readable(good + '='), good);
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
