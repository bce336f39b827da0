// SPDX-License-Identifier: MIT
#include <QtTest>

#include <reportbase/RepresentationSplitter.h>

#include "HeapPeak.h"
#include "Note.h"

using namespace REPORTGENERATOR;
using State = RepresentationSize::State;

Q_DECLARE_METATYPE(REPORTGENERATOR::RepresentationSize::State)

namespace {

constexpr qint64 noteClass = 0x1A2B3C4D9E8F7061; // the low 32 bits lead a representation

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

const QByteArray hi = bytes("9e8f7061 00000007 54 00000002 6869");
const QByteArray yo = bytes("9e8f7061 00000008 54 00000003 796f21");
// "RGZ1", the length, and then the output of qCompress at level 0: the size, one stored block, its checksum.
const QByteArray compressedHi = bytes("52475a31 0000001e 0000000f 7801 01 0f00 f0ff"
                                      "9e8f7061 00000007 54 00000002 6869 1f22032d");

ReadLimits withSize(qint64 largestSize)
{
    ReadLimits limits;
    limits.setLargestSize(largestSize);
    return limits;
}

/// All representations that can be taken now.
QVector<QByteArray> taken(RepresentationSplitter &splitter)
{
    QVector<QByteArray> all;
    while (const std::optional<QByteArray> representation = splitter.Take())
        all.append(*representation);
    return all;
}

} // namespace

class RepresentationSplitterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizeIsReadFromTheFirstBytes_data();
    void sizeIsReadFromTheFirstBytes();
    void compressedMarkLeadsCompressedRepresentations();
    void twoDocumentsInOnePacketAreBothTaken();
    void documentsAreWholeWhereverTheStreamIsSplit();
    void singleBytesMakeUpWholeDocuments();
    void largestAcceptedSizeIsTakenAndOneByteMoreIsRefused();
    void hostileLengthIsRefusedByItsEightBytes_data();
    void hostileLengthIsRefusedByItsEightBytes();
    void compressedDataAreRefusedUnlessAccepted();
    void compressedDataThatDeclareTooMuchAreRefusedByTwelveBytes();
    void documentBeforeARefusedOneIsStillTaken();
    void bytesAfterAFailureAreDiscarded();
    void moreThanFitsInAByteArrayIsRefusedBeforeItIsCopied();
    void appendedBytesAreCopied();
    void memoryGrowsWithReceivedBytesOnly();
    void idleSplitterHoldsNoMemory();
    void workIsLinearInTheReceivedBytes();
};

void RepresentationSplitterTest::sizeIsReadFromTheFirstBytes_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<State>("state");
    QTest::addColumn<qint64>("size");
    QTest::newRow("nothing") << QByteArray() << State::NeedsMoreBytes << qint64(0);
    QTest::newRow("seven bytes") << hi.left(7) << State::NeedsMoreBytes << qint64(0);
    QTest::newRow("eight bytes") << hi.left(8) << State::Known << qint64(15);
    QTest::newRow("all bytes and more") << hi + hi << State::Known << qint64(15);
    QTest::newRow("compressed") << compressedHi.left(8) << State::Known << qint64(38);
    QTest::newRow("no members") << bytes("9e8f7061 00000000") << State::Known << qint64(8);
    QTest::newRow("largest length") << bytes("9e8f7061 7fffffff") << State::Known << qint64(2147483655);
    QTest::newRow("negative length") << bytes("9e8f7061 ffffffff") << State::Invalid << qint64(0);
    QTest::newRow("another class") << bytes("0000abcd 00000000") << State::Invalid << qint64(0);
    QTest::newRow("XML") << QByteArrayLiteral("<?xml version") << State::Invalid << qint64(0);
}

void RepresentationSplitterTest::sizeIsReadFromTheFirstBytes()
{
    QFETCH(QByteArray, first);
    QFETCH(State, state);
    QFETCH(qint64, size);
    const RepresentationSize result = SizeOfRepresentation(first, noteClass);
    QCOMPARE(int(result.state), int(state));
    QCOMPARE(result.bytes, size);
}

void RepresentationSplitterTest::compressedMarkLeadsCompressedRepresentations()
{
    QCOMPARE(CompressedMark, quint32(0x52475A31));
    const Note note(QStringLiteral("hi"));
    QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(0), compressedHi);
}

void RepresentationSplitterTest::twoDocumentsInOnePacketAreBothTaken()
{
    RepresentationSplitter splitter(noteClass);
    splitter.Append(hi + yo + compressedHi + hi.left(3));
    QCOMPARE(taken(splitter), (QVector<QByteArray>{hi, yo, compressedHi}));
    QCOMPARE(splitter.GetPendingSize(), 3);
    QVERIFY(splitter.GetErrorString().isNull());
    splitter.Append(hi.mid(3));
    QCOMPARE(taken(splitter), QVector<QByteArray>{hi});
    QCOMPARE(splitter.GetPendingSize(), 0);
}

