// SPDX-License-Identifier: MIT
#include <cstring>
#include <limits>
#include <thread>

#include <QtTest>

#include <sys/mman.h>
#include <unistd.h>

#include <reportbase/ReadLimits.h>

#include "Note.h"
#include "PipedFile.h"
#include "text/Size.h"

using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::ReadLimits;
using REPORTGENERATOR::Size;

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

const QByteArray hi = bytes("9e8f7061 00000007 54 00000002 6869"); // 15 bytes
// "RGZ1", the length, and then the output of qCompress at level 0: the size, one stored block, its checksum.
const QByteArray compressedHi = bytes("52475a31 0000001e 0000000f 7801 01 0f00 f0ff"
                                      "9e8f7061 00000007 54 00000002 6869 1f22032d"); // 38 bytes

/// Characters. With Qt 5, these would take 2 GiB.
constexpr Size moreThanAStringHolds = std::numeric_limits<Size>::max() / 2;

ReadLimits limits(qint64 largestSize, qint64 largestExpandedSize, bool acceptCompressed)
{
    return ReadLimits()
        .setLargestSize(largestSize)
        .setLargestExpandedSize(largestExpandedSize)
        .setAcceptCompressed(acceptCompressed);
}

/// Zeros that take no memory until they are written to.
class Mapping
{
public:
    explicit Mapping(std::size_t size)
        : m_size(size),
          m_bytes(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
    {
    }
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;
    ~Mapping()
    {
        if (isThere())
            munmap(m_bytes, m_size);
    }

    bool isThere() const { return m_bytes != MAP_FAILED; }
    char *data() const { return static_cast<char *>(m_bytes); }

private:
    std::size_t m_size;
    void *m_bytes;
};

/// Calls the virtual operations of the contract.
class OverridingNote : public Note
{
public:
    using Note::LoadBinary;
    using Note::SetBinaryRepresentation;

    bool SetBinaryRepresentation(QByteArray &) override
    {
        ++calls;
        return true;
    }
    bool LoadBinary(QFile *) override
    {
        ++calls;
        return true;
    }
    QString GetXmlString() override { return QStringLiteral("own XML"); }
    QByteArray GetBinaryRepresentationAsQByteArray() override { return QByteArrayLiteral("own bytes"); }
    QByteArray GetCompressedBinaryRepresentationAsQByteArray(int) override { return QByteArrayLiteral("own zip"); }

    int calls = 0;
};

} // namespace

class ReadLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void defaultsAreTheLimitsOfTheContract();
    void limitsApplyToBytesStreamsAndFiles_data();
    void limitsApplyToBytesStreamsAndFiles();
    void pipeThatDeclaresTooMuchIsRefusedByItsFirstBytes();
    void negativeLimitsRefuseEverything();
    void higherLimitsThanPossibleRefuseWhatCannotBeHeld();

    void sparseFileThatClaimsTwoGibibytesIsRefused_data();
    void sparseFileThatClaimsTwoGibibytesIsRefused();
    void recordWhoseTextNoStringCanHoldIsRefused();
    void smallDataThatRunOutOfMemoryThrowBadAlloc();
    void xmlTextThatTheReaderCannotConvertIsRefused();
    void xmlFileWhoseTextNoStringCanHoldIsRefused();

    void representationsAreReadFromConstantBytesAndTemporaries();
    void representationIsLoadedFromAPath();
    void constObjectsAreWritten();
    void conveniencesCallOverriddenOperations();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QScopedPointer<QTemporaryDir> m_folder;
};

void ReadLimitsTest::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void ReadLimitsTest::defaultsAreTheLimitsOfTheContract()
{
    const ReadLimits defaults;
    QCOMPARE(defaults.largestSize(), Q_INT64_C(2147483392)); // 2 GiB less 256 bytes
    QCOMPARE(defaults.largestExpandedSize(), Q_INT64_C(1073741824)); // 1 GiB
    QVERIFY(defaults.acceptCompressed());

    const ReadLimits untrusted = ReadLimits::forUntrustedData();
    QCOMPARE(untrusted.largestSize(), Q_INT64_C(4194304));
    QCOMPARE(untrusted.largestExpandedSize(), Q_INT64_C(4194304));
    QVERIFY(untrusted.acceptCompressed());
}

