// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Finding.h>

using namespace TunerDocuments;

/// What a problem says besides the text of the model: the value, the choices, the suggestion.
class FindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void misspeltTypeHasValueChoicesAndSuggestion_data();
    void misspeltTypeHasValueChoicesAndSuggestion();
    void nameThatNothingIsNearHasNoSuggestion();
    void numberWithoutANameIsTheValue();
    void missingValueHasChoicesOnly();
    void emptyBooleanIsNeitherTrueNorFalse();
    void unknownElementHasTheNamesThatAreKnown();
    void textsAndObjectsHaveNoChoices();
    void firstUnknownModeIsTheValueOfTheList();
    void lastTypeOfSeveralIsTheValue();
    void longValueIsShortened();
    void valueOfAProblemThatIsNotKeptIsKnown();
    void problemsOfJsonHaveThePartsOfTheirMessages();
};

namespace {

const QString types = QStringLiteral("MCP, SCP, FFP, Receiver or DirectionFinder");
const QString modes = QStringLiteral("Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or Stop");
const QStringList typeList = {QStringLiteral("MCP"), QStringLiteral("SCP"), QStringLiteral("FFP"),
                              QStringLiteral("Receiver"), QStringLiteral("DirectionFinder")};

QVector<Finding> findingsOf(const QByteArray &bytes, Form form, int most = 100)
{
    Findings findings(most);
    const Document document =
        Document::fromBytes(bytes, QStringLiteral("f"), LoadOptions().setForm(form), findings.collector());
    findings.describePaths(document.tuner);
    return findings.listed();
}

/// A document with these attributes and elements, and a component.
QByteArray xml(const QByteArray &attributes, const QByteArray &elements = {})
{
    return "<TunerProperties Version=\"1.1\" baseresource=\"b\"" + attributes + ">" + elements
        + "<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"><ValueItem><ValueInt id=\"i\" "
          "value=\"7\"/>"
          "</ValueItem></Node></Component></TunerProperties>";
}

QVector<Finding> inXml(const QByteArray &attributes, const QByteArray &elements = {})
{
    return findingsOf(xml(attributes, elements), Form::Xml);
}

/// A record of type `name`, in hexadecimal digits and with its length, of a document without anything else.
QByteArray recordOfType(const QByteArray &name)
{
    const QByteArray size = QByteArray::number(name.size(), 16).rightJustified(8, '0');
    const QByteArray payload = QByteArray::number(name.size() + 4, 16).rightJustified(8, '0');
    const QByteArray all = QByteArray::number(name.size() + 12, 16).rightJustified(8, '0');
    return QByteArray::fromHex("C10CBB5F" + all + "A1F0EE2D" + payload + size) + name;
}

/// The document is set, but for type and base resource; type is that number.
QByteArray snapshotOfType(const QByteArray &hexadecimal)
{
    return QByteArray::fromHex("D000 00000006 0031002E0031 00000000" + hexadecimal + "00000002 0062");
}

Finding about(const QVector<Finding> &findings, const char *member)
{
    for (const Finding &finding : findings) {
        if (finding.member == QLatin1String(member))
            return finding;
    }
    return {};
}

} // namespace

void FindingsTest::misspeltTypeHasValueChoicesAndSuggestion_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("text");
    const QString end =
        QStringLiteral("nknown name 'Reciever'; expected ") + types + QStringLiteral("; did you mean 'Receiver'?");
    const QString located =
        QStringLiteral("f:1:49: enum is not valid (classname=TunerProperties,membername=m_type): u") + end;
    const QString checked = QStringLiteral("f: TunerProperties: Please set type properly. U") + end;
    QTest::newRow("XML") << xml(" type=\"Reciever\"") << int(Form::Xml) << located + QLatin1Char('\n') + checked;
    QTest::newRow("a record") << recordOfType("Reciever") << int(Form::Tagged) << checked;
}

