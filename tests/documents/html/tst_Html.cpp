// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"
#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;
using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The content of a page; layout and behavior are tested in a browser.
class HtmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberIsShownOnceWithItsValue_data();
    void everyMemberIsShownOnceWithItsValue();
    void everythingInJsonIsOnThePage_data() { everyMemberIsShownOnceWithItsValue_data(); }
    void everythingInJsonIsOnThePage();
    void alternativeThatIsNotChosenIsMarked();
    void everyProblemIsShownAtItsObject_data() { everyMemberIsShownOnceWithItsValue_data(); }
    void everyProblemIsShownAtItsObject();
    void problemIsShownInsideItsObject();
    void problemIsShownWithItsExplanation();
    void findingOfAMemberIsShownBesideItsValue();
    void findingAboutAnyMemberIsShownAtItsObject_data() { everyMemberIsShownOnceWithItsValue_data(); }
    void findingAboutAnyMemberIsShownAtItsObject();
    void warningsAreCountedInTheSummaryAndOnTheirCard();
    void findingInClosedOptionsOpensThem();
    void listedFindingShowsItsPathAndItsLocation();
    void problemsOfTheFileAreAtTheTop();
    void problemsThatAreNotListedAreCounted();
    void withoutFindingsTheyAreLookedFor();
    void findingsAboutTheTextAreShownAtTheirPlaces();
    void validDocumentIsShownAsValid();
    void textsAreNeverMarkup();
    void invisibleCharactersAreShownAsSigns();
    void pageLoadsNothingFromElsewhere();
    void policyAllowsOnlyTheSourcesOfThePage();
    void longDocumentsOpenOnlyTheFirstComponent();
    void missingListsAreShown();
    void showingChangesNothing();
    void identifierOfEveryNodeIsItsPath();
    void identifiersHaveOnlyCharactersThatALinkKeeps();
    void identifierOfALongNameIsItsPosition();
    void everyColorForBothThemesFollowsOneForOlderBrowsers();
};

namespace {

bool isNull(const QVariant &value)
{
    return value.type() == QVariant::String && value.toString().isNull();
}

QStringList shownValues(const MemberView &member)
{
    const QVariant value = member.GetValue();
    if (value.type() == QVariant::List) {
        QStringList texts;
        for (const QVariant &entry : value.toList())
            texts.append(isNull(entry) ? QStringLiteral("null") : entry.toString());
        return texts.isEmpty() && member.IsSet() ? QStringList{QStringLiteral("empty")} : texts;
    }
    if (isNull(value))
        return member.IsSet() || !isNull(member.GetDefaultValue()) ? QStringList{QStringLiteral("null")}
                                                                   : QStringList();
    if (value.type() == QVariant::String)
        return {value.toString().isEmpty() ? QStringLiteral("empty") : value.toString()};
    return {ValueText::ofValue(value)};
}

QString described(const QString &name, const QStringList &values, bool isSet)
{
    return name + QStringLiteral(" = ") + values.join(QStringLiteral(" | "))
        + (isSet ? QString() : QStringLiteral(" (not set)"));
}

bool isKept(const DataObject &object)
{
    bool result = false;
    JobXml::visit(object, [&](const MemberView &member) {
        const bool isDefault = shownValues(member)
            == (isNull(member.GetDefaultValue()) ? QStringList()
                                                 : QStringList{ValueText::ofValue(member.GetDefaultValue())});
        result = result || member.IsSet() || member.GetSize() != 0 || (member.GetValue().isValid() && !isDefault);
    });
    return result;
}

/// The expected content of a page for an object and everything below it. For a choice, that is its alternative, and the
/// others as far as they hold anything.
void collect(const DataObject &object, QStringList &values, QStringList &objects)
{
    bool hasChosen = false;
    JobXml::visit(object, [&](const MemberView &member) {
        hasChosen = hasChosen || (member.GetKind() == MemberKind::Alternative && member.IsChosen());
    });
    JobXml::visit(object, [&](const MemberView &member) {
        switch (member.GetKind()) {
        case MemberKind::Choice:
            if (!hasChosen && !isNull(member.GetValue()))
                values.append(described(member.GetName(), shownValues(member), member.IsSet()));
            return;
        case MemberKind::Object:
        case MemberKind::ObjectList:
        case MemberKind::Alternative:
            if (!member.IsChosen() && !member.IsSet() && (member.GetSize() == 0 || !isKept(member.GetChild())))
                return;
            objects.append(member.GetName());
            for (int i = 0; i < member.GetSize(); ++i)
                collect(member.GetChild(i), values, objects);
            return;
        default:
            values.append(described(member.GetName(), shownValues(member), member.IsSet()));
        }
    });
}

/// The actual content. `objectNames` are the names of members that are objects.
void collect(const PageNode &page, const QStringList &objectNames, QStringList &values, QStringList &objects)
{
    page.forEach([&](const PageNode &node) {
        if (!node.has("data-member"))
            return;
        const QString name = node.attribute("data-member");
        if (objectNames.contains(name)) {
            objects.append(name);
            return;
        }
        const bool isUnset = !node.all([](const PageNode &each) { return each.isOfClass("unset"); }).empty();
        values.append(described(name, node.values(), !isUnset));
    });
}

QString sorted(QStringList lines)
{
    lines.sort();
    return lines.join(QLatin1Char('\n'));
}

} // namespace

