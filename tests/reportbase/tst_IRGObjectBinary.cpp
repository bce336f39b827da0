// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QtTest>

#include <sys/mman.h>

#include <ExceptionText.h>

#include "Note.h"
#include "PipedFile.h"

namespace {

const char bigEndianHi[] = "9e8f7061 00000007 54 00000002 6869";
const char littleEndianHi[] = "61708f9e 07000000 54 02000000 6869";

// "RGZ1", the length, and then the output of qCompress at level 0: the size, one stored block, its checksum.
const char compressedHi[] = "52475a31 0000001e 0000000f 7801 01 0f00 f0ff"
                            "9e8f7061 00000007 54 00000002 6869 1f22032d";
const char littleEndianCompressedHi[] = "315a4752 1e000000 0000000f 7801 01 0f00 f0ff"
                                        "61708f9e 07000000 54 02000000 6869 1e67032d";

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// Returns its content three bytes at a time, as a slow line does, and cannot seek.
class Trickle : public QIODevice
{
public:
    explicit Trickle(const QByteArray &content) : m_content(content) { }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const QByteArray now = m_content.left(int(qMin(size, qint64(3))));
        m_content.remove(0, now.size());
        std::copy(now.begin(), now.end(), data);
        return now.isEmpty() ? -1 : now.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_content;
};

/// A note that writes a gigabyte of zeros, or a little more, which take no memory.
class EnormousNote : public Note
{
public:
    explicit EnormousNote(int size)
        : Note(QStringLiteral("a")), m_size(size),
          m_bytes(mmap(nullptr, size_t(size), PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
    {
    }
    EnormousNote(const EnormousNote &) = delete;
    EnormousNote &operator=(const EnormousNote &) = delete;
    ~EnormousNote() override
    {
        if (isThere())
            munmap(m_bytes, size_t(m_size));
    }

    bool isThere() const { return m_bytes != MAP_FAILED; }

    bool GetBinary(QDataStream &stream, int, bool) const override
    {
        auto *buffer = qobject_cast<QBuffer *>(stream.device());
        if (buffer)
            buffer->buffer() = QByteArray::fromRawData(static_cast<const char *>(m_bytes), m_size);
        return buffer;
    }

private:
    int m_size;
    void *m_bytes;
};

} // namespace

class IRGObjectBinaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void thePlainFormIsWordLengthAndMembers();
    void aStreamKeepsItsSettings();
    void theCompressedFormWrapsThePlainOne();
    void theCompressedFormFollowsTheStreamToo();
    void theLevelIsThatOfTheCompression();
    void anObjectWithoutDataWritesNoByte();
    void anExceptionLeavesTheStreamAsItWas();
    void writingNeedsNoRandomAccess();
    void writingWithoutADeviceIsHarmless();
    void bothFormsAreRead_data();
    void bothFormsAreRead();
    void streamFormLeavesDataAfterTheRecord();
    void aRecordWithoutMembersIsRead();
    void aBigObjectIsReadBack();
    void filesAreRead();
    void openFileIsReadFromItsPositionAndStaysOpen();
    void aPipeIsRead();
    void aDeviceThatGivesFewBytesAtATimeIsReadToTheRecordsEnd();
    void anExceptionOfTheModelPasses();
    void savedFilesHoldTheRepresentations();
    void theOldFileStaysWhenSavingFails();
    void recordsTooLargeForReadersAreNotCompressed();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QScopedPointer<QTemporaryDir> m_folder;
};

void IRGObjectBinaryTest::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void IRGObjectBinaryTest::thePlainFormIsWordLengthAndMembers()
{
    Note note(QStringLiteral("hi"));
    QCOMPARE(note.GetBinaryRepresentationAsQByteArray().toHex(' '), bytes(bigEndianHi).toHex(' '));

    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << quint8(0xAA);
    note.GetBinaryRepresentation(stream);
    stream << quint8(0xBB);
    QCOMPARE(written.toHex(' '), bytes((QByteArray("aa") + bigEndianHi + "bb").constData()).toHex(' '));
}

void IRGObjectBinaryTest::aStreamKeepsItsSettings()
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setVersion(QDataStream::Qt_4_5);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    Note(QStringLiteral("hi")).GetBinaryRepresentation(stream);
    QCOMPARE(written.toHex(' '), bytes(littleEndianHi).toHex(' '));
    QCOMPARE(stream.byteOrder(), QDataStream::LittleEndian);
    QCOMPARE(stream.version(), int(QDataStream::Qt_4_5));
    QCOMPARE(stream.floatingPointPrecision(), QDataStream::SinglePrecision);

