// SPDX-License-Identifier: MIT
#include <tools/Tool.h>

#include <csignal>

#include <sys/resource.h>

#include "Fifo.h"

namespace {

const QString noForm = QStringLiteral(
    "unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix .tps or --from snapshot");

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// The peak memory of the largest child process so far, in KiB.
long mostMemory()
{
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

} // namespace

/// Each file is shown, validated and converted.
class ToolLoadFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void marksWithoutContentAreErrors_data();
    void marksWithoutContentAreErrors();
    void gigabyteOfZerosFailsInLittleMemory_data();
    void gigabyteOfZerosFailsInLittleMemory();
    void aPipeIsReadToItsEnd_data();
    void aPipeIsReadToItsEnd();
    void aPipeThatEndsEarlyIsAnError_data();
    void aPipeThatEndsEarlyIsAnError();
    void circularLinksAreAnError();

private:
    static QVector<QStringList> commandsFor(const QString &name);
    void checkThatItIsRefused(const Run &run, const QString &name, const QString &why) const;

    std::unique_ptr<Workshop> m_workshop;
    long m_usualMemory = 0;
};

void ToolLoadFaultsTest::initTestCase()
{
    signal(SIGPIPE, SIG_IGN); // writers to pipes see an error instead
    QCOMPARE(Workshop().run(line("show -"), smallXml).status, 0);
    m_usualMemory = mostMemory();
}

void ToolLoadFaultsTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

void ToolLoadFaultsTest::cleanup()
{
    m_workshop.reset();
}

QVector<QStringList> ToolLoadFaultsTest::commandsFor(const QString &name)
{
    return {{QStringLiteral("show"), name},
            {QStringLiteral("validate"), name},
            {QStringLiteral("convert"), name, QStringLiteral("out.xml")}};
}

void ToolLoadFaultsTest::checkThatItIsRefused(const Run &run, const QString &name, const QString &why) const
{
    QCOMPARE(run.err, QStringLiteral("tunerproperties: ") + name + why + QLatin1Char('\n'));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->files(), QStringList(name));
}

void ToolLoadFaultsTest::marksWithoutContentAreErrors_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *what, const char *name, const QByteArray &content, const QString &why) {
        QTest::newRow(what) << QString::fromLatin1(name) << content << why;
    };
    row("UTF-8", "a.xml", bytes("EFBBBF"), QStringLiteral(":1:1: Premature end of document."));
    row("UTF-8, with an inconclusive name", "a", bytes("EFBBBF"), QStringLiteral(": ") + noForm);
    row("UTF-16, big-endian", "a", bytes("FEFF"), QStringLiteral(":1:1: Premature end of document."));
    row("UTF-16, little-endian", "a", bytes("FFFE"), QStringLiteral(":1:1: Premature end of document."));
    const QString noHead = QStringLiteral(": the leading word and the length take 8 bytes, but only 4 are there");
    row("leading word", "a", bytes("C10CBB5F"), noHead);
    row("leading word of the compressed form", "a", bytes("52475A31"), noHead);
    row("flags of a snapshot", "a.tps", bytes("D000"),
        QStringLiteral(": the snapshot is truncated, or the file is not a snapshot"));
}

void ToolLoadFaultsTest::marksWithoutContentAreErrors()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, why);
    m_workshop->write(name, content);
    for (const QStringList &command : commandsFor(name))
        checkThatItIsRefused(m_workshop->run(command), name, why);
}

void ToolLoadFaultsTest::gigabyteOfZerosFailsInLittleMemory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("why");
    const QString word = QStringLiteral(": the leading word is 0x00000000, not 0xC10CBB5F (TunerProperties)");
    QTest::newRow("XML") << QStringLiteral("a.xml") << QStringLiteral(":1:1: Start tag expected.");
    QTest::newRow("tagged") << QStringLiteral("a.tpb") << word;
    QTest::newRow("compressed") << QStringLiteral("a.tpz") << word;
    // 2 bytes of flags and 4 of an empty version, which counts as an older one: all members are reset and only the flag
    // of quantity is set. Then 4 for no components, 1 of type, 4 of an empty base resource, and 8 of the quantity.
    QTest::newRow("snapshot") << QStringLiteral(
        "a.tps") << QStringLiteral(": the snapshot ends after 23 of 1000000000 bytes, or the file is not a snapshot");
    QTest::newRow("of no form") << QStringLiteral("a") << QStringLiteral(": ") + noForm;
}