void ReadLimitsTest::limitsApplyToBytesStreamsAndFiles_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<qint64>("largestSize");
    QTest::addColumn<qint64>("largestExpandedSize");
    QTest::addColumn<bool>("acceptCompressed");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *name, const QByteArray &data, qint64 size, qint64 expanded, bool accept,
                        const char *why) {
        QTest::newRow(name) << data << size << expanded << accept << QString::fromLatin1(why);
    };
    row("as large as accepted", hi, 15, 0, false, "");
    row("one byte larger", hi, 14, 0, false, "the representation takes 15 bytes, but no more than 14 are accepted");
    row("compressed, as large as accepted", compressedHi, 38, 15, true, "");
    row("compressed, one byte larger", compressedHi, 37, 15, true,
        "the representation takes 38 bytes, but no more than 37 are accepted");
    row("compressed, expands one byte too far", compressedHi, 38, 14, true,
        "30 compressed bytes declare 15 bytes, but no more than 14 are accepted");
    row("compressed, not accepted", compressedHi, 38, 15, false,
        "the representation is compressed, but only uncompressed ones are accepted");
}

void ReadLimitsTest::limitsApplyToBytesStreamsAndFiles()
{
    QFETCH(QByteArray, data);
    QFETCH(qint64, largestSize);
    QFETCH(qint64, largestExpandedSize);
    QFETCH(bool, acceptCompressed);
    QFETCH(QString, why);
    const ReadLimits tested = limits(largestSize, largestExpandedSize, acceptCompressed);
    const auto expected = [&](const QString &source) {
        return why.isEmpty() ? QString() : source + QStringLiteral(": ") + why;
    };

    Note note;
    QCOMPARE(note.SetBinaryRepresentation(data, tested), why.isEmpty());
    QCOMPARE(note.GetErrorString(), expected(QStringLiteral("binary data")));

    QDataStream stream(data);
    QCOMPARE(note.SetBinaryRepresentation(stream, tested), why.isEmpty());
    QCOMPARE(note.GetErrorString(), expected(QStringLiteral("binary data")));

    write(path("a"), data);
    QCOMPARE(note.LoadBinary(path("a"), tested), why.isEmpty());
    QCOMPARE(note.GetErrorString(), expected(path("a")));

    QFile file(path("a"));
    QCOMPARE(note.LoadBinary(&file, tested), why.isEmpty());
    QCOMPARE(note.GetErrorString(), expected(path("a")));
    QCOMPARE(note.readCalls, why.isEmpty() ? 4 : 0);
    QCOMPARE(note.text, why.isEmpty() ? QStringLiteral("hi") : QString());
}

void ReadLimitsTest::pipeThatDeclaresTooMuchIsRefusedByItsFirstBytes()
{
    QFile pipe;
    QVERIFY(openOnPipe(pipe, bytes("9e8f7061 7fffffff 54")));
    Note note;
    QVERIFY(!note.LoadBinary(&pipe, ReadLimits::forUntrustedData()));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("unnamed file: the representation takes 2147483655 bytes, but no more than 4194304 are "
                            "accepted"));
    QCOMPARE(pipe.read(2), QByteArrayLiteral("T")); // nothing after the first bytes was read
}

void ReadLimitsTest::negativeLimitsRefuseEverything()
{
    Note note;
    QVERIFY(!note.SetBinaryRepresentation(hi, limits(-1, -1, true)));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("binary data: the representation takes 15 bytes, but no more than -1 are accepted"));
    QVERIFY(!note.SetBinaryRepresentation(compressedHi, limits(100, -1, true)));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("binary data: 30 compressed bytes declare 15 bytes, but no more than -1 are accepted"));
}

