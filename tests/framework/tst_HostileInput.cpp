// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "Pipe.h"

using namespace JobXml;

namespace {

const char lengthError[] = "::SetBinary(...): Length error occurred during processing of binary representation";

QString lengthErrorOf(const char *object)
{
    return QStringLiteral("BinaryParsingException: ") + QLatin1String(object) + QLatin1String(lengthError);
}

// Node "a" with one ValueInt "b" = 1, but with this count before its items.
QByteArray nodeWithCount(const char *count)
{
    return bytes("00 00 00 42" // the node: 66 bytes
                 "2B 26 2D C9 00 00 00 05" // id
                 "00 00 00 01 61" //   "a"
                 "4F 71 13 1F 00 00 00 2D") // values
        + bytes(count) //   how many
        + bytes("00 00 00 25" //   the item: 37 bytes
                "4A CA 65 14 00 00 00 1D" //   a ValueInt
                "2B 26 2D C9 00 00 00 05 00 00 00 01 62" //   id "b" -- 13 bytes
                "0B A4 42 38 00 00 00 08" //   value
                "00 00 00 00 00 00 00 01");
}

} // namespace

/// Lengths and counts in damaged or hostile data are never trusted. These are single cases; tests/damage truncates and
/// changes a document everywhere.
class HostileInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSnapshotKeepsTheMembersBeforeTheCut();
    void countOfTwoBillionReservesNothingAndFails();
    void anItemIsNotAppendedWhenTheStreamEndsInItsLength();
    void aNegativeCountReadsNoItem();
    void aRecordLengthBeyondTheStreamIsALengthError();
    void lengthsThatOverflow32BitsAreLengthErrors();
    void lengthsOfMembersAreAddedUpIn64Bits();
    void aLargeFileOfItemsReservesLittle();
    void aNestedRecordFailsWithItsOwnName();
    void truncatedUnknownRecordIsALengthError();
    void aTextLengthBeyondTheStreamIsALengthErrorBeforeTheSetter();
    void aSnapshotCountOfTwoBillionEndsWithTheStream();
    void truncatedItemFailsBeforeTheAppendRule();
    void sequentialDeviceIsReadUntilItsEnd();
};

void HostileInputTest::aSnapshotKeepsTheMembersBeforeTheCut()
{
    ValueSelection selection;
    readSnapshot(selection,
                 bytes("1F" // all five are set
                       "00 00 00 00" // no items
                       "00 00 00 02 00 69" // id "i"
                       "3F F8 00 00 00 00 00 00" // value 1.5
                       "00 00 00 02 00")); // half a text
    QCOMPARE(selection.Getid(), QStringLiteral("i"));
    QCOMPARE(selection.Getvalue(), 1.5);
    QVERIFY(selection.Gettext().isNull());
    QVERIFY(selection.IstextSet()); // the flags were read first
}

void HostileInputTest::countOfTwoBillionReservesNothingAndFails()
{
    Node node;
    QCOMPARE(thrownBy([&] { readRecord(node, nodeWithCount("7F FF FF FF")); }), lengthErrorOf("Node"));
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1); // the complete item is kept
    QVERIFY(std::as_const(node).GetValueItem().capacity() < 100);
}

void HostileInputTest::anItemIsNotAppendedWhenTheStreamEndsInItsLength()
{
    Node node;
    QCOMPARE(thrownBy([&] { readRecord(node, nodeWithCount("00 00 00 02") + bytes("00 00")); }), lengthErrorOf("Node"));
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
}

void HostileInputTest::aNegativeCountReadsNoItem()
{
    Node node;
    readRecord(node,
               bytes("00 00 00 19"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 61"
                     "4F 71 13 1F 00 00 00 04 FF FF FF FF"));
    QCOMPARE(node.Getid(), QStringLiteral("a"));
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
}

void HostileInputTest::aRecordLengthBeyondTheStreamIsALengthError()
{
    StringItem item;
    const QByteArray member = bytes("CE FF 51 BA 00 00 00 05 00 00 00 01 78");
    QCOMPARE(thrownBy([&] { readRecord(item, bytes("7F FF FF FF") + member); }), lengthErrorOf("StringItem"));
    QCOMPARE(item.Getvalue(), QStringLiteral("x"));
    QCOMPARE(thrownBy([&] { readRecord(item, bytes("80 00 00 00") + member); }), lengthErrorOf("StringItem"));
}

void HostileInputTest::lengthsThatOverflow32BitsAreLengthErrors()
{
    // 0x80000000 as a member's length, twice: in 32 bits the remainder would return to its first value.
    StringItem item;
    QCOMPARE(thrownBy([&] {
                 readRecord(item,
                            bytes("00 00 00 10"
                                  "11 11 11 11 80 00 00 00"
                                  "22 22 22 22 80 00 00 00"));
             }),
             lengthErrorOf("StringItem"));
}

