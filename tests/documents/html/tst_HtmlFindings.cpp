// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Document.h>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"
#include "documents/html/ShownValues.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;
using JobXml::TunerProperties;

using namespace TunerDocuments;

/// Problems and warnings are on the page of a document, in a list and at their places.
class HtmlFindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyProblemIsShownAtItsObject_data() { addRandomDocuments(); }
    void everyProblemIsShownAtItsObject();
    void problemIsShownInsideItsObject();
    void problemIsShownWithItsExplanation();
    void whatTheReaderRefusesIsShownAtItsValueAndCounted();
    void findingOfAMemberIsShownBesideItsValue();
    void findingAboutAnyMemberIsShownAtItsObject_data() { addRandomDocuments(); }
    void findingAboutAnyMemberIsShownAtItsObject();
    void warningsAreCountedInTheSummaryAndOnTheirCard();
    void findingInClosedOptionsOpensThem();
    void listedFindingShowsItsPathAndItsLocation();
    void problemsOfTheFileAreAtTheTop();
    void problemsThatAreNotListedAreCounted();
    void withoutFindingsTheyAreLookedFor();
    void findingsAboutTheTextAreShownAtTheirPlaces();
    void validDocumentIsShownAsValid();
};

void HtmlFindingsTest::everyProblemIsShownAtItsObject()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    QFETCH(int, count);
    int found = 0;
    for (int i = seed; i < seed + count; ++i) {
        const TunerProperties document = randomDocument(i, changes);
        const PageTree page = pageOf(document);
        QStringList expected;
        const Findings findings = allFindingsOf(document);
        for (const Finding &finding : findings.listed() + findings.warnings()) {
            if (!finding.steps.isEmpty() || !finding.member.isNull())
                expected.append(finding.explained());
        }
        QStringList links;
        QStringList targets;
        page.root().forEach([&](const PageNode &node) {
            if (node.tag == QLatin1String("a"))
                links.append(node.attribute("href").mid(1) + QLatin1Char(' ') + node.wholeText());
            if (node.isOfClass("problem"))
                targets.append(node.attribute("id") + QLatin1Char(' ') + only(node.allTagged("bdi"))->wholeText());
        });
        QCOMPARE(links.size(), expected.size());
        QCOMPARE(sorted(targets), sorted(links));
        for (int link = 0; link < links.size(); ++link)
            QCOMPARE(links[link].section(QLatin1Char(' '), 1), expected[link]);
        found += expected.size();
    }
    QVERIFY(found > 0);
}

void HtmlFindingsTest::problemIsShownInsideItsObject()
{
    TunerProperties document = aDocument(3);
    document.SetValidate(false);
    document.GetComponent()[0].GetNode()[1].GetValueItem()[0].GetValueInt().Resetvalue();
    document.GetBandwidthSelection()[0].ResetName();
    const PageTree page = pageOf(document);
    const auto problems = page.root().all([](const PageNode &node) { return node.isOfClass("problem"); });
    QCOMPARE(int(problems.size()), 3);
    const auto isRow = [](const PageNode &node) { return node.tag == QLatin1String("table"); };
    QCOMPARE(problems[0]->wholeText(), QStringLiteral("Problem: BandwidthSelection: Please set Name properly."));
    QVERIFY(problems[0]->around(isRow));
    QCOMPARE(problems[1]->wholeText(),
             QStringLiteral("Problem: ValueItem:Check failed. Mandatory data of the member "
                            "(choice element) m_valueInt is not set."));
    QCOMPARE(problems[2]->wholeText(), QStringLiteral("Problem: ValueInt: Please set value properly."));
    for (const PageNode *problem : {problems[1], problems[2]}) {
        const PageNode *node = problem->around([](const PageNode &outer) { return outer.isOfClass("node"); });
        QVERIFY(node);
        QCOMPARE(node->allTagged("h4").front()->values(), QStringList{QStringLiteral("node1")});
    }
    const auto counts =
        page.root().all([](const PageNode &node) { return node.isOfClass("tally") && node.isOfClass("bad"); });
    QCOMPARE(only(counts)->wholeText(), QStringLiteral("2 problems"));
}

