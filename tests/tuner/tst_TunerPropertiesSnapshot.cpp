// SPDX-License-Identifier: MIT
#include <QtTest>

#include "ExceptionText.h"
#include "WholeDocument.h"

using namespace JobXml;
using namespace TunerDocuments;

using Type = TunerProperties::type;

namespace {

const char version[] = "00 00 00 06 00 31 00 2E 00 31"; // "1.1"

// No component, no type and no base resource: the content of a snapshot if none of them is set.
const char nothing[] = "00 00 00 00 FF FF FF FF FF";

const char bandwidth[] = "03 00 00 00 08 00 77 00 69 00 64 00 65" // both set, Name "wide"
                         "41 36 E3 60 00 00 00 00"; // MaxBandwidth 1500000

const char component[] = "17 00 00 00 01" // all but displayName set, one node
                         "03 00 00 00 01" //   both set, one value
                         "04 00 02" //     ValueInt set, ValueInt chosen
                         "03 00 00 00 0C 00 6E 00 75 00 6D 00 62 00 65 00 72" //     both set, id "number"
                         "00 00 00 00 00 00 00 00" //     value 0
                         "00 00 00 0A 00 6E 00 6F 00 64 00 65 00 30" //   id "node0"
                         "00 00 00 0C 00 46 00 69 00 6C 00 74 00 65 00 72" // type "Filter"
                         "00 00 00 06 00 50 00 72 00 65" // name "Pre"
                         "00"; // optional false

QByteArray wholeSnapshot()
{
    return joined("FF 0F", // all twelve set
                  version, //
                  "01 00 00 00 02 00 0A", // StartupModes: set, two modes, 0 and 10
                  "00 00 00 01", bandwidth, // BandwidthSelection: one
                  "00 00 00 00 00 00 00 FA", // MaxFFPDelay 250
                  "00", // HRPANSupported false
                  "00 00 00 01", component, // Component: one
                  "00 00 00 02 00 54", // name "T"
                  "03", // type, a receiver
                  "00 00 00 04 00 52 00 58", // baseresource "RX"
                  "00 00 00 06 00 41 00 3B 00 42", // connectableResources "A;B"
                  "FF FF FF FF FF FF FF FE", // quantity -2
                  "00 00 00 02 00 50", // parentBaseResource "P"
                  "01"); // hwProcessing true
}

/// A document in which only the member of this flag is set.
TunerProperties documentWithOnly(int flag)
{
    TunerProperties document;
    switch (flag) {
    case 0:
        document.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::DF);
        break;
    case 1:
        document.AppendBandwidthSelection(aBandwidth());
        break;
    case 2:
        document.SetMaxFFPDelay(Q_UINT64_C(18446744073709551614));
        break;
    case 3:
        document.SetHRPANSupported(true);
        break;
    case 4:
        document.AppendComponent(aComponent(QStringLiteral("Pre")));
        break;
    case 5:
        document.Setname(QStringLiteral("T"));
        break;
    case 6:
        document.Settype(Type::DirectionFinder);
        break;
    case 7:
        document.Setbaseresource(QStringLiteral("RX"));
        break;
    case 8:
        document.SetconnectableResources(QStringLiteral("A"));
        break;
    case 9:
        document.Setquantity(-2);
        break;
    case 10:
        document.SetparentBaseResource(QStringLiteral("P"));
        break;
    case 11:
        document.SethwProcessing(true);
        break;
    default:
        qFatal("no such flag");
    }
    return document;
}

} // namespace

/// A document as a snapshot.
class TunerPropertiesSnapshotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeDocumentHasThisSnapshot();
    void emptyDocumentContainsCountTypeAndBaseResource();
    void eachMemberFollowsItsFlag_data();
    void eachMemberFollowsItsFlag();
    void anEmptyListOfBandwidthsThatIsSetIsCounted();
    void bandwidthsAreNotWrittenWhenTheListIsNotSet();
    void componentsOfAListThatIsNotSetAreCountedButNotWritten();
    void componentsOfAListThatIsNotSetAreNotRead();
    void flagsAreReadUnchanged();
    void flagsBeyondTheTwelveAreDropped();
    void nothingIsCheckedInEitherDirection();
    void itemsAndModesJoinThosePresent();
    void incompleteItemsAreRefusedOnlyWhileValidating();
};

