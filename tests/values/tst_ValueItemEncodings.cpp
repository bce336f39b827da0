// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encodings.h"
#include "ExceptionText.h"
#include "Kinds.h"

using namespace JobXml;
using namespace ValueItemKinds;

namespace {

/// An item whose chosen alternative is not set. It does not validate, so it can be written.
ValueItem chosenButNotSet()
{
    ValueItem item = withoutValidation();
    item.GetValueInt();
    item.ResetValueInt();
    return item;
}

} // namespace

/// The choice in XML, in tagged records and in snapshots.
class ValueItemEncodingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsHaveTheseElements_data();
    void kindsHaveTheseElements();
    void kindsHaveTheseRecords_data();
    void kindsHaveTheseRecords();
    void kindsHaveTheseSnapshots_data();
    void kindsHaveTheseSnapshots();

    void onlyTheChosenAlternativeIsWritten();
    void itemWithoutChoiceIsWrittenEmpty();
    void chosenAlternativeIsNotWrittenUnlessItIsSet();
    void leadingWordIsWrittenOnlyWhenRequested();

    void attributesOfTheItemAreIgnored();
    void unknownElementsAreSkippedWithTheirContent();
    void ofSeveralElementsTheLastIsChosenAndAllAreSet();
    void anElementReplacesTheAlternative();
    void anElementThatFailsChoosesNothing();

    void unknownRecordsAreSkipped();
    void ofSeveralRecordsTheLastIsChosenAndAllAreSet();
    void recordIsReadIntoTheExistingAlternative();
    void theChoiceMovesBeforeTheNestedRecordIsReadAndTheFlagAfter();
    void wrongRecordLengthThrowsLengthError_data();
    void wrongRecordLengthThrowsLengthError();
    void anEmptyRecordChangesNothing();

    void aSnapshotKeepsTheFlagsOfTheOtherAlternatives();
    void chosenAlternativeIsReadFromASnapshotEvenIfItIsNotSet();
    void flagsBeyondTheTenAreDroppedFromASnapshot();
    void aSnapshotIsReadWithoutValidation();
};

void ValueItemEncodingsTest::kindsHaveTheseElements_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("element");

    QTest::newRow("ValueBoolean") << 0 << QStringLiteral("<ValueBoolean id=\"b\" value=\"true\"/>");
    QTest::newRow("ValueFloat") << 1 << QStringLiteral("<ValueFloat id=\"f\" value=\"2.50\"/>");
    QTest::newRow("ValueInt") << 2 << QStringLiteral("<ValueInt id=\"i\" value=\"-2\"/>");
    QTest::newRow("ValueInt64") << 3 << QStringLiteral("<ValueInt64 id=\"l\" value=\"5000000000\"/>");
    QTest::newRow("ValueNumericFloat") << 4
                                       << QStringLiteral("<ValueNumericFloat id=\"nf\" value=\"0.50\" min=\"-1.00\" "
                                                         "max=\"1.00\" step=\"0.25\"/>");
    QTest::newRow("ValueNumericInt") << 5
                                     << QStringLiteral("<ValueNumericInt id=\"ni\" value=\"5\" min=\"-1\" max=\"10\" "
                                                       "step=\"1\"/>");
    QTest::newRow("ValueNumericInt64") << 6
                                       << QStringLiteral("<ValueNumericInt64 id=\"nl\" value=\"4294967296\" min=\"0\" "
                                                         "max=\"8589934592\" step=\"1\"/>");
    QTest::newRow("ValueSelection") << 7
                                    << QStringLiteral("<ValueSelection id=\"s\" value=\"1.50\" text=\"mid\" "
                                                      "index=\"0\"><SelectionItem name=\"mid\" value=\"1.50\"/>"
                                                      "</ValueSelection>");
    QTest::newRow("ValueString") << 8 << QStringLiteral("<ValueString id=\"t\" value=\"\u00E4\"/>");
    QTest::newRow("ValueStringList") << 9
                                     << QStringLiteral("<ValueStringList id=\"n\" value=\"x\"><StringItem "
                                                       "value=\"x\"/><StringItem value=\"y\"/></ValueStringList>");
}

