// SPDX-License-Identifier: MIT
#include "StringLists.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

const char lengthError[] = "BinaryParsingException: ValueStringList::SetBinary(...): Length error occurred during "
                           "processing of binary representation";

void verifyOneLenientItem(const ValueStringList &object, const std::shared_ptr<Logger> &logger)
{
    QCOMPARE(object.GetStringItem().size(), 1);
    QVERIFY(object.IsStringItemSet());
    QCOMPARE(object.GetStringItem().at(0).GetValidate(), false);
    QCOMPARE(object.GetStringItem().at(0).GetLogger(), logger);
}

} // namespace

/// Lists of texts in XML, in tagged records and in snapshots.
class ValueStringListEncodingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeListHasThisElement();
    void aWholeListHasThisRecord();
    void aWholeListHasThisSnapshot();
    void littleEndianStreamsReverseNumbersAndCharacters();
    void emptyListIsWrittenWithoutValidation();
    void itemsOfAnUnsetListAreCountedButNotWritten();
    void anIncompleteListIsRefusedBeforeAnythingIsWritten();
    void anIncompleteItemIsRefusedWhileItIsWritten();
    void incompleteItemIsWrittenWithoutValidation();

    void elementsAreReadLikeAttributes();
    void emptyElementsAreEmptyTexts();
    void unknownElementsAreSkippedWithTheirContent();
    void itemElementsJoinTheItemsPresent();
    void anItemElementWithoutValueIsRefusedWhileValidating();
    void itemReadFromAnElementInheritsFlagAndLogger();

    void recordsJoinTheItemsPresent();
    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void nullTextsInARecordComeBackEmpty();
    void aRecordOfNoItemsLeavesTheListUnset();
    void anItemRecordWithoutValueIsRefusedWhileValidating();
    void itemReadFromARecordInheritsFlagAndLogger();
    void itemWithWrongLengthThrowsItsOwnLengthError();
    void missingItemsThrowALengthErrorOfTheList();
    void wrongLengthThrowsLengthError();

    void snapshotsJoinTheItemsPresent();
    void itemsOfASnapshotAreReadOnlyWhenTheListIsSet();
    void anItemWithoutValueInASnapshotIsRefusedWhileValidating();
    void truncatedItemIsNotAppended();
    void aSnapshotStoresTheTextsWithoutTheSetters();
    void manySmallRecordsMakeTheListGrowInLeaps();
};

void ValueStringListEncodingsTest::aWholeListHasThisElement()
{
    hasElement(textList({"X", "Y"}),
               QStringLiteral("<ValueStringList id=\"l\" value=\"Z\"><StringItem value=\"X\"/><StringItem "
                              "value=\"Y\"/></ValueStringList>"));
}

void ValueStringListEncodingsTest::aWholeListHasThisRecord()
{
    hasRecord(textList({"X", "Y"}),
              "00 00 00 48" // 72 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 6C" // id "l"
              "CE FF 51 BA 00 00 00 05 00 00 00 01 5A" // value "Z"
              "29 40 EB DD 00 00 00 26 00 00 00 02" // two items in 38 bytes
              "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 58" //   13 bytes: value "X"
              "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 59"); //   13 bytes: value "Y"
}

void ValueStringListEncodingsTest::aWholeListHasThisSnapshot()
{
    hasSnapshot(textList({"X", "Y"}),
                "07 00 00 00 02" // all three set, two items
                "01 00 00 00 02 00 58" //   set, "X"
                "01 00 00 00 02 00 59" //   set, "Y"
                "00 00 00 02 00 6C" // id "l"
                "00 00 00 02 00 5A"); // value "Z"
}

