// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "Rows.h"
#include "tools/Tool.h"

class ToolLintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanDocumentHasNoOutput();
    void warningsHaveLinePathSuggestionAndRule();
    void problemsOfTheModelComeFirst();
    void documentsWithoutTextHavePaths();
    void findingsInJsonHaveLinesAndColumns();
    void severalFilesAreReportedInOrder();
    void disabledRulesFindNothing();
    void quietReportsByStatus();
    void onlyTheFirstWarningsAreListed();
    void jsonHasFindings();
    void errorRulesHaveTheLevelError();
    void rulesAreListed();
    void rulesAreListedAsJson();
    void wrongUsageIsRefused_data();
    void wrongUsageIsRefused();
    void sarifIsOneDocumentForAllFiles();
    void sarifWithoutFindingsHasAnEmptyList();
    void sarifReportsUnreadableFiles();
    void sarifSaysHowManyFindingsAreNotListed();
    void validateCountsWarnings();
    void validateCountsWarningsOfSeveralFiles();
    void validateJsonHasTheNumberOfWarnings();
    void strictValidationListsWarnings();
    void strictValidationAcceptsADocumentWithoutWarnings();
    void strictValidationReportsErrorsOfRules();
    void strictJsonListsWarnings();
};

namespace {

/// A valid document with two warnings: the value in line 4 is above its max and off the grid of nothing, and line 5 has
/// an attribute that is misspelt.
const char twoWarnings[] = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b">
<Component type="t" name="c" optional="true">
<Node id="n">
<ValueItem><ValueNumericInt id="i" value="11" min="0" max="10" step="1"/></ValueItem>
<ValueItem><ValueInt id="j" value="1" valeu="2"/></ValueItem>
</Node></Component></TunerProperties>
)";

const QString firstWarning = QStringLiteral(
    "a.xml:4:36: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value: value 11 is above max 10; "
    "use a value from 0 to 10 [value-out-of-range]\n");

const QString secondWarning =
    QStringLiteral("a.xml:5:39: Component[type=t,name=c]/Node[id=n]/ValueItem[id=j]/ValueInt: unknown attribute "
                   "'valeu' of ValueInt; it "
                   "is ignored; did you mean 'value'? [unknown-attribute]\n");

/// A document with a problem and a warning.
QByteArray invalidXml()
{
    return QByteArray(twoWarnings).replace(" valeu=\"2\"", "").replace(" optional=\"true\"", "");
}

QJsonObject json(const QByteArray &bytes)
{
    return QJsonDocument::fromJson(bytes).object();
}

QJsonValue firstOf(const QJsonValue &object, const char *list)
{
    return object[QString::fromUtf8(list)].toArray().at(0);
}