void ValueItemEncodingsTest::kindsHaveTheseElements()
{
    QFETCH(int, kind);
    QFETCH(QString, element);
    const QString xml = QStringLiteral("<ValueItem>") + element + QStringLiteral("</ValueItem>");
    ValueItem item;
    kinds().at(kind).setSample(item);
    QCOMPARE(xmlOf(item), xml);

    ValueItem read;
    readXml(read, xml);
    QCOMPARE(read.GetChoiceValueItem(), Choice(kind));
    QCOMPARE(setKinds(read), QVector<int>{kind});
    QVERIFY(read == item);
    QCOMPARE(xmlOf(read), xml);
}

void ValueItemEncodingsTest::kindsHaveTheseRecords_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("record");

    QTest::newRow("ValueBoolean") << 0
                                  << bytes("00 00 00 1E" // the item: 30 bytes
                                           "E8 18 2C 83 00 00 00 16" // a ValueBoolean: 22 bytes
                                           "2B 26 2D C9 00 00 00 05 00 00 00 01 62" // id "b"
                                           "89 53 7E 94 00 00 00 01 01"); // value true
    QTest::newRow("ValueFloat") << 1
                                << bytes("00 00 00 25" // the item: 37 bytes
                                         "07 87 7B 18 00 00 00 1D" // a ValueFloat: 29 bytes
                                         "2B 26 2D C9 00 00 00 05 00 00 00 01 66" // id "f"
                                         "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30"); // value "2.50"
    QTest::newRow("ValueInt") << 2
                              << bytes("00 00 00 25" // the item: 37 bytes
                                       "4A CA 65 14 00 00 00 1D" // a ValueInt: 29 bytes
                                       "2B 26 2D C9 00 00 00 05 00 00 00 01 69" // id "i"
                                       "0B A4 42 38 00 00 00 08 FF FF FF FF FF FF FF FE"); // value -2
    QTest::newRow("ValueInt64") << 3
                                << bytes("00 00 00 25" // the item: 37 bytes
                                         "C7 AF 86 A5 00 00 00 1D" // a ValueInt64: 29 bytes
                                         "2B 26 2D C9 00 00 00 05 00 00 00 01 6C" // id "l"
                                         "64 A0 3F 86 00 00 00 08 00 00 00 01 2A 05 F2 00"); // value 5000000000
    QTest::newRow("ValueNumericFloat") << 4
                                       << bytes("00 00 00 57" // the item: 87 bytes
                                                "88 1D 77 BB 00 00 00 4F" // a ValueNumericFloat: 79 bytes
                                                "2B 26 2D C9 00 00 00 06 00 00 00 02 6E 66" // id "nf"
                                                "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 35 30" // value "0.50"
                                                "65 5B A9 DC 00 00 00 09 00 00 00 05 2D 31 2E 30 30" // min "-1.00"
                                                "81 16 6A CB 00 00 00 08 00 00 00 04 31 2E 30 30" // max "1.00"
                                                "A8 D4 64 CF 00 00 00 08 00 00 00 04 30 2E 32 35"); // step "0.25"
    QTest::newRow("ValueNumericInt") << 5
                                     << bytes("00 00 00 56" // the item: 86 bytes
                                              "07 11 45 06 00 00 00 4E" // a ValueNumericInt: 78 bytes
                                              "2B 26 2D C9 00 00 00 06 00 00 00 02 6E 69" // id "ni"
                                              "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 05" // value 5
                                              "68 56 54 A1 00 00 00 08 FF FF FF FF FF FF FF FF" // min -1
                                              "25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 0A" // max 10
                                              "43 76 6B 23 00 00 00 08 00 00 00 00 00 00 00 01"); // step 1
    QTest::newRow("ValueNumericInt64") << 6
                                       << bytes("00 00 00 56" // the item: 86 bytes
                                                "8C D0 14 A1 00 00 00 4E" // a ValueNumericInt64: 78 bytes
                                                "2B 26 2D C9 00 00 00 06 00 00 00 02 6E 6C" // id "nl"
                                                "64 A0 3F 86 00 00 00 08 00 00 00 01 00 00 00 00" // value 2^32
                                                "6A 28 E4 6A 00 00 00 08 00 00 00 00 00 00 00 00" // min 0
                                                "86 12 33 63 00 00 00 08 00 00 00 02 00 00 00 00" // max 2^33
                                                "27 D3 4B 73 00 00 00 08 00 00 00 00 00 00 00 01"); // step 1
    QTest::newRow("ValueSelection") << 7
                                    << bytes("00 00 00 73" // the item: 115 bytes
                                             "AA 5F 78 6F 00 00 00 6B" // a ValueSelection: 107 bytes
                                             "2B 26 2D C9 00 00 00 05 00 00 00 01 73" // id "s"
                                             "C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30" // value "1.50"
                                             "A3 23 E1 0D 00 00 00 07 00 00 00 03 6D 69 64" // text "mid"
                                             "21 28 39 4B 00 00 00 08 00 00 00 00 00 00 00 00" // index 0
                                             "4F B1 9F 31 00 00 00 27 00 00 00 01" // options: one
                                             "00 00 00 1F" //   31 bytes
                                             "CB 4C F6 45 00 00 00 07 00 00 00 03 6D 69 64" //   name "mid"
                                             "C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30"); //   value "1.50"
    QTest::newRow("ValueString") << 8
                                 << bytes("00 00 00 23" // the item: 35 bytes
                                          "02 2B 94 78 00 00 00 1B" // a ValueString: 27 bytes
                                          "2B 26 2D C9 00 00 00 05 00 00 00 01 74" // id "t"
                                          "CE FF 51 BA 00 00 00 06 00 00 00 02 C3 A4"); // value, an a umlaut
    QTest::newRow("ValueStringList") << 9
                                     << bytes("00 00 00 50" // the item: 80 bytes
                                              "49 1E D6 FE 00 00 00 48" // a ValueStringList: 72 bytes
                                              "2B 26 2D C9 00 00 00 05 00 00 00 01 6E" // id "n"
                                              "CE FF 51 BA 00 00 00 05 00 00 00 01 78" // value "x"
                                              "29 40 EB DD 00 00 00 26 00 00 00 02" // texts: two
                                              "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 78" //   "x"
                                              "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 79"); //   "y"
}