void ValueStringListEncodingsTest::littleEndianStreamsReverseNumbersAndCharacters()
{
    hasRecord(textList({"X"}),
              "37 00 00 00" // 55 bytes
              "C9 2D 26 2B 05 00 00 00 01 00 00 00 6C"
              "BA 51 FF CE 05 00 00 00 01 00 00 00 5A"
              "DD EB 40 29 15 00 00 00 01 00 00 00"
              "0D 00 00 00 BA 51 FF CE 05 00 00 00 01 00 00 00 58",
              littleEndian);
    hasSnapshot(textList({"X"}),
                "07 01 00 00 00"
                "01 02 00 00 00 58 00"
                "02 00 00 00 6C 00"
                "02 00 00 00 5A 00",
                littleEndian);
}

void ValueStringListEncodingsTest::emptyListIsWrittenWithoutValidation()
{
    auto object = withoutValidation<ValueStringList>();
    const char record[] = "00 00 00 24" // 36 bytes
                          "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                          "CE FF 51 BA 00 00 00 04 FF FF FF FF" // value null
                          "29 40 EB DD 00 00 00 04 00 00 00 00"; // no items
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueStringList id=\"\" value=\"\"/>"));
    QCOMPARE(hex(recordOf(object)), hex(record));
    QCOMPARE(hex(snapshotOf(object)), hex("00 00 00 00 00 FF FF FF FF FF FF FF FF"));
    object.SetStringItem({}); // set and empty is written the same, but for the flag
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueStringList id=\"\" value=\"\"/>"));
    QCOMPARE(hex(recordOf(object)), hex(record));
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 00 FF FF FF FF FF FF FF FF"));
}

void ValueStringListEncodingsTest::itemsOfAnUnsetListAreCountedButNotWritten()
{
    ValueStringList object = withUnsetTexts();
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueStringList id=\"l\" value=\"Z\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 26" // 38 bytes
                 "2B 26 2D C9 00 00 00 05 00 00 00 01 6C"
                 "CE FF 51 BA 00 00 00 05 00 00 00 01 5A"
                 "29 40 EB DD 00 00 00 04 00 00 00 01"));
    QCOMPARE(hex(snapshotOf(object)), hex("06 00 00 00 01 00 00 00 02 00 6C 00 00 00 02 00 5A"));
}

void ValueStringListEncodingsTest::anIncompleteListIsRefusedBeforeAnythingIsWritten()
{
    auto object = sample<ValueStringList>("l", QStringLiteral("Z"));
    QString xml;
    QXmlStreamWriter writer(&xml);
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    const auto missingItems = QStringLiteral("OutOfRangeException: ValueStringList: Please set StringItem properly.");
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }), missingItems);
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }), missingItems);
    object.SetStringItem({textItem("X"), StringItem()});
    const auto missingText = QStringLiteral("OutOfRangeException: StringItem: Please set value properly.");
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }), missingText);
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }), missingText);
    QCOMPARE(xml, QString());
    QCOMPARE(hex(record), QString());
}

void ValueStringListEncodingsTest::anIncompleteItemIsRefusedWhileItIsWritten()
{
    Unchecked<ValueStringList> object;
    object.Setid(QStringLiteral("l"));
    object.Setvalue(QStringLiteral("Z"));
    object.SetStringItem({textItem("X"), StringItem(), textItem("Y")});
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }),
             QStringLiteral("IncompleteDefinitionException: Parameters for StringItem are not set properly in "
                            "'ValueStringList'."));
    QCOMPARE(xml, QStringLiteral("<ValueStringList id=\"l\" value=\"Z\"><StringItem value=\"X\"/>")); // stays
}

void ValueStringListEncodingsTest::incompleteItemIsWrittenWithoutValidation()
{
    auto object = withoutValidation<ValueStringList>();
    object.AppendStringItem(StringItem());
    QCOMPARE(xmlOf(object),
             QStringLiteral("<ValueStringList id=\"\" value=\"\"><StringItem value=\"\"/></ValueStringList>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 34" // 52 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF"
                 "CE FF 51 BA 00 00 00 04 FF FF FF FF"
                 "29 40 EB DD 00 00 00 14 00 00 00 01"
                 "00 00 00 0C CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 01 00 FF FF FF FF FF FF FF FF FF FF FF FF"));
}