void HtmlTest::everyMemberIsShownOnceWithItsValue_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<int>("changes");
    QTest::addColumn<int>("count");
    QTest::newRow("as made") << 0 << 0 << 60;
    QTest::newRow("changed") << 1000 << 6 << 60;
    QTest::newRow("changed much") << 2000 << 60 << 40;
}

void HtmlTest::everyMemberIsShownOnceWithItsValue()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    QFETCH(int, count);
    for (int i = seed; i < seed + count; ++i) {
        const TunerProperties document = randomDocument(i, changes);
        const PageTree page = pageOf(document);
        QCOMPARE(page.error(), QString());
        QStringList values;
        QStringList objects;
        collect(document, values, objects);
        QStringList shown;
        QStringList shownObjects;
        collect(page.root(), objects, shown, shownObjects);
        const QString all = sorted(shown);
        for (const QString &each : qAsConst(values))
            QVERIFY2(shown.removeOne(each), qPrintable(each));
        QCOMPARE(shown.join(QLatin1Char('\n')), QString());
        QCOMPARE(all, sorted(values));
        QCOMPARE(sorted(shownObjects), sorted(objects));
    }
}

namespace {

/// A number or a text of a document in JSON, as the page shows it.
QString shownLeaf(const QJsonValue &value)
{
    if (value.isNull())
        return QStringLiteral("null");
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (value.isDouble())
        return ValueText::exactly(value.toDouble());
    const QString text = value.toString();
    if (text == QLatin1String("NaN"))
        return QStringLiteral("nan");
    if (text.endsWith(QLatin1String("Infinity")))
        return text.startsWith(QLatin1Char('-')) ? QStringLiteral("-inf") : QStringLiteral("inf");
    return text.isEmpty() ? QStringLiteral("empty") : text;
}

/// "name = value" for every member in JSON that has a value, wherever it is.
void collectLeaves(const QString &name, const QJsonValue &value, QStringList &leaves)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (member.key() != QLatin1String("Version") && member.key() != QLatin1String("ChoiceValueItem"))
                collectLeaves(member.key(), member.value(), leaves);
        }
    } else if (value.isArray() && name == QLatin1String("StartupMode")) {
        QStringList modes;
        for (const QJsonValue &mode : value.toArray())
            modes.append(shownLeaf(mode));
        leaves.append(name + QStringLiteral(" = ")
                      + (modes.isEmpty() ? QStringLiteral("empty") : modes.join(QStringLiteral(" | "))));
    } else if (value.isArray()) {
        for (const QJsonValue &item : value.toArray())
            collectLeaves(name, item, leaves);
    } else {
        leaves.append(name + QStringLiteral(" = ") + shownLeaf(value));
    }
}

} // namespace

