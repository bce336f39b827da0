// SPDX-License-Identifier: MIT
//
// The examples that the manual shows for the kinds of value. Each result is checked after the part that is shown.

#include <utility>

#include <QtTest>

#include <jobxml/SelectionItem.h>
#include <jobxml/StringItem.h>
#include <jobxml/ValueBoolean.h>
#include <jobxml/ValueFloat.h>
#include <jobxml/ValueInt.h>
#include <jobxml/ValueInt64.h>
#include <jobxml/ValueNumericFloat.h>
#include <jobxml/ValueNumericInt.h>
#include <jobxml/ValueNumericInt64.h>
#include <jobxml/ValueSelection.h>
#include <jobxml/ValueString.h>
#include <jobxml/ValueStringList.h>

#include "Elements.h"

class ValueSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBooleanIsASwitch();
    void aFloatTravelsWithTwoDecimals();
    void anIntIsWritten();
    void anInt64IsWritten();
    void aStringMayBeEmpty();
    void numericFloatHasARange();
    void numericIntHasARange();
    void numericInt64HasARange();
    void aSelectionHoldsItsOptions();
    void aSelectionItemIsAnOption();
    void aStringListHoldsItsTexts();
    void aStringItemIsOneText();
};

void ValueSnippets::aBooleanIsASwitch()
{
    //! [ValueBoolean]
    JobXml::ValueBoolean engaged;
    engaged.Setid(QStringLiteral("engaged"));
    const bool complete = engaged.HasData(); // false: value is mandatory and has not been set
    engaged.Setvalue(false);
    engaged.Check(); // passes: false is a value as well as true
    //! [ValueBoolean]
    QVERIFY(!complete);
    QCOMPARE(elementOf(engaged), QStringLiteral("<ValueBoolean id=\"engaged\" value=\"false\"/>\n"));
}

void ValueSnippets::aFloatTravelsWithTwoDecimals()
{
    //! [ValueFloat]
    JobXml::ValueFloat gain;
    gain.Setid(QStringLiteral("gain"));
    gain.Setvalue(1.234F);

    JobXml::ValueFloat copy;
    const bool isRead = copy.SetXmlString(gain.GetXmlString(), true); // copy.Getvalue() is 1.23F
    //! [ValueFloat]
    QVERIFY(isRead);
    QCOMPARE(elementOf(gain), QStringLiteral("<ValueFloat id=\"gain\" value=\"1.23\"/>\n"));
    QVERIFY(copy.Getvalue() == 1.23F);
}

void ValueSnippets::anIntIsWritten()
{
    //! [ValueInt]
    JobXml::ValueInt port;
    port.Setid(QStringLiteral("port"));
    port.Setvalue(9250);
    //! [ValueInt]
    QCOMPARE(elementOf(port), QStringLiteral("<ValueInt id=\"port\" value=\"9250\"/>\n"));
}

void ValueSnippets::anInt64IsWritten()
{
    //! [ValueInt64]
    JobXml::ValueInt64 calibrated; // nanoseconds since 1970
    calibrated.Setid(QStringLiteral("calibrated"));
    calibrated.Setvalue(Q_INT64_C(1717405200000000000));
    //! [ValueInt64]
    QCOMPARE(elementOf(calibrated), QStringLiteral("<ValueInt64 id=\"calibrated\" value=\"1717405200000000000\"/>\n"));
}

void ValueSnippets::aStringMayBeEmpty()
{
    //! [ValueString]
    JobXml::ValueString unit;
    unit.Setid(QStringLiteral("unit"));
    unit.Setvalue(QStringLiteral("")); // an empty text is a value
    unit.Check();
    QString refusal;
    try {
        unit.Setvalue(QString()); // a null text means no value, and is refused while validating
    } catch (const OutOfRangeException &e) {
        refusal = e.GetMessageText(); // "ValueString: Please set value properly (origin: Setter)."
    }
    //! [ValueString]
    QCOMPARE(refusal, QStringLiteral("ValueString: Please set value properly (origin: Setter)."));
    QVERIFY(unit.IsvalueSet() && !unit.Getvalue().isNull());
}

void ValueSnippets::numericFloatHasARange()
{
    //! [ValueNumericFloat]
    JobXml::ValueNumericFloat level;
    level.Setid(QStringLiteral("level"));
    level.Setmin(-30.0F);
    level.Setmax(130.0F);
    level.Setstep(0.5F);
    level.Setvalue(qBound(level.Getmin(), 200.0F, level.Getmax())); // the program has to check the range
    //! [ValueNumericFloat]
    QCOMPARE(elementOf(level),
             QStringLiteral(
                 "<ValueNumericFloat id=\"level\" value=\"130.00\" min=\"-30.00\" max=\"130.00\" step=\"0.50\"/>\n"));
}