void ValueStringListEncodingsTest::elementsAreReadLikeAttributes()
{
    ValueStringList object;
    readXml(object,
            QStringLiteral("<ValueStringList id=\"no\" value=\"no\"><StringItem><value>X</value></StringItem>"
                           "<value>Z</value><StringItem value=\"Y\"/><id>l</id></ValueStringList>"));
    QVERIFY(object == textList({"X", "Y"}));
}

void ValueStringListEncodingsTest::emptyElementsAreEmptyTexts()
{
    ValueStringList object; // validating, which null would not survive
    readXml(object, QStringLiteral("<ValueStringList><id/><value></value></ValueStringList>"));
    QVERIFY(object == sample<ValueStringList>("", QStringLiteral("")));
    QVERIFY(!object.Getid().isNull());
    QVERIFY(!object.Getvalue().isNull());
}

void ValueStringListEncodingsTest::unknownElementsAreSkippedWithTheirContent()
{
    ValueStringList object;
    readXml(object,
            QStringLiteral("<ValueStringList min=\"1\" id=\"l\"><Other><StringItem value=\"no\"/><value>no</value>"
                           "</Other><StringItem value=\"X\"><Other><value>no</value></Other></StringItem>"
                           "<SelectionItem name=\"no\"/><value>Z</value></ValueStringList>"));
    QVERIFY(object == textList({"X"}));
}

void ValueStringListEncodingsTest::itemElementsJoinTheItemsPresent()
{
    ValueStringList object = textList({"A"});
    readXml(object,
            QStringLiteral("<ValueStringList><StringItem value=\"X\"/><StringItem value=\"Y\"/></ValueStringList>"));
    QVERIFY(object == textList({"A", "X", "Y"}));
}

void ValueStringListEncodingsTest::anItemElementWithoutValueIsRefusedWhileValidating()
{
    const auto element = QStringLiteral("<ValueStringList id=\"l\"><StringItem value=\"X\"/><StringItem/>"
                                        "<StringItem value=\"Y\"/></ValueStringList>");
    ValueStringList object;
    QCOMPARE(thrownBy([&] { readXml(object, element); }), QLatin1String(incompleteTextItem));
    QCOMPARE(object.Getid(), QStringLiteral("l"));
    QCOMPARE(textsOf(object), texts({"X"}));

    auto lenient = withoutValidation<ValueStringList>();
    readXml(lenient, element);
    QCOMPARE(textsOf(lenient), (QStringList{QStringLiteral("X"), QString(), QStringLiteral("Y")}));
}

void ValueStringListEncodingsTest::itemReadFromAnElementInheritsFlagAndLogger()
{
    const auto logger = std::make_shared<Logger>();
    auto object = withoutValidation<ValueStringList>();
    object.SetLogger(logger);
    readXml(object, QStringLiteral("<ValueStringList><StringItem value=\"X\"/></ValueStringList>"));
    verifyOneLenientItem(object, logger);
}

void ValueStringListEncodingsTest::recordsJoinTheItemsPresent()
{
    ValueStringList object = textList({"A"});
    readRecord(object, recordOf(textList({"X", "Y", "W"})));
    QCOMPARE(textsOf(object), texts({"A", "X", "Y", "W"}));
}

void ValueStringListEncodingsTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    ValueStringList object;
    readRecord(object,
               bytes("00 00 00 60" // 96 bytes
                     "29 40 EB DD 00 00 00 15 00 00 00 01" // one item
                     "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 58" //   "X"
                     "4F B1 9F 31 00 00 00 04 00 00 00 07" // the list of another class
                     "CE FF 51 BA 00 00 00 05 00 00 00 01 5A" // value "Z"
                     "29 40 EB DD 00 00 00 15 00 00 00 01" // one more item
                     "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 59" //   "Y"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 6C")); // id "l"
    QVERIFY(object == textList({"X", "Y"}));
}

void ValueStringListEncodingsTest::nullTextsInARecordComeBackEmpty()
{
    ValueStringList object; // validating, which null would not survive
    readRecord(object,
               bytes("00 00 00 34 2B 26 2D C9 00 00 00 04 FF FF FF FF CE FF 51 BA 00 00 00 04 FF FF FF FF"
                     "29 40 EB DD 00 00 00 14 00 00 00 01 00 00 00 0C CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QVERIFY(object.HasData());
    QCOMPARE(object.Getid(), QStringLiteral(""));
    QCOMPARE(object.Getvalue(), QStringLiteral(""));
    QCOMPARE(textsOf(object), texts({""}));
}

void ValueStringListEncodingsTest::aRecordOfNoItemsLeavesTheListUnset()
{
    // It is appending that sets the flag.
    for (const char *record :
         {"00 00 00 0C 29 40 EB DD 00 00 00 04 00 00 00 00", "00 00 00 0C 29 40 EB DD 00 00 00 04 FF FF FF FF",
          "00 00 00 0C 29 40 EB DD 00 00 00 04 80 00 00 00"}) {
        ValueStringList object;
        readRecord(object, bytes(record));
        QVERIFY(!object.IsStringItemSet());
        QVERIFY(std::as_const(object).GetStringItem().isEmpty());
        object = textList({"A"});
        readRecord(object, bytes(record));
        QVERIFY(object == textList({"A"}));
    }
}

void ValueStringListEncodingsTest::anItemRecordWithoutValueIsRefusedWhileValidating()
{
    const char record[] = "00 00 00 21" // 33 bytes
                          "29 40 EB DD 00 00 00 19 00 00 00 02"
                          "00 00 00 0D CE FF 51 BA 00 00 00 05 00 00 00 01 58" // "X"
                          "00 00 00 00"; // an item without anything
    ValueStringList object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes(record)); }), QLatin1String(incompleteTextItem));
    QCOMPARE(textsOf(object), texts({"X"}));
    auto lenient = withoutValidation<ValueStringList>();
    readRecord(lenient, bytes(record));
    QCOMPARE(std::as_const(lenient).GetStringItem().size(), 2);
}

void ValueStringListEncodingsTest::itemReadFromARecordInheritsFlagAndLogger()
{
    const auto logger = std::make_shared<Logger>();
    auto object = withoutValidation<ValueStringList>();
    object.SetLogger(logger);
    readRecord(object, bytes("00 00 00 10 29 40 EB DD 00 00 00 08 00 00 00 01 00 00 00 00"));
    verifyOneLenientItem(object, logger);
}

void ValueStringListEncodingsTest::itemWithWrongLengthThrowsItsOwnLengthError()
{
    ValueStringList object;
    QCOMPARE(thrownBy([&] {
                 readRecord(object,
                            bytes("00 00 00 1D 29 40 EB DD 00 00 00 15 00 00 00 01"
                                  "00 00 00 0C CE FF 51 BA 00 00 00 05 00 00 00 01 58"));
             }),
             QStringLiteral("BinaryParsingException: StringItem::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
}

void ValueStringListEncodingsTest::missingItemsThrowALengthErrorOfTheList()
{
    for (const char *record : {"00 00 00 0C 29 40 EB DD 00 00 00 04 00 00 00 01", // counted, and nothing else
                               "00 00 00 0C 29 40 EB DD 00 00 00 04 7F FF FF FF",
                               "00 00 00 0C 29 40 EB DD 00 00 00 04 00 00", // ends within the count
                               "00 00 00 10 29 40 EB DD 00 00 00 08 00 00 00 01 00 00"}) { // and within a length
        for (const bool validate : {true, false}) {
            ValueStringList object;
            object.SetValidate(validate);
            QCOMPARE(thrownBy([&] { readRecord(object, bytes(record)); }), QLatin1String(lengthError));
            QVERIFY(std::as_const(object).GetStringItem().isEmpty());
        }
    }
}

void ValueStringListEncodingsTest::wrongLengthThrowsLengthError()
{
    ValueStringList object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0E CE FF 51 BA 00 00 00 05 00 00 00 01 5A")); }),
             QLatin1String(lengthError));
    QCOMPARE(object.Getvalue(), QStringLiteral("Z"));
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("FF FF FF FF")); }), QLatin1String(lengthError));
}

