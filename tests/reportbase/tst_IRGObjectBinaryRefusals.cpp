// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include "Note.h"
#include "PipedFile.h"

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// The compressed form around the output of qCompress, or around something else.
QByteArray compressedForm(const QByteArray &payload)
{
    QByteArray form("RGZ1");
    QDataStream stream(&form, QIODevice::Append);
    stream << qint32(payload.size());
    return form + payload;
}

const QByteArray hi = bytes("9e8f7061 00000007 54 00000002 6869");

} // namespace

class IRGObjectBinaryRefusalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void damagedDataAreRefusedWithTheirReason_data();
    void damagedDataAreRefusedWithTheirReason();
    void damagedDataInAPipeAreRefusedWithTheirReason_data();
    void damagedDataInAPipeAreRefusedWithTheirReason();
    void dataAfterTheRecordAreOnlyAcceptedInAStream();
    void membersThatEndBeforeTheRecordDoAreRefused();
    void membersThatContinueAfterTheRecordAreRefused();
    void readersStopAtTheEndOfTheirRecord();
    void anEnormousFileIsRefusedByItsHead();
    void aStreamThatCannotBeReadIsRefused();
    void unreadableFilesAreRefusedWithTheirReason();
    void readErrorIsNotReportedAsShortData();
    void errorStringDescribesOnlyTheLastBinaryOperation_data();
    void errorStringDescribesOnlyTheLastBinaryOperation();
    void streamThatEndsEarlyIsRefused_data();
    void streamThatEndsEarlyIsRefused();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QScopedPointer<QTemporaryDir> m_folder;
};

void IRGObjectBinaryRefusalsTest::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void IRGObjectBinaryRefusalsTest::damagedDataAreRefusedWithTheirReason_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *name, const QByteArray &data, const char *why) {
        QTest::newRow(name) << data << QString::fromLatin1(why);
    };
    row("nothing", "", "the leading word and the length take 8 bytes, but only 0 are there");
    row("half a head", bytes("9e8f7061 000000"), "the leading word and the length take 8 bytes, but only 7 are there");
    row("another class", bytes("0000abcd 00000000"), "the leading word is 0x0000ABCD, not 0x9E8F7061 (Note)");
    row("another byte order", bytes("61708f9e 00000000"), "the leading word is 0x61708F9E, not 0x9E8F7061 (Note)");
    row("negative length", bytes("9e8f7061 ffffffff 54"), "the record's length is -1, but 1 bytes follow");
    row("the lowest length", bytes("9e8f7061 80000000"), "the record's length is -2147483648, but 0 bytes follow");
    row("one byte short", hi.chopped(1), "the record's length is 7, but 6 bytes follow");
    row("the greatest length", bytes("9e8f7061 7fffffff 54"), "the record's length is 2147483647, but 1 bytes follow");

    const QByteArray packed = qCompress(hi);
    row("compressed: cut off", compressedForm(packed).chopped(1),
        qPrintable(QStringLiteral("the record's length is %1, but %2 bytes follow")
                       .arg(packed.size())
                       .arg(packed.size() - 1)));
    row("compressed: negative length", bytes("52475a31 fffffffe"), "the record's length is -2, but 0 bytes follow");
    row("compressed: nothing inside", bytes("52475a31 00000000"), "the compressed bytes are damaged");
    row("compressed: too short", compressedForm(packed.left(7)), "the compressed bytes are damaged");
    row("compressed: no zlib data", compressedForm(bytes("0000000f 0123456789abcdef")),
        "the compressed bytes are damaged");
    row("compressed: last byte missing", compressedForm(packed.chopped(1)), "the compressed bytes are damaged");
    row("compressed: more bytes after it", compressedForm(packed + "x"), "the compressed bytes are damaged");
    row("compressed: less than declared", compressedForm(bytes("00000010") + packed.mid(4)),
        "the compressed bytes are damaged");
    row("compressed: more than declared", compressedForm(bytes("0000000e") + packed.mid(4)),
        "the compressed bytes are damaged");
    row("compressed: over 1,100 times", compressedForm(bytes("00002ee1 00000000 0000")), // 12,001 bytes from 10
        "10 compressed bytes declare 12001 bytes, but no more than 11000 are accepted");
    row("compressed: one byte over 1,100 times", compressedForm(bytes("00002af9 00000000 0000")),
        "10 compressed bytes declare 11001 bytes, but no more than 11000 are accepted");
    row("compressed: just 1,100 times", compressedForm(bytes("00002af8 00000000 0000")),
        "the compressed bytes are damaged");
    row("compressed: the most a word can say", compressedForm(bytes("ffffffff") + QByteArray(1000000, 'x')),
        "1000004 compressed bytes declare 4294967295 bytes, but no more than 1073741824 are accepted");
    row("compressed: one byte over 1 GiB", compressedForm(bytes("40000001") + QByteArray(1000000, 'x')),
        "1000004 compressed bytes declare 1073741825 bytes, but no more than 1073741824 are accepted");
    row("compressed: another class", compressedForm(qCompress(bytes("0000abcd 00000000"))),
        "the leading word is 0x0000ABCD, not 0x9E8F7061 (Note)");
    row("compressed: negative length inside", compressedForm(qCompress(bytes("9e8f7061 ffffffff"))),
        "the record's length is -1, but 0 bytes follow");
    row("compressed: data after the record inside", compressedForm(qCompress(hi + "x")),
        "the record's length is 7, but 8 bytes follow");
    row("compressed: half a head inside", compressedForm(qCompress(hi.left(5))),
        "the leading word and the length take 8 bytes, but only 5 are there");
    row("compressed twice", compressedForm(qCompress(compressedForm(packed))),
        "the leading word is 0x52475A31, not 0x9E8F7061 (Note)");
}