/// What the format demands of every document, of those properties that are used.
void checkSarif(const QJsonObject &document)
{
    QCOMPARE(document.keys(),
             (QStringList{QStringLiteral("$schema"), QStringLiteral("runs"), QStringLiteral("version")}));
    QCOMPARE(document[QStringLiteral("version")].toString(), QStringLiteral("2.1.0"));
    QVERIFY(document[QStringLiteral("$schema")].toString().endsWith(QStringLiteral("/sarif-schema-2.1.0.json")));
    const QJsonArray runs = document[QStringLiteral("runs")].toArray();
    QCOMPARE(runs.size(), 1);
    const QJsonObject driver = runs[0][QStringLiteral("tool")][QStringLiteral("driver")].toObject();
    QCOMPARE(driver[QStringLiteral("name")].toString(), QStringLiteral("tunerproperties"));
    QCOMPARE(driver[QStringLiteral("version")].toString(), QStringLiteral(TOOL_VERSION));
    const QJsonArray rules = driver[QStringLiteral("rules")].toArray();
    QCOMPARE(rules.size(), 30);
    QStringList names;
    for (const QJsonValue &rule : rules) {
        const QString name = rule[QStringLiteral("id")].toString();
        QVERIFY(!name.isEmpty() && !names.contains(name));
        names.append(name);
        for (const char *text : {"shortDescription", "fullDescription", "help"})
            QVERIFY2(rule[QString::fromUtf8(text)][QStringLiteral("text")].toString().endsWith(QLatin1Char('.')),
                     qPrintable(name));
        const QString level = rule[QStringLiteral("defaultConfiguration")][QStringLiteral("level")].toString();
        QCOMPARE(level,
                 name == QLatin1String("invalid-document") ? QStringLiteral("error") : QStringLiteral("warning"));
    }
    QVERIFY(runs[0][QStringLiteral("results")].isArray());
    const QJsonArray results = runs[0][QStringLiteral("results")].toArray();
    for (const QJsonValue &result : results) {
        QCOMPARE(names.value(result[QStringLiteral("ruleIndex")].toInt(-1)),
                 result[QStringLiteral("ruleId")].toString());
        QVERIFY((QStringList{QStringLiteral("error"), QStringLiteral("warning")})
                    .contains(result[QStringLiteral("level")].toString()));
        QVERIFY(!result[QStringLiteral("message")][QStringLiteral("text")].toString().isEmpty());
        const QJsonObject place = result[QStringLiteral("locations")][0][QStringLiteral("physicalLocation")].toObject();
        QVERIFY(!place[QStringLiteral("artifactLocation")][QStringLiteral("uri")].toString().isEmpty());
        if (place.contains(QStringLiteral("region"))) {
            QVERIFY(place[QStringLiteral("region")][QStringLiteral("startLine")].toInt() >= 1);
            QVERIFY(place[QStringLiteral("region")][QStringLiteral("startColumn")].toInt() >= 1);
        }
    }
    QVERIFY(runs[0][QStringLiteral("invocations")][0][QStringLiteral("executionSuccessful")].isBool());
}

} // namespace

void ToolLintTest::cleanDocumentHasNoOutput()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    const Run run = shop.run(line("lint a.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolLintTest::warningsHaveLinePathSuggestionAndRule()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const Run run = shop.run(line("lint a.xml"));
    QCOMPARE(run.out, firstWarning + secondWarning);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
    // The path is one that 'get' accepts.
    const Run got =
        shop.run({QStringLiteral("get"), QStringLiteral("a.xml"),
                  QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value")});
    QCOMPARE(got.out, QStringLiteral("11\n"));
    // Standard input is the same.
    QCOMPARE(shop.run(line("lint -"), twoWarnings).out,
             QString(firstWarning + secondWarning).replace(QLatin1String("a.xml"), QLatin1String("-")));
}

void ToolLintTest::problemsOfTheModelComeFirst()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), invalidXml());
    const Run run = shop.run(line("lint a.xml"));
    const QStringList lines = run.out.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 3);
    QCOMPARE(
        lines[0],
        QStringLiteral(
            "a.xml:2:1: Component[type=t,name=c]: Component: Please set optional properly. Expected true or false"));
    QCOMPARE(shop.run(line("validate a.xml")).out,
             QStringLiteral(
                 "a.xml: Component[type=t,name=c]: Component: Please set optional properly. Expected true or false\n"));
    QCOMPARE(lines[1] + QLatin1Char('\n'), firstWarning);
    QCOMPARE(run.status, 1);
}

void ToolLintTest::documentsWithoutTextHavePaths()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    for (const char *name : {"b.tpb", "b.tpz", "b.tps"}) {
        const QString file = QString::fromUtf8(name);
        QCOMPARE(shop.run({QStringLiteral("convert"), QStringLiteral("a.xml"), file}).status, 0);
        const Run run = shop.run({QStringLiteral("lint"), file});
        QCOMPARE(run.out,
                 file
                     + QStringLiteral(": Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value: "
                                      "value 11 is above max 10; use a value from 0 to 10 [value-out-of-range]\n"));
        QCOMPARE(run.status, 1);
    }
}

