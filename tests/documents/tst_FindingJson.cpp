// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Lint.h>

using namespace TunerDocuments;

/// Problems and warnings as objects in JSON.
class FindingJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void problemOfAReaderHasItsPlaceAndTheNamesThatAreAccepted();
    void problemOfTheCheckHasItsPath();
    void problemOfTheDocumentItselfHasAnEmptyPath();
    void warningHasItsMemberSuggestionAndRule();
    void warningOfAnErrorRuleHasTheLevelError();
    void charactersThatAreNotPrintableAreEscapes();
};

namespace {

/// The problems and warnings of a document, with their paths.
Findings findingsIn(const QByteArray &xml, const LintOptions &options = {})
{
    Findings findings;
    const Document document = Document::fromBytes(xml, QStringLiteral("f.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, xml, findings, options);
    return findings;
}

/// A valid document with an integer value, which has these attributes.
QByteArray withValue(const QByteArray &attributes)
{
    return "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
           "<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"><ValueItem>\n"
           "<ValueNumericInt id=\"i\" min=\"0\" max=\"10\" step=\"1\" "
        + attributes + "/></ValueItem></Node></Component></TunerProperties>";
}

} // namespace

void FindingJsonTest::problemOfAReaderHasItsPlaceAndTheNamesThatAreAccepted()
{
    const Finding problem =
        findingsIn(withValue("value=\"1\"").replace("baseresource", "hwProcessing=\"\" baseresource")).listed().first();
    const QByteArray common =
        R"({"path":null,"line":1,"column":43,"message":"Please set a value or a default for the boolean )"
        R"('hwProcessing' in 'TunerProperties'.","value":"","choices":["true","false"],"suggestion":null)";
    QCOMPARE(problemToJson(problem), common + "}");
    QCOMPARE(toJson(problem), common + R"(,"rule":null,"level":"error"})");
}

void FindingJsonTest::problemOfTheCheckHasItsPath()
{
    Findings findings;
    const QByteArray xml = withValue("value=\"1\"").replace("name=\"c\"", "");
    const Document document = Document::fromBytes(xml, QStringLiteral("f.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    QCOMPARE(toJson(findings.listed().first()),
             QByteArray(R"({"path":"Component[1]","line":null,"column":null,"message":"Component: Please set name )"
                        R"(properly.","value":null,"choices":null,"suggestion":null,"rule":null,"level":"error"})"));
}

void FindingJsonTest::problemOfTheDocumentItselfHasAnEmptyPath()
{
    Findings findings;
    const QByteArray xml = withValue("value=\"1\"").replace(" baseresource=\"b\"", "");
    const Document document = Document::fromBytes(xml, QStringLiteral("f.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    QCOMPARE(problemToJson(findings.listed().first()),
             QByteArray(R"({"path":"","line":null,"column":null,"message":"TunerProperties: Please set baseresource )"
                        R"(properly.","value":null,"choices":null,"suggestion":null})"));
}

void FindingJsonTest::warningHasItsMemberSuggestionAndRule()
{
    QCOMPARE(toJson(findingsIn(withValue("value=\"11\"")).warnings().first()),
             QByteArray(R"({"path":"Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value",)"
                        R"("line":3,"column":51,"message":"value 11 is above max 10","value":null,"choices":null,)"
                        R"("suggestion":"use a value from 0 to 10","rule":"value-out-of-range","level":"warning"})"));
}

void FindingJsonTest::warningOfAnErrorRuleHasTheLevelError()
{
    LintOptions options;
    options.setErrors({QStringLiteral("value-out-of-range")});
    const Finding warning = findingsIn(withValue("value=\"11\""), options).warnings().first();
    QCOMPARE(warning.level(), QStringLiteral("error"));
    QVERIFY2(toJson(warning).endsWith(R"("rule":"value-out-of-range","level":"error"})"), toJson(warning).constData());
}

void FindingJsonTest::charactersThatAreNotPrintableAreEscapes()
{
    Finding finding;
    finding.message = QStringLiteral("\u001B[2J \u202E \"a\\b\"\n");
    QCOMPARE(problemToJson(finding),
             QByteArray(R"({"path":null,"line":null,"column":null,"message":"\u001b[2J \u202e \"a\\b\"\n",)"
                        R"("value":null,"choices":null,"suggestion":null})"));
}

TEST_SUITE(FindingJsonTest)
#include "tst_FindingJson.moc"
