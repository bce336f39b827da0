// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

namespace {

const char missingValue[] = "OutOfRangeException: ValueString: Please set value properly.";

ValueString aText(const char *id, const char *value)
{
    return sample<ValueString>(id, QString::fromUtf8(value));
}

/// Reads a record with an id and an unknown member into an object of another class.
template <class Object>
void readsTheIdOfOtherClasses()
{
    Object object;
    readRecord(object,
               bytes("00 00 00 1B" // 27 bytes
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 73" // id "s"
                     "CE FF 51 BB 00 00 00 06 00 00 00 02 6F 6E")); // a tag that no class here knows
    QCOMPARE(object.Getid(), QStringLiteral("s"));
    QVERIFY(object.IsidSet());
    QVERIFY(!object.IsvalueSet());
}

} // namespace

class ValueStringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void everyMemberStoresAndResets();
    void aNullTextIsRefusedOnlyWhileValidating();
    void onlyANullTextIsInvalid();
    void checkNamesTheFirstMissingMember();
    void anEmptyValueIsDataAndPassesTheCheck();
    void nullValueIsNotDataAndFailsTheCheck();
    void hasDataRequiresTheTextAndCheckItsFlagToo();
    void equalityComparesIdAndValue();

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void littleEndianStreamsReverseNumbersAndCharacters();

    void unsetTextsAreWrittenEmptyInXmlAndNullInBinary();
    void anEmptyElementIsAnEmptyValue();
    void elementsAreReadLikeAttributes();
    void aNullValueInARecordComesBackEmpty();
    void aSnapshotStoresTheValueWithoutTheSetter();
    void anIdRecordIsReadByEveryClass();
    void theValueOfAnotherTypeIsSkipped();
    void wrongLengthThrowsLengthError();
};

void ValueStringTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(ValueString::GetStaticObjectName(), QStringLiteral("ValueString"));
    QCOMPARE(ValueString().GetObjectName(), QStringLiteral("ValueString"));
    QCOMPARE(ValueString::GetId(), Q_INT64_C(0xC5ECF92B));
}

void ValueStringTest::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueString, id), QStringLiteral("s"), QString());
    storesAndResets(ACCESSORS(ValueString, value), QStringLiteral("on"), QString());
}

void ValueStringTest::aNullTextIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueString, id),
                QStringLiteral("OutOfRangeException: ValueString: Please set id properly (origin: Setter)."));
    refusesNull(ACCESSORS(ValueString, value),
                QStringLiteral("OutOfRangeException: ValueString: Please set value properly (origin: Setter)."));
}

void ValueStringTest::onlyANullTextIsInvalid()
{
    const ValueString object;
    QVERIFY(!object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("")));
    QVERIFY(!object.IsValidvalue(QString()));
    QVERIFY(object.IsValidvalue(QStringLiteral("")));
    QVERIFY(object.IsValidvalue(QStringLiteral("x")));
}