void ToolLintTest::findingsInJsonHaveLinesAndColumns()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), R"({"TunerProperties": {"Version": "1.1", "type": "SCP", "baseresource": "b",
  "Component": [{"type": "t", "name": "c",
    "Node": [{"id": "n", "ValueItem": [{"ValueNumericInt":
      {"id": "\u00e4", "value": 11, "min": 0, "max": 10, "step": 1}}]}]}]}})");
    const QString path =
        QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=\u00E4]/ValueNumericInt/value");
    Run run = shop.run(line("lint a.json"));
    QCOMPARE(
        run.out,
        QStringLiteral("a.json:2:17: Component[type=t,name=c]: Component: Please set optional properly. "
                       "Expected true or false\n"
                       "a.json:4:33: %1: value 11 is above max 10; use a value from 0 to 10 [value-out-of-range]\n")
            .arg(path));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
    QCOMPARE(shop.run(line("validate --strict a.json")).out, run.out);
    QCOMPARE(shop.run(line("validate a.json")).err,
             QStringLiteral("tunerproperties: a.json: 1 problem; 'lint' has 1 warning\n"));

    const QJsonArray findings = json(shop.run(line("lint --json a.json")).bytes)[QStringLiteral("findings")].toArray();
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findings[1][QStringLiteral("line")].toInt(), 4);
    QCOMPARE(findings[1][QStringLiteral("column")].toInt(), 33);
    QCOMPARE(findings[1][QStringLiteral("path")].toString(), path);

    run = shop.run(line("lint --format sarif a.json"));
    checkSarif(json(run.bytes));
    const QJsonArray results = firstOf(json(run.bytes), "runs")[QStringLiteral("results")].toArray();
    QCOMPARE(results.size(), 2);
    const QJsonValue region =
        firstOf(results[1], "locations")[QStringLiteral("physicalLocation")][QStringLiteral("region")];
    QCOMPARE(region[QStringLiteral("startLine")].toInt(), 4);
    QCOMPARE(region[QStringLiteral("startColumn")].toInt(), 33);
}

void ToolLintTest::severalFilesAreReportedInOrder()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    shop.write(QStringLiteral("b.xml"), smallXml);
    const Run run = shop.run(line("lint b.xml a.xml b.xml"));
    QCOMPARE(run.out, firstWarning + secondWarning);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: 3 files: 2 clean, 1 with findings\n"));
    QCOMPARE(run.status, 1);
    const Run unreadable = shop.run(line("lint b.xml no.xml"));
    QCOMPARE(unreadable.err,
             QStringLiteral("tunerproperties: no.xml: cannot open: No such file or directory\n"
                            "tunerproperties: 2 files: 1 clean, 1 unreadable\n"));
    QCOMPARE(unreadable.status, 3);
}

void ToolLintTest::disabledRulesFindNothing()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    QCOMPARE(shop.run(line("lint --disable value-out-of-range a.xml")).out, secondWarning);
    const Run none = shop.run(line("lint --disable value-out-of-range,unknown-attribute a.xml"));
    QCOMPARE(none.out, QString());
    QCOMPARE(none.status, 0);
    shop.write(QStringLiteral("a.xml"),
               "<!-- tunerproperties-lint-disable value-out-of-range unknown-attribute -->" + QByteArray(twoWarnings));
    QCOMPARE(shop.run(line("lint a.xml")).status, 0);
}

