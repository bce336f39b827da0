// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

using namespace Damage;

/// Flips each bit of an XML document that is read from a file while validating. A separate test, so that it runs in
/// parallel with others.
class XmlFlipsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        const XmlSweep sweep = flipEveryBitOfXml(XmlSource::File, true);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.all(), 8 * compactXml().size());
        QVERIFY(sweep.taken > 0 && sweep.refused > 0);
        QCOMPARE(sweep.thrown > 0, true);
        qInfo("%d flips: %d taken, %d refused, %d thrown", sweep.all(), sweep.taken, sweep.refused, sweep.thrown);
    }
};

TEST_SUITE(XmlFlipsTest)
#include "tst_XmlFlips.moc"
