// SPDX-License-Identifier: MIT
#include <cerrno>
#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

#include <QRegularExpression>

#include <Skip.h>
#include <tools/Tool.h>

#include "FaultyCalls.h"
#include "Saving.h"

using FaultyCalls::Action;

namespace {

const QByteArray old = "the old file";

struct Fault
{
    int error;
    const char *reason; // null if the output is written nevertheless
};

/// One error per kind of call; the tests of the library try all.
Fault faultOf(char kind)
{
    switch (kind) {
    case FaultyCalls::Find:
    case FaultyCalls::OpenOld:
        return {EACCES, "Permission denied"};
    case FaultyCalls::Status:
        return {EIO, "Input/output error"};
    case FaultyCalls::GetAttribute:
        return {EIO, "the access control list of the old file cannot be kept: Input/output error"};
    case FaultyCalls::ListAttributes:
        return {EIO, "the extended attributes of the old file cannot be kept: Input/output error"};
    case FaultyCalls::CreateUnnamed:
    case FaultyCalls::Create:
        return {EACCES, "Permission denied"};
    case FaultyCalls::Write:
        return {ENOSPC, "No space left on device"};
    case FaultyCalls::Sync:
        return {EIO, "Input/output error"};
    case FaultyCalls::Link:
        return {EXDEV, "Invalid cross-device link"};
    case FaultyCalls::Rename:
        return {EROFS, "Read-only file system"};
    case FaultyCalls::Chmod:
        return {EPERM, nullptr};
    default:
        return {EIO, nullptr};
    }
}

void addForms()
{
    QTest::addColumn<QString>("out");
    for (const char *name : {"out.xml", "out.tpb", "out.tpz", "out.tps"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

} // namespace

class ConvertFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fullDiskKeepsTheOldFile_data();
    void fullDiskKeepsTheOldFile();
    void failingCallNeverDamagesTheOutput_data();
    void failingCallNeverDamagesTheOutput();
    void crashAtAnyCallLeavesTheOldOrTheNewFile_data();
    void crashAtAnyCallLeavesTheOldOrTheNewFile();
    void crashAtAnyMomentLeavesTheOldOrTheNewFile_data() { addForms(); }
    void crashAtAnyMomentLeavesTheOldOrTheNewFile();
    void aSizeLimitIsAnError_data();
    void aSizeLimitIsAnError();
    void sizeLimitThatKillsKeepsTheOldFile();
    void linkStaysAndItsTargetIsWritten();
    void circularLinksAreAnError();
    void superuserKeepsTheOwnerOfAFile_data();
    void superuserKeepsTheOwnerOfAFile();
    void plantedLinkIsNotFollowed();
    void partlyWrittenStandardOutputIsReportedWithTheReason();
    void failedCopyOfAPipeIsReportedWithTheReason_data();
    void failedCopyOfAPipeIsReportedWithTheReason();

private:
    Run convert(const QString &out, const FaultyCalls::Plan &plan, const QByteArray &standardInput = {});
    QByteArray calls() const;
    QByteArray convertedWithoutFaults(const QString &out);
    void checkThatItIsRefused(const Run &run, const QString &out, bool replaces, const char *reason) const;

    std::unique_ptr<Workshop> m_workshop;
    std::unique_ptr<Folder> m_folderOfLog;
};

void ConvertFaultsTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_folderOfLog = std::make_unique<Folder>();
    // With coverage, counters of processes that are killed or cannot write must not damage those of the others.
    m_workshop->setEnvironment(QStringLiteral("GCOV_PREFIX"), m_folderOfLog->path());
    m_workshop->setEnvironment(QStringLiteral("GCOV_ERROR_FILE"), m_folderOfLog->path(QStringLiteral("counting")));
}

void ConvertFaultsTest::cleanup()
{
    m_workshop.reset();
}

/// Runs the tool, whose calls fail as planned.
Run ConvertFaultsTest::convert(const QString &out, const FaultyCalls::Plan &plan, const QByteArray &standardInput)
{
    QFile::remove(m_folderOfLog->path(QStringLiteral("calls")));
    const auto set = [this](const char *name, const QString &value) {
        m_workshop->setEnvironment(QString::fromLatin1(name), value);
    };
    set("LD_PRELOAD", QStringLiteral(FAULTY_CALLS_MODULE));
    // The address sanitizer would refuse a library that is preloaded before its own.
    set("ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + QStringLiteral(":verify_asan_link_order=0"));
    set(FaultyCalls::PlanVariable,
        QStringLiteral("%1 %2 %3 %4 %5")
            .arg(plan.call)
            .arg(int(plan.action))
            .arg(plan.error)
            .arg(plan.room)
            .arg(int(plan.unnamedFiles)));
    set(FaultyCalls::FolderVariable, QFileInfo(m_workshop->path(QStringLiteral("."))).canonicalFilePath());
    set(FaultyCalls::LogVariable, m_folderOfLog->path(QStringLiteral("calls")));
    const QString in = standardInput.isNull() ? QStringLiteral("in.xml") : QStringLiteral("-");
    return m_workshop->run({QStringLiteral("convert"), in, out}, standardInput);
}

/// The calls of the last run, a letter each.
QByteArray ConvertFaultsTest::calls() const
{
    return m_folderOfLog->read(QStringLiteral("calls"));
}

QByteArray ConvertFaultsTest::convertedWithoutFaults(const QString &out)
{
    const Run run = convert(out, {});
    const QByteArray bytes = m_workshop->read(out);
    return run.status == 0 && run.err.isEmpty() && QFile::remove(m_workshop->path(out)) ? bytes : QByteArray();
}

void ConvertFaultsTest::checkThatItIsRefused(const Run &run, const QString &out, bool replaces,
                                             const char *reason) const
{
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1: cannot write: %2\n").arg(out, QString::fromLatin1(reason)));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 3);
    QStringList files(QStringLiteral("in.xml"));
    if (replaces)
        files.append(out);
    QCOMPARE(m_workshop->files(), files);
    QCOMPARE(m_workshop->read(out), replaces ? old : QByteArray("(no such file)"));
}

void ConvertFaultsTest::fullDiskKeepsTheOldFile_data()
{
    addForms();
}

void ConvertFaultsTest::fullDiskKeepsTheOldFile()
{
    QFETCH(QString, out);
    for (const QByteArray &in : {QByteArray(smallXml), aLargeDocument(1, 20000).GetXmlString().toUtf8()}) {
        m_workshop->write(QStringLiteral("in.xml"), in);
        const QByteArray whole = convertedWithoutFaults(out);
        QVERIFY(!whole.isEmpty());
        FaultyCalls::Plan plan;
        for (const int room : {0, 1, int(whole.size()) / 2, int(whole.size()) - 1}) {
            m_workshop->write(out, old);
            plan.room = room;
            checkThatItIsRefused(convert(out, plan), out, true, "No space left on device");
            if (QTest::currentTestFailed())
                return;
        }
        plan.room = whole.size();
        QCOMPARE(convert(out, plan).status, 0);
        QVERIFY(m_workshop->read(out) == whole);
        QVERIFY(QFile::remove(m_workshop->path(out)));
    }
}

/// Every form in one place, and one form in every place; the tests of the library try all combinations.
void ConvertFaultsTest::failingCallNeverDamagesTheOutput_data()
{
    QTest::addColumn<QString>("out");
    QTest::addColumn<bool>("replaces");
    QTest::addColumn<bool>("unnamedFiles");
    const auto row = [](const char *out, bool replaces, bool unnamedFiles) {
        QTest::addRow("%s, %s, %s", out, replaces ? "replaced" : "new",
                      unnamedFiles ? "unnamed until whole" : "named at once")
            << QString::fromLatin1(out) << replaces << unnamedFiles;
    };
    for (const char *out : {"out.xml", "out.tpb", "out.tpz", "out.tps"})
        row(out, true, true);
    row("out.xml", true, false);
    row("out.xml", false, true);
    row("out.xml", false, false);
}

void ConvertFaultsTest::failingCallNeverDamagesTheOutput()
{
    QFETCH(QString, out);
    QFETCH(bool, replaces);
    QFETCH(bool, unnamedFiles);
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    const QByteArray whole = convertedWithoutFaults(out);
    QVERIFY(!whole.isEmpty());
    FaultyCalls::Plan plan;
    plan.unnamedFiles = unnamedFiles;
    const auto prepare = [&] {
        QFile::remove(m_workshop->path(out));
        if (replaces)
            m_workshop->write(out, old);
    };
    prepare();
    QCOMPARE(convert(out, plan).status, 0);
    const QByteArray allCalls = calls();
    QVERIFY2(allCalls.contains(FaultyCalls::Write) && allCalls.contains(FaultyCalls::Sync), allCalls.constData());
    plan.action = Action::FailForEver;
    for (int call = 1; call <= allCalls.size(); ++call) {
        const char kind = allCalls[call - 1];
        const Fault fault = faultOf(kind);
        prepare();
        plan.call = call;
        plan.error = fault.error;
        const Run run = convert(out, plan);
        if (fault.reason) {
            checkThatItIsRefused(run, out, replaces, fault.reason);
        } else {
            QCOMPARE(run.err, QString());
            QCOMPARE(run.status, 0);
            QVERIFY(m_workshop->read(out) == whole);
            QCOMPARE(m_workshop->files(), QStringList({QStringLiteral("in.xml"), out}));
        }
        QVERIFY2(calls().size() >= call, calls().constData());
        if (QTest::currentTestFailed())
            return;
    }
}

void ConvertFaultsTest::crashAtAnyCallLeavesTheOldOrTheNewFile_data()
{
    QTest::addColumn<QString>("out");
    QTest::addColumn<bool>("unnamedFiles");
    for (const char *out : {"out.xml", "out.tpb", "out.tpz", "out.tps"})
        QTest::addRow("%s, unnamed until whole", out) << QString::fromLatin1(out) << true;
    QTest::newRow("out.xml, named at once") << QStringLiteral("out.xml") << false;
}

void ConvertFaultsTest::crashAtAnyCallLeavesTheOldOrTheNewFile()
{
    QFETCH(QString, out);
    QFETCH(bool, unnamedFiles);
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    const QByteArray whole = convertedWithoutFaults(out);
    QVERIFY(!whole.isEmpty());
    bool leftOld = false;
    bool leftNew = false;
    for (const Action action : {Action::DieHalfway, Action::DieAfter}) {
        bool died = true;
        for (int call = 1; died; ++call) {
            for (const QString &name : m_workshop->files()) {
                if (name != QLatin1String("in.xml"))
                    QVERIFY(QFile::remove(m_workshop->path(name)));
            }
            m_workshop->write(out, old);
            FaultyCalls::Plan plan;
            plan.call = call;
            plan.action = action;
            plan.unnamedFiles = unnamedFiles;
            died = convert(out, plan).status != 0;
            QCOMPARE(died, calls().size() == call); // otherwise the run has made fewer calls

            const QByteArray found = m_workshop->read(out);
            leftOld = leftOld || found == old;
            leftNew = leftNew || found == whole;
            QVERIFY2(found == old || found == whole, qPrintable(QString::number(call)));
            const QStringList files = m_workshop->files();
            QVERIFY2(files.size() <= 3, qPrintable(files.join(QLatin1Char(' '))));
            const QRegularExpression expected(QStringLiteral("^(in\\.xml|out\\.[a-z]{3}(\\.[A-Za-z]{6})?)$"));
            for (const QString &name : files)
                QVERIFY2(expected.match(name).hasMatch(), qPrintable(name));

            if (files.size() == 3) { // the temporary file does not prevent the next run
                QCOMPARE(convert(out, {}).status, 0);
                QVERIFY(m_workshop->read(out) == whole);
            }
        }
    }
    QVERIFY(leftOld && leftNew);
}

void ConvertFaultsTest::crashAtAnyMomentLeavesTheOldOrTheNewFile()
{
    QFETCH(QString, out);
    JobXml::TunerProperties document = aLargeDocument(1, 100000);
    m_workshop->write(QStringLiteral("in.xml"), document.GetXmlString().toUtf8());
    const QStringList arguments{QStringLiteral("convert"), QStringLiteral("in.xml"), out};
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_workshop->run(arguments).status, 0);
    const int usual = int(timer.elapsed());
    const QByteArray converted = m_workshop->read(out);

    QRandomGenerator moments(20240229);
    int oldFound = 0;
    constexpr int kills = 50;
    for (int i = 0; i < kills; ++i) {
        m_workshop->write(out, old);
        m_workshop->runAndKill(arguments, moments.bounded(usual + 2));
        const QByteArray found = m_workshop->read(out);
        oldFound += found == old ? 1 : 0;
        QVERIFY2(found == old || found == converted, qPrintable(QStringLiteral("after kill %1").arg(i)));
    }
    qInfo("%d kills, %d times the old file and %d times the new one", kills, oldFound, kills - oldFound);
}

void ConvertFaultsTest::aSizeLimitIsAnError_data()
{
    addForms();
}

void ConvertFaultsTest::aSizeLimitIsAnError()
{
    QFETCH(QString, out);
    m_workshop->write(QStringLiteral("in.xml"), aLargeDocument(1, 20000).GetXmlString().toUtf8());
    m_workshop->write(out, old);
    for (const int blocks : {0, 1, 30}) { // of 512 bytes
        const Run run = m_workshop->shell(
            QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$tool\" convert in.xml %2").arg(blocks).arg(out));
        checkThatItIsRefused(run, out, true, "File too large");
    }
    QCOMPARE(m_workshop->shell(QStringLiteral("ulimit -f 200; exec \"$tool\" convert in.xml ") + out).status, 0);
    QVERIFY(m_workshop->read(out).size() > 20000);
}

