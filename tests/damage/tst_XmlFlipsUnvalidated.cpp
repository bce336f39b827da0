// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

using namespace Damage;

/// Flips each bit of an XML document that is read from a file while not validating. A separate test, so that it runs in
/// parallel with others.
class XmlFlipsUnvalidatedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        const XmlSweep sweep = flipEveryBitOfXml(XmlSource::File, false);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.all(), 8 * compactXml().size());
        QVERIFY(sweep.taken > 0 && sweep.refused > 0);
        QCOMPARE(sweep.thrown > 0, false);
        qInfo("%d flips: %d taken, %d refused, %d thrown", sweep.all(), sweep.taken, sweep.refused, sweep.thrown);
    }
};

TEST_SUITE(XmlFlipsUnvalidatedTest)
#include "tst_XmlFlipsUnvalidated.moc"
