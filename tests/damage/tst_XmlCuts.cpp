// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

using namespace JobXml;
using namespace Damage;

/// An XML document that ends early is not well formed, and never passes.
class XmlCutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCutIsRefusedWithItsLocation_data() { validatingRows(); }
    void everyCutIsRefusedWithItsLocation();
    void everyCutOfATextIsRefusedWithItsLocation_data() { validatingRows(); }
    void everyCutOfATextIsRefusedWithItsLocation();
    void everyCutAfterARefusedElementThrowsItsRefusal();
};

void XmlCutsTest::everyCutIsRefusedWithItsLocation()
{
    QFETCH(bool, validate);
    const XmlSweep sweep = cutXmlEverywhere(XmlSource::File, validate);
    QCOMPARE(sweep.wrong, QString());
    QCOMPARE(sweep.all(), compactXml().size());
    QCOMPARE(sweep.taken, 1); // without the line end after the root element it is complete
    QCOMPARE(sweep.refused, sweep.all() - 1);
}

void XmlCutsTest::everyCutOfATextIsRefusedWithItsLocation()
{
    QFETCH(bool, validate);
    const XmlSweep sweep = cutXmlEverywhere(XmlSource::Text, validate);
    QCOMPARE(sweep.wrong, QString());
    QCOMPARE(sweep.all(), compactXml().size());
    QCOMPARE(sweep.noText, 1 + 3); // cut inside one letter of two bytes and one of four
    QCOMPARE(sweep.taken, 1);
    QCOMPARE(sweep.thrown, 0);
}

// The complete element before the end is refused first, so truncating the text after it makes no difference.
void XmlCutsTest::everyCutAfterARefusedElementThrowsItsRefusal()
{
    QByteArray whole = compactXml();
    whole.replace("<HRPANSupported>true</HRPANSupported>", "<HRPANSupported></HRPANSupported>");
    const int refusedAt = whole.indexOf("</HRPANSupported>") + int(qstrlen("</HRPANSupported>"));
    QVERIFY(refusedAt > 100);
    for (int size = 0; size < whole.size(); ++size) {
        XmlSweep sweep;
        readDamagedXml(sweep, whole.left(size), XmlSource::File, true, QStringLiteral("cut to %1 bytes").arg(size));
        QCOMPARE(sweep.wrong, QString());
        QCOMPARE(sweep.thrown, size >= refusedAt ? 1 : 0);
        QCOMPARE(sweep.refused, size >= refusedAt ? 0 : 1);
    }
}

TEST_SUITE(XmlCutsTest)
#include "tst_XmlCuts.moc"
