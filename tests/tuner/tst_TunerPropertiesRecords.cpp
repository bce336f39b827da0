// SPDX-License-Identifier: MIT
#include <QtTest>

#include "ExceptionText.h"
#include "WholeDocument.h"

using namespace JobXml;
using namespace TunerDocuments;

using Type = TunerProperties::type;

namespace {

const char version[] = "CC FE DF A1 00 00 00 0A 00 00 00 06 00 31 00 2E 00 31"; // "1.1"; 18 bytes
const char receiver[] = "A1 F0 EE 2D 00 00 00 0C 00 00 00 08 52 65 63 65 69 76 65 72"; // type; 20 bytes
const char baseResource[] = "E0 CF AE 8E 00 00 00 06 00 00 00 02 52 58"; // "RX"; 14 bytes

// Prefixed with its length; 42 bytes.
const char bandwidth[] = "00 00 00 26"
                         "8C 9F BC A8 00 00 00 08 00 00 00 04 77 69 64 65" // Name "wide"
                         "A7 23 FF DA 00 00 00 0E" // MaxBandwidth
                         "00 00 00 0A 31 35 30 30 30 30 30 2E 30 30"; //   "1500000.00"

// Prefixed with its length; 137 bytes.
const char component[] = "00 00 00 85"
                         "0B AD 20 53 00 00 00 0A 00 00 00 06 46 69 6C 74 65 72" // type "Filter"
                         "CB 4C F6 45 00 00 00 07 00 00 00 03 50 72 65" // name "Pre"
                         "44 E0 98 11 00 00 00 01 00" // optional false
                         "C5 E5 39 36 00 00 00 53 00 00 00 01" // nodes: one
                         "00 00 00 4B" //   75 bytes
                         "2B 26 2D C9 00 00 00 09 00 00 00 05 6E 6F 64 65 30" //   id "node0"
                         "4F 71 13 1F 00 00 00 32 00 00 00 01" //   values: one
                         "00 00 00 2A 4A CA 65 14 00 00 00 22" //     a ValueInt
                         "2B 26 2D C9 00 00 00 0A 00 00 00 06 6E 75 6D 62 65 72" //     id "number"
                         "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00"; //     value 0

const char oneComponent[] = "66 BA 8E 61 00 00 00 8D 00 00 00 01"; // followed by the component
const char noComponent[] = "66 BA 8E 61 00 00 00 04 00 00 00 00";
const char componentNotWritten[] = "66 BA 8E 61 00 00 00 04 00 00 00 01"; // counted, but not written

QByteArray wholeRecord()
{
    return joined("00 00 01 86", // 390 bytes
                  version, //
                  "CB 4C F6 45 00 00 00 05 00 00 00 01 54", // name "T"
                  receiver, baseResource, //
                  "6A DA F7 A6 00 00 00 07 00 00 00 03 41 3B 42", // connectableResources "A;B"
                  "A5 9D 7D 84 00 00 00 08 FF FF FF FF FF FF FF FE", // quantity -2
                  "0B EE 90 9A 00 00 00 05 00 00 00 01 50", // parentBaseResource "P"
                  "64 D0 8C 29 00 00 00 01 01", // hwProcessing true
                  "2A 68 BE F4 00 00 00 24", // StartupModes: 36 bytes
                  "62 7B 74 CE 00 00 00 1C 00 00 00 02", //   modes: two
                  "00 00 00 08 00 00 00 04 53 63 61 6E", //     "Scan"
                  "00 00 00 08 00 00 00 04 53 74 6F 70", //     "Stop"
                  "C2 48 3B A3 00 00 00 2E 00 00 00 01", bandwidth, // BandwidthSelection: one
                  "C8 B6 72 67 00 00 00 08 00 00 00 00 00 00 00 FA", // MaxFFPDelay 250
                  "C8 2D 81 E1 00 00 00 01 00", // HRPANSupported false
                  oneComponent, component);
}

/// A record that contains these bytes.
template <class... HexTexts>
QByteArray framed(const HexTexts *...members)
{
    const QByteArray content = joined(members...);
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    stream << qint32(content.size());
    return record + content;
}

} // namespace

