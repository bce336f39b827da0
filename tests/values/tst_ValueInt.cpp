// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

class ValueIntTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void everyMemberStoresAndResets();
    void aNullIdIsRefusedOnlyWhileValidating();
    void onlyANullIdIsInvalid();
    void checkNamesTheFirstMissingMember();
    void dataIsAnIdAndASetValue();
    void equalityComparesIdAndValue();

    void aWholeValueHasThisElement();
    void aWholeValueHasThisRecord();
    void aWholeValueHasThisSnapshot();
    void littleEndianStreamsReverseTheNumber();

    void extremesSurvive();
    void minusOneIsEightBytesOfOnes();
    void sixtyFourBitsAreNarrowed();
    void textThatIsNoNumberIsStoredAsZero();
    void anUnsetValueIsWrittenAsItsDefault();
    void elementsReadTheSameAsAttributes();
    void lengthsMustAddUp();
};

void ValueIntTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueInt::GetStaticObjectName(), QStringLiteral("ValueInt"));
    QCOMPARE(ValueInt().GetObjectName(), QStringLiteral("ValueInt"));
    QCOMPARE(ValueInt::GetId(), Q_INT64_C(0x278DA93B));
}

void ValueIntTest::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueInt, id), QStringLiteral("i"), QString());
    storesAndResets(ACCESSORS(ValueInt, value), -7, 0);
}

void ValueIntTest::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueInt, id),
                QStringLiteral("OutOfRangeException: ValueInt: Please set id properly (origin: Setter)."));
}

