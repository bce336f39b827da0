// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

using namespace Damage;

/// Flips each bit of an XML document, and reads it from a text if the bytes are still valid UTF-8.
class XmlTextFlipsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsReadAsTheFormatDefines_data() { validatingRows(); }
    void everyFlippedBitIsReadAsTheFormatDefines()
    {
        QFETCH(bool, validate);
        const XmlSweep sweep = flipEveryBitOfXml(XmlSource::Text, validate);
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.all(), 8 * compactXml().size());
        QVERIFY(sweep.taken > 0 && sweep.refused > 0);
        QCOMPARE(sweep.thrown > 0, validate);
        qInfo("%d flips, %d of them not UTF-8: %d taken, %d refused, %d thrown", sweep.all(), sweep.noText, sweep.taken,
              sweep.refused, sweep.thrown);
    }
};

TEST_SUITE(XmlTextFlipsTest)
#include "tst_XmlTextFlips.moc"
