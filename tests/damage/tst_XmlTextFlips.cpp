// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

using namespace Damage;

/// Each bit of an XML document as long as the bytes are still those of a text, which may come without a file.
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
        qInfo("%d flips, %d of them no text: %d taken, %d refused, %d thrown", sweep.all(), sweep.noText, sweep.taken,
              sweep.refused, sweep.thrown);
    }
};

TEST_SUITE(XmlTextFlipsTest)
#include "tst_XmlTextFlips.moc"
