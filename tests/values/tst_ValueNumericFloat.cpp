// SPDX-License-Identifier: MIT
#include "Ranged.h"

using namespace JobXml;

namespace {

ValueNumericFloat full()
{
    return sample<ValueNumericFloat>("g", -0.5f, -1.f, 3.f, 0.25f);
}

const char record[] = "00 00 00 4F" // 79 bytes
                      "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
                      "E3 DF 64 9D 00 00 00 09 00 00 00 05 2D 30 2E 35 30" // value "-0.50"
                      "65 5B A9 DC 00 00 00 09 00 00 00 05 2D 31 2E 30 30" // min "-1.00"
                      "81 16 6A CB 00 00 00 08 00 00 00 04 33 2E 30 30" // max "3.00"
                      "A8 D4 64 CF 00 00 00 08 00 00 00 04 30 2E 32 35"; // step "0.25"

} // namespace

class ValueNumericFloatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void everyMemberStoresAndResets() { rangedMembersStoreAndReset<ValueNumericFloat, float>(); }
    void aNullIdIsRefusedOnlyWhileValidating();
    void everythingIsValidANullIdIncluded() { everyRangedMemberIsValid<ValueNumericFloat, float>(); }
    void checkNamesTheFirstMissingMember();
    void dataIsAnIdAndAllFourNumbers() { rangedDataIsAnIdAndAllFourNumbers<ValueNumericFloat>(); }
    void aSenselessRangePassesAndSurvives() { ::aSenselessRangePassesAndSurvives<ValueNumericFloat>(); }
    void equalityIsMemberByMember() { rangedEqualityIsMemberByMember<ValueNumericFloat>(); }
    void numbersAreComparedExactlyAndNaNEqualsNothing();

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void snapshotsFollowTheStreamsPrecisionAndRecordsDoNot();
    void littleEndianStreamsReverseTheNumbers();

    void twoDecimalsAreWrittenAndNoMore();
    void unsetNumbersAreWrittenAsTheirDefaults();
    void elementsReadTheSameAsAttributes();
    void recordsKeepWhatTheyDoNotMention() { rangedRecordsKeepWhatTheyDoNotMention(full()); }
    void textOfARecordThatIsNoNumberIsStoredAsZero();
    void aSnapshotIsReadWithoutTheSetters();
    void lengthsMustAddUp();
};

void ValueNumericFloatTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueNumericFloat::GetStaticObjectName(), QStringLiteral("ValueNumericFloat"));
    QCOMPARE(ValueNumericFloat().GetObjectName(), QStringLiteral("ValueNumericFloat"));
    QCOMPARE(ValueNumericFloat::GetId(), Q_INT64_C(0x4BA90080));
}

void ValueNumericFloatTest::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueNumericFloat, id),
                QStringLiteral("OutOfRangeException: ValueNumericFloat: Please set id properly (origin: Setter)."));
}

void ValueNumericFloatTest::checkNamesTheFirstMissingMember()
{
    rangedCheckNamesTheFirstMissingMember<ValueNumericFloat>(QStringLiteral("ValueNumericFloat"));
}

void ValueNumericFloatTest::numbersAreComparedExactlyAndNaNEqualsNothing()
{
    ValueNumericFloat other = full();
    other.Setstep(0.25f + 1e-7f); // the same with two decimals
    QVERIFY(other != full());
    other.Setstep(float(qQNaN()));
    QVERIFY(other != ValueNumericFloat(other));
}

void ValueNumericFloatTest::aWholeValueHasThisElement()
{
    hasElement(full(),
               QStringLiteral("<ValueNumericFloat id=\"g\" value=\"-0.50\" min=\"-1.00\" max=\"3.00\" "
                              "step=\"0.25\"/>"));
}

void ValueNumericFloatTest::aWholeValueHasThisRecord()
{
    hasRecord(full(), record);
}

void ValueNumericFloatTest::aWholeValueHasThisSnapshot()
{
    hasSnapshot(full(),
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "BF E0 00 00 00 00 00 00" // value -0.5, as wide as a double
                "BF F0 00 00 00 00 00 00" // min -1
                "40 08 00 00 00 00 00 00" // max 3
                "3F D0 00 00 00 00 00 00"); // step 0.25
}

void ValueNumericFloatTest::snapshotsFollowTheStreamsPrecisionAndRecordsDoNot()
{
    hasSnapshot(full(),
                "1F 00 00 00 02 00 67"
                "BF 00 00 00" // value -0.5
                "BF 80 00 00" // min -1
                "40 40 00 00" // max 3
                "3E 80 00 00", // step 0.25
                singlePrecision);
    hasRecord(full(), record, singlePrecision);
}