void HtmlTest::everythingInJsonIsOnThePage()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    QFETCH(int, count);
    int found = 0;
    for (int i = seed; i < seed + count; ++i) {
        TunerProperties document = randomDocument(i, changes);
        QByteArray json;
        try {
            json = Document(document).toBytes(Form::Json, {});
        } catch (const DocumentError &) { // half of a surrogate pair, which JSON cannot hold
            continue;
        }
        QStringList leaves;
        collectLeaves(QString(), QJsonDocument::fromJson(json).object(), leaves);
        const PageTree page = pageOf(document);
        page.root().forEach([&](const PageNode &node) {
            if (!node.has("data-member"))
                return;
            const QString member = node.attribute("data-member") + QStringLiteral(" = ");
            const QStringList shown = node.values();
            ++found;
            if (leaves.removeOne(member + shown.join(QStringLiteral(" | "))))
                return;
            // QJsonDocument has doubles, which have other digits than floats, and no sign of zero.
            bool isNumber = false;
            const float number = shown.value(0).toFloat(&isNumber);
            const auto same = std::find_if(leaves.begin(), leaves.end(), [&](const QString &leaf) {
                bool isAlsoNumber = false;
                const float other = leaf.mid(member.size()).toFloat(&isAlsoNumber);
                return leaf.startsWith(member) && isNumber && isAlsoNumber && !(other < number) && !(other > number);
            });
            if (same != leaves.end())
                leaves.erase(same);
        });
        QCOMPARE(leaves.join(QLatin1Char('\n')), QString());
    }
    QVERIFY2(found > 10 * count, qPrintable(QString::number(found)));
}

void HtmlTest::alternativeThatIsNotChosenIsMarked()
{
    TunerProperties document = aDocument(1);
    document.SetValidate(false);
    JobXml::ValueItem &item = document.GetComponent()[0].GetNode()[0].GetValueItem()[0];
    JobXml::ValueString text;
    text.Setid(QStringLiteral("left"));
    text.Setvalue(QStringLiteral("over"));
    item.SetValueString(text);
    item.GetValueInt().Setvalue(7); // chooses it
    const PageTree page = pageOf(document);
    const PageNode *other = only(ofClass(page, "other"));
    QCOMPARE(other->attribute("data-member"), QStringLiteral("ValueString"));
    QCOMPARE(only(other->allTagged("h5"))->wholeText(), QStringLiteral("ValueString not chosen"));
    QCOMPARE(other->values(), (QStringList{QStringLiteral("left"), QStringLiteral("over")}));
    // The chosen one is not marked, and alternatives that were never used are not shown.
    QCOMPARE(int(ofClass(page, "unchosen").size()), 1);
}

void HtmlTest::everyProblemIsShownAtItsObject()
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

void HtmlTest::problemIsShownInsideItsObject()
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

void HtmlTest::problemIsShownWithItsExplanation()
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
    // What the reader has refused is not in the document, so it is in the list only.
    QCOMPARE(only(ofClass(page, "problem"))->wholeText(), QStringLiteral("Problem: ") + missingType);
}

void HtmlTest::findingOfAMemberIsShownBesideItsValue()
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

void HtmlTest::findingAboutAnyMemberIsShownAtItsObject()
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

void HtmlTest::warningsAreCountedInTheSummaryAndOnTheirCard()
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

void HtmlTest::findingInClosedOptionsOpensThem()
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

void HtmlTest::listedFindingShowsItsPathAndItsLocation()
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

void HtmlTest::problemsOfTheFileAreAtTheTop()
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

void HtmlTest::problemsThatAreNotListedAreCounted()
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

void HtmlTest::withoutFindingsTheyAreLookedFor()
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

void HtmlTest::findingsAboutTheTextAreShownAtTheirPlaces()
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

void HtmlTest::validDocumentIsShownAsValid()
{
    const PageTree page = pageOf(aDocument());
    QCOMPARE(only(page.root().all([](const PageNode &node) { return node.isOfClass("fine"); }))->wholeText(),
             QStringLiteral("Validation found no problems."));
}

