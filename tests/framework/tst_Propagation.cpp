// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "WholeTree.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

// The number of objects of the tree with this flag and this logger.
int following(const DataObject &root, bool validate, const std::shared_ptr<Logger> &logger)
{
    return WholeTree::count(root, [&](const DataObject &object) {
        return object.GetValidate() == validate && object.GetLogger() == logger;
    });
}

// Makes ProcessXmlStartElement() public, which shows when the object propagates.
class OpenTunerProperties : public TunerProperties
{
public:
    using TunerProperties::ProcessXmlStartElement;
};

} // namespace

using Entry = std::function<void(TunerProperties &)>;
Q_DECLARE_METATYPE(Entry)

/// The whole tree inherits the validate flag and the logger of its root.
class PropagationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyEntryPointPropagatesFlagAndLoggerToTheWholeTree_data();
    void everyEntryPointPropagatesFlagAndLoggerToTheWholeTree();
    void settingFlagOrLoggerReachesTheWholeTreeAtOnce();
    void settersAndAppendingPropagateNothing();
    void anAppendedItemKeepsItsFlagAndLosesItsLogger();
    void itemsOfAListThatIsSetKeepFlagsAndLoggers_data();
    void itemsOfAListThatIsSetKeepFlagsAndLoggers();
    void newBlockPropagatesFlagAndLogger();
    void readingXmlPropagatesAtTheFirstChildElement();
    void readingXmlWithoutChildElementsPropagatesNothing();
    void objectsReadFromXmlInheritTheRootsFlagAndLogger();
    void objectsReadFromARecordInheritTheRootsFlagAndLogger();
    void objectsReadFromASnapshotInheritTheRootsFlagButNoLogger();
    void singleChildElementReadFromOutsidePropagatesEachTime();
    void failedReadDoesNotPreventLaterPropagation();
    void unusedAlternativesInheritFromTheirItem();
    void propagatingToANewItemCreatesNoData();
    void aResetChildKeepsFlagAndLogger();
    void mergingPropagatesNothing();
    void copyPropagatesItsFlagToItsWholeTree();
    void derivedClassMayChangeThePropagatedFlag();
    void failedCheckPropagatesFlagAndLogger();
    void unsetChildrenInheritFlagAndLogger();
};

void PropagationTest::everyEntryPointPropagatesFlagAndLoggerToTheWholeTree_data()
{
    QTest::addColumn<Entry>("entry");
    QTest::newRow("Check()") << Entry([](TunerProperties &o) { o.Check(); });
    QTest::newRow("Check(true)") << Entry([](TunerProperties &o) { o.Check(true); });
    QTest::newRow("GetXml") << Entry([](TunerProperties &o) { xmlOf(o); });
    QTest::newRow("GetBinary") << Entry([](TunerProperties &o) { recordOf(o); });
    QTest::newRow("SetBinary") << Entry([](TunerProperties &o) { readRecord(o, bytes("00 00 00 00")); });
}

void PropagationTest::everyEntryPointPropagatesFlagAndLoggerToTheWholeTree()
{
    QFETCH(Entry, entry);
    for (const bool validate : {true, false}) {
        TunerProperties document = aDocument();
        const auto logger = std::make_shared<Logger>();
        document.REPORTGENERATOR::IRGObject::SetValidate(validate); // the root alone
        document.REPORTGENERATOR::IRGObject::SetLogger(logger);
        const int size = WholeTree::size(document);
        QCOMPARE(size, 10); // document, modes, bandwidth, component, two nodes, two items, two values
        QVERIFY(following(document, validate, logger) < size);

        entry(document);
        QCOMPARE(following(document, validate, logger), size);
    }
}

void PropagationTest::settingFlagOrLoggerReachesTheWholeTreeAtOnce()
{
    const TunerProperties document = aDocument();
    const auto logger = std::make_shared<Logger>();
    document.SetValidate(false);
    document.SetLogger(logger);
    QCOMPARE(following(document, false, logger), 10);
}