void ToolLintTest::quietReportsByStatus()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const Run run = shop.run(line("lint --quiet a.xml a.xml"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolLintTest::onlyTheFirstWarningsAreListed()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    QCOMPARE(shop.run(line("lint --max-problems 1 a.xml")).out,
             firstWarning
                 + QStringLiteral("a.xml: 2 warnings; only the first is listed; use --max-problems to list more\n"));
}

void ToolLintTest::jsonHasFindings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    shop.write(QStringLiteral("b.xml"), smallXml);
    const Run run = shop.run(line("lint --json a.xml b.xml no.xml"));
    const QList<QByteArray> lines = run.bytes.split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(
        lines[0],
        QByteArray("{\"file\":\"a.xml\",\"status\":\"findings\",\"findings\":["
                   "{\"path\":\"Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value\","
                   "\"line\":4,\"column\":36,\"message\":\"value 11 is above max 10\",\"value\":null,\"choices\":null,"
                   "\"suggestion\":\"use a value from 0 to 10\",\"rule\":\"value-out-of-range\",\"level\":\"warning\"},"
                   "{\"path\":\"Component[type=t,name=c]/Node[id=n]/ValueItem[id=j]/ValueInt\",\"line\":5,"
                   "\"column\":39,\"message\":\"unknown attribute 'valeu' of ValueInt; it is ignored\","
                   "\"value\":null,\"choices\":null,\"suggestion\":\"did you mean "
                   "'value'?\",\"rule\":\"unknown-attribute\",\"level\":\"warning\"}],"
                   "\"problemCount\":0,\"warningCount\":2,\"error\":null}"));
    QCOMPARE(
        lines[1],
        QByteArray("{\"file\":\"b.xml\",\"status\":\"clean\",\"findings\":[],\"problemCount\":0,\"warningCount\":0,"
                   "\"error\":null}"));
    QCOMPARE(json(lines[2]).value(QStringLiteral("status")).toString(), QStringLiteral("unreadable"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 3);
    // A problem has neither rule nor suggestion.
    shop.write(QStringLiteral("a.xml"), invalidXml());
    const QJsonObject problem = firstOf(json(shop.run(line("lint --json a.xml")).bytes), "findings").toObject();
    QVERIFY(problem[QStringLiteral("rule")].isNull() && problem[QStringLiteral("suggestion")].isNull());
    QCOMPARE(problem[QStringLiteral("level")].toString(), QStringLiteral("error"));
    QCOMPARE(problem[QStringLiteral("path")].toString(), QStringLiteral("Component[type=t,name=c]"));
    QCOMPARE(problem[QStringLiteral("line")].toInt(), 2);
}

void ToolLintTest::errorRulesHaveTheLevelError()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const QJsonArray findings =
        json(shop.run(line("lint --json --error unknown-attribute a.xml")).bytes)[QStringLiteral("findings")].toArray();
    QCOMPARE(findings[0][QStringLiteral("level")].toString(), QStringLiteral("warning"));
    QCOMPARE(findings[1][QStringLiteral("level")].toString(), QStringLiteral("error"));
    QCOMPARE(shop.run(line("lint --error unknown-attribute a.xml")).out,
             firstWarning
                 + QString(secondWarning).replace(QLatin1String("[unknown"), QLatin1String("[error: unknown")));
}

void ToolLintTest::rulesAreListed()
{
    Workshop shop;
    const Run run = shop.run(line("lint --rules"));
    QCOMPARE(run.status, 0);
    QVERIFY(run.out.startsWith(
        QStringLiteral("value-out-of-range\n"
                       "    A value is below its min or above its max, or not a number. Readers do not\n"
                       "    enforce the range: devices may refuse or clip such a value.\n"
                       "\n"
                       "min-above-max\n")));
    QCOMPARE(run.out.count(QStringLiteral("\n\n")), 28); // between 29 rules
}

void ToolLintTest::rulesAreListedAsJson()
{
    Workshop shop;
    const Run run = shop.run(line("lint --rules --json"));
    const QList<QByteArray> lines = run.bytes.trimmed().split('\n');
    QCOMPARE(lines.size(), 29);
    QCOMPARE(
        lines[16],
        QByteArray("{\"rule\":\"not-a-number\",\"finds\":\"The text of a number is not a number.\",\"why\":\"Readers "
                   "take it for 0.\"}"));
}