void RepresentationSplitterTest::documentsAreWholeWhereverTheStreamIsSplit()
{
    const QByteArray stream = hi + compressedHi + yo;
    for (int first = 0; first <= stream.size(); ++first) {
        for (int second = first; second <= stream.size(); ++second) {
            RepresentationSplitter splitter(noteClass);
            QVector<QByteArray> all;
            for (const QByteArray &packet :
                 {stream.left(first), stream.mid(first, second - first), stream.mid(second)}) {
                splitter.Append(packet);
                all += taken(splitter);
            }
            QCOMPARE(all, (QVector<QByteArray>{hi, compressedHi, yo}));
            QCOMPARE(splitter.GetPendingSize(), 0);
        }
    }
}

void RepresentationSplitterTest::singleBytesMakeUpWholeDocuments()
{
    RepresentationSplitter splitter(noteClass);
    QVector<QByteArray> all;
    for (const char byte : hi + compressedHi + hi) {
        splitter.Append(QByteArray(1, byte));
        all += taken(splitter);
    }
    QCOMPARE(all, (QVector<QByteArray>{hi, compressedHi, hi}));
}

void RepresentationSplitterTest::largestAcceptedSizeIsTakenAndOneByteMoreIsRefused()
{
    RepresentationSplitter splitter(noteClass, withSize(15));
    splitter.Append(hi + yo.left(8));
    QCOMPARE(taken(splitter), QVector<QByteArray>{hi});
    QCOMPARE(splitter.GetErrorString(),
             QStringLiteral("binary data: the representation takes 16 bytes, but no more than 15 are accepted"));
}

void RepresentationSplitterTest::hostileLengthIsRefusedByItsEightBytes_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QString>("why");
    QTest::newRow("2 GiB") << bytes("9e8f7061 7fffffff")
                           << QStringLiteral("the representation takes 2147483655 bytes, but no more than 4194304 are "
                                             "accepted");
    QTest::newRow("2 GiB, compressed") << bytes("52475a31 7fffffff")
                                       << QStringLiteral("the representation takes 2147483655 bytes, but no more than "
                                                         "4194304 are accepted");
    QTest::newRow("one byte over 4 MiB") << bytes("9e8f7061 003ffff9")
                                         << QStringLiteral("the representation takes 4194305 bytes, but no more than "
                                                           "4194304 are accepted");
    QTest::newRow("negative") << bytes("9e8f7061 ffffffff")
                              << QStringLiteral("the record's length is -1, which is less than 0");
    QTest::newRow("another class") << bytes("0000abcd 00000000")
                                   << QStringLiteral("the leading word is 0x0000ABCD, not 0x9E8F7061");
    QTest::newRow("XML") << QByteArrayLiteral("<?xml version")
                         << QStringLiteral("the leading word is 0x3C3F786D, not 0x9E8F7061");
}

void RepresentationSplitterTest::hostileLengthIsRefusedByItsEightBytes()
{
    QFETCH(QByteArray, first);
    QFETCH(QString, why);
    RepresentationSplitter splitter(noteClass);
    splitter.Append(first.left(7));
    QVERIFY(!splitter.Take());
    QVERIFY(splitter.GetErrorString().isNull());
    splitter.Append(first.mid(7));
    QVERIFY(!splitter.Take());
    QCOMPARE(splitter.GetErrorString(), QStringLiteral("binary data: ") + why);
    QCOMPARE(splitter.GetPendingSize(), 0);
}

void RepresentationSplitterTest::compressedDataAreRefusedUnlessAccepted()
{
    ReadLimits limits;
    limits.setAcceptCompressed(false);
    RepresentationSplitter splitter(noteClass, limits);
    splitter.Append(hi + compressedHi.left(8));
    QCOMPARE(taken(splitter), QVector<QByteArray>{hi});
    QCOMPARE(splitter.GetErrorString(),
             QStringLiteral("binary data: the representation is compressed, but only uncompressed ones are accepted"));
}

void RepresentationSplitterTest::compressedDataThatDeclareTooMuchAreRefusedByTwelveBytes()
{
    RepresentationSplitter splitter(noteClass);
    const QByteArray bomb = bytes("52475a31 00001000 00400001"); // 4 KiB that declare 4 MiB and a byte
    splitter.Append(bomb.left(11));
    QVERIFY(!splitter.Take());
    QVERIFY(splitter.GetErrorString().isNull());
    splitter.Append(bomb.mid(11));
    QVERIFY(!splitter.Take());
    QCOMPARE(splitter.GetErrorString(),
             QStringLiteral(
                 "binary data: 4096 compressed bytes declare 4194305 bytes, but no more than 4194304 are accepted"));
}

