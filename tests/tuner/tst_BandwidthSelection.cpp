// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"

using namespace JobXml;

namespace {

const char missingName[] = "OutOfRangeException: BandwidthSelection: Please set Name properly.";
const char missingMaxBandwidth[] = "OutOfRangeException: BandwidthSelection: Please set MaxBandwidth properly.";

const char element[] = "<BandwidthSelection><Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth>"
                       "</BandwidthSelection>";

const char record[] = "00 00 00 26" // 38 bytes
                      "8C 9F BC A8 00 00 00 08 00 00 00 04 77 69 64 65" // Name "wide"
                      "A7 23 FF DA 00 00 00 0E" // MaxBandwidth
                      "00 00 00 0A 31 35 30 30 30 30 30 2E 30 30"; //   "1500000.00"

const char snapshot[] = "03" // both set
                        "00 00 00 08 00 77 00 69 00 64 00 65" // "wide"
                        "41 36 E3 60 00 00 00 00"; // 1500000 as a double

} // namespace

class BandwidthSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameIdentifierAndNoVersion();
    void theNameIsCheckedBeforeTheBandwidth();
    void theNameMustBeSetAsWellAsNotNull();
    void hasDataNeedsBothMembersAndAnyDataOneOfThem();
    void anEmptyNameIsAValueAndANullOneIsRefusedWhileValidating();
    void onlyANullNameIsInvalid();
    void resettingAMemberRestoresItsDefault();

    void aWholeSelectionHasThisElement();
    void aWholeSelectionHasThisRecord();
    void aWholeSelectionHasThisSnapshot();
    void anEmptySelectionIsWrittenWithBothMembers();
    void aBandwidthIsWrittenWithTwoDecimalsAndWithoutExponent_data();
    void aBandwidthIsWrittenWithTwoDecimalsAndWithoutExponent();
    void onlyASnapshotKeepsABandwidthExactly();

    void attributesAndUnknownElementsAreIgnored();
    void anEmptyNameElementIsAnEmptyName();
    void bandwidthThatIsNotANumberIsZeroAndSet();
    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void membersThatAreNotMentionedStay();
    void recordLengthsMustAddUp();
    void aSnapshotIsReadWithoutTheSetters();

    void bothMembersAffectEquality();
};

void BandwidthSelectionTest::itHasItsNameIdentifierAndNoVersion()
{
    QCOMPARE(BandwidthSelection::GetStaticObjectName(), QStringLiteral("BandwidthSelection"));
    QCOMPARE(BandwidthSelection().GetObjectName(), QStringLiteral("BandwidthSelection"));
    QCOMPARE(BandwidthSelection::GetId(), Q_INT64_C(0x09F7EAA9));
    QVERIFY(BandwidthSelection().GetVersion().isNull());
}

void BandwidthSelectionTest::theNameIsCheckedBeforeTheBandwidth()
{
    for (const bool validate : {true, false}) {
        BandwidthSelection selection;
        selection.SetValidate(validate);
        QCOMPARE(thrownBy([&] { selection.Check(); }), QString::fromLatin1(missingName));
        selection.SetName(QStringLiteral("wide"));
        QCOMPARE(thrownBy([&] { selection.Check(); }), QString::fromLatin1(missingMaxBandwidth));
        selection.SetMaxBandwidth(0);
        QCOMPARE(thrownBy([&] { selection.Check(); }), QString());
    }
}

void BandwidthSelectionTest::theNameMustBeSetAsWellAsNotNull()
{
    BandwidthSelection selection = aBandwidth();
    selection.SetValidate(false);
    selection.SetName(QString());
    QCOMPARE(thrownBy([&] { selection.Check(); }), QString::fromLatin1(missingName));
    // After reading this snapshot, there is a name whose flag is clear.
    readSnapshot(selection, bytes("02 00 00 00 02 00 61 00 00 00 00 00 00 00 00"));
    QCOMPARE(selection.GetName(), QStringLiteral("a"));
    QCOMPARE(thrownBy([&] { selection.Check(); }), QString::fromLatin1(missingName));
}

void BandwidthSelectionTest::hasDataNeedsBothMembersAndAnyDataOneOfThem()
{
    BandwidthSelection selection;
    QVERIFY(!selection.HasData() && !selection.AnyData());
    selection.SetName(QStringLiteral("wide"));
    QVERIFY(!selection.HasData() && selection.AnyData());
    selection.SetMaxBandwidth(0);
    QVERIFY(selection.HasData());
    selection.ResetName();
    QVERIFY(!selection.HasData() && selection.AnyData());
    selection.ResetMaxBandwidth();
    QVERIFY(!selection.AnyData());
}

void BandwidthSelectionTest::anEmptyNameIsAValueAndANullOneIsRefusedWhileValidating()
{
    BandwidthSelection selection;
    QCOMPARE(thrownBy([&] { selection.SetName(QString()); }),
             QStringLiteral("OutOfRangeException: BandwidthSelection: Please set Name properly (origin: Setter)."));
    QVERIFY(!selection.IsNameSet());
    selection.SetName(QStringLiteral(""));
    QVERIFY(selection.IsNameSet());
    selection.SetMaxBandwidth(1);
    QVERIFY(selection.HasData());
    QCOMPARE(thrownBy([&] { selection.Check(); }), QString());
    selection.SetValidate(false);
    selection.SetName(QString());
    QVERIFY(selection.IsNameSet());
    QVERIFY(!selection.HasData());
}