void ValueStringTest::checkNamesTheFirstMissingMember()
{
    ValueString object;
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueString: Please set id properly."));
    object.Setid(QStringLiteral("s"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    object.Setvalue(QStringLiteral("on"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueStringTest::anEmptyValueIsDataAndPassesTheCheck()
{
    const ValueString object = aText("s", "");
    QVERIFY(object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueStringTest::nullValueIsNotDataAndFailsTheCheck()
{
    auto object = withoutValidation<ValueString>();
    object.Setid(QStringLiteral("s"));
    object.Setvalue(QString());
    QVERIFY(object.IsvalueSet());
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    object.Resetid();
    QVERIFY(!object.AnyData());
}

void ValueStringTest::hasDataRequiresTheTextAndCheckItsFlagToo()
{
    ValueString object;
    readSnapshot(object, bytes("01 00 00 00 02 00 73 00 00 00 00")); // a value that is there and not set
    QVERIFY(!object.IsvalueSet());
    QVERIFY(object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    readSnapshot(object, bytes("00 FF FF FF FF 00 00 00 00")); // and nothing else
    QVERIFY(object.AnyData());
}

void ValueStringTest::equalityComparesIdAndValue()
{
    QVERIFY(aText("s", "on") == aText("s", "on"));
    QVERIFY(aText("s", "on") != aText("s", "off"));
    QVERIFY(aText("s", "on") != aText("t", "on"));
    ValueString withoutValue;
    withoutValue.Setid(QStringLiteral("s"));
    QVERIFY(withoutValue != aText("s", ""));
    QVERIFY(aText("s", "") != withoutValue);
}

void ValueStringTest::aWholeValueHasThisElement()
{
    hasElement(aText("s", "on"), QStringLiteral("<ValueString id=\"s\" value=\"on\"/>"));
}

void ValueStringTest::aWholeValueHasThisRecord()
{
    hasRecord(aText("s", "on"),
              "00 00 00 1B" // 27 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 73" // id "s"
              "CE FF 51 BA 00 00 00 06 00 00 00 02 6F 6E"); // value "on"
}

void ValueStringTest::aWholeValueHasThisSnapshot()
{
    hasSnapshot(aText("s", "on"),
                "03" // both set
                "00 00 00 02 00 73" // id "s"
                "00 00 00 04 00 6F 00 6E"); // value "on"
}

void ValueStringTest::littleEndianStreamsReverseNumbersAndCharacters()
{
    hasRecord(aText("s", "on"),
              "1B 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 73"
              "BA 51 FF CE 06 00 00 00 02 00 00 00 6F 6E",
              littleEndian);
    hasSnapshot(aText("s", "on"), "03 02 00 00 00 73 00 04 00 00 00 6F 00 6E 00", littleEndian);
}

void ValueStringTest::unsetTextsAreWrittenEmptyInXmlAndNullInBinary()
{
    const auto object = withoutValidation<ValueString>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueString id=\"\" value=\"\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 18 2B 26 2D C9 00 00 00 04 FF FF FF FF CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF FF FF FF FF"));
}

void ValueStringTest::anEmptyElementIsAnEmptyValue()
{
    for (const char *element : {"<ValueString><value></value></ValueString>", "<ValueString><value/></ValueString>",
                                "<ValueString value=\"\"/>"}) {
        ValueString object;
        readXml(object, QString::fromLatin1(element)); // validating, which null would not survive
        QVERIFY(object.IsvalueSet());
        QCOMPARE(object.Getvalue(), QStringLiteral(""));
        QVERIFY(!object.Getvalue().isNull());
    }
}

void ValueStringTest::elementsAreReadLikeAttributes()
{
    ValueString object;
    readXml(object,
            QStringLiteral("<ValueString id=\"no\" value=\"no\"><other><value>no</value></other><value> on </value>"
                           "<id>s</id></ValueString>"));
    QVERIFY(object == aText("s", " on ")); // unchanged, including blanks
    readXml(object, QStringLiteral("<ValueString value=\" off \"/>"));
    QVERIFY(object == aText("s", " off "));
}

void ValueStringTest::aNullValueInARecordComesBackEmpty()
{
    ValueString object;
    readRecord(object, bytes("00 00 00 18 2B 26 2D C9 00 00 00 04 FF FF FF FF CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QVERIFY(object == aText("", ""));
    QVERIFY(!object.Getid().isNull());
    QVERIFY(!object.Getvalue().isNull());
}

void ValueStringTest::aSnapshotStoresTheValueWithoutTheSetter()
{
    ValueString object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("03 FF FF FF FF FF FF FF FF")); }), QString());
    QVERIFY(object.IsidSet());
    QVERIFY(object.IsvalueSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(object.Getvalue().isNull());
}

void ValueStringTest::anIdRecordIsReadByEveryClass()
{
    readsTheIdOfOtherClasses<ValueBoolean>();
    readsTheIdOfOtherClasses<ValueFloat>();
    readsTheIdOfOtherClasses<ValueInt>();
    readsTheIdOfOtherClasses<ValueInt64>();
    readsTheIdOfOtherClasses<ValueString>();
}

void ValueStringTest::theValueOfAnotherTypeIsSkipped()
{
    ValueString object;
    readRecord(object, recordOf(sample<ValueInt>("i", 7)));
    readRecord(object, recordOf(sample<ValueFloat>("f", 7.f)));
    readRecord(object, recordOf(sample<ValueInt64>("l", 7)));
    readRecord(object, recordOf(sample<ValueBoolean>("b", true)));
    QCOMPARE(object.Getid(), QStringLiteral("b"));
    QVERIFY(!object.IsvalueSet());
}

void ValueStringTest::wrongLengthThrowsLengthError()
{
    ValueString object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0C CE FF 51 BA 00 00 00 05 00 00 00 01 78")); }),
             QStringLiteral("BinaryParsingException: ValueString::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(object.Getvalue(), QStringLiteral("x"));
}

TEST_SUITE(ValueStringTest)
#include "tst_ValueString.moc"