    // The object itself sees them as well.
    class Watcher : public Note
    {
    public:
        Watcher() : Note(QStringLiteral("hi")) { }
        bool GetBinary(QDataStream &given, int tag, bool writeTag) const override
        {
            check(given);
            return Note::GetBinary(given, tag, writeTag);
        }
        void SetBinary(QDataStream &given, int length) override
        {
            check(given);
            Note::SetBinary(given, length);
        }
        void check(const QDataStream &given) const
        {
            agreed += given.byteOrder() == byteOrder && given.version() == version
                && given.floatingPointPrecision() == precision;
        }
        QDataStream::ByteOrder byteOrder = QDataStream::LittleEndian;
        int version = QDataStream::Qt_4_5;
        QDataStream::FloatingPointPrecision precision = QDataStream::SinglePrecision;
        mutable int agreed = 0;
    };
    Watcher watcher;
    watcher.GetBinaryRepresentation(stream);
    watcher.GetCompressedBinaryRepresentation(stream, 9);
    QCOMPARE(watcher.agreed, 2);
    QDataStream back(written);
    back.setByteOrder(QDataStream::LittleEndian);
    back.setVersion(QDataStream::Qt_4_5);
    back.setFloatingPointPrecision(QDataStream::SinglePrecision);
    for (int record = 0; record < 3; ++record)
        QVERIFY(watcher.SetBinaryRepresentation(back));
    QVERIFY(back.atEnd());
    QCOMPARE(watcher.agreed, 5);

    watcher.byteOrder = QDataStream::BigEndian;
    watcher.version = QDataStream::Qt_5_15;
    watcher.precision = QDataStream::DoublePrecision;
    watcher.agreed = 0;
    QByteArray plain = watcher.GetBinaryRepresentationAsQByteArray();
    QByteArray compressed = watcher.GetCompressedBinaryRepresentationAsQByteArray(1);
    QVERIFY(watcher.SetBinaryRepresentation(plain));
    QVERIFY(watcher.SetBinaryRepresentation(compressed));
    QVERIFY(watcher.SaveBinary(path("a")));
    QVERIFY(watcher.SaveCompressedBinary(path("b"), 1));
    QFile file(path("b"));
    QVERIFY(watcher.LoadBinary(&file));
    QCOMPARE(watcher.agreed, 7);
}

void IRGObjectBinaryTest::theCompressedFormWrapsThePlainOne()
{
    Note note(QStringLiteral("hi"));
    QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(0).toHex(' '), bytes(compressedHi).toHex(' '));

    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    note.GetCompressedBinaryRepresentation(stream, 0);
    QCOMPARE(written.toHex(' '), bytes(compressedHi).toHex(' '));
}

void IRGObjectBinaryTest::theCompressedFormFollowsTheStreamToo()
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    Note(QStringLiteral("hi")).GetCompressedBinaryRepresentation(stream, 0);
    QCOMPARE(written.toHex(' '), bytes(littleEndianCompressedHi).toHex(' '));
}

void IRGObjectBinaryTest::theLevelIsThatOfTheCompression()
{
    Note note(QString(1000, QLatin1Char('x')));
    const QByteArray plain = note.GetBinaryRepresentationAsQByteArray();
    for (int level : {-1, 0, 1, 9})
        QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(level).mid(8), qCompress(plain, level));
    QVERIFY(note.GetCompressedBinaryRepresentationAsQByteArray(0).size() > 1000);
    QVERIFY(note.GetCompressedBinaryRepresentationAsQByteArray(9).size() < 100);
    for (int level : {-2, 10, 2147483647})
        QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(level).mid(8), qCompress(plain, -1));
}

void IRGObjectBinaryTest::anObjectWithoutDataWritesNoByte()
{
    Note note;
    QVERIFY(note.GetBinaryRepresentationAsQByteArray().isEmpty());
    QVERIFY(note.GetCompressedBinaryRepresentationAsQByteArray(9).isEmpty());
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    note.GetBinaryRepresentation(stream);
    note.GetCompressedBinaryRepresentation(stream, 9);
    QVERIFY(written.isEmpty());

    note.SetValidate(false);
    QCOMPARE(note.GetBinaryRepresentationAsQByteArray().toHex(' '), bytes("9e8f7061 00000005 54 ffffffff").toHex(' '));
}

void IRGObjectBinaryTest::anExceptionLeavesTheStreamAsItWas()
{
    const Note note(QStringLiteral("half"));
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    const QString thrown = QStringLiteral("IncompleteDefinitionException: Note: half a note");
    QCOMPARE(thrownBy([&] { note.GetBinaryRepresentation(stream); }), thrown);
    QCOMPARE(thrownBy([&] { note.GetCompressedBinaryRepresentation(stream, 9); }), thrown);
    QVERIFY(written.isEmpty());
}