void HtmlTest::textsAreNeverMarkup()
{
    const QString hostile = QStringLiteral("</title></style><script>alert(1)</script>\"'><img onerror=x> &amp; ]]>");
    TunerProperties document = aDocument();
    document.Setname(hostile);
    const QByteArray page = html(document, {}, hostile);
    QVERIFY(!page.contains("<img"));
    QCOMPARE(page.count("<script"), 1);
    QCOMPARE(page.count("</script"), 1);
    QCOMPARE(page.count("<style"), 1);
    QVERIFY(page.contains("<title>&lt;/title&gt;&lt;/style&gt;&lt;script&gt;alert(1)&lt;/script&gt;&quot;&#39;&gt;"
                          "&lt;img onerror=x&gt; &amp;amp; ]]&gt;</title>"));
    const PageTree tree(page);
    QCOMPARE(only(tree.root().allTagged("h1"))->values(), QStringList{hostile});
    QCOMPARE(only(tree.root().allTagged("title"))->wholeText(), hostile);
}

void HtmlTest::invisibleCharactersAreShownAsSigns()
{
    TunerProperties document = aDocument();
    QString text = QStringLiteral("a\nb\tc\rd");
    for (const QChar sign : {QChar(0), QChar(0x1B), QChar(0x85), QChar(0x2028), QChar(0x202E), QChar(0x2066),
                             QChar(0xD800), QChar(0xFFFE)})
        text += sign;
    text += QStringLiteral("\U0001FFFE\U0001F600\u05D0\u200F");
    document.Setname(text);
    const QByteArray page = html(document, {}, QStringLiteral("file.xml"));
    QVERIFY(page.contains("<bdi>a<span class=\"sign\" title=\"U+000A\">\\n</span><br/>"
                          "b<span class=\"sign\" title=\"U+0009\">\\t</span>"
                          "c<span class=\"sign\" title=\"U+000D\">\\r</span>"
                          "d<span class=\"sign\" title=\"U+0000\">U+0000</span>"
                          "<span class=\"sign\" title=\"U+001B\">U+001B</span>"
                          "<span class=\"sign\" title=\"U+0085\">U+0085</span>"
                          "<span class=\"sign\" title=\"U+2028\">U+2028</span>"
                          "<span class=\"sign\" title=\"U+202E\">U+202E</span>"
                          "<span class=\"sign\" title=\"U+2066\">U+2066</span>"
                          "<span class=\"sign\" title=\"U+D800\">U+D800</span>"
                          "<span class=\"sign\" title=\"U+FFFE\">U+FFFE</span>"
                          "<span class=\"sign\" title=\"U+1FFFE\">U+1FFFE</span>"
                          "\xF0\x9F\x98\x80\xD7\x90\xE2\x80\x8F</bdi>"));
    QVERIFY(page.contains("<title>a\\nb\\tc\\rdU+0000U+001BU+0085U+2028U+202EU+2066U+D800U+FFFEU+1FFFE"));
}

void HtmlTest::pageLoadsNothingFromElsewhere()
{
    const QString page = QString::fromUtf8(html(randomDocument(7), {}, QStringLiteral("file.xml")));
    const QRegularExpression foreign(QStringLiteral(
        "(src|srcset|data|poster|action|formaction|ping)=\"|href=\"[^#]|url\\(|@import|<link|<base|<iframe"
        "|<object|<embed|\\bfetch\\(|XMLHttpRequest|WebSocket|importScripts|import\\("));
    const auto match = foreign.match(page);
    QVERIFY2(!match.hasMatch(), qPrintable(page.mid(match.capturedStart() - 50, 100)));
    QCOMPARE(page.count(QStringLiteral("://")), 1);
    QVERIFY(page.contains(QStringLiteral("xmlns=\"http://www.w3.org/1999/xhtml\"")));
}