void BandwidthSelectionTest::onlyANullNameIsInvalid()
{
    const BandwidthSelection selection;
    QVERIFY(!selection.IsValidName(QString()));
    QVERIFY(selection.IsValidName(QStringLiteral("")));
    QVERIFY(selection.IsValidMaxBandwidth(-1));
    QVERIFY(selection.IsValidMaxBandwidth(qQNaN()));
}

void BandwidthSelectionTest::resettingAMemberRestoresItsDefault()
{
    BandwidthSelection selection = aBandwidth();
    selection.ResetName();
    QVERIFY(!selection.IsNameSet() && selection.GetName().isNull() && selection.GetDefaultName().isNull());
    selection.ResetMaxBandwidth();
    QVERIFY(!selection.IsMaxBandwidthSet());
    QCOMPARE(selection.GetMaxBandwidth(), 0.0);
    QCOMPARE(selection.GetDefaultMaxBandwidth(), 0.0);

    selection = aBandwidth();
    selection.ResetToDefault();
    QVERIFY(selection.IsInitialized() && !selection.AnyData());
}

void BandwidthSelectionTest::aWholeSelectionHasThisElement()
{
    QCOMPARE(xmlOf(aBandwidth()), QString::fromLatin1(element));
    BandwidthSelection read;
    readXml(read, QString::fromLatin1(element));
    QVERIFY(read == aBandwidth());
    QCOMPARE(xmlOf(read), QString::fromLatin1(element));
}

void BandwidthSelectionTest::aWholeSelectionHasThisRecord()
{
    QCOMPARE(hex(recordOf(aBandwidth())), hex(record));
    BandwidthSelection read;
    readRecord(read, bytes(record));
    QVERIFY(read == aBandwidth());
    QCOMPARE(hex(recordOf(read)), hex(record));
}

void BandwidthSelectionTest::aWholeSelectionHasThisSnapshot()
{
    QCOMPARE(hex(snapshotOf(aBandwidth())), hex(snapshot));
    BandwidthSelection read;
    QCOMPARE(readSnapshot(read, bytes(snapshot)), 0);
    QVERIFY(read == aBandwidth());
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void BandwidthSelectionTest::anEmptySelectionIsWrittenWithBothMembers()
{
    BandwidthSelection selection;
    selection.SetValidate(false);
    QCOMPARE(xmlOf(selection),
             QStringLiteral("<BandwidthSelection><Name></Name><MaxBandwidth>0.00</MaxBandwidth>"
                            "</BandwidthSelection>"));
    QCOMPARE(hex(recordOf(selection)),
             hex("00 00 00 1C" // 28 bytes
                 "8C 9F BC A8 00 00 00 04 FF FF FF FF" // Name, null
                 "A7 23 FF DA 00 00 00 08 00 00 00 04 30 2E 30 30")); // MaxBandwidth "0.00"
    QCOMPARE(hex(snapshotOf(selection)), hex("00 FF FF FF FF 00 00 00 00 00 00 00 00"));
}

void BandwidthSelectionTest::aBandwidthIsWrittenWithTwoDecimalsAndWithoutExponent_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("2.5") << 2.5 << QStringLiteral("2.50");
    QTest::newRow("1.234") << 1.234 << QStringLiteral("1.23");
    QTest::newRow("-0.126") << -0.126 << QStringLiteral("-0.13");
    QTest::newRow("1e15") << 1e15 << QStringLiteral("1000000000000000.00");
    QTest::newRow("1e-9") << 1e-9 << QStringLiteral("0.00");
}

void BandwidthSelectionTest::aBandwidthIsWrittenWithTwoDecimalsAndWithoutExponent()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(xmlOf(aBandwidth(value)),
             QStringLiteral("<BandwidthSelection><Name>wide</Name><MaxBandwidth>%1</MaxBandwidth>"
                            "</BandwidthSelection>")
                 .arg(text));
    QVERIFY(recordOf(aBandwidth(value)).endsWith(text.toLatin1()));
}

void BandwidthSelectionTest::onlyASnapshotKeepsABandwidthExactly()
{
    const BandwidthSelection exact = aBandwidth(1.234);
    BandwidthSelection fromXml;
    readXml(fromXml, xmlOf(exact));
    QCOMPARE(fromXml.GetMaxBandwidth(), 1.23);
    BandwidthSelection fromRecord;
    readRecord(fromRecord, recordOf(exact));
    QCOMPARE(fromRecord.GetMaxBandwidth(), 1.23);
    BandwidthSelection fromSnapshot;
    readSnapshot(fromSnapshot, snapshotOf(exact));
    QVERIFY(fromSnapshot == exact);
    QVERIFY(fromRecord != exact);
}

