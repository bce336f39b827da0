// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QSet>

#include "Rows.h"
#include "tools/Tool.h"

class ToolValidateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validDocumentsHaveNoOutput_data();
    void validDocumentsHaveNoOutput();
    void allExamplesAtOnceAreValid();
    void everyProblemIsReported();
    void pathsBeforeTheMessagesAreAcceptedByGet();
    void everyProblemIsReportedInTheBinaryForms_data();
    void everyProblemIsReportedInTheBinaryForms();
    void linesAndColumnsMatchThoseOfAnEditor_data();
    void linesAndColumnsMatchThoseOfAnEditor();
    void elementsAreCheckedLikeAttributes();
    void skippedContentIsNotAProblem_data();
    void skippedContentIsNotAProblem();
    void elementThatEndsTheSkippingIsChecked();
    void contentOfAnUnknownElementIsChecked();
    void replacedValueIsChecked();
    void valuesAreNamedInEveryForm();
    void jsonHasValueChoicesAndSuggestion();
    void everyCommandExplainsProblems_data();
    void everyCommandExplainsProblems();
    void documentWithoutOutputIsAProblem();
    void problemStaysOnOneLine();
    void worstOfSeveralFilesDeterminesTheStatus_data();
    void worstOfSeveralFilesDeterminesTheStatus();
    void problemsAndErrorsUseDifferentStreams();
    void messagesNameStandardInputByADash();
};

namespace {

/// Problems of a file named "a.xml".
Run validate(const QByteArray &xml)
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), xml);
    return shop.run(line("validate a.xml"));
}

/// What a document accepts as an element.
const QString knownElements =
    QStringLiteral("name, type, baseresource, connectableResources, quantity, parentBaseResource, "
                   "hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported "
                   "or Component");

/// A complete document with additional attributes, and content before its component.
QByteArray document(const char *attributes, const char *elements)
{
    return QByteArray("<TunerProperties Version=\"1.1\" baseresource=\"b\" type=\"SCP\"") + attributes + ">\n"
        + elements
        + "\n<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"><ValueItem>"
          "<ValueInt id=\"i\" value=\"7\"/></ValueItem></Node></Component></TunerProperties>\n";
}

} // namespace

void ToolValidateTest::validDocumentsHaveNoOutput_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << examplePath(name);
}

