// SPDX-License-Identifier: MIT
#include <ctime>
#include <limits>

#include <QFile>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Path.h>

#include "Encoded.h"
#include "Suites.h"
#include "documents/RandomChanges.h"
#include "documents/lint/Cases.h"

using namespace JobXml;
using namespace TunerDocuments;

class LintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void examplesDeserveTheirWarnings();
    void documentInMemoryIsExaminedWithoutText();
    void unprintedNumbersAreExaminedInOtherForms();
    void alternativeThatIsSetButNotChosenIsFound();
    void onlyTheFirstFindingsAreVisitedAndAllAreCounted();
    void firstFindingsAreThoseOfTheText();
    void findingsAreInTheOrderOfTheText();
    void findingHasStepsAndMember();
    void ruleMayBeAnError();
    void optionsForLossesFindOnlyWhatReadingLoses();
    void unknownRuleInTheOptionsThrows_data();
    void unknownRuleInTheOptionsThrows();
    void commentDisablesRulesInItsElementOnly();
    void commentsBeforeTheSameElementAddUp();
    void locationsMatchThoseOfAnEditor_data();
    void locationsMatchThoseOfAnEditor();
    void lastElementOfAMemberIsItsPlace();
    void contentOfAnUnknownElementInTheRootBelongsToTheRoot();
    void elementsAreSkippedAsReadersDo();
    void wrongTextHasNoEffect();
    void findingsKeepWarningsBesideProblems();
    void problemsReceiveTheirPlaces();
    void randomDocumentsStayUnchanged();
    void findingsOfRandomDocumentsAreAtTheirPlaces();
    void timeIsProportionalToTheSize_data();
    void timeIsProportionalToTheSize();
};

namespace {

const QString fileName = QStringLiteral("a.xml");

struct Result
{
    QStringList lines;
    QVector<Finding> findings;
    qint64 count = 0;
};

Result lintOf(const Document &document, const QByteArray &text, const LintOptions &options = {})
{
    Result result;
    const auto visitor = [&](const Finding &finding) {
        result.findings.append(finding);
        result.lines.append(finding.text(fileName));
    };
    result.count = lint(document, text, visitor, options);
    return result;
}

Result lintOf(const QByteArray &xml, const LintOptions &options = {})
{
    return lintOf(Document::fromBytes(xml, fileName), xml, options);
}

QString lines(const QByteArray &xml)
{
    return lintOf(xml).lines.join(QLatin1Char('\n'));
}

/// A document whose only value is this.
template <class Value>
TunerProperties withValue(void (ValueItem::*set)(const Value &), const Value &value)
{
    TunerProperties tuner;
    tuner.SetValidate(false);
    ValueItem item;
    item.SetValidate(false);
    (item.*set)(value);
    Node node;
    node.SetValidate(false);
    node.Setid(QStringLiteral("n"));
    node.AppendValueItem(item);
    Component component;
    component.SetValidate(false);
    component.Settype(QStringLiteral("t"));
    component.Setname(QStringLiteral("c"));
    component.AppendNode(node);
    tuner.AppendComponent(component);
    return tuner;
}

QStringList linesWithoutText(const TunerProperties &tuner)
{
    QStringList result;
    const Document document(tuner, Form::Json);
    lint(document, [&](const Finding &finding) { result.append(finding.text(fileName)); });
    return result;
}

} // namespace

