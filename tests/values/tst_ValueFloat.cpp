// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

namespace {

const char idRefused[] = "OutOfRangeException: ValueFloat: Please set id properly (origin: Setter).";

} // namespace

class ValueFloatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void everyMemberStoresAndResets();
    void aNullIdIsRefusedOnlyWhileValidating();
    void onlyANullIdIsInvalid();
    void checkNamesTheFirstMissingMember();
    void dataIsAnIdAndASetValue();
    void equalityComparesExactly();

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void snapshotsFollowTheStreamsPrecisionAndRecordsDoNot();
    void littleEndianSnapshotsReverseTheNumber();

    void twoDecimalsAreWrittenAndNoMore();
    void twoAndAHalfIsWrittenWithTwoDecimals();
    void anUnsetValueIsWrittenAsItsDefault();
    void elementsReadTheSameAsAttributes();
    void aSnapshotKeepsTheNumberExactly();
    void lengthsMustAddUp();
};

void ValueFloatTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueFloat::GetStaticObjectName(), QStringLiteral("ValueFloat"));
    QCOMPARE(ValueFloat().GetObjectName(), QStringLiteral("ValueFloat"));
    QCOMPARE(ValueFloat::GetId(), Q_INT64_C(0x6440D555));
}

void ValueFloatTest::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueFloat, id), QStringLiteral("f"), QString());
    storesAndResets(ACCESSORS(ValueFloat, value), 2.5f, 0.f);
}

void ValueFloatTest::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueFloat, id), QLatin1String(idRefused));
}

void ValueFloatTest::onlyANullIdIsInvalid()
{
    const ValueFloat object;
    QVERIFY(!object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("")));
    for (const float number : {0.f, -1.f, 1e38f, float(qQNaN()), float(qInf())})
        QVERIFY(object.IsValidvalue(number));
}