void ValueItemEncodingsTest::kindsHaveTheseRecords()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, record);
    ValueItem item;
    kinds().at(kind).setSample(item);
    QCOMPARE(hex(recordOf(item)), hex(record));

    ValueItem read;
    readRecord(read, record);
    QCOMPARE(read.GetChoiceValueItem(), Choice(kind));
    QCOMPARE(setKinds(read), QVector<int>{kind});
    QVERIFY(read == item);
    QCOMPARE(hex(recordOf(read)), hex(record));
}

void ValueItemEncodingsTest::kindsHaveTheseSnapshots_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("snapshot");

    QTest::newRow("ValueBoolean") << 0
                                  << bytes("01 00 00" // ValueBoolean set; ValueBoolean chosen
                                           "03 00 00 00 02 00 62" // both set, id "b"
                                           "01"); // true
    QTest::newRow("ValueFloat") << 1
                                << bytes("02 00 01"
                                         "03 00 00 00 02 00 66" // both set, id "f"
                                         "40 04 00 00 00 00 00 00"); // 2.5 as a double
    QTest::newRow("ValueInt") << 2
                              << bytes("04 00 02"
                                       "03 00 00 00 02 00 69" // both set, id "i"
                                       "FF FF FF FF FF FF FF FE"); // -2
    QTest::newRow("ValueInt64") << 3
                                << bytes("08 00 03"
                                         "03 00 00 00 02 00 6C" // both set, id "l"
                                         "00 00 00 01 2A 05 F2 00"); // 5000000000
    QTest::newRow("ValueNumericFloat") << 4
                                       << bytes("10 00 04"
                                                "1F 00 00 00 04 00 6E 00 66" // all five set, id "nf"
                                                "3F E0 00 00 00 00 00 00" // value 0.5
                                                "BF F0 00 00 00 00 00 00" // min -1
                                                "3F F0 00 00 00 00 00 00" // max 1
                                                "3F D0 00 00 00 00 00 00"); // step 0.25
    QTest::newRow("ValueNumericInt") << 5
                                     << bytes("20 00 05"
                                              "1F 00 00 00 04 00 6E 00 69" // all five set, id "ni"
                                              "00 00 00 00 00 00 00 05" // value 5
                                              "FF FF FF FF FF FF FF FF" // min -1
                                              "00 00 00 00 00 00 00 0A" // max 10
                                              "00 00 00 00 00 00 00 01"); // step 1
    QTest::newRow("ValueNumericInt64") << 6
                                       << bytes("40 00 06"
                                                "1F 00 00 00 04 00 6E 00 6C" // all five set, id "nl"
                                                "00 00 00 01 00 00 00 00" // value 2^32
                                                "00 00 00 00 00 00 00 00" // min 0
                                                "00 00 00 02 00 00 00 00" // max 2^33
                                                "00 00 00 00 00 00 00 01"); // step 1
    QTest::newRow("ValueSelection") << 7
                                    << bytes("80 00 07"
                                             "1F 00 00 00 01" // all five set, one option
                                             "03 00 00 00 06 00 6D 00 69 00 64" //   both set, name "mid"
                                             "3F F8 00 00 00 00 00 00" //   value 1.5
                                             "00 00 00 02 00 73" // id "s"
                                             "3F F8 00 00 00 00 00 00" // value 1.5
                                             "00 00 00 06 00 6D 00 69 00 64" // text "mid"
                                             "00 00 00 00 00 00 00 00"); // index 0
    QTest::newRow("ValueString") << 8
                                 << bytes("00 01 08" // ValueString is the ninth flag
                                          "03 00 00 00 02 00 74" // both set, id "t"
                                          "00 00 00 02 00 E4"); // an a umlaut
    QTest::newRow("ValueStringList") << 9
                                     << bytes("00 02 09"
                                              "07 00 00 00 02" // all three set, two texts
                                              "01 00 00 00 02 00 78" //   set, "x"
                                              "01 00 00 00 02 00 79" //   set, "y"
                                              "00 00 00 02 00 6E" // id "n"
                                              "00 00 00 02 00 78"); // value "x"
}

