// SPDX-License-Identifier: MIT
#include <QFile>
#include <QTest>
#include <QUrl>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Sarif.h>

using namespace TunerDocuments;

/// The findings in several documents as one text in SARIF.
class SarifTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsThatOfTheFormat();
    void everyRuleIsListed();
    void textWithoutFindingsHasEmptyLists();
    void findingNamesItsDocument_data();
    void findingNamesItsDocument();
    void documentWithoutTextHasLogicalLocationsOnly();
    void warningOfAnErrorRuleIsAnError();
    void findingsThatAreNotKeptAreCounted();
    void oneFailureMakesTheRunUnsuccessful();
    void resultsAreWrittenAsTheyAreAdded();
    void textIsIncompleteWithoutItsEnd();
    void sizeIsThatOfTheText();
};

namespace {

/// A document without the flag of its component, and with a value above its maximum.
const char xml[] = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b">
<Component type="t" name="c">
<Node id="n">
<ValueItem><ValueNumericInt id="i" value="11" min="0" max="10" step="1"/></ValueItem></Node></Component>
</TunerProperties>
)";

Findings findingsIn(const QByteArray &text, int most = 100)
{
    Findings findings(most);
    const Document document = Document::fromBytes(text, QStringLiteral("a.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, text, findings);
    return findings;
}

Finding warning()
{
    return findingsIn(xml).warnings().first();
}

/// What a writer writes, piece by piece.
QByteArrayList piecesOf(const QVector<Sarif::Part> &parts)
{
    QByteArrayList pieces;
    Sarif::Writer writer(QStringLiteral("checker"), QStringLiteral("2.4"),
                         [&](const QByteArray &piece) { pieces.append(piece); });
    for (const Sarif::Part &part : parts)
        writer.add(part);
    writer.finish();
    return pieces;
}

/// Everything after the rules.
QByteArray resultsOf(const QVector<Sarif::Part> &parts)
{
    const QByteArray text = piecesOf(parts).join();
    return text.mid(text.indexOf("\"results\":"));
}

/// A rule of lint().
QByteArray ruleText(const LintRule &rule)
{
    const QByteArray finds = rule.finds.toUtf8();
    const QByteArray why = rule.why.toUtf8();
    return R"({"id":")" + rule.name.toUtf8() + R"(","shortDescription":{"text":")" + finds
        + R"("},"fullDescription":{"text":")" + finds + ' ' + why + R"("},"help":{"text":")" + why
        + R"("},"defaultConfiguration":{"level":"warning"}})";
}

} // namespace

void SarifTest::textIsThatOfTheFormat()
{
    Sarif::Part first("d/a b.xml");
    first.add(findingsIn(xml));
    Sarif::Part second("no.xml");
    second.addFailure(QStringLiteral("no.xml: cannot open: No such file or directory"));
    QByteArray text = piecesOf({first, second}).join();

    QByteArray furtherRules; // those after the first two
    for (const LintRule &rule : lintRules().mid(1))
        furtherRules += ',' + ruleText(rule);
    QVERIFY(text.contains(furtherRules));
    text.replace(furtherRules, ",...");
    QCOMPARE(
        text,
        QByteArray(
            R"({"$schema":"https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json",)"
            R"("version":"2.1.0","runs":[{"tool":{"driver":{"name":"checker","version":"2.4","rules":[)"
            R"({"id":"invalid-document","shortDescription":{"text":"The document is invalid."},)"
            R"("fullDescription":{"text":"The document is invalid. Readers and writers that validate refuse it."},)"
            R"("help":{"text":"Readers and writers that validate refuse it."},)"
            R"("defaultConfiguration":{"level":"error"}},)"
            R"({"id":"value-out-of-range",)"
            R"("shortDescription":{"text":"A value is below its min or above its max, or not a number."},)"
            R"("fullDescription":{"text":"A value is below its min or above its max, or not a number. Readers do not )"
            R"(enforce the range: devices may refuse or clip such a value."},)"
            R"("help":{"text":"Readers do not enforce the range: devices may refuse or clip such a value."},)"
            R"("defaultConfiguration":{"level":"warning"}},...]}},"columnKind":"utf16CodeUnits","results":[)"
            "\n"
            R"({"ruleId":"invalid-document","ruleIndex":0,"level":"error",)"
            R"("message":{"text":"Component: Please set optional properly. Expected true or false"},)"
            R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"d/a%20b.xml"},)"
            R"("region":{"startLine":2,"startColumn":1}},"logicalLocations":[)"
            R"({"fullyQualifiedName":"Component[type=t,name=c]/optional","kind":"member"}]}]},)"
            "\n"
            R"({"ruleId":"value-out-of-range","ruleIndex":1,"level":"warning",)"
            R"("message":{"text":"value 11 is above max 10; use a value from 0 to 10"},)"
            R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"d/a%20b.xml"},)"
            R"("region":{"startLine":4,"startColumn":36}},"logicalLocations":[)"
            R"({"fullyQualifiedName":"Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value",)"
            R"("kind":"member"}]}]})"
            "\n"
            R"(],"invocations":[{"executionSuccessful":false,"toolExecutionNotifications":[{"level":"error",)"
            R"("message":{"text":"no.xml: cannot open: No such file or directory"},)"
            R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"no.xml"}}}]}]}]}]})"
            "\n"));
}

