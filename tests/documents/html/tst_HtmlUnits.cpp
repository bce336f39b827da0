// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "documents/html/Pages.h"
#include "documents/html/Unit.h"

using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The units of numbers, and their prefixes.
class HtmlUnitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberIsShownWithItsUsualPrefix_data();
    void numberIsShownWithItsUsualPrefix();
    void unitIsBesideEveryNumberOfItsNode();
    void exactNumberIsAtHand();
    void unitIsAlsoAValueOfItsNode();
    void unitIsOnlyThatOfItsNode();
    void twoUnitsAreShownAsValuesOnly();
    void longOrUnprintableUnitIsNotRepeated();
    void meterNamesTheUnit();
};

namespace {

JobXml::ValueItem text(const QString &id, const QString &value)
{
    JobXml::ValueString string;
    string.Setid(id);
    string.Setvalue(value);
    JobXml::ValueItem item;
    item.SetValueString(string);
    return item;
}

JobXml::ValueItem unit(const QString &value)
{
    return text(QStringLiteral("unit"), value);
}

JobXml::ValueItem number(float value)
{
    JobXml::ValueFloat object;
    object.Setid(QStringLiteral("number"));
    object.Setvalue(value);
    JobXml::ValueItem item;
    item.SetValueFloat(object);
    return item;
}

JobXml::ValueItem ranged(qint64 value, qint64 min, qint64 max)
{
    JobXml::ValueNumericInt64 object;
    object.Setid(QStringLiteral("level"));
    object.Setvalue(value);
    object.Setmin(min);
    object.Setmax(max);
    object.Setstep(1);
    JobXml::ValueItem item;
    item.SetValueNumericInt64(object);
    return item;
}

/// A document with a node of these values.
TunerProperties withValues(const QVector<JobXml::ValueItem> &items)
{
    TunerProperties document = aDocument(1);
    document.GetComponent()[0].GetNode()[0].SetValueItem(items);
    return document;
}

/// What is shown for each number in a node: "prefixed [exact unit]".
QStringList quantitiesOf(const PageTree &page, const char *member = "value")
{
    QStringList texts;
    for (const PageNode *value : page.root().all([&](const PageNode &node) {
             return node.attribute("data-member") == QLatin1String(member)
                 && !node.all([](const PageNode &each) { return each.isOfClass("number"); }).empty();
         })) {
        const auto names = value->all([](const PageNode &node) { return node.isOfClass("name"); });
        texts.append(value->wholeText().mid(names.empty() ? 0 : names.front()->wholeText().size() + 1));
    }
    return texts;
}

} // namespace

void HtmlUnitsTest::numberIsShownWithItsUsualPrefix_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("unitText");
    QTest::addColumn<QString>("prefixed");
    const auto row = [](const char *number, const char *unitText, const char *prefixed) {
        QTest::newRow(qPrintable(QString::fromUtf8(number) + QLatin1Char(' ') + QString::fromUtf8(unitText)))
            << QString::fromUtf8(number) << QString::fromUtf8(unitText)
            << QString::fromUtf8(prefixed).replace(QLatin1Char(' '), QChar(0xA0));
    };
    row("98500000", "Hz", "98.5 MHz");
    row("2400000000", "Hz", "2.4 GHz");
    row("1000", "Hz", "1 kHz");
    row("999", "Hz", "");
    row("-1500", "Hz", "-1.5 kHz");
    row("0", "Hz", "");
    row("0.5", "Hz", "");
    // All digits stay.
    row("7999991000", "Hz", "7.999991 GHz");
    row("1234567890123", "Hz", "1.234567890123 THz");
    row("9223372036854775807", "Hz", "");
    row("8333.33", "Hz", "8.33333 kHz");
    // The unit may have a prefix.
    row("2400", "kHz", "2.4 MHz");
    row("0.25", "kHz", "250 Hz");
    row("19", "kHz", "");
    row("1000", "\u00b5s", "1 ms");
    row("3412", "\u03bcs", "3.412 ms");
    row("1500", "ms", "1.5 s");
    row("900000", "ms", "900 s");
    row("0.00034", "s", "340 \u00b5s");
    row("0.0123", "V", "12.3 mV");
    row("0.000000000001", "A", "1 pA");
    row("4700", "\u03a9", "4.7 k\u03a9");
    row("102400000", "samples/s", "102.4 Msamples/s");
    row("9600", "Bd", "9.6 kBd");
    row("64000", "bit/s", "64 kbit/s");
    row("2000", "m", "2 km");
    // Not usual with the unit, or not a unit that takes prefixes.
    row("1500", "s", "");
    row("5000000", "m", "");
    row("1000", "dB", "");
    row("1000", "dBm", "");
    row("1000", "dB\u00b5V", "");
    row("1000", "%", "");
    row("1000", "\u00b0", "");
    row("1000", "\u00b0C", "");
    row("1000", "ppm", "");
    row("17179869184", "bytes", "");
    row("1000", "hz", "");
    row("1000", "apples", "");
    row("1000", "", "");
    // Not written in digits alone.
    row("1e+300", "Hz", "");
    row("nan", "Hz", "");
    row("inf", "Hz", "");
}