void PropagationTest::settersAndAppendingPropagateNothing()
{
    TunerProperties document;
    document.SetValidate(false);
    document.SetLogger(std::make_shared<Logger>());
    document.Setname(QStringLiteral("x")); // creates the block

    StartupModes modes;
    modes.AppendStartupMode(StartupModes::StartupMode::DF);
    document.SetStartupModes(modes);
    document.AppendComponent(aComponent());
    QVERIFY(std::as_const(document).GetComponent().at(0).GetValidate());
    QVERIFY(!std::as_const(document).GetComponent().at(0).GetLogger());
    QVERIFY(!std::as_const(document).GetStartupModes().GetValidate()); // an assigned child keeps its own
}

void PropagationTest::anAppendedItemKeepsItsFlagAndLosesItsLogger()
{
    Component component = aComponent();
    Node node = aNode();
    node.SetValidate(false);
    node.SetLogger(std::make_shared<Logger>());
    component.AppendNode(node);
    const Node &appended = std::as_const(component).GetNode().at(1);
    QVERIFY(!appended.GetValidate());
    QVERIFY(!appended.GetLogger());
}

void PropagationTest::itemsOfAListThatIsSetKeepFlagsAndLoggers_data()
{
    QTest::addColumn<bool>("isHeld");
    QTest::newRow("a list that the caller keeps") << true;
    QTest::newRow("a list that the caller gives away") << false;
}

void PropagationTest::itemsOfAListThatIsSetKeepFlagsAndLoggers()
{
    QFETCH(bool, isHeld);
    const auto ofItem = std::make_shared<Logger>();
    const auto ofNode = std::make_shared<Logger>();
    const auto ofValue = std::make_shared<Logger>();
    QVector<Component> components{aComponent(QStringLiteral("first")), aComponent(QStringLiteral("second"))};
    components[1].SetLogger(ofItem);
    const Node &node = std::as_const(components)[1].GetNode()[0];
    node.IRGObject::SetLogger(ofNode);
    node.IRGObject::SetValidate(false);
    const ValueItem &item = node.GetValueItem()[0];
    item.SetLogger(ofValue);
    item.SetValidate(false);

    TunerProperties document;
    const QVector<Component> held = isHeld ? components : QVector<Component>();
    document.SetComponent(components);
    components.clear();

    const QVector<Component> &set = std::as_const(document).GetComponent();
    QVERIFY(!set[0].GetLogger());
    QVERIFY(set[0].GetValidate());
    QCOMPARE(set[1].GetLogger(), ofItem);
    QCOMPARE(set[1].GetNode()[0].GetLogger(), ofNode);
    QCOMPARE(set[1].GetNode()[0].GetValidate(), false);
    const ValueItem &setItem = set[1].GetNode()[0].GetValueItem()[0];
    QCOMPARE(setItem.GetLogger(), ofValue);
    QCOMPARE(setItem.GetValueInt().GetLogger(), ofValue);
    QCOMPARE(setItem.GetValueString().GetLogger(), ofValue); // not used before
    QCOMPARE(setItem.GetValueString().GetValidate(), false);

    document.SetLogger(ofNode); // reaches the items of the document, but not those of the caller
    QCOMPARE(set[0].GetLogger(), ofNode);
    if (isHeld)
        QVERIFY(!held[0].GetLogger());
}

void PropagationTest::newBlockPropagatesFlagAndLogger()
{
    TunerProperties document;
    const auto logger = std::make_shared<Logger>();
    document.SetValidate(false);
    document.SetLogger(logger);
    QVERIFY(!document.IsInitialized());
    QCOMPARE(std::as_const(document).GetStartupModes().GetValidate(), false);
    QCOMPARE(std::as_const(document).GetStartupModes().GetLogger(), logger);
}

void PropagationTest::readingXmlPropagatesAtTheFirstChildElement()
{
    TunerProperties document = aDocument();
    document.REPORTGENERATOR::IRGObject::SetValidate(false);
    readXml(document,
            QStringLiteral("<TunerProperties Version=\"1.1\"><MaxFFPDelay>5</MaxFFPDelay></TunerProperties>"));
    QCOMPARE(following(document, false, nullptr), 10);
}

