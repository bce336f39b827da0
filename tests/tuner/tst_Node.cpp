// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"

using namespace JobXml;

namespace {

const char missingValues[] = "OutOfRangeException: Node: Please set ValueItem properly.";
const char missingId[] = "OutOfRangeException: Node: Please set id properly.";
const char incompleteValue[] =
    "IncompleteDefinitionException: Node: Tried to append not completely defined or invalid item ValueItem.";

// Node "att" with two numbers.
const char element[] = "<Node id=\"att\">"
                       "<ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem>"
                       "<ValueItem><ValueInt id=\"number\" value=\"1\"/></ValueItem>"
                       "</Node>";

const char record[] = "00 00 00 77" // the node: 119 bytes
                      "2B 26 2D C9 00 00 00 07 00 00 00 03 61 74 74" // id "att"
                      "4F 71 13 1F 00 00 00 60 00 00 00 02" // values: two
                      "00 00 00 2A" //   42 bytes
                      "4A CA 65 14 00 00 00 22" //     a ValueInt: 34 bytes
                      "2B 26 2D C9 00 00 00 0A 00 00 00 06 6E 75 6D 62 65 72" //     id "number"
                      "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00" //     value 0
                      "00 00 00 2A" //   42 bytes
                      "4A CA 65 14 00 00 00 22" //     a ValueInt: 34 bytes
                      "2B 26 2D C9 00 00 00 0A 00 00 00 06 6E 75 6D 62 65 72" //     id "number"
                      "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 01"; //     value 1

const char snapshot[] = "03 00 00 00 02" // both set, two values
                        "04 00 02" //   ValueInt set, ValueInt chosen
                        "03 00 00 00 0C 00 6E 00 75 00 6D 00 62 00 65 00 72" //     both set, id "number"
                        "00 00 00 00 00 00 00 00" //     value 0
                        "04 00 02" //   ValueInt set, ValueInt chosen
                        "03 00 00 00 0C 00 6E 00 75 00 6D 00 62 00 65 00 72" //     both set, id "number"
                        "00 00 00 00 00 00 00 01" //     value 1
                        "00 00 00 06 00 61 00 74 00 74"; // id "att"

/// A node with one value, but the flag of the list is clear.
Node withUnsetList()
{
    Node node = aNode();
    readSnapshot(node, bytes("02 00 00 00 00 00 00 00 06 00 61 00 74 00 74")); // id "att" set, no values to append
    return node;
}

/// A node whose name differs from that of its class.
class Renamed : public Node
{
public:
    Renamed() { SetObjectName(QStringLiteral("Knob")); }
};

} // namespace

class NodeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void aNewNodeMissesItsValuesEvenWithoutValidation();
    void emptyListPassesTheCheckButIsNotData();
    void theValuesAreCheckedBeforeTheIdentifier();
    void theIdentifierMustBeSetAndNotNull();
    void anEmptyIdentifierIsAValue();
    void aNullIdentifierIsRefusedOnlyWhileValidating();
    void hasDataNeedsValuesAndIdentifierAndAnyDataOneOfThem();
    void nonConstGetterOfTheListSetsItsFlag();
    void aListIsStoredUnchecked();
    void anIncompleteValueIsNotAppendedWhileValidating();
    void resettingAMemberRestoresItsDefault();
    void onlyANullIdentifierIsInvalid();
    void itsMessagesAndItsElementCarryTheNameOfTheObject();

    void aWholeNodeHasThisElement();
    void aWholeNodeHasThisRecord();
    void aWholeNodeHasThisSnapshot();
    void withoutValidationAnEmptyNodeIsWritten();
    void valuesOfAListThatIsNotSetAreCountedButNotWritten();

    void theIdElementIsReadAfterTheAttribute();
    void anEmptyIdElementIsAnEmptyIdentifier();
    void unknownElementsAndAttributesAreSkipped();
    void elementsJoinTheValuesPresent();
    void anIncompleteValueElementIsRefusedWhileValidating();

    void aRecordAppendsToTheValuesPresent();
    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void nullIdentifierInARecordIsReadAsEmpty();
    void anIncompleteValueRecordIsRefusedWhileValidating();
    void recordLengthsMustAddUp();

    void aSnapshotIsReadByItsCount();
    void aSnapshotStoresItsIdentifierWithoutTheSetter();
    void anIncompleteValueInASnapshotIsRefusedWhileValidating();

    void theIdentifiersAreEqualWhenSetAndEqualOrBothUnset();
    void theListsAreComparedByTheFlagOfTheRightSide();
    void theValuesAreComparedInOrder();
};

void NodeTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(Node::GetStaticObjectName(), QStringLiteral("Node"));
    QCOMPARE(Node().GetObjectName(), QStringLiteral("Node"));
    QCOMPARE(Node::GetId(), Q_INT64_C(3356695988));
}

void NodeTest::aNewNodeMissesItsValuesEvenWithoutValidation()
{
    for (const bool validate : {true, false}) {
        Node node;
        node.SetValidate(validate);
        QVERIFY(!node.HasData());
        QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingValues));
    }
}

void NodeTest::emptyListPassesTheCheckButIsNotData()
{
    Node node;
    node.Setid(QStringLiteral("a"));
    node.SetValueItem({});
    QCOMPARE(thrownBy([&] { node.Check(); }), QString());
    QVERIFY(!node.HasData());
    QCOMPARE(xmlOf(node), QString());

    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    QVERIFY(!node.GetBinary(stream, 1, true));
    QCOMPARE(written, QByteArray());
}

void NodeTest::theValuesAreCheckedBeforeTheIdentifier()
{
    Node node;
    node.SetValueItem({anIntItem(), ValueItem()});
    QCOMPARE(thrownBy([&] { node.Check(); }),
             QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. The mandatory choice "
                            "ChoiceValueItem is not initialized"));
    node.SetValueItem({anIntItem()});
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingId));
}

void NodeTest::theIdentifierMustBeSetAndNotNull()
{
    Node node;
    node.SetValidate(false);
    node.AppendValueItem(ValueItem()); // without validation the value may be incomplete
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingId));
    node.Setid(QString());
    QVERIFY(node.IsidSet());
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingId));
    node.Setid(QStringLiteral("a"));
    QCOMPARE(thrownBy([&] { node.Check(); }), QString());
    // After reading this snapshot, there is an identifier whose flag is clear.
    readSnapshot(node, bytes("01 00 00 00 00 00 00 00 02 00 61"));
    QCOMPARE(node.Getid(), QStringLiteral("a"));
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingId));
}

void NodeTest::anEmptyIdentifierIsAValue()
{
    Node node;
    node.Setid(QStringLiteral(""));
    QVERIFY(node.IsidSet());
    QVERIFY(node.AnyData());
    node.AppendValueItem(anIntItem());
    QCOMPARE(thrownBy([&] { node.Check(); }), QString());
    QVERIFY(node.HasData());
}

void NodeTest::aNullIdentifierIsRefusedOnlyWhileValidating()
{
    Node node;
    QCOMPARE(thrownBy([&] { node.Setid(QString()); }),
             QStringLiteral("OutOfRangeException: Node: Please set id properly (origin: Setter)."));
    QVERIFY(!node.IsidSet());
    node.SetValidate(false);
    QCOMPARE(thrownBy([&] { node.Setid(QString()); }), QString());
    QVERIFY(node.IsidSet());
    QVERIFY(node.Getid().isNull());
}

void NodeTest::hasDataNeedsValuesAndIdentifierAndAnyDataOneOfThem()
{
    Node node;
    QVERIFY(!node.AnyData());
    node.Setid(QStringLiteral("a"));
    QVERIFY(node.AnyData());
    QVERIFY(!node.HasData());
    node.AppendValueItem(anIntItem());
    QVERIFY(node.HasData());
    node.Resetid();
    QVERIFY(node.AnyData());
    QVERIFY(!node.HasData());
    node.SetValueItem({}); // set, but empty
    QVERIFY(!node.AnyData());
    QVERIFY(withUnsetList().HasData()); // presence depends on values, not on the flag
}