void HtmlTest::policyAllowsOnlyTheSourcesOfThePage()
{
    const QByteArray page = html(aDocument(), {}, QStringLiteral("file.xml"));
    const auto hashOf = [&](const QByteArray &tag) {
        const int start = page.indexOf('<' + tag + '>') + tag.size() + 2;
        const QByteArray content = page.mid(start, page.indexOf("</" + tag + '>') - start);
        return QCryptographicHash::hash(content, QCryptographicHash::Sha256).toBase64();
    };
    QVERIFY(page.contains("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src &#39;none&#39;; "
                          "style-src &#39;sha256-"
                          + hashOf("style") + "&#39;; script-src &#39;sha256-" + hashOf("script")
                          + "&#39;; base-uri &#39;none&#39;; form-action &#39;none&#39;\"/>"));
    const PageTree tree(page);
    for (const PageNode *node : tree.root().all([](const PageNode &) { return true; })) {
        for (auto attribute = node->attributes.begin(); attribute != node->attributes.end(); ++attribute)
            QVERIFY2(attribute.key() != QLatin1String("style") && !attribute.key().startsWith(QLatin1String("on")),
                     qPrintable(attribute.key()));
    }
}

void HtmlTest::longDocumentsOpenOnlyTheFirstComponent()
{
    const auto open = [](const TunerProperties &document) {
        QString states;
        const PageTree page = pageOf(document);
        for (const PageNode *card : page.root().all([](const PageNode &node) { return node.isOfClass("card"); }))
            states += card->has("open") ? QLatin1Char('o') : QLatin1Char('c');
        return states;
    };
    TunerProperties document = aDocument(12);
    document.AppendComponent(aComponent(QStringLiteral("second"), 12));
    QCOMPARE(open(document), QStringLiteral("oo"));
    document.AppendComponent(aComponent(QStringLiteral("third"), 1));
    QCOMPARE(open(document), QStringLiteral("occ"));
}

void HtmlTest::missingListsAreShown()
{
    TunerProperties document = aDocument();
    document.SetValidate(false);
    document.ResetBandwidthSelection();
    document.GetComponent()[0].ResetNode();
    JobXml::Component component;
    component.SetValidate(false);
    component.AppendNode(aNode(QStringLiteral("n"), 0));
    component.GetNode()[0].SetValueItem({});
    document.AppendComponent(component);
    const PageTree page = pageOf(document);
    QStringList headings;
    for (const char *tag : {"h2", "h5"}) {
        for (const PageNode *heading : page.root().allTagged(tag))
            headings.append(heading->wholeText());
    }
    QCOMPARE(headings,
             (QStringList{QStringLiteral("5 problems"), QStringLiteral("StartupModes"),
                          QStringLiteral("BandwidthSelection 0 not set"), QStringLiteral("Component 2"),
                          QStringLiteral("Node 0 not set"), QStringLiteral("ValueItem 0")}));
}

void HtmlTest::showingChangesNothing()
{
    for (int seed = 0; seed < 20; ++seed) {
        TunerProperties document = randomDocument(seed, 20);
        const QString before = hex(snapshotOf(document));
        html(document, {}, QStringLiteral("file.xml"));
        QCOMPARE(hex(snapshotOf(document)), before);
    }
}

