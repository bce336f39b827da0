// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "Heap.h"
#include "QtFigures.h"
#include "framework/Behavior.h"
#include "framework/Propagation.h"

using namespace JobXml;
using REPORTGENERATOR::EnvironmentPointer;
using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::Logger;

namespace {

/// Counts the library's work.
struct Work final : Heap::Watcher
{
    long long changed = 0; ///< changes of an object's flag or logger
    long long propagated = 0; ///< calls of propagateToChildren(), except for items
    long long checked = 0; ///< calls of check(), except for items
    long long queried = 0; ///< calls of HasData(), except for items
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

// The linker redirects the calls of these functions here, also virtual calls, but not those of overriding functions.
// Therefore items are not counted. `real...` are the library's own functions.
// NOLINTBEGIN(bugprone-reserved-identifier)
#define REPLACED(name) __asm__("__wrap_" name)
#define ORIGINAL(name) __asm__("__real_" name)

#define REPLACE_ENVIRONMENT "_ZNK15REPORTGENERATOR9IRGObject18replaceEnvironmentERKNS_18EnvironmentPointerE"
void replaceEnvironment(const IRGObject *object, const EnvironmentPointer &environment) REPLACED(REPLACE_ENVIRONMENT);
void realReplaceEnvironment(const IRGObject *object, const EnvironmentPointer &environment)
    ORIGINAL(REPLACE_ENVIRONMENT);
void replaceEnvironment(const IRGObject *object, const EnvironmentPointer &environment)
{
    ++work.changed;
    realReplaceEnvironment(object, environment);
}

#define PROPAGATE "_ZNK6JobXml8Behavior19propagateToChildrenERKNS_10DataObjectERKNS_11PropagationE"
void propagateToChildren(const Behavior *behavior, const DataObject &object, const Propagation &propagation)
    REPLACED(PROPAGATE);
void realPropagateToChildren(const Behavior *behavior, const DataObject &object, const Propagation &propagation)
    ORIGINAL(PROPAGATE);
void propagateToChildren(const Behavior *behavior, const DataObject &object, const Propagation &propagation)
{
    ++work.propagated;
    realPropagateToChildren(behavior, object, propagation);
}

#define CHECK "_ZNK6JobXml8Behavior5checkERKNS_10DataObjectEbPKN15REPORTGENERATOR18EnvironmentPointerE"
void check(const Behavior *behavior, const DataObject &object, bool flag, const EnvironmentPointer *environment)
    REPLACED(CHECK);
void realCheck(const Behavior *behavior, const DataObject &object, bool flag, const EnvironmentPointer *environment)
    ORIGINAL(CHECK);
void check(const Behavior *behavior, const DataObject &object, bool flag, const EnvironmentPointer *environment)
{
    ++work.checked;
    realCheck(behavior, object, flag, environment);
}

#define HAS_DATA "_ZNK6JobXml10DataObject7HasDataEv"
bool hasData(const DataObject *object) REPLACED(HAS_DATA);
bool realHasData(const DataObject *object) ORIGINAL(HAS_DATA);
bool hasData(const DataObject *object)
{
    ++work.queried;
    return realHasData(object);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

/// Reads its content by ProcessXml() of the base library, like a class with attributes of its own.
class WalkedComponent : public Component
{
public:
    void ProcessXml(QXmlStreamReader &reader) override { REPORTGENERATOR::IRGObject::ProcessXml(reader); }
};

/// Read by the stream, like every device except a plain QBuffer.
class OtherBuffer : public QBuffer
{
};

constexpr long long nodes = 2000; // each with an item and a value
constexpr long long objectsBelowTheRoot = 3 * nodes + 3; // plus start-up modes, a bandwidth, a component

// The work of an operation on a flat document with all nodes in one component.
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

/// The work of each operation is at most proportional to the size of the tree: ten times the nodes, ten times the work.
class LinearTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (int i = 0; i < 2; ++i) {
            m_documents[i] = aDocument(i == 0 ? 2000 : 20000);
            m_xml[i] = xmlOf(m_documents[i]);
            m_xmlOfComponents[i] = xmlOf(std::as_const(m_documents[i]).GetComponent().at(0));
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
        QTest::newRow("read XML by a derived class") << 12;
        QTest::newRow("read XML with a long version") << 13;
        QTest::newRow("read start-up modes again and again") << 14;
        QTest::newRow("read an alternative again and again from a device") << 15;
        QTest::newRow("write an XML text") << 16;
    }

    void everyOperationIsLinear()
    {
        QFETCH(int, operation);
        const Work small = workOf([&] { perform(operation, 0); });
        const Work large = workOf([&] { perform(operation, 1); });
        QVERIFY(small.propagated + small.checked + small.allocations > 0 || !Heap::isWatched); // it did work
        // Ten times the nodes, and a constant part. (Quadratic work would be a hundred times.)
        const auto linear = [](long long few, long long many) { return many <= 11 * few + 100; };
        QVERIFY2(linear(small.changed, large.changed), counts(small.changed, large.changed));
        QVERIFY2(linear(small.propagated, large.propagated), counts(small.propagated, large.propagated));
        QVERIFY2(linear(small.checked, large.checked), counts(small.checked, large.checked));
        QVERIFY(!Heap::isWatched || small.allocations > 0 || operation == 7);
        QVERIFY2(linear(small.allocations, large.allocations), counts(small.allocations, large.allocations));
        // Lists and buffers double when they are full, so they may be half empty at one size and full at the other.
        QVERIFY2(linear(2 * small.allocatedBytes, large.allocatedBytes),
                 counts(small.allocatedBytes, large.allocatedBytes));
    }

    void checkingVisitsEachObjectOnce()
    {
        const TunerProperties document(m_documents[0]);
        document.IRGObject::SetLogger(std::make_shared<Logger>()); // no object below has it yet
        const Work done = workOf([&] { document.Check(); });
        QCOMPARE(done.changed, objectsBelowTheRoot);
        QCOMPARE(done.checked, 1 + objectsBelowTheRoot - 2 * nodes); // values are not checked before they are written
        QCOMPARE(done.queried, nodes); // each item calls HasData() of its value
        QCOMPARE(done.propagated, 0); // the check propagates on the same traversal
    }

    void writingVisitsEachObjectOnce_data()
    {
        QTest::addColumn<int>("operation");
        QTest::newRow("a record") << 5;
        QTest::newRow("an XML text") << 16;
    }

    // Propagating and checking are part of it.
    void writingVisitsEachObjectOnce()
    {
        QFETCH(int, operation);
        m_documents[0].SetValidate(true);
        for (const bool validate : {true, false}) {
            m_documents[0].IRGObject::SetValidate(validate);
            m_documents[0].IRGObject::SetLogger(std::make_shared<Logger>());
            const Work done = workOf([&] { perform(operation, 0); });
            QCOMPARE(done.changed, objectsBelowTheRoot);
            QCOMPARE(done.checked, 0);
            QCOMPARE(done.queried, 0);
            QCOMPARE(done.propagated, 0);
        }
    }

    void writingAnIncompleteDocumentWithoutValidatingVisitsEachObjectOnce()
    {
        TunerProperties document(m_documents[0]);
        document.SetValidate(false);
        document.GetComponent()[0].GetNode()[0].Setid(QString());
        document.GetComponent()[0].GetNode()[1].SetValueItem({});
        document.SetStartupModes({});
        const Work record = workOf([&] { recordOf(document); });
        QCOMPARE(record.propagated, 0);
        const Work text = workOf([&] { QVERIFY(!document.GetXmlString().isEmpty()); });
        QCOMPARE(text.propagated, 0);
    }

    // What a caller's writer has received cannot be taken back, so a check comes first.
    void writingXmlToAWriterVisitsEachObjectTwice()
    {
        m_documents[0].SetValidate(true);
        for (const bool validate : {true, false}) {
            m_documents[0].IRGObject::SetValidate(validate);
            m_documents[0].IRGObject::SetLogger(std::make_shared<Logger>());
            const Work done = workOf([&] { perform(4, 0); });
            QCOMPARE(done.changed, objectsBelowTheRoot);
            QCOMPARE(done.checked, validate ? 1 + objectsBelowTheRoot - nodes : 0); // the items check the values
            // document, component and nodes propagate; while validating, their checks do
            QCOMPARE(done.propagated, validate ? 0 : 2 + nodes);
        }
    }

    void readingPropagatesToEachObjectOnCreationAndOnAppending_data()
    {
        QTest::addColumn<int>("operation");
        QTest::newRow("XML") << 0;
        QTest::newRow("a record") << 2;
    }

    void readingPropagatesToEachObjectOnCreationAndOnAppending()
    {
        QFETCH(int, operation);
        const Work done = workOf([&] { perform(operation, 0, std::make_shared<Logger>()); });
        QVERIFY2(done.changed >= objectsBelowTheRoot && done.changed <= 2 * objectsBelowTheRoot,
                 counts(done.changed, objectsBelowTheRoot));
        QCOMPARE(done.checked, 0);
        // each object propagates when its data are created, and at its first child element, when it has no children
        QVERIFY2(done.propagated <= 2 * (1 + objectsBelowTheRoot), counts(done.propagated, objectsBelowTheRoot));
    }

    void readingCopiesNothing()
    {
        if (!Heap::isWatched)
            return;
        for (const int operation : {0, 2, 3}) {
            const Work reading = workOf([&] { perform(operation, 0); });
            // for each node: its data, its name, its list, the item's data, the value's data and name; one for a
            // list that grew or for the reader itself
            const int most = 7 + (operation == 0 ? QtFigures::readerAllocationsPerNode : 0);
            QVERIFY2(reading.allocations <= most * nodes, counts(reading.allocations, nodes));
        }
    }

private:
    void perform(int operation, int which, const std::shared_ptr<Logger> &logger = nullptr)
    {
        TunerProperties document;
        if (logger)
            document.SetLogger(logger);
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
        case 11:
            QVERIFY(m_documents[which].GetProblems().isEmpty());
            break;
        case 13: {
            const int elements = which == 0 ? 2000 : 20000;
            const QString version = QLatin1String("0.") + QString(5 * elements, QLatin1Char('0'));
            readXml(document,
                    QStringLiteral("<TunerProperties Version=\"%1\">").arg(version)
                        + QStringLiteral("<unknown/>").repeated(elements) + QStringLiteral("</TunerProperties>"));
            QCOMPARE(document.GetInitialVersionLoaded(), version);
            break;
        }
        case 14: {
            const int elements = which == 0 ? 2000 : 20000;
            const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\"><StartupModes>")
                + QStringLiteral("<StartupMode>DF</StartupMode>").repeated(elements) + QStringLiteral("</StartupModes>")
                + QStringLiteral("<StartupModes/>").repeated(elements) + QStringLiteral("</TunerProperties>");
            QVERIFY(document.SetXmlString(
                xml, true)); // validating adds an entity resolver, which makes reading like that from a device
            QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode().size(), elements);
            break;
        }
        case 15: {
            const int records = which == 0 ? 2000 : 20000;
            ValueItem item;
            item.SetValidate(false);
            item.GetValueStringList().SetStringItem(QVector<StringItem>(records));
            QByteArray bytes = recordOf(item).mid(4) + QByteArray::fromHex("491ED6FE00000000").repeated(records);
            OtherBuffer device;
            device.setData(bytes);
            QVERIFY(device.open(QIODevice::ReadOnly));
            QDataStream stream(&device);
            ValueItem read;
            read.SetValidate(false);
            read.SetBinary(stream, bytes.size());
            QCOMPARE(std::as_const(read).GetValueStringList().GetStringItem().size(), records);
            break;
        }
        case 16:
            QVERIFY(!m_documents[which].GetXmlString().isEmpty());
            break;
        default: {
            WalkedComponent component;
            readXml(component, m_xmlOfComponents[which]);
            QCOMPARE(std::as_const(component).GetNode().size(), which == 0 ? 2000 : 20000);
            break;
        }
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
    QString m_xmlOfComponents[2];
    QByteArray m_records[2];
    QByteArray m_snapshots[2];
};

TEST_SUITE(LinearTest)
#include "tst_Linear.moc"
