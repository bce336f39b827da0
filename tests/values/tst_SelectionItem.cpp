// SPDX-License-Identifier: MIT
#include "Selections.h"

using namespace JobXml;

namespace {

const char missingName[] = "OutOfRangeException: SelectionItem: Please set name properly.";
const char missingValue[] = "OutOfRangeException: SelectionItem: Please set value properly.";

} // namespace

class SelectionItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void everyMemberStoresAndResets();
    void aNullNameIsRefusedOnlyWhileValidating();
    void everyValueIsValidIncludingANullName();
    void checkNamesTheFirstMissingMember();
    void hasDataRequiresANameAndASetValue();
    void hasDataRequiresTheTextAndCheckItsFlagToo();
    void equalityComparesExactly();

    void aWholeOptionHasThisElement();
    void aWholeOptionHasThisRecord();
    void aWholeOptionHasThisSnapshot();
    void snapshotsFollowTheStreamsPrecisionAndRecordsDoNot();
    void littleEndianStreamsReverseTheNumber();

    void twoDecimalsAreWrittenAndNoMore();
    void aSnapshotKeepsTheNumberExactly();
    void unsetMembersAreWrittenAsTheirDefaults();
    void elementsAreReadLikeAttributes();
    void unknownRecordsAreSkipped();
    void textOfARecordThatIsNotANumberIsStoredAsZero();
    void aSnapshotStoresTheNameWithoutTheSetter();
    void wrongLengthThrowsLengthError();
};

void SelectionItemTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(SelectionItem::GetStaticObjectName(), QStringLiteral("SelectionItem"));
    QCOMPARE(SelectionItem().GetObjectName(), QStringLiteral("SelectionItem"));
    QCOMPARE(SelectionItem::GetId(), Q_INT64_C(0x228141C0));
}

void SelectionItemTest::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(SelectionItem, name), QStringLiteral("wide"), QString());
    storesAndResets(ACCESSORS(SelectionItem, value), 0.1, 0.0);
}

void SelectionItemTest::aNullNameIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(SelectionItem, name),
                QStringLiteral("OutOfRangeException: SelectionItem: Please set name properly (origin: Setter)."));
}

void SelectionItemTest::everyValueIsValidIncludingANullName()
{
    const SelectionItem object;
    QVERIFY(object.IsValidname(QString()));
    QVERIFY(object.IsValidname(QStringLiteral("wide")));
    for (const double number : {0.0, -1.0, 1e300, qQNaN(), -qInf()})
        QVERIFY(object.IsValidvalue(number));
}

void SelectionItemTest::checkNamesTheFirstMissingMember()
{
    SelectionItem object;
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingName));
    QCOMPARE(thrownBy([&] { object.Check(true); }), QLatin1String(missingName));
    object.Setname(QStringLiteral(""));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    object.Resetvalue();
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
    object.SetValidate(false);
    object.Setname(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingName));
}

void SelectionItemTest::hasDataRequiresANameAndASetValue()
{
    SelectionItem object;
    object.Setvalue(0);
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Setname(QStringLiteral(""));
    QVERIFY(object.HasData());
    object.Resetvalue();
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Resetname();
    QVERIFY(!object.AnyData());
}

void SelectionItemTest::hasDataRequiresTheTextAndCheckItsFlagToo()
{
    SelectionItem object;
    readSnapshot(object, bytes("02 00 00 00 02 00 61 00 00 00 00 00 00 00 00")); // a name that is there and not set
    QVERIFY(!object.IsnameSet());
    QVERIFY(object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingName));
}

void SelectionItemTest::equalityComparesExactly()
{
    QVERIFY(option("a", 0.1) == option("a", 0.1));
    QVERIFY(option("a", 0.1) != option("a", 0.1 + 1e-16));
    QVERIFY(option("a", 0.1) != option("b", 0.1));
    const SelectionItem nan = option("a", qQNaN());
    QVERIFY(nan != SelectionItem(nan));
    SelectionItem withoutValue;
    withoutValue.Setname(QStringLiteral("a"));
    QVERIFY(withoutValue != option("a", 0));
    QVERIFY(option("a", 0) != withoutValue);
    SelectionItem withoutName;
    withoutName.Setvalue(0);
    QVERIFY(withoutName != option("", 0));
}

void SelectionItemTest::aWholeOptionHasThisElement()
{
    hasElement(option("wide", 1.5), QStringLiteral("<SelectionItem name=\"wide\" value=\"1.50\"/>"));
}

void SelectionItemTest::aWholeOptionHasThisRecord()
{
    hasRecord(option("wide", 1.5),
              "00 00 00 20" // 32 bytes
              "CB 4C F6 45 00 00 00 08 00 00 00 04 77 69 64 65" // name "wide"
              "C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30"); // value "1.50"
}

void SelectionItemTest::aWholeOptionHasThisSnapshot()
{
    hasSnapshot(option("wide", 1.5),
                "03" // both set
                "00 00 00 08 00 77 00 69 00 64 00 65" // name "wide"
                "3F F8 00 00 00 00 00 00"); // value 1.5
}