void ValueItemEncodingsTest::kindsHaveTheseSnapshots()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, snapshot);
    ValueItem item;
    kinds().at(kind).setSample(item);
    QCOMPARE(hex(snapshotOf(item)), hex(snapshot));

    ValueItem read;
    QCOMPARE(readSnapshot(read, snapshot), 0);
    QCOMPARE(read.GetChoiceValueItem(), Choice(kind));
    QCOMPARE(setKinds(read), QVector<int>{kind});
    QVERIFY(read == item);
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void ValueItemEncodingsTest::onlyTheChosenAlternativeIsWritten()
{
    ValueItem item;
    item.SetValueFloat(sample<ValueFloat>("f", 2.5f));
    item.SetValueBoolean(sample<ValueBoolean>("b", true));
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem><ValueBoolean id=\"b\" value=\"true\"/></ValueItem>"));
    QCOMPARE(hex(recordOf(item)),
             hex("00 00 00 1E E8 18 2C 83 00 00 00 16"
                 "2B 26 2D C9 00 00 00 05 00 00 00 01 62"
                 "89 53 7E 94 00 00 00 01 01"));
}

void ValueItemEncodingsTest::itemWithoutChoiceIsWrittenEmpty()
{
    const ValueItem item = withoutValidation();
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem/>"));
    QCOMPARE(hex(recordOf(item)), hex("00 00 00 00"));
    QCOMPARE(hex(snapshotOf(item)), hex("00 00 FF"));
}

void ValueItemEncodingsTest::chosenAlternativeIsNotWrittenUnlessItIsSet()
{
    const ValueItem item = chosenButNotSet();
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem/>"));
    QCOMPARE(hex(recordOf(item)), hex("00 00 00 00"));
    QCOMPARE(hex(snapshotOf(item)), hex("00 00 02"));
}

void ValueItemEncodingsTest::leadingWordIsWrittenOnlyWhenRequested()
{
    const ValueItem item = withoutValidation();
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QVERIFY(item.GetBinary(stream, 0x4F71131F, true));
    QCOMPARE(hex(record), hex("4F 71 13 1F 00 00 00 00"));
}

void ValueItemEncodingsTest::attributesOfTheItemAreIgnored()
{
    ValueItem item;
    readXml(item, QStringLiteral("<ValueItem ValueInt=\"1\" id=\"a\"><ValueInt id=\"i\" value=\"-2\"/></ValueItem>"));
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem><ValueInt id=\"i\" value=\"-2\"/></ValueItem>"));
}

void ValueItemEncodingsTest::unknownElementsAreSkippedWithTheirContent()
{
    ValueItem item;
    readXml(
        item,
        QStringLiteral("<ValueItem><Unknown><ValueInt id=\"i\" value=\"1\"/></Unknown>"
                       "<ValueNumericInt id=\"n\" value=\"5\" min=\"1\" max=\"9\" step=\"1\"/><Other/></ValueItem>"));
    QCOMPARE(item.GetChoiceValueItem(), Choice(5));
    QCOMPARE(setKinds(item), QVector<int>{5});
}

