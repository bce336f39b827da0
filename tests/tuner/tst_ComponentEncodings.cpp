// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Components.h"
#include "ExceptionText.h"

using namespace JobXml;
using namespace Components;

namespace {

const char emptyOptional[] = "InvalidXmlException: Please set a value or a default for the boolean 'optional' in "
                             "'Component'.";

const char record[] = "00 00 00 E5" // the component: 229 bytes
                      "0B AD 20 53 00 00 00 0A 00 00 00 06 46 69 6C 74 65 72" // type "Filter"
                      "CB 4C F6 45 00 00 00 07 00 00 00 03 50 72 65" // name "Pre"
                      "A1 93 9A A3 00 00 00 09 00 00 00 05 48 C3 B6 68 65" // displayName, with an o umlaut
                      "44 E0 98 11 00 00 00 01 01" // optional true
                      "C5 E5 39 36 00 00 00 A2 00 00 00 02" // nodes: two
                      "00 00 00 4B" //   75 bytes
                      "2B 26 2D C9 00 00 00 09 00 00 00 05 6E 6F 64 65 30" //   id "node0"
                      "4F 71 13 1F 00 00 00 32 00 00 00 01" //   values: one
                      "00 00 00 2A 4A CA 65 14 00 00 00 22" //     a ValueInt
                      "2B 26 2D C9 00 00 00 0A 00 00 00 06 6E 75 6D 62 65 72" //     id "number"
                      "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00" //     value 0
                      "00 00 00 4B" //   75 bytes
                      "2B 26 2D C9 00 00 00 09 00 00 00 05 6E 6F 64 65 31" //   id "node1"
                      "4F 71 13 1F 00 00 00 32 00 00 00 01" //   values: one
                      "00 00 00 2A 4A CA 65 14 00 00 00 22" //     a ValueInt
                      "2B 26 2D C9 00 00 00 0A 00 00 00 06 6E 75 6D 62 65 72" //     id "number"
                      "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00"; //     value 0

const char snapshot[] = "1F 00 00 00 02" // all five set, two nodes
                        "03 00 00 00 01" //   both set, one value
                        "04 00 02" //     ValueInt set, ValueInt chosen
                        "03 00 00 00 0C 00 6E 00 75 00 6D 00 62 00 65 00 72" //     both set, id "number"
                        "00 00 00 00 00 00 00 00" //     value 0
                        "00 00 00 0A 00 6E 00 6F 00 64 00 65 00 30" //   id "node0"
                        "03 00 00 00 01" //   both set, one value
                        "04 00 02" //     ValueInt set, ValueInt chosen
                        "03 00 00 00 0C 00 6E 00 75 00 6D 00 62 00 65 00 72" //     both set, id "number"
                        "00 00 00 00 00 00 00 00" //     value 0
                        "00 00 00 0A 00 6E 00 6F 00 64 00 65 00 31" //   id "node1"
                        "00 00 00 0C 00 46 00 69 00 6C 00 74 00 65 00 72" // type "Filter"
                        "00 00 00 06 00 50 00 72 00 65" // name "Pre"
                        "00 00 00 08 00 48 00 F6 00 68 00 65" // displayName, with an o umlaut
                        "01"; // optional true

QString element()
{
    return QStringLiteral("<Component type=\"Filter\" name=\"Pre\" displayName=\"H\u00F6he\" optional=\"true\">"
                          "<Node id=\"node0\"><ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node>"
                          "<Node id=\"node1\"><ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node>"
                          "</Component>");
}

} // namespace

