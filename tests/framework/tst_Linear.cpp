// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <new>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;
using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::Logger;

// Counts what the library does: these definitions take the place of the libraries' own in this program, so every call
// that crosses into the base library, and every heap allocation with its size, comes by here.
namespace {

struct Work
{
    long long flagsHanded = 0;
    long long loggersHanded = 0;
    long long flagsAsked = 0;
    long long allocations = 0;
    long long allocatedBytes = 0;
};

Work work;

void *counted(std::size_t size)
{
    ++work.allocations;
    work.allocatedBytes += static_cast<long long>(size);
    return std::malloc(size); // NOLINT
}

} // namespace

void *operator new(std::size_t size)
{
    if (void *memory = counted(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

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

// What an operation costs on a flat document, all nodes in one component.
template <class Operation>
Work workOf(Operation operation)
{
    work = Work();
    operation();
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
        QVERIFY(small.flagsHanded + small.flagsAsked + small.allocations > 0); // it did something
        // Ten times the nodes; what does not grow with them, and the steps in which lists grow, make it less exact.
        const auto linear = [](long long few, long long many) { return many <= 11 * few + 100; };
        QVERIFY2(linear(small.flagsHanded, large.flagsHanded), counts(small.flagsHanded, large.flagsHanded));
        QVERIFY2(linear(small.loggersHanded, large.loggersHanded), counts(small.loggersHanded, large.loggersHanded));
        QVERIFY2(linear(small.flagsAsked, large.flagsAsked), counts(small.flagsAsked, large.flagsAsked));
        QVERIFY2(linear(small.allocations, large.allocations), counts(small.allocations, large.allocations));
        QVERIFY2(linear(small.allocatedBytes, large.allocatedBytes),
                 counts(small.allocatedBytes, large.allocatedBytes));
    }

    void readingXmlHandsDownAFewTimesPerObject()
    {
        // 2,000 nodes with an item and a value each: a flag for each object as it is made and as its block is, and for
        // each at its first child element.
        const Work reading = workOf([&] { perform(0, 0); });
        QVERIFY2(reading.flagsHanded < 6000 * 6, counts(reading.flagsHanded, 6000));
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