void LintTest::examplesDeserveTheirWarnings()
{
    QStringList found;
    for (const char *name : {"directionfinder", "ffp", "mcp", "receiver", "scp"}) {
        QFile file(QStringLiteral(EXAMPLES_DIR "/%1.xml").arg(QString::fromUtf8(name)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray xml = file.readAll();
        lint(Document::fromBytes(xml, fileName), xml,
             [&](const Finding &finding) { found.append(finding.text(QString::fromUtf8(name))); });
    }
    // The other documents spell booleans as programs write them.
    QCOMPARE(found,
             QStringList{QStringLiteral(
                 "ffp:105:45: Component[type=EmissionDetector,name=detector]/Node[id=shortEmissions]/"
                 "ValueItem[id=tracked]/ValueBoolean/value: 'yes' of value is not a boolean; it is read as true; use "
                 "'true' [not-a-boolean]")});
}

void LintTest::documentInMemoryIsExaminedWithoutText()
{
    ValueNumericFloat value;
    value.SetValidate(false);
    value.Setid(QStringLiteral("v"));
    value.Setvalue(std::numeric_limits<float>::infinity());
    value.Setmin(0);
    value.Setmax(1);
    value.Setstep(std::numeric_limits<float>::quiet_NaN());
    QCOMPARE(linesWithoutText(withValue(&ValueItem::SetValueNumericFloat, value)),
             (QStringList{QStringLiteral("a.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=v]/ValueNumericFloat/"
                                         "value: value inf is above max 1; use a value from 0 to 1 "
                                         "[value-out-of-range]"),
                          QStringLiteral("a.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=v]/ValueNumericFloat/"
                                         "step: step nan is not a positive number [step-not-positive]")}));
}

void LintTest::unprintedNumbersAreExaminedInOtherForms()
{
    ValueFloat value;
    value.SetValidate(false);
    value.Setid(QStringLiteral("v"));
    value.Setvalue(0.2567F);
    QCOMPARE(linesWithoutText(withValue(&ValueItem::SetValueFloat, value)),
             QStringList{QStringLiteral("a.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=v]/ValueFloat/value: "
                                        "value 0.2567 has more than two decimals; XML and records hold 0.26; keep it "
                                        "in JSON, or round it [lost-decimals]")});
    for (const float kept : {0.1F, -123456.78F, 1e30F, 16777217.0F, 0.0F, std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()}) {
        value.Setvalue(kept);
        QCOMPARE(linesWithoutText(withValue(&ValueItem::SetValueFloat, value)), QStringList());
    }
}

void LintTest::alternativeThatIsSetButNotChosenIsFound()
{
    TunerProperties tuner = withValue(&ValueItem::SetValueInt, ValueInt());
    ValueItem &item = tuner.GetComponent()[0].GetNode()[0].GetValueItem()[0];
    item.GetValueInt().Setid(QStringLiteral("i"));
    item.GetValueString().Setid(QStringLiteral("s"));
    QCOMPARE(linesWithoutText(tuner),
             QStringList{QStringLiteral("a.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=s]/ValueInt: ValueInt "
                                        "has data, but ValueString is chosen; remove one of them [unchosen-data]")});
    item.ResetChoiceValueItem();
    item.ResetValueString();
    QCOMPARE(
        linesWithoutText(tuner),
        QStringList{QStringLiteral("a.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[1]/ValueInt: ValueInt has "
                                   "data, but nothing is chosen; set ChoiceValueItem to 'ValueInt', or remove ValueInt "
                                   "[unchosen-data]")});
}

void LintTest::onlyTheFirstFindingsAreVisitedAndAllAreCounted()
{
    QByteArray nodes;
    for (int i = 0; i < 10; ++i)
        nodes += "<Node id=\"n\" x=\"\"/>\n";
    const QByteArray xml = inDocument("<Component type=\"t\" name=\"c\" optional=\"1\">\n" + nodes + "</Component>");
    const Result all = lintOf(xml);
    QCOMPARE(all.count, qint64(19)); // ten attributes, and all nodes but the first
    QCOMPARE(all.findings.size(), 19);
    for (const int most : {0, 1, 7, 19, 20}) {
        LintOptions options;
        options.setMost(most);
        const Result some = lintOf(xml, options);
        QCOMPARE(some.count, qint64(19));
        QCOMPARE(some.lines, all.lines.mid(0, most));
    }
}

void LintTest::firstFindingsAreThoseOfTheText()
{
    // The walks find some of them after others that are further down: repeated values when they are replaced, and
    // duplicates when all items are known.
    const QByteArray bandwidth =
        "<BandwidthSelection><Name>a</Name><MaxBandwidth>0</MaxBandwidth></BandwidthSelection>\n";
    const QByteArray item =
        "<ValueItem><ValueInt id=\"a\" value=\"x\"/>y<ValueInt id=\"b\" z=\"\" value=\"1\"/></ValueItem>\n";
    const QByteArray xml =
        inDocument("<MaxFFPDelay>1</MaxFFPDelay>\n" + bandwidth.repeated(3)
                   + "<Component type=\"t\" name=\"c\" optional=\"1\"><Node id=\"n\">\n" + item.repeated(3)
                   + "</Node></Component>\n<name>a</name><MaxFFPDelay>2</MaxFFPDelay><name>b</name>");
    const Result all = lintOf(xml);
    QCOMPARE(all.findings.size(), 21);
    for (int most = 0; most <= all.findings.size() + 1; ++most) {
        LintOptions options;
        options.setMost(most);
        const Result some = lintOf(xml, options);
        QCOMPARE(some.count, qint64(21));
        QCOMPARE(some.lines, all.lines.mid(0, most));
    }
}

void LintTest::findingsAreInTheOrderOfTheText()
{
    const QByteArray xml = inDocument("<MaxFFPDelay>x</MaxFFPDelay>\n"
                                      "<Component type=\"t\" name=\"c\" optional=\"1\" a=\"\"/>\n"
                                      "<BandwidthSelection><Name>a</Name><MaxBandwidth>-1</MaxBandwidth>\n"
                                      "<b/></BandwidthSelection><Component type=\"t\" name=\"c\" optional=\"ja\"/>");
    QStringList rules;
    for (const Finding &finding : lintOf(xml).findings)
        rules.append(QStringLiteral("%1:%2 %3").arg(finding.line).arg(finding.column).arg(finding.rule));
    QCOMPARE(rules,
             (QStringList{QStringLiteral("2:1 not-a-number"), QStringLiteral("3:43 unknown-attribute"),
                          QStringLiteral("4:35 bandwidth-not-positive"), QStringLiteral("5:1 unknown-element"),
                          QStringLiteral("5:37 duplicate-component"), QStringLiteral("5:55 not-a-boolean")}));
}

void LintTest::findingHasStepsAndMember()
{
    const QByteArray xml = inValue("<ValueInt id=\"i\" value=\"x\"/>");
    const Document document = Document::fromBytes(xml, fileName);
    const Finding finding = lintOf(document, xml).findings.value(0);
    QCOMPARE(finding.kind, Finding::Kind::Warning);
    QCOMPARE(finding.rule, QStringLiteral("not-a-number"));
    QCOMPARE(finding.member, QStringLiteral("value"));
    QCOMPARE(finding.path, QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt"));
    QCOMPARE(finding.place(), finding.path + QStringLiteral("/value"));
    QCOMPARE(finding.steps.size(), 4);
    QCOMPARE(finding.steps.last().member, QStringLiteral("ValueInt"));
    QCOMPARE(finding.steps.last().index, -1);
    QCOMPARE(Paths::find(document.tuner, finding.place()).member.GetValue(), QVariant(0));
}

void LintTest::ruleMayBeAnError()
{
    LintOptions options;
    options.setErrors({QStringLiteral("not-a-number")});
    const QByteArray xml = inValue("<ValueInt id=\"i\" value=\"x\" y=\"\"/>");
    const Result result = lintOf(xml, options);
    QCOMPARE(result.findings.size(), 2);
    QVERIFY(result.findings[0].isError);
    QVERIFY(!result.findings[1].isError);
}

void LintTest::optionsForLossesFindOnlyWhatReadingLoses()
{
    const Result result = lintOf("<TunerProperties Version='1.2' quantity='99999999999' hwProcessing='on'><a/>"
                                 "<BandwidthSelection b='1'><Name>w</Name><MaxBandwidth>-0.125</MaxBandwidth>"
                                 "</BandwidthSelection><MaxFFPDelay>soon</MaxFFPDelay></TunerProperties>",
                                 LintOptions::lostByReading());
    QStringList rules;
    for (const Finding &finding : result.findings)
        rules.append(finding.rule);
    QCOMPARE(rules.join(QLatin1Char(' ')),
             QStringLiteral("number-out-of-range not-a-boolean unknown-element unknown-attribute not-a-number"));
}

void LintTest::unknownRuleInTheOptionsThrows_data()
{
    QTest::addColumn<bool>("isDisabled");
    QTest::newRow("disabled") << true;
    QTest::newRow("errors") << false;
}

void LintTest::unknownRuleInTheOptionsThrows()
{
    QFETCH(bool, isDisabled);
    LintOptions options;
    if (isDisabled)
        options.setDisabled({QStringLiteral("lost-decimal")});
    else
        options.setErrors({QStringLiteral("lost-decimal")});
    try {
        lint(Document(), {}, options);
        QFAIL("nothing was thrown");
    } catch (const std::invalid_argument &e) {
        QCOMPARE(e.what(), "unknown rule 'lost-decimal'; did you mean 'lost-decimals'?");
    }
}

void LintTest::commentDisablesRulesInItsElementOnly()
{
    const QByteArray node =
        "<Node id=\"a\" x=\"\"><ValueItem><ValueInt id=\"i\" y=\"\" value=\"z\"/></ValueItem></Node>\n";
    const QByteArray xml =
        inDocument("<Component type=\"t\" name=\"c\" optional=\"1\">\n" + node
                   + "<!-- tunerproperties-lint-disable unknown-attribute -->\n" + node + node + "</Component>");
    QStringList found;
    for (const Finding &finding : lintOf(xml).findings)
        found.append(QStringLiteral("%1 %2").arg(finding.line).arg(finding.rule));
    QCOMPARE(found,
             (QStringList{QStringLiteral("3 unknown-attribute"), QStringLiteral("3 unknown-attribute"),
                          QStringLiteral("3 not-a-number"), QStringLiteral("5 duplicate-node"),
                          QStringLiteral("5 not-a-number"), QStringLiteral("6 duplicate-node"),
                          QStringLiteral("6 unknown-attribute"), QStringLiteral("6 unknown-attribute"),
                          QStringLiteral("6 not-a-number")}));
}

void LintTest::commentsBeforeTheSameElementAddUp()
{
    const QByteArray node = "<Node id=\"a\" x=\"\"/>";
    const QByteArray comments = "<!-- tunerproperties-lint-disable unknown-attribute -->\n<!-- other -->"
                                "<!--tunerproperties-lint-disable  lost-decimals,\n duplicate-node-->";
    const auto component = [](const QByteArray &content) {
        return inDocument("<Component type=\"t\" name=\"c\" optional=\"1\">" + content + "</Component>");
    };
    QCOMPARE(lines(component(node + comments + "\r\n\t " + node)).count(QLatin1Char('\n')), 0); // only the first node
    QCOMPARE(lines(component(node + comments + "text" + node)).count(QLatin1Char('\n')), 5); // with the text
}

void LintTest::locationsMatchThoseOfAnEditor_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    const auto add = [](const char *name, const QByteArray &bytes, int line, int column) {
        QTest::newRow(name) << bytes << line << column;
    };
    const QString text =
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"\u00E4\U0001F600\" x=\"\"/>");
    add("UTF-8", text.toUtf8(), 1, 62);
    add("byte order mark", "\xEF\xBB\xBF" + text.toUtf8(), 1, 62);
    add("UTF-16", encoded("UTF-16", text), 1, 62);
    const QString declaration = QStringLiteral("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n");
    const QString latin = QString(text).remove(QStringLiteral("\U0001F600"));
    add("Latin 1", (declaration + latin).toLatin1(), 2, 60);
    for (const char *lineEnd : {"\n", "\r", "\r\n"})
        add(QByteArray(lineEnd).toHex().constData(),
            "<TunerProperties Version=\"1.1\"" + QByteArray(lineEnd) + QByteArray(lineEnd) + " x=\"\" type=\"SCP\"/>",
            3, 2);
}

void LintTest::locationsMatchThoseOfAnEditor()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, line);
    QFETCH(int, column);
    const Result result = lintOf(bytes);
    QCOMPARE(result.findings.size(), 1);
    QCOMPARE(result.findings[0].rule, QStringLiteral("unknown-attribute"));
    QCOMPARE(result.findings[0].line, line);
    QCOMPARE(result.findings[0].column, column);
}