void ToolValidateTest::validDocumentsHaveNoOutput()
{
    QFETCH(QString, path);
    Workshop shop;
    QStringList files = {path};
    for (const char *name : {"a.tpb", "a.tpz", "a.tps"}) {
        files.append(QString::fromUtf8(name));
        QCOMPARE(shop.run({QStringLiteral("convert"), path, files.last(), QStringLiteral("--no-validate")}).status, 0);
    }
    for (const QString &file : qAsConst(files)) {
        const Run run = shop.run({QStringLiteral("validate"), file});
        QCOMPARE(run.out, QString());
        // One boolean of that example is written in an unusual way; see tst_Lint.
        const bool hasWarning = path.endsWith(QStringLiteral("/ffp.xml")) && file == path;
        QCOMPARE(run.err,
                 hasWarning ? QStringLiteral("tunerproperties: %1: valid; 'lint' has 1 warning\n").arg(file)
                            : QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolValidateTest::allExamplesAtOnceAreValid()
{
    QStringList arguments = {QStringLiteral("validate")};
    for (const QString &name : exampleNames())
        arguments.append(examplePath(name));
    const Run run = Workshop().run(arguments);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: 5 files: 5 valid; 'lint' has 1 warning\n"));
    QCOMPARE(run.status, 0);
}

namespace {

const char badXml[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<TunerProperties Version="1.1"
                 name="Bad"
                 type="receiver"
                 baseresource="b" hwProcessing=''>
  <StartupModes><StartupMode>FFM</StartupMode><StartupMode>ffm</StartupMode></StartupModes>
  <BandwidthSelection><Name>narrow</Name></BandwidthSelection>
  <BandwidthSelection><MaxBandwidth>1</MaxBandwidth></BandwidthSelection>
  <Extra a="1"><HRPANSupported></HRPANSupported></Extra>
  <Component type="Preselector" name="Preselector" optional="">
    <Node id="att">
      <ValueItem><ValueBoolean id="x" value=""/></ValueItem>
      <ValueItem><ValueInt id="y"/></ValueItem>
      <ValueItem/>
    </Node>
    <Node>
      <ValueItem><ValueStringList id="z" value=""><StringItem/></ValueStringList></ValueItem>
    </Node>
    <Node id="empty"/>
  </Component>
  <Component name="c2" type=""/>
  <Component/>
  <Other/>
</TunerProperties>
)";

// Missing members are the same in every form.
const char badPaths[] =
    R"(StartupModes: StartupModes: Please set StartupMode properly. Unknown name 'ffm'; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or Stop; did you mean 'FFM'?
BandwidthSelection[Name=narrow]: BandwidthSelection: Please set MaxBandwidth properly.
BandwidthSelection[2]: BandwidthSelection: Please set Name properly.
Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[id=y]: ValueItem:Check failed. Mandatory data of the member (choice element) m_valueInt is not set.
Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[id=y]/ValueInt: ValueInt: Please set value properly.
Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[3]: ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized: expected ValueBoolean, ValueFloat, ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, ValueNumericInt64, ValueSelection, ValueString or ValueStringList
Component[type=Preselector,name=Preselector]/Node[2]/ValueItem[id=z]/ValueStringList/StringItem[1]: StringItem: Please set value properly.
Component[type=Preselector,name=Preselector]/Node[2]: Node: Please set id properly.
Component[type=Preselector,name=Preselector]/Node[id=empty]: Node: Please set ValueItem properly.
Component[type="",name=c2]: Component: Please set Node properly.
Component[type="",name=c2]: Component: Please set optional properly. Expected true or false
Component[3]: Component: Please set Node properly.
Component[3]: Component: Please set type properly.
Component[3]: Component: Please set name properly.
Component[3]: Component: Please set optional properly. Expected true or false
TunerProperties: Please set type properly. Unknown name 'receiver'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'Receiver'?
)";

QString withFile(const char *file, const char *lines)
{
    QString text;
    for (const QString &each : QString::fromUtf8(lines).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        text += QString::fromUtf8(file) + QStringLiteral(": ") + each + QLatin1Char('\n');
    return text;
}

} // namespace

void ToolValidateTest::everyProblemIsReported()
{
    const Run run = validate(badXml);
    QCOMPARE(run.out,
             QStringLiteral(
                 "a.xml:4:18: enum is not valid (classname=TunerProperties,membername=m_type): unknown name "
                 "'receiver'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'Receiver'?\n"
                 "a.xml:5:35: Please set a value or a default for the boolean 'hwProcessing' in 'TunerProperties'. '' "
                 "is neither true nor false\n"
                 "a.xml:6:47: StartupModes: Tried to append not completely defined or invalid item StartupMode. "
                 "Unknown name 'ffm'; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or "
                 "Stop; did you mean 'FFM'?\n"
                 "a.xml:9:3: Unknown Tag 'Extra' in 'TunerProperties'. Expected %1\n"
                 "a.xml:9:16: Please set a value or a default for the boolean 'HRPANSupported' in 'TunerProperties'. "
                 "'' is neither true nor false\n"
                 "a.xml:10:52: Please set a value or a default for the boolean 'optional' in 'Component'. '' is "
                 "neither true nor false\n"
                 "a.xml:12:39: Please set a value or a default for the boolean 'value' in 'ValueBoolean'. '' is "
                 "neither true nor false\n"
                 "a.xml:23:3: Unknown Tag 'Other' in 'TunerProperties'. Expected %1\n")
                     .arg(knownElements)
                 + withFile("a.xml", badPaths));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: a.xml: 24 problems; 'lint' has 2 warnings\n")); // unknown elements
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::pathsBeforeTheMessagesAreAcceptedByGet()
{
    // Problems at every level, and identities that need quotes, a position, or both.
    const QByteArray component = R"(<Component type="a / b" name="[x]=&quot;&#10;" optional="true">
    <Node id="n"/>
    <Node id="n"><ValueItem/></Node>
    <Node id=""><ValueItem><ValueInt id="i"/></ValueItem></Node>
    <Node id="s"><ValueItem><ValueSelection id="s" value="1" text="t" index="0"><SelectionItem name="t"/></ValueSelection>
    </ValueItem></Node>
  </Component>
)";
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), QByteArray(badXml).replace("  <Other/>\n", "  <Other/>\n" + component));
    const Run validated = shop.run(line("validate a.xml"));
    const QStringList paths = {
        QStringLiteral("StartupModes"),
        QStringLiteral("BandwidthSelection[Name=narrow]"),
        QStringLiteral("BandwidthSelection[2]"),
        QStringLiteral("Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[id=y]"),
        QStringLiteral("Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[id=y]/ValueInt"),
        QStringLiteral("Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[3]"),
        QStringLiteral(
            "Component[type=Preselector,name=Preselector]/Node[2]/ValueItem[id=z]/ValueStringList/StringItem[1]"),
        QStringLiteral("Component[type=Preselector,name=Preselector]/Node[2]"),
        QStringLiteral("Component[type=Preselector,name=Preselector]/Node[id=empty]"),
        QStringLiteral("Component[type=\"\",name=c2]"),
        QStringLiteral("Component[3]"),
        QStringLiteral(R"(Component[type="a / b",name="[x]=\"\n"]/Node[id=n][1])"),
        QStringLiteral(R"(Component[type="a / b",name="[x]=\"\n"]/Node[id=n][2]/ValueItem[1])"),
        QStringLiteral(R"(Component[type="a / b",name="[x]=\"\n"]/Node[id=""]/ValueItem[id=i])"),
        QStringLiteral(R"(Component[type="a / b",name="[x]=\"\n"]/Node[id=""]/ValueItem[id=i]/ValueInt)"),
        QStringLiteral(R"(Component[type="a / b",name="[x]=\"\n"]/Node[id=s]/ValueItem[id=s]/ValueSelection/)"
                       R"(SelectionItem[name=t])"),
    };
    // Each line about an object begins with one of these paths, and each of them begins a line.
    QStringList begins;
    for (const QString &path : paths)
        begins.append(QStringLiteral("a.xml: ") + path + QStringLiteral(": "));
    QSet<QString> found;
    for (const QString &each : validated.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const auto begin =
            std::find_if(begins.cbegin(), begins.cend(), [&](const QString &b) { return each.startsWith(b); });
        const bool isOfTheDocument = each.startsWith(QLatin1String("a.xml:")) && each.mid(6, 1).at(0).isDigit();
        if (begin != begins.cend())
            found.insert(*begin);
        else if (!isOfTheDocument)
            QCOMPARE(each,
                     QStringLiteral("a.xml: TunerProperties: Please set type properly. Unknown name 'receiver'; "
                                    "expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'Receiver'?"));
    }
    QCOMPARE(found.size(), paths.size());
    for (const QString &path : paths) {
        const Run run = shop.run({QStringLiteral("get"), QStringLiteral("a.xml"), path});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QVERIFY2(run.out.startsWith(QLatin1Char('{')), qPrintable(path + run.out));
    }
}

