// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace Damage;

/// Flips each bit of a record that is read while validating. A separate test, so that it runs in parallel with others.
class RecordFlipsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        const Sweep sweep = flipEveryBit(Encoding::Record, true);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.damaged, 8 * recordOf(compactDocument()).size());
        qInfo("%d flips, %d of them refused", sweep.damaged, sweep.refused);
    }
};

TEST_SUITE(RecordFlipsTest)
#include "tst_RecordFlips.moc"