void ToolLintTest::wrongUsageIsRefused_data()
{
    const Rows<QString, QString> add("arguments", "message");
    add("lint", "'lint' expects FILE... or --rules");
    add("lint --rules a.xml", "'lint --rules' takes no files");
    add("lint --disable lost-decimal a.xml", "unknown rule 'lost-decimal'; did you mean 'lost-decimals'?");
    add("lint --error lost-decimals,x a.xml", "unknown rule 'x'; 'lint --rules' lists the rules");
    add("lint --disable , a.xml", "the value of --disable is empty");
    add("lint --json --format sarif a.xml", "--json and --format sarif cannot be combined");
    add("lint --quiet --format sarif a.xml", "--quiet and --format sarif cannot be combined");
    add("lint --quiet --json a.xml", "--quiet and --format json cannot be combined");
    add("lint --rules --format sarif", "--rules and --format sarif cannot be combined");
    add("lint --format xml a.xml", "unknown format 'xml'; expected text, json or sarif");
    add("validate --disable x a.xml", "unknown rule 'x'; 'lint --rules' lists the rules");
}

void ToolLintTest::wrongUsageIsRefused()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    const Run run = shop.run(arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("tunerproperties: ") + message);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

void ToolLintTest::sarifIsOneDocumentForAllFiles()
{
    Workshop shop;
    QVERIFY(QDir(shop.path(QString())).mkdir(QStringLiteral("d e")));
    shop.write(QStringLiteral("a.xml"), invalidXml());
    shop.write(QStringLiteral("b.xml"), smallXml);
    shop.write(QStringLiteral("d e/\u00E4.xml"), twoWarnings);
    const Run run = shop.run({QStringLiteral("lint"), QStringLiteral("--format"), QStringLiteral("sarif"),
                              QStringLiteral("--error=unknown-attribute"), QStringLiteral("a.xml"),
                              QStringLiteral("b.xml"), QStringLiteral("d e/\u00E4.xml")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
    const QJsonObject document = json(run.bytes);
    checkSarif(document);
    const QJsonValue sarif = firstOf(document, "runs");
    QCOMPARE(sarif[QStringLiteral("columnKind")].toString(), QStringLiteral("utf16CodeUnits"));
    QCOMPARE(firstOf(sarif, "invocations")[QStringLiteral("executionSuccessful")].toBool(), true);
    const QJsonArray results = sarif[QStringLiteral("results")].toArray();
    QStringList listed;
    for (const QJsonValue &result : results) {
        const QJsonValue location = result[QStringLiteral("locations")][0];
        const QJsonValue place = location[QStringLiteral("physicalLocation")];
        listed.append(
            QStringLiteral("%1 %2 %3:%4:%5 %6")
                .arg(result[QStringLiteral("ruleId")].toString(), result[QStringLiteral("level")].toString(),
                     place[QStringLiteral("artifactLocation")][QStringLiteral("uri")].toString())
                .arg(place[QStringLiteral("region")][QStringLiteral("startLine")].toInt())
                .arg(place[QStringLiteral("region")][QStringLiteral("startColumn")].toInt())
                .arg(location[QStringLiteral("logicalLocations")][0][QStringLiteral("fullyQualifiedName")].toString()));
    }
    const QString item = QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=%1]/%2");
    const QString value = item.arg(QStringLiteral("i"), QStringLiteral("ValueNumericInt/value"));
    QCOMPARE(listed,
             (QStringList{QStringLiteral("invalid-document error a.xml:2:1 Component[type=t,name=c]/optional"),
                          QStringLiteral("value-out-of-range warning a.xml:4:36 ") + value,
                          QStringLiteral("value-out-of-range warning d%20e/%C3%A4.xml:4:36 ") + value,
                          QStringLiteral("unknown-attribute error d%20e/%C3%A4.xml:5:39 ")
                              + item.arg(QStringLiteral("j"), QStringLiteral("ValueInt"))}));
    QCOMPARE(results[3][QStringLiteral("message")][QStringLiteral("text")].toString(),
             QStringLiteral("unknown attribute 'valeu' of ValueInt; it is ignored; did you mean 'value'?"));
}

void ToolLintTest::sarifWithoutFindingsHasAnEmptyList()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    const Run run =
        shop.run({QStringLiteral("lint"), QStringLiteral("--format=sarif"), shop.path(QStringLiteral("a.xml"))});
    QCOMPARE(run.status, 0);
    checkSarif(json(run.bytes));
    QVERIFY(firstOf(json(run.bytes), "runs")[QStringLiteral("results")].toArray().isEmpty());
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const Run absolute =
        shop.run({QStringLiteral("lint"), QStringLiteral("--format=sarif"), shop.path(QStringLiteral("a.xml"))});
    QVERIFY(absolute.out.contains(QStringLiteral("\"uri\":\"file:///")));
}

