// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/Path.h>

#include "Documents.h"
#include "JsonDocument.h"
#include "Rows.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"

using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The page with the differences of two documents; its layout is tested in a browser.
class HtmlDifferencesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalDocumentsAreCalledEqual();
    void valuesAreSideBySideByObject_data();
    void valuesAreSideBySideByObject();
    void summaryCountsTheDifferences();
    void numbersHaveTheUnitsOfTheirDocuments();
    void addedAndRemovedComponentsAreShownWhole();
    void addedAndRemovedNodesAreShownWhole();
    void addedObjectsAreMarkedInTheirIdentifiers();
    void identifiersAreUniqueAndArePaths_data();
    void identifiersAreUniqueAndArePaths();
    void everyDifferenceIsOnThePage_data() { identifiersAreUniqueAndArePaths_data(); }
    void everyDifferenceIsOnThePage();
    void identifierOfALongPathHasPositions();
    void textsWithSlashesAndQuotesStayInTheirSteps();
    void manyDifferencesOpenOnlyTheFirstComponent();
    void textsAreNeverMarkup();
    void pageLoadsNothingFromElsewhere();
    void comparingChangesNothing();
};

namespace {

QByteArray bytesOf(const TunerProperties &first, const TunerProperties &second, qint64 *count = nullptr)
{
    QByteArray page;
    const qint64 differences = htmlOfDifferences(first, QStringLiteral("old.xml"), second, QStringLiteral("new.xml"),
                                                 [&](const QByteArray &piece) { page += piece; });
    if (count)
        *count = differences;
    return page;
}

PageTree comparisonOf(const TunerProperties &first, const TunerProperties &second)
{
    return PageTree(bytesOf(first, second));
}

TunerProperties fromJson(const QByteArray &members)
{
    return Document::fromBytes(jsonWith(members), QStringLiteral("a.json")).tuner;
}

QByteArray nodeOf(const QByteArray &items)
{
    return R"("Component": [{"type": "t", "name": "c", "Node": [{"id": "n", "ValueItem": [)" + items + "]}]}]";
}

QByteArray intItem(const char *id, const char *value)
{
    return R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": ")" + QByteArray(id) + R"(", "value": )" + value
        + "}}";
}

QByteArray unitItem(const char *unit)
{
    return R"({"ChoiceValueItem": "ValueString", "ValueString": {"id": "unit", "value": ")" + QByteArray(unit) + "\"}}";
}

/// "object: member: before -> after" of each row, where the object is the text of a heading or of a path.
QStringList rowsOf(const PageTree &page)
{
    QStringList rows;
    for (const PageNode *body : page.root().allTagged("tbody")) {
        const PageNode *table = body->parent;
        if (!table->isOfClass("changes"))
            continue;
        const PageNode *node = table->around([](const PageNode &outer) { return outer.isOfClass("node"); });
        const PageNode *card = table->around([](const PageNode &outer) { return outer.isOfClass("card"); });
        const QString object = node ? node->allTagged("h4").front()->wholeText()
            : card                  ? card->allTagged("h3").front()->wholeText()
                                    : QStringLiteral("Document");
        for (const PageNode *row : body->allTagged("tr")) {
            const PageNode *member = row->allTagged("th").front();
            const auto cells = row->allTagged("td");
            rows.append(object + QStringLiteral(": ") + member->wholeText().trimmed() + QStringLiteral(": ")
                        + cells.at(0)->wholeText().trimmed() + QStringLiteral(" -> ")
                        + cells.at(1)->wholeText().trimmed());
        }
    }
    return rows;
}

} // namespace