void ValueNumericFloatTest::littleEndianStreamsReverseTheNumbers()
{
    hasSnapshot(full(),
                "1F 02 00 00 00 67 00"
                "00 00 00 00 00 00 E0 BF"
                "00 00 00 00 00 00 F0 BF"
                "00 00 00 00 00 00 08 40"
                "00 00 00 00 00 00 D0 3F",
                littleEndian);
    hasRecord(full(),
              "4F 00 00 00"
              "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
              "9D 64 DF E3 09 00 00 00 05 00 00 00 2D 30 2E 35 30"
              "DC A9 5B 65 09 00 00 00 05 00 00 00 2D 31 2E 30 30"
              "CB 6A 16 81 08 00 00 00 04 00 00 00 33 2E 30 30"
              "CF 64 D4 A8 08 00 00 00 04 00 00 00 30 2E 32 35",
              littleEndian);
}

void ValueNumericFloatTest::twoDecimalsAreWrittenAndNoMore()
{
    const auto object = sample<ValueNumericFloat>("g", 1.234f, 0.126f, 3.f, -0.5f);
    const auto element = QStringLiteral("<ValueNumericFloat id=\"g\" value=\"1.23\" min=\"0.13\" max=\"3.00\" "
                                        "step=\"-0.50\"/>");
    QCOMPARE(xmlOf(object), element);
    ValueNumericFloat fromXml;
    readXml(fromXml, element);
    QCOMPARE(fromXml.Getvalue(), 1.23f);
    ValueNumericFloat fromRecord;
    readRecord(fromRecord, recordOf(object));
    QCOMPARE(fromRecord.Getvalue(), 1.23f);
    QCOMPARE(fromRecord.Getmin(), 0.13f);
    QVERIFY(fromRecord == fromXml);

    ValueNumericFloat fromSnapshot;
    readSnapshot(fromSnapshot, snapshotOf(object));
    QVERIFY(fromSnapshot == object);
}

void ValueNumericFloatTest::unsetNumbersAreWrittenAsTheirDefaults()
{
    const auto object = withoutValidation<ValueNumericFloat>();
    QCOMPARE(xmlOf(object),
             QStringLiteral("<ValueNumericFloat id=\"\" value=\"0.00\" min=\"0.00\" max=\"0.00\" step=\"0.00\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 4C" // 76 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                 "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 30 30" // the numbers "0.00"
                 "65 5B A9 DC 00 00 00 08 00 00 00 04 30 2E 30 30"
                 "81 16 6A CB 00 00 00 08 00 00 00 04 30 2E 30 30"
                 "A8 D4 64 CF 00 00 00 08 00 00 00 04 30 2E 30 30"));
    QCOMPARE(hex(snapshotOf(object)),
             hex("00 FF FF FF FF"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

void ValueNumericFloatTest::elementsReadTheSameAsAttributes()
{
    rangedElementsReadTheSameAsAttributes<ValueNumericFloat>(QStringLiteral("ValueNumericFloat"));
}

void ValueNumericFloatTest::textOfARecordThatIsNoNumberIsStoredAsZero()
{
    ValueNumericFloat object = full();
    readRecord(object,
               bytes("00 00 00 2E" // 46 bytes
                     "65 5B A9 DC 00 00 00 09 00 00 00 05 31 32 61 62 63" // min "12abc"
                     "81 16 6A CB 00 00 00 04 FF FF FF FF" // max null
                     "A8 D4 64 CF 00 00 00 09 00 00 00 05 31 2E 31 32 35")); // step "1.125"
    QVERIFY(object.IsminSet());
    QCOMPARE(object.Getmin(), 0.f);
    QVERIFY(object.IsmaxSet());
    QCOMPARE(object.Getmax(), 0.f);
    QCOMPARE(object.Getstep(), 1.125f); // what is written with more decimals is read with them
    QCOMPARE(object.Getvalue(), -0.5f);
}

void ValueNumericFloatTest::aSnapshotIsReadWithoutTheSetters()
{
    ValueNumericFloat object = full();
    const char snapshot[] = "09 FF FF FF FF" // id and max set, id null
                            "3F F0 00 00 00 00 00 00 40 00 00 00 00 00 00 00"
                            "40 08 00 00 00 00 00 00 40 10 00 00 00 00 00 00";
    QCOMPARE(readSnapshot(object, bytes(snapshot)), 0);
    QVERIFY(object.IsidSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(!object.IsvalueSet());
    QVERIFY(!object.IsminSet());
    QVERIFY(object.IsmaxSet());
    QVERIFY(!object.IsstepSet());
    QCOMPARE(object.Getvalue(), 1.f);
    QCOMPARE(object.Getmin(), 2.f);
    QCOMPARE(object.Getmax(), 3.f);
    QCOMPARE(object.Getstep(), 4.f);
    QCOMPARE(hex(snapshotOf(object)), hex(snapshot));
}

void ValueNumericFloatTest::lengthsMustAddUp()
{
    ValueNumericFloat object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0E 81 16 6A CB 00 00 00 05 00 00 00 01 37")); }),
             QStringLiteral("BinaryParsingException: ValueNumericFloat::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(object.Getmax(), 7.f);
}

TEST_SUITE(ValueNumericFloatTest)
#include "tst_ValueNumericFloat.moc"
