// SPDX-License-Identifier: MIT
#include <QtTest>

#include <QBuffer>

#include "reportbase/AttributeWatch.h"

using REPORTGENERATOR::AttributeWatch;
using REPORTGENERATOR::WatchedDevice;

namespace {

QByteArray equalSigns(int count)
{
    return QByteArray(count, '=');
}

/// How much of the document may be read when it arrives in pieces of this size.
template <typename Character>
int readable(const Character *text, int size, int pieceSize)
{
    AttributeWatch watch;
    int taken = 0;
    while (taken < size) {
        const int piece = std::min(pieceSize, size - taken);
        const int more = watch.readable(text + taken, piece);
        taken += more;
        if (watch.isExceeded() != (more < piece))
            return -1;
        if (more < piece)
            break;
    }
    return taken;
}

/// How much of the document may be read: the same for bytes and characters, in whatever pieces they come.
int readable(const QByteArray &document)
{
    const QString text = QString::fromLatin1(document);
    const int size = document.size();
    const int whole = readable(document.constData(), size, size);
    for (const int pieceSize : {1, 2, 3, 1000, 4095, 4096, 4097, size}) {
        if (readable(document.constData(), size, pieceSize) != whole
            || readable(text.constData(), size, pieceSize) != whole)
            return -1;
    }
    return whole;
}

} // namespace

/// An XML document is watched on its way to the reader: it ends in front of the 1,025th attribute of an element.
class AttributeWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsReadableWhole();
    void aTagMayHave1024Attributes();
    void onlyTheTagThatIsReadCounts();
    void whatIsInQuotesIsNotCounted();
    void textAndOtherTagsAreNotCounted();
    void aTagThatIsNotClosedGoesOn();
    void charactersBeyondLatin1AreNoSigns();
    void aDeviceEndsWhereTheWatchSays();
    void aDeviceHandsOnWhatItIsGiven();
    void aDeviceCannotBeWritten();
};

void AttributeWatchTest::nothingIsReadableWhole()
{
    AttributeWatch watch;
    QCOMPARE(watch.readable("", 0), 0);
    QCOMPARE(watch.isExceeded(), false);
}

void AttributeWatchTest::aTagMayHave1024Attributes()
{
    QCOMPARE(readable("<a " + equalSigns(1024) + ">"), 3 + 1024 + 1);
    QCOMPARE(readable("<a " + equalSigns(1025) + ">"), 3 + 1024);
    QCOMPARE(readable("<a " + equalSigns(9000) + ">"), 3 + 1024);
}

void AttributeWatchTest::onlyTheTagThatIsReadCounts()
{
    const QByteArray tag = "<a " + equalSigns(1000) + ">"; // 1004 characters
    QCOMPARE(readable(tag + tag + tag + tag + tag), 5 * 1004);
    QCOMPARE(readable(tag + tag + tag + tag + tag + "<b" + equalSigns(1025)), 5 * 1004 + 2 + 1024);
}

void AttributeWatchTest::whatIsInQuotesIsNotCounted()
{
    QCOMPARE(readable("<a b='" + equalSigns(5000) + "'>"), 6 + 5000 + 2);
    QCOMPARE(readable("<a b=\"" + equalSigns(5000) + "'>" + equalSigns(5000) + "\">"), 6 + 5000 + 2 + 5000 + 2);
    QCOMPARE(readable("<a b='" + equalSigns(5000) + "\">" + equalSigns(5000) + "'>"), 6 + 5000 + 2 + 5000 + 2);
    // the first '=' stands in front of the quotes
    QCOMPARE(readable("<a b='>'" + equalSigns(1023) + "=>"), 8 + 1023);
    QCOMPARE(readable("<a b='' c=\">\"" + equalSigns(1022) + "=>"), 13 + 1022);
}

void AttributeWatchTest::textAndOtherTagsAreNotCounted()
{
    QCOMPARE(readable(equalSigns(5000)), 5000);
    QCOMPARE(readable("<a>" + equalSigns(5000)), 3 + 5000);
    QCOMPARE(readable("</a" + equalSigns(5000)), 3 + 5000);
    QCOMPARE(readable("<!a" + equalSigns(5000)), 3 + 5000);
    QCOMPARE(readable("<?a" + equalSigns(5000)), 3 + 5000);
}

void AttributeWatchTest::aTagThatIsNotClosedGoesOn()
{
    // no document, but the watch comes before the reader that will say so
    const QByteArray tag = "<a" + equalSigns(600) + QByteArray(4096 - 602, ' ');
    QCOMPARE(readable(tag + "<" + equalSigns(600)), 4096 + 1 + 424);
}

void AttributeWatchTest::charactersBeyondLatin1AreNoSigns()
{
    // U+013D and U+3D00: one byte of each is that of '='
    for (const ushort code : {ushort(0x013D), ushort(0x3D00)}) {
        const QString text = QStringLiteral("<a ") + QString(5000, QChar(code));
        AttributeWatch watch;
        QCOMPARE(watch.readable(text.constData(), text.size()), text.size());
    }
}

void AttributeWatchTest::aDeviceEndsWhereTheWatchSays()
{
    QByteArray document = "<a " + equalSigns(5000) + ">";
    QBuffer buffer(&document);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    WatchedDevice device(buffer);
    QCOMPARE(device.atEnd(), false);
    QCOMPARE(device.read(1000), "<a " + equalSigns(997));
    QCOMPARE(device.isExceeded(), false);
    QCOMPARE(device.atEnd(), false);
    QCOMPARE(device.read(1000), equalSigns(27));
    QCOMPARE(device.isExceeded(), true);
    QCOMPARE(device.atEnd(), true);
    char byte = 0;
    QCOMPARE(device.read(&byte, 1), qint64(-1));
}

void AttributeWatchTest::aDeviceHandsOnWhatItIsGiven()
{
    QByteArray document = "<a b='c'>" + QByteArray(10000, 'x') + "</a>";
    QBuffer buffer(&document);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    WatchedDevice device(buffer);
    QVERIFY(device.isSequential());
    QCOMPARE(device.read(5), QByteArray("<a b="));
    QCOMPARE(device.readAll(), document.mid(5));
    QCOMPARE(device.atEnd(), true);
    QCOMPARE(device.isExceeded(), false);
}

void AttributeWatchTest::aDeviceCannotBeWritten()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    WatchedDevice device(buffer);
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QIODevice): ReadOnly device");
    QCOMPARE(device.write("x"), qint64(-1));
    QCOMPARE(buffer.data(), QByteArray());
}

QTEST_GUILESS_MAIN(AttributeWatchTest)
#include "tst_AttributeWatch.moc"