void SarifTest::everyRuleIsListed()
{
    const QByteArray text = piecesOf({}).join();
    QCOMPARE(text.count("\"id\":"), 30);
    QVERIFY(text.contains(R"({"id":"useless-comment","shortDescription":{"text":"A comment disables an unknown rule, )"
                          R"(no rule, or is not directly before an element."},)"));
    for (const LintRule &each : lintRules())
        QVERIFY2(text.contains("{\"id\":\"" + each.name.toUtf8() + '"'), qPrintable(each.name));
}

void SarifTest::textWithoutFindingsHasEmptyLists()
{
    const QByteArray nothing =
        "\"results\":[\n],\"invocations\":[{\"executionSuccessful\":true,\"toolExecutionNotifications\":[]}]}]}\n";
    QCOMPARE(resultsOf({}), nothing);
    Sarif::Part clean("a.xml");
    clean.add(Findings());
    QCOMPARE(resultsOf({clean, clean}), nothing);
}

void SarifTest::findingNamesItsDocument_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("uri");
    QTest::newRow("relative") << QByteArray("d/a.xml") << QByteArray("d/a.xml");
    QTest::newRow("absolute") << QByteArray("/d/a.xml") << QByteArray("file:///d/a.xml");
    QTest::newRow("UTF-8") << QFile::encodeName(QStringLiteral("\u00E4.xml")) << QByteArray("%C3%A4.xml");
    QTest::newRow("not UTF-8") << QByteArray("\xFF.xml") << QByteArray("%FF.xml");
    QTest::newRow("what URIs use otherwise") << QByteArray("a:b?c#d%20") << QByteArray("a%3Ab%3Fc%23d%2520");
}

void SarifTest::findingNamesItsDocument()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, uri);
    Sarif::Part part(name);
    part.add(warning());
    QVERIFY2(resultsOf({part}).contains("{\"uri\":\"" + uri + "\"}"), resultsOf({part}).constData());
    Sarif::Part elsewhere = Sarif::Part::at(QUrl(QStringLiteral("https://host/jobs?id=7&part=\u00E4 b")));
    elsewhere.add(warning());
    QVERIFY(resultsOf({elsewhere}).contains("{\"uri\":\"https://host/jobs?id=7&part=%C3%A4%20b\"}"));
}

