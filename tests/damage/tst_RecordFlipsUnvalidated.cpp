// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace Damage;

/// Each bit of a record, read while not validating. A test of its own, to run beside the others.
class RecordFlipsUnvalidatedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        const Sweep sweep = flipEveryBit(Encoding::Record, false);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.damaged, 8 * recordOf(compactDocument()).size());
        qInfo("%d flips, %d of them refused", sweep.damaged, sweep.refused);
    }
};

TEST_SUITE(RecordFlipsUnvalidatedTest)
#include "tst_RecordFlipsUnvalidated.moc"