void ToolValidateTest::everyProblemIsReportedInTheBinaryForms_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"a.tpb", "a.tpz"}) // a snapshot does not hold values that are not set
        QTest::newRow(name) << QString::fromUtf8(name);
}

void ToolValidateTest::everyProblemIsReportedInTheBinaryForms()
{
    QFETCH(QString, name);
    // Tagged records contain the default of a mandatory member that is not set, an empty text or a 0; so fewer members
    // are missing.
    const char *const paths =
        R"(StartupModes: StartupModes: Please set StartupMode properly. Unknown name ''; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or Stop
Component[type=Preselector,name=Preselector]/Node[id=att]/ValueItem[3]: ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized: expected ValueBoolean, ValueFloat, ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, ValueNumericInt64, ValueSelection, ValueString or ValueStringList
Component[type=Preselector,name=Preselector]/Node[id=empty]: Node: Please set ValueItem properly.
Component[type="",name=c2]: Component: Please set Node properly.
Component[type="",name=c2]: Component: Please set optional properly. Expected true or false
Component[type="",name=""]: Component: Please set Node properly.
Component[type="",name=""]: Component: Please set optional properly. Expected true or false
TunerProperties: Please set type properly. Unknown name ''; expected MCP, SCP, FFP, Receiver or DirectionFinder
)";
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), badXml);
    QCOMPARE(shop.run(line("convert a.xml --no-validate") << name).status, 0);
    const Run run = shop.run({QStringLiteral("validate"), name});
    QCOMPARE(run.out, withFile(qPrintable(name), paths));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1: 8 problems; 'lint' has 1 warning\n").arg(name));
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::linesAndColumnsMatchThoseOfAnEditor_data()
{
    const Rows<QByteArray, QString> row("xml", "place");
    row("an attribute on a line of its own", document("\n\n  hwProcessing=\"\"", ""), "3:3");
    row("an attribute after a value that looks like it", document(" name=' hwProcessing=\"\"'\n hwProcessing=''", ""),
        "2:2");
    row("a greater-than sign before it", document(" name=\">\"\n hwProcessing = ''", ""), "2:2");
    row("lines that end in CR LF", document("\r\n\r\n  hwProcessing=\"\"", ""), "3:3");
    row("lines that end in CR", document("\r\r  hwProcessing=\"\"", ""), "3:3");
    row("a byte order mark", "\xEF\xBB\xBF" + document("\n\thwProcessing=\"\"", ""), "2:2");
    row("letters of two bytes", document("\n name=\"\xC3\x9C\xC3\x9C\" hwProcessing=\"\"", ""), "2:12");
    row("Latin-1, in which it is the end of the start tag",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + document("\n name=\"\xDC\xDC\" hwProcessing=\"\"", ""),
        "2:27");
    row("a comment before it", "<!-- < <\n -->" + document("\n hwProcessing=\"\"", ""), "3:2");
    row("an element", document("", "\n <HRPANSupported/>"), "3:2");
    row("an element over several lines", document("", "\n <HRPANSupported\n><x/></HRPANSupported\n>"), "3:2");
    row("an element after another", document("", "<MaxFFPDelay>1</MaxFFPDelay><HRPANSupported/>"), "2:29");
}