/// The component in XML, in tagged records and in snapshots.
class ComponentEncodingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeComponentHasThisElement();
    void aWholeComponentHasThisRecord();
    void aWholeComponentHasThisSnapshot();
    void unsetMembersAreNotWrittenExceptTypeNameAndCount();
    void aNodeWithoutDataStopsTheElement();
    void aNodeWithoutDataIsCountedInTheRecordButNotWritten();
    void anEmptyListOfNodesWritesNothingWhileValidating();
    void nodesOfAListThatIsNotSetAreCountedButNotWritten();
    void theOptionalTextIsReadAsABoolean_data();
    void theOptionalTextIsReadAsABoolean();
    void anEmptyOptionalTextIsRefusedOnlyWhileValidating();
    void elementsAreReadAfterTheAttributes();
    void emptyTextElementsAreEmptyTexts();
    void unknownElementsAndAttributesAreSkipped();
    void anIncompleteNodeElementIsRefusedWhileValidating();
    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void aRecordWithoutDisplayNameLeavesItUnset();
    void aRecordAppendsToTheNodesPresent();
    void anIncompleteNodeRecordIsRefusedWhileValidating();
    void recordLengthsMustAddUp();
    void anUnsetOptionalIsReadFromASnapshotThoughNotWritten();
    void aSnapshotHoldsADisplayNameOnlyWhenItIsSet();
    void aSnapshotStoresItsTextsWithoutTheSetters();
    void anIncompleteNodeInASnapshotIsRefusedWhileValidating();
    void aSnapshotIsReadByItsCount();
};

void ComponentEncodingsTest::aWholeComponentHasThisElement()
{
    QCOMPARE(xmlOf(wholeComponent()), element());
    Component read;
    readXml(read, element());
    QVERIFY(read == wholeComponent());
    QCOMPARE(xmlOf(read), element());
}

void ComponentEncodingsTest::aWholeComponentHasThisRecord()
{
    QCOMPARE(hex(recordOf(wholeComponent())), hex(record));
    Component read;
    readRecord(read, bytes(record));
    QVERIFY(read == wholeComponent());
    QCOMPARE(hex(recordOf(read)), hex(record));
}

void ComponentEncodingsTest::aWholeComponentHasThisSnapshot()
{
    QCOMPARE(hex(snapshotOf(wholeComponent())), hex(snapshot));
    Component read;
    QCOMPARE(readSnapshot(read, bytes(snapshot)), 0);
    QVERIFY(read == wholeComponent());
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void ComponentEncodingsTest::unsetMembersAreNotWrittenExceptTypeNameAndCount()
{
    Component component;
    component.SetValidate(false);
    QCOMPARE(xmlOf(component), QStringLiteral("<Component type=\"\" name=\"\"/>"));
    QCOMPARE(hex(recordOf(component)),
             hex("00 00 00 24" // 36 bytes
                 "0B AD 20 53 00 00 00 04 FF FF FF FF" // type, null
                 "CB 4C F6 45 00 00 00 04 FF FF FF FF" // name, null
                 "C5 E5 39 36 00 00 00 04 00 00 00 00")); // nodes: none
    QCOMPARE(hex(snapshotOf(component)), hex("00 00 00 00 00 FF FF FF FF FF FF FF FF"));
}

void ComponentEncodingsTest::aNodeWithoutDataStopsTheElement()
{
    Component component = aComponent();
    component.SetNode({aNode(), nodeWithEmptyList()});
    QCOMPARE(thrownBy([&] { component.Check(); }), QString());
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { component.GetXml(writer); }),
             QStringLiteral("IncompleteDefinitionException: Parameters for Node are not set properly in "
                            "'Component'."));
    QVERIFY(xml.endsWith(QStringLiteral("</Node>"))); // everything before it is written

    component.SetValidate(false);
    component.SetNode({nodeWithEmptyList()});
    QCOMPARE(xmlOf(component),
             QStringLiteral("<Component type=\"Filter\" name=\"Preselector\" optional=\"false\"><Node id=\"a\"/>"
                            "</Component>"));
}

void ComponentEncodingsTest::aNodeWithoutDataIsCountedInTheRecordButNotWritten()
{
    Component component = withoutOptional();
    component.SetValidate(true);
    component.Setoptional(true);
    component.SetNode({nodeWithEmptyList()});
    QCOMPARE(hex(recordOf(component)),
             hex("00 00 00 2F" // 47 bytes
                 "0B AD 20 53 00 00 00 05 00 00 00 01 46" // type "F"
                 "CB 4C F6 45 00 00 00 05 00 00 00 01 6E" // name "n"
                 "44 E0 98 11 00 00 00 01 01" // optional true
                 "C5 E5 39 36 00 00 00 04 00 00 00 01")); // nodes: a count of one, but no node
}