void ValueStringListEncodingsTest::snapshotsJoinTheItemsPresent()
{
    ValueStringList object = textList({"A"});
    QCOMPARE(readSnapshot(object, snapshotOf(textList({"X", "Y"}))), 0);
    QVERIFY(object == textList({"A", "X", "Y"}));
}

void ValueStringListEncodingsTest::itemsOfASnapshotAreReadOnlyWhenTheListIsSet()
{
    ValueStringList object;
    QCOMPARE(readSnapshot(object, bytes("06 00 00 00 02 00 00 00 02 00 6C 00 00 00 02 00 5A")), 0);
    QVERIFY(!object.IsStringItemSet());
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
    QVERIFY(object == textList({}));

    QCOMPARE(readSnapshot(object, bytes("07 00 00 00 00 00 00 00 02 00 6C 00 00 00 02 00 5A")), 0);
    QVERIFY(object.IsStringItemSet()); // the flags are taken as they are stored
}

void ValueStringListEncodingsTest::anItemWithoutValueInASnapshotIsRefusedWhileValidating()
{
    const char snapshot[] = "07 00 00 00 02 01 00 00 00 02 00 58 01 FF FF FF FF 00 00 00 02 00 6C 00 00 00 02 00 5A";
    ValueStringList object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes(snapshot)); }), QLatin1String(incompleteTextItem));
    QCOMPARE(textsOf(object), texts({"X"}));
    auto lenient = withoutValidation<ValueStringList>();
    QCOMPARE(readSnapshot(lenient, bytes(snapshot)), 0);
    QCOMPARE(std::as_const(lenient).GetStringItem().size(), 2);
    QVERIFY(std::as_const(lenient).GetStringItem().at(1).IsvalueSet());
    QCOMPARE(lenient.Getvalue(), QStringLiteral("Z"));
}

void ValueStringListEncodingsTest::truncatedItemIsNotAppended()
{
    for (const char *snapshot : {"07 00 00 00 02 01 00 00 00 02 00 58", // before the second item
                                 "07 00 00 00 02 01 00 00 00 02 00 58 01 00 00 00 02 00", // and within it
                                 "07 7F FF FF FF 01 00 00 00 02 00 58 01"}) {
        ValueStringList object; // validating: what was cut off does not get as far as the append rule
        QCOMPARE(thrownBy([&] { readSnapshot(object, bytes(snapshot)); }), QString());
        QCOMPARE(textsOf(object), texts({"X"}));
    }
}

void ValueStringListEncodingsTest::aSnapshotStoresTheTextsWithoutTheSetters()
{
    ValueStringList object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("06 00 00 00 00 FF FF FF FF FF FF FF FF")); }), QString());
    QVERIFY(object.IsidSet());
    QVERIFY(object.IsvalueSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(object.Getvalue().isNull());
}

void ValueStringListEncodingsTest::manySmallRecordsMakeTheListGrowInLeaps()
{
    // One item, whose value is "x".
    const QByteArray record = bytes("0000001D 2940EBDD 00000015 00000001 0000000D CEFF51BA 00000005 00000001 78");
    ValueStringList object;
    int leaps = 0;
    for (int i = 0; i < 1000; ++i) {
        const int before = std::as_const(object).GetStringItem().capacity();
        readRecord(object, record);
        leaps += std::as_const(object).GetStringItem().capacity() != before;
    }
    QCOMPARE(object.GetStringItem().size(), 1000);
    QVERIFY2(leaps < 50, qPrintable(QString::number(leaps))); // each leap copies all items
}

TEST_SUITE(ValueStringListEncodingsTest)
#include "tst_ValueStringListEncodings.moc"
