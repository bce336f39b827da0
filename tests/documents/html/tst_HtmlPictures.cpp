// SPDX-License-Identifier: MIT
#include <limits>

#include <QtTest>

#include "Documents.h"
#include "Rows.h"
#include "documents/html/Pages.h"

using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The pictures of a page: charts, sliders, drop-downs, lists.
class HtmlPicturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bandwidthsOverDecadesHaveALogarithmicAxis();
    void bandwidthsWithinADecadeHaveALinearAxis();
    void theLargestAndTheLeastNumbersHaveAnAxis();
    void anAxisOverHundredsOfDecadesHasFewTicks();
    void barsWithoutAPositionAreOmitted();
    void valueInItsRangeIsAMeter();
    void valueOutsideItsRangeIsAnImageWithTheReason_data();
    void valueOutsideItsRangeIsAnImageWithTheReason();
    void rangeOverDecadesIsLogarithmic();
    void rangeWithinDecadesOrWithZeroIsLinear();
    void nothingOnThePageHasTheRoleOfAControl();
    void digitGroupsAreOnlyVisual();
    void theOptionAtTheIndexIsMarked();
    void optionThatDiffersFromTheChoiceIsReported();
    void theCurrentTextOfAListIsMarked();
};

namespace {

const PageNode *byRole(const PageTree &page, const char *role, const char *htmlClass)
{
    return only(page.root().all([&](const PageNode &node) {
        return node.attribute("role") == QLatin1String(role) && node.isOfClass(htmlClass);
    }));
}

TunerProperties withBandwidths(const QVector<double> &bandwidths)
{
    TunerProperties document = aDocument();
    document.ResetBandwidthSelection();
    for (const double bandwidth : bandwidths)
        document.AppendBandwidthSelection(aBandwidth(bandwidth));
    return document;
}

/// The bars of the page: "x width", and "none" if there is no picture.
QStringList barsOf(const PageTree &page)
{
    QStringList bars;
    for (const PageNode *cell : page.root().all([](const PageNode &node) {
             return node.tag == QLatin1String("td") && node.isOfClass("plot")
                 && node.around([](const PageNode &outer) { return outer.tag == QLatin1String("tbody"); });
         })) {
        const auto rects = cell->allTagged("rect");
        bars.append(rects.empty()
                        ? QStringLiteral("none")
                        : rects.front()->attribute("x") + QLatin1Char(' ') + rects.front()->attribute("width"));
    }
    return bars;
}

QStringList labelsOf(const PageTree &page)
{
    QStringList labels;
    for (const PageNode *text : page.root().allTagged("text"))
        labels.append(text->attribute("x") + QLatin1Char(' ') + text->wholeText());
    return labels;
}

template <class Value>
TunerProperties with(const Value &value, void (JobXml::ValueItem::*setter)(const Value &))
{
    TunerProperties document = aDocument();
    document.ResetComponent();
    JobXml::ValueItem item;
    item.SetValidate(false);
    (item.*setter)(value);
    JobXml::Node node = aNode(QStringLiteral("node"), 0);
    node.SetValidate(false);
    node.AppendValueItem(item);
    JobXml::Component component = aComponent(QStringLiteral("c"), 0);
    component.SetValidate(false);
    component.AppendNode(node);
    document.SetValidate(false);
    document.AppendComponent(component);
    return document;
}

/// Where the mark of a scale is; null if there is none.
QString markOf(const PageNode *scale)
{
    return only(scale->all([](const PageNode &node) { return node.isOfClass("mark"); }))->attribute("x");
}

/// Where the ticks of a scale are.
QStringList ticksOf(const PageNode *scale)
{
    QStringList ticks;
    for (const PageNode *tick : only(scale->allTagged("g"))->allTagged("rect"))
        ticks.append(tick->attribute("x"));
    return ticks;
}

/// "message rule" of each warning at its value.
QStringList warningsOf(const PageTree &page)
{
    QStringList texts;
    for (const PageNode *warning : ofClass(page, "warning")) {
        if (warning->isOfClass("problem"))
            texts.append(warning->wholeText().mid(int(qstrlen("Warning: "))));
    }
    return texts;
}

JobXml::ValueNumericInt64 ranged(qint64 value, qint64 min, qint64 max, qint64 step)
{
    JobXml::ValueNumericInt64 object;
    object.Setid(QStringLiteral("level"));
    object.Setvalue(value);
    object.Setmin(min);
    object.Setmax(max);
    object.Setstep(step);
    return object;
}

} // namespace