void ComponentEncodingsTest::anEmptyListOfNodesWritesNothingWhileValidating()
{
    Component component = aComponent();
    component.SetNode({});
    QCOMPARE(thrownBy([&] { component.Check(); }), QString());
    QVERIFY(!component.HasData());
    QCOMPARE(xmlOf(component), QString());
    QCOMPARE(recordOf(component), QByteArray());
}

void ComponentEncodingsTest::nodesOfAListThatIsNotSetAreCountedButNotWritten()
{
    Component component = withUnsetList();
    QVERIFY(!component.IsNodeSet());
    QCOMPARE(std::as_const(component).GetNode().size(), 1);
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("Node"));
    component.SetValidate(false);
    QCOMPARE(xmlOf(component), QStringLiteral("<Component type=\"F\" name=\"n\" optional=\"false\"/>"));
    QCOMPARE(hex(recordOf(component)),
             hex("00 00 00 2F"
                 "0B AD 20 53 00 00 00 05 00 00 00 01 46"
                 "CB 4C F6 45 00 00 00 05 00 00 00 01 6E"
                 "44 E0 98 11 00 00 00 01 00"
                 "C5 E5 39 36 00 00 00 04 00 00 00 01"));
    QCOMPARE(hex(snapshotOf(component)), hex("16 00 00 00 01 00 00 00 02 00 46 00 00 00 02 00 6E 00"));
}

void ComponentEncodingsTest::theOptionalTextIsReadAsABoolean_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("value");
    QTest::newRow("true") << QStringLiteral("true") << true;
    QTest::newRow("FALSE") << QStringLiteral("FALSE") << false;
    QTest::newRow("False") << QStringLiteral("False") << false;
    QTest::newRow("0") << QStringLiteral("0") << false;
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("no") << QStringLiteral("no") << true;
    QTest::newRow("00") << QStringLiteral("00") << true;
}

void ComponentEncodingsTest::theOptionalTextIsReadAsABoolean()
{
    QFETCH(QString, text);
    QFETCH(bool, value);
    Component byAttribute;
    byAttribute.Setoptional(!value);
    readXml(byAttribute, QStringLiteral("<Component optional=\"%1\"/>").arg(text));
    QVERIFY(byAttribute.IsoptionalSet());
    QCOMPARE(byAttribute.Getoptional(), value);

    Component byElement;
    byElement.Setoptional(!value);
    readXml(byElement, QStringLiteral("<Component><optional>%1</optional></Component>").arg(text));
    QVERIFY(byElement.IsoptionalSet());
    QCOMPARE(byElement.Getoptional(), value);
}

void ComponentEncodingsTest::anEmptyOptionalTextIsRefusedOnlyWhileValidating()
{
    for (const QString &xml : {QStringLiteral("<Component name=\"n\" optional=\"\"/>"),
                               QStringLiteral("<Component name=\"n\"><optional/></Component>")}) {
        Component component;
        QCOMPARE(thrownBy([&] { readXml(component, xml); }), QString::fromLatin1(emptyOptional));
        QVERIFY(!component.IsoptionalSet());
        QCOMPARE(component.Getname(), QStringLiteral("n"));

        Component lenient;
        lenient.SetValidate(false);
        lenient.Setoptional(true);
        readXml(lenient, xml);
        QVERIFY(lenient.IsoptionalSet());
        QVERIFY(!lenient.Getoptional());
    }
}

