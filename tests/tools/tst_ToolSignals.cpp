// SPDX-License-Identifier: MIT
#include "OnlyOnLinux.h"
#include "Skip.h"
#include "tools/Tool.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// Signals that arrive while the tool is running.
class ToolSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void signalEndsTheProgramWithAReportOfProgress_data();
    void signalEndsTheProgramWithAReportOfProgress();
    void reportCountsTheFilesThatAreReplaced();
    void reportBeforeTheFirstFileCountsNone();
    void quietProgramEndsWithoutAReport();
    void reportFollowsTheJson();
    void singleFileHasNoReport_data();
    void singleFileHasNoReport();
    void ignoredSignalsStayIgnored();
    void fileInProgressIsCompleted_data();
    void fileInProgressIsCompleted();
    void signalAtAnyTimeLeavesNoIncompleteFile();
    void temporaryCopyOfAPipeIsRemoved();
    void interruptedSetLeavesNoFile();
    void temporaryFilesHaveNoName_data();
    void temporaryFilesHaveNoName();
    void readerThatDoesNotReadDoesNotDelayTheEnd();
    void closedPipeEndsTheProgramBySigpipe();

private:
    void start(const QStringList &arguments);
    void makePipe()
    {
        QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(QStringLiteral("pipe"))).constData(), 0600), 0);
    }
    void awaitReader();
    void awaitFile(const char *name);
    void checkThatItEndsBy(int number);
    QStringList filesIn(const char *folder) const;

    std::unique_ptr<Workshop> m_workshop;
    std::unique_ptr<QProcess> m_process;
    QProcessEnvironment m_environment;
    int m_pipe = -1; // the end to write to
};

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString text(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

/// A background job of a shell ignores some signals, and so do the programs that it starts.
void ToolSignalsTest::initTestCase()
{
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
        std::signal(number, SIG_DFL);
}

void ToolSignalsTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_process = std::make_unique<QProcess>();
    m_environment = QProcessEnvironment::systemEnvironment();
    m_workshop->write(text("good.xml"), smallXml);
    m_workshop->write(text("other.xml"), smallXml);
    QVERIFY(QDir().mkpath(m_workshop->path(text("temporary"))));
    m_environment.insert(text("TMPDIR"), m_workshop->path(text("temporary")));
}

void ToolSignalsTest::cleanup()
{
    if (m_pipe >= 0)
        close(m_pipe);
    m_pipe = -1;
    m_process.reset(); // kills one that is still there
    m_workshop.reset();
}

void ToolSignalsTest::start(const QStringList &arguments)
{
    m_process->setProcessEnvironment(m_environment);
    m_process->setWorkingDirectory(m_workshop->path(text(".")));
    m_process->start(text(TOOL_PROGRAM), arguments);
    QVERIFY(m_process->waitForStarted());
}

/// Waits until the tool has opened the pipe for reading, where it then blocks.
void ToolSignalsTest::awaitReader()
{
    const QByteArray path = QFile::encodeName(m_workshop->path(text("pipe")));
    const auto isOpen = [&] { // called once more when it is
        if (m_pipe < 0)
            m_pipe = open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return m_pipe >= 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), 30000);
}

void ToolSignalsTest::awaitFile(const char *name)
{
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_workshop->path(text(name))), 30000);
}

void ToolSignalsTest::checkThatItEndsBy(int number)
{
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->exitStatus(), QProcess::CrashExit); // as Qt calls every end by a signal
    QCOMPARE(m_process->exitCode(), number);
}