void NodeTest::nonConstGetterOfTheListSetsItsFlag()
{
    Node node;
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
    QVERIFY(!node.IsValueItemSet());
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingValues));
    node.GetValueItem();
    QVERIFY(node.IsValueItemSet());
    QCOMPARE(thrownBy([&] { node.Check(); }), QString::fromLatin1(missingId));
    node.GetValueItem().append(anIntItem(5));
    QCOMPARE(std::as_const(node).GetValueItem().at(0).GetValueInt().Getvalue(), 5);
}

void NodeTest::aListIsStoredUnchecked()
{
    Node node;
    QCOMPARE(thrownBy([&] { node.SetValueItem({ValueItem(), anIntItem()}); }), QString());
    QVERIFY(node.IsValueItemSet());
    QCOMPARE(std::as_const(node).GetValueItem().size(), 2);
}

void NodeTest::anIncompleteValueIsNotAppendedWhileValidating()
{
    Node node;
    QCOMPARE(thrownBy([&] { node.AppendValueItem(ValueItem()); }), QString::fromLatin1(incompleteValue));
    QVERIFY(!node.IsValueItemSet());
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
    node.AppendValueItem(anIntItem());
    QVERIFY(node.IsValueItemSet());

    node.SetValidate(false);
    node.AppendValueItem(ValueItem());
    QCOMPARE(std::as_const(node).GetValueItem().size(), 2);
}

void NodeTest::resettingAMemberRestoresItsDefault()
{
    Node node = aNode();
    node.Resetid();
    QVERIFY(!node.IsidSet());
    QVERIFY(node.Getid().isNull());
    QVERIFY(node.GetDefaultid().isNull());
    node.ResetValueItem();
    QVERIFY(!node.IsValueItemSet());
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
}

void NodeTest::onlyANullIdentifierIsInvalid()
{
    const Node node;
    QVERIFY(!node.IsValidid(QString()));
    QVERIFY(node.IsValidid(QStringLiteral("")));
    QVERIFY(node.IsValidValueItem(ValueItem()));
    QVERIFY(node.IsValidValueItem(QVector<ValueItem>{ValueItem()}));
}

void NodeTest::itsMessagesAndItsElementCarryTheNameOfTheObject()
{
    Renamed node;
    QCOMPARE(thrownBy([&] { node.Check(); }),
             QStringLiteral("OutOfRangeException: Knob: Please set ValueItem properly."));
    QCOMPARE(thrownBy([&] { node.Setid(QString()); }),
             QStringLiteral("OutOfRangeException: Knob: Please set id properly (origin: Setter)."));
    node.SetValidate(false);
    QCOMPARE(xmlOf(node), QStringLiteral("<Knob id=\"\"/>"));
}

void NodeTest::aWholeNodeHasThisElement()
{
    QCOMPARE(xmlOf(aNode(QStringLiteral("att"), 2)), QString::fromLatin1(element));
    Node read;
    readXml(read, QString::fromLatin1(element));
    QVERIFY(read == aNode(QStringLiteral("att"), 2));
    QCOMPARE(xmlOf(read), QString::fromLatin1(element));
}

void NodeTest::aWholeNodeHasThisRecord()
{
    QCOMPARE(hex(recordOf(aNode(QStringLiteral("att"), 2))), hex(record));
    Node read;
    readRecord(read, bytes(record));
    QVERIFY(read == aNode(QStringLiteral("att"), 2));
    QCOMPARE(hex(recordOf(read)), hex(record));
}