void ConvertFaultsTest::sizeLimitThatKillsKeepsTheOldFile()
{
    m_workshop->write(QStringLiteral("in.xml"), aLargeDocument(1, 20000).GetXmlString().toUtf8());
    for (const char *name : {"out.xml", "out.tpb", "out.tpz", "out.tps"}) {
        const QString out = QString::fromLatin1(name);
        m_workshop->write(out, old);
        const Run run = m_workshop->shell(
            QStringLiteral("ulimit -c 0; ulimit -f 30; \"$tool\" convert in.xml %1; echo $?").arg(out));
        QCOMPARE(run.out, QStringLiteral("%1\n").arg(128 + SIGXFSZ));
        QCOMPARE(m_workshop->read(out), old);
    }
    QCOMPARE(m_workshop->files().size(), 5);
}

void ConvertFaultsTest::linkStaysAndItsTargetIsWritten()
{
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    const Run run = m_workshop->shell(
        QStringLiteral("mkdir -p a/deep; ln -s ../file.xml a/deep/up.xml; ln -s a/deep folder; ln -s a/new.xml to.xml\n"
                       "\"$tool\" convert in.xml folder/up.xml && \"$tool\" convert in.xml to.xml\n"
                       "test -L a/deep/up.xml -a -L to.xml && cmp a/file.xml a/new.xml; ls; ls a"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, QStringLiteral("a\nfolder\nin.xml\nto.xml\ndeep\nfile.xml\nnew.xml\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a/file.xml")), QByteArray(smallXml));
}

