// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "Threads.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

// Uses a document in every way that a program may.
bool useInEveryWay(TunerProperties &document, bool validate)
{
    document.SetValidate(validate);
    document.SetLogger(std::make_shared<Logger>());
    bool good = true;
    for (int round = 0; round < 20; ++round) {
        document.Check();
        const QString xml = xmlOf(document);
        const QByteArray record = recordOf(document);
        const QByteArray snapshot = snapshotOf(document);

        TunerProperties read;
        read.SetValidate(validate);
        readXml(read, xml);
        good = good && read == document;
        read.ResetToDefault();
        readRecord(read, record);
        read.ResetToDefault();
        readSnapshot(read, snapshot);

        readRecord(document, record); // items join those present
        document.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueInt().Setvalue(round);
        document.GetComponent().resize(1);
        document.GetStartupModes().GetStartupMode().resize(1);
        document.GetBandwidthSelection().resize(1);
        good = good && document.HasData() && document.GetProblems().isEmpty();
        if (round % 5 == 4) {
            TunerProperties moved(std::move(document));
            document = std::move(moved);
            document.SetValidate(validate);
        }
    }
    return good;
}

bool useTwoAtOnce(TunerProperties &first, TunerProperties &second)
{
    bool firstGood = false;
    bool secondGood = false;
    atOnce([&] { firstGood = useInEveryWay(first, true); }, [&] { secondGood = useInEveryWay(second, false); });
    return firstGood && secondGood;
}

const QString notWellFormed = QStringLiteral("<TunerProperties Version=");
const QString whyNot = QStringLiteral("XML text:1:25: Premature end of document.");

/// Counts expected and other messages. Thread-safe, as required of a shared logger.
class CountingLogger : public Logger
{
public:
    void Log(Severity severity, const QString &message) override
    {
        const std::lock_guard lock(m_mutex);
        ++(severity == Severity::Error && message == whyNot ? expected : others);
    }

    int expected = 0;
    int others = 0;

private:
    std::mutex m_mutex;
};

std::atomic<int> expectedMessages{0}; // a message handler is a plain function
std::atomic<int> otherMessages{0};

void countMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool expected = type == QtCriticalMsg && qstrcmp(context.category, "reportbase") == 0 && message == whyNot;
    ++(expected ? expectedMessages : otherMessages);
}

/// A published document: readers copy it while holding a lock and use the copy afterwards.
class Published
{
public:
    explicit Published(const TunerProperties &document) { m_document = document; }

    void take(TunerProperties &document) const
    {
        const std::lock_guard lock(m_mutex);
        document = m_document;
    }

    void replace(const TunerProperties &document)
    {
        const std::lock_guard lock(m_mutex);
        m_document = document;
    }

private:
    mutable std::mutex m_mutex;
    TunerProperties m_document;
};

void refuse(TunerProperties &document)
{
    if (document.SetXmlString(notWellFormed, true))
        qFatal("a document that is not well-formed was read");
}

} // namespace