void HtmlPicturesTest::bandwidthsOverDecadesHaveALogarithmicAxis()
{
    // From 1 k, below the smallest number, to 1 M: three decades. 10 k is at a third, 20 k 0.30103 of a decade further.
    const PageTree page = pageOf(withBandwidths({10000, 20000, 1e6}));
    QCOMPARE(labelsOf(page),
             (QStringList{QStringLiteral("0.00% 1\u00a0k"), QStringLiteral("33.33% 10\u00a0k"),
                          QStringLiteral("66.67% 100\u00a0k"), QStringLiteral("100.00% 1\u00a0M")}));
    QCOMPARE(
        barsOf(page),
        (QStringList{QStringLiteral("0.00% 33.33%"), QStringLiteral("0.00% 43.37%"), QStringLiteral("0.00% 100.00%")}));
    const auto axes = page.root().all([](const PageNode &node) {
        return node.attribute("aria-label").startsWith(QLatin1String("logarithmic axis"));
    });
    QCOMPARE(only(axes)->attribute("role"), QStringLiteral("img"));
    QCOMPARE(only(axes)->attribute("aria-label"), QStringLiteral("logarithmic axis from 1\u00a0k to 1\u00a0M"));
}

void HtmlPicturesTest::bandwidthsWithinADecadeHaveALinearAxis()
{
    const PageTree page = pageOf(withBandwidths({20e6, 40e6, 80e6}));
    QCOMPARE(
        labelsOf(page),
        (QStringList{QStringLiteral("0.00% 0"), QStringLiteral("25.00% 20\u00a0M"), QStringLiteral("50.00% 40\u00a0M"),
                     QStringLiteral("75.00% 60\u00a0M"), QStringLiteral("100.00% 80\u00a0M")}));
    QCOMPARE(
        barsOf(page),
        (QStringList{QStringLiteral("0.00% 25.00%"), QStringLiteral("0.00% 50.00%"), QStringLiteral("0.00% 100.00%")}));
    // A factor of ten is exactly one decade.
    QCOMPARE(barsOf(pageOf(withBandwidths({1000, 10000}))),
             (QStringList{QStringLiteral("0.00% 10.00%"), QStringLiteral("0.00% 100.00%")}));
}

void HtmlPicturesTest::anAxisOverHundredsOfDecadesHasFewTicks()
{
    // From 1e-301 to 1e308 are 609 decades; with six labels at most, every 102nd has a tick.
    const PageTree page = pageOf(withBandwidths({1e-300, 1e308}));
    QCOMPARE(labelsOf(page),
             (QStringList{QStringLiteral("0.00% 1e-301"), QStringLiteral("16.75% 1e-199"),
                          QStringLiteral("33.50% 1e-97"), QStringLiteral("50.25% 100\u00a0k"),
                          QStringLiteral("67.00% 1e+107"), QStringLiteral("83.74% 1e+209")}));
}

void HtmlPicturesTest::theLargestAndTheLeastNumbersHaveAnAxis()
{
    const auto labels = [](const QVector<double> &bandwidths) {
        const PageTree page = pageOf(withBandwidths(bandwidths));
        const auto axes = page.root().all(
            [](const PageNode &node) { return node.attribute("aria-label").contains(QLatin1String(" axis from ")); });
        return only(axes)->attribute("aria-label") + QStringLiteral(": ") + labelsOf(page).join(QStringLiteral(", "));
    };
    // Ends beyond the range of the type.
    QCOMPARE(labels({1.79e308}),
             QStringLiteral("linear axis from 0 to 2e+308: 0.00% 0, 25.00% 5e+307, 50.00% 1e+308, 75.00% 1.5e+308, "
                            "100.00% 2e+308"));
    QCOMPARE(labels({-1.79e308, 1.79e308}),
             QStringLiteral("linear axis from -2e+308 to 2e+308: 0.00% -2e+308, 25.00% -1e+308, 50.00% 0, "
                            "75.00% 1e+308, 100.00% 2e+308"));
    QCOMPARE(labels({1e307, 1.79e308}),
             QStringLiteral("logarithmic axis from 1e+306 to 1e+309: 0.00% 1e+306, 33.33% 1e+307, 66.67% 1e+308, "
                            "100.00% 1e+309"));
    // Steps smaller than the distance of neighboring numbers.
    QCOMPARE(labels({5e-324}),
             QStringLiteral("linear axis from 0 to 6e-324: 0.00% 0, 33.33% 2e-324, 66.67% 4e-324, 100.00% 6e-324"));
    QCOMPARE(labels({5e-324, 1e-322}),
             QStringLiteral("logarithmic axis from 1e-324 to 1e-322: 0.00% 1e-324, 50.00% 1e-323, 100.00% 1e-322"));
}

