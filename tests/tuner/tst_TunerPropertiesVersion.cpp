// SPDX-License-Identifier: MIT
#include <QtTest>

#include "ExceptionText.h"
#include "WholeDocument.h"

using namespace JobXml;
using namespace TunerDocuments;

namespace {

/// Versions, and whether documents of that version are older than "1.1".
void versionRows()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("older");
    QTest::newRow("1.0") << QStringLiteral("1.0") << true;
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("1.09") << QStringLiteral("1.09") << true;
    QTest::newRow("empty") << QStringLiteral("") << true;
    QTest::newRow("no number") << QStringLiteral("new") << true;
    QTest::newRow("three parts") << QStringLiteral("1.1.1") << true;
    QTest::newRow("-2") << QStringLiteral("-2") << true;
    QTest::newRow("1.1") << QStringLiteral("1.1") << false;
    QTest::newRow("1.10") << QStringLiteral("1.10") << false;
    QTest::newRow("1.2") << QStringLiteral("1.2") << false;
    QTest::newRow("2.0") << QStringLiteral("2.0") << false;
    QTest::newRow("10") << QStringLiteral("10") << false;
}

/// A record with the version and nothing else.
QByteArray versionRecord(const QString &version)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    const qint32 size = 4 + 2 * version.size();
    stream << qint32(8 + size) << quint32(0xCCFEDFA1) << size << version;
    return record;
}

/// A snapshot with these flags and the content that a document that was reset reads after the version: no components,
/// the type FFP, the base resource "B" and the quantity 9.
QByteArray versionSnapshot(const char *flags, const QString &version)
{
    QByteArray text;
    QDataStream stream(&text, QIODevice::WriteOnly);
    stream << version;
    return bytes(flags) + text + bytes("00 00 00 00 02 00 00 00 02 00 42 00 00 00 00 00 00 00 09");
}

/// All members are reset, but the flag of the quantity is set.
bool isReset(const TunerProperties &document)
{
    return !document.IsnameSet() && !document.IsMaxFFPDelaySet() && !document.IsStartupModesSet()
        && document.GetComponent().isEmpty() && document.GetBandwidthSelection().isEmpty() && document.IsquantitySet()
        && document.Getquantity() == 1;
}

} // namespace

/// The effect of the version that a document reads.
class TunerPropertiesVersionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyOlderXmlResetsTheDocument_data() { versionRows(); }
    void onlyOlderXmlResetsTheDocument();
    void xmlWithoutVersionIsOlder();
    void theResetComesBeforeTheAttributes();
    void onlyOlderRecordsResetTheDocument_data() { versionRows(); }
    void onlyOlderRecordsResetTheDocument();
    void aRecordWithoutVersionResetsNothing();
    void aNullVersionInARecordIsOlder();
    void aVersionInTheMiddleOfARecordResetsWhatCameBefore();
    void onlyOlderSnapshotsResetTheDocument_data() { versionRows(); }
    void onlyOlderSnapshotsResetTheDocument();
    void theResetReplacesTheFlagsOfASnapshot();
    void anOlderSnapshotStillHoldsAQuantity();

    void theLoadedVersionIsNullBeforeAnythingWasRead();
    void theLoadedVersionIsTheOneReadLast();
    void resettingKeepsTheLoadedVersion();
    void copiesKeepTheLoadedVersion();
    void aNewerDocumentIsWrittenInTheOwnVersion();
    void loadedVersionDoesNotAffectEquality();
    void partsOfADocumentHaveNoVersion();
};

void TunerPropertiesVersionTest::onlyOlderXmlResetsTheDocument()
{
    QFETCH(QString, version);
    QFETCH(bool, older);
    TunerProperties document = wholeDocument();
    readXml(document, QStringLiteral("<TunerProperties Version=\"%1\"/>").arg(version));
    QCOMPARE(isReset(document), older);
    QCOMPARE(document == wholeDocument(), !older);
    QCOMPARE(document.GetInitialVersionLoaded(), version);
    QVERIFY(!document.GetInitialVersionLoaded().isNull());
}