void ComponentEncodingsTest::elementsAreReadAfterTheAttributes()
{
    Component component;
    readXml(component,
            QStringLiteral("<Component type=\"t\" name=\"n\" displayName=\"d\" optional=\"true\"><type>T</type>"
                           "<name>N</name><displayName>D</displayName><optional>false</optional></Component>"));
    QCOMPARE(component.Gettype(), QStringLiteral("T"));
    QCOMPARE(component.Getname(), QStringLiteral("N"));
    QCOMPARE(component.GetdisplayName(), QStringLiteral("D"));
    QVERIFY(!component.Getoptional());
}

void ComponentEncodingsTest::emptyTextElementsAreEmptyTexts()
{
    Component component;
    readXml(component, QStringLiteral("<Component><type/><name></name><displayName/></Component>"));
    QVERIFY(component.Gettype().isEmpty() && !component.Gettype().isNull());
    QVERIFY(component.Getname().isEmpty() && !component.Getname().isNull());
    QVERIFY(component.GetdisplayName().isEmpty() && !component.GetdisplayName().isNull());
}

void ComponentEncodingsTest::unknownElementsAndAttributesAreSkipped()
{
    Component component;
    readXml(component,
            QStringLiteral("<Component id=\"x\"><Unknown><name>no</name><Node/></Unknown><name>n</name></Component>"));
    component.SetValidate(false);
    QCOMPARE(xmlOf(component), QStringLiteral("<Component type=\"\" name=\"n\"/>"));
}

void ComponentEncodingsTest::anIncompleteNodeElementIsRefusedWhileValidating()
{
    const QString xml = QStringLiteral("<Component><Node id=\"a\"/></Component>");
    Component component;
    QCOMPARE(thrownBy([&] { readXml(component, xml); }), QString::fromLatin1(incompleteNode));
    QVERIFY(std::as_const(component).GetNode().isEmpty());
    component.SetValidate(false);
    readXml(component, xml);
    QCOMPARE(std::as_const(component).GetNode().size(), 1);
}

void ComponentEncodingsTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    Component component;
    readRecord(component,
               bytes("00 00 00 46" // 70 bytes
                     "C5 E5 39 36 00 00 00 04 00 00 00 00" // nodes: none
                     "44 E0 98 11 00 00 00 01 01" // optional true
                     "12 34 56 78 00 00 00 02 01 02" // an unknown record
                     "A1 93 9A A3 00 00 00 05 00 00 00 01 64" // displayName "d"
                     "CB 4C F6 45 00 00 00 05 00 00 00 01 6E" // name "n"
                     "0B AD 20 53 00 00 00 05 00 00 00 01 46")); // type "F"
    QVERIFY(component.Getoptional());
    QCOMPARE(component.GetdisplayName(), QStringLiteral("d"));
    QCOMPARE(component.Getname(), QStringLiteral("n"));
    QCOMPARE(component.Gettype(), QStringLiteral("F"));
}

void ComponentEncodingsTest::aRecordWithoutDisplayNameLeavesItUnset()
{
    const Component written = withoutOptional();
    const char expected[] = "00 00 00 26" // 38 bytes
                            "0B AD 20 53 00 00 00 05 00 00 00 01 46" // type "F"
                            "CB 4C F6 45 00 00 00 05 00 00 00 01 6E" // name "n"
                            "C5 E5 39 36 00 00 00 04 00 00 00 00"; // nodes: none
    QCOMPARE(hex(recordOf(written)), hex(expected));
    Component read;
    readRecord(read, bytes(expected));
    QVERIFY(!read.IsdisplayNameSet());
    QVERIFY(!read.IsoptionalSet());
}

void ComponentEncodingsTest::aRecordAppendsToTheNodesPresent()
{
    Component component = aComponent();
    readRecord(component, bytes(record));
    QCOMPARE(std::as_const(component).GetNode().size(), 3);
    QCOMPARE(std::as_const(component).GetNode().at(2).Getid(), QStringLiteral("node1"));
}

void ComponentEncodingsTest::anIncompleteNodeRecordIsRefusedWhileValidating()
{
    const QByteArray emptyNode = bytes("00 00 00 10 C5 E5 39 36 00 00 00 08 00 00 00 01 00 00 00 00");
    Component component;
    QCOMPARE(thrownBy([&] { readRecord(component, emptyNode); }), QString::fromLatin1(incompleteNode));
    component.SetValidate(false);
    readRecord(component, emptyNode);
    QCOMPARE(std::as_const(component).GetNode().size(), 1);
}