void ConvertFaultsTest::circularLinksAreAnError()
{
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    const Run run =
        m_workshop->shell(QStringLiteral("ln -s a.xml b.xml; ln -s b.xml a.xml; \"$tool\" convert in.xml a.xml\n"
                                         "status=$?; test -L a.xml -a -L b.xml && exit $status"));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: cannot write: Too many levels of symbolic links\n"));
    QCOMPARE(run.status, 3);
}

void ConvertFaultsTest::superuserKeepsTheOwnerOfAFile_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("set") << line("set out.xml quantity 3");
    QTest::newRow("convert") << line("convert in.xml out.xml");
}

void ConvertFaultsTest::superuserKeepsTheOwnerOfAFile()
{
    if (geteuid() != 0)
        SKIP("Only the superuser can give files to others.");
    QFETCH(QStringList, arguments);
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    m_workshop->write(QStringLiteral("out.xml"), QByteArray(smallXml).replace("\"SCP\"", "\"MCP\""));
    const QByteArray before = m_workshop->read(QStringLiteral("out.xml"));
    const QByteArray path = QFile::encodeName(m_workshop->path(QStringLiteral("out.xml")));
    QCOMPARE(chown(path.constData(), 65533, 65532), 0);
    QCOMPARE(chmod(path.constData(), 0640), 0);
    QCOMPARE(m_workshop->run(arguments).status, 0);
    QVERIFY(m_workshop->read(QStringLiteral("out.xml")) != before);
    struct stat status = {};
    QCOMPARE(stat(path.constData(), &status), 0);
    QCOMPARE(status.st_uid, uid_t(65533));
    QCOMPARE(status.st_gid, gid_t(65532));
    QCOMPARE(status.st_mode & 07777, mode_t(0640));
}