void ToolLoadFaultsTest::gigabyteOfZerosFailsInLittleMemory()
{
    QFETCH(QString, name);
    QFETCH(QString, why);
    m_workshop->write(name, {});
    // The largest file that is read. It takes no space on the disk.
    QVERIFY(QFile::resize(m_workshop->path(name), 1'000'000'000));
    for (const QStringList &command : commandsFor(name))
        checkThatItIsRefused(m_workshop->run(command), name, why);
    const long more = mostMemory() - m_usualMemory; // in KiB, of the largest process so far
    QVERIFY2(more < 32 * 1024, qPrintable(QString::number(more)));
}

void ToolLoadFaultsTest::aPipeIsReadToItsEnd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("XML") << QStringLiteral("pipe") << QByteArray(smallXml);
    QTest::newRow("tagged") << QStringLiteral("pipe") << bytes(smallTaggedHex);
    QTest::newRow("compressed") << QStringLiteral("pipe")
                                << Workshop().run(line("convert - - --to compressed"), smallXml).bytes;
    QTest::newRow("snapshot") << QStringLiteral("pipe.tps") << bytes(smallSnapshotHex);
}

void ToolLoadFaultsTest::aPipeIsReadToItsEnd()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    m_workshop->write(QStringLiteral("file.xml"), smallXml);
    const QByteArray shown = m_workshop->run(line("show file.xml")).bytes;
    for (const QStringList &command : commandsFor(name)) {
        Run run;
        {
            const Fifo fifo(m_workshop->path(name), content, 7);
            run = m_workshop->run(command);
        }
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QCOMPARE(run.bytes, command.first() == QLatin1String("show") ? shown : QByteArray());
        QVERIFY(QFile::remove(m_workshop->path(name)));
    }
    QCOMPARE(m_workshop->read(QStringLiteral("out.xml")), QByteArray(smallXml));
}

void ToolLoadFaultsTest::aPipeThatEndsEarlyIsAnError_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *what, const char *name, const QByteArray &content, const QString &why) {
        QTest::newRow(what) << QString::fromLatin1(name) << content << why;
    };
    row("nothing", "pipe", {}, QStringLiteral(": ") + noForm);
    row("nothing, called XML", "pipe.xml", {}, QStringLiteral(":1:1: Premature end of document."));
    row("nothing, called tagged", "pipe.tpb", {},
        QStringLiteral(": the leading word and the length take 8 bytes, but only 0 are there"));
    row("nothing, called a snapshot", "pipe.tps", {},
        QStringLiteral(": the snapshot is truncated, or the file is not a snapshot"));
    // The declaration and the line end are 39 bytes.
    row("XML", "pipe", QByteArray(smallXml).left(39 + 20), QStringLiteral(":2:20: Premature end of document."));
    row("tagged", "pipe", bytes(smallTaggedHex).chopped(1),
        QStringLiteral(": the record's length is 179, but 178 bytes follow"));
    row("snapshot", "pipe.tps", bytes(smallSnapshotHex).chopped(1),
        QStringLiteral(": the snapshot is truncated, or the file is not a snapshot"));
}

void ToolLoadFaultsTest::aPipeThatEndsEarlyIsAnError()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, why);
    for (const QStringList &command : commandsFor(name)) {
        Run run;
        {
            const Fifo fifo(m_workshop->path(name), content, 1000);
            run = m_workshop->run(command);
        }
        checkThatItIsRefused(run, name, why);
        QVERIFY(QFile::remove(m_workshop->path(name)));
    }
}

void ToolLoadFaultsTest::circularLinksAreAnError()
{
    const QString name = QStringLiteral("self.xml");
    QVERIFY(QFile::link(name, m_workshop->path(name)));
    for (const QStringList &command : commandsFor(name))
        checkThatItIsRefused(m_workshop->run(command), name,
                             QStringLiteral(": cannot open: Too many levels of symbolic links"));
}

TEST_SUITE(ToolLoadFaultsTest)
#include "tst_ToolLoadFaults.moc"