void PropagationTest::readingXmlWithoutChildElementsPropagatesNothing()
{
    TunerProperties document = aDocument();
    document.REPORTGENERATOR::IRGObject::SetValidate(false);
    readXml(document, QStringLiteral("<TunerProperties Version=\"1.1\" name=\"a\"/>"));
    QCOMPARE(following(document, false, nullptr), 1);
}

void PropagationTest::objectsReadFromXmlInheritTheRootsFlagAndLogger()
{
    const QString xml = xmlOf(aDocument());
    for (const bool validate : {true, false}) {
        TunerProperties document;
        const auto logger = std::make_shared<Logger>();
        document.SetValidate(validate);
        document.SetLogger(logger);
        readXml(document, xml);
        QCOMPARE(following(document, validate, logger), 10);
    }
}

void PropagationTest::objectsReadFromARecordInheritTheRootsFlagAndLogger()
{
    const QByteArray record = recordOf(aDocument());
    for (const bool validate : {true, false}) {
        TunerProperties document;
        const auto logger = std::make_shared<Logger>();
        document.SetValidate(validate);
        document.SetLogger(logger);
        readRecord(document, record);
        QCOMPARE(following(document, validate, logger), 10);
    }
}

void PropagationTest::objectsReadFromASnapshotInheritTheRootsFlagButNoLogger()
{
    TunerProperties document;
    document.SetValidate(false);
    document.SetLogger(std::make_shared<Logger>());
    QCOMPARE(readSnapshot(document, snapshotOf(aDocument())), 0);
    QCOMPARE(WholeTree::count(document, [](const DataObject &o) { return !o.GetValidate(); }), 10);
    // appended items have no logger; the document and its modes keep theirs
    QCOMPARE(WholeTree::count(document, [](const DataObject &o) { return !o.GetLogger(); }), 8);
    document.Check();
    QCOMPARE(WholeTree::count(document, [](const DataObject &o) { return !o.GetLogger(); }), 0);
}

void PropagationTest::singleChildElementReadFromOutsidePropagatesEachTime()
{
    OpenTunerProperties document;
    document.SetBandwidthSelection({aBandwidth()});
    for (const bool validate : {false, true}) {
        document.REPORTGENERATOR::IRGObject::SetValidate(validate);
        QXmlStreamReader reader(QStringLiteral("<MaxFFPDelay>5</MaxFFPDelay>"));
        reader.readNextStartElement();
        document.ProcessXmlStartElement(reader);
        QCOMPARE(std::as_const(document).GetBandwidthSelection().at(0).GetValidate(), validate);
    }
}

void PropagationTest::failedReadDoesNotPreventLaterPropagation()
{
    TunerProperties document = aDocument();
    const QString failing = QStringLiteral("<TunerProperties Version=\"1.1\"><Foo/></TunerProperties>");
    QCOMPARE(thrownBy([&] { readXml(document, failing); }),
             QStringLiteral("InvalidXmlException: Unknown Tag 'Foo' in 'TunerProperties'."));
    document.REPORTGENERATOR::IRGObject::SetValidate(false);
    readXml(document,
            QStringLiteral("<TunerProperties Version=\"1.1\"><MaxFFPDelay>5</MaxFFPDelay></TunerProperties>"));
    QCOMPARE(following(document, false, nullptr), 10);
}

void PropagationTest::unusedAlternativesInheritFromTheirItem()
{
    ValueItem item;
    item.SetValidate(false);
    const auto logger = std::make_shared<Logger>();
    item.SetLogger(logger);
    QCOMPARE(std::as_const(item).GetValueFloat().GetValidate(), false);
    QCOMPARE(std::as_const(item).GetValueFloat().GetLogger(), logger);

    item.SetValidate(true);
    QCOMPARE(std::as_const(item).GetValueFloat().GetValidate(), true); // in use
    QCOMPARE(std::as_const(item).GetValueString().GetValidate(), true); // not used before
    const auto later = std::make_shared<Logger>();
    item.SetLogger(later);
    QCOMPARE(std::as_const(item).GetValueString().GetLogger(), later);
    QCOMPARE(std::as_const(item).GetValueBoolean().GetLogger(), later); // not used before

    // Assignment propagates nothing: the alternatives of the shared data keep the flag and the logger of the first
    // owner.
    ValueItem assigned;
    assigned.SetValidate(false);
    assigned = item;
    QCOMPARE(assigned.GetValidate(), false);
    QCOMPARE(std::as_const(assigned).GetValueInt().GetValidate(), true);

    // A copy propagates the flag to its whole tree, but no logger.
    item.REPORTGENERATOR::IRGObject::SetValidate(false);
    const ValueItem copy(item);
    QCOMPARE(copy.GetValueInt64().GetValidate(), false);
    QVERIFY(!copy.GetValueInt64().GetLogger());
}

