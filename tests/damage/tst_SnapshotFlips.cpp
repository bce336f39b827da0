// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace Damage;

/// A snapshot has no checks: with one flipped bit it has other values or ends early. Only the rule for items of lists
/// refuses anything.
class SnapshotFlipsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines_data() { validatingRows(); }
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        QFETCH(bool, validate);
        const Sweep sweep = flipEveryBit(Encoding::Snapshot, validate);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.damaged, 8 * snapshotOf(compactDocument()).size());
        QCOMPARE(sweep.refused > 0, validate);
        qInfo("%d flips, %d of them refused", sweep.damaged, sweep.refused);
    }
};

TEST_SUITE(SnapshotFlipsTest)
#include "tst_SnapshotFlips.moc"