void ConvertFaultsTest::plantedLinkIsNotFollowed()
{
    if (geteuid() != 0)
        SKIP("Only the superuser can give links to others.");
    m_workshop->write(QStringLiteral("in.xml"), smallXml);
    m_workshop->write(QStringLiteral("victim"), old);
    const Run run = m_workshop->shell(
        QStringLiteral("mkdir -m 1777 drop; ln -s ../victim drop/out.xml; chown -h 65533:65533 drop/out.xml\n"
                       "exec \"$tool\" convert in.xml drop/out.xml"));
    QCOMPARE(
        run.err,
        QStringLiteral("tunerproperties: drop/out.xml: cannot write: a symbolic link on the path belongs to another "
                       "user and is in a folder where other users can place links\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->read(QStringLiteral("victim")), old);
}

void ConvertFaultsTest::partlyWrittenStandardOutputIsReportedWithTheReason()
{
    m_workshop->write(QStringLiteral("in.xml"), aLargeDocument(1, 20000).GetXmlString().toUtf8());
    const Run run = m_workshop->shell(
        QStringLiteral("trap '' XFSZ; ulimit -f 30; exec \"$tool\" convert in.xml - --to tagged > out"));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: -: cannot write: File too large\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->read(QStringLiteral("out")).size(), 30 * 512);
}

void ConvertFaultsTest::failedCopyOfAPipeIsReportedWithTheReason_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("room");
    const QByteArray large = aLargeDocument(1, 50000).GetXmlString().toUtf8();
    for (const int room : {0, 100}) {
        QTest::addRow("small, %d bytes", room) << QByteArray(smallXml) << room;
        QTest::addRow("large, %d bytes", room) << large << room;
    }
}

void ConvertFaultsTest::failedCopyOfAPipeIsReportedWithTheReason()
{
    QFETCH(QByteArray, document);
    QFETCH(int, room);
    m_workshop->setEnvironment(QStringLiteral("TMPDIR"), m_workshop->path(QStringLiteral(".")));
    FaultyCalls::Plan plan;
    plan.room = room;
    for (const bool unnamedFiles : {true, false}) {
        plan.unnamedFiles = unnamedFiles;
        const Run run = convert(QStringLiteral("out.xml"), plan, document);
        QCOMPARE(run.err,
                 QStringLiteral("tunerproperties: -: cannot copy to a temporary file: No space left on device\n"));
        QCOMPARE(run.status, 3);
        QCOMPARE(m_workshop->files(), QStringList());
    }
}

TEST_SUITE(ConvertFaultsTest)
#include "tst_ConvertFaults.moc"