void IRGObjectBinaryRefusalsTest::damagedDataAreRefusedWithTheirReason()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, why);

    Note note(QStringLiteral("old"));
    QVERIFY(!note.SetBinaryRepresentation(data));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);

    QDataStream stream(data);
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);

    write(path("a"), data);
    QFile file(path("a"));
    QVERIFY(!note.LoadBinary(&file));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(": ") + why);
    QVERIFY(!file.isOpen());

    QCOMPARE(note.readCalls, 0);
    QCOMPARE(note.text, QStringLiteral("old"));
}

void IRGObjectBinaryRefusalsTest::damagedDataInAPipeAreRefusedWithTheirReason_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *name, const QByteArray &data, const char *why) {
        QTest::newRow(name) << data << QString::fromLatin1(why);
    };
    row("half a head", bytes("9e8f70"), "the leading word and the length take 8 bytes, but only 3 are there");
    row("another class", bytes("0000abcd 00000000"), "the leading word is 0x0000ABCD, not 0x9E8F7061 (Note)");
    row("negative length", bytes("9e8f7061 ffffffff 54"), "the record's length is -1, which is less than 0");
    row("one byte short", hi.chopped(1), "the record's length is 7, but 6 bytes follow");
    row("the greatest length", bytes("9e8f7061 7fffffff 54"),
        "the representation takes 2147483655 bytes, but no more than 2147483392 are accepted");
    row("the greatest length that is accepted", bytes("9e8f7061 7ffffef8 54"),
        "the record's length is 2147483384, but 1 bytes follow");
    row("compressed: cut off", compressedForm(qCompress(hi, 0)).left(20),
        "the record's length is 30, but 12 bytes follow");
}

void IRGObjectBinaryRefusalsTest::damagedDataInAPipeAreRefusedWithTheirReason()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, why);
    Note note;
    QFile file;
    QVERIFY(openOnPipe(file, data));
    QVERIFY(!note.LoadBinary(&file));
    QCOMPARE(note.GetErrorString(), QStringLiteral("unnamed file: ") + why);

    QFile another;
    QVERIFY(openOnPipe(another, data));
    QDataStream stream(&another);
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);
    QCOMPARE(note.readCalls, 0);
}