void ReadLimitsTest::higherLimitsThanPossibleRefuseWhatCannotBeHeld()
{
    constexpr qint64 huge = std::numeric_limits<qint64>::max();
    Note note;
    QFile pipe;
    QVERIFY(openOnPipe(pipe, bytes("9e8f7061 7ffffef9 54"))); // 2 GiB less 255 bytes
    QVERIFY(!note.LoadBinary(&pipe, limits(huge, huge, true)));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("unnamed file: the representation takes 2147483393 bytes, but no more than 2147483392 are "
                            "accepted"));

    // 4,000,000 bytes could expand to 4.4 GB.
    QByteArray bomb = bytes("52475a31 003d0900 ffffffff");
    bomb.append(QByteArray(4000000 - 4, 'x'));
    QVERIFY(!note.SetBinaryRepresentation(bomb, limits(huge, huge, true)));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("binary data: 4000000 compressed bytes declare 4294967295 bytes, but no more than "
                            "2147483392 are accepted"));
}

void ReadLimitsTest::sparseFileThatClaimsTwoGibibytesIsRefused_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("plain") << bytes("9e8f7061 7fffffff");
    QTest::newRow("compressed") << bytes("52475a31 7fffffff");
}

void ReadLimitsTest::sparseFileThatClaimsTwoGibibytesIsRefused()
{
    QFETCH(QByteArray, head);
    write(path("a"), head);
    QVERIFY(QFile::resize(path("a"), Q_INT64_C(2147483655)));
    const QString why = QStringLiteral(": the representation takes 2147483655 bytes, but no more than 2147483392 are "
                                       "accepted");
    Note note;
    QVERIFY(!note.LoadBinary(path("a")));
    QCOMPARE(note.GetErrorString(), path("a") + why);

    QFile file(path("a"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QDataStream stream(&file);
    QVERIFY(!note.SetBinaryRepresentation(stream));
    QCOMPARE(note.GetErrorString(), QStringLiteral("binary data") + why);
    QCOMPARE(file.pos(), qint64(8));
}

void ReadLimitsTest::recordWhoseTextNoStringCanHoldIsRefused()
{
    class LongNote : public Note
    {
    public:
        void SetBinary(QDataStream &, int) override { text = QString(moreThanAStringHolds, Qt::Uninitialized); }
    } note;
    // 1.1 GB, which may contain a text that no QString of Qt 5 holds.
    constexpr int size = 1100000000;
    const Mapping zeros(size);
    QVERIFY(zeros.isThere());
    const QByteArray start = bytes("9e8f7061 4190aaf8");
    std::memcpy(zeros.data(), start.constData(), std::size_t(start.size()));
    QByteArray representation = QByteArray::fromRawData(zeros.data(), size);
    QVERIFY(!note.SetBinaryRepresentation(representation));
    QCOMPARE(
        note.GetErrorString(),
        QStringLiteral("binary data: out of memory after 1099999992 bytes, and no text may have more than 1073741696 "
                       "characters"));
}

void ReadLimitsTest::smallDataThatRunOutOfMemoryThrowBadAlloc()
{
    class Greedy : public Note
    {
    public:
        void SetBinary(QDataStream &, int) override { throw std::bad_alloc(); }
        void ProcessXml(QXmlStreamReader &) override { throw std::bad_alloc(); }
    } greedy;
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, static_cast<void>(greedy.SetBinaryRepresentation(hi, ReadLimits())));
    write(path("a"), "<Note/>");
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, static_cast<void>(greedy.LoadXml(path("a"))));
}

void ReadLimitsTest::xmlTextThatTheReaderCannotConvertIsRefused()
{
    constexpr int size = 720000000;
    const Mapping zeros(2 * std::size_t(size));
    QVERIFY(zeros.isThere());
    const QString xml = QString::fromRawData(reinterpret_cast<const QChar *>(zeros.data()), size);
    Note note;
    QVERIFY(!note.SetXmlString(xml, true));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("XML text: the document has 720000000 characters, but no more than 715827797 can be read "
                            "from a text, only from a file"));
}