void TunerPropertiesVersionTest::xmlWithoutVersionIsOlder()
{
    TunerProperties document = wholeDocument();
    readXml(document, QStringLiteral("<TunerProperties version=\"1.1\"/>"));
    QVERIFY(isReset(document));
    QVERIFY(document.GetInitialVersionLoaded().isEmpty());
    QVERIFY(!document.GetInitialVersionLoaded().isNull());
}

void TunerPropertiesVersionTest::theResetComesBeforeTheAttributes()
{
    TunerProperties document = wholeDocument();
    readXml(document,
            QStringLiteral("<TunerProperties name=\"new\" Version=\"1.0\"><MaxFFPDelay>7</MaxFFPDelay>"
                           "</TunerProperties>"));
    QCOMPARE(document.Getname(), QStringLiteral("new"));
    QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(7));
    QVERIFY(!document.IsbaseresourceSet());
    QVERIFY(document.IsquantitySet());
}

void TunerPropertiesVersionTest::onlyOlderRecordsResetTheDocument()
{
    QFETCH(QString, version);
    QFETCH(bool, older);
    TunerProperties document = wholeDocument();
    readRecord(document, versionRecord(version));
    QCOMPARE(isReset(document), older);
    QCOMPARE(document == wholeDocument(), !older);
    QCOMPARE(document.GetInitialVersionLoaded(), version);
}

void TunerPropertiesVersionTest::aRecordWithoutVersionResetsNothing()
{
    TunerProperties document = wholeDocument();
    readRecord(document, bytes("00 00 00 0D CB 4C F6 45 00 00 00 05 00 00 00 01 54")); // name "T"
    QVERIFY(document == wholeDocument());
    QVERIFY(document.GetInitialVersionLoaded().isNull());
}

void TunerPropertiesVersionTest::aNullVersionInARecordIsOlder()
{
    TunerProperties document = wholeDocument();
    readRecord(document, bytes("00 00 00 0C CC FE DF A1 00 00 00 04 FF FF FF FF"));
    QVERIFY(isReset(document));
}

void TunerPropertiesVersionTest::aVersionInTheMiddleOfARecordResetsWhatCameBefore()
{
    TunerProperties document = wholeDocument();
    readRecord(document,
               bytes("00 00 00 2F" // 47 bytes
                     "CB 4C F6 45 00 00 00 05 00 00 00 01 4E" // name "N"
                     "CC FE DF A1 00 00 00 0A 00 00 00 06 00 31 00 2E 00 30" // version "1.0"
                     "A5 9D 7D 84 00 00 00 08 00 00 00 00 00 00 00 07")); // quantity 7
    QVERIFY(!document.IsnameSet());
    QVERIFY(document.Getname().isNull());
    QVERIFY(std::as_const(document).GetComponent().isEmpty());
    QCOMPARE(document.Getquantity(), 7);
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("1.0"));

    readRecord(document,
               bytes("00 00 00 1F" // 31 bytes
                     "CB 4C F6 45 00 00 00 05 00 00 00 01 4E" // name "N"
                     "CC FE DF A1 00 00 00 0A 00 00 00 06 00 31 00 2E 00 31")); // version "1.1"
    QCOMPARE(document.Getname(), QStringLiteral("N"));
    QCOMPARE(document.Getquantity(), 7);
}

void TunerPropertiesVersionTest::onlyOlderSnapshotsResetTheDocument()
{
    QFETCH(QString, version);
    QFETCH(bool, older);
    TunerProperties document = wholeDocument();
    QCOMPARE(readSnapshot(document, versionSnapshot("C0 02", version)), 0); // type, base resource and quantity
    QCOMPARE(document.GetInitialVersionLoaded(), version);
    QCOMPARE(document.IstypeSet(), !older);
    QCOMPARE(document.IsbaseresourceSet(), !older);
    QVERIFY(document.IsquantitySet());
    QCOMPARE(document.Getname().isNull(), older); // its flag is clear in either case
    QCOMPARE(std::as_const(document).GetComponent().isEmpty(), older);
    QCOMPARE(document.Gettype(), TunerProperties::type::FFP);
    QCOMPARE(document.Getbaseresource(), QStringLiteral("B"));
    QCOMPARE(document.Getquantity(), 9);
}