void IRGObjectBinaryRefusalsTest::dataAfterTheRecordAreOnlyAcceptedInAStream()
{
    QByteArray data = hi + "x";
    Note note;
    QVERIFY(!note.SetBinaryRepresentation(data));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: the record's length is 7, but 8 bytes follow"));

    write(path("a"), data);
    QFile file(path("a"));
    QVERIFY(!note.LoadBinary(&file));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(": the record's length is 7, but 8 bytes follow"));

    QFile piped;
    QVERIFY(openOnPipe(piped, data));
    QVERIFY(!note.LoadBinary(&piped));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("unnamed file: the record's length is 7, but more bytes than that follow"));
    QCOMPARE(note.readCalls, 0);

    QDataStream stream(data);
    QVERIFY(note.SetBinaryRepresentation(stream));
}

void IRGObjectBinaryRefusalsTest::membersThatEndBeforeTheRecordDoAreRefused()
{
    QByteArray data = hi;
    Note note;
    note.leavesItsText = true;
    const QString why = QStringLiteral("the record's length is 7, but its members end after 1 bytes");
    QVERIFY(!note.SetBinaryRepresentation(data));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);

    QDataStream stream(data);
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);

    data = compressedForm(qCompress(hi));
    QVERIFY(!note.SetBinaryRepresentation(data));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data: ") + why);

    write(path("a"), data);
    QFile file(path("a"));
    QVERIFY(!note.LoadBinary(&file));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(": ") + why);
}

void IRGObjectBinaryRefusalsTest::membersThatContinueAfterTheRecordAreRefused()
{
    QByteArray data = hi;
    Note note;
    note.readsPastItsRecord = true;
    QVERIFY(!note.SetBinaryRepresentation(data));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("binary data: the record's length is 7, but its members continue after it"));

    Note other; // here the data are damaged: a text of 3 bytes where the record has 2
    QByteArray damaged = bytes("9e8f7061 00000007 54 00000003 6869");
    QVERIFY(!other.SetBinaryRepresentation(damaged));
    QCOMPARE(other.GetErrorString(),
             QStringLiteral("binary data: the record's length is 7, but its members continue after it"));
}

void IRGObjectBinaryRefusalsTest::readersStopAtTheEndOfTheirRecord()
{
    const QByteArray data = hi + hi;
    QDataStream stream(data);
    Note note;
    note.readsPastItsRecord = true;
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(stream.device()->pos(), qint64(hi.size()));
    note.readsPastItsRecord = false;
    QVERIFY(note.SetBinaryRepresentation(stream));
}

void IRGObjectBinaryRefusalsTest::anEnormousFileIsRefusedByItsHead()
{
    // 8 GiB without a single block after the head; reading it would be useless.
    write(path("a"), hi);
    QFile file(path("a"));
    QVERIFY(file.resize(qint64(8) << 30));
    Note note;
    QVERIFY(!note.LoadBinary(&file));
    QCOMPARE(note.GetErrorString(),
             path("a") + QStringLiteral(": the record's length is 7, but 8589934584 bytes follow"));
}

void IRGObjectBinaryRefusalsTest::aStreamThatCannotBeReadIsRefused()
{
    const QString error = QStringLiteral("binary data: the stream has no device that can be read, or is in error");
    Note note;
    QDataStream none;
    QVERIFY(!note.SetBinaryRepresentation(none));
    QCOMPARE(note.GetErrorString(), error);

    QByteArray data = hi;
    QDataStream writing(&data, QIODevice::WriteOnly);
    QVERIFY(!note.SetBinaryRepresentation(writing));
    QCOMPARE(note.GetErrorString(), error);

    QBuffer closed(&data);
    QDataStream onClosed(&closed);
    QVERIFY(!note.SetBinaryRepresentation(onClosed));
    QCOMPARE(note.GetErrorString(), error);

    QDataStream broken(hi);
    broken.setStatus(QDataStream::ReadPastEnd);
    QVERIFY(!note.SetBinaryRepresentation(broken));
    QCOMPARE(note.GetErrorString(), error);
    QCOMPARE(broken.device()->pos(), qint64(0));
}