void HtmlPicturesTest::barsWithoutAPositionAreOmitted()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    QCOMPARE(barsOf(pageOf(withBandwidths({nan, 100, infinity, -100, 0}))),
             (QStringList{QStringLiteral("none"), QStringLiteral("50.00% 50.00%"), QStringLiteral("none"),
                          QStringLiteral("0.00% 50.00%"), QStringLiteral("50.00% 0.00%")}));
    QCOMPARE(barsOf(pageOf(withBandwidths({0, 0}))),
             (QStringList{QStringLiteral("0.00% 0.00%"), QStringLiteral("0.00% 0.00%")}));
    const double most = std::numeric_limits<double>::max();
    QCOMPARE(barsOf(pageOf(withBandwidths({most, -most}))).size(), 2);
}

void HtmlPicturesTest::valueInItsRangeIsAMeter()
{
    const PageTree page = pageOf(with(ranged(250, 50, 850, 100), &JobXml::ValueItem::SetValueNumericInt64));
    const PageNode *meter = byRole(page, "meter", "scale");
    QCOMPARE(meter->attribute("aria-label"), QStringLiteral("level"));
    QCOMPARE(meter->attribute("aria-valuemin"), QStringLiteral("50"));
    QCOMPARE(meter->attribute("aria-valuemax"), QStringLiteral("850"));
    QCOMPARE(meter->attribute("aria-valuenow"), QStringLiteral("250"));
    QCOMPARE(meter->attribute("aria-valuetext"), QStringLiteral("250, from 50 to 850, step 100"));
    QCOMPARE(markOf(meter), QStringLiteral("25.00%"));
    QCOMPARE(ticksOf(meter).size(), 7); // between eight steps
}

void HtmlPicturesTest::valueOutsideItsRangeIsAnImageWithTheReason_data()
{
    const qint64 most = std::numeric_limits<qint64>::max();
    const Rows<qint64, qint64, qint64, QString, QString> row("value", "min", "max", "place", "note");
    row("above", 8, 0, 7, "100.00%", "value 8 is above max 7; use a value from 0 to 7 value-out-of-range");
    row("above by less than the precision of a double", most, 0, most - 1, "100.00%",
        "value 9223372036854775807 is above max 9223372036854775806; use a value from 0 to 9223372036854775806 "
        "value-out-of-range");
    row("below", -1, 0, 7, "0.00%", "value -1 is below min 0; use a value from 0 to 7 value-out-of-range");
    row("no range", 5, 7, 3, "", "min 7 is above max 3; exchange them min-above-max");
}

void HtmlPicturesTest::valueOutsideItsRangeIsAnImageWithTheReason()
{
    QFETCH(qint64, value);
    QFETCH(qint64, min);
    QFETCH(qint64, max);
    QFETCH(QString, place);
    QFETCH(QString, note);
    const PageTree page = pageOf(with(ranged(value, min, max, 1), &JobXml::ValueItem::SetValueNumericInt64));
    const PageNode *picture = byRole(page, "img", "scale");
    QCOMPARE(picture->attribute("aria-label"),
             QStringLiteral("level: %1, from %2 to %3, step 1").arg(value).arg(min).arg(max));
    QVERIFY(!picture->has("aria-valuenow"));
    QCOMPARE(markOf(picture), place);
    QCOMPARE(warningsOf(page), QStringList{note});
}

void HtmlPicturesTest::rangeOverDecadesIsLogarithmic()
{
    // From 10 to 10,000 are three decades, with two powers of ten between the ends; 100 is at a third.
    const PageTree page = pageOf(with(ranged(100, 10, 10000, 1), &JobXml::ValueItem::SetValueNumericInt64));
    const PageNode *meter = byRole(page, "meter", "scale");
    QCOMPARE(markOf(meter), QStringLiteral("33.33%"));
    QCOMPARE(meter->attribute("title"), QStringLiteral("logarithmic axis"));
    QCOMPARE(meter->attribute("aria-valuetext"), QStringLiteral("100, from 10 to 10000, step 1, logarithmic axis"));
    QCOMPARE(ticksOf(meter), (QStringList{QStringLiteral("33.33%"), QStringLiteral("66.67%")}));
}

void HtmlPicturesTest::rangeWithinDecadesOrWithZeroIsLinear()
{
    for (const auto &[min, max] : {std::pair<qint64, qint64>{1, 999}, {0, 1000000}, {-1, 1000000}}) {
        const PageTree page = pageOf(with(ranged(max, min, max, 1), &JobXml::ValueItem::SetValueNumericInt64));
        QVERIFY(!byRole(page, "meter", "scale")->has("title"));
    }
    const PageTree page = pageOf(with(ranged(500, 0, 1000000, 1), &JobXml::ValueItem::SetValueNumericInt64));
    QCOMPARE(markOf(byRole(page, "meter", "scale")), QStringLiteral("0.05%"));
}