void ToolValidateTest::linesAndColumnsMatchThoseOfAnEditor()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, place);
    const Run run = validate(xml);
    QCOMPARE(run.out.section(QLatin1String(": "), 0, 0), QStringLiteral("a.xml:") + place);
    QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::elementsAreCheckedLikeAttributes()
{
    const Run run = validate(document("",
                                      "<type>scp</type>\n<hwProcessing></hwProcessing>\n<hwProcessing> </hwProcessing>"
                                      "<type>FFP</type>"));
    // The second type replaces the unknown one; a blank is a text, and therefore true.
    QCOMPARE(run.out,
             QStringLiteral("a.xml:2:1: enum is not valid (classname=TunerProperties,membername=m_type): unknown name "
                            "'scp'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'SCP'?\n"
                            "a.xml:3:1: Please set a value or a default for the boolean 'hwProcessing' in "
                            "'TunerProperties'. '' is neither true nor false\n"));
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::skippedContentIsNotAProblem_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("warnings");
    QTest::newRow("unknown elements of an older version")
        << document("", "<Extra><HRPANSupported/><Component/></Extra>").replace("Version=\"1.1\"", "Version=\"1.0\"")
        << 2;
    QTest::newRow("unknown elements without a version")
        << document("", "<Extra><HRPANSupported/></Extra>").replace("Version=\"1.1\"", "") << 2;
    QTest::newRow("unknown attributes") << document(" extra=\"\" x:hwProcessing=\"\" xmlns:x=\"y\"", "") << 2;
    QTest::newRow("unknown elements in other objects") << document(
        "", "<StartupModes><x><StartupMode>none</StartupMode></x><StartupMode>FFM</StartupMode></StartupModes>")
                                                       << 1;
    QTest::newRow("elements in a text") << document("", "<HRPANSupported>0<Component/></HRPANSupported>") << 1;
    QTest::newRow("numbers that are none") << document(" quantity=\"many\"", "<MaxFFPDelay>long</MaxFFPDelay>") << 2;
}

void ToolValidateTest::skippedContentIsNotAProblem()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, warnings);
    const Run run = validate(xml);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             warnings == 0 ? QString()
                           : QStringLiteral("tunerproperties: a.xml: valid; 'lint' has %1 warning%2\n")
                                 .arg(warnings)
                                 .arg(QLatin1String(warnings == 1 ? "" : "s")));
    QCOMPARE(run.status, 0);
}