void HtmlDifferencesTest::equalDocumentsAreCalledEqual()
{
    qint64 count = -1;
    const PageTree page(bytesOf(aDocument(), aDocument(), &count));
    QCOMPARE(count, qint64(0));
    QCOMPARE(page.error(), QString());
    QCOMPARE(only(page.root().allTagged("title"))->wholeText(), QStringLiteral("Differences of old.xml and new.xml"));
    QCOMPARE(only(page.root().allTagged("h1"))->wholeText(), QStringLiteral("Differences of old.xml and new.xml"));
    QCOMPARE(only(ofClass(page, "fine"))->wholeText(), QStringLiteral("The documents are equal."));
    QVERIFY(ofClass(page, "card").empty());
    QVERIFY(page.root().allTagged("table").empty());
    QVERIFY(page.root().allTagged("nav").empty());
}

void HtmlDifferencesTest::valuesAreSideBySideByObject_data()
{
    const Rows<QByteArray, QByteArray, QStringList> row("first", "second", "rows");
    row("a number", R"("quantity": 1)", R"("quantity": 2)", {QStringLiteral("Document: quantity: 1 -> 2")});
    row("a long number", R"("MaxFFPDelay": 5000)", R"("MaxFFPDelay": 5000000)",
        {QStringLiteral("Document: MaxFFPDelay: 5000 -> 5000000")});
    row("set to the default", R"("type": "SCP")", R"("type": "SCP", "quantity": 1)",
        {QStringLiteral("Document: quantity: 1 not set -> 1")});
    row("null and empty", R"("name": null)", R"("name": "")", {QStringLiteral("Document: name: null -> empty")});
    row("a boolean", R"("HRPANSupported": true)", R"("HRPANSupported": false)",
        {QStringLiteral("Document: HRPANSupported: true -> false")});
    row("names", R"("StartupModes": {"StartupMode": ["Scan"]})", R"("StartupModes": {"StartupMode": ["Scan", 44]})",
        {QStringLiteral("Document: StartupModes/StartupMode: Scan -> Scan44")});
    row("an object that comes", R"("quantity": 1)", R"("quantity": 1, "StartupModes": {"StartupMode": ["Scan", "DF"]})",
        {QStringLiteral("Document: StartupModes added: \u2014 -> StartupModeScanDF")});
    row("an object that goes", R"("quantity": 1, "StartupModes": {"StartupMode": []})", R"("quantity": 1)",
        {QStringLiteral("Document: StartupModes removed: StartupModeempty -> \u2014")});
    row("a flag alone", R"("StartupModes": {"StartupMode": ["DF"]})",
        R"("unset": {"StartupModes": {"StartupMode": ["DF"]}})",
        {QStringLiteral("Document: StartupModes: (set) -> (not set)")});
    row("an item without lists", R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": 1}])",
        R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": 2}, {"Name": "y", "MaxBandwidth": 3}])",
        {QStringLiteral("Document: BandwidthSelection[Name=x]/MaxBandwidth: 1 -> 2"),
         QStringLiteral("Document: BandwidthSelection[Name=y] added at 2: \u2014 -> NameyMaxBandwidth3")});
    row("members before and after a list", R"("quantity": 1, "HRPANSupported": true, )" + nodeOf(intItem("i", "7")),
        R"("quantity": 2, "HRPANSupported": false, )" + nodeOf(intItem("i", "8")),
        {QStringLiteral("Document: quantity: 1 -> 2"), QStringLiteral("Document: HRPANSupported: true -> false"),
         QStringLiteral("Node[id=n]: ValueItem[id=i]/ValueInt/value: 7 -> 8")});
    row("a value that comes", nodeOf(intItem("i", "7")), nodeOf(intItem("i", "7") + ", " + intItem("j", "8")),
        {QStringLiteral("Node[id=n]: ValueItem[id=j] added at 2: \u2014 -> j ValueInt8")});
    row("a value that goes", nodeOf(intItem("i", "7") + ", " + intItem("j", "8")), nodeOf(intItem("j", "8")),
        {QStringLiteral("Node[id=n]: ValueItem[id=i] removed: i ValueInt7 -> \u2014")});
    row("values that are exchanged", nodeOf(intItem("i", "7") + ", " + intItem("j", "8")),
        nodeOf(intItem("j", "8") + ", " + intItem("i", "7")),
        {QStringLiteral("Node[id=n]: ValueItem[id=j] moved: position 2 -> position 1")});
    row("another kind of value", nodeOf(intItem("i", "7")),
        nodeOf(R"({"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "i", "value": 0.1}})"),
        {QStringLiteral("Node[id=n]: ValueItem[id=i]: ValueInt -> ValueFloat"),
         QStringLiteral("Node[id=n]: ValueItem[id=i]/ValueFloat added: \u2014 -> idivalue0.1"),
         QStringLiteral("Node[id=n]: ValueItem[id=i]/ValueInt removed: idivalue7 -> \u2014")});
    row("a kind that is nothing", nodeOf("{}"), nodeOf(R"({"ChoiceValueItem": 77})"),
        {QStringLiteral("Node[id=n]: ValueItem[1]: not set -> 77")});
    row("a component with another name", nodeOf(intItem("i", "7")), nodeOf(intItem("i", "7")).replace("\"c\"", "\"d\""),
        {QStringLiteral("c: renamed: Component[type=t,name=c] -> Component[type=t,name=d]")});
    row("a member of a component", nodeOf(""), nodeOf("").replace("\"c\"", R"("c", "optional": true)"),
        {QStringLiteral("c: optional: false not set -> true")});
}