QStringList ToolSignalsTest::filesIn(const char *folder) const
{
    return QDir(m_workshop->path(text(folder)))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

void ToolSignalsTest::signalEndsTheProgramWithAReportOfProgress_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void ToolSignalsTest::signalEndsTheProgramWithAReportOfProgress()
{
    ONLY_ON_LINUX("a report of the progress");
    QFETCH(int, number);
    makePipe();
    start(line("convert --special-files --jobs 2 --to tagged --out-dir out good.xml pipe other.xml"));
    awaitReader();
    awaitFile("out/good.tpb");
    awaitFile("out/other.tpb");
    kill(pid_t(m_process->processId()), number);
    checkThatItEndsBy(number);
    QCOMPARE(text(m_process->readAllStandardError()),
             text("tunerproperties: interrupted after 2 of 3 files: 2 converted\n"));
    QCOMPARE(m_process->readAllStandardOutput(), QByteArray());
    QCOMPARE(filesIn("out"), QStringList({text("good.tpb"), text("other.tpb")}));
    QCOMPARE(m_workshop->read(text("out/good.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(m_workshop->read(text("out/other.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(filesIn("temporary"), QStringList());
}

void ToolSignalsTest::reportCountsTheFilesThatAreReplaced()
{
    ONLY_ON_LINUX("a report of the progress");
    makePipe();
    m_workshop->write(text("oneline.xml"), QByteArray(smallXml).replace("\n", ""));
    start(line("fmt --special-files --jobs 1 good.xml oneline.xml pipe"));
    awaitReader(); // with one job the others are done by then
    kill(pid_t(m_process->processId()), SIGTERM);
    checkThatItEndsBy(SIGTERM);
    QCOMPARE(text(m_process->readAllStandardError()),
             text("tunerproperties: interrupted after 2 of 3 files: 1 unchanged, 1 formatted\n"));
    QCOMPARE(m_workshop->read(text("oneline.xml")), QByteArray(smallXml));
}

void ToolSignalsTest::reportBeforeTheFirstFileCountsNone()
{
    ONLY_ON_LINUX("a report of the progress");
    makePipe();
    start(line("validate --special-files --jobs 1 pipe good.xml"));
    awaitReader();
    kill(pid_t(m_process->processId()), SIGINT);
    checkThatItEndsBy(SIGINT);
    QCOMPARE(text(m_process->readAllStandardError()), text("tunerproperties: interrupted after 0 of 2 files\n"));
}

void ToolSignalsTest::quietProgramEndsWithoutAReport()
{
    makePipe();
    start(line("validate --special-files --quiet pipe good.xml"));
    awaitReader();
    kill(pid_t(m_process->processId()), SIGINT);
    checkThatItEndsBy(SIGINT);
    QCOMPARE(m_process->readAllStandardError(), QByteArray());
}

void ToolSignalsTest::reportFollowsTheJson()
{
    ONLY_ON_LINUX("a report of the progress");
    makePipe();
    start(line("validate --special-files --json --jobs 1 good.xml pipe"));
    awaitReader(); // with one job the first file is done by then
    kill(pid_t(m_process->processId()), SIGTERM);
    checkThatItEndsBy(SIGTERM);
    QCOMPARE(text(m_process->readAllStandardError()),
             text("tunerproperties: interrupted after 1 of 2 files: 1 valid\n"));
}

void ToolSignalsTest::singleFileHasNoReport_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("show") << line("show pipe");
    QTest::newRow("validate") << line("validate pipe");
    QTest::newRow("convert") << line("convert pipe out.xml");
}

void ToolSignalsTest::singleFileHasNoReport()
{
    QFETCH(QStringList, arguments);
    makePipe();
    start(arguments);
    awaitReader();
    kill(pid_t(m_process->processId()), SIGINT);
    checkThatItEndsBy(SIGINT);
    QCOMPARE(m_process->readAllStandardError(), QByteArray());
    QCOMPARE(m_process->readAllStandardOutput(), QByteArray());
    QCOMPARE(filesIn("."), QStringList({text("good.xml"), text("other.xml"), text("pipe"), text("temporary")}));
}

void ToolSignalsTest::ignoredSignalsStayIgnored()
{
    makePipe();
    m_process->setProcessEnvironment(m_environment);
    m_process->setWorkingDirectory(m_workshop->path(text(".")));
    m_process->start(
        text("/bin/sh"),
        {text("-c"), text("trap '' HUP; exec \"$0\" validate --special-files good.xml pipe"), text(TOOL_PROGRAM)});
    QVERIFY(m_process->waitForStarted());
    awaitReader();
    kill(pid_t(m_process->processId()), SIGHUP);
    QCOMPARE(write(m_pipe, smallXml, strlen(smallXml)), ssize_t(strlen(smallXml)));
    close(std::exchange(m_pipe, -1));
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_process->exitCode(), 0);
    QCOMPARE(text(m_process->readAllStandardError()), text("tunerproperties: 2 files: 2 valid\n"));
}

void ToolSignalsTest::fileInProgressIsCompleted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("one") << line("convert good.xml out/good.tpb");
    QTest::newRow("many") << line("convert --jobs 1 --to tagged --out-dir out good.xml other.xml");
}

void ToolSignalsTest::fileInProgressIsCompleted()
{
    QFETCH(QStringList, arguments);
    QVERIFY(QDir().mkpath(m_workshop->path(text("out"))));
    m_environment.insert(text("LD_PRELOAD"), text(SIGNAL_AT_RENAME_MODULE));
    m_environment.insert(text("ASAN_OPTIONS"), // the sanitizer is intentionally not loaded first
                         qEnvironmentVariable("ASAN_OPTIONS") + text(":verify_asan_link_order=0"));
    start(arguments);
    checkThatItEndsBy(SIGINT);
    const QStringList files = filesIn("out");
    QVERIFY2(files == QStringList(text("good.tpb")) || files == QStringList({text("good.tpb"), text("other.tpb")}),
             qPrintable(files.join(QLatin1Char(' '))));
    for (const QString &name : files)
        QCOMPARE(m_workshop->read(text("out/") + name), QByteArray::fromHex(smallTaggedHex));
#ifndef TP_PORTABLE
    if (arguments.contains(text("--out-dir")))
        QCOMPARE(text(m_process->readAllStandardError()),
                 text("tunerproperties: interrupted after %1 of 2 files: %1 converted\n").arg(files.size()));
#endif
}

void ToolSignalsTest::signalAtAnyTimeLeavesNoIncompleteFile()
{
    QStringList arguments = line("convert --to tagged --out-dir out");
    for (int i = 0; i < 200; ++i) {
        arguments.append(text("%1.xml").arg(i));
        m_workshop->write(arguments.last(), smallXml);
    }
    for (int milliseconds = 5; milliseconds <= 60; milliseconds += 5) {
        QVERIFY(QDir(m_workshop->path(text("out"))).removeRecursively());
        m_process = std::make_unique<QProcess>();
        start(arguments);
        QTest::qSleep(milliseconds);
        kill(pid_t(m_process->processId()), SIGTERM);
        QVERIFY(m_process->waitForFinished());
        const QStringList files = filesIn("out");
        for (const QString &name : files) {
            QVERIFY2(name.endsWith(QLatin1String(".tpb")), qPrintable(name));
            QCOMPARE(m_workshop->read(text("out/") + name), QByteArray::fromHex(smallTaggedHex));
        }
        const QString report = text(m_process->readAllStandardError());
        if (report == text("tunerproperties: 200 files: 200 converted\n")) {
            QCOMPARE(files.size(), 200); // all was done before the signal
            continue;
        }
        if (m_process->exitStatus() == QProcess::CrashExit && !report.isEmpty() && !files.isEmpty())
            QCOMPARE(report,
                     text("tunerproperties: interrupted after %1 of 200 files: %1 converted\n").arg(files.size()));
    }
}

void ToolSignalsTest::temporaryCopyOfAPipeIsRemoved()
{
    makePipe();
    start(line("show pipe"));
    awaitReader();
    QCOMPARE(write(m_pipe, "<Tuner", 6), ssize_t(6));
    // The pipe is empty, so the first bytes have been copied.
    int left = 0;
    QTRY_VERIFY_WITH_TIMEOUT(ioctl(m_pipe, FIONREAD, &left) == 0 && left == 0, 30000);
    QCOMPARE(filesIn("temporary"), QStringList());
    kill(pid_t(m_process->processId()), SIGINT);
    checkThatItEndsBy(SIGINT);
    QCOMPARE(filesIn("temporary"), QStringList());
}

void ToolSignalsTest::interruptedSetLeavesNoFile()
{
    m_environment.insert(text("LD_PRELOAD"), text(SIGNAL_AT_RENAME_MODULE));
    m_environment.insert(text("ASAN_OPTIONS"), // the sanitizer is intentionally not loaded first
                         qEnvironmentVariable("ASAN_OPTIONS") + text(":verify_asan_link_order=0"));
    start(line("set good.xml quantity 3"));
    checkThatItEndsBy(SIGINT);
    QVERIFY2(m_workshop->read(text("good.xml")).contains(" quantity=\"3\""),
             m_workshop->read(text("good.xml")).constData());
    QCOMPARE(filesIn("."), QStringList({text("good.xml"), text("other.xml"), text("temporary")}));
    QCOMPARE(filesIn("temporary"), QStringList());
}

void ToolSignalsTest::temporaryFilesHaveNoName_data()
{
    QTest::addColumn<QStringList>("arguments");
    for (const char *arguments :
         {"show -", "show - --format html", "validate -", "validate --json -", "convert - out.tpb", "diff - good.xml",
          "get - type", "set - quantity 3", "set good.xml quantity 3", "set good.tpb quantity 3",
          "set good.tpz quantity 3", "set good.tps quantity 3", "set good.json quantity 3"})
        QTest::newRow(arguments) << line(arguments);
}

/// So no signal can leave any of them.
void ToolSignalsTest::temporaryFilesHaveNoName()
{
    QFETCH(QStringList, arguments);
    const QByteArray folder = QFile::encodeName(m_workshop->path(text("temporary")));
    const int unnamed = open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (unnamed < 0)
        SKIP("This file system knows no files without a name.");
    close(unnamed);
    for (const char *name : {"good.tpb", "good.tpz", "good.tps", "good.json"})
        QCOMPARE(m_workshop->shell(text("\"$tool\" convert good.xml ") + text(name)).status, 0);

    const int news = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    QVERIFY(inotify_add_watch(news, folder.constData(), IN_CREATE | IN_MOVED_TO) >= 0);
    start(arguments);
    m_process->write(smallXml);
    m_process->closeWriteChannel();
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(text(m_process->readAllStandardError()), QString());
    QCOMPARE(m_process->exitCode(), 0);

    char event[sizeof(inotify_event) + NAME_MAX + 1];
    QCOMPARE(read(news, event, sizeof(event)), ssize_t(-1));
    QCOMPARE(errno, EAGAIN);
    m_workshop->write(text("temporary/file"), "x"); // which the watch reports
    QVERIFY(read(news, event, sizeof(event)) > 0);
    close(news);
}

void ToolSignalsTest::readerThatDoesNotReadDoesNotDelayTheEnd()
{
    makePipe();
    m_workshop->write(text("bad.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    const int reader = open(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(reader >= 0);
    m_process->setStandardOutputFile(m_workshop->path(text("pipe")));
    QStringList arguments = line("validate");
    for (int i = 0; i < 3000; ++i) // about 50 bytes of output each, and a pipe holds 64 KiB
        arguments.append(text("bad.xml"));
    start(arguments);
    int filled = 0;
    QTRY_VERIFY_WITH_TIMEOUT(ioctl(reader, FIONREAD, &filled) == 0 && filled > 60000, 60000);
    kill(pid_t(m_process->processId()), SIGINT);
    checkThatItEndsBy(SIGINT);
    close(reader);
}

void ToolSignalsTest::closedPipeEndsTheProgramBySigpipe()
{
    m_workshop->write(text("bad.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    const Run run =
        m_workshop->shell(text("{ \"$tool\" validate $(yes bad.xml | head -n 3000); echo $? >&2; } | head -n 1"));
    QCOMPARE(run.out,
             text("bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                  "DirectionFinder\n"));
    QCOMPARE(run.err, text("%1\n").arg(128 + SIGPIPE));
}

TEST_SUITE(ToolSignalsTest)
#include "tst_ToolSignals.moc"