/// A document as a tagged record.
class TunerPropertiesRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeDocumentHasThisRecord();
    void anEmptyListOfBandwidthsLeavesNoRecord();
    void withoutValidationAnEmptyDocumentIsWritten();
    void aDocumentWithoutComponentsWritesNothingWhileValidating();
    void aMissingMemberIsReportedBeforeAnythingIsWritten();
    void bandwidthsAreWrittenThoughTheListIsNotSet();
    void componentsOfAListThatIsNotSetAreCountedButNotWritten();
    void aComponentWithoutDataIsCountedButNotWritten();
    void startupModesWithoutModeAreWrittenOnlyWithoutValidation();

    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void negativeQuantityIsWrittenAsEightBytes();
    void aQuantityIsCutToItsLowerHalf();
    void delayIsWrittenWithAllItsBits();
    void anUnknownTypeIsRefusedOnlyWhileValidating();
    void nullTextsAreReadAsEmpty();
    void itemsAndModesJoinThosePresent();
    void unmentionedMembersStay();
    void incompleteItemsAreRefusedOnlyWhileValidating();
    void recordLengthsMustAddUp();
    void aNestedRecordFailsWithItsOwnName();
};

void TunerPropertiesRecordsTest::aWholeDocumentHasThisRecord()
{
    QCOMPARE(hex(recordOf(wholeDocument())), hex(wholeRecord()));
    TunerProperties read;
    readRecord(read, wholeRecord());
    QVERIFY(read == wholeDocument());
    QCOMPARE(hex(recordOf(read)), hex(wholeRecord()));
}

void TunerPropertiesRecordsTest::anEmptyListOfBandwidthsLeavesNoRecord()
{
    const QByteArray minimal = joined("00 00 00 C9", // 201 bytes
                                      version, receiver, baseResource, oneComponent, component);
    TunerProperties document = minimalDocument();
    QCOMPARE(hex(recordOf(document)), hex(minimal));
    document.SetBandwidthSelection({});
    QVERIFY(document.IsBandwidthSelectionSet());
    QCOMPARE(hex(recordOf(document)), hex(minimal));
}

void TunerPropertiesRecordsTest::withoutValidationAnEmptyDocumentIsWritten()
{
    QCOMPARE(hex(recordOf(withoutValidation())),
             hex(joined("00 00 00 36", // 54 bytes
                        version, //
                        "A1 F0 EE 2D 00 00 00 04 FF FF FF FF", // type, without a name
                        "E0 CF AE 8E 00 00 00 04 FF FF FF FF", // baseresource, null
                        noComponent)));
}

void TunerPropertiesRecordsTest::aDocumentWithoutComponentsWritesNothingWhileValidating()
{
    TunerProperties document = minimalDocument();
    document.SetComponent({});
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QVERIFY(!document.GetBinary(stream, 1, true));
    QCOMPARE(record, QByteArray());
    document.SetValidate(false);
    QVERIFY(document.GetBinary(stream, 1, true));
    QCOMPARE(hex(record),
             hex(joined("00 00 00 01 00 00 00 40", // the leading word; 64 bytes
                        version, receiver, baseResource, noComponent)));
}

void TunerPropertiesRecordsTest::aMissingMemberIsReportedBeforeAnythingIsWritten()
{
    TunerProperties document = minimalDocument();
    document.Resettype();
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QCOMPARE(thrownBy([&] { return document.GetBinary(stream, 1, true); }),
             QStringLiteral("OutOfRangeException: TunerProperties: Please set type properly."));
    QCOMPARE(record, QByteArray());
}

void TunerPropertiesRecordsTest::bandwidthsAreWrittenThoughTheListIsNotSet()
{
    for (const bool validate : {true, false}) {
        TunerProperties document = withUnsetBandwidths();
        document.SetValidate(validate);
        QVERIFY(!document.IsBandwidthSelectionSet());
        QCOMPARE(hex(recordOf(document)),
                 hex(joined("00 00 00 FF", // 255 bytes
                            version, receiver, baseResource, //
                            "C2 48 3B A3 00 00 00 2E 00 00 00 01", bandwidth, // BandwidthSelection: one
                            oneComponent, component)));
    }
    QCOMPARE(thrownBy([&] { recordOf(withUnsetBandwidths(BandwidthSelection())); }),
             QStringLiteral("OutOfRangeException: BandwidthSelection: Please set Name properly."));
}