void TunerPropertiesSnapshotTest::aWholeDocumentHasThisSnapshot()
{
    QCOMPARE(hex(snapshotOf(wholeDocument())), hex(wholeSnapshot()));
    TunerProperties read;
    QCOMPARE(readSnapshot(read, wholeSnapshot()), 0);
    QVERIFY(read == wholeDocument());
    QCOMPARE(hex(snapshotOf(read)), hex(wholeSnapshot()));
}

void TunerPropertiesSnapshotTest::emptyDocumentContainsCountTypeAndBaseResource()
{
    QCOMPARE(hex(snapshotOf(TunerProperties())), hex(joined("00 00", version, nothing)));
    TunerProperties read;
    QCOMPARE(readSnapshot(read, joined("00 00", version, nothing)), 0);
    QVERIFY(read == TunerProperties());
}

void TunerPropertiesSnapshotTest::eachMemberFollowsItsFlag_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<QByteArray>("snapshot");

    // clang-format off
    QTest::newRow("StartupModes") << 0 << joined("01 00", version, "01 00 00 00 01 06", nothing);
    QTest::newRow("BandwidthSelection") << 1 << joined("02 00", version, "00 00 00 01", bandwidth, nothing);
    QTest::newRow("MaxFFPDelay") << 2 << joined("04 00", version, "FF FF FF FF FF FF FF FE", nothing);
    QTest::newRow("HRPANSupported") << 3 << joined("08 00", version, "01", nothing);
    QTest::newRow("Component") << 4 << joined("10 00", version, "00 00 00 01", component, "FF FF FF FF FF");
    QTest::newRow("name") << 5 << joined("20 00", version, "00 00 00 00", "00 00 00 02 00 54", "FF FF FF FF FF");
    QTest::newRow("type") << 6 << joined("40 00", version, "00 00 00 00", "04", "FF FF FF FF");
    QTest::newRow("baseresource") << 7 << joined("80 00", version, "00 00 00 00", "FF", "00 00 00 04 00 52 00 58");
    QTest::newRow("connectableResources") << 8 << joined("00 01", version, nothing, "00 00 00 02 00 41");
    QTest::newRow("quantity") << 9 << joined("00 02", version, nothing, "FF FF FF FF FF FF FF FE");
    QTest::newRow("parentBaseResource") << 10 << joined("00 04", version, nothing, "00 00 00 02 00 50");
    QTest::newRow("hwProcessing") << 11 << joined("00 08", version, nothing, "01");
    // clang-format on
}