void ToolValidateTest::elementThatEndsTheSkippingIsChecked()
{
    // The inner <x/> ends the skipping of the outer one, so the following mode counts.
    const Run run = validate(document("",
                                      "<StartupModes><StartupMode>FFM</StartupMode><x><x/></x>\n"
                                      "<y><y><StartupMode>none</StartupMode></y></y></StartupModes>"));
    QCOMPARE(
        run.out,
        QStringLiteral("a.xml:3:7: StartupModes: Tried to append not completely defined or invalid item StartupMode. %1"
                       "a.xml: StartupModes: StartupModes: Please set StartupMode properly. %1")
            .arg(QStringLiteral("Unknown name 'none'; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, "
                                "Polar, Search or Stop\n")));
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::contentOfAnUnknownElementIsChecked()
{
    const Run run = validate(document("", "<Extra>\n<More/>\n<Component name=\"inner\"/></Extra>"));
    QCOMPARE(run.out,
             QStringLiteral("a.xml:2:1: Unknown Tag 'Extra' in 'TunerProperties'. Expected %1\n"
                            "a.xml:3:1: Unknown Tag 'More' in 'TunerProperties'. Expected %1\n"
                            "a.xml: Component[1]: Component: Please set Node properly.\n"
                            "a.xml: Component[1]: Component: Please set type properly.\n"
                            "a.xml: Component[1]: Component: Please set optional properly. Expected true or false\n")
                 .arg(knownElements));
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::replacedValueIsChecked()
{
    const Run run = validate(document("", "").replace("<ValueInt ",
                                                      "<ValueStringList id=\"l\" value=\"\">\n<StringItem/>"
                                                      "</ValueStringList><ValueInt "));
    QCOMPARE(run.out,
             QStringLiteral("a.xml:4:1: ValueStringList: Tried to append not completely defined or invalid item "
                            "StringItem.\n"));
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::valuesAreNamedInEveryForm()
{
    Workshop shop;
    const QString problem = QStringLiteral("%1TunerProperties: Please set type properly. %2; expected MCP, SCP, FFP, "
                                           "Receiver or DirectionFinder%3\n");
    const QString unknown = QStringLiteral("Unknown name 'SPC'");
    const QString meant = QStringLiteral("; did you mean 'SCP'?");
    shop.write(QStringLiteral("a.tpb"),
               QByteArray::fromHex(QByteArray(smallTaggedHex).replace("00000003 534350", "00000003 535043")));
    QCOMPARE(shop.run(line("validate a.tpb")).out, problem.arg(QStringLiteral("a.tpb: "), unknown, meant));
    shop.write(QStringLiteral("a.tps"),
               QByteArray::fromHex(QByteArray(smallSnapshotHex).replace("01 00000002 0062", "63 00000002 0062")));
    QCOMPARE(shop.run(line("validate a.tps")).out,
             problem.arg(QStringLiteral("a.tps: "), QStringLiteral("'99' is out of range"), QString()));
    shop.write(QStringLiteral("a.json"), R"({"TunerProperties": {"type": "SPC"}})");
    QCOMPARE(shop.run(line("validate a.json")).out,
             QStringLiteral("a.json:1:30: type: unknown name 'SPC'; expected MCP, SCP, FFP, Receiver or "
                            "DirectionFinder; did you mean 'SCP'?\n"));
    // What a value contains stays on its line.
    QCOMPARE(
        validate(QByteArray(smallXml).replace("SCP",
                                              "S&#10;\xE2\x80\xAE"
                                              "P"))
            .out.section(QLatin1Char(':'), 4, 4),
        QStringLiteral(" unknown name 'S\\n\\u202eP'; expected MCP, SCP, FFP, Receiver or DirectionFinder\na.xml"));
}

void ToolValidateTest::jsonHasValueChoicesAndSuggestion()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), QByteArray(smallXml).replace("SCP", "scp"));
    const QString end = QStringLiteral(R"("value":"scp","choices":["MCP","SCP","FFP","Receiver","DirectionFinder"],)"
                                       R"("suggestion":"did you mean 'SCP'?"})");
    QCOMPARE(shop.run(line("validate --json a.xml")).out,
             QStringLiteral(R"({"file":"a.xml","status":"problems","problems":[{"path":null,"line":2,"column":32,)"
                            R"-("message":"enum is not valid (classname=TunerProperties,membername=m_type)",%1,)-"
                            R"({"path":"","line":null,"column":null,)"
                            R"("message":"TunerProperties: Please set type properly.",%1],)"
                            R"("problemCount":2,"warnings":0,"error":null})"
                            "\n")
                 .arg(end));
}