void RepresentationSplitterTest::documentBeforeARefusedOneIsStillTaken()
{
    RepresentationSplitter splitter(noteClass);
    splitter.Append(hi + bytes("0000abcd 00000000"));
    const std::optional<QByteArray> first = splitter.Take();
    QVERIFY(first.has_value());
    QCOMPARE(*first, hi);
    QVERIFY(splitter.GetErrorString().isNull());
    QVERIFY(!splitter.Take());
    QVERIFY(!splitter.GetErrorString().isNull());
}

void RepresentationSplitterTest::bytesAfterAFailureAreDiscarded()
{
    RepresentationSplitter splitter(noteClass);
    splitter.Append(bytes("0000abcd 00000000"));
    QVERIFY(!splitter.Take());
    const QString error = splitter.GetErrorString();
    splitter.Append(hi);
    QVERIFY(!splitter.Take());
    QCOMPARE(splitter.GetPendingSize(), 0);
    QCOMPARE(splitter.GetErrorString(), error);
}

void RepresentationSplitterTest::moreThanFitsInAByteArrayIsRefusedBeforeItIsCopied()
{
    RepresentationSplitter splitter(noteClass, ReadLimits());
    splitter.Append(hi.left(9));
    // The bytes are not read, so none are needed.
    const char nothing = 0;
    const auto tooMany = QByteArray::fromRawData(&nothing, 2147483392);
    const HeapPeak peak;
    splitter.Append(tooMany);
    QCOMPARE(splitter.GetErrorString(),
             QStringLiteral("binary data: the representation takes 2147483401 bytes, but no more than 2147483392 are "
                            "accepted"));
    QCOMPARE(splitter.GetPendingSize(), 0);
    QVERIFY(peak.bytes() < 4096);
}

void RepresentationSplitterTest::appendedBytesAreCopied()
{
    QByteArray buffer = hi;
    RepresentationSplitter splitter(noteClass);
    splitter.Append(QByteArray::fromRawData(buffer.constData(), buffer.size()));
    buffer.fill('x');
    QCOMPARE(taken(splitter), QVector<QByteArray>{hi});
}

void RepresentationSplitterTest::memoryGrowsWithReceivedBytesOnly()
{
    RepresentationSplitter splitter(noteClass, ReadLimits()); // up to 2 GiB are accepted
    const HeapPeak peak;
    splitter.Append(bytes("9e8f7061 7ffffef8")); // the largest size
    QVERIFY(!splitter.Take());
    QVERIFY(peak.bytes() < 4096);
    QVERIFY(splitter.GetErrorString().isNull());
    QCOMPARE(splitter.GetPendingSize(), 8);
}

void RepresentationSplitterTest::idleSplitterHoldsNoMemory()
{
    constexpr int size = 1 << 20;
    RepresentationSplitter splitter(noteClass, withSize(size));
    const HeapPeak peak;
    splitter.Append(bytes("9e8f7061 000ffff8") + QByteArray(size - 8, 'x'));
    QCOMPARE(splitter.Take().value_or(QByteArray()).size(), size);
    QCOMPARE(splitter.GetPendingSize(), 0);
    QVERIFY(peak.bytes() >= 2 * size); // the representation was stored, and copied for the caller
    QVERIFY(peak.inUse() < 4096);
}

void RepresentationSplitterTest::workIsLinearInTheReceivedBytes()
{
    // One representation of 16 MB in pieces of 8 bytes: searching or copying all received bytes each time would move 16
    // TB.
    constexpr int size = 16000000;
    QByteArray head = bytes("9e8f7061");
    QDataStream(&head, QIODevice::Append) << qint32(size - 8);
    RepresentationSplitter splitter(noteClass, withSize(size));
    splitter.Append(head);
    const QByteArray piece(8, 'x');
    for (int sent = 16; sent < size; sent += 8) {
        splitter.Append(piece);
        QVERIFY(!splitter.Take());
    }
    splitter.Append(piece);
    const std::optional<QByteArray> whole = splitter.Take();
    QVERIFY(whole.has_value());
    QCOMPARE(whole->size(), size);

    // A million small ones in one packet: removing each from the front would move 7.5 TB.
    splitter.Append(hi.repeated(1000000));
    for (int i = 0; i < 1000000; ++i)
        QVERIFY(splitter.Take() == hi);
    QVERIFY(!splitter.Take());

    // One taken for each packet of two, so that many are always waiting.
    for (int i = 0; i < 200000; ++i) {
        splitter.Append(hi + hi);
        QVERIFY(splitter.Take() == hi);
    }
    QCOMPARE(splitter.GetPendingSize(), 200000 * hi.size());
}

TEST_SUITE(RepresentationSplitterTest)
#include "tst_RepresentationSplitter.moc"