void TunerPropertiesRecordsTest::componentsOfAListThatIsNotSetAreCountedButNotWritten()
{
    TunerProperties document = withUnsetComponents();
    document.SetValidate(false);
    QCOMPARE(hex(recordOf(document)), hex(joined("00 00 00 40", version, receiver, baseResource, componentNotWritten)));
}

void TunerPropertiesRecordsTest::aComponentWithoutDataIsCountedButNotWritten()
{
    TunerProperties document = minimalDocument();
    document.SetComponent({componentWithEmptyList()});
    QCOMPARE(hex(recordOf(document)), hex(joined("00 00 00 40", version, receiver, baseResource, componentNotWritten)));
}

void TunerPropertiesRecordsTest::startupModesWithoutModeAreWrittenOnlyWithoutValidation()
{
    TunerProperties document = minimalDocument();
    document.GetStartupModes().SetStartupMode({});
    QCOMPARE(hex(recordOf(document)), hex(recordOf(minimalDocument())));

    TunerProperties lenient = withoutValidation();
    lenient.Settype(Type::Receiver);
    lenient.Setbaseresource(QStringLiteral("RX"));
    lenient.GetStartupModes();
    QCOMPARE(hex(recordOf(lenient)),
             hex(joined("00 00 00 54", // 84 bytes
                        version, receiver, baseResource, //
                        "2A 68 BE F4 00 00 00 0C 62 7B 74 CE 00 00 00 04 00 00 00 00", // StartupModes: none
                        noComponent)));
}

void TunerPropertiesRecordsTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    TunerProperties document;
    readRecord(document,
               framed(oneComponent, component, //
                      "12 34 56 78 00 00 00 03 01 02 03", // an unknown record
                      "C8 2D 81 E1 00 00 00 01 01", // HRPANSupported true
                      "64 D0 8C 29 00 00 00 01 00", // hwProcessing false
                      baseResource, receiver, version));
    QVERIFY(document.GetHRPANSupported());
    QVERIFY(document.IshwProcessingSet() && !document.GethwProcessing());
    document.ResetHRPANSupported();
    document.ResethwProcessing();
    QVERIFY(document == minimalDocument());
}

void TunerPropertiesRecordsTest::negativeQuantityIsWrittenAsEightBytes()
{
    TunerProperties document = withoutValidation();
    document.Setquantity(-2);
    const QByteArray record = joined("00 00 00 46", // 70 bytes
                                     version, //
                                     "A1 F0 EE 2D 00 00 00 04 FF FF FF FF", // type, without a name
                                     "E0 CF AE 8E 00 00 00 04 FF FF FF FF", // baseresource, null
                                     "A5 9D 7D 84 00 00 00 08 FF FF FF FF FF FF FF FE", // quantity -2
                                     noComponent);
    QCOMPARE(hex(recordOf(document)), hex(record));
    TunerProperties read = withoutValidation();
    readRecord(read, record);
    QCOMPARE(read.Getquantity(), -2);
}

void TunerPropertiesRecordsTest::aQuantityIsCutToItsLowerHalf()
{
    TunerProperties document;
    readRecord(document, framed("A5 9D 7D 84 00 00 00 08 00 00 00 01 00 00 00 05"));
    QVERIFY(document.IsquantitySet());
    QCOMPARE(document.Getquantity(), 5);
}

void TunerPropertiesRecordsTest::delayIsWrittenWithAllItsBits()
{
    TunerProperties document = minimalDocument();
    document.SetMaxFFPDelay(Q_UINT64_C(18446744073709551614));
    QVERIFY(hex(recordOf(document)).contains(hex("C8 B6 72 67 00 00 00 08 FF FF FF FF FF FF FF FE")));
    TunerProperties read;
    readRecord(read, recordOf(document));
    QCOMPARE(read.GetMaxFFPDelay(), Q_UINT64_C(18446744073709551614));
}