void HtmlFindingsTest::problemIsShownWithItsExplanation()
{
    const QByteArray xml =
        "<TunerProperties Version=\"1.1\" type=\"scp\" baseresource=\"b\"><Component type=\"t\" name=\"n\" "
        "optional=\"\"><Node id=\"i\"><ValueItem><ValueInt id=\"v\" value=\"1\"/></ValueItem></Node>"
        "</Component></TunerProperties>";
    Findings findings;
    const Document document = Document::fromBytes(xml, QStringLiteral("file.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    const PageTree page(html(document.tuner, findings, QStringLiteral("file.xml")));
    const QString unknownName =
        QStringLiteral("nknown name 'scp'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'SCP'?");
    const QString missingType = QStringLiteral("TunerProperties: Please set type properly. U") + unknownName;
    QStringList listed;
    for (const PageNode *entry : only(ofClass(page, "problems"))->allTagged("li"))
        listed.append(entry->allTagged("bdi").front()->wholeText());
    QCOMPARE(listed.join(QLatin1Char('\n')),
             QStringLiteral("enum is not valid (classname=TunerProperties,membername=m_type): u") + unknownName
                 + QStringLiteral("\nPlease set a value or a default for the boolean 'optional' in 'Component'. '' is "
                                  "neither true nor false\n")
                 + missingType);
    QStringList shown;
    for (const PageNode *problem : ofClass(page, "problem"))
        shown.append(problem->wholeText());
    listed.swapItemsAt(1, 2); // on the page, the members of the document come first
    QCOMPARE(shown.join(QLatin1Char('\n')), QStringLiteral("Problem: ") + listed.join(QStringLiteral("\nProblem: ")));
}

void HtmlFindingsTest::whatTheReaderRefusesIsShownAtItsValueAndCounted()
{
    const QByteArray xml = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b" hwProcessing="">
  <Component type="t" name="a" optional="true"><Node id="n"><ValueItem><ValueInt id="i" value="7"/></ValueItem></Node>
  </Component>
  <Component type="t" name="b" optional="true"><Node id="m"><ValueItem>
    <ValueBoolean id="s" value=""/>
  </ValueItem></Node></Component>
</TunerProperties>)";
    Findings findings;
    const Document document = Document::fromBytes(xml, QStringLiteral("file.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    const PageTree page(html(document.tuner, findings, QStringLiteral("file.xml")));
    QStringList cards;
    for (const PageNode *card : ofClass(page, "card")) {
        QStringList texts;
        for (const PageNode *node :
             card->all([](const PageNode &one) { return one.isOfClass("bad") || one.isOfClass("problem"); }))
            texts.append(node->wholeText());
        cards.append(card->attribute("id") + QStringLiteral(": ") + texts.join(QStringLiteral(" | ")));
    }
    QCOMPARE(cards.join(QLatin1Char('\n')),
             QStringLiteral("Component[type=t,name=a]: \n"
                            "Component[type=t,name=b]: 1 problem | Problem: Please set a value or a default for the "
                            "boolean 'value' in 'ValueBoolean'. '' is neither true nor false"));
    // Both have a link to their place, and the reader's problem of the document is shown at its member.
    QStringList links;
    for (const PageNode *link : only(ofClass(page, "problems"))->allTagged("a"))
        links.append(link->attribute("href"));
    QCOMPARE(links, QStringList({QStringLiteral("#problem-1"), QStringLiteral("#problem-2")}));
    const auto isMember = [](const PageNode &node) { return node.has("data-member"); };
    const auto memberAround = [&](const PageNode *node) { return node->around(isMember)->attribute("data-member"); };
    QCOMPARE(memberAround(ofClass(page, "problem").front()), QStringLiteral("hwProcessing"));
}

void HtmlFindingsTest::findingOfAMemberIsShownBesideItsValue()
{
    // Of the document, of a component, and of a value, whose picture it follows.
    QVector<Finding> warnings;
    const auto add = [&](const QVector<JobXml::Step> &steps, const char *member, const char *message) {
        Finding finding;
        finding.kind = Finding::Kind::Warning;
        finding.steps = steps;
        finding.member = QString::fromUtf8(member);
        finding.message = QString::fromUtf8(message);
        finding.rule = QStringLiteral("some-rule");
        warnings.append(finding);
    };
    const JobXml::Step component{QStringLiteral("Component"), 0};
    add({}, "quantity", "too many");
    add({component}, "displayName", "not displayed");
    add({component, {QStringLiteral("Node"), 1}, {QStringLiteral("ValueItem"), 0}, {QStringLiteral("ValueInt"), -1}},
        "value", "not round");
    Findings findings;
    findings.addWarnings(warnings, warnings.size());
    const PageTree page(html(aDocument(), findings, QStringLiteral("file.xml")));
    const auto shown = ofClass(page, "problem");
    QCOMPARE(int(shown.size()), 3);
    QStringList places;
    for (const PageNode *finding : shown) {
        QCOMPARE(only(finding->allTagged("code"))->wholeText(), QStringLiteral("some-rule"));
        const PageNode *place = finding->around(
            [](const PageNode &node) { return node.tag == QLatin1String("dd") || node.isOfClass("value"); });
        QVERIFY(place);
        const PageNode *fact = place->tag == QLatin1String("dd") ? place->parent : place;
        places.append(fact->attribute("data-member") + QStringLiteral(": ") + finding->wholeText());
    }
    QCOMPARE(places,
             (QStringList{QStringLiteral("quantity: Warning: too many some-rule"),
                          QStringLiteral("displayName: Warning: not displayed some-rule"),
                          QStringLiteral(": Warning: not round some-rule")}));
}

namespace {

/// A warning about each member of the object and of those below it, as far as they hold anything.
void warnOfEverything(const DataObject &object, const QVector<JobXml::Step> &steps, QVector<Finding> &warnings)
{
    JobXml::visit(object, [&](const MemberView &member) {
        Finding finding;
        finding.kind = Finding::Kind::Warning;
        finding.steps = steps;
        finding.member = member.GetName();
        finding.message = QStringLiteral("about %1").arg(warnings.size());
        finding.rule = QStringLiteral("any");
        warnings.append(finding);
        const bool isAlternative = member.GetKind() == MemberKind::Alternative;
        if (isAlternative && !member.IsChosen() && !member.IsSet()
            && (member.GetSize() == 0 || !isKept(member.GetChild())))
            return;
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        for (int i = 0; i < member.GetSize(); ++i)
            warnOfEverything(member.GetChild(i), steps + QVector<JobXml::Step>{{member.GetName(), isList ? i : -1}},
                             warnings);
    });
}

} // namespace

void HtmlFindingsTest::findingAboutAnyMemberIsShownAtItsObject()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    for (int i = seed; i < seed + 20; ++i) {
        const TunerProperties document = randomDocument(i, changes);
        QVector<Finding> warnings;
        warnOfEverything(document, {}, warnings);
        Findings findings;
        findings.addWarnings(warnings, warnings.size());
        const PageTree page(html(document, findings, QStringLiteral("file.xml")));
        QCOMPARE(page.error(), QString());
        QStringList missing;
        for (const Finding &finding : qAsConst(warnings))
            missing.append(finding.message);
        for (const PageNode *shown : ofClass(page, "problem"))
            QVERIFY(missing.removeOne(only(shown->allTagged("bdi"))->wholeText()));
        QStringList where;
        for (const Finding &finding : qAsConst(warnings)) {
            if (!missing.contains(finding.message))
                continue;
            QString path;
            for (const JobXml::Step &step : finding.steps)
                path += step.member + QStringLiteral(" %1/").arg(step.index);
            where.append(path + finding.member);
        }
        QCOMPARE(where.join(QLatin1Char('\n')), QString());
    }
}

void HtmlFindingsTest::warningsAreCountedInTheSummaryAndOnTheirCard()
{
    TunerProperties document = aDocument(30);
    JobXml::ValueNumericInt ranged;
    ranged.Setid(QStringLiteral("level"));
    ranged.Setvalue(8);
    ranged.Setmin(0);
    ranged.Setmax(7);
    ranged.Setstep(1);
    JobXml::ValueItem item;
    item.SetValueNumericInt(ranged);
    JobXml::Component second = aComponent(QStringLiteral("second"), 2);
    for (JobXml::Node &node : second.GetNode())
        node.SetValueItem({item});
    document.AppendComponent(second);
    const auto cardTallies = [&] {
        QStringList texts;
        const PageTree page = pageOf(document);
        for (const PageNode *card : ofClass(page, "card")) {
            QStringList tallies = {card->has("open") ? QStringLiteral("open") : QStringLiteral("closed")};
            for (const PageNode *tally : card->all([](const PageNode &node) { return node.isOfClass("tally"); }))
                tallies.append(tally->wholeText());
            texts.append(tallies.join(QStringLiteral(", ")));
        }
        texts.append(only(ofClass(page, "problems"))->allTagged("h2").front()->wholeText());
        return texts;
    };
    QCOMPARE(cardTallies(),
             (QStringList{QStringLiteral("open, Node 30"), QStringLiteral("closed, 2 warnings, Node 2"),
                          QStringLiteral("No problems, 2 warnings")}));
    document.SetValidate(false);
    document.GetComponent()[1].Resetname();
    QCOMPARE(cardTallies(),
             (QStringList{QStringLiteral("open, Node 30"), QStringLiteral("closed, 1 problem, 2 warnings, Node 2"),
                          QStringLiteral("1 problem, 2 warnings")}));
}

void HtmlFindingsTest::findingInClosedOptionsOpensThem()
{
    JobXml::ValueStringList list;
    list.Setid(QStringLiteral("l"));
    list.Setvalue(QStringLiteral("1"));
    list.SetValidate(false);
    for (int i = 0; i < 20; ++i) {
        JobXml::StringItem item;
        item.Setvalue(QString::number(i));
        list.AppendStringItem(item);
    }
    TunerProperties document = aDocument(1);
    document.SetValidate(false);
    JobXml::ValueItem &item = document.GetComponent()[0].GetNode()[0].GetValueItem()[0];
    item.SetValueStringList(list);
    const auto fold = [&] {
        const PageTree page = pageOf(document);
        const PageNode *options = only(ofClass(page, "fold"));
        return options->allTagged("summary").front()->wholeText()
            + (options->has("open") ? QStringLiteral(", open") : QStringLiteral(", closed"));
    };
    QCOMPARE(fold(), QStringLiteral("20 options, closed"));
    item.GetValueStringList().GetStringItem()[19].Resetvalue();
    QCOMPARE(fold(), QStringLiteral("20 options, open"));
}

void HtmlFindingsTest::listedFindingShowsItsPathAndItsLocation()
{
    Finding finding;
    finding.kind = Finding::Kind::Warning;
    finding.steps = {{QStringLiteral("Component"), 0}};
    finding.path = QStringLiteral("Component[1]");
    finding.message = QStringLiteral("twice");
    finding.rule = QStringLiteral("duplicate");
    finding.line = 4;
    finding.column = 7;
    finding.suggestion = QStringLiteral("remove one");
    Findings findings;
    findings.addWarnings({finding}, 1);
    const PageTree page(html(aDocument(), findings, QStringLiteral("file.xml")));
    QCOMPARE(only(only(ofClass(page, "problems"))->allTagged("li"))->wholeText(),
             QStringLiteral("twice; remove one duplicateComponent[1], line 4, column 7"));
    QCOMPARE(only(page.root().allTagged("a"))->attribute("href"), QStringLiteral("#problem-1"));
}

namespace {

/// A problem of the document itself.
JobXml::Problem problem(const char *message)
{
    return {{}, QString::fromUtf8(message)};
}

} // namespace

void HtmlFindingsTest::problemsOfTheFileAreAtTheTop()
{
    Findings findings(2);
    JobXml::Problem unknown = problem("Unknown Tag '<b>' in 'TunerProperties'.");
    unknown.line = 3;
    unknown.column = 14;
    findings.add(unknown);
    findings.add(problem("TunerProperties: Please set type properly."));
    const PageTree page(html(aDocument(), findings, QStringLiteral("file.xml")));
    const PageNode *section = only(page.root().all([](const PageNode &node) { return node.isOfClass("problems"); }));
    QCOMPARE(section->allTagged("h2").front()->wholeText(), QStringLiteral("2 problems"));
    const auto items = section->allTagged("li");
    QCOMPARE(int(items.size()), 2);
    QCOMPARE(items[0]->wholeText(), QStringLiteral("Unknown Tag '<b>' in 'TunerProperties'.line 3, column 14"));
    QCOMPARE(items[1]->wholeText(), QStringLiteral("TunerProperties: Please set type properly."));
    QVERIFY(page.root().allTagged("a").empty());
}

void HtmlFindingsTest::problemsThatAreNotListedAreCounted()
{
    Findings findings(1);
    for (int i = 0; i < 3; ++i)
        findings.add(problem("TunerProperties: Please set type properly."));
    const PageTree page(html(aDocument(), findings, QStringLiteral("file.xml")));
    const PageNode *section = only(page.root().all([](const PageNode &node) { return node.isOfClass("problems"); }));
    QCOMPARE(section->allTagged("h2").front()->wholeText(), QStringLiteral("3 problems"));
    QCOMPARE(only(section->allTagged("p"))->wholeText(),
             QStringLiteral("Only the first is listed here and at its object."));
    QCOMPARE(int(section->allTagged("li").size()), 1);
}

void HtmlFindingsTest::withoutFindingsTheyAreLookedFor()
{
    TunerProperties document = aDocument(1);
    document.SetValidate(false);
    document.Resetbaseresource();
    for (int i = 0; i < 102; ++i) // the first one has the name of another
        document.AppendBandwidthSelection(aBandwidth(100));
    QByteArray bytes;
    html(document, QStringLiteral("file.xml"), [&](const QByteArray &piece) { bytes += piece; });
    const PageTree page(bytes);
    const PageNode *section = only(ofClass(page, "problems"));
    QCOMPARE(section->allTagged("h2").front()->wholeText(), QStringLiteral("1 problem, 102 warnings"));
    QCOMPARE(only(section->allTagged("p"))->wholeText(),
             QStringLiteral("The first 101 are listed here and at their objects."));
    const auto items = section->allTagged("li");
    QCOMPARE(int(items.size()), 101);
    QCOMPARE(items[0]->wholeText(), QStringLiteral("TunerProperties: Please set baseresource properly."));
    QVERIFY2(items[1]->wholeText().contains(QLatin1String(" duplicate-bandwidth")), qPrintable(items[1]->wholeText()));
}

void HtmlFindingsTest::findingsAboutTheTextAreShownAtTheirPlaces()
{
    const QByteArray xml = "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\" quantiti=\"2\">\n"
                           "<Component type=\"t\" name=\"n\" optional=\"no\"><Node id=\"i\">\n"
                           "<ValueItem><ValueFloat id=\"level\" value=\"1.005\"/></ValueItem>\n"
                           "<!-- tunerproperties-lint-disable not-a-number -->\n"
                           "<ValueItem><ValueInt id=\"count\" value=\"many\"/></ValueItem>\n"
                           "</Node></Component></TunerProperties>";
    const Document document = Document::fromBytes(xml, QStringLiteral("file.xml"));
    Findings findings;
    lint(document, xml, findings);
    const PageTree page(html(document.tuner, findings, QStringLiteral("file.xml")));
    QStringList shown;
    for (const PageNode *finding : ofClass(page, "problem")) {
        const PageNode *fact = finding->parent->parent;
        const PageNode *value = finding->around([](const PageNode &node) { return node.isOfClass("value"); });
        shown.append((value ? value->values().join(QLatin1Char(' ')) : fact->attribute("data-member"))
                     + QStringLiteral(" - ") + finding->wholeText());
    }
    QCOMPARE(
        shown.join(QLatin1Char('\n')),
        QStringLiteral("optional - Warning: 'no' of optional is not a boolean; it is read as true; use 'false' "
                       "not-a-boolean\n"
                       "level 1.005 - Warning: '1.005' of value has more than two decimals; it is written as 1.00; "
                       "keep it in JSON, or round it lost-decimals"));
    const PageNode *section = only(ofClass(page, "problems"));
    QCOMPARE(section->allTagged("h2").front()->wholeText(), QStringLiteral("No problems, 3 warnings"));
    const auto items = section->allTagged("li");
    QCOMPARE(int(items.size()), 3);
    QCOMPARE(items[0]->wholeText(),
             QStringLiteral("unknown attribute 'quantiti' of TunerProperties; it is ignored; did you mean "
                            "'quantity'? unknown-attributeline 1, column 60"));
    QCOMPARE(only(ofClass(page, "doubtful"))->wholeText(), QStringLiteral("2 warnings"));
}

void HtmlFindingsTest::validDocumentIsShownAsValid()
{
    const PageTree page = pageOf(aDocument());
    QCOMPARE(only(page.root().all([](const PageNode &node) { return node.isOfClass("fine"); }))->wholeText(),
             QStringLiteral("Validation found no problems."));
}

TEST_SUITE(HtmlFindingsTest)
#include "tst_HtmlFindings.moc"
