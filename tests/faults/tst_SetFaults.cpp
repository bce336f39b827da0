// SPDX-License-Identifier: MIT
#include <csignal>

#include <tools/Tool.h>

#include "FaultyCalls.h"
#include "Saving.h"

namespace {

const QByteArray otherXml = QByteArray(smallXml).replace("SCP", "MCP");

/// Whether the process has stopped itself.
bool isStopped(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(") T ");
}

} // namespace

/// Changes of a file after `set` has read it and before it replaces it.
class SetFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesByOthersAreNotOverwritten_data();
    void changesByOthersAreNotOverwritten();
    void unchangedFileIsReplaced();

private:
    /// Runs `set a.xml quantity 7`; `meanwhile` is called when the tool is about to resolve the path again.
    template <class Meanwhile>
    Run set(Workshop &shop, const Meanwhile &meanwhile)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const auto insert = [&](const char *name, const QString &value) {
            environment.insert(QString::fromLatin1(name), value);
        };
        insert("LD_PRELOAD", QStringLiteral(FAULTY_CALLS_MODULE));
        insert("ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + QStringLiteral(":verify_asan_link_order=0"));
        insert(FaultyCalls::PlanVariable, QStringLiteral("1 %1 0 -1 1").arg(int(FaultyCalls::Action::Stop)));
        insert(FaultyCalls::FolderVariable, QFileInfo(shop.path(QStringLiteral("."))).canonicalFilePath());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(shop.path(QStringLiteral(".")));
        process.start(QStringLiteral(TOOL_PROGRAM), line("set a.xml quantity 7"));
        if (!process.waitForStarted())
            return {};
        const qint64 number = process.processId();
        if (!QTest::qWaitFor([&] { return isStopped(number); }, 30000))
            return {};
        meanwhile();
        kill(pid_t(number), SIGCONT);
        process.waitForFinished();
        Run run;
        run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }
};

void SetFaultsTest::changesByOthersAreNotOverwritten_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"replaced", "removed", "link"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void SetFaultsTest::changesByOthersAreNotOverwritten()
{
    QFETCH(QString, what);
    Workshop shop;
    const QString path = shop.path(QStringLiteral("a.xml"));
    shop.write(QStringLiteral("a.xml"), smallXml);
    shop.write(QStringLiteral("b.xml"), otherXml);
    const Run run = set(shop, [&] {
        QVERIFY(QFile::remove(path));
        if (what == QLatin1String("replaced"))
            shop.write(QStringLiteral("a.xml"), otherXml);
        else if (what == QLatin1String("link"))
            QVERIFY(QFile::link(QStringLiteral("b.xml"), path));
    });
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: a.xml: cannot write: the file at the end of the path was removed or "
                            "renamed, or the path was changed\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(QFile::exists(path), what != QLatin1String("removed"));
    if (QFile::exists(path))
        QCOMPARE(shop.read(QStringLiteral("a.xml")), otherXml);
    QCOMPARE(shop.read(QStringLiteral("b.xml")), otherXml);
}

void SetFaultsTest::unchangedFileIsReplaced()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    const Run run = set(shop, [] {});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QVERIFY(shop.read(QStringLiteral("a.xml")).contains(" quantity=\"7\""));
}

TEST_SUITE(SetFaultsTest)
#include "tst_SetFaults.moc"
