// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace Damage;

/// The lengths and counts of a damaged snapshot may be anywhere, so every word is replaced.
class SnapshotWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyHostileWordIsReadAsTheFormatDefines_data() { validatingRows(); }
    void everyHostileWordIsReadAsTheFormatDefines()
    {
        QFETCH(bool, validate);
        const QVector<qint32> words{-1, -8, 0, 0x7FFFFFFF, -0x7FFFFFFF - 1};
        const Sweep sweep = replaceEverywhere(Encoding::Snapshot, validate, words);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.damaged, words.size() * (snapshotOf(compactDocument()).size() - 3));
        QCOMPARE(sweep.refused > 0, validate);
        qInfo("%d words, %d of them refused", sweep.damaged, sweep.refused);
    }
};

TEST_SUITE(SnapshotWordsTest)
#include "tst_SnapshotWords.moc"