void HtmlDifferencesTest::valuesAreSideBySideByObject()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QStringList, rows);
    const PageTree page = comparisonOf(fromJson(first), fromJson(second));
    QCOMPARE(page.error(), QString());
    QCOMPARE(rowsOf(page).join(QLatin1Char('\n')), rows.join(QLatin1Char('\n')));
}

void HtmlDifferencesTest::summaryCountsTheDifferences()
{
    TunerProperties first = aDocument(3);
    TunerProperties second = aDocument(3);
    second.Setquantity(4);
    second.AppendComponent(aComponent(QStringLiteral("another"), 1));
    JobXml::Component &component = second.GetComponent()[0];
    component.Setoptional(true);
    component.AppendNode(aNode(QStringLiteral("last"), 1));
    const PageTree page = comparisonOf(first, second);
    const PageNode *summary = only(
        page.root().all([](const PageNode &node) { return node.attribute("aria-label") == QLatin1String("Summary"); }));
    QStringList facts;
    for (const PageNode *fact : summary->allTagged("dt"))
        facts.append(fact->parent->allTagged("dt").front()->wholeText() + QLatin1Char(' ')
                     + fact->parent->allTagged("dd").front()->wholeText());
    QCOMPARE(facts,
             (QStringList{QStringLiteral("before old.xml"), QStringLiteral("after new.xml"), QStringLiteral("added 2"),
                          QStringLiteral("removed 0"), QStringLiteral("changed 2"), QStringLiteral("moved 0"),
                          QStringLiteral("renamed 0")}));
    QStringList cards;
    for (const PageNode *tallies : ofClass(page, "tallies")) {
        QStringList texts;
        for (const PageNode *tally : tallies->all([](const PageNode &node) { return node.isOfClass("tally"); }))
            texts.append(tally->wholeText());
        cards.append(texts.join(QStringLiteral(", ")));
    }
    QCOMPARE(cards, (QStringList{QStringLiteral("1 added, 1 changed"), QStringLiteral("added at 2, Node 1")}));
}

void HtmlDifferencesTest::numbersHaveTheUnitsOfTheirDocuments()
{
    const PageTree page = comparisonOf(fromJson(nodeOf(intItem("i", "98500000") + ", " + unitItem("Hz"))),
                                       fromJson(nodeOf(intItem("i", "7") + ", " + unitItem("dB"))));
    QCOMPARE(rowsOf(page).join(QLatin1Char('\n')),
             QStringLiteral("Node[id=n]: ValueItem[id=i]/ValueInt/value: 98.5\u00a0MHz 98500000\u00a0Hz -> 7\u00a0dB\n"
                            "Node[id=n]: ValueItem[id=unit]/ValueString/value: Hz -> dB"));
}