void ValueItemEncodingsTest::ofSeveralElementsTheLastIsChosenAndAllAreSet()
{
    ValueItem item;
    readXml(item,
            QStringLiteral("<ValueItem><ValueString id=\"t\" value=\"on\"/><ValueInt id=\"i\" value=\"-2\"/>"
                           "<ValueFloat id=\"f\" value=\"2.5\"/></ValueItem>"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueFloat);
    QCOMPARE(setKinds(item), (QVector<int>{1, 2, 8}));
    QCOMPARE(std::as_const(item).GetValueString().Getvalue(), QStringLiteral("on"));
}

void ValueItemEncodingsTest::anElementReplacesTheAlternative()
{
    ValueItem item;
    item.SetValueInt(sample<ValueInt>("before", 7));
    readXml(item, QStringLiteral("<ValueItem><ValueInt id=\"i\"/></ValueItem>"));
    QCOMPARE(std::as_const(item).GetValueInt().Getid(), QStringLiteral("i"));
    QVERIFY(!std::as_const(item).GetValueInt().IsvalueSet());
}

void ValueItemEncodingsTest::anElementThatFailsChoosesNothing()
{
    ValueItem item;
    item.SetValueInt(sample<ValueInt>("i", 7));
    QCOMPARE(
        thrownBy([&] { readXml(item, QStringLiteral("<ValueItem><ValueBoolean id=\"b\" value=\"\"/></ValueItem>")); }),
        QStringLiteral("InvalidXmlException: Please set a value or a default for the boolean 'value' in "
                       "'ValueBoolean'."));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueInt);
    QCOMPARE(setKinds(item), QVector<int>{2});
}