void HtmlPicturesTest::nothingOnThePageHasTheRoleOfAControl()
{
    JobXml::ValueBoolean flag;
    flag.Setid(QStringLiteral("flag"));
    flag.Setvalue(true);
    TunerProperties document = with(flag, &JobXml::ValueItem::SetValueBoolean);
    JobXml::ValueItem item;
    item.SetValueNumericInt64(ranged(5, 0, 10, 1));
    document.GetComponent()[0].GetNode()[0].AppendValueItem(item);
    const PageTree page = pageOf(document);
    const PageNode *main = only(page.root().allTagged("main"));
    QSet<QString> roles;
    main->forEach([&](const PageNode &node) {
        if (node.has("role"))
            roles.insert(node.attribute("role"));
        for (const char *tag : {"input", "button", "select", "textarea"})
            QVERIFY2(node.tag != QLatin1String(tag), tag);
    });
    QCOMPARE(roles, (QSet<QString>{QStringLiteral("img"), QStringLiteral("meter")}));
    QCOMPARE(only(ofClass(page, "yes"))->wholeText(), QStringLiteral("true"));
}

void HtmlPicturesTest::digitGroupsAreOnlyVisual()
{
    const QByteArray page = html(withBandwidths({9999, 12345, -1234567.25, 1e300}), {}, QStringLiteral("file.xml"));
    QVERIFY(page.contains(">9999</span>"));
    QVERIFY(page.contains(">12<i>345</i></span>"));
    QVERIFY(page.contains(">-1<i>234</i><i>567</i>.25</span>"));
    QVERIFY(page.contains(">1e+300</span>"));
}

void HtmlPicturesTest::theOptionAtTheIndexIsMarked()
{
    JobXml::ValueSelection selection;
    selection.Setid(QStringLiteral("s"));
    selection.Setvalue(2);
    selection.Settext(QStringLiteral("two"));
    selection.Setindex(1);
    for (const double number : {1.0, 2.0}) {
        JobXml::SelectionItem item;
        item.Setname(number == 1.0 ? QStringLiteral("one") : QStringLiteral("two"));
        item.Setvalue(number);
        selection.AppendSelectionItem(item);
    }
    const PageTree page = pageOf(with(selection, &JobXml::ValueItem::SetValueSelection));
    const auto marked = page.root().all([](const PageNode &node) { return node.has("aria-current"); });
    QCOMPARE(only(marked)->tag, QStringLiteral("li"));
    QCOMPARE(only(marked)->values(), (QStringList{QStringLiteral("two"), QStringLiteral("2")}));
    QCOMPARE(warningsOf(page), QStringList());
}

void HtmlPicturesTest::optionThatDiffersFromTheChoiceIsReported()
{
    JobXml::SelectionItem item;
    item.Setname(QStringLiteral("one"));
    item.Setvalue(1);
    JobXml::ValueSelection selection;
    selection.Setid(QStringLiteral("s"));
    selection.Setvalue(2);
    selection.Settext(QStringLiteral("two"));
    selection.Setindex(0);
    selection.AppendSelectionItem(item);
    const auto warnings = [&] { return warningsOf(pageOf(with(selection, &JobXml::ValueItem::SetValueSelection))); };
    QCOMPARE(
        warnings(),
        (QStringList{QStringLiteral("value 2 differs from option 0, which has 1; use 1 option-differs"),
                     QStringLiteral("text 'two' differs from option 0, which has 'one'; use 'one' option-differs")}));
    selection.Setindex(-1);
    QCOMPARE(warnings(),
             QStringList{
                 QStringLiteral("no option has the index -1; there is 1 option; use the index 0 index-out-of-range")});
    selection.Setindex(1);
    QCOMPARE(warnings(),
             QStringList{
                 QStringLiteral("no option has the index 1; there is 1 option; use the index 0 index-out-of-range")});
}

void HtmlPicturesTest::theCurrentTextOfAListIsMarked()
{
    JobXml::ValueStringList list;
    list.Setid(QStringLiteral("l"));
    list.Setvalue(QStringLiteral("b"));
    for (const char *text : {"a", "b"}) {
        JobXml::StringItem item;
        item.Setvalue(QString::fromUtf8(text));
        list.AppendStringItem(item);
    }
    const auto marked = [&] {
        QStringList found;
        const PageTree page = pageOf(with(list, &JobXml::ValueItem::SetValueStringList));
        for (const PageNode *node : page.root().all([](const PageNode &each) { return each.has("aria-current"); }))
            found.append(node->tag + QLatin1Char(' ') + node->values().join(QLatin1Char(' ')));
        return found + warningsOf(page);
    };
    QCOMPARE(marked(), QStringList{QStringLiteral("li b")});
    list.Setvalue(QStringLiteral("c"));
    QCOMPARE(marked(), QStringList{QStringLiteral("value 'c' is not in the list; did you mean 'a'? value-not-listed")});
}

TEST_SUITE(HtmlPicturesTest)
#include "tst_HtmlPictures.moc"