void HtmlDifferencesTest::addedAndRemovedComponentsAreShownWhole()
{
    const TunerProperties first = aDocument(1);
    TunerProperties second = aDocument(1);
    second.ResetComponent();
    JobXml::Component other = aComponent(QStringLiteral("Other"), 2);
    other.Settype(QStringLiteral("Mixer"));
    other.SetdisplayName(QStringLiteral("The other one"));
    other.GetNode()[0].Setid(QStringLiteral("a"));
    other.GetNode()[1].Setid(QStringLiteral("b"));
    other.GetNode()[0].GetValueItem()[0].GetValueInt().Setvalue(1000);
    other.GetNode()[1].GetValueItem()[0].GetValueInt().Setvalue(2000);
    second.AppendComponent(other);
    const PageTree page = comparisonOf(first, second);
    const auto cards = ofClass(page, "card");
    QCOMPARE(int(cards.size()), 2);
    QCOMPARE(only(cards[0]->all([](const PageNode &node) { return node.isOfClass("removed"); }))->wholeText(),
             QStringLiteral("removed"));
    QCOMPARE(cards[0]->allTagged("h3").front()->wholeText(), QStringLiteral("Preselector"));
    QCOMPARE(only(cards[1]->all([](const PageNode &node) { return node.isOfClass("added"); }))->wholeText(),
             QStringLiteral("added at 1"));
    QCOMPARE(cards[1]->allTagged("h3").front()->wholeText(), QStringLiteral("The other one"));
    QStringList nodes;
    for (const PageNode *node : cards[1]->all([](const PageNode &each) { return each.isOfClass("node"); }))
        nodes.append(node->values().join(QLatin1Char(' ')));
    QCOMPARE(nodes.size(), 2);
    QVERIFY2(nodes[0].startsWith(QLatin1String("a ")) && nodes[0].endsWith(QLatin1String(" 1000")),
             qPrintable(nodes[0]));
    QVERIFY2(nodes[1].startsWith(QLatin1String("b ")) && nodes[1].endsWith(QLatin1String(" 2000")),
             qPrintable(nodes[1]));
    QVERIFY(rowsOf(page).isEmpty());
}

void HtmlDifferencesTest::addedAndRemovedNodesAreShownWhole()
{
    const TunerProperties first = fromJson(nodeOf(intItem("i", "7") + ", " + unitItem("dB")));
    const TunerProperties second = fromJson(nodeOf("{}, {}, {}").replace("\"n\"", "\"m\""));
    const PageTree page = comparisonOf(first, second);
    QStringList shown;
    for (const PageNode *node : ofClass(page, "node"))
        shown.append(node->attribute("id") + QStringLiteral(" - ") + node->allTagged("h4").front()->wholeText()
                     + QStringLiteral(" - ") + node->values().join(QLatin1Char(' ')));
    QCOMPARE(shown.join(QLatin1Char('\n')),
             QStringLiteral("Component[type=t,name=c]/Node[id=n] - nremoved - n i 7 unit dB\n"
                            "%2BComponent[type=t,name=c]/Node[id=m] - madded at 1 - m"));
}

void HtmlDifferencesTest::addedObjectsAreMarkedInTheirIdentifiers()
{
    // The first node of the second document is new, the one that was there is the second one now.
    const auto nodes = [](const QByteArray &list) {
        return fromJson(R"("Component": [{"type": "t", "name": "c", "Node": [)" + list + "]}]");
    };
    const QByteArray old = R"({"ValueItem": [)" + intItem("i", "7") + "]}";
    const QByteArray other = R"({"ValueItem": [)" + intItem("j", "8") + "]}";
    const PageTree page = comparisonOf(nodes(old), nodes(other + ", " + old));
    QCOMPARE(only(ofClass(page, "node"))->attribute("id"), QStringLiteral("%2BComponent[type=t,name=c]/Node[1]"));
}