void ValueItemEncodingsTest::unknownRecordsAreSkipped()
{
    ValueItem item;
    readRecord(item, bytes("00 00 00 0B 11 22 33 44 00 00 00 03 01 02 03"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::None);
    QCOMPARE(setKinds(item), QVector<int>());

    readRecord(item,
               bytes("00 00 00 30"
                     "11 22 33 44 00 00 00 03 01 02 03"
                     "4A CA 65 14 00 00 00 1D"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                     "0B A4 42 38 00 00 00 08 FF FF FF FF FF FF FF FE"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueInt);
    QCOMPARE(std::as_const(item).GetValueInt().Getvalue(), -2);
}

void ValueItemEncodingsTest::ofSeveralRecordsTheLastIsChosenAndAllAreSet()
{
    ValueItem item;
    item.SetValueString(sample<ValueString>("t", QStringLiteral("on")));
    readRecord(item,
               bytes("00 00 00 43" // 67 bytes
                     "4A CA 65 14 00 00 00 1D" // a ValueInt
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                     "0B A4 42 38 00 00 00 08 FF FF FF FF FF FF FF FE"
                     "E8 18 2C 83 00 00 00 16" // a ValueBoolean
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 62"
                     "89 53 7E 94 00 00 00 01 01"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueBoolean);
    QCOMPARE(setKinds(item), (QVector<int>{0, 2, 8}));
    QCOMPARE(std::as_const(item).GetValueInt().Getvalue(), -2);
    QCOMPARE(std::as_const(item).GetValueBoolean().Getid(), QStringLiteral("b"));
}

void ValueItemEncodingsTest::recordIsReadIntoTheExistingAlternative()
{
    ValueItem item;
    item.SetValueInt(sample<ValueInt>("before", 7));
    readRecord(item,
               bytes("00 00 00 15 4A CA 65 14 00 00 00 0D"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 69"));
    QCOMPARE(std::as_const(item).GetValueInt().Getid(), QStringLiteral("i"));
    QCOMPARE(std::as_const(item).GetValueInt().Getvalue(), 7);
}

void ValueItemEncodingsTest::theChoiceMovesBeforeTheNestedRecordIsReadAndTheFlagAfter()
{
    ValueItem item;
    item.SetValueBoolean(sample<ValueBoolean>("b", true));
    // A ValueInt that claims to be one byte shorter than its records.
    QCOMPARE(thrownBy([&] {
                 readRecord(item,
                            bytes("00 00 00 25 4A CA 65 14 00 00 00 1C"
                                  "2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                                  "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 07"));
             }),
             QStringLiteral("BinaryParsingException: ValueInt::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueInt);
    QCOMPARE(setKinds(item), QVector<int>{0});
    QCOMPARE(std::as_const(item).GetValueInt().Getid(), QStringLiteral("i")); // what was read before stays
}

void ValueItemEncodingsTest::wrongRecordLengthThrowsLengthError_data()
{
    QTest::addColumn<QByteArray>("record");

    QTest::newRow("negative") << bytes("FF FF FF FF");
    QTest::newRow("four bytes more than there are") << bytes("00 00 00 0F 11 22 33 44 00 00 00 03 01 02 03");
    QTest::newRow("less than its record") << bytes("00 00 00 0A 11 22 33 44 00 00 00 03 01 02 03");
}

void ValueItemEncodingsTest::wrongRecordLengthThrowsLengthError()
{
    QFETCH(QByteArray, record);
    ValueItem item;
    QCOMPARE(thrownBy([&] { readRecord(item, record); }),
             QStringLiteral("BinaryParsingException: ValueItem::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
}

void ValueItemEncodingsTest::anEmptyRecordChangesNothing()
{
    ValueItem item;
    item.SetValueInt(sample<ValueInt>("i", 7));
    readRecord(item, bytes("00 00 00 00"));
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueInt);
    QCOMPARE(setKinds(item), QVector<int>{2});
}

void ValueItemEncodingsTest::aSnapshotKeepsTheFlagsOfTheOtherAlternatives()
{
    ValueItem item;
    item.SetValueStringList(sampleStringList());
    item.SetValueFloat(sample<ValueFloat>("f", 2.5f));
    item.SetValueBoolean(sample<ValueBoolean>("b", true));
    const char snapshot[] = "03 02 00" // the first, the second and the last set; the first chosen
                            "03 00 00 00 02 00 62 01";
    QCOMPARE(hex(snapshotOf(item)), hex(snapshot));
    ValueItem read;
    QCOMPARE(readSnapshot(read, bytes(snapshot)), 0);
    QCOMPARE(setKinds(read), (QVector<int>{0, 1, 9}));
    QVERIFY(!std::as_const(read).GetValueFloat().HasData()); // its flag came along, its value did not
}

void ValueItemEncodingsTest::chosenAlternativeIsReadFromASnapshotEvenIfItIsNotSet()
{
    QCOMPARE(hex(snapshotOf(chosenButNotSet())), hex("00 00 02"));
    ValueItem item;
    QCOMPARE(
        readSnapshot(item,
                     bytes("00 00 02"
                           "03 00 00 00 02 00 69 00 00 00 00 00 00 00 07" // what comes next is taken for a ValueInt
                           "AB")),
        1);
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueInt);
    QCOMPARE(setKinds(item), QVector<int>());
    QCOMPARE(std::as_const(item).GetValueInt().Getvalue(), 7);
}

void ValueItemEncodingsTest::flagsBeyondTheTenAreDroppedFromASnapshot()
{
    ValueItem item;
    QCOMPARE(readSnapshot(item, bytes("FF FF FF")), 0);
    QCOMPARE(setKinds(item).mid(0, 10), (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    QCOMPARE(setKinds(item).size(), Kinds::size);
    // for ten kinds, eleven, and so on
    const char *const snapshots[] = {"FF 03 FF", "FF 07 FF", "FF 0F FF", "FF 1F FF",
                                     "FF 3F FF", "FF 7F FF", "FF FF FF"};
    QCOMPARE(hex(snapshotOf(item)), hex(snapshots[Kinds::size - 10]));
}

void ValueItemEncodingsTest::aSnapshotIsReadWithoutValidation()
{
    ValueItem item;
    QCOMPARE(thrownBy([&] { readSnapshot(item, bytes("00 01 08 03 FF FF FF FF FF FF FF FF")); }), QString());
    QCOMPARE(item.GetChoiceValueItem(), Choice::ValueString);
    QVERIFY(item.GetValueString().IsvalueSet());
    QVERIFY(item.GetValueString().Getvalue().isNull());
    QVERIFY(!item.HasData());
}

TEST_SUITE(ValueItemEncodingsTest)
#include "tst_ValueItemEncodings.moc"