void SarifTest::documentWithoutTextHasLogicalLocationsOnly()
{
    Findings findings;
    const Document document = Document::fromBytes(QByteArray(xml).replace(" name=\"c\"", ""), QStringLiteral("a.xml"),
                                                  {}, findings.collector());
    findings.describePaths(document.tuner);
    Sarif::Part part("a.tpb");
    part.add(findings.listed().first());
    QCOMPARE(resultsOf({part}).split('\n').at(1),
             QByteArray(R"({"ruleId":"invalid-document","ruleIndex":0,"level":"error",)"
                        R"("message":{"text":"Component: Please set name properly."},)"
                        R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"a.tpb"}},"logicalLocations":[)"
                        R"({"fullyQualifiedName":"Component[1]/name","kind":"member"}]}]})"));
}

void SarifTest::warningOfAnErrorRuleIsAnError()
{
    Finding finding = warning();
    finding.isError = true;
    Sarif::Part part("a.xml");
    part.add(finding);
    QVERIFY(resultsOf({part}).contains(R"({"ruleId":"value-out-of-range","ruleIndex":1,"level":"error",)"));
}

void SarifTest::findingsThatAreNotKeptAreCounted()
{
    const QByteArray text = QByteArray(xml)
                                .replace("type=\"SCP\"", "type=\"SCP\" x=\"\" y=\"\"")
                                .replace("</Component>", "<Node id=\"m\"/></Component>");
    Sarif::Part part("a.xml");
    part.add(findingsIn(text, 1), QStringLiteral("; there are more"));
    const QByteArray results = resultsOf({part});
    QCOMPARE(results.count("\"ruleId\":"), 2);
    QCOMPARE(
        results.mid(results.indexOf("\"invocations\":")),
        QByteArray(R"("invocations":[{"executionSuccessful":true,"toolExecutionNotifications":[{"level":"warning",)"
                   R"("message":{"text":"2 problems; only the first is listed; there are more"},)"
                   R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"a.xml"}}}]},)"
                   R"({"level":"warning",)"
                   R"("message":{"text":"3 warnings; only the first is listed; there are more"},)"
                   R"("locations":[{"physicalLocation":{"artifactLocation":{"uri":"a.xml"}}}]}]}]}]})"
                   "\n"));
}

void SarifTest::oneFailureMakesTheRunUnsuccessful()
{
    Sarif::Part failed("a.xml");
    failed.addFailure(QStringLiteral("a.xml: out of memory"));
    Sarif::Part found("b.xml");
    found.add(warning());
    QVERIFY(resultsOf({failed, found}).contains("\"executionSuccessful\":false"));
    QVERIFY(resultsOf({found, failed}).contains("\"executionSuccessful\":false"));
    QVERIFY(resultsOf({found, found}).contains("\"executionSuccessful\":true"));
}

void SarifTest::resultsAreWrittenAsTheyAreAdded()
{
    Sarif::Part found("a.xml");
    found.add(warning());
    QByteArray text;
    Sarif::Writer writer(QStringLiteral("checker"), QStringLiteral("2.4"),
                         [&](const QByteArray &piece) { text += piece; });
    QVERIFY(text.endsWith("\"results\":["));
    text.clear();
    writer.add(found);
    QVERIFY(text.startsWith("\n{\"ruleId\":"));
    QVERIFY(text.endsWith("]}]}"));
    const QByteArray first = text;
    text.clear();
    writer.add(Sarif::Part("b.xml"));
    QCOMPARE(text, QByteArray());
    writer.add(found);
    QCOMPARE(text, ',' + first);
}

void SarifTest::textIsIncompleteWithoutItsEnd()
{
    QByteArray text;
    {
        const Sarif::Writer writer(QStringLiteral("checker"), QStringLiteral("2.4"),
                                   [&](const QByteArray &piece) { text += piece; });
    }
    QVERIFY(text.endsWith("\"results\":["));
}

void SarifTest::sizeIsThatOfTheText()
{
    Sarif::Part part("a.xml");
    QCOMPARE(part.size(), qint64(0));
    part.add(warning());
    const qint64 size = part.size();
    QCOMPARE(size, qint64(piecesOf({part}).at(1).size()));
    part.addFailure(QStringLiteral("a.xml: out of memory"));
    QVERIFY(part.size() > size);
}

TEST_SUITE(SarifTest)
#include "tst_Sarif.moc"