void ReadLimitsTest::xmlFileWhoseTextNoStringCanHoldIsRefused()
{
    class FullNote : public Note
    {
    public:
        void ProcessXml(QXmlStreamReader &reader) override
        {
            IRGObject::ProcessXml(reader);
            text = QString(moreThanAStringHolds, Qt::Uninitialized);
        }
    } note;
    // Blanks between elements are not kept, so 1.1 GB pass in little memory.
    int ends[2];
    QVERIFY(pipe(ends) == 0);
    std::thread writer([&] {
        QFile file;
        if (!file.open(ends[1], QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
            return;
        const QByteArray block = (QByteArray(9995, ' ') + "<a/>\n").repeated(1000);
        file.write("<Note>");
        for (int i = 0; i < 110; ++i)
            file.write(block);
        file.write("</Note>");
    });
    QFile file;
    const bool isOpen = file.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    const bool isRead = note.LoadXml(&file);
    writer.join();
    QVERIFY(isOpen && !isRead);
    const QString expected =
        QStringLiteral("unnamed file: out of memory after 1100000013 bytes, and no text may have more than 1073741696 "
                       "characters");
    QCOMPARE(note.GetErrorString(), expected);
}

void ReadLimitsTest::representationsAreReadFromConstantBytesAndTemporaries()
{
    Note note;
    QVERIFY(note.SetBinaryRepresentation(hi)); // a constant
    QCOMPARE(note.text, QStringLiteral("hi"));
    QVERIFY(note.SetBinaryRepresentation(bytes("9e8f7061 00000008 54 00000003 796f21"))); // a temporary
    QCOMPARE(note.text, QStringLiteral("yo!"));
    const Note other(QStringLiteral("other"));
    QVERIFY(note.SetBinaryRepresentation(other.GetBinaryRepresentationAsQByteArray()));
    QCOMPARE(note.text, QStringLiteral("other"));
    QByteArray variable = hi;
    QVERIFY(note.SetBinaryRepresentation(variable)); // the operation of the contract
    QCOMPARE(note.text, QStringLiteral("hi"));
    QVERIFY(!note.SetBinaryRepresentation(QByteArray()));
    QCOMPARE(note.GetErrorString(),
             QStringLiteral("binary data: the leading word and the length take 8 bytes, but only 0 are there"));
}

void ReadLimitsTest::representationIsLoadedFromAPath()
{
    write(path("a"), hi);
    Note note;
    QVERIFY(note.LoadBinary(path("a")));
    QCOMPARE(note.text, QStringLiteral("hi"));
    QVERIFY(note.GetErrorString().isNull());
    QVERIFY(!note.LoadBinary(path("missing")));
    QCOMPARE(note.GetErrorString(), path("missing") + QStringLiteral(": cannot open: No such file or directory"));
    QVERIFY(!note.LoadBinary(QString()));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file name is empty"));
    QVERIFY(!note.LoadBinary(nullptr)); // a null pointer
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file pointer is null"));
}

void ReadLimitsTest::constObjectsAreWritten()
{
    const Note note(QStringLiteral("hi"));
    QCOMPARE(note.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<Note>\n"
                            "  <text>hi</text>\n"
                            "</Note>\n"));
    QCOMPARE(note.GetBinaryRepresentationAsQByteArray(), hi);
    QCOMPARE(note.GetCompressedBinaryRepresentationAsQByteArray(0), compressedHi);
}

void ReadLimitsTest::conveniencesCallOverriddenOperations()
{
    OverridingNote note;
    QVERIFY(note.SetBinaryRepresentation(hi));
    QVERIFY(note.LoadBinary(path("missing")));
    QCOMPARE(note.calls, 2);
    const IRGObject &object = note;
    QCOMPARE(object.GetXmlString(), QStringLiteral("own XML"));
    QCOMPARE(object.GetBinaryRepresentationAsQByteArray(), QByteArrayLiteral("own bytes"));
    QCOMPARE(object.GetCompressedBinaryRepresentationAsQByteArray(9), QByteArrayLiteral("own zip"));
}

TEST_SUITE(ReadLimitsTest)
#include "tst_ReadLimits.moc"