void TunerPropertiesVersionTest::theResetReplacesTheFlagsOfASnapshot()
{
    // All twelve flags are set, but after an old version only the quantity and the members that are always written are
    // read.
    TunerProperties document;
    QCOMPARE(readSnapshot(document, versionSnapshot("FF 0F", QStringLiteral("1.0"))), 0);
    QCOMPARE(hex(snapshotOf(document)),
             hex("00 02" // the quantity alone is set
                 "00 00 00 06 00 31 00 2E 00 31" // the own version
                 "00 00 00 00 02 00 00 00 02 00 42" // no component, type FFP, "B"
                 "00 00 00 00 00 00 00 09")); // quantity 9
}

void TunerPropertiesVersionTest::anOlderSnapshotStillHoldsAQuantity()
{
    // The flag of the quantity is clear in the snapshot, but the reset sets it.
    TunerProperties document;
    QCOMPARE(readSnapshot(document, versionSnapshot("00 00", QStringLiteral("1.0"))), 0);
    QVERIFY(document.IsquantitySet());
    QCOMPARE(document.Getquantity(), 9);
}

void TunerPropertiesVersionTest::theLoadedVersionIsNullBeforeAnythingWasRead()
{
    QVERIFY(TunerProperties().GetInitialVersionLoaded().isNull());
    const TunerProperties document = wholeDocument();
    QVERIFY(document.GetInitialVersionLoaded().isNull());
    xmlOf(document);
    recordOf(document);
    snapshotOf(document);
    QVERIFY(document.GetInitialVersionLoaded().isNull());
}

void TunerPropertiesVersionTest::theLoadedVersionIsTheOneReadLast()
{
    TunerProperties document;
    readXml(document, QStringLiteral("<TunerProperties Version=\"1.5\"/>"));
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("1.5"));
    readRecord(document, versionRecord(QStringLiteral("0.9")));
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("0.9"));
    readSnapshot(document, versionSnapshot("C0 02", QStringLiteral("3")));
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("3"));
    readRecord(document, bytes("00 00 00 00")); // without a version, the last one stays
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("3"));
    QCOMPARE(document.GetVersion(), QStringLiteral("1.1"));
}

void TunerPropertiesVersionTest::resettingKeepsTheLoadedVersion()
{
    TunerProperties document;
    readXml(document, QStringLiteral("<TunerProperties Version=\"1.5\"/>"));
    document.Reset();
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("1.5"));
    document.ResetToDefault();
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("1.5"));
    QCOMPARE(document.GetVersion(), QStringLiteral("1.1"));
}

void TunerPropertiesVersionTest::copiesKeepTheLoadedVersion()
{
    TunerProperties document;
    readXml(document, QStringLiteral("<TunerProperties Version=\"1.5\"/>"));
    const TunerProperties copy(document);
    TunerProperties assigned;
    assigned = document;
    readXml(document, QStringLiteral("<TunerProperties Version=\"1.6\"/>"));
    QCOMPARE(copy.GetInitialVersionLoaded(), QStringLiteral("1.5"));
    QCOMPARE(assigned.GetInitialVersionLoaded(), QStringLiteral("1.5"));
}

void TunerPropertiesVersionTest::aNewerDocumentIsWrittenInTheOwnVersion()
{
    TunerProperties document = withoutValidation();
    readXml(document, QStringLiteral("<TunerProperties Version=\"2.0\" type=\"MCP\" baseresource=\"b\"/>"));
    QCOMPARE(xmlOf(document), QStringLiteral("<TunerProperties Version=\"1.1\" type=\"MCP\" baseresource=\"b\"/>"));
}

void TunerPropertiesVersionTest::loadedVersionDoesNotAffectEquality()
{
    TunerProperties document;
    readXml(document, QStringLiteral("<TunerProperties Version=\"2.0\"/>"));
    QVERIFY(document == TunerProperties());
}

void TunerPropertiesVersionTest::partsOfADocumentHaveNoVersion()
{
    QVERIFY(Component().GetVersion().isNull());
    QVERIFY(Node().GetVersion().isNull());
    QVERIFY(ValueItem().GetVersion().isNull());
}

TEST_SUITE(TunerPropertiesVersionTest)
#include "tst_TunerPropertiesVersion.moc"