void ComponentEncodingsTest::recordLengthsMustAddUp()
{
    for (const char *wrong :
         {"FF FF FF FF", "00 00 00 0D 44 E0 98 11 00 00 00 01 01", "00 00 00 08 44 E0 98 11 00 00 00 01 01"}) {
        Component component;
        QCOMPARE(thrownBy([&] { readRecord(component, bytes(wrong)); }),
                 QStringLiteral("BinaryParsingException: Component::SetBinary(...): Length error occurred during "
                                "processing of binary representation"));
    }
}

void ComponentEncodingsTest::anUnsetOptionalIsReadFromASnapshotThoughNotWritten()
{
    QCOMPARE(hex(snapshotOf(withoutOptional())), hex("07 00 00 00 00 00 00 00 02 00 46 00 00 00 02 00 6E"));
    Component read;
    QCOMPARE(readSnapshot(read,
                          bytes("07 00 00 00 00 00 00 00 02 00 46 00 00 00 02 00 6E"
                                "01" // read as its value
                                "AB")),
             1);
    QVERIFY(read.Getoptional());
    QVERIFY(!read.IsoptionalSet());
    QCOMPARE(read.Getname(), QStringLiteral("n"));
}

void ComponentEncodingsTest::aSnapshotHoldsADisplayNameOnlyWhenItIsSet()
{
    Component component;
    component.SetdisplayName(QStringLiteral("before"));
    QCOMPARE(readSnapshot(component, bytes("17 00 00 00 00 00 00 00 02 00 46 00 00 00 02 00 6E 01")), 0);
    QVERIFY(component.Getoptional());
    QVERIFY(!component.IsdisplayNameSet());
    QCOMPARE(component.GetdisplayName(), QStringLiteral("before"));
}

void ComponentEncodingsTest::aSnapshotStoresItsTextsWithoutTheSetters()
{
    Component component;
    QCOMPARE(thrownBy([&] { readSnapshot(component, bytes("1E 00 00 00 00 FF FF FF FF FF FF FF FF FF FF FF FF 00")); }),
             QString());
    QVERIFY(component.IstypeSet() && component.Gettype().isNull());
    QVERIFY(component.IsnameSet() && component.Getname().isNull());
    QVERIFY(component.IsdisplayNameSet() && component.GetdisplayName().isNull());
}

void ComponentEncodingsTest::anIncompleteNodeInASnapshotIsRefusedWhileValidating()
{
    const QByteArray emptyNode = bytes("01 00 00 00 01" // one node
                                       "00 00 00 00 00 FF FF FF FF" //   empty
                                       "FF FF FF FF FF FF FF FF 00");
    Component component;
    QCOMPARE(thrownBy([&] { readSnapshot(component, emptyNode); }), QString::fromLatin1(incompleteNode));
    component.SetValidate(false);
    QCOMPARE(readSnapshot(component, emptyNode), 0);
    QCOMPARE(std::as_const(component).GetNode().size(), 1);
}

void ComponentEncodingsTest::aSnapshotIsReadByItsCount()
{
    Component component = aComponent();
    component.SetValidate(false);
    QCOMPARE(readSnapshot(component,
                          bytes("16 00 00 00 01" // the flag of the nodes is clear, but there is one
                                "02 00 00 00 00 00 00 00 02 00 61" //   id "a"
                                "00 00 00 02 00 46 00 00 00 02 00 6E 00")),
             0);
    QCOMPARE(std::as_const(component).GetNode().size(), 2); // appended to the existing one
    QCOMPARE(std::as_const(component).GetNode().at(1).Getid(), QStringLiteral("a"));
    QVERIFY(component.IsNodeSet());
}

TEST_SUITE(ComponentEncodingsTest)
#include "tst_ComponentEncodings.moc"
