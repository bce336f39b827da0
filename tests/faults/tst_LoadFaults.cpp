// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <csignal>

#include "Fifo.h"

using JobXml::TunerProperties;

namespace {

/// A file that counts the bytes read from it, and can shrink while it is read.
class WatchedFile : public QFile
{
public:
    using QFile::QFile;

    qint64 bytesRead() const { return m_bytesRead; }

    /// Truncates the file to this size before or after its first bytes are read.
    enum When { BeforeTheFirstRead, AfterTheFirstRead };
    void shrinkTo(qint64 size, When when)
    {
        m_laterSize = size;
        m_when = when;
    }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        if (m_when == BeforeTheFirstRead)
            shrink();
        const qint64 size = QFile::readData(data, most);
        m_bytesRead += std::max(size, qint64(0));
        shrink();
        return size;
    }

private:
    void shrink()
    {
        if (m_laterSize >= 0 && truncate(QFile::encodeName(fileName()).constData(), m_laterSize) != 0)
            qFatal("the file cannot be truncated");
        m_laterSize = -1;
    }

    When m_when = AfterTheFirstRead;
    qint64 m_bytesRead = 0;
    qint64 m_laterSize = -1;
};

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

} // namespace

class LoadFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void marksWithoutContentAreErrors_data();
    void marksWithoutContentAreErrors();
    void gibibyteOfZerosFailsAtItsFirstBytes_data();
    void gibibyteOfZerosFailsAtItsFirstBytes();
    void aPipeIsReadToItsEnd_data();
    void aPipeIsReadToItsEnd();
    void aPipeThatEndsEarlyIsAnError_data();
    void aPipeThatEndsEarlyIsAnError();
    void pipeIsNotReadFurtherAfterAnInvalidStart();
    void aFileThatShrinksIsAnError_data();
    void aFileThatShrinksIsAnError();

private:
    QString path(const char *name) const { return m_folder->path(QString::fromLatin1(name)); }

    std::unique_ptr<Folder> m_folder;
    TunerProperties m_small = aSmallDocument("RX1");
    TunerProperties m_large;
};

void LoadFaultsTest::initTestCase()
{
    signal(SIGPIPE, SIG_IGN); // writers to pipes see an error instead
    m_large = aLargeDocument(1, 100000);
}

void LoadFaultsTest::init()
{
    m_folder = std::make_unique<Folder>();
}

void LoadFaultsTest::marksWithoutContentAreErrors_data()
{
    QTest::addColumn<bool>("isXml");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    const QString noXml = QStringLiteral(":1:1: Premature end of document.");
    QTest::newRow("UTF-8") << true << bytes("EFBBBF") << noXml;
    QTest::newRow("half of UTF-8") << true << bytes("EFBB") << noXml;
    QTest::newRow("UTF-16, big-endian") << true << bytes("FEFF") << noXml;
    QTest::newRow("UTF-16, little-endian") << true << bytes("FFFE") << noXml;
    QTest::newRow("UTF-32, big-endian") << true << bytes("0000FEFF") << noXml;
    QTest::newRow("UTF-32, little-endian") << true << bytes("FFFE0000") << noXml;
    const QString noHead = QStringLiteral(": the leading word and the length take 8 bytes, but only %1 are there");
    QTest::newRow("nothing") << false << bytes("") << noHead.arg(0);
    QTest::newRow("leading word") << false << bytes("C10CBB5F") << noHead.arg(4);
    QTest::newRow("leading word of the compressed form") << false << bytes("52475A31") << noHead.arg(4);
    QTest::newRow("leading word and half a length") << false << bytes("C10CBB5F 0000") << noHead.arg(6);
    QTest::newRow("nothing compressed") << false << bytes("52475A31 00000000")
                                        << QStringLiteral(": the compressed bytes are damaged");
    QTest::newRow("no bytes compressed") << false << bytes("52475A31 0000000C 00000000 789C030000000001")
                                         << noHead.arg(0);
}

void LoadFaultsTest::marksWithoutContentAreErrors()
{
    QFETCH(bool, isXml);
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    m_folder->write(QStringLiteral("file"), content);
    TunerProperties document = m_small;
    QFile file(path("file"));
    QVERIFY(isXml ? !document.LoadXml(path("file")) : !document.LoadBinary(&file));
    QCOMPARE(document.GetErrorString(), path("file") + error);
    QVERIFY(document == m_small);
}

void LoadFaultsTest::gibibyteOfZerosFailsAtItsFirstBytes_data()
{
    QTest::addColumn<bool>("isXml");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("error");
    QTest::newRow("XML") << true << QByteArray() << QStringLiteral(":1:1: Start tag expected.");
    QTest::newRow("XML that begins well") << true << QByteArray("<TunerProperties Version=\"1.1\"")
                                          << QStringLiteral(":1:31: Expected '>' or '/', but got ''.");
    QTest::newRow("binary") << false << QByteArray()
                            << QStringLiteral(": the leading word is 0x00000000, not 0xC10CBB5F (TunerProperties)");
    QTest::newRow("leading word") << false << bytes("C10CBB5F")
                                  << QStringLiteral(": the record's length is 0, but 1073741816 bytes follow");
    QTest::newRow("leading word of the compressed form")
        << false << bytes("52475A31") << QStringLiteral(": the record's length is 0, but 1073741816 bytes follow");
}