void TunerPropertiesSnapshotTest::eachMemberFollowsItsFlag()
{
    QFETCH(int, flag);
    QFETCH(QByteArray, snapshot);
    const TunerProperties document = documentWithOnly(flag);
    QCOMPARE(hex(snapshotOf(document)), hex(snapshot));
    TunerProperties read;
    QCOMPARE(readSnapshot(read, snapshot), 0);
    QVERIFY(read == document);
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void TunerPropertiesSnapshotTest::anEmptyListOfBandwidthsThatIsSetIsCounted()
{
    TunerProperties document;
    document.SetBandwidthSelection({});
    const QByteArray snapshot = joined("02 00", version, "00 00 00 00", nothing);
    QCOMPARE(hex(snapshotOf(document)), hex(snapshot));
    TunerProperties read;
    QCOMPARE(readSnapshot(read, snapshot), 0);
    QVERIFY(read.IsBandwidthSelectionSet());
}

void TunerPropertiesSnapshotTest::bandwidthsAreNotWrittenWhenTheListIsNotSet()
{
    const TunerProperties document = withUnsetBandwidths();
    QCOMPARE(document.GetBandwidthSelection().size(), 1);
    QCOMPARE(hex(snapshotOf(document)),
             hex(joined("D0 00", version, "00 00 00 01", component, "03", "00 00 00 04 00 52 00 58")));
}

void TunerPropertiesSnapshotTest::componentsOfAListThatIsNotSetAreCountedButNotWritten()
{
    const TunerProperties document = withUnsetComponents();
    QCOMPARE(document.GetComponent().size(), 1);
    QCOMPARE(hex(snapshotOf(document)), hex(joined("C0 00", version, "00 00 00 01", "03", "00 00 00 04 00 52 00 58")));
}

void TunerPropertiesSnapshotTest::componentsOfAListThatIsNotSetAreNotRead()
{
    TunerProperties document;
    QCOMPARE(readSnapshot(document, joined("C0 00", version, "00 00 00 01", "03", "00 00 00 04 00 52 00 58")), 0);
    QVERIFY(std::as_const(document).GetComponent().isEmpty());
    QVERIFY(!document.IsComponentSet());
    QCOMPARE(document.Gettype(), Type::Receiver);
    QCOMPARE(document.Getbaseresource(), QStringLiteral("RX"));
}

void TunerPropertiesSnapshotTest::flagsAreReadUnchanged()
{
    // Snapshots always contain type and base resource. The other members lose their flags, but not their values.
    TunerProperties document = wholeDocument();
    QCOMPARE(readSnapshot(document, joined("00 00", version, "00 00 00 00", "01", "00 00 00 02 00 42")), 0);
    QVERIFY(!document.IstypeSet() && !document.IsbaseresourceSet() && !document.IsnameSet());
    QVERIFY(!document.IsquantitySet() && !document.IshwProcessingSet() && !document.IsStartupModesSet());
    QCOMPARE(document.Gettype(), Type::SCP);
    QCOMPARE(document.Getbaseresource(), QStringLiteral("B"));
    QCOMPARE(document.Getname(), QStringLiteral("T"));
    QCOMPARE(document.Getquantity(), -2);
    QVERIFY(document.GethwProcessing());
    QCOMPARE(std::as_const(document).GetComponent().size(), 1);
}

void TunerPropertiesSnapshotTest::flagsBeyondTheTwelveAreDropped()
{
    TunerProperties document;
    QCOMPARE(readSnapshot(document, joined("00 F8", version, nothing, "01")), 0);
    QVERIFY(document.GethwProcessing());
    QCOMPARE(hex(snapshotOf(document)), hex(joined("00 08", version, nothing, "01")));
}

void TunerPropertiesSnapshotTest::nothingIsCheckedInEitherDirection()
{
    const QByteArray snapshot = joined("E0 05", version, "00 00 00 00", // name, type and three more texts set
                                       "FF FF FF FF", // name, null
                                       "07", // no type
                                       "FF FF FF FF FF FF FF FF FF FF FF FF"); // three texts, null
    TunerProperties document;
    QVERIFY(document.GetValidate());
    QCOMPARE(thrownBy([&] { readSnapshot(document, snapshot); }), QString());
    QCOMPARE(document.Gettype(), Type(7));
    QVERIFY(document.IstypeSet() && document.IsnameSet() && document.IsparentBaseResourceSet());
    QVERIFY(document.Getname().isNull() && document.GetparentBaseResource().isNull());
    QCOMPARE(hex(snapshotOf(document)), hex(snapshot));
}

void TunerPropertiesSnapshotTest::itemsAndModesJoinThosePresent()
{
    TunerProperties document = wholeDocument();
    QCOMPARE(readSnapshot(document, wholeSnapshot()), 0);
    QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode().size(), 4);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 2);
    QCOMPARE(std::as_const(document).GetComponent().size(), 2);
}

void TunerPropertiesSnapshotTest::incompleteItemsAreRefusedOnlyWhileValidating()
{
    const QByteArray emptyBandwidth =
        joined("02 00", version, "00 00 00 01", "00 FF FF FF FF 00 00 00 00 00 00 00 00", nothing);
    const QByteArray emptyComponent =
        joined("10 00", version, "00 00 00 01", "00 00 00 00 00 FF FF FF FF FF FF FF FF 00", "FF FF FF FF FF");
    TunerProperties document;
    QCOMPARE(thrownBy([&] { readSnapshot(document, emptyBandwidth); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item BandwidthSelection."));
    QCOMPARE(thrownBy([&] { readSnapshot(document, emptyComponent); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item Component."));
    document.SetValidate(false);
    QCOMPARE(readSnapshot(document, emptyBandwidth), 0);
    QCOMPARE(readSnapshot(document, emptyComponent), 0);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 1);
    QCOMPARE(std::as_const(document).GetComponent().size(), 1);
}

TEST_SUITE(TunerPropertiesSnapshotTest)
#include "tst_TunerPropertiesSnapshot.moc"