void ToolLintTest::sarifReportsUnreadableFiles()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const Run run = shop.run(line("lint --format sarif no.xml a.xml"));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: no.xml: cannot open: No such file or directory\n"));
    QCOMPARE(run.status, 3);
    checkSarif(json(run.bytes));
    const QJsonValue sarif = firstOf(json(run.bytes), "runs");
    QCOMPARE(sarif[QStringLiteral("results")].toArray().size(), 2);
    const QJsonValue invocation = firstOf(sarif, "invocations");
    QCOMPARE(invocation[QStringLiteral("executionSuccessful")].toBool(), false);
    QCOMPARE(
        invocation[QStringLiteral("toolExecutionNotifications")][0][QStringLiteral("message")][QStringLiteral("text")]
            .toString(),
        QStringLiteral("no.xml: cannot open: No such file or directory"));
}

void ToolLintTest::sarifSaysHowManyFindingsAreNotListed()
{
    Workshop shop;
    // 101 unknown attributes, and 51 nodes that lack both their id and their values.
    QByteArray attributes;
    for (int i = 0; i < 101; ++i)
        attributes += "x" + QByteArray::number(i) + "=\"\" ";
    shop.write(QStringLiteral("a b.xml"), QByteArray(smallXml).replace("type=\"SCP\"", attributes + "type=\"SCP\""));
    shop.write(QStringLiteral("b.xml"), twoWarnings);
    shop.write(QStringLiteral("c.xml"),
               QByteArray(smallXml).replace("</Component>", QByteArray("<Node/>").repeated(51) + "</Component>"));
    const QStringList arguments = line("lint --format sarif")
        << QStringLiteral("a b.xml") << QStringLiteral("b.xml") << QStringLiteral("no.xml") << QStringLiteral("c.xml");
    const auto notices = [&](const QStringList &more) {
        const QByteArray bytes = shop.run(arguments + more).bytes;
        checkSarif(json(bytes));
        const QJsonValue invocation = firstOf(firstOf(json(bytes), "runs"), "invocations");
        QStringList texts;
        for (const QJsonValue &notice : invocation[QStringLiteral("toolExecutionNotifications")].toArray()) {
            const QJsonValue place = notice[QStringLiteral("locations")][0][QStringLiteral("physicalLocation")];
            texts.append(place[QStringLiteral("artifactLocation")][QStringLiteral("uri")].toString()
                         + QStringLiteral(" ") + notice[QStringLiteral("level")].toString() + QStringLiteral(": ")
                         + notice[QStringLiteral("message")][QStringLiteral("text")].toString());
        }
        return texts;
    };
    const QString noFile = QStringLiteral("no.xml error: no.xml: cannot open: No such file or directory");
    const QString advice = QStringLiteral("; use --max-problems to list more");
    QCOMPARE(
        notices({}),
        (QStringList{QStringLiteral("a%20b.xml warning: 101 warnings; only the first 100 are listed") + advice, noFile,
                     QStringLiteral("c.xml warning: 102 problems; only the first 100 are listed") + advice}));
    QCOMPARE(
        notices(line("--max-problems 101")),
        (QStringList{noFile, QStringLiteral("c.xml warning: 102 problems; only the first 101 are listed") + advice}));
    QCOMPARE(notices(line("--max-problems 102")), QStringList{noFile});
}

