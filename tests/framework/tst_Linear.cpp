// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "Heap.h"

using namespace JobXml;
using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::Logger;

namespace {

/// What the library does.
struct Work final : Heap::Watcher
{
    long long flagsHanded = 0;
    long long loggersHanded = 0;
    long long flagsAsked = 0;
    long long allocations = 0;
    long long allocatedBytes = 0;

    bool mayAllocate(std::size_t size) override
    {
        ++allocations;
        allocatedBytes += static_cast<long long>(size);
        return true;
    }
};

Work work;

} // namespace

// These definitions take the place of the base library's own in this program, so every call that crosses into it comes
// by here.

void IRGObject::SetValidate(bool validate) const
{
    ++work.flagsHanded;
    m_validate = validate;
}

void IRGObject::SetLogger(std::shared_ptr<Logger> logger) const
{
    ++work.loggersHanded;
    m_logger = std::move(logger);
}

bool IRGObject::GetValidate() const
{
    ++work.flagsAsked;
    return m_validate;
}

namespace {

// 2,000 nodes with an item and a value each; a few more objects stand above and beside them.
constexpr int objects = 6000;

// What an operation costs on a flat document, all nodes in one component.
template <class Operation>
Work workOf(Operation operation)
{
    work = Work();
    Heap::watch(&work);
    operation();
    Heap::watch(nullptr);
    return work;
}

} // namespace

/// No operation may cost more than in proportion to the size of the tree: ten times the nodes, ten times the work.
class LinearTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (int i = 0; i < 2; ++i) {
            m_documents[i] = aDocument(i == 0 ? 2000 : 20000);
            m_xml[i] = xmlOf(m_documents[i]);
            m_records[i] = recordOf(m_documents[i]);
            m_snapshots[i] = snapshotOf(m_documents[i]);
        }
    }

    void everyOperationIsLinear_data()
    {
        QTest::addColumn<int>("operation");
        QTest::newRow("read XML") << 0;
        QTest::newRow("read XML, not validating") << 1;
        QTest::newRow("read a record") << 2;
        QTest::newRow("read a snapshot") << 3;
        QTest::newRow("write XML") << 4;
        QTest::newRow("write a record") << 5;
        QTest::newRow("write a snapshot") << 6;
        QTest::newRow("check") << 7;
        QTest::newRow("copy") << 8;
        QTest::newRow("compare") << 9;
        QTest::newRow("merge") << 10;
        QTest::newRow("find problems") << 11;
    }

    void everyOperationIsLinear()
    {
        QFETCH(int, operation);
        const Work small = workOf([&] { perform(operation, 0); });
        const Work large = workOf([&] { perform(operation, 1); });
        QVERIFY(small.flagsHanded + small.flagsAsked + small.allocations > 0 || !Heap::isWatched); // it did something
        // Ten times the nodes, and a little that does not grow with them. (A quadratic path makes it a hundred times.)
        const auto linear = [](long long few, long long many) { return many <= 11 * few + 100; };
        QVERIFY2(linear(small.flagsHanded, large.flagsHanded), counts(small.flagsHanded, large.flagsHanded));
        QVERIFY2(linear(small.loggersHanded, large.loggersHanded), counts(small.loggersHanded, large.loggersHanded));
        QVERIFY2(linear(small.flagsAsked, large.flagsAsked), counts(small.flagsAsked, large.flagsAsked));
        QVERIFY(!Heap::isWatched || small.allocations > 0 || operation == 7);
        QVERIFY2(linear(small.allocations, large.allocations), counts(small.allocations, large.allocations));
        // Lists and buffers double when they are full, so at one size they may be half empty and full at the other.
        QVERIFY2(linear(2 * small.allocatedBytes, large.allocatedBytes),
                 counts(small.allocatedBytes, large.allocatedBytes));
    }

    void readingXmlHandsDownAFewTimesPerObject()
    {
        // a flag for each object as it is made, as its data are, and at its first child element, with what is below it
        const Work reading = workOf([&] { perform(0, 0); });
        QVERIFY2(reading.flagsHanded < 6 * objects, counts(reading.flagsHanded, objects));
    }

    void writingChecksAndHandsDownOncePerObject()
    {
        m_documents[0].SetValidate(true);
        const Work checking = workOf([&] { m_documents[0].Check(); });
        for (const int operation : {4, 5}) {
            const Work writing = workOf([&] { perform(operation, 0); });
            // a flag and a logger for each object, and no second time below the root
            QCOMPARE(writing.flagsHanded, checking.flagsHanded);
            QCOMPARE(writing.loggersHanded, checking.loggersHanded);
            QVERIFY2(checking.flagsHanded <= objects + 10, counts(checking.flagsHanded, objects));
            // Each item asks once for its check. Beside that check, writing asks each of the three objects of a node
            // once whether it may be written, and the list that holds it, if there is one, whether it is validating.
            QVERIFY2(checking.flagsAsked <= objects / 3 + 10, counts(checking.flagsAsked, objects / 3));
            const long long ownQuestions = writing.flagsAsked - checking.flagsAsked;
            QVERIFY2(ownQuestions <= 5 * objects / 3 + 20, counts(ownQuestions, 5 * objects / 3));
        }
    }

private:
    void perform(int operation, int which)
    {
        TunerProperties document;
        switch (operation) {
        case 0:
        case 1:
            document.SetValidate(operation == 0);
            readXml(document, m_xml[which]);
            break;
        case 2:
            readRecord(document, m_records[which]);
            break;
        case 3:
            readSnapshot(document, m_snapshots[which]);
            break;
        case 4:
            xmlOf(m_documents[which]);
            break;
        case 5:
            recordOf(m_documents[which]);
            break;
        case 6:
            snapshotOf(m_documents[which]);
            break;
        case 7:
            m_documents[which].Check();
            break;
        case 8:
            document.SetComponent(TunerProperties(m_documents[which]).GetComponent());
            break;
        case 9:
            QVERIFY(TunerProperties(m_documents[which]) == m_documents[which]);
            break;
        case 10:
            QVERIFY(document.MergeRGObject(m_documents[which]));
            break;
        default:
            QVERIFY(m_documents[which].GetProblems().isEmpty());
            break;
        }
    }

    static const char *counts(long long few, long long many)
    {
        static QByteArray text;
        text = QByteArray::number(few) + " at 2,000 nodes, " + QByteArray::number(many) + " at 20,000";
        return text.constData();
    }

    TunerProperties m_documents[2];
    QString m_xml[2];
    QByteArray m_records[2];
    QByteArray m_snapshots[2];
};

QTEST_GUILESS_MAIN(LinearTest)
#include "tst_Linear.moc"