void HtmlUnitsTest::numberIsShownWithItsUsualPrefix()
{
    QFETCH(QString, number);
    QFETCH(QString, unitText);
    QFETCH(QString, prefixed);
    const TunerProperties document = withValues({unit(unitText)});
    JobXml::visit(document.GetComponent()[0].GetNode()[0], [&](const JobXml::MemberView &member) {
        if (member.GetName() == QLatin1String("ValueItem"))
            QCOMPARE(Unit::of(member).withPrefix(number), prefixed);
    });
}

void HtmlUnitsTest::unitIsBesideEveryNumberOfItsNode()
{
    const PageTree page = pageOf(withValues({number(3.5F), unit(QStringLiteral("dB")), ranged(5, -3, 10)}));
    QCOMPARE(quantitiesOf(page), (QStringList{QStringLiteral("3.5\u00a0dB"), QStringLiteral("5\u00a0dB")}));
    QCOMPARE(quantitiesOf(page, "min"), QStringList{QStringLiteral("-3\u00a0dB")});
    QCOMPARE(quantitiesOf(page, "max"), QStringList{QStringLiteral("10\u00a0dB")});
    QCOMPARE(quantitiesOf(page, "step"), QStringList{QStringLiteral("1\u00a0dB")});
}

void HtmlUnitsTest::exactNumberIsAtHand()
{
    const PageTree page = pageOf(withValues({number(98500000), unit(QStringLiteral("Hz"))}));
    QCOMPARE(quantitiesOf(page), QStringList{QStringLiteral("98.5\u00a0MHz 98500000\u00a0Hz")});
    const PageNode *prefixed = only(ofClass(page, "prefixed"));
    QCOMPARE(prefixed->wholeText(), QStringLiteral("98.5\u00a0MHz"));
    QCOMPARE(prefixed->attribute("title"), QStringLiteral("98500000 Hz"));
    QCOMPARE(only(ofClass(page, "exact"))->values(), QStringList{QStringLiteral("98500000")});
}

void HtmlUnitsTest::unitIsAlsoAValueOfItsNode()
{
    const PageTree page = pageOf(withValues({number(1), unit(QStringLiteral("Hz"))}));
    QCOMPARE(only(ofClass(page, "small"))->values(), (QStringList{QStringLiteral("unit"), QStringLiteral("Hz")}));
}

void HtmlUnitsTest::unitIsOnlyThatOfItsNode()
{
    TunerProperties document = withValues({number(1), unit(QStringLiteral("Hz"))});
    JobXml::Node other = aNode(QStringLiteral("other"), 0);
    other.AppendValueItem(number(2));
    document.GetComponent()[0].AppendNode(other);
    QCOMPARE(quantitiesOf(pageOf(document)), (QStringList{QStringLiteral("1\u00a0Hz"), QStringLiteral("2")}));
}

void HtmlUnitsTest::twoUnitsAreShownAsValuesOnly()
{
    const PageTree page =
        pageOf(withValues({number(1), unit(QStringLiteral("Hz")), number(2), unit(QStringLiteral("V"))}));
    QCOMPARE(quantitiesOf(page), (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
}

void HtmlUnitsTest::longOrUnprintableUnitIsNotRepeated()
{
    for (const QString &sign : {QStringLiteral("seventeen letters"), QStringLiteral("H\nz"), QStringLiteral("\u202eHz"),
                                QStringLiteral(" Hz"), QStringLiteral("")}) {
        QCOMPARE(quantitiesOf(pageOf(withValues({number(1), unit(sign)}))), QStringList{QStringLiteral("1")});
    }
    QCOMPARE(quantitiesOf(pageOf(withValues({number(1), unit(QStringLiteral("sixteen letters!"))}))),
             QStringList{QStringLiteral("1\u00a0sixteen letters!")});
    // Only texts are units.
    QCOMPARE(quantitiesOf(pageOf(withValues({number(1), text(QStringLiteral("Unit"), QStringLiteral("Hz"))}))),
             QStringList{QStringLiteral("1")});
}

void HtmlUnitsTest::meterNamesTheUnit()
{
    const PageTree page = pageOf(withValues({ranged(5, -3, 10), unit(QStringLiteral("dB"))}));
    QCOMPARE(only(ofClass(page, "scale"))->attribute("aria-valuetext"), QStringLiteral("5, from -3 to 10, step 1 dB"));
}

TEST_SUITE(HtmlUnitsTest)
#include "tst_HtmlUnits.moc"