void ToolLintTest::validateCountsWarnings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    Run run = shop.run(line("validate a.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: valid; 'lint' has 2 warnings\n"));
    QCOMPARE(run.status, 0);
    QCOMPARE(shop.run(line("validate --disable unknown-attribute a.xml")).err,
             QStringLiteral("tunerproperties: a.xml: valid; 'lint' has 1 warning\n"));
    run = shop.run(line("validate --quiet a.xml"));
    QCOMPARE(run.out + run.err, QString());
    shop.write(QStringLiteral("a.xml"), invalidXml());
    run = shop.run(line("validate a.xml"));
    QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: 1 problem; 'lint' has 1 warning\n"));
    QCOMPARE(run.status, 1);
}

void ToolLintTest::validateCountsWarningsOfSeveralFiles()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    shop.write(QStringLiteral("b.xml"), smallXml);
    const Run run = shop.run(line("validate a.xml b.xml a.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: 3 files: 3 valid; 'lint' has 4 warnings\n"));
    QCOMPARE(shop.run(line("validate b.xml b.xml")).err, QStringLiteral("tunerproperties: 2 files: 2 valid\n"));
}

void ToolLintTest::validateJsonHasTheNumberOfWarnings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const Run run = shop.run(line("validate --json a.xml"));
    QCOMPARE(
        run.out,
        QStringLiteral("{\"file\":\"a.xml\",\"status\":\"valid\",\"problems\":[],\"problemCount\":0,\"warnings\":2,"
                       "\"error\":null}\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolLintTest::strictValidationListsWarnings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    shop.write(QStringLiteral("b.xml"), smallXml);
    Run run = shop.run(line("validate --strict a.xml"));
    QCOMPARE(run.out, firstWarning + secondWarning);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
    run = shop.run(line("validate --strict --disable unknown-attribute a.xml b.xml"));
    QCOMPARE(run.out, firstWarning);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: 2 files: 1 valid, 1 with problems\n"));
    run = shop.run(line("validate --strict --quiet a.xml"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolLintTest::strictValidationAcceptsADocumentWithoutWarnings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    const Run run = shop.run(line("validate --strict a.xml"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolLintTest::strictValidationReportsErrorsOfRules()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), QByteArray(smallXml).replace("id=\"n\"", "id=\"n\" x=\"1\""));
    const Run linted = shop.run(line("lint --error unknown-attribute a.xml"));
    QVERIFY(linted.out.endsWith(QStringLiteral(" [error: unknown-attribute]\n")));
    const Run run = shop.run(line("validate --strict --error unknown-attribute a.xml"));
    QCOMPARE(run.out, linted.out);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolLintTest::strictJsonListsWarnings()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), twoWarnings);
    const QJsonObject result = json(shop.run(line("validate --strict --json a.xml")).bytes);
    QCOMPARE(result[QStringLiteral("status")].toString(), QStringLiteral("problems"));
    QCOMPARE(result[QStringLiteral("warnings")].toInt(), 2);
    QCOMPARE(result[QStringLiteral("problemCount")].toInt(), 0);
    QCOMPARE(result[QStringLiteral("findings")].toArray().size(), 2);
    QCOMPARE(firstOf(result, "findings")[QStringLiteral("rule")].toString(), QStringLiteral("value-out-of-range"));
}

TEST_SUITE(ToolLintTest)
#include "tst_ToolLint.moc"