void SelectionItemTest::snapshotsFollowTheStreamsPrecisionAndRecordsDoNot()
{
    hasSnapshot(option("a", 1.5), "03 00 00 00 02 00 61 3F C0 00 00", singlePrecision);
    hasRecord(option("a", 1.5),
              "00 00 00 1D CB 4C F6 45 00 00 00 05 00 00 00 01 61 C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30",
              singlePrecision);
}

void SelectionItemTest::littleEndianStreamsReverseTheNumber()
{
    hasSnapshot(option("a", 1.5), "03 02 00 00 00 61 00 00 00 00 00 00 00 F8 3F", littleEndian);
    hasRecord(option("a", 1.5),
              "1D 00 00 00 45 F6 4C CB 05 00 00 00 01 00 00 00 61 5E 66 4D C1 08 00 00 00 04 00 00 00 31 2E 35 30",
              littleEndian);
}

void SelectionItemTest::twoDecimalsAreWrittenAndNoMore()
{
    const SelectionItem object = option("a", 0.333);
    QCOMPARE(xmlOf(object), QStringLiteral("<SelectionItem name=\"a\" value=\"0.33\"/>"));
    SelectionItem fromXml;
    readXml(fromXml, QStringLiteral("<SelectionItem name=\"a\" value=\"0.33\"/>"));
    QVERIFY(fromXml.Getvalue() == 0.33);

    const char record[] = "00 00 00 1D"
                          "CB 4C F6 45 00 00 00 05 00 00 00 01 61"
                          "C1 4D 66 5E 00 00 00 08 00 00 00 04 30 2E 33 33"; // "0.33"
    QCOMPARE(hex(recordOf(object)), hex(record));
    SelectionItem fromRecord;
    readRecord(fromRecord, bytes(record));
    QVERIFY(fromRecord.Getvalue() == 0.33);

    SelectionItem exact;
    readRecord(exact, recordOf(option("a", 1.5)));
    QVERIFY(exact.Getvalue() == 1.5);
    QCOMPARE(xmlOf(option("a", 2)), QStringLiteral("<SelectionItem name=\"a\" value=\"2.00\"/>"));
}

void SelectionItemTest::aSnapshotKeepsTheNumberExactly()
{
    hasSnapshot(option("a", 0.333), "03 00 00 00 02 00 61 3F D5 4F DF 3B 64 5A 1D");
}

void SelectionItemTest::unsetMembersAreWrittenAsTheirDefaults()
{
    const auto object = withoutValidation<SelectionItem>();
    QCOMPARE(xmlOf(object), QStringLiteral("<SelectionItem name=\"\" value=\"0.00\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 1C CB 4C F6 45 00 00 00 04 FF FF FF FF C1 4D 66 5E 00 00 00 08 00 00 00 04 30 2E 30 30"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF 00 00 00 00 00 00 00 00"));
}

void SelectionItemTest::elementsAreReadLikeAttributes()
{
    SelectionItem object;
    readXml(object,
            QStringLiteral("<SelectionItem name=\"no\" value=\"1\" id=\"no\"><other><name>no</name></other>"
                           "<value>1.5</value><name>wide</name></SelectionItem>"));
    QVERIFY(object == option("wide", 1.5));
    readXml(object, QStringLiteral("<SelectionItem><name/><value>x</value></SelectionItem>"));
    QVERIFY(object == option("", 0)); // validating, which a null name would not survive
    QVERIFY(!object.Getname().isNull());
}

void SelectionItemTest::unknownRecordsAreSkipped()
{
    SelectionItem object;
    readRecord(object,
               bytes("00 00 00 27" // 39 bytes
                     "C1 4D 66 5E 00 00 00 07 00 00 00 03 31 2E 35" // value "1.5"
                     "CB 4C F6 46 00 00 00 03 FF FF FF" // unknown
                     "CB 4C F6 45 00 00 00 05 00 00 00 01 61"));
    QVERIFY(object == option("a", 1.5));
}

void SelectionItemTest::textOfARecordThatIsNotANumberIsStoredAsZero()
{
    for (const char *record :
         {"00 00 00 0C C1 4D 66 5E 00 00 00 04 FF FF FF FF", "00 00 00 0D C1 4D 66 5E 00 00 00 05 00 00 00 01 78"}) {
        SelectionItem object;
        readRecord(object, bytes(record));
        QVERIFY(object.IsvalueSet());
        QVERIFY(object.Getvalue() == 0);
    }
}

void SelectionItemTest::aSnapshotStoresTheNameWithoutTheSetter()
{
    SelectionItem object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("01 FF FF FF FF 3F F8 00 00 00 00 00 00")); }), QString());
    QVERIFY(object.IsnameSet());
    QVERIFY(object.Getname().isNull());
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getvalue(), 1.5);
}

void SelectionItemTest::wrongLengthThrowsLengthError()
{
    SelectionItem object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0C CB 4C F6 45 00 00 00 05 00 00 00 01 61")); }),
             QStringLiteral("BinaryParsingException: SelectionItem::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QCOMPARE(object.Getname(), QStringLiteral("a"));
}

TEST_SUITE(SelectionItemTest)
#include "tst_SelectionItem.moc"