void ValueFloatTest::checkNamesTheFirstMissingMember()
{
    ValueFloat object;
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueFloat: Please set id properly."));
    object.Setid(QStringLiteral("f"));
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueFloat: Please set value properly."));
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueFloatTest::dataIsAnIdAndASetValue()
{
    ValueFloat object;
    object.Setvalue(0);
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Setid(QStringLiteral("f"));
    QVERIFY(object.HasData());
    object.Resetvalue();
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
}

void ValueFloatTest::equalityComparesExactly()
{
    QVERIFY(sample<ValueFloat>("f", 0.1f) == sample<ValueFloat>("f", 0.1f));
    QVERIFY(sample<ValueFloat>("f", 0.1f) != sample<ValueFloat>("f", 0.1f + 1e-8f));
    QVERIFY(sample<ValueFloat>("f", 0.1f) != sample<ValueFloat>("g", 0.1f));
    QVERIFY(sample<ValueFloat>("f", 0.f) == sample<ValueFloat>("f", -0.f));
    const auto nan = sample<ValueFloat>("f", float(qQNaN()));
    QVERIFY(nan != ValueFloat(nan));
    ValueFloat withoutValue;
    withoutValue.Setid(QStringLiteral("f"));
    QVERIFY(withoutValue != sample<ValueFloat>("f", 0.f));
    QVERIFY(sample<ValueFloat>("f", 0.f) != withoutValue);
}

void ValueFloatTest::aWholeValueHasThisElement()
{
    hasElement(sample<ValueFloat>("f", 2.5f), QStringLiteral("<ValueFloat id=\"f\" value=\"2.50\"/>"));
}

void ValueFloatTest::aWholeValueHasThisRecord()
{
    hasRecord(sample<ValueFloat>("f", 2.5f),
              "00 00 00 1D" // 29 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 66" // id "f"
              "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30"); // value "2.50"
}

void ValueFloatTest::aWholeValueHasThisSnapshot()
{
    hasSnapshot(sample<ValueFloat>("f", 2.5f),
                "03" // both set
                "00 00 00 02 00 66" // id "f"
                "40 04 00 00 00 00 00 00"); // value 2.5, as wide as a double
}

void ValueFloatTest::snapshotsFollowTheStreamsPrecisionAndRecordsDoNot()
{
    hasSnapshot(sample<ValueFloat>("f", 2.5f), "03 00 00 00 02 00 66 40 20 00 00", singlePrecision);
    hasRecord(sample<ValueFloat>("f", 2.5f),
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 66"
              "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30",
              singlePrecision);
}

void ValueFloatTest::littleEndianSnapshotsReverseTheNumber()
{
    hasSnapshot(sample<ValueFloat>("f", 2.5f), "03 02 00 00 00 66 00 00 00 00 00 00 00 04 40", littleEndian);
    hasRecord(sample<ValueFloat>("f", 2.5f),
              "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 66"
              "9D 64 DF E3 08 00 00 00 04 00 00 00 32 2E 35 30",
              littleEndian);
}

void ValueFloatTest::twoDecimalsAreWrittenAndNoMore()
{
    const auto object = sample<ValueFloat>("f", 1.005f); // in binary a little less
    const auto element = QStringLiteral("<ValueFloat id=\"f\" value=\"1.00\"/>");
    QCOMPARE(xmlOf(object), element);
    ValueFloat read;
    readXml(read, element);
    QCOMPARE(read.Getvalue(), 1.f);

    const char record[] = "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 66"
                          "E3 DF 64 9D 00 00 00 08" // a payload of 8 bytes:
                          "00 00 00 04 31 2E 30 30"; // the text "1.00"
    QCOMPARE(hex(recordOf(object)), hex(record));
    ValueFloat readFromRecord;
    readRecord(readFromRecord, bytes(record));
    QCOMPARE(readFromRecord.Getvalue(), 1.f);
}

void ValueFloatTest::twoAndAHalfIsWrittenWithTwoDecimals()
{
    ValueFloat read;
    readXml(read, QStringLiteral("<ValueFloat id=\"f\" value=\"2.50\"/>"));
    QCOMPARE(read.Getvalue(), 2.5f);
    QCOMPARE(xmlOf(sample<ValueFloat>("f", 0.004f)), QStringLiteral("<ValueFloat id=\"f\" value=\"0.00\"/>"));
}

void ValueFloatTest::anUnsetValueIsWrittenAsItsDefault()
{
    const auto object = withoutValidation<ValueFloat>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueFloat id=\"\" value=\"0.00\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                 "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 30 30"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF 00 00 00 00 00 00 00 00"));
    ValueFloat read;
    QCOMPARE(readSnapshot(read, bytes("00 FF FF FF FF 3F F0 00 00 00 00 00 00")), 0); // unset, and there
    QVERIFY(!read.IsvalueSet());
    QCOMPARE(read.Getvalue(), 1.f);
}

void ValueFloatTest::elementsReadTheSameAsAttributes()
{
    ValueFloat object;
    readXml(object,
            QStringLiteral("<ValueFloat id=\"no\" value=\"1\"><other><value>2</value></other><value>2.5</value>"
                           "<id>f</id></ValueFloat>"));
    QVERIFY(object == sample<ValueFloat>("f", 2.5f));
    readXml(object, QStringLiteral("<ValueFloat><id/><value/></ValueFloat>"));
    QVERIFY(object == sample<ValueFloat>("", 0.f));
}

void ValueFloatTest::aSnapshotKeepsTheNumberExactly()
{
    hasSnapshot(sample<ValueFloat>("f", 1.005f), "03 00 00 00 02 00 66 3F F0 14 7A E0 00 00 00");
    hasSnapshot(sample<ValueFloat>("f", 1.005f), "03 00 00 00 02 00 66 3F 80 A3 D7", singlePrecision);
}

void ValueFloatTest::lengthsMustAddUp()
{
    ValueFloat object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 01 E3 DF 64 9D 00 00 00 05 00 00 00 01 37")); }),
             QStringLiteral("BinaryParsingException: ValueFloat::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(object.Getvalue(), 7.f);
}

TEST_SUITE(ValueFloatTest)
#include "tst_ValueFloat.moc"
