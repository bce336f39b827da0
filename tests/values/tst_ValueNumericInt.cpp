// SPDX-License-Identifier: MIT
#include "Ranged.h"

using namespace JobXml;

namespace {

ValueNumericInt full()
{
    return sample<ValueNumericInt>("g", 258, -1, 10, -2);
}

} // namespace

class ValueNumericIntTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void everyMemberStoresAndResets() { rangedMembersStoreAndReset<ValueNumericInt, int>(); }
    void aNullIdIsRefusedOnlyWhileValidating();
    void everythingIsValidANullIdIncluded() { everyRangedMemberIsValid<ValueNumericInt, int>(); }
    void checkNamesTheFirstMissingMember();
    void dataIsAnIdAndAllFourNumbers() { rangedDataIsAnIdAndAllFourNumbers<ValueNumericInt>(); }
    void aSenselessRangePassesAndSurvives() { ::aSenselessRangePassesAndSurvives<ValueNumericInt>(); }
    void equalityIsMemberByMember() { rangedEqualityIsMemberByMember<ValueNumericInt>(); }

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void littleEndianStreamsReverseTheNumbers();

    void minusOneIsEightBytesOfOnes();
    void sixtyFourBitsAreNarrowed();
    void unsetNumbersAreWrittenAsTheirDefaults();
    void elementsReadTheSameAsAttributes();
    void recordsKeepWhatTheyDoNotMention() { rangedRecordsKeepWhatTheyDoNotMention(full()); }
    void aSnapshotIsReadWithoutTheSetters();
    void lengthsMustAddUp();
};

void ValueNumericIntTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueNumericInt::GetStaticObjectName(), QStringLiteral("ValueNumericInt"));
    QCOMPARE(ValueNumericInt().GetObjectName(), QStringLiteral("ValueNumericInt"));
    QCOMPARE(ValueNumericInt::GetId(), Q_INT64_C(0xC55D0588));
}

void ValueNumericIntTest::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueNumericInt, id),
                QStringLiteral("OutOfRangeException: ValueNumericInt: Please set id properly (origin: Setter)."));
}

void ValueNumericIntTest::checkNamesTheFirstMissingMember()
{
    rangedCheckNamesTheFirstMissingMember<ValueNumericInt>(QStringLiteral("ValueNumericInt"));
}

void ValueNumericIntTest::aWholeValueHasThisElement()
{
    hasElement(full(), QStringLiteral("<ValueNumericInt id=\"g\" value=\"258\" min=\"-1\" max=\"10\" step=\"-2\"/>"));
}

void ValueNumericIntTest::aWholeValueHasThisRecord()
{
    hasRecord(full(),
              "00 00 00 4D" // 77 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
              "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 01 02" // value 258
              "68 56 54 A1 00 00 00 08 FF FF FF FF FF FF FF FF" // min -1
              "25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 0A" // max 10
              "43 76 6B 23 00 00 00 08 FF FF FF FF FF FF FF FE"); // step -2
}

void ValueNumericIntTest::aWholeValueHasThisSnapshot()
{
    hasSnapshot(full(),
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "00 00 00 00 00 00 01 02" // value 258
                "FF FF FF FF FF FF FF FF" // min -1
                "00 00 00 00 00 00 00 0A" // max 10
                "FF FF FF FF FF FF FF FE"); // step -2
}

void ValueNumericIntTest::littleEndianStreamsReverseTheNumbers()
{
    hasSnapshot(full(),
                "1F 02 00 00 00 67 00"
                "02 01 00 00 00 00 00 00"
                "FF FF FF FF FF FF FF FF"
                "0A 00 00 00 00 00 00 00"
                "FE FF FF FF FF FF FF FF",
                littleEndian);
    hasRecord(full(),
              "4D 00 00 00"
              "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
              "38 42 A4 0B 08 00 00 00 02 01 00 00 00 00 00 00"
              "A1 54 56 68 08 00 00 00 FF FF FF FF FF FF FF FF"
              "CC AF F6 25 08 00 00 00 0A 00 00 00 00 00 00 00"
              "23 6B 76 43 08 00 00 00 FE FF FF FF FF FF FF FF",
              littleEndian);
}

void ValueNumericIntTest::minusOneIsEightBytesOfOnes()
{
    auto object = withoutValidation<ValueNumericInt>();
    object.Setmin(-1);
    const QByteArray record = recordOf(object);
    QCOMPARE(hex(record.mid(4 + 12 + 16, 16)), hex("68 56 54 A1 00 00 00 08 FF FF FF FF FF FF FF FF"));
}

void ValueNumericIntTest::sixtyFourBitsAreNarrowed()
{
    ValueNumericInt object;
    readRecord(object, bytes("00 00 00 10 68 56 54 A1 00 00 00 08 00 00 00 01 00 00 00 05")); // 2^32 + 5
    QVERIFY(object.IsminSet());
    QCOMPARE(object.Getmin(), 5);
    readSnapshot(object,
                 bytes("00 FF FF FF FF"
                       "00 00 00 01 00 00 00 05 00 00 00 01 FF FF FF FF"
                       "00 00 00 00 80 00 00 00 FF FF FF FF 00 00 00 07"));
    QCOMPARE(object.Getvalue(), 5);
    QCOMPARE(object.Getmin(), -1);
    QCOMPARE(object.Getmax(), std::numeric_limits<int>::min());
    QCOMPARE(object.Getstep(), 7);
}

void ValueNumericIntTest::unsetNumbersAreWrittenAsTheirDefaults()
{
    const auto object = withoutValidation<ValueNumericInt>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueNumericInt id=\"\" value=\"0\" min=\"0\" max=\"0\" step=\"0\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 4C" // 76 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                 "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00"
                 "68 56 54 A1 00 00 00 08 00 00 00 00 00 00 00 00"
                 "25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 00"
                 "43 76 6B 23 00 00 00 08 00 00 00 00 00 00 00 00"));
    QCOMPARE(hex(snapshotOf(object)),
             hex("00 FF FF FF FF"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

void ValueNumericIntTest::elementsReadTheSameAsAttributes()
{
    rangedElementsReadTheSameAsAttributes<ValueNumericInt>(QStringLiteral("ValueNumericInt"));
}

void ValueNumericIntTest::aSnapshotIsReadWithoutTheSetters()
{
    ValueNumericInt object = full();
    const char snapshot[] = "09 FF FF FF FF" // id and max set, id null
                            "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02"
                            "00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 04";
    QCOMPARE(readSnapshot(object, bytes(snapshot)), 0);
    QVERIFY(object.IsidSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(!object.IsvalueSet());
    QVERIFY(!object.IsminSet());
    QVERIFY(object.IsmaxSet());
    QVERIFY(!object.IsstepSet());
    QCOMPARE(object.Getvalue(), 1);
    QCOMPARE(object.Getmin(), 2);
    QCOMPARE(object.Getmax(), 3);
    QCOMPARE(object.Getstep(), 4);
    QCOMPARE(hex(snapshotOf(object)), hex(snapshot));
}

void ValueNumericIntTest::lengthsMustAddUp()
{
    ValueNumericInt object;
    QCOMPARE(
        thrownBy([&] { readRecord(object, bytes("00 00 00 0C 25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 07")); }),
        QStringLiteral("BinaryParsingException: ValueNumericInt::SetBinary(...): Length error occurred during "
                       "processing of binary representation"));
    QCOMPARE(object.Getmax(), 7);
}

TEST_SUITE(ValueNumericIntTest)
#include "tst_ValueNumericInt.moc"