void LintTest::lastElementOfAMemberIsItsPlace()
{
    const QByteArray xml =
        inValue("<ValueNumericInt id=\"i\" value=\"1\" min=\"0\" max=\"3\" step=\"1\">\n<value>2</value>\n"
                "<value>4</value>\n</ValueNumericInt>");
    const QString value = QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value: ");
    QCOMPARE(lines(xml),
             QStringLiteral("a.xml:4:25: %1'1' of value has no effect, since '2' follows; remove one of them "
                            "[repeated-member]\n"
                            "a.xml:5:1: %1'2' of value has no effect, since '4' follows; remove one of them "
                            "[repeated-member]\n"
                            "a.xml:6:1: %1value 4 is above max 3; use a value from 0 to 3 [value-out-of-range]")
                 .arg(value));
}

void LintTest::contentOfAnUnknownElementInTheRootBelongsToTheRoot()
{
    const QByteArray unknown = "<group><BandwidthSelection><Name>a</Name>\n<MaxBandwidth>0</MaxBandwidth>"
                               "</BandwidthSelection><MaxFFPDelay>x</MaxFFPDelay></group>";
    QCOMPARE(
        lines(inDocument(unknown)),
        QStringLiteral("a.xml:2:1: unknown element 'group' in TunerProperties; what is in it counts as if it were "
                       "in TunerProperties; expected name, type, baseresource, connectableResources, "
                       "quantity, parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, "
                       "HRPANSupported or Component [unknown-element]\n"
                       "a.xml:3:1: BandwidthSelection[Name=a]/MaxBandwidth: bandwidth 0 is not a positive, finite "
                       "number [bandwidth-not-positive]\n"
                       "a.xml:3:52: MaxFFPDelay: 'x' of MaxFFPDelay is not a number; it is read as 0 "
                       "[not-a-number]"));
    // In an older document, and in all other objects, it is skipped.
    const QStringList older = lintOf("<TunerProperties Version=\"1.0\">" + unknown + "</TunerProperties>").lines;
    QCOMPARE(older.size(), 2);
    QVERIFY2(older[1].contains(QStringLiteral("it is skipped")), qPrintable(older[1]));
}