void HtmlTest::identifierOfEveryNodeIsItsPath()
{
    for (int seed = 0; seed < 30; ++seed) {
        TunerProperties document = randomDocument(seed, 20);
        document.SetValidate(false);
        // The same identity twice, and a text that needs quotes.
        document.AppendComponent(aComponent(QStringLiteral("a b, \"c\"/[d] \u00e4 %41 \n"), 2));
        document.AppendComponent(aComponent(QStringLiteral("a b, \"c\"/[d] \u00e4 %41 \n"), 2));
        const PageTree page = pageOf(document);
        QStringList expected;
        JobXml::visit(document, [&](const MemberView &member) {
            if (member.GetName() != QLatin1String("Component"))
                return;
            const QStringList components = Paths::stepsTo(member);
            for (int i = 0; i < member.GetSize(); ++i) {
                expected.append(components[i]);
                JobXml::visit(member.GetChild(i), [&](const MemberView &nodes) {
                    if (nodes.GetName() != QLatin1String("Node"))
                        return;
                    for (const QString &step : Paths::stepsTo(nodes))
                        expected.append(components[i] + QLatin1Char('/') + step);
                });
            }
        });
        QStringList shown;
        for (const PageNode *item :
             page.root().all([](const PageNode &node) { return node.isOfClass("card") || node.isOfClass("node"); })) {
            shown.append(QString::fromUtf8(QByteArray::fromPercentEncoding(item->attribute("id").toLatin1())));
            QCOMPARE(Paths::find(document, shown.last()).path, shown.last());
        }
        QCOMPARE(shown, expected);
        QSet<QString> identifiers;
        for (const PageNode *item : page.root().all([](const PageNode &node) { return node.has("id"); })) {
            QVERIFY2(!identifiers.contains(item->attribute("id")), qPrintable(item->attribute("id")));
            identifiers.insert(item->attribute("id"));
        }
    }
}

void HtmlTest::identifiersHaveOnlyCharactersThatALinkKeeps()
{
    TunerProperties document = aDocument(1);
    document.GetComponent()[0].Setname(QStringLiteral("<a href='#'> \u00e4%20&\"\\"));
    const PageTree page = pageOf(document);
    QCOMPARE(only(ofClass(page, "card"))->attribute("id"),
             QStringLiteral("Component[type=Filter,name=%22%3Ca%20href%3D%27%23%27%3E%20%C3%A4%2520%26%5C%22%5C%5C%22]")
                 .replace(QStringLiteral("%3D"), QStringLiteral("=")));
}

void HtmlTest::identifierOfALongNameIsItsPosition()
{
    // Each character is nine in a link, and each node has the identifier of its component in its own.
    const auto identifiers = [](int length) {
        TunerProperties document = aDocument(1);
        document.GetComponent()[0].Setname(QString(length, QChar(0x6F22)));
        const PageTree page = pageOf(document);
        return QStringList{only(ofClass(page, "card"))->attribute("id"), only(ofClass(page, "node"))->attribute("id")};
    };
    const QString start = QStringLiteral("Component[type=Filter,name=");
    const QString name = QStringLiteral("%E6%BC%A2").repeated(41);
    QCOMPARE(identifiers(41),
             (QStringList{start + name + QLatin1Char(']'), start + name + QStringLiteral("]/Node[id=node0]")}));
    QCOMPARE(identifiers(42),
             (QStringList{QStringLiteral("Component[1]"), QStringLiteral("Component[1]/Node[id=node0]")}));
}

void HtmlTest::everyColorForBothThemesFollowsOneForOlderBrowsers()
{
    const QString page = QString::fromUtf8(html(aDocument(), {}, QStringLiteral("file.xml")));
    // A custom property takes any value, so the colors of both themes are where only browsers read that know them.
    const int query = page.indexOf(QStringLiteral("@supports (color: light-dark(#000000, #ffffff)) {"));
    QVERIFY(query > 0);
    const int end = page.indexOf(QStringLiteral("\n}\n"), query);
    const QRegularExpression both(QStringLiteral("(--[a-z-]+): light-dark\\((#[0-9a-f]{6}), #[0-9a-f]{6}\\);"));
    int count = 0;
    for (auto match = both.globalMatch(page); match.hasNext(); ++count) {
        const auto color = match.next();
        QVERIFY(color.capturedStart() > query && color.capturedEnd() < end);
        const int plain = page.indexOf(color.captured(1) + QStringLiteral(": ") + color.captured(2) + QLatin1Char(';'));
        QVERIFY2(plain > 0 && plain < query, qPrintable(color.captured(1)));
    }
    QCOMPARE(count + 1, page.left(page.indexOf(QStringLiteral("</style>"))).count(QStringLiteral("light-dark(#")));
    QVERIFY(count >= 15);
}

TEST_SUITE(HtmlTest)
#include "tst_Html.moc"