void ToolValidateTest::everyCommandExplainsProblems_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"validate a.xml", "lint a.xml", "lint --format sarif a.xml", "convert a.xml b.xml"})
        QTest::newRow(command) << QString::fromUtf8(command);
}

void ToolValidateTest::everyCommandExplainsProblems()
{
    QFETCH(QString, command);
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), QByteArray(smallXml).replace("SCP", "scp"));
    const Run run = shop.run(command.split(QLatin1Char(' ')));
    QVERIFY2((run.out + run.err)
                 .contains(QStringLiteral("(classname=TunerProperties,membername=m_type): unknown name "
                                          "'scp'; expected MCP, SCP, FFP, Receiver or DirectionFinder; "
                                          "did you mean 'SCP'?")),
             qPrintable(run.out + run.err));
}

void ToolValidateTest::documentWithoutOutputIsAProblem()
{
    Workshop shop;
    // Component (set, but empty), type and base resource.
    shop.write(QStringLiteral("a.tps"), QByteArray::fromHex("D000 00000006 0031002E0031 00000000 01 00000002 0062"));
    const Run run = shop.run(line("validate a.tps"));
    QCOMPARE(run.out,
             QStringLiteral("a.tps: TunerProperties: the list Component is set but empty, so nothing would be written; "
                            "append at least one item\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolValidateTest::problemStaysOnOneLine()
{
    const Run run = validate(document("", "<BandwidthSelection><Name>a\nb\tc</Name></BandwidthSelection>"));
    QCOMPARE(
        run.out,
        QStringLiteral("a.xml: BandwidthSelection[Name=\"a\\nb\\tc\"]: BandwidthSelection: Please set MaxBandwidth "
                       "properly.\n"));
}

void ToolValidateTest::worstOfSeveralFilesDeterminesTheStatus_data()
{
    const Rows<QString, int> row("files", "status");
    row("good.xml good.xml", 0);
    row("good.xml bad.xml", 1);
    row("bad.xml good.xml", 1);
    row("bad.xml missing.xml", 3);
    row("missing.xml bad.xml", 3);
    row("missing.xml good.xml", 3);
}

void ToolValidateTest::worstOfSeveralFilesDeterminesTheStatus()
{
    QFETCH(QString, files);
    QFETCH(int, status);
    Workshop shop;
    shop.write(QStringLiteral("good.xml"), smallXml);
    shop.write(QStringLiteral("bad.xml"), QByteArray(smallXml).replace("SCP", "scp"));
    QCOMPARE(shop.run(line("validate") + files.split(QLatin1Char(' '))).status, status);
}

void ToolValidateTest::problemsAndErrorsUseDifferentStreams()
{
    Workshop shop;
    shop.write(QStringLiteral("bad1.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    shop.write(QStringLiteral("cut.xml"), "<TunerProperties>");
    shop.write(QStringLiteral("bad2.xml"), QByteArray(smallXml).replace(" value=\"7\"", ""));
    const Run run = shop.run(line("validate bad1.xml missing.xml cut.xml bad2.xml"));
    QCOMPARE(
        run.out,
        QStringLiteral(
            "bad1.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"
            "bad2.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: ValueItem:Check failed. Mandatory data of "
            "the member (choice element) m_valueInt is not set.\n"
            "bad2.xml: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt: ValueInt: Please set "
            "value properly.\n"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: missing.xml: cannot open: No such file or directory\n"
                            "tunerproperties: cut.xml:1:17: Premature end of document.\n"
                            "tunerproperties: 4 files: 2 with problems, 2 unreadable\n"));
    QCOMPARE(run.status, 3);
}

void ToolValidateTest::messagesNameStandardInputByADash()
{
    const Run run = Workshop().run(line("validate -"), QByteArray(smallXml).replace("SCP", "scp"));
    QCOMPARE(
        run.out,
        QStringLiteral("-:2:32: enum is not valid (classname=TunerProperties,membername=m_type): unknown name %1"
                       "-: TunerProperties: Please set type properly. Unknown name %1")
            .arg(QStringLiteral("'scp'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean 'SCP'?\n")));
    QCOMPARE(run.status, 1);
}

TEST_SUITE(ToolValidateTest)
#include "tst_ToolValidate.moc"
