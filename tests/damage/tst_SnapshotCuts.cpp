// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace JobXml;
using namespace Damage;

/// A snapshot has no checks, so missing data are not reported, but truncated values are never stored.
class SnapshotCutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCutKeepsTheCompleteMembers_data() { validatingRows(); }
    void everyCutKeepsTheCompleteMembers();
    void truncatedItemsAreNotAppended();
};

void SnapshotCutsTest::everyCutKeepsTheCompleteMembers()
{
    QFETCH(bool, validate);
    const Sweep sweep = cutEverywhere(Encoding::Snapshot, validate, 0);
    QCOMPARE(sweep.wrong, QString());
    QCOMPARE(sweep.damaged, snapshotOf(compactDocument()).size());
    QCOMPARE(sweep.refused, 0);
}

void SnapshotCutsTest::truncatedItemsAreNotAppended()
{
    const TunerProperties original = compactDocument();
    const QByteArray snapshot = snapshotOf(original);
    for (int size = 0; size < snapshot.size(); ++size) {
        TunerProperties document;
        QCOMPARE(thrownBy([&] { readSnapshot(document, snapshot.left(size)); }), QString());
        for (const JobXml::Component &component : std::as_const(document).GetComponent())
            QVERIFY(component == original.GetComponent().at(0));
        for (const JobXml::BandwidthSelection &bandwidth : std::as_const(document).GetBandwidthSelection())
            QVERIFY(bandwidth == original.GetBandwidthSelection().at(0));
        QVERIFY(document != original);
    }
}

TEST_SUITE(SnapshotCutsTest)
#include "tst_SnapshotCuts.moc"
