// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace Damage;

/// Each bit of a record, read while validating. A test of its own, to run beside the others.
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
