// SPDX-License-Identifier: MIT
#include <thread>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

// Whatever a program may do with a document of its own.
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
    std::thread firstThread([&] { firstGood = useInEveryWay(first, true); });
    std::thread secondThread([&] { secondGood = useInEveryWay(second, false); });
    firstThread.join();
    secondThread.join();
    return firstGood && secondGood;
}

} // namespace

/// Two objects may be used by two threads, one each, whatever they shared before. Meaningful under a thread sanitizer.
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
            std::thread threads[3];
            for (int i = 0; i < 3; ++i) {
                threads[i] = std::thread([&, i] {
                    documents[i].SetValidate(i == 1);
                    documents[i].Setname(QStringLiteral("document %1").arg(i));
                    same[i] = documents[i].Getname().endsWith(QString::number(i));
                });
            }
            for (std::thread &thread : threads)
                thread.join();
            QVERIFY(same[0] && same[1] && same[2]);
            QVERIFY(!source.IsnameSet());
        }
    }

    void documentsThatWereGivenOneListAreUsedAtOnce()
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
        std::thread firstThread([&] { equal[0] = first == aDocument(); });
        std::thread secondThread([&] { equal[1] = second == aDocument(); });
        firstThread.join();
        secondThread.join();
        QVERIFY(equal[0] && equal[1]);
    }
};

QTEST_GUILESS_MAIN(ThreadsTest)
#include "tst_Threads.moc"
