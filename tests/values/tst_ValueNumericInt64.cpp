// SPDX-License-Identifier: MIT
#include "Ranged.h"

using namespace JobXml;

namespace {

ValueNumericInt64 full()
{
    return sample<ValueNumericInt64, qint64>("g", 4294967296, -1, std::numeric_limits<qint64>::max(), -2);
}

} // namespace

class ValueNumericInt64Test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void everyMemberStoresAndResets() { rangedMembersStoreAndReset<ValueNumericInt64, qint64>(); }
    void aNullIdIsRefusedOnlyWhileValidating();
    void everythingIsValidANullIdIncluded() { everyRangedMemberIsValid<ValueNumericInt64, qint64>(); }
    void checkNamesTheFirstMissingMember();
    void dataIsAnIdAndAllFourNumbers() { rangedDataIsAnIdAndAllFourNumbers<ValueNumericInt64>(); }
    void aSenselessRangePassesAndSurvives() { ::aSenselessRangePassesAndSurvives<ValueNumericInt64>(); }
    void equalityIsMemberByMember() { rangedEqualityIsMemberByMember<ValueNumericInt64>(); }

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void littleEndianStreamsReverseTheNumbers();

    void unsetNumbersAreWrittenAsTheirDefaults();
    void elementsReadTheSameAsAttributes();
    void recordsKeepWhatTheyDoNotMention() { rangedRecordsKeepWhatTheyDoNotMention(full()); }
    void numbersOfOtherTypesAreSkipped();
    void aSnapshotIsReadWithoutTheSetters();
    void lengthsMustAddUp();
};

void ValueNumericInt64Test::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueNumericInt64::GetStaticObjectName(), QStringLiteral("ValueNumericInt64"));
    QCOMPARE(ValueNumericInt64().GetObjectName(), QStringLiteral("ValueNumericInt64"));
    QCOMPARE(ValueNumericInt64::GetId(), Q_INT64_C(0x044D7AEC));
}

void ValueNumericInt64Test::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueNumericInt64, id),
                QStringLiteral("OutOfRangeException: ValueNumericInt64: Please set id properly (origin: Setter)."));
}

void ValueNumericInt64Test::checkNamesTheFirstMissingMember()
{
    rangedCheckNamesTheFirstMissingMember<ValueNumericInt64>(QStringLiteral("ValueNumericInt64"));
}

void ValueNumericInt64Test::aWholeValueHasThisElement()
{
    hasElement(full(),
               QStringLiteral("<ValueNumericInt64 id=\"g\" value=\"4294967296\" min=\"-1\" "
                              "max=\"9223372036854775807\" step=\"-2\"/>"));
}

void ValueNumericInt64Test::aWholeValueHasThisRecord()
{
    hasRecord(full(),
              "00 00 00 4D" // 77 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
              "64 A0 3F 86 00 00 00 08 00 00 00 01 00 00 00 00" // value 2^32
              "6A 28 E4 6A 00 00 00 08 FF FF FF FF FF FF FF FF" // min -1
              "86 12 33 63 00 00 00 08 7F FF FF FF FF FF FF FF" // max 2^63 - 1
              "27 D3 4B 73 00 00 00 08 FF FF FF FF FF FF FF FE"); // step -2
}

void ValueNumericInt64Test::aWholeValueHasThisSnapshot()
{
    hasSnapshot(full(),
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "00 00 00 01 00 00 00 00" // value 2^32
                "FF FF FF FF FF FF FF FF" // min -1
                "7F FF FF FF FF FF FF FF" // max 2^63 - 1
                "FF FF FF FF FF FF FF FE"); // step -2
}

void ValueNumericInt64Test::littleEndianStreamsReverseTheNumbers()
{
    hasSnapshot(full(),
                "1F 02 00 00 00 67 00"
                "00 00 00 00 01 00 00 00"
                "FF FF FF FF FF FF FF FF"
                "FF FF FF FF FF FF FF 7F"
                "FE FF FF FF FF FF FF FF",
                littleEndian);
    hasRecord(full(),
              "4D 00 00 00"
              "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
              "86 3F A0 64 08 00 00 00 00 00 00 00 01 00 00 00"
              "6A E4 28 6A 08 00 00 00 FF FF FF FF FF FF FF FF"
              "63 33 12 86 08 00 00 00 FF FF FF FF FF FF FF 7F"
              "73 4B D3 27 08 00 00 00 FE FF FF FF FF FF FF FF",
              littleEndian);
}

void ValueNumericInt64Test::unsetNumbersAreWrittenAsTheirDefaults()
{
    const auto object = withoutValidation<ValueNumericInt64>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueNumericInt64 id=\"\" value=\"0\" min=\"0\" max=\"0\" step=\"0\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 4C" // 76 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                 "64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 00"
                 "6A 28 E4 6A 00 00 00 08 00 00 00 00 00 00 00 00"
                 "86 12 33 63 00 00 00 08 00 00 00 00 00 00 00 00"
                 "27 D3 4B 73 00 00 00 08 00 00 00 00 00 00 00 00"));
    QCOMPARE(hex(snapshotOf(object)),
             hex("00 FF FF FF FF"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

void ValueNumericInt64Test::elementsReadTheSameAsAttributes()
{
    rangedElementsReadTheSameAsAttributes<ValueNumericInt64>(QStringLiteral("ValueNumericInt64"));
}

void ValueNumericInt64Test::numbersOfOtherTypesAreSkipped()
{
    // Same names, other types, so other tags; only the id is common to all.
    auto object = full();
    readRecord(object, recordOf(sample<ValueNumericInt>("i", 1, 2, 3, 4)));
    readRecord(object, recordOf(sample<ValueNumericFloat>("f", 1.f, 2.f, 3.f, 4.f)));
    QCOMPARE(object.Getid(), QStringLiteral("f"));
    object.Setid(QStringLiteral("g"));
    QVERIFY(object == full());
}

void ValueNumericInt64Test::aSnapshotIsReadWithoutTheSetters()
{
    ValueNumericInt64 object = full();
    const char snapshot[] = "09 FF FF FF FF" // id and max set, id null
                            "00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 02"
                            "00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 04";
    QCOMPARE(readSnapshot(object, bytes(snapshot)), 0);
    QVERIFY(object.IsidSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(!object.IsvalueSet());
    QVERIFY(!object.IsminSet());
    QVERIFY(object.IsmaxSet());
    QVERIFY(!object.IsstepSet());
    QCOMPARE(object.Getvalue(), Q_INT64_C(4294967297));
    QCOMPARE(object.Getmin(), Q_INT64_C(2));
    QCOMPARE(object.Getmax(), Q_INT64_C(3));
    QCOMPARE(object.Getstep(), Q_INT64_C(4));
    QCOMPARE(hex(snapshotOf(object)), hex(snapshot));
}

void ValueNumericInt64Test::lengthsMustAddUp()
{
    ValueNumericInt64 object;
    QCOMPARE(
        thrownBy([&] { readRecord(object, bytes("00 00 00 0C 86 12 33 63 00 00 00 08 00 00 00 00 00 00 00 07")); }),
        QStringLiteral("BinaryParsingException: ValueNumericInt64::SetBinary(...): Length error occurred during "
                       "processing of binary representation"));
    QCOMPARE(object.Getmax(), Q_INT64_C(7));
}

TEST_SUITE(ValueNumericInt64Test)
#include "tst_ValueNumericInt64.moc"
