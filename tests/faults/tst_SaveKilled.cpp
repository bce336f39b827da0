// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <csignal>

#include <poll.h>
#include <sys/prctl.h>

#include "FaultyCalls.h"

using JobXml::TunerProperties;

namespace {

/// A process that saves two documents in turn, until it is killed.
class EndlessSaver
{
public:
    EndlessSaver(const Way &way, const TunerProperties &one, const TunerProperties &other, const QString &path)
    {
        int ends[2];
        if (pipe(ends) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL); // if the test itself is killed
            for (bool reported = false;; reported = true) {
                const bool saved = way.save(one, path) && way.save(other, path);
                if (!saved)
                    _exit(1);
                if (!reported && ::write(ends[1], "", 1) != 1)
                    _exit(2);
            }
        }
        ::close(ends[1]);
        m_news = ends[0];
    }

    ~EndlessSaver()
    {
        if (m_process > 0)
            kill();
        ::close(m_news);
    }

    EndlessSaver(const EndlessSaver &) = delete;
    EndlessSaver &operator=(const EndlessSaver &) = delete;

    /// Waits until both documents have been saved once.
    bool hasBegun() const
    {
        char news = 1;
        return m_process > 0 && ::read(m_news, &news, 1) == 1;
    }

    /// Kills the process and returns the status that wait() reports.
    int kill()
    {
        int status = -1;
        ::kill(m_process, SIGKILL);
        waitpid(m_process, &status, 0);
        m_process = -1;
        return status;
    }

private:
    pid_t m_process = -1;
    int m_news = -1;
};

} // namespace

class SaveKilledTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void killingAtAnyMomentLeavesTheOldOrTheNewDocument_data();
    void killingAtAnyMomentLeavesTheOldOrTheNewDocument();
    void concurrentReadersSeeWholeDocuments_data();
    void concurrentReadersSeeWholeDocuments();

private:
    TunerProperties m_one;
    TunerProperties m_other;
};

void SaveKilledTest::initTestCase()
{
    // Of different sizes, so that a mixture of both would show.
    m_one = aLargeDocument(1, 40000);
    m_other = aLargeDocument(2, 60000);
}

void SaveKilledTest::killingAtAnyMomentLeavesTheOldOrTheNewDocument_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("kills");
    QTest::addColumn<bool>("unnamedFiles");
    QTest::newRow("SaveXml") << waysToSave[0] << 50 << true;
    QTest::newRow("SaveBinary") << waysToSave[1] << 50 << true;
    QTest::newRow("SaveCompressedBinary") << waysToSave[2] << 40 << true;
    QTest::newRow("SaveXml, without unnamed files") << waysToSave[0] << 30 << false;
    QTest::newRow("SaveBinary, without unnamed files") << waysToSave[1] << 30 << false;
}

/// 200 kills in total, at pseudorandom times.
void SaveKilledTest::killingAtAnyMomentLeavesTheOldOrTheNewDocument()
{
    QFETCH(Way, way);
    QFETCH(int, kills);
    QFETCH(bool, unnamedFiles);
    const Folder folder;
    const QString target = folder.path(QStringLiteral("document"));
    const QByteArray one = way.bytes(m_one);
    const QByteArray other = way.bytes(m_other);
    QRandomGenerator moments(20240229);
    FaultyCalls::Plan plan;
    plan.unnamedFiles = unnamedFiles;
    FaultyCalls::begin(plan); // also applies to the process that saves
    int onesFound = 0;
    for (int i = 0; i < kills; ++i) {
        EndlessSaver saver(way, m_one, m_other, target);
        QVERIFY(saver.hasBegun());
        poll(nullptr, 0, moments.bounded(30)); // milliseconds; a save takes between one and ten of them
        const int status = saver.kill();
        QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL, qPrintable(QString::number(status)));

        const QByteArray found = folder.read(QStringLiteral("document"));
        onesFound += found == one ? 1 : 0;
        QVERIFY2(found == one || found == other, qPrintable(QStringLiteral("after kill %1").arg(i)));
        TunerProperties read;
        QFile file(target);
        QVERIFY2(way.save == waysToSave[0].save ? read.LoadXml(&file) : read.LoadBinary(&file),
                 qPrintable(read.GetErrorString()));
        QVERIFY(read == (found == one ? m_one : m_other));
    }
    // Files that killed processes have left are recognizable by their names and do no harm.
    QStringList leftOver = folder.names();
    QVERIFY(leftOver.removeOne(QStringLiteral("document")));
    QVERIFY(leftOver.size() <= kills);
    for (const QString &name : qAsConst(leftOver))
        QVERIFY2(name.startsWith(QStringLiteral("document.")), qPrintable(name));
    qInfo("%d kills, %d times the one document and %d times the other, %d temporary files left", kills, onesFound,
          kills - onesFound, int(leftOver.size()));
    QVERIFY(way.save(m_one, target));
    FaultyCalls::end();
    QVERIFY(folder.read(QStringLiteral("document")) == one);
    QCOMPARE(folder.names().size(), leftOver.size() + 1);
}

void SaveKilledTest::concurrentReadersSeeWholeDocuments_data()
{
    QTest::addColumn<Way>("way");
    for (const Way &way : waysToSave)
        QTest::newRow(way.name) << way;
}

void SaveKilledTest::concurrentReadersSeeWholeDocuments()
{
    QFETCH(Way, way);
    const Folder folder;
    const QByteArray one = way.bytes(m_one);
    const QByteArray other = way.bytes(m_other);
    FaultyCalls::begin({});
    EndlessSaver saver(way, m_one, m_other, folder.path(QStringLiteral("document")));
    QVERIFY(saver.hasBegun());
    for (int i = 0; i < 200; ++i) {
        const QByteArray found = folder.read(QStringLiteral("document"));
        QVERIFY2(found == one || found == other, qPrintable(QString::number(i)));
    }
    FaultyCalls::end();
}

TEST_SUITE(SaveKilledTest)
#include "tst_SaveKilled.moc"