void LoadFaultsTest::gibibyteOfZerosFailsAtItsFirstBytes()
{
    QFETCH(bool, isXml);
    QFETCH(QByteArray, head);
    QFETCH(QString, error);
    m_folder->write(QStringLiteral("zeros"), head);
    WatchedFile file(path("zeros"));
    QVERIFY(file.resize(qint64(1) << 30)); // takes no room on the disk
    TunerProperties document = m_small;
    QVERIFY(isXml ? !document.LoadXml(&file) : !document.LoadBinary(&file));
    QCOMPARE(document.GetErrorString(), path("zeros") + error);
    QVERIFY2(file.bytesRead() <= 65536, qPrintable(QString::number(file.bytesRead())));
    QVERIFY(document == m_small);
}

void LoadFaultsTest::aPipeIsReadToItsEnd_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("piece");
    for (const Way &way : waysToSave) {
        for (const int piece : {1, 7, 4096, 1 << 20}) // small pieces of a small document, large ones of a large one
            QTest::addRow("%s, by %d", way.name, piece) << way << piece;
    }
}

void LoadFaultsTest::aPipeIsReadToItsEnd()
{
    QFETCH(Way, way);
    QFETCH(int, piece);
    TunerProperties &document = piece < 4096 ? m_small : m_large;
    const Fifo fifo(path("pipe"), way.bytes(document), piece);
    TunerProperties read;
    QFile file(path("pipe"));
    QVERIFY2(way.save == waysToSave[0].save ? read.LoadXml(path("pipe")) : read.LoadBinary(&file),
             qPrintable(read.GetErrorString()));
    QVERIFY(read == document);
    QVERIFY(!file.isOpen());
}

void LoadFaultsTest::aPipeThatEndsEarlyIsAnError_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("error");
    const QString noHead = QStringLiteral(": the leading word and the length take 8 bytes, but only %1 are there");
    QTest::newRow("XML, nothing") << waysToSave[0] << 0 << QStringLiteral(":1:1: Premature end of document.");
    // <?xml version="1.0" encoding="UTF-8"?> and a line end are 39 bytes; the next line begins with <TunerProperties
    QTest::newRow("XML, a declaration") << waysToSave[0] << 39 << QStringLiteral(":2:1: Premature end of document.");
    QTest::newRow("XML, half a start tag")
        << waysToSave[0] << 49 << QStringLiteral(":2:10: Premature end of document.");
    for (const Way *way : {&waysToSave[1], &waysToSave[2]}) {
        QTest::addRow("%s, nothing", way->name) << *way << 0 << noHead.arg(0);
        QTest::addRow("%s, half a head", way->name) << *way << 5 << noHead.arg(5);
        const int length = way->bytes(m_small).size() - 8;
        QTest::addRow("%s, a head", way->name)
            << *way << 8 << QStringLiteral(": the record's length is %1, but 0 bytes follow").arg(length);
        QTest::addRow("%s, all but a byte", way->name)
            << *way << length + 7
            << QStringLiteral(": the record's length is %1, but %2 bytes follow").arg(length).arg(length - 1);
    }
}

void LoadFaultsTest::aPipeThatEndsEarlyIsAnError()
{
    QFETCH(Way, way);
    QFETCH(int, size);
    QFETCH(QString, error);
    const Fifo fifo(path("pipe"), way.bytes(m_small).left(size), 1000);
    TunerProperties read;
    QFile file(path("pipe"));
    QVERIFY(way.save == waysToSave[0].save ? !read.LoadXml(path("pipe")) : !read.LoadBinary(&file));
    QCOMPARE(read.GetErrorString(), path("pipe") + error);
    QVERIFY(!read.AnyData());
}

void LoadFaultsTest::pipeIsNotReadFurtherAfterAnInvalidStart()
{
    const Fifo fifo(path("pipe"), QByteArray(1 << 20, '\0'), 1 << 20);
    QFile file(path("pipe"));
    TunerProperties document;
    QVERIFY(!document.LoadBinary(&file));
    QCOMPARE(document.GetErrorString(),
             path("pipe") + QStringLiteral(": the leading word is 0x00000000, not 0xC10CBB5F (TunerProperties)"));
}

void LoadFaultsTest::aFileThatShrinksIsAnError_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("isReadBefore");
    for (const Way &way : waysToSave) {
        QTest::addRow("%s, before the first read", way.name) << way << false;
        QTest::addRow("%s, after the first read", way.name) << way << true;
    }
}

void LoadFaultsTest::aFileThatShrinksIsAnError()
{
    QFETCH(Way, way);
    QFETCH(bool, isReadBefore);
    QVERIFY(way.save(m_large, path("file")));
    WatchedFile file(path("file"));
    const qint64 size = file.size();
    QVERIFY(size > 100000);
    file.shrinkTo(50000, isReadBefore ? WatchedFile::AfterTheFirstRead : WatchedFile::BeforeTheFirstRead);
    TunerProperties read;
    if (way.save == waysToSave[0].save) {
        QVERIFY(!read.LoadXml(&file));
        // The second line contains the large text, and ends where the file is truncated.
        QCOMPARE(read.GetErrorString(),
                 path("file") + QStringLiteral(":2:%1: Premature end of document.").arg(50000 - 39));
    } else {
        QVERIFY(!read.LoadBinary(&file));
        QCOMPARE(read.GetErrorString(),
                 path("file")
                     + QStringLiteral(": the record's length is %1, but %2 bytes follow").arg(size - 8).arg(49992));
    }
    QVERIFY(!read.AnyData());
}

TEST_SUITE(LoadFaultsTest)
#include "tst_LoadFaults.moc"