void FindingsTest::misspeltTypeHasValueChoicesAndSuggestion()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, form);
    QFETCH(QString, text);
    QStringList texts;
    for (const Finding &finding : findingsOf(bytes, Form(form))) {
        if (finding.member != QLatin1String("type"))
            continue;
        texts.append(finding.text(QStringLiteral("f")));
        QCOMPARE(finding.value, QStringLiteral("Reciever"));
        QCOMPARE(finding.choices, typeList);
        QCOMPARE(finding.suggestion, QStringLiteral("did you mean 'Receiver'?"));
    }
    QCOMPARE(texts.join(QLatin1Char('\n')), text);
}

void FindingsTest::nameThatNothingIsNearHasNoSuggestion()
{
    const Finding finding = about(inXml(" type=\"radio\""), "type");
    QCOMPARE(finding.explanation, QStringLiteral("unknown name 'radio'; expected ") + types);
    QVERIFY(finding.suggestion.isNull());
    QCOMPARE(finding.message, QStringLiteral("enum is not valid (classname=TunerProperties,membername=m_type)"));
}

void FindingsTest::numberWithoutANameIsTheValue()
{
    const Finding finding = about(findingsOf(snapshotOfType("07"), Form::Snapshot), "type");
    QCOMPARE(finding.explained(),
             QStringLiteral("TunerProperties: Please set type properly. '7' is out of range; expected ") + types);
    QCOMPARE(finding.value, QStringLiteral("7"));
    QCOMPARE(finding.choices, typeList);
    QVERIFY(finding.suggestion.isNull());
}

void FindingsTest::missingValueHasChoicesOnly()
{
    const Finding finding = about(inXml(""), "type");
    QCOMPARE(finding.explained(), QStringLiteral("TunerProperties: Please set type properly. Expected ") + types);
    QVERIFY(finding.value.isNull());
    QCOMPARE(finding.choices, typeList);
    // -1 is the value that means none.
    QVERIFY(about(findingsOf(snapshotOfType("FF"), Form::Snapshot), "type").value.isNull());
}

void FindingsTest::emptyBooleanIsNeitherTrueNorFalse()
{
    const Finding finding = about(inXml(" type=\"SCP\" hwProcessing=\"\""), "hwProcessing");
    QCOMPARE(finding.explanation, QStringLiteral("'' is neither true nor false"));
    QCOMPARE(finding.value, QStringLiteral(""));
    QVERIFY(!finding.value.isNull());
    QCOMPARE(finding.choices, (QStringList{QStringLiteral("true"), QStringLiteral("false")}));
}

void FindingsTest::unknownElementHasTheNamesThatAreKnown()
{
    const QVector<Finding> findings = inXml(" type=\"SCP\"", "<MaxFPDelay>1</MaxFPDelay>");
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().explained(),
             QStringLiteral("Unknown Tag 'MaxFPDelay' in 'TunerProperties'. Expected name, type, baseresource, "
                            "connectableResources, quantity, parentBaseResource, hwProcessing, StartupModes, "
                            "BandwidthSelection, MaxFFPDelay, HRPANSupported or Component; did you mean "
                            "'MaxFFPDelay'?"));
    QCOMPARE(findings.first().value, QStringLiteral("MaxFPDelay"));
}

void FindingsTest::textsAndObjectsHaveNoChoices()
{
    const QVector<Finding> findings = inXml(" type=\"SCP\"", "<Component name=\"d\" optional=\"true\"/>");
    QCOMPARE(findings.size(), 2);
    for (const Finding &finding : findings) {
        QVERIFY(finding.choices.isEmpty());
        QVERIFY(finding.value.isNull());
        QCOMPARE(finding.explained(), finding.message);
    }
}

void FindingsTest::firstUnknownModeIsTheValueOfTheList()
{
    const QVector<Finding> findings = inXml(" type=\"SCP\"",
                                            "<StartupModes><StartupMode>Scan</StartupMode>"
                                            "<StartupMode>stop</StartupMode><StartupMode>polr</StartupMode>"
                                            "</StartupModes>");
    QCOMPARE(findings.size(), 3);
    QCOMPARE(findings[0].suggestion, QStringLiteral("did you mean 'Stop'?"));
    QCOMPARE(findings[1].suggestion, QStringLiteral("did you mean 'Polar'?"));
    QCOMPARE(findings[2].explained(),
             QStringLiteral("StartupModes: Please set StartupMode properly. Unknown name 'stop'; expected ") + modes
                 + QStringLiteral("; did you mean 'Stop'?"));
}