void ValueIntTest::onlyANullIdIsInvalid()
{
    const ValueInt object;
    QVERIFY(!object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("")));
    for (const int number : {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QVERIFY(object.IsValidvalue(number));
}

void ValueIntTest::checkNamesTheFirstMissingMember()
{
    ValueInt object;
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueInt: Please set id properly."));
    object.Setid(QStringLiteral("i"));
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueInt: Please set value properly."));
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueIntTest::dataIsAnIdAndASetValue()
{
    ValueInt object;
    object.Setvalue(0);
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Setid(QStringLiteral("i"));
    QVERIFY(object.HasData());
    object.Resetvalue();
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
}

void ValueIntTest::equalityComparesIdAndValue()
{
    QVERIFY(sample<ValueInt>("i", 1) == sample<ValueInt>("i", 1));
    QVERIFY(sample<ValueInt>("i", 1) != sample<ValueInt>("i", 2));
    QVERIFY(sample<ValueInt>("i", 1) != sample<ValueInt>("j", 1));
    ValueInt withoutValue;
    withoutValue.Setid(QStringLiteral("i"));
    QVERIFY(withoutValue != sample<ValueInt>("i", 0));
    QVERIFY(sample<ValueInt>("i", 0) != withoutValue);
}

void ValueIntTest::aWholeValueHasThisElement()
{
    hasElement(sample<ValueInt>("i", -20), QStringLiteral("<ValueInt id=\"i\" value=\"-20\"/>"));
}

void ValueIntTest::aWholeValueHasThisRecord()
{
    hasRecord(sample<ValueInt>("i", 258),
              "00 00 00 1D" // 29 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 69" // id "i"
              "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 01 02"); // value 258
}

void ValueIntTest::aWholeValueHasThisSnapshot()
{
    hasSnapshot(sample<ValueInt>("i", 258),
                "03" // both set
                "00 00 00 02 00 69" // id "i"
                "00 00 00 00 00 00 01 02"); // value 258
}

void ValueIntTest::littleEndianStreamsReverseTheNumber()
{
    hasRecord(sample<ValueInt>("i", 258),
              "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 69"
              "38 42 A4 0B 08 00 00 00 02 01 00 00 00 00 00 00",
              littleEndian);
    hasSnapshot(sample<ValueInt>("i", 258), "03 02 00 00 00 69 00 02 01 00 00 00 00 00 00", littleEndian);
}

void ValueIntTest::extremesSurvive()
{
    const auto least = sample<ValueInt>("i", std::numeric_limits<int>::min());
    hasElement(least, QStringLiteral("<ValueInt id=\"i\" value=\"-2147483648\"/>"));
    hasRecord(least,
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
              "0B A4 42 38 00 00 00 08 FF FF FF FF 80 00 00 00");
    hasSnapshot(least, "03 00 00 00 02 00 69 FF FF FF FF 80 00 00 00");

    const auto greatest = sample<ValueInt>("i", std::numeric_limits<int>::max());
    hasElement(greatest, QStringLiteral("<ValueInt id=\"i\" value=\"2147483647\"/>"));
    hasRecord(greatest,
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
              "0B A4 42 38 00 00 00 08 00 00 00 00 7F FF FF FF");
    hasSnapshot(greatest, "03 00 00 00 02 00 69 00 00 00 00 7F FF FF FF");
}

void ValueIntTest::minusOneIsEightBytesOfOnes()
{
    hasRecord(sample<ValueInt>("i", -1),
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
              "0B A4 42 38 00 00 00 08 FF FF FF FF FF FF FF FF");
    hasSnapshot(sample<ValueInt>("i", -1), "03 00 00 00 02 00 69 FF FF FF FF FF FF FF FF");
}

void ValueIntTest::sixtyFourBitsAreNarrowed()
{
    ValueInt object;
    readRecord(object, bytes("00 00 00 10 0B A4 42 38 00 00 00 08 00 00 00 01 00 00 00 05"));
    QVERIFY(object.IsvalueSet());
    QCOMPARE(object.Getvalue(), 5);
    readRecord(object, bytes("00 00 00 10 0B A4 42 38 00 00 00 08 00 00 00 00 FF FF FF FE"));
    QCOMPARE(object.Getvalue(), -2);
    readSnapshot(object, bytes("02 FF FF FF FF 00 00 00 01 00 00 00 05"));
    QCOMPARE(object.Getvalue(), 5);
}

void ValueIntTest::textThatIsNoNumberIsStoredAsZero()
{
    for (const char *element : {"<ValueInt value=\"12abc\"/>", "<ValueInt><value>12abc</value></ValueInt>"}) {
        ValueInt object;
        readXml(object, QString::fromLatin1(element));
        QVERIFY(object.IsvalueSet());
        QCOMPARE(object.Getvalue(), 0);
        object.Setvalue(12);
        readXml(object, QString::fromLatin1(element));
        QCOMPARE(object.Getvalue(), 0);
    }
}

void ValueIntTest::anUnsetValueIsWrittenAsItsDefault()
{
    const auto object = withoutValidation<ValueInt>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueInt id=\"\" value=\"0\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                 "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF 00 00 00 00 00 00 00 00"));
    ValueInt read;
    QCOMPARE(readSnapshot(read, bytes("00 FF FF FF FF 00 00 00 00 00 00 00 07")), 0); // unset, and there
    QVERIFY(!read.IsvalueSet());
    QCOMPARE(read.Getvalue(), 7);
}

void ValueIntTest::elementsReadTheSameAsAttributes()
{
    ValueInt object;
    readXml(object,
            QStringLiteral("<ValueInt id=\"no\" value=\"1\"><other><value>2</value></other><value>-20</value>"
                           "<id>i</id></ValueInt>"));
    QVERIFY(object == sample<ValueInt>("i", -20));
    readXml(object, QStringLiteral("<ValueInt><id/><value/></ValueInt>"));
    QVERIFY(object == sample<ValueInt>("", 0));
}

void ValueIntTest::lengthsMustAddUp()
{
    ValueInt object;
    QCOMPARE(
        thrownBy([&] { readRecord(object, bytes("00 00 00 0C 0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 07")); }),
        QStringLiteral("BinaryParsingException: ValueInt::SetBinary(...): Length error occurred during "
                       "processing of binary representation"));
    QCOMPARE(object.Getvalue(), 7);
    // Four bytes, as wide as an int, are not enough: the number is cut off and not stored.
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0C 0B A4 42 38 00 00 00 04 00 00 00 09")); }),
             QStringLiteral("BinaryParsingException: ValueInt::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(object.Getvalue(), 7);
}

TEST_SUITE(ValueIntTest)
#include "tst_ValueInt.moc"