void HtmlDifferencesTest::identifiersAreUniqueAndArePaths_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<int>("changes");
    QTest::newRow("few changes") << 0 << 3;
    QTest::newRow("some") << 100 << 20;
    QTest::newRow("many") << 200 << 80;
}

void HtmlDifferencesTest::identifiersAreUniqueAndArePaths()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    int found = 0;
    for (int i = seed; i < seed + 40; ++i) {
        const TunerProperties first = randomDocument(i);
        const TunerProperties second = randomDocument(i, changes);
        const PageTree page = comparisonOf(first, second);
        QCOMPARE(page.error(), QString());
        QSet<QString> identifiers;
        for (const PageNode *item : page.root().all([](const PageNode &node) { return node.has("id"); })) {
            const QString id = item->attribute("id");
            QVERIFY2(!identifiers.contains(id), qPrintable(id));
            identifiers.insert(id);
            if (!item->isOfClass("card") && !item->isOfClass("node"))
                continue;
            ++found;
            const QString path = QString::fromUtf8(QByteArray::fromPercentEncoding(id.toLatin1()));
            const bool isAdded = path.startsWith(QLatin1Char('+'));
            QCOMPARE(Paths::find(isAdded ? second : first, path.mid(isAdded ? 1 : 0)).path, path.mid(isAdded ? 1 : 0));
        }
    }
    QVERIFY(found > 0);
}

void HtmlDifferencesTest::everyDifferenceIsOnThePage()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    int all = 0;
    for (int i = seed; i < seed + 40; ++i) {
        const TunerProperties first = randomDocument(i);
        const TunerProperties second = randomDocument(i + 1, changes);
        qint64 count = 0;
        const PageTree page(bytesOf(first, second, &count));
        QCOMPARE(page.error(), QString());
        // One row each, except for the components and nodes that are shown whole.
        int whole = 0;
        for (const PageNode *item :
             page.root().all([](const PageNode &node) { return node.isOfClass("card") || node.isOfClass("node"); })) {
            const PageNode *heading = item->allTagged(item->isOfClass("card") ? "summary" : "h4").front();
            for (const PageNode *tally : heading->all([](const PageNode &node) { return node.isOfClass("tally"); })) {
                const QString text = tally->wholeText();
                whole += text == QLatin1String("removed") || text.startsWith(QLatin1String("added at ")) ? 1 : 0;
            }
        }
        QCOMPARE(qint64(rowsOf(page).size() + whole), count);
        QCOMPARE(count, qint64(findDifferences(first, second).size()));
        all += int(count);
    }
    QVERIFY(all > 100);
}

void HtmlDifferencesTest::identifierOfALongPathHasPositions()
{
    // Each character is nine in a link.
    TunerProperties first = aDocument(2);
    first.GetComponent()[0].Setname(QString(50, QChar(0x6F22)));
    first.GetComponent()[0].GetNode()[1].Setid(QString(50, QChar(0x6F22)));
    TunerProperties second = first;
    second.GetComponent()[0].GetNode()[1].GetValueItem()[0].GetValueInt().Setvalue(99);
    const PageTree page = comparisonOf(first, second);
    QCOMPARE(only(ofClass(page, "card"))->attribute("id"),
             QStringLiteral("Component[type=Filter,name=") + QStringLiteral("%E6%BC%A2").repeated(50)
                 + QStringLiteral("]"));
    QCOMPARE(only(ofClass(page, "node"))->attribute("id"), QStringLiteral("Component[1]/Node[2]"));
}

void HtmlDifferencesTest::textsWithSlashesAndQuotesStayInTheirSteps()
{
    TunerProperties first = aDocument(1);
    first.GetComponent()[0].Setname(QStringLiteral("a/b\"/c\\"));
    first.GetComponent()[0].GetNode()[0].Setid(QStringLiteral("x/y\\\"]/z"));
    TunerProperties second = first;
    second.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueInt().Setvalue(99);
    const PageTree page = comparisonOf(first, second);
    QCOMPARE(only(ofClass(page, "where"))->wholeText(), QStringLiteral(R"(Component[type=Filter,name="a/b\"/c\\"])"));
    QCOMPARE(only(page.root().allTagged("h4"))->wholeText(), QStringLiteral(R"(Node[id="x/y\\\"]/z"])"));
    QCOMPARE(rowsOf(page).size(), 1);
    QVERIFY2(rowsOf(page).first().endsWith(QLatin1String("/ValueInt/value: 0 -> 99")),
             qPrintable(rowsOf(page).first()));
}

