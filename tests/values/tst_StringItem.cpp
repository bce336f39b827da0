// SPDX-License-Identifier: MIT
#include "StringLists.h"

using namespace JobXml;

namespace {

const char missingValue[] = "OutOfRangeException: StringItem: Please set value properly.";

} // namespace

class StringItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void theValueStoresAndResets();
    void aNullValueIsRefusedOnlyWhileValidating();
    void everyValueIsValidIncludingANullOne();
    void checkRequiresTheValue();
    void emptyValueIsDataAndNullValueIsNot();
    void hasDataRequiresTheTextAndCheckItsFlagToo();
    void equalityComparesTheValue();

    void aWholeItemHasThisElement();
    void aWholeItemHasThisRecord();
    void aWholeItemHasThisSnapshot();
    void littleEndianStreamsReverseNumbersAndCharacters();

    void anUnsetValueIsWrittenEmptyInXmlAndNullInBinary();
    void elementIsReadLikeTheAttribute();
    void unknownRecordsAreSkipped();
    void aNullValueInARecordComesBackEmpty();
    void aSnapshotStoresTheValueWithoutTheSetter();
    void wrongLengthThrowsLengthError();
};

void StringItemTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(StringItem::GetStaticObjectName(), QStringLiteral("StringItem"));
    QCOMPARE(StringItem().GetObjectName(), QStringLiteral("StringItem"));
    QCOMPARE(StringItem::GetId(), Q_INT64_C(0xEBB03A60));
}

void StringItemTest::theValueStoresAndResets()
{
    storesAndResets(ACCESSORS(StringItem, value), QStringLiteral("X"), QString());
}

void StringItemTest::aNullValueIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(StringItem, value),
                QStringLiteral("OutOfRangeException: StringItem: Please set value properly (origin: Setter)."));
}

void StringItemTest::everyValueIsValidIncludingANullOne()
{
    QVERIFY(StringItem().IsValidvalue(QString()));
    QVERIFY(StringItem().IsValidvalue(QStringLiteral("")));
    QVERIFY(StringItem().IsValidvalue(QStringLiteral("X")));
}

void StringItemTest::checkRequiresTheValue()
{
    StringItem object;
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    QCOMPARE(thrownBy([&] { object.Check(true); }), QLatin1String(missingValue));
    object.SetValidate(false);
    object.Setvalue(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    object.Setvalue(QStringLiteral(""));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void StringItemTest::emptyValueIsDataAndNullValueIsNot()
{
    QVERIFY(textItem("").HasData());
    QVERIFY(textItem("").AnyData());
    auto object = withoutValidation<StringItem>();
    object.Setvalue(QString());
    QVERIFY(!object.HasData());
    QVERIFY(!object.AnyData());
}

void StringItemTest::hasDataRequiresTheTextAndCheckItsFlagToo()
{
    StringItem object;
    readSnapshot(object, bytes("00 00 00 00 02 00 58")); // a value that is there and not set
    QVERIFY(!object.IsvalueSet());
    QVERIFY(object.HasData());
    QVERIFY(object.AnyData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
}

void StringItemTest::equalityComparesTheValue()
{
    QVERIFY(textItem("X") == textItem("X"));
    QVERIFY(textItem("X") != textItem("Y"));
    QVERIFY(textItem("X") != StringItem());
    QVERIFY(StringItem() != textItem(""));
    QVERIFY(StringItem() == StringItem());
}

void StringItemTest::aWholeItemHasThisElement()
{
    hasElement(textItem("X"), QStringLiteral("<StringItem value=\"X\"/>"));
}

void StringItemTest::aWholeItemHasThisRecord()
{
    hasRecord(textItem("X"),
              "00 00 00 0D" // 13 bytes
              "CE FF 51 BA 00 00 00 05 00 00 00 01 58"); // value "X"
}

void StringItemTest::aWholeItemHasThisSnapshot()
{
    hasSnapshot(textItem("X"),
                "01" // set
                "00 00 00 02 00 58"); // value "X"
}

void StringItemTest::littleEndianStreamsReverseNumbersAndCharacters()
{
    hasRecord(textItem("X"), "0D 00 00 00 BA 51 FF CE 05 00 00 00 01 00 00 00 58", littleEndian);
    hasSnapshot(textItem("X"), "01 02 00 00 00 58 00", littleEndian);
}

void StringItemTest::anUnsetValueIsWrittenEmptyInXmlAndNullInBinary()
{
    const auto object = withoutValidation<StringItem>();
    QCOMPARE(xmlOf(object), QStringLiteral("<StringItem value=\"\"/>"));
    QCOMPARE(hex(recordOf(object)), hex("00 00 00 0C CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF"));
}

void StringItemTest::elementIsReadLikeTheAttribute()
{
    StringItem object;
    readXml(object,
            QStringLiteral("<StringItem value=\"no\" id=\"no\"><other><value>no</value></other><value>X</value>"
                           "<id>no</id></StringItem>"));
    QVERIFY(object == textItem("X"));
    for (const char *element : {"<StringItem><value/></StringItem>", "<StringItem value=\"\"/>"}) {
        StringItem empty;
        readXml(empty, QString::fromLatin1(element)); // validating, which null would not survive
        QVERIFY(empty == textItem(""));
        QVERIFY(!empty.Getvalue().isNull());
    }
}

void StringItemTest::unknownRecordsAreSkipped()
{
    StringItem object;
    readRecord(object,
               bytes("00 00 00 1A" // 26 bytes
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 6C" // an id, which an item does not have
                     "CE FF 51 BA 00 00 00 05 00 00 00 01 58"));
    QVERIFY(object == textItem("X"));
}

void StringItemTest::aNullValueInARecordComesBackEmpty()
{
    StringItem object;
    readRecord(object, bytes("00 00 00 0C CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QVERIFY(object == textItem(""));
    QVERIFY(!object.Getvalue().isNull());
}

void StringItemTest::aSnapshotStoresTheValueWithoutTheSetter()
{
    StringItem object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("01 FF FF FF FF")); }), QString());
    QVERIFY(object.IsvalueSet());
    QVERIFY(object.Getvalue().isNull());
}

void StringItemTest::wrongLengthThrowsLengthError()
{
    StringItem object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0E CE FF 51 BA 00 00 00 05 00 00 00 01 58")); }),
             QStringLiteral("BinaryParsingException: StringItem::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QVERIFY(object == textItem("X"));
}

TEST_SUITE(StringItemTest)
#include "tst_StringItem.moc"