void FindingsTest::lastTypeOfSeveralIsTheValue()
{
    const QVector<Finding> findings = inXml(" type=\"one\"", "<type>two</type>");
    QCOMPARE(findings.size(), 3);
    QCOMPARE(findings[0].value, QStringLiteral("one"));
    QCOMPARE(findings[1].value, QStringLiteral("two"));
    QCOMPARE(findings[2].value, QStringLiteral("two"));
}

void FindingsTest::longValueIsShortened()
{
    const Finding finding = about(inXml(" type=\"" + QByteArray(5'000'000, 'x') + "\""), "type");
    QCOMPARE(finding.explanation,
             QStringLiteral("unknown name '%1...'; expected ").arg(QString(40, QLatin1Char('x'))) + types);
    QCOMPARE(finding.value, QString(400, QLatin1Char('x')) + QStringLiteral("..."));
    // A character above U+FFFF is not split.
    const QByteArray faces = QByteArray("\xF0\x9F\x98\x80").repeated(50);
    QCOMPARE(about(inXml(" type=\"x" + faces + "\""), "type").explanation.section(QLatin1Char('\''), 1, 1),
             QLatin1Char('x') + QStringLiteral("\U0001F600").repeated(19) + QStringLiteral("..."));
}

void FindingsTest::valueOfAProblemThatIsNotKeptIsKnown()
{
    const QByteArray bytes = QByteArray::fromHex("C10CBB5F 0000002D"
                                                 "A1F0EE2D 00000007 00000003 6F6E65" // "one"
                                                 "A1F0EE2D 00000007 00000003 74776F" // "two"
                                                 "A1F0EE2D 00000007 00000003 736978"); // "six"
    // There is room for the first two refusals of the reader, and for two problems that the check finds.
    const QVector<Finding> findings = findingsOf(bytes, Form::Tagged, 2);
    QCOMPARE(findings.size(), 2);
    QCOMPARE(about(findings, "type").value, QStringLiteral("six"));
}

void FindingsTest::problemsOfJsonHaveThePartsOfTheirMessages()
{
    const auto first = [](const QByteArray &members) {
        try {
            Document::fromBytes("{\"TunerProperties\": {" + members + "}}", QStringLiteral("f"));
        } catch (const InvalidContent &content) {
            return content.problems().listed().first();
        }
        return Finding();
    };
    const Finding type = first(R"("type": "Reciever")");
    QCOMPARE(type.explained(),
             QStringLiteral("unknown name 'Reciever'; expected ") + types
                 + QStringLiteral("; did you mean 'Receiver'?"));
    QCOMPARE(type.value, QStringLiteral("Reciever"));
    QCOMPARE(type.choices, typeList);
    QCOMPARE(type.suggestion, QStringLiteral("did you mean 'Receiver'?"));
    const Finding number = first(R"("quantity": "7")");
    QCOMPARE(number.message, QStringLiteral("the string '7' is not a whole number; did you mean 7?"));
    QCOMPARE(number.value, QStringLiteral("7"));
    QVERIFY(number.choices.isEmpty());
    QCOMPARE(number.suggestion, QStringLiteral("did you mean 7?"));
    const Finding member = first(R"("quantiy": 7)");
    QCOMPARE(member.value, QStringLiteral("quantiy"));
    QVERIFY(member.choices.contains(QStringLiteral("quantity")));
    QCOMPARE(member.suggestion, QStringLiteral("did you mean 'quantity'?"));
    QCOMPARE(first(R"("hwProcessing": "yes")").value, QStringLiteral("yes"));
}

TEST_SUITE(FindingsTest)
#include "tst_Findings.moc"