void BandwidthSelectionTest::attributesAndUnknownElementsAreIgnored()
{
    BandwidthSelection selection;
    readXml(selection,
            QStringLiteral("<BandwidthSelection Name=\"no\" MaxBandwidth=\"9\" Version=\"0.1\">"
                           "<Unknown><Name>no</Name></Unknown><name>no</name><Name>wide</Name>"
                           "<MaxBandwidth>1500000</MaxBandwidth></BandwidthSelection>"));
    QVERIFY(selection == aBandwidth());

    BandwidthSelection untouched;
    readXml(untouched, QStringLiteral("<BandwidthSelection Name=\"no\" MaxBandwidth=\"9\"/>"));
    QVERIFY(!untouched.AnyData());
}

void BandwidthSelectionTest::anEmptyNameElementIsAnEmptyName()
{
    BandwidthSelection selection;
    readXml(selection, QStringLiteral("<BandwidthSelection><Name/></BandwidthSelection>"));
    QVERIFY(selection.IsNameSet());
    QVERIFY(selection.GetName().isEmpty() && !selection.GetName().isNull());
}

void BandwidthSelectionTest::bandwidthThatIsNotANumberIsZeroAndSet()
{
    BandwidthSelection fromXml = aBandwidth();
    readXml(fromXml, QStringLiteral("<BandwidthSelection><MaxBandwidth>12abc</MaxBandwidth></BandwidthSelection>"));
    QVERIFY(fromXml.IsMaxBandwidthSet());
    QCOMPARE(fromXml.GetMaxBandwidth(), 0.0);

    BandwidthSelection fromRecord = aBandwidth();
    readRecord(fromRecord, bytes("00 00 00 0E A7 23 FF DA 00 00 00 06 00 00 00 02 31 78")); // "1x"
    QVERIFY(fromRecord.IsMaxBandwidthSet());
    QCOMPARE(fromRecord.GetMaxBandwidth(), 0.0);
}

void BandwidthSelectionTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    BandwidthSelection selection;
    readRecord(selection,
               bytes("00 00 00 28" // 40 bytes
                     "A7 23 FF DA 00 00 00 07 00 00 00 03 31 65 33" // MaxBandwidth "1e3"
                     "12 34 56 78 00 00 00 01 FF" // an unknown record
                     "8C 9F BC A8 00 00 00 08 00 00 00 04 77 69 64 65")); // Name "wide"
    QVERIFY(selection == aBandwidth(1000));
}

void BandwidthSelectionTest::membersThatAreNotMentionedStay()
{
    BandwidthSelection selection = aBandwidth();
    readXml(selection, QStringLiteral("<BandwidthSelection><Name>x</Name></BandwidthSelection>"));
    QCOMPARE(selection.GetName(), QStringLiteral("x"));
    QCOMPARE(selection.GetMaxBandwidth(), 1500000.0);
    readRecord(selection, bytes("00 00 00 0D 8C 9F BC A8 00 00 00 05 00 00 00 01 79"));
    QCOMPARE(selection.GetName(), QStringLiteral("y"));
    QVERIFY(selection.IsMaxBandwidthSet());
}

void BandwidthSelectionTest::recordLengthsMustAddUp()
{
    for (const char *wrong : {"FF FF FF FF", "00 00 00 11 8C 9F BC A8 00 00 00 05 00 00 00 01 79",
                              "00 00 00 0C 8C 9F BC A8 00 00 00 05 00 00 00 01 79"}) {
        BandwidthSelection selection;
        QCOMPARE(thrownBy([&] { readRecord(selection, bytes(wrong)); }),
                 QStringLiteral("BinaryParsingException: BandwidthSelection::SetBinary(...): Length error occurred "
                                "during processing of binary representation"));
    }
}

void BandwidthSelectionTest::aSnapshotIsReadWithoutTheSetters()
{
    BandwidthSelection selection;
    QCOMPARE(thrownBy([&] { QCOMPARE(readSnapshot(selection, bytes("01 FF FF FF FF 3F F0 00 00 00 00 00 00")), 0); }),
             QString());
    QVERIFY(selection.IsNameSet() && selection.GetName().isNull());
    QVERIFY(!selection.IsMaxBandwidthSet());
    QCOMPARE(selection.GetMaxBandwidth(), 1.0); // the value is read, but the flag is clear
}

void BandwidthSelectionTest::bothMembersAffectEquality()
{
    QVERIFY(aBandwidth() == aBandwidth());
    QVERIFY(aBandwidth() != aBandwidth(1));
    BandwidthSelection other = aBandwidth();
    other.SetName(QStringLiteral("x"));
    QVERIFY(other != aBandwidth());
    BandwidthSelection zero;
    zero.SetMaxBandwidth(0);
    QVERIFY(zero != BandwidthSelection());
    QVERIFY(BandwidthSelection() != zero);
    QVERIFY(BandwidthSelection() == BandwidthSelection());
}

TEST_SUITE(BandwidthSelectionTest)
#include "tst_BandwidthSelection.moc"