void IRGObjectBinaryTest::writingNeedsNoRandomAccess()
{
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    QFile in;
    QFile out;
    QVERIFY(in.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    QVERIFY(out.open(ends[1], QIODevice::WriteOnly, QFileDevice::AutoCloseHandle));
    QDataStream stream(&out);
    Note(QStringLiteral("hi")).GetBinaryRepresentation(stream);
    Note(QStringLiteral("hi")).GetCompressedBinaryRepresentation(stream, 0);
    out.close();
    QCOMPARE(in.readAll().toHex(' '), (bytes(bigEndianHi) + bytes(compressedHi)).toHex(' '));
}

void IRGObjectBinaryTest::writingWithoutADeviceIsHarmless()
{
    const Note note(QStringLiteral("hi"));
    QDataStream none;
    note.GetBinaryRepresentation(none);
    note.GetCompressedBinaryRepresentation(none, 9);
    QVERIFY(!none.device());

    QByteArray written;
    QDataStream broken(&written, QIODevice::WriteOnly);
    broken.setStatus(QDataStream::WriteFailed);
    note.GetBinaryRepresentation(broken);
    note.GetCompressedBinaryRepresentation(broken, 9);
    QVERIFY(written.isEmpty());
}

void IRGObjectBinaryTest::bothFormsAreRead_data()
{
    QTest::addColumn<QByteArray>("representation");
    QTest::addColumn<bool>("littleEndian");
    QTest::newRow("plain") << bytes(bigEndianHi) << false;
    QTest::newRow("compressed") << bytes(compressedHi) << false;
    QTest::newRow("plain, little-endian") << bytes(littleEndianHi) << true;
    QTest::newRow("compressed, little-endian") << bytes(littleEndianCompressedHi) << true;
}

void IRGObjectBinaryTest::bothFormsAreRead()
{
    QFETCH(QByteArray, representation);
    QFETCH(bool, littleEndian);

    Note fromStream;
    QDataStream stream(representation);
    stream.setByteOrder(littleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian);
    QVERIFY(fromStream.SetBinaryRepresentation(stream));
    QCOMPARE(fromStream.text, QStringLiteral("hi"));
    QVERIFY(fromStream.GetErrorString().isNull());
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.status(), QDataStream::Ok);

    Note fromArray;
    QCOMPARE(fromArray.SetBinaryRepresentation(representation), !littleEndian);
    QCOMPARE(fromArray.text, littleEndian ? QString() : QStringLiteral("hi"));
}

void IRGObjectBinaryTest::streamFormLeavesDataAfterTheRecord()
{
    for (const char *form : {bigEndianHi, compressedHi}) {
        const QByteArray data = bytes(form) + bytes(form) + "rest";
        QDataStream stream(data);
        Note note;
        QVERIFY(note.SetBinaryRepresentation(stream));
        QCOMPARE(stream.device()->pos(), qint64(bytes(form).size()));
        QVERIFY(note.SetBinaryRepresentation(stream));
        QCOMPARE(stream.device()->readAll(), QByteArray("rest"));
        QCOMPARE(note.readCalls, 2);

        QFile file;
        QVERIFY(openOnPipe(file, data));
        QDataStream sequential(&file);
        QVERIFY(note.SetBinaryRepresentation(sequential));
        QVERIFY(note.SetBinaryRepresentation(sequential));
        QCOMPARE(sequential.status(), QDataStream::Ok);
        QCOMPARE(file.readAll(), QByteArray("rest"));
    }
}

void IRGObjectBinaryTest::aRecordWithoutMembersIsRead()
{
    QByteArray representation = bytes("9e8f7061 00000000");
    Note note(QStringLiteral("old"));
    QVERIFY(note.SetBinaryRepresentation(representation));
    QCOMPARE(note.readCalls, 1);
    QCOMPARE(note.text, QStringLiteral("old"));
}

void IRGObjectBinaryTest::aBigObjectIsReadBack()
{
    Note note(QString(3 << 20, QLatin1Char('x'))); // more than is read from a device at once
    for (QByteArray representation :
         {note.GetBinaryRepresentationAsQByteArray(), note.GetCompressedBinaryRepresentationAsQByteArray(9)}) {
        Note other;
        QVERIFY(other.SetBinaryRepresentation(representation));
        QVERIFY(other.text == note.text);
    }
}

void IRGObjectBinaryTest::filesAreRead()
{
    for (const char *form : {bigEndianHi, compressedHi}) {
        write(path("a"), bytes(form));
        QFile file(path("a"));
        Note note;
        QVERIFY(note.LoadBinary(&file));
        QCOMPARE(note.text, QStringLiteral("hi"));
        QVERIFY(note.GetErrorString().isNull());
        QVERIFY(!file.isOpen());
    }
}

