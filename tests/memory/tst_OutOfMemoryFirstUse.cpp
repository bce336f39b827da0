// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "OutOfMemory.h"
#include "PlacesInQt.h"

using namespace JobXml;
using namespace OutOfMemory;

namespace {

// Nothing that Qt initializes on first use may be used before the attempts, so another process writes the documents to
// files.

std::string folder;

bool makeFolder()
{
    folder = std::filesystem::temp_directory_path() / "first-use-XXXXXX";
    return mkdtemp(folder.data()) != nullptr;
}

QString path(const char *name)
{
    return QString::fromLatin1(folder.c_str()) + QLatin1Char('/') + QLatin1String(name);
}

bool writeForms()
{
    const pid_t child = fork();
    if (child == 0) {
        const TunerProperties document = aDocument(1);
        const bool done =
            document.SaveXml(path("document.xml")) && document.SaveCompressedBinary(path("document.bin"), -1);
        _exit(done ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0;
}

struct Use
{
    const char *name;
    bool (*perform)(TunerProperties &document);
    bool reads; ///< into the document; otherwise the document is written
    QVector<KnownPlace> places;
};

const Use uses[] = {
    {"LoadXml", [](TunerProperties &document) { return document.LoadXml(path("document.xml")); }, true,
     InQt::firstFile},
    {"SetXmlString",
     [](TunerProperties &document) {
         return document.SetXmlString(
             QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX1\">"
                            "<StartupModes><StartupMode>FFM</StartupMode></StartupModes>"
                            "<BandwidthSelection><Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth>"
                            "</BandwidthSelection>"
                            "<Component type=\"Filter\" name=\"Preselector\" optional=\"false\"><Node id=\"node0\">"
                            "<ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node></Component>"
                            "</TunerProperties>"),
             true);
     },
     true,
     {}},
    {"LoadBinary",
     [](TunerProperties &document) {
         QFile file(path("document.bin"));
         return document.LoadBinary(&file);
     },
     true, InQt::firstQObject},
    {"GetXmlString", [](TunerProperties &document) { return !document.GetXmlString().isEmpty(); }, false, {}},
    {"GetCompressedBinaryRepresentationAsQByteArray",
     [](TunerProperties &document) { return !document.GetCompressedBinaryRepresentationAsQByteArray(-1).isEmpty(); },
     false, InQt::firstQObject},
    {"SaveXml", [](TunerProperties &document) { return document.SaveXml(path("saved")); }, false, {}},
    {"GetProblems", [](TunerProperties &document) { return document.GetProblems().isEmpty(); }, false, {}},
};

class FirstUse final : public Attempt
{
public:
    explicit FirstUse(const Use &use) : m_use(use)
    {
        if (!use.reads)
            m_document = aDocument(1);
    }

    void perform() override { m_done = m_use.perform(m_document); }
    QByteArray state() override { return snapshotOf(m_document); }
    bool isRight() override { return m_done && m_document == aDocument(1); }

    QString complaint(bool) override
    {
        m_document.Reset();
        m_document = aDocument(1);
        return m_document == aDocument(1) && !m_document.GetXmlString().isEmpty()
            ? QString()
            : QStringLiteral("the document can no longer be used");
    }

private:
    const Use &m_use;
    TunerProperties m_document;
    bool m_done = false;
};

QVector<Report> reports;

} // namespace

/// Memory runs out in a process that reads or writes for the first time, while Qt initializes its global data.
class OutOfMemoryFirstUseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badAllocReachesTheCallerAndTheSecondUseSucceeds_data()
    {
        QTest::addColumn<int>("use");
        for (int i = 0; i < reports.size(); ++i)
            QTest::newRow(uses[i].name) << i;
    }

    void badAllocReachesTheCallerAndTheSecondUseSucceeds()
    {
        QFETCH(int, use);
        const QStringList found = surprises(reports.at(use), uses[use].places);
        for (const QString &surprise : found)
            qWarning("%s", qUtf8Printable(surprise));
        QVERIFY(found.isEmpty());
        qInfo("%d allocations", reports.at(use).allocations);
        m_allocations += reports.at(use).allocations;
    }

    void cleanupTestCase() { qInfo("%d allocations, each failed alone and with all that follow", m_allocations); }

private:
    int m_allocations = 0;
};

static int run(int argc, char **argv)
{
    if (!makeFolder() || !writeForms())
        return EXIT_FAILURE;
    for (const Use &use : uses)
        reports.append(failEveryAllocationOfFirstUse([&] { return std::make_unique<FirstUse>(use); }));
    std::filesystem::remove_all(folder);
    OutOfMemoryFirstUseTest test;
    return QTest::qExec(&test, argc, argv);
}

TEST_SUITE_RUN_BY(run)
#include "tst_OutOfMemoryFirstUse.moc"