void LintTest::elementsAreSkippedAsReadersDo()
{
    // Skipping ends at the next tag of the same name, even if that is nested; then the object is read on.
    const QByteArray xml = inValue("<ValueInt id=\"i\">\n<a><a>\n<value>x</value></a></a></ValueInt>");
    QCOMPARE(Document::fromBytes(xml, fileName)
                 .tuner.GetComponent()[0]
                 .GetNode()[0]
                 .GetValueItem()[0]
                 .GetValueInt()
                 .IsvalueSet(),
             true);
    QCOMPARE(lines(xml),
             QStringLiteral("a.xml:5:1: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt: unknown element "
                            "'a' in ValueInt; it is skipped; expected id or value [unknown-element]\n"
                            "a.xml:6:1: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt/value: 'x' of "
                            "value is not a number; it is read as 0 [not-a-number]"));
    QCOMPARE(lines(inValue("<ValueInt id=\"i\"><a><b>\n<value>x</value></b></a></ValueInt>")).count(QLatin1Char('\n')),
             0);
}

void LintTest::wrongTextHasNoEffect()
{
    const QByteArray xml = inValue("<ValueInt id=\"i\" value=\"x\"/>");
    const Document document = Document::fromBytes(xml, fileName);
    for (const char *text : {"", "x", "<a/>", "<TunerProperties>", "<TunerProperties><Component/></TunerProperties>"}) {
        for (const Finding &finding : lintOf(document, text).findings)
            QVERIFY2(finding.rule == QLatin1String("reset-by-version"), text);
    }
    Document json = document;
    json.form = Form::Json;
    QCOMPARE(lintOf(json, xml).count, qint64(0));
}

