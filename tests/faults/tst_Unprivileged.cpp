// SPDX-License-Identifier: MIT
#include "EveryWay.h"

#include <cstdio>

#include <sys/stat.h>

using JobXml::TunerProperties;

namespace {

constexpr int SkipReturnCode = 77; // CTest counts it as skipped

const QString target = QStringLiteral("document");

} // namespace

/// Files and folders with permissions that the superuser would ignore.
class UnprivilegedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readOnlyFolderKeepsItsDocument_data();
    void readOnlyFolderKeepsItsDocument();
    void aReadOnlyFileIsNotReplaced_data();
    void aReadOnlyFileIsNotReplaced();
    void aFolderThatCannotBeEnteredIsAnError_data();
    void aFolderThatCannotBeEnteredIsAnError();
    void folderThatCannotBeListedAcceptsTheFile_data();
    void folderThatCannotBeListedAcceptsTheFile();
    void unreadableFileIsAnError_data();
    void unreadableFileIsAnError();

private:
    void allow(const QString &path, mode_t mode) const
    {
        QCOMPARE(chmod(QFile::encodeName(path).constData(), mode), 0);
    }
    QString path(const QString &name) const { return m_folder->path(name); }

    std::unique_ptr<Folder> m_folder;
    TunerProperties m_old = aSmallDocument("old");
    TunerProperties m_new = aSmallDocument("new");
};

void UnprivilegedTest::init()
{
    QVERIFY(geteuid() != 0);
    m_folder = std::make_unique<Folder>();
}

void UnprivilegedTest::cleanup()
{
    allow(m_folder->path(), 0700);
    m_folder.reset();
}

void UnprivilegedTest::readOnlyFolderKeepsItsDocument_data()
{
    EveryWay::addRows();
}

void UnprivilegedTest::readOnlyFolderKeepsItsDocument()
{
    QFETCH(Saving, saving);
    QCOMPARE(saving.save(m_old, path(target)), QString());
    const QByteArray old = m_folder->read(target);
    allow(m_folder->path(), 0555);
    QVERIFY(QFileInfo(path(target)).isWritable());
    for (const QString &file : {path(target), path(QStringLiteral("another"))})
        QCOMPARE(saving.save(m_new, file), file + QStringLiteral(": cannot write: Permission denied"));
    QCOMPARE(m_folder->read(target), old);
    QCOMPARE(m_folder->names(), QStringList(target));
}

void UnprivilegedTest::aReadOnlyFileIsNotReplaced_data()
{
    EveryWay::addRows();
}

/// Although the permissions of its folder would allow it.
void UnprivilegedTest::aReadOnlyFileIsNotReplaced()
{
    QFETCH(Saving, saving);
    m_folder->write(target, "old");
    QVERIFY(QFile::link(target, path(QStringLiteral("link"))));
    allow(path(target), 0444);
    for (const QString &file : {path(target), path(QStringLiteral("link"))})
        QCOMPARE(saving.save(m_new, file), file + QStringLiteral(": cannot write: Permission denied"));
    QCOMPARE(m_folder->read(target), QByteArray("old"));
    QCOMPARE(m_folder->names(), QStringList({target, QStringLiteral("link")}));
}

void UnprivilegedTest::aFolderThatCannotBeEnteredIsAnError_data()
{
    EveryWay::addRows();
}

void UnprivilegedTest::aFolderThatCannotBeEnteredIsAnError()
{
    QFETCH(Saving, saving);
    m_folder->write(target, "old");
    allow(m_folder->path(), 0666);
    QCOMPARE(saving.save(m_new, path(target)), path(target) + QStringLiteral(": cannot write: Permission denied"));
    allow(m_folder->path(), 0700);
    QCOMPARE(m_folder->read(target), QByteArray("old"));
    QCOMPARE(m_folder->names(), QStringList(target));
}

void UnprivilegedTest::folderThatCannotBeListedAcceptsTheFile_data()
{
    EveryWay::addRows();
}

void UnprivilegedTest::folderThatCannotBeListedAcceptsTheFile()
{
    QFETCH(Saving, saving);
    m_folder->write(target, "old");
    allow(m_folder->path(), 0333);
    QCOMPARE(saving.save(m_new, path(target)), QString());
    allow(m_folder->path(), 0700);
    QVERIFY(m_folder->read(target) != "old");
    QCOMPARE(m_folder->names(), QStringList(target));
}