void NodeTest::aWholeNodeHasThisSnapshot()
{
    QCOMPARE(hex(snapshotOf(aNode(QStringLiteral("att"), 2))), hex(snapshot));
    Node read;
    QCOMPARE(readSnapshot(read, bytes(snapshot)), 0);
    QVERIFY(read == aNode(QStringLiteral("att"), 2));
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void NodeTest::withoutValidationAnEmptyNodeIsWritten()
{
    Node node;
    node.SetValidate(false);
    QCOMPARE(xmlOf(node), QStringLiteral("<Node id=\"\"/>"));
    QCOMPARE(hex(recordOf(node)),
             hex("00 00 00 18" // 24 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id, null
                 "4F 71 13 1F 00 00 00 04 00 00 00 00")); // values: none
    QCOMPARE(hex(snapshotOf(node)), hex("00 00 00 00 00 FF FF FF FF"));
}

void NodeTest::valuesOfAListThatIsNotSetAreCountedButNotWritten()
{
    Node node = withUnsetList();
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
    QVERIFY(!node.IsValueItemSet());
    QCOMPARE(thrownBy([&] { xmlOf(node); }), QString::fromLatin1(missingValues));
    node.SetValidate(false);
    QCOMPARE(xmlOf(node), QStringLiteral("<Node id=\"att\"/>"));
    QCOMPARE(hex(recordOf(node)),
             hex("00 00 00 1B" // 27 bytes
                 "2B 26 2D C9 00 00 00 07 00 00 00 03 61 74 74" // id "att"
                 "4F 71 13 1F 00 00 00 04 00 00 00 01")); // values: a count of one, but no value
    QCOMPARE(hex(snapshotOf(node)), hex("02 00 00 00 01 00 00 00 06 00 61 00 74 00 74"));
}

void NodeTest::theIdElementIsReadAfterTheAttribute()
{
    Node node;
    readXml(node, QStringLiteral("<Node id=\"a\"><id>b</id></Node>"));
    QCOMPARE(node.Getid(), QStringLiteral("b"));
}

void NodeTest::anEmptyIdElementIsAnEmptyIdentifier()
{
    Node node;
    QCOMPARE(thrownBy([&] { readXml(node, QStringLiteral("<Node><id/></Node>")); }), QString());
    QVERIFY(node.IsidSet());
    QVERIFY(node.Getid().isEmpty());
    QVERIFY(!node.Getid().isNull());
}

void NodeTest::unknownElementsAndAttributesAreSkipped()
{
    Node node;
    readXml(node,
            QStringLiteral("<Node name=\"x\"><Unknown><id>no</id><ValueItem/></Unknown>"
                           "<ValueItem><ValueInt id=\"i\" value=\"5\"/></ValueItem><id>a</id></Node>"));
    QCOMPARE(xmlOf(node),
             QStringLiteral("<Node id=\"a\"><ValueItem><ValueInt id=\"i\" value=\"5\"/></ValueItem></Node>"));
}

void NodeTest::elementsJoinTheValuesPresent()
{
    Node node = aNode();
    readXml(node, QString::fromLatin1(element));
    QCOMPARE(std::as_const(node).GetValueItem().size(), 3);
}

void NodeTest::anIncompleteValueElementIsRefusedWhileValidating()
{
    const QString xml = QStringLiteral("<Node><ValueItem/><id>late</id></Node>");
    Node node;
    QCOMPARE(thrownBy([&] { readXml(node, xml); }), QString::fromLatin1(incompleteValue));
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
    node.SetValidate(false);
    readXml(node, xml);
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
    QCOMPARE(node.Getid(), QStringLiteral("late"));
}

void NodeTest::aRecordAppendsToTheValuesPresent()
{
    Node node = aNode(QStringLiteral("before"));
    readRecord(node, bytes(record));
    QCOMPARE(node.Getid(), QStringLiteral("att"));
    QCOMPARE(std::as_const(node).GetValueItem().size(), 3);
    QCOMPARE(std::as_const(node).GetValueItem().at(2).GetValueInt().Getvalue(), 1);
}

void NodeTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    Node node;
    readRecord(node,
               bytes("00 00 00 29" // 41 bytes
                     "4F 71 13 1F 00 00 00 04 00 00 00 00" // values: none
                     "12 34 56 78 00 00 00 08 01 02 03 04 05 06 07 08" // an unknown record
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 61")); // id "a"
    QCOMPARE(node.Getid(), QStringLiteral("a"));
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
}

void NodeTest::nullIdentifierInARecordIsReadAsEmpty()
{
    Node node;
    QCOMPARE(thrownBy([&] { readRecord(node, bytes("00 00 00 0C 2B 26 2D C9 00 00 00 04 FF FF FF FF")); }), QString());
    QVERIFY(node.IsidSet());
    QVERIFY(node.Getid().isEmpty());
    QVERIFY(!node.Getid().isNull());
}

void NodeTest::anIncompleteValueRecordIsRefusedWhileValidating()
{
    const QByteArray emptyValue = bytes("00 00 00 10 4F 71 13 1F 00 00 00 08 00 00 00 01 00 00 00 00");
    Node node;
    QCOMPARE(thrownBy([&] { readRecord(node, emptyValue); }), QString::fromLatin1(incompleteValue));
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
    node.SetValidate(false);
    readRecord(node, emptyValue);
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
}

void NodeTest::recordLengthsMustAddUp()
{
    for (const char *wrong : {"FF FF FF FF", "00 00 00 0E 2B 26 2D C9 00 00 00 05 00 00 00 01 61",
                              "00 00 00 0C 2B 26 2D C9 00 00 00 05 00 00 00 01 61"}) {
        Node node;
        QCOMPARE(thrownBy([&] { readRecord(node, bytes(wrong)); }),
                 QStringLiteral("BinaryParsingException: Node::SetBinary(...): Length error occurred during "
                                "processing of binary representation"));
    }
}

void NodeTest::aSnapshotIsReadByItsCount()
{
    // The flag of the list is clear. The value is read nevertheless, and appending it sets the flag.
    Node node = aNode();
    QCOMPARE(readSnapshot(node,
                          bytes("02 00 00 00 01"
                                "04 00 02 03 00 00 00 02 00 69 00 00 00 00 00 00 00 07"
                                "00 00 00 02 00 61")),
             0);
    QCOMPARE(std::as_const(node).GetValueItem().size(), 2); // appended to the existing one
    QCOMPARE(std::as_const(node).GetValueItem().at(1).GetValueInt().Getvalue(), 7);
    QVERIFY(node.IsValueItemSet());
    QCOMPARE(node.Getid(), QStringLiteral("a"));
}

void NodeTest::aSnapshotStoresItsIdentifierWithoutTheSetter()
{
    Node node;
    QCOMPARE(thrownBy([&] { readSnapshot(node, bytes("02 00 00 00 00 FF FF FF FF")); }), QString());
    QVERIFY(node.IsidSet());
    QVERIFY(node.Getid().isNull());
}

void NodeTest::anIncompleteValueInASnapshotIsRefusedWhileValidating()
{
    const QByteArray emptyValue = bytes("01 00 00 00 01 00 00 FF FF FF FF FF");
    Node node;
    QCOMPARE(thrownBy([&] { readSnapshot(node, emptyValue); }), QString::fromLatin1(incompleteValue));
    node.SetValidate(false);
    QCOMPARE(readSnapshot(node, emptyValue), 0);
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
}

void NodeTest::theIdentifiersAreEqualWhenSetAndEqualOrBothUnset()
{
    Node left;
    Node right;
    left.Setid(QStringLiteral("a"));
    QVERIFY(left != right);
    QVERIFY(right != left);
    right.Setid(QStringLiteral("b"));
    QVERIFY(left != right);
    right.Setid(QStringLiteral("a"));
    QVERIFY(left == right);
    left.Resetid();
    right.Resetid();
    QVERIFY(left == right);
    QVERIFY(left == Node()); // an object without data
}

void NodeTest::theListsAreComparedByTheFlagOfTheRightSide()
{
    Node empty = aNode();
    empty.SetValueItem({});
    Node unset = aNode();
    unset.ResetValueItem();
    QVERIFY(empty == unset);
    QVERIFY(unset == empty);
    QVERIFY(aNode() != unset);
    QVERIFY(unset != aNode());

    // One value on both sides, but on one side the list is not set.
    QVERIFY(withUnsetList() == aNode());
    QVERIFY(aNode() != withUnsetList());
}

void NodeTest::theValuesAreComparedInOrder()
{
    Node left = aNode();
    Node right = aNode();
    left.SetValueItem({anIntItem(1), anIntItem(2)});
    right.SetValueItem({anIntItem(2), anIntItem(1)});
    QVERIFY(left != right);
    right.SetValueItem({anIntItem(1), anIntItem(2)});
    QVERIFY(left == right);
    right.SetValueItem({anIntItem(1)});
    QVERIFY(left != right);
}

TEST_SUITE(NodeTest)
#include "tst_Node.moc"