void PropagationTest::propagatingToANewItemCreatesNoData()
{
    ValueItem item;
    item.SetValidate(false);
    QVERIFY(!item.IsInitialized());
    item.SetLogger(std::make_shared<Logger>());
    QVERIFY(!item.IsInitialized());
}

void PropagationTest::aResetChildKeepsFlagAndLogger()
{
    TunerProperties document = aDocument();
    const auto logger = std::make_shared<Logger>();
    document.SetValidate(false);
    document.SetLogger(logger);
    document.ResetStartupModes();
    QVERIFY(!std::as_const(document).GetStartupModes().IsInitialized());
    QCOMPARE(std::as_const(document).GetStartupModes().GetValidate(), false);
    QCOMPARE(std::as_const(document).GetStartupModes().GetLogger(), logger);
}

void PropagationTest::mergingPropagatesNothing()
{
    TunerProperties document = aDocument();
    document.REPORTGENERATOR::IRGObject::SetValidate(false);
    TunerProperties other;
    other.Setname(QStringLiteral("x"));
    QVERIFY(document.MergeRGObject(other));
    QCOMPARE(following(document, false, nullptr), 1);
}

void PropagationTest::copyPropagatesItsFlagToItsWholeTree()
{
    TunerProperties document = aDocument();
    document.REPORTGENERATOR::IRGObject::SetValidate(false); // the root alone
    const TunerProperties copy(document);
    QCOMPARE(following(copy, false, nullptr), 10);
}

void PropagationTest::derivedClassMayChangeThePropagatedFlag()
{
    // validates until it propagates for the first time
    class Lenient : public TunerProperties
    {
    public:
        void SetValidate(bool) const override { TunerProperties::SetValidate(false); }
    };
    const auto anIncompleteOne = [] {
        Lenient document;
        document.Settype(TunerProperties::type::Receiver);
        document.Setbaseresource(QStringLiteral("RX1"));
        document.GetComponent(); // set, but empty: enough for Check(), too little for HasData()
        document.IRGObject::SetValidate(true);
        return document;
    };
    const Lenient writesXml = anIncompleteOne();
    writesXml.IRGObject::SetValidate(true);
    QCOMPARE(xmlOf(writesXml),
             QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX1\"/>"));
    const Lenient writesARecord = anIncompleteOne();
    writesARecord.IRGObject::SetValidate(true);
    QVERIFY(!recordOf(writesARecord).isEmpty());
}

void PropagationTest::failedCheckPropagatesFlagAndLogger()
{
    TunerProperties document = aDocument(5);
    document.GetComponent()[0].GetNode()[1].Resetid();
    document.AppendComponent(aComponent());
    const auto logger = std::make_shared<Logger>();
    document.IRGObject::SetLogger(logger); // the root alone
    QCOMPARE(thrownBy([&] { document.Check(); }), QStringLiteral("OutOfRangeException: Node: Please set id properly."));
    QCOMPARE(following(document, true, logger), WholeTree::size(document));
}

void PropagationTest::unsetChildrenInheritFlagAndLogger()
{
    TunerProperties document = aDocument();
    document.ResetStartupModes();
    const auto logger = std::make_shared<Logger>();
    document.IRGObject::SetValidate(false); // the root alone
    document.IRGObject::SetLogger(logger);
    document.Check();
    QVERIFY(!document.IsStartupModesSet());
    QVERIFY(!std::as_const(document).GetStartupModes().GetValidate());
    QCOMPARE(std::as_const(document).GetStartupModes().GetLogger(), logger);
}

TEST_SUITE(PropagationTest)
#include "tst_Propagation.moc"