void UnprivilegedTest::unreadableFileIsAnError_data()
{
    QTest::addColumn<bool>("ofTheFile");
    QTest::newRow("a file") << true;
    QTest::newRow("the folder above") << false;
}

void UnprivilegedTest::unreadableFileIsAnError()
{
    QFETCH(bool, ofTheFile);
    const QString file = path(QStringLiteral("document.xml"));
    QVERIFY(m_old.SaveXml(file));
    allow(ofTheFile ? file : m_folder->path(), ofTheFile ? 0200 : 0666);
    const QString error = file + QStringLiteral(": cannot open: Permission denied");

    TunerProperties document;
    QVERIFY(!document.LoadXml(file));
    QCOMPARE(document.GetErrorString(), error);
    QFile closed(file);
    QVERIFY(!document.LoadXml(&closed));
    QCOMPARE(document.GetErrorString(), error);
    QVERIFY(!document.LoadBinary(&closed));
    QCOMPARE(document.GetErrorString(), error);
    QVERIFY(!document.AnyData());

    Workshop shop;
    shop.setEnvironment(QStringLiteral("in"), file);
    for (const char *command : {"show \"$in\"", "validate \"$in\"", "convert \"$in\" out.tpb"}) {
        const Run run = shop.shell(QStringLiteral("exec \"$tool\" ") + QString::fromLatin1(command));
        QCOMPARE(run.err, QStringLiteral("tunerproperties: ") + error + QLatin1Char('\n'));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, 3);
    }
    QCOMPARE(shop.files(), QStringList());
}

namespace {

/// Runs this program again as an unprivileged user and returns the exit status. The program is copied to a folder that
/// everybody can read, since the build folder may not be readable.
int runAsNobody(const QStringList &arguments)
{
    QTemporaryDir folder;
    const QString work = folder.filePath(QStringLiteral("work"));
    const uint nobody = 65534;
    QDir(folder.path()).mkdir(QStringLiteral("work"));
    bool isPrepared = chmod(QFile::encodeName(folder.path()).constData(), 0755) == 0
        && chown(QFile::encodeName(work).constData(), nobody, nobody) == 0;
    const QString self = QCoreApplication::applicationFilePath();
    QStringList files = QStringLiteral(FILES_NEEDED).split(QLatin1Char(':'));
    files.prepend(self);
    for (const QString &file : qAsConst(files)) {
        const QString copy = folder.filePath(QFileInfo(file).fileName());
        isPrepared = isPrepared && QFile::copy(file, copy) && chmod(QFile::encodeName(copy).constData(), 0755) == 0;
    }
    if (!isPrepared) {
        std::printf("This program cannot be copied to %s.\n", qPrintable(folder.path()));
        return 1;
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), folder.path());
    environment.insert(QStringLiteral("PATH"),
                       folder.path() + QLatin1Char(':') + environment.value(QStringLiteral("PATH")));
    environment.insert(QStringLiteral("TMPDIR"), work);
    environment.insert(QStringLiteral("GCOV_PREFIX"), work); // for the counters of coverage
    const QStringList asNobody = {QStringLiteral("--reuid=%1").arg(nobody), QStringLiteral("--regid=%1").arg(nobody),
                                  QStringLiteral("--clear-groups"), QStringLiteral("--")};
    const auto run = [&](const QStringList &command) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QStringLiteral("setpriv"), asNobody + command);
        const bool isDone = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
        return isDone ? process.exitCode() : -1;
    };
    const QString copyOfSelf = folder.filePath(QFileInfo(self).fileName());
    if (run({QStringLiteral("test"), QStringLiteral("-x"), copyOfSelf}) != 0) {
        std::printf("setpriv cannot change the user here, so nothing was tested without privileges.\n");
        return SkipReturnCode;
    }
    return run(QStringList{copyOfSelf, QStringLiteral("tst_Unprivileged")} + arguments.mid(1));
}

} // namespace

static int run(int argc, char **argv)
{
    qputenv("PATH", qgetenv("PATH") + ":" TOOL_FOLDER);
    QCoreApplication application(argc, argv);
    if (geteuid() == 0)
        return runAsNobody(QCoreApplication::arguments());
    UnprivilegedTest test;
    return QTest::qExec(&test, argc, argv);
}

TEST_SUITE_RUN_BY(run)
#include "tst_Unprivileged.moc"
