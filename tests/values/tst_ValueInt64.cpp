// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

class ValueInt64Test : public QObject
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
    void textThatIsNoNumberIsStoredAsZero();
    void anUnsetValueIsWrittenAsItsDefault();
    void elementsReadTheSameAsAttributes();
    void lengthsMustAddUp();
};

void ValueInt64Test::itHasItsNameAndIdentifier()
{
    QCOMPARE(ValueInt64::GetStaticObjectName(), QStringLiteral("ValueInt64"));
    QCOMPARE(ValueInt64().GetObjectName(), QStringLiteral("ValueInt64"));
    QCOMPARE(ValueInt64::GetId(), Q_INT64_C(0x4E82A0AA));
}

void ValueInt64Test::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueInt64, id), QStringLiteral("l"), QString());
    storesAndResets(ACCESSORS(ValueInt64, value), Q_INT64_C(5000000000), Q_INT64_C(0));
}

void ValueInt64Test::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueInt64, id),
                QStringLiteral("OutOfRangeException: ValueInt64: Please set id properly (origin: Setter)."));
}

void ValueInt64Test::onlyANullIdIsInvalid()
{
    const ValueInt64 object;
    QVERIFY(!object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("")));
    for (const qint64 number : {qint64(0), std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()})
        QVERIFY(object.IsValidvalue(number));
}

void ValueInt64Test::checkNamesTheFirstMissingMember()
{
    ValueInt64 object;
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueInt64: Please set id properly."));
    object.Setid(QStringLiteral("l"));
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueInt64: Please set value properly."));
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueInt64Test::dataIsAnIdAndASetValue()
{
    ValueInt64 object;
    object.Setvalue(0);
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Setid(QStringLiteral("l"));
    QVERIFY(object.HasData());
    object.Resetvalue();
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
}

void ValueInt64Test::equalityComparesIdAndValue()
{
    QVERIFY(sample<ValueInt64>("l", 1) == sample<ValueInt64>("l", 1));
    QVERIFY(sample<ValueInt64>("l", 1) != sample<ValueInt64>("l", 4294967297)); // not the low 32 bits alone
    QVERIFY(sample<ValueInt64>("l", 1) != sample<ValueInt64>("m", 1));
    ValueInt64 withoutValue;
    withoutValue.Setid(QStringLiteral("l"));
    QVERIFY(withoutValue != sample<ValueInt64>("l", 0));
    QVERIFY(sample<ValueInt64>("l", 0) != withoutValue);
}

void ValueInt64Test::aWholeValueHasThisElement()
{
    hasElement(sample<ValueInt64>("l", 5000000000), QStringLiteral("<ValueInt64 id=\"l\" value=\"5000000000\"/>"));
}

void ValueInt64Test::aWholeValueHasThisRecord()
{
    hasRecord(sample<ValueInt64>("l", 5000000000),
              "00 00 00 1D" // 29 bytes
              "2B 26 2D C9 00 00 00 05 00 00 00 01 6C" // id "l"
              "64 A0 3F 86 00 00 00 08 00 00 00 01 2A 05 F2 00"); // value 5000000000
}

void ValueInt64Test::aWholeValueHasThisSnapshot()
{
    hasSnapshot(sample<ValueInt64>("l", 5000000000),
                "03" // both set
                "00 00 00 02 00 6C" // id "l"
                "00 00 00 01 2A 05 F2 00"); // value 5000000000
}

void ValueInt64Test::littleEndianStreamsReverseTheNumber()
{
    hasRecord(sample<ValueInt64>("l", 5000000000),
              "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 6C"
              "86 3F A0 64 08 00 00 00 00 F2 05 2A 01 00 00 00",
              littleEndian);
    hasSnapshot(sample<ValueInt64>("l", 5000000000), "03 02 00 00 00 6C 00 00 F2 05 2A 01 00 00 00", littleEndian);
}

void ValueInt64Test::extremesSurvive()
{
    const auto least = sample<ValueInt64>("l", std::numeric_limits<qint64>::min());
    hasElement(least, QStringLiteral("<ValueInt64 id=\"l\" value=\"-9223372036854775808\"/>"));
    hasRecord(least,
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 6C"
              "64 A0 3F 86 00 00 00 08 80 00 00 00 00 00 00 00");
    hasSnapshot(least, "03 00 00 00 02 00 6C 80 00 00 00 00 00 00 00");

    const auto greatest = sample<ValueInt64>("l", std::numeric_limits<qint64>::max());
    hasElement(greatest, QStringLiteral("<ValueInt64 id=\"l\" value=\"9223372036854775807\"/>"));
    hasRecord(greatest,
              "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 6C"
              "64 A0 3F 86 00 00 00 08 7F FF FF FF FF FF FF FF");
    hasSnapshot(greatest, "03 00 00 00 02 00 6C 7F FF FF FF FF FF FF FF");
}

void ValueInt64Test::textThatIsNoNumberIsStoredAsZero()
{
    for (const char *element : {"<ValueInt64 value=\"12abc\"/>", "<ValueInt64><value>12abc</value></ValueInt64>"}) {
        ValueInt64 object;
        readXml(object, QString::fromLatin1(element));
        QVERIFY(object.IsvalueSet());
        QCOMPARE(object.Getvalue(), Q_INT64_C(0));
    }
}

void ValueInt64Test::anUnsetValueIsWrittenAsItsDefault()
{
    const auto object = withoutValidation<ValueInt64>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueInt64 id=\"\" value=\"0\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                 "64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 00"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF 00 00 00 00 00 00 00 00"));
    ValueInt64 read;
    QCOMPARE(readSnapshot(read, bytes("00 FF FF FF FF 00 00 00 00 00 00 00 07")), 0); // unset, and there
    QVERIFY(!read.IsvalueSet());
    QCOMPARE(read.Getvalue(), Q_INT64_C(7));
}

void ValueInt64Test::elementsReadTheSameAsAttributes()
{
    ValueInt64 object;
    readXml(object,
            QStringLiteral("<ValueInt64 id=\"no\" value=\"1\"><other><value>2</value></other>"
                           "<value>5000000000</value><id>l</id></ValueInt64>"));
    QVERIFY(object == sample<ValueInt64>("l", 5000000000));
    readXml(object, QStringLiteral("<ValueInt64><id/><value/></ValueInt64>"));
    QVERIFY(object == sample<ValueInt64>("", 0));
}

void ValueInt64Test::lengthsMustAddUp()
{
    ValueInt64 object;
    QCOMPARE(
        thrownBy([&] { readRecord(object, bytes("00 00 00 0C 64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 07")); }),
        QStringLiteral("BinaryParsingException: ValueInt64::SetBinary(...): Length error occurred during "
                       "processing of binary representation"));
    QCOMPARE(object.Getvalue(), Q_INT64_C(7));
}

TEST_SUITE(ValueInt64Test)
#include "tst_ValueInt64.moc"