void HtmlDifferencesTest::manyDifferencesOpenOnlyTheFirstComponent()
{
    const auto open = [](int differences) {
        TunerProperties first = aDocument(differences - 1);
        first.AppendComponent(aComponent(QStringLiteral("second"), 1));
        TunerProperties second = first;
        for (JobXml::Component &component : second.GetComponent()) {
            for (JobXml::Node &node : component.GetNode())
                node.GetValueItem()[0].GetValueInt().Setvalue(1234);
        }
        QString states;
        const PageTree page = comparisonOf(first, second);
        for (const PageNode *card : ofClass(page, "card"))
            states += card->has("open") ? QLatin1Char('o') : QLatin1Char('c');
        return states;
    };
    QCOMPARE(open(100), QStringLiteral("oo"));
    QCOMPARE(open(101), QStringLiteral("oc"));
}

void HtmlDifferencesTest::textsAreNeverMarkup()
{
    const QString hostile = QStringLiteral("</title></style><script>alert(1)</script>\"'><img onerror=x> &amp; ]]>");
    TunerProperties first = aDocument(1);
    TunerProperties second = aDocument(1);
    second.Setname(hostile);
    second.GetComponent()[0].Setname(hostile);
    second.GetComponent()[0].GetNode()[0].Setid(hostile);
    second.AppendComponent(aComponent(hostile, 1));
    QByteArray page;
    htmlOfDifferences(first, hostile, second, hostile, [&](const QByteArray &piece) { page += piece; });
    QVERIFY(!page.contains("<img"));
    QCOMPARE(page.count("<script"), 1);
    QCOMPARE(page.count("</script"), 1);
    QCOMPARE(page.count("<style"), 1);
    const PageTree tree(page);
    QCOMPARE(tree.error(), QString());
    QCOMPARE(only(tree.root().allTagged("h1"))->values(), (QStringList{hostile, hostile}));
    QVERIFY(rowsOf(tree).contains(QStringLiteral("Document: name: not set -> ") + hostile));
}

void HtmlDifferencesTest::pageLoadsNothingFromElsewhere()
{
    const QString page = QString::fromUtf8(bytesOf(randomDocument(7), randomDocument(8)));
    const QRegularExpression foreign(QStringLiteral(
        "(src|srcset|data|poster|action|formaction|ping)=\"|href=\"[^#]|url\\(|@import|<link|<base|<iframe"));
    const auto match = foreign.match(page);
    QVERIFY2(!match.hasMatch(), qPrintable(page.mid(match.capturedStart() - 50, 100)));
    QCOMPARE(page.count(QStringLiteral("://")), 1); // the namespace
    QVERIFY(page.contains(QStringLiteral("default-src &#39;none&#39;")));
}

void HtmlDifferencesTest::comparingChangesNothing()
{
    for (int seed = 0; seed < 20; ++seed) {
        const TunerProperties first = randomDocument(seed);
        const TunerProperties second = randomDocument(seed, 20);
        TunerProperties copyOfFirst = first;
        TunerProperties copyOfSecond = second;
        const QString before = hex(snapshotOf(copyOfFirst)) + hex(snapshotOf(copyOfSecond));
        bytesOf(copyOfFirst, copyOfSecond);
        QCOMPARE(hex(snapshotOf(copyOfFirst)) + hex(snapshotOf(copyOfSecond)), before);
    }
}

TEST_SUITE(HtmlDifferencesTest)
#include "tst_HtmlDifferences.moc"