/// Two threads may use one object each, whatever data the objects share. Meaningful with a thread sanitizer.
class ThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoAssignedDocumentsAreUsedAtOnce()
    {
        TunerProperties first = aDocument();
        TunerProperties second;
        second = first;
        QVERIFY(useTwoAtOnce(first, second));
    }

    void aDocumentAndItsCopyAreUsedAtOnce()
    {
        TunerProperties first = aDocument();
        TunerProperties second(first);
        QVERIFY(useTwoAtOnce(first, second));
    }

    void threeOwnersOfOneBlockPartAtTheSameTime()
    {
        for (int round = 0; round < 50; ++round) {
            const TunerProperties source = aDocument();
            TunerProperties documents[3];
            for (TunerProperties &document : documents)
                document = source;
            bool same[3] = {};
            const auto use = [&](int i) {
                documents[i].SetValidate(i == 1);
                documents[i].Setname(QStringLiteral("document %1").arg(i));
                same[i] = documents[i].Getname().endsWith(QString::number(i));
            };
            atOnce([&] { use(0); }, [&] { use(1); }, [&] { use(2); });
            QVERIFY(same[0] && same[1] && same[2]);
            QVERIFY(!source.IsnameSet());
        }
    }

    // The last owner writes to the data that all have read.
    void lastOwnerOfTheDataSeesAllChangesOfTheOthers()
    {
        for (int round = 0; round < 200; ++round) {
            TunerProperties documents[3];
            documents[0] = aDocument();
            documents[1] = documents[0];
            documents[2] = documents[0];
            QString names[3];
            const auto use = [&](int i) {
                documents[i].SetMaxFFPDelay(quint64(i) + documents[i].GetMaxFFPDelay());
                documents[i].GetComponent()[0].Setname(QString::number(i));
                names[i] = std::as_const(documents[i]).GetComponent().at(0).Getname();
            };
            atOnce([&] { use(0); }, [&] { use(1); }, [&] { use(2); });
            for (int i = 0; i < 3; ++i) {
                QCOMPARE(names[i], QString::number(i));
                QCOMPARE(documents[i].GetMaxFFPDelay(), quint64(i));
            }
        }
    }

    void aPublishedDocumentIsTakenUsedAndReplacedByAllThreads()
    {
        Published published(aDocument());
        const QByteArray expected = snapshotOf(aDocument());
        int good[3] = {};
        const auto use = [&](int i) {
            for (int round = 0; round < 200; ++round) {
                TunerProperties document;
                document.SetValidate(i != 1);
                document.SetLogger(std::make_shared<Logger>());
                published.take(document);
                document.Check();
                good[i] += snapshotOf(document) == expected && document.GetValidate() == (i != 1);
                document.Setname(QStringLiteral("mine"));
                document.GetComponent()[0].GetNode().resize(1);
                published.take(document);
                if (round % 3 == i)
                    published.replace(document);
            }
        };
        atOnce([&] { use(0); }, [&] { use(1); }, [&] { use(2); });
        for (const int count : good)
            QCOMPARE(count, 200);
    }

    void sharedDocumentsAreSavedAndLoadedAtOnce()
    {
        const QTemporaryDir folder;
        QVERIFY(folder.isValid());
        TunerProperties first = aDocument();
        TunerProperties second;
        second = first;
        QString failures[2];
        const auto use = [&](TunerProperties &document, int i) {
            const QString path = folder.filePath(QString::number(i));
            for (int round = 0; round < 20 && failures[i].isNull(); ++round) {
                TunerProperties read;
                if (!document.SaveXml(path) || !read.LoadXml(path) || read != document)
                    failures[i] = QStringLiteral("XML: ") + document.GetErrorString() + read.GetErrorString();
                QFile file(path);
                read.Reset();
                if (!document.SaveBinary(path) || !read.LoadBinary(&file) || read != document)
                    failures[i] = QStringLiteral("binary: ") + document.GetErrorString() + read.GetErrorString();
                document = read;
            }
        };
        atOnce([&] { use(first, 0); }, [&] { use(second, 1); });
        QCOMPARE(failures[0], QString());
        QCOMPARE(failures[1], QString());
        QVERIFY(first == aDocument());
        QVERIFY(second == aDocument());
    }

    void aLoggerThatIsSafeToCallMayBeShared()
    {
        const auto logger = std::make_shared<CountingLogger>();
        TunerProperties first = aDocument();
        TunerProperties second;
        second = first;
        const auto use = [&](TunerProperties &document) {
            for (int round = 0; round < 100; ++round) {
                document.SetLogger(logger);
                refuse(document);
                document.ResetLogger();
                refuse(document);
            }
        };
        atOnce([&] { use(first); }, [&] { use(second); });
        QCOMPARE(logger->expected, 200);
        QCOMPARE(logger->others, 0);
        QCOMPARE(first.GetErrorString(), whyNot);
        QCOMPARE(second.GetErrorString(), whyNot);
    }

    void theStockLoggerMayBeShared()
    {
        const auto logger = std::make_shared<Logger>();
        TunerProperties first = aDocument();
        TunerProperties second;
        first.SetLogger(logger);
        second.SetLogger(logger);
        second = first;
        const auto use = [&](TunerProperties &document) {
            for (int round = 0; round < 100; ++round)
                refuse(document);
        };
        const QtMessageHandler before = qInstallMessageHandler(countMessage);
        atOnce([&] { use(first); }, [&] { use(second); });
        qInstallMessageHandler(before);
        QCOMPARE(expectedMessages.load(), 200);
        QCOMPARE(otherMessages.load(), 0);
    }

    void loggerIsDestroyedWithTheLastDocumentThatUsesIt()
    {
        for (int round = 0; round < 100; ++round) {
            auto logger = std::make_shared<Logger>();
            const std::weak_ptr<Logger> watched = logger;
            auto first = std::make_unique<TunerProperties>(aDocument());
            auto second = std::make_unique<TunerProperties>(*first);
            first->SetLogger(logger);
            second->SetLogger(std::move(logger));
            atOnce([&] { first.reset(); }, [&] { second.reset(); });
            QVERIFY(watched.expired());
        }
    }

    void documentsWithTheSameListAreUsedAtOnce()
    {
        const QVector<Component> list{aComponent()};
        TunerProperties first = aDocument();
        TunerProperties second = aDocument();
        first.SetComponent(list);
        second.SetComponent(std::as_const(first).GetComponent());
        QVERIFY(useTwoAtOnce(first, second));
    }

    void sharedDocumentsAreComparedAtOnce()
    {
        const TunerProperties source = aDocument();
        TunerProperties first;
        TunerProperties second;
        first = source;
        second = source;
        bool equal[2] = {};
        atOnce([&] { equal[0] = first == aDocument(); }, [&] { equal[1] = second == aDocument(); });
        QVERIFY(equal[0] && equal[1]);
    }
};

TEST_SUITE(ThreadsTest)
#include "tst_Threads.moc"