void IRGObjectBinaryTest::openFileIsReadFromItsPositionAndStaysOpen()
{
    write(path("a"), "12345" + bytes(bigEndianHi));
    QFile file(path("a"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(5), QByteArray("12345"));
    Note note;
    QVERIFY(note.LoadBinary(&file));
    QCOMPARE(note.text, QStringLiteral("hi"));
    QVERIFY(file.isOpen());
    QVERIFY(file.atEnd());
}

void IRGObjectBinaryTest::aPipeIsRead()
{
    for (const char *form : {bigEndianHi, compressedHi}) {
        QFile file;
        QVERIFY(openOnPipe(file, bytes(form)));
        Note note;
        QVERIFY(note.LoadBinary(&file));
        QCOMPARE(note.text, QStringLiteral("hi"));
        QVERIFY(file.isOpen());
    }
}

void IRGObjectBinaryTest::aDeviceThatGivesFewBytesAtATimeIsReadToTheRecordsEnd()
{
    for (const char *form : {bigEndianHi, compressedHi}) {
        Trickle device(bytes(form) + "follow");
        QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        QDataStream stream(&device);
        Note note;
        QVERIFY2(note.SetBinaryRepresentation(stream), qPrintable(note.GetErrorString()));
        QCOMPARE(note.text, QStringLiteral("hi"));
        QCOMPARE(device.read(6), QByteArray("fol")); // a piece of three bytes, from the first byte after the record
    }
}

void IRGObjectBinaryTest::anExceptionOfTheModelPasses()
{
    QByteArray representation = bytes("9e8f7061 00000001 55");
    const QString thrown = QStringLiteral("BinaryParsingException: Note: an unknown member");
    Note note;
    QCOMPARE(thrownBy([&] { return note.SetBinaryRepresentation(representation); }), thrown);
    QVERIFY(note.GetErrorString().isNull());

    QDataStream stream(representation);
    QCOMPARE(thrownBy([&] { return note.SetBinaryRepresentation(stream); }), thrown);

    write(path("a"), representation);
    QFile file(path("a"));
    QCOMPARE(thrownBy([&] { return note.LoadBinary(&file); }), thrown);
    QVERIFY(!file.isOpen());
}

void IRGObjectBinaryTest::savedFilesHoldTheRepresentations()
{
    const Note note(QStringLiteral("hi"));
    write(path("a"), QByteArray(1000, 'x'));
    QVERIFY(note.SaveBinary(path("a")));
    QCOMPARE(contentOf(path("a")).toHex(' '), bytes(bigEndianHi).toHex(' '));
    QVERIFY(note.SaveCompressedBinary(path("a"), 0));
    QCOMPARE(contentOf(path("a")).toHex(' '), bytes(compressedHi).toHex(' '));
    QVERIFY(note.GetErrorString().isNull());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({QStringLiteral("a")}));
}

void IRGObjectBinaryTest::theOldFileStaysWhenSavingFails()
{
    write(path("a"), "old");
    const Note empty;
    const QString nothing = QStringLiteral(": the object has no data, so there is nothing to write");
    QVERIFY(!empty.SaveBinary(path("a")));
    QCOMPARE(empty.GetErrorString(), path("a") + nothing);
    QVERIFY(!empty.SaveCompressedBinary(path("a"), 9));
    QCOMPARE(empty.GetErrorString(), path("a") + nothing);

    const Note half(QStringLiteral("half"));
    const QString thrown = QStringLiteral("IncompleteDefinitionException: Note: half a note");
    QCOMPARE(thrownBy([&] { return half.SaveBinary(path("a")); }), thrown);
    QCOMPARE(thrownBy([&] { return half.SaveCompressedBinary(path("a"), 9); }), thrown);
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({QStringLiteral("a")}));

    const Note note(QStringLiteral("hi"));
    const QString nowhere = path("no/folder/a");
    QVERIFY(!note.SaveBinary(nowhere));
    QCOMPARE(note.GetErrorString(), nowhere + QStringLiteral(": cannot write: No such file or directory"));
    QVERIFY(!note.SaveCompressedBinary(nowhere, 9));
    QCOMPARE(note.GetErrorString(), nowhere + QStringLiteral(": cannot write: No such file or directory"));
}

void IRGObjectBinaryTest::recordsTooLargeForReadersAreNotCompressed()
{
    EnormousNote largest(1 << 30);
    QVERIFY(largest.isThere());
    QVERIFY(!largest.GetCompressedBinaryRepresentationAsQByteArray(1).isEmpty());

    EnormousNote note((1 << 30) + 1);
    QVERIFY(note.isThere());
    const QString why =
        QStringLiteral(": 1073741825 bytes are to be compressed, but readers accept no more than 1073741824");
    QVERIFY(!note.SaveCompressedBinary(path("a"), 1));
    QCOMPARE(note.GetErrorString(), path("a") + why);
    QVERIFY(!QFileInfo::exists(path("a")));

    QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(1), QByteArray());
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data") + why);
}

TEST_SUITE(IRGObjectBinaryTest)
#include "tst_IRGObjectBinary.moc"