void LintTest::findingsKeepWarningsBesideProblems()
{
    const QByteArray xml = inDocument("<Component type=\"t\" name=\"c\" optional=\"ja\" a=\"\" b=\"\"/>");
    Findings findings(2);
    const Document document = Document::fromBytes(xml, fileName, {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, xml, findings);
    QCOMPARE(findings.count(), qint64(1));
    QCOMPARE(findings.warnings().size(), 2);
    QCOMPARE(findings.warningCount(), qint64(3));
    QCOMPARE(findings.lines(fileName).mid(1).join(QLatin1Char('\n')),
             (QStringList{QStringLiteral("a.xml:2:30: Component[type=t,name=c]/optional: 'ja' of optional is not a "
                                         "boolean; it is read as true; use 'true' or 'false' [not-a-boolean]"),
                          QStringLiteral("a.xml:2:44: Component[type=t,name=c]: unknown attribute 'a' of Component; it "
                                         "is ignored; expected type, name, displayName or optional "
                                         "[unknown-attribute]"),
                          QStringLiteral("a.xml: 3 warnings; only the first 2 are listed")}
                  .join(QLatin1Char('\n'))));
}

void LintTest::problemsReceiveTheirPlaces()
{
    const QByteArray node = "<Node/>\n";
    const QByteArray xml = inDocument("<StartupModes/><BandwidthSelection><MaxBandwidth>1</MaxBandwidth>"
                                      "</BandwidthSelection>\n<Component name=\"c\" optional=\"\">\n"
                                      + node + node + "</Component><Component/>");
    Findings findings(100);
    const Document document = Document::fromBytes(xml, fileName, {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, xml, findings);
    QStringList places;
    for (const Finding &problem : findings.listed())
        places.append(
            QStringLiteral("%1:%2 %3/%4").arg(problem.line).arg(problem.column).arg(problem.path, problem.member));
    QCOMPARE(places.join(QLatin1Char('\n')),
             QStringLiteral("3:21 /optional\n" // which the reader has found
                            "2:1 StartupModes/StartupMode\n"
                            "2:16 BandwidthSelection[1]/Name\n"
                            "4:1 Component[1]/Node[1]/ValueItem\n"
                            "4:1 Component[1]/Node[1]/id\n"
                            "5:1 Component[1]/Node[2]/ValueItem\n"
                            "5:1 Component[1]/Node[2]/id\n"
                            "3:1 Component[1]/type\n"
                            "6:13 Component[2]/Node\n"
                            "6:13 Component[2]/type\n"
                            "6:13 Component[2]/name\n"
                            "6:13 Component[2]/optional"));
}

void LintTest::randomDocumentsStayUnchanged()
{
    qint64 all = 0;
    int compared = 0;
    for (int seed = 0; seed < 1000; ++seed) {
        const Document document(randomDocument(seed, seed % 7), Form::Snapshot);
        const auto content = [&] {
            try {
                return document.toBytes(Form::Json, fileName);
            } catch (const DocumentError &) {
                return QByteArray(); // an unpaired surrogate
            }
        };
        const QByteArray before = content();
        const Result result = lintOf(document, {});
        LintOptions counting;
        counting.setMost(0);
        QCOMPARE(lint(document, {}, counting), result.count);
        QCOMPARE(qint64(result.findings.size()), result.count);
        QCOMPARE(content(), before);
        all += result.count;
        compared += before.isEmpty() ? 0 : 1;
    }
    QVERIFY2(all > 1000 && compared > 500, qPrintable(QStringLiteral("%1, %2").arg(all).arg(compared)));
}

namespace {

/// What is at a line and a column.
QString textAt(const QStringList &textLines, const Finding &finding)
{
    return textLines.value(finding.line - 1).mid(finding.column - 1);
}

} // namespace

void LintTest::findingsOfRandomDocumentsAreAtTheirPlaces()
{
    int examined = 0;
    for (int seed = 0; seed < 1000; ++seed) {
        QByteArray xml;
        try {
            xml = Document(randomDocument(seed, seed % 7)).toBytes(Form::Xml, fileName);
        } catch (const std::exception &) {
            continue; // not for XML
        }
        const Document document = Document::fromBytes(xml, fileName);
        const QStringList textLines = QString::fromUtf8(xml).split(QLatin1Char('\n'));
        const Result result = lintOf(document, xml);
        LintOptions counting;
        counting.setMost(0);
        QCOMPARE(lint(document, xml, {}, counting), result.count);
        for (const Finding &finding : result.findings) {
            const QString text = textAt(textLines, finding);
            const QString object = finding.steps.isEmpty() ? QString() : finding.steps.last().member;
            const bool isThere = text.startsWith(finding.member + QStringLiteral("=\""))
                || text.startsWith(QLatin1Char('<') + finding.member)
                || (finding.rule == QLatin1String("duplicate-value") && text.startsWith(QLatin1Char('<') + object));
            QVERIFY2(isThere, qPrintable(finding.text(fileName) + QStringLiteral(" at ") + text));
            ++examined;
        }
    }
    QVERIFY2(examined > 1000, qPrintable(QString::number(examined)));
}

void LintTest::timeIsProportionalToTheSize_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("repeated");
    QTest::addColumn<QByteArray>("after");
    const auto add = [](const char *name, const QByteArray &before, const QByteArray &repeated,
                        const QByteArray &after) {
        QTest::newRow(name) << "<TunerProperties Version=\"1.1\">" + before << repeated << after + "</TunerProperties>";
    };
    add("the same bandwidth", {}, "<BandwidthSelection><Name>a</Name></BandwidthSelection>", {});
    add("the same mode", "<StartupModes>", "<StartupMode>DF</StartupMode>", "</StartupModes>");
    add("unknown elements", "<Component>", "<a/>", "</Component>");
    add("unknown elements in the root", {}, "<a/>", {});
    add("comments", {}, "<!--tunerproperties-lint-disable x-->", {});
    add("options", "<Component><Node><ValueItem><ValueSelection>", "<SelectionItem name=\"a\" value=\"1\"/>",
        "</ValueSelection></ValueItem></Node></Component>");
    add("the same value", {}, "<MaxFFPDelay>1</MaxFFPDelay>", {});
    add("the same alternative", "<Component><Node><ValueItem>", "<ValueInt/>", "</ValueItem></Node></Component>");
    add("elements in a value", "<name>", "<a/>", "</name>");
    add("text", {}, "x<!---->", {});
    add("findings before others", {}, "<Component type=\"t\"/>x", {});
    add("one object many times", {}, "<StartupModes><StartupMode>DF</StartupMode></StartupModes>", {});
}

void LintTest::timeIsProportionalToTheSize()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, repeated);
    QFETCH(QByteArray, after);
    const auto secondsFor = [&](int count, int most) {
        const QByteArray xml = before + repeated.repeated(count) + after;
        const Document document = Document::fromBytes(xml, fileName);
        LintOptions options;
        options.setMost(most);
        const std::clock_t start = std::clock();
        lintOf(document, xml, options);
        return double(std::clock() - start) / CLOCKS_PER_SEC;
    };
    for (const int most : {0, 100}) {
        constexpr int fewer = 5000;
        constexpr int times = 8;
        constexpr double least = 0.005; // seconds, below which the clock is too coarse
        const double some = std::max(secondsFor(fewer, most), least);
        const double many = secondsFor(times * fewer, most);
        QVERIFY2(many < 3 * times * some, qPrintable(QStringLiteral("%1 s and %2 s").arg(some).arg(many)));
    }
}

TEST_SUITE(LintTest)
#include "tst_Lint.moc"