void HostileInputTest::lengthsOfMembersAreAddedUpIn64Bits()
{
    // 15 - (8 - 2^31) - (8 + 2^31 - 1) is 0 exactly; in 32 bits the first step would already be negative.
    StringItem item;
    readRecord(item,
               bytes("00 00 00 0F"
                     "11 11 11 11 80 00 00 00"
                     "CE FF 51 BA 7F FF FF FF 00 00 00 01 78"));
    QCOMPARE(item.Getvalue(), QStringLiteral("x"));
}

void HostileInputTest::aLargeFileOfItemsReservesLittle()
{
    // Announces two billion nodes, followed by 8 MB of zeros. Every four of them are an empty node, and the first node
    // is rejected. The memory reserved for the others must not be many times the size of the file.
    QByteArray record = bytes("7F FF FF FF C5 E5 39 36 7F FF FF F7 7F FF FF FF");
    record.append(QByteArray(8000000, '\0'));
    Component component;
    QCOMPARE(
        thrownBy([&] { readRecord(component, record); }),
        QStringLiteral("IncompleteDefinitionException: Component: Tried to append not completely defined or invalid "
                       "item Node."));
    QVERIFY(std::as_const(component).GetNode().capacity() < 10000);
}

void HostileInputTest::aNestedRecordFailsWithItsOwnName()
{
    Node node;
    QByteArray record = nodeWithCount("00 00 00 01");
    record[32] = char(0x26); // the item's length is one byte more than its value record
    QCOMPARE(thrownBy([&] { readRecord(node, record); }), lengthErrorOf("ValueItem"));
    QVERIFY(std::as_const(node).GetValueItem().isEmpty());
}

void HostileInputTest::truncatedUnknownRecordIsALengthError()
{
    StringItem item;
    QCOMPARE(thrownBy([&] { readRecord(item, bytes("00 00 00 0C 11 11 11 11 00 00 00 04 00 00 00")); }),
             lengthErrorOf("StringItem"));
}

void HostileInputTest::aTextLengthBeyondTheStreamIsALengthErrorBeforeTheSetter()
{
    StringItem item;
    item.Setvalue(QStringLiteral("before"));
    QCOMPARE(thrownBy([&] { readRecord(item, bytes("00 00 00 0D CE FF 51 BA 00 00 00 05 7F FF FF FF 78")); }),
             lengthErrorOf("StringItem"));
    QCOMPARE(item.Getvalue(), QStringLiteral("before"));
}

void HostileInputTest::aSnapshotCountOfTwoBillionEndsWithTheStream()
{
    Node node;
    node.SetValidate(false);
    readSnapshot(node,
                 bytes("01 7F FF FF FF" // the list is set, two billion items
                       "00 00 FF" // an item without choice
                       "00 00")); // half an item
    QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
    QVERIFY(std::as_const(node).GetValueItem().capacity() < 100);
}

void HostileInputTest::truncatedItemFailsBeforeTheAppendRule()
{
    // An item that is truncated in its text has no data; the length error must precede the append rule.
    ValueStringList list;
    QCOMPARE(thrownBy([&] {
                 readRecord(list,
                            bytes("00 00 00 1D"
                                  "29 40 EB DD 00 00 00 15 00 00 00 01"
                                  "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01"));
             }),
             lengthErrorOf("StringItem"));
    QVERIFY(std::as_const(list).GetStringItem().isEmpty());

    StartupModes modes;
    QCOMPARE(thrownBy([&] {
                 readRecord(modes,
                            bytes("00 00 00 17"
                                  "62 7B 74 CE 00 00 00 0F 00 00 00 01"
                                  "00 00 00 07 00 00 00 03 46 46")); // "FF" of "FFM"
             }),
             lengthErrorOf("StartupModes"));
}

void HostileInputTest::sequentialDeviceIsReadUntilItsEnd()
{
    const QByteArray record = recordOf(aDocument());
    Pipe pipe(record);
    QDataStream stream(&pipe);
    qint32 length = 0;
    stream >> length;
    TunerProperties document;
    document.SetBinary(stream, length);
    QVERIFY(document == aDocument());

    Pipe cut(record.left(record.size() - 1));
    QDataStream cutStream(&cut);
    cutStream >> length;
    QVERIFY(thrownBy([&] { document.SetBinary(cutStream, length); }).endsWith(QLatin1String(lengthError)));
}

TEST_SUITE(HostileInputTest)
#include "tst_HostileInput.moc"