void TunerPropertiesRecordsTest::anUnknownTypeIsRefusedOnlyWhileValidating()
{
    const QByteArray lowerCase = framed("A1 F0 EE 2D 00 00 00 07 00 00 00 03 6D 63 70"); // "mcp"
    TunerProperties document;
    QCOMPARE(thrownBy([&] { readRecord(document, lowerCase); }),
             QStringLiteral("OutOfRangeException: enum is not valid (classname=TunerProperties,membername=m_type)"));
    QVERIFY(!document.IstypeSet());
    document.SetValidate(false);
    readRecord(document, lowerCase);
    QVERIFY(document.IstypeSet());
    QCOMPARE(document.Gettype(), Type(-1));
}

void TunerPropertiesRecordsTest::nullTextsAreReadAsEmpty()
{
    TunerProperties document;
    QCOMPARE(thrownBy([&] {
                 readRecord(document,
                            framed("CB 4C F6 45 00 00 00 04 FF FF FF FF"
                                   "E0 CF AE 8E 00 00 00 04 FF FF FF FF"
                                   "6A DA F7 A6 00 00 00 04 FF FF FF FF"
                                   "0B EE 90 9A 00 00 00 04 FF FF FF FF"));
             }),
             QString());
    for (const QString &text : {document.Getname(), document.Getbaseresource(), document.GetconnectableResources(),
                                document.GetparentBaseResource()})
        QVERIFY(text.isEmpty() && !text.isNull());
}

void TunerPropertiesRecordsTest::itemsAndModesJoinThosePresent()
{
    TunerProperties document = wholeDocument();
    readRecord(document, wholeRecord());
    QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode().size(), 4);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 2);
    QCOMPARE(std::as_const(document).GetComponent().size(), 2);
}

void TunerPropertiesRecordsTest::unmentionedMembersStay()
{
    TunerProperties document = wholeDocument();
    readRecord(document, bytes("00 00 00 00"));
    QVERIFY(document == wholeDocument());
    readRecord(document, framed("CB 4C F6 45 00 00 00 05 00 00 00 01 55"));
    QCOMPARE(document.Getname(), QStringLiteral("U"));
    document.Setname(QStringLiteral("T"));
    QVERIFY(document == wholeDocument());
}

void TunerPropertiesRecordsTest::incompleteItemsAreRefusedOnlyWhileValidating()
{
    const QByteArray emptyBandwidth = framed("C2 48 3B A3 00 00 00 08 00 00 00 01 00 00 00 00");
    const QByteArray emptyComponent = framed("66 BA 8E 61 00 00 00 08 00 00 00 01 00 00 00 00");
    TunerProperties document;
    QCOMPARE(thrownBy([&] { readRecord(document, emptyBandwidth); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item BandwidthSelection."));
    QCOMPARE(thrownBy([&] { readRecord(document, emptyComponent); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item Component."));
    QVERIFY(!document.AnyData());
    document.SetValidate(false);
    readRecord(document, emptyBandwidth);
    readRecord(document, emptyComponent);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 1);
    QCOMPARE(std::as_const(document).GetComponent().size(), 1);
}

void TunerPropertiesRecordsTest::recordLengthsMustAddUp()
{
    for (const char *wrong :
         {"FF FF FF FF", "00 00 00 0D C8 2D 81 E1 00 00 00 01 01", "00 00 00 08 C8 2D 81 E1 00 00 00 01 01"}) {
        TunerProperties document;
        QCOMPARE(thrownBy([&] { readRecord(document, bytes(wrong)); }),
                 QStringLiteral("BinaryParsingException: TunerProperties::SetBinary(...): Length error occurred "
                                "during processing of binary representation"));
    }
}

void TunerPropertiesRecordsTest::aNestedRecordFailsWithItsOwnName()
{
    TunerProperties document;
    QCOMPARE(
        thrownBy([&] { readRecord(document, framed("2A 68 BE F4 00 00 00 0B 62 7B 74 CE 00 00 00 04 00 00 00 00")); }),
        QStringLiteral("BinaryParsingException: StartupModes::SetBinary(...): Length error occurred during "
                       "processing of binary representation"));
    QVERIFY(!document.IsStartupModesSet()); // the flag is set after reading the record
}

TEST_SUITE(TunerPropertiesRecordsTest)
#include "tst_TunerPropertiesRecords.moc"