void IRGObjectBinaryRefusalsTest::unreadableFilesAreRefusedWithTheirReason()
{
    Note note;
    QVERIFY(!note.LoadBinary(nullptr));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file pointer is null"));

    QFile missing(path("missing"));
    QVERIFY(!note.LoadBinary(&missing));
    QCOMPARE(note.GetErrorString(), path("missing") + QStringLiteral(": cannot open: No such file or directory"));

    QFile folder(m_folder->path());
    QVERIFY(!note.LoadBinary(&folder));
    QCOMPARE(note.GetErrorString(), m_folder->path() + QStringLiteral(": cannot open: file to open is a directory"));

    QFile unnamed;
    QVERIFY(!note.LoadBinary(&unnamed));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file name is empty"));

    QFile writing(path("new"));
    QVERIFY(writing.open(QIODevice::WriteOnly));
    QVERIFY(!note.LoadBinary(&writing));
    QCOMPARE(note.GetErrorString(), path("new") + QStringLiteral(": the file is open, but not for reading"));
    QVERIFY(writing.isOpen());
}

void IRGObjectBinaryRefusalsTest::readErrorIsNotReportedAsShortData()
{
    // The first page of a process's memory can be opened, but not read.
    QFile memory(QStringLiteral("/proc/self/mem"));
    Note note;
    QVERIFY(!note.LoadBinary(&memory));
    QCOMPARE(note.GetErrorString(), QStringLiteral("/proc/self/mem: cannot read: Input/output error"));
}

using Operation = std::function<void(Note &, const QString &)>;
Q_DECLARE_METATYPE(Operation)

void IRGObjectBinaryRefusalsTest::errorStringDescribesOnlyTheLastBinaryOperation_data()
{
    QTest::addColumn<Operation>("succeed");
    QTest::newRow("SetBinaryRepresentation(QByteArray &)") << Operation([](Note &note, const QString &) {
        QByteArray representation = hi;
        QVERIFY(note.SetBinaryRepresentation(representation));
    });
    QTest::newRow("SetBinaryRepresentation(QDataStream &)") << Operation([](Note &note, const QString &) {
        QDataStream stream(hi);
        QVERIFY(note.SetBinaryRepresentation(stream));
    });
    QTest::newRow("LoadBinary") << Operation([](Note &note, const QString &path) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write(hi) == hi.size() && file.seek(0));
        QVERIFY(note.LoadBinary(&file));
    });
    QTest::newRow("GetBinaryRepresentation") << Operation([](Note &note, const QString &) {
        QByteArray written;
        QDataStream stream(&written, QIODevice::WriteOnly);
        note.GetBinaryRepresentation(stream);
        QVERIFY(!written.isEmpty());
    });
    QTest::newRow("GetBinaryRepresentationAsQByteArray") << Operation(
        [](Note &note, const QString &) { QVERIFY(!note.GetBinaryRepresentationAsQByteArray().isEmpty()); });
    QTest::newRow("GetCompressedBinaryRepresentationAsQByteArray") << Operation(
        [](Note &note, const QString &) { QVERIFY(!note.GetCompressedBinaryRepresentationAsQByteArray(9).isEmpty()); });
    QTest::newRow("SaveBinary") << Operation([](Note &note, const QString &path) { QVERIFY(note.SaveBinary(path)); });
    QTest::newRow("SaveCompressedBinary")
        << Operation([](Note &note, const QString &path) { QVERIFY(note.SaveCompressedBinary(path, 9)); });
}

void IRGObjectBinaryRefusalsTest::errorStringDescribesOnlyTheLastBinaryOperation()
{
    QFETCH(Operation, succeed);
    Note note;
    QByteArray representation = hi;
    QVERIFY(note.SetBinaryRepresentation(representation));
    representation.chop(1);
    QVERIFY(!note.SetBinaryRepresentation(representation));
    QVERIFY(!note.GetErrorString().isNull());
    succeed(note, path("file"));
    QVERIFY(note.GetErrorString().isNull());
}

void IRGObjectBinaryRefusalsTest::streamThatEndsEarlyIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("in the head") << hi.left(7);
    QTest::newRow("in the members") << hi.left(9);
}

void IRGObjectBinaryRefusalsTest::streamThatEndsEarlyIsRefused()
{
    QFETCH(QByteArray, content);
    QFile pipe;
    QVERIFY(openOnPipe(pipe, content));
    QDataStream stream(&pipe);
    Note note;
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

TEST_SUITE(IRGObjectBinaryRefusalsTest)
#include "tst_IRGObjectBinaryRefusals.moc"