void ValueSnippets::numericIntHasARange()
{
    //! [ValueNumericInt]
    JobXml::ValueNumericInt attenuation; // in dB
    attenuation.Setid(QStringLiteral("attenuation"));
    attenuation.Setvalue(10);
    attenuation.Setmin(0);
    attenuation.Setmax(40);
    QString missing;
    try {
        attenuation.Check();
    } catch (const OutOfRangeException &e) {
        missing = e.GetMessageText(); // "ValueNumericInt: Please set step properly."
    }
    attenuation.Setstep(2);
    attenuation.Check();
    //! [ValueNumericInt]
    QCOMPARE(missing, QStringLiteral("ValueNumericInt: Please set step properly."));
    QCOMPARE(elementOf(attenuation),
             QStringLiteral("<ValueNumericInt id=\"attenuation\" value=\"10\" min=\"0\" max=\"40\" step=\"2\"/>\n"));
}

void ValueSnippets::numericInt64HasARange()
{
    //! [ValueNumericInt64]
    JobXml::ValueNumericInt64 frequency; // in Hz, beyond 32 bits
    frequency.Setid(QStringLiteral("frequency"));
    frequency.Setvalue(98500000);
    frequency.Setmin(9000);
    frequency.Setmax(Q_INT64_C(8000000000));
    frequency.Setstep(1);
    //! [ValueNumericInt64]
    QCOMPARE(elementOf(frequency),
             QStringLiteral("<ValueNumericInt64 id=\"frequency\" value=\"98500000\" min=\"9000\" max=\"8000000000\" "
                            "step=\"1\"/>\n"));
}

void ValueSnippets::aSelectionHoldsItsOptions()
{
    //! [ValueSelection]
    JobXml::ValueSelection raster;
    raster.Setid(QStringLiteral("raster"));
    for (const double kilohertz : {12.5, 25.0}) {
        JobXml::SelectionItem option;
        option.Setname(QStringLiteral("%1 kHz").arg(kilohertz));
        option.Setvalue(kilohertz * 1000.0);
        raster.AppendSelectionItem(option); // copies it; while validating, it has to be complete
    }
    const JobXml::SelectionItem chosen = std::as_const(raster).GetSelectionItem().at(1);
    raster.Setindex(1); // the program has to keep index, value and text consistent
    raster.Setvalue(chosen.Getvalue());
    raster.Settext(chosen.Getname());
    //! [ValueSelection]
    QCOMPARE(elementOf(raster),
             QStringLiteral("<ValueSelection id=\"raster\" value=\"25000.00\" text=\"25 kHz\" index=\"1\">\n"
                            "  <SelectionItem name=\"12.5 kHz\" value=\"12500.00\"/>\n"
                            "  <SelectionItem name=\"25 kHz\" value=\"25000.00\"/>\n"
                            "</ValueSelection>\n"));
}

void ValueSnippets::aSelectionItemIsAnOption()
{
    //! [SelectionItem]
    JobXml::SelectionItem option;
    option.Setname(QStringLiteral("8⅓ kHz"));
    option.Setvalue(8333.33);
    //! [SelectionItem]
    QCOMPARE(elementOf(option), QStringLiteral("<SelectionItem name=\"8⅓ kHz\" value=\"8333.33\"/>\n"));
}

void ValueSnippets::aStringListHoldsItsTexts()
{
    //! [ValueStringList]
    JobXml::ValueStringList demodulation;
    demodulation.Setid(QStringLiteral("demodulation"));
    for (const QString &name : {QStringLiteral("AM"), QStringLiteral("FM")}) {
        JobXml::StringItem item;
        item.Setvalue(name);
        demodulation.AppendStringItem(item);
    }
    demodulation.Setvalue(QStringLiteral("FM")); // need not be among the items
    //! [ValueStringList]
    QCOMPARE(elementOf(demodulation),
             QStringLiteral("<ValueStringList id=\"demodulation\" value=\"FM\">\n"
                            "  <StringItem value=\"AM\"/>\n"
                            "  <StringItem value=\"FM\"/>\n"
                            "</ValueStringList>\n"));
}

void ValueSnippets::aStringItemIsOneText()
{
    //! [StringItem]
    JobXml::StringItem item;
    JobXml::ValueStringList list;
    QString refusal;
    try {
        list.AppendStringItem(item); // nothing has been set in it
    } catch (const IncompleteDefinitionException &e) {
        refusal = e.GetMessageText();
    }
    item.Setvalue(QStringLiteral("FM"));
    list.AppendStringItem(item);
    //! [StringItem]
    QCOMPARE(refusal,
             QStringLiteral("ValueStringList: Tried to append not completely defined or invalid item StringItem."));
    QCOMPARE(std::as_const(list).GetStringItem().size(), 1);
}

TEST_SUITE(ValueSnippets)
#include "tst_ValueSnippets.moc"
