// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

#include <QRegularExpression>

#include <jobxml/TunerProperties.h>

/// The JSON form, as a file.
class ToolJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberStandsUnderItsName();
    void whatIsNotSetStandsApart();
    void nullIsNoEmptyText();
    void numbersAreExact();
    void namesStandForEnumerations();
    void examplesComeBackByteForByte_data();
    void examplesComeBackByteForByte();
    void theSuffixAndTheContentTellTheForm();
    void membersMayStandInAnyOrder();
    void numbersOf64BitsMayBeNumbers();
    void theVersionRuleHolds_data();
    void theVersionRuleHolds();
    void whatIsNoJsonIsRefusedAtItsPlace_data();
    void whatIsNoJsonIsRefusedAtItsPlace();
    void whatIsNoDocumentIsRefusedAtItsPath_data();
    void whatIsNoDocumentIsRefusedAtItsPath();
    void longNamesAreCutInMessages();
    void deepNestingIsRefused();
    void errorsShowTheEndOfALongToken_data();
    void errorsShowTheEndOfALongToken();
    void aTokenAsLongAsItsFileIsNotPrinted();
    void manyMembersAreRefused();
    void textsHoldEveryCharacter();
    void validatingTellsTheSameProblems();
    void whatDoesNotValidateIsNotWritten();
    void showCanWriteJson();
    void thePageShowsWhatIsWritten();
};

namespace {

constexpr char smallJson[] = R"({
  "TunerProperties": {
    "Version": "1.1",
    "type": "SCP",
    "baseresource": "b",
    "Component": [
      {
        "type": "t",
        "name": "c",
        "optional": true,
        "Node": [
          {
            "id": "n",
            "ValueItem": [
              {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 7}}
            ]
          }
        ]
      }
    ]
  }
}
)";

QString onOneLine(QString json)
{
    static const QRegularExpression lineEnd(QStringLiteral("\n *"));
    return json.replace(QRegularExpression(QStringLiteral(",\n *")), QStringLiteral(", ")).remove(lineEnd);
}

/// The members of a document, as the tool writes them on one line when it has read these.
QString again(const QByteArray &members)
{
    const QByteArray json = R"({"TunerProperties": {"Version": "1.1", )" + members + "}}";
    const Run run = Workshop().run(line("convert - - --to json --no-validate"), json);
    const QString text = onOneLine(run.out);
    const QString start = QStringLiteral(R"({"TunerProperties": {"Version": "1.1", )");
    const bool isDocument = run.status == 0 && text.startsWith(start) && text.endsWith(QLatin1String("}}"));
    return isDocument ? text.mid(start.size(), text.size() - start.size() - 2) : text + run.err;
}

QString refusal(const QByteArray &json)
{
    const Run run = Workshop().run(line("show -"), json);
    return run.status == 3 && run.out.isEmpty() ? run.err : QStringLiteral("status %1: ").arg(run.status) + run.out;
}

} // namespace

void ToolJsonTest::everyMemberStandsUnderItsName()
{
    const QByteArray xml = R"(<TunerProperties Version="1.1" name="N" type="Receiver" baseresource="B"
            connectableResources="C" quantity="-2" parentBaseResource="P" hwProcessing="true">
        <StartupModes><StartupMode>Stop</StartupMode><StartupMode>Scan</StartupMode></StartupModes>
        <BandwidthSelection><Name>narrow</Name><MaxBandwidth>2400.25</MaxBandwidth></BandwidthSelection>
        <MaxFFPDelay>5000000000</MaxFFPDelay>
        <HRPANSupported>true</HRPANSupported>
        <Component type="t1" name="n1" displayName="d1" optional="false">
          <Node id="plain">
            <ValueItem><ValueBoolean id="a" value="true"/></ValueItem>
            <ValueItem><ValueFloat id="b" value="0.35"/></ValueItem>
            <ValueItem><ValueInt id="c" value="-7"/></ValueItem>
            <ValueItem><ValueInt64 id="d" value="9000000000"/></ValueItem>
            <ValueItem><ValueString id="e" value="text"/></ValueItem>
          </Node>
          <Node id="ranged">
            <ValueItem><ValueNumericFloat id="f" value="1.5" min="-2" max="3.25" step="0.1"/></ValueItem>
            <ValueItem><ValueNumericInt id="g" value="1" min="2" max="3" step="4"/></ValueItem>
            <ValueItem><ValueNumericInt64 id="h" value="5" min="6" max="7" step="8"/></ValueItem>
          </Node>
          <Node id="lists">
            <ValueItem><ValueSelection id="i" value="0.5" text="half" index="1">
              <SelectionItem name="none" value="0"/><SelectionItem name="half" value="0.5"/>
            </ValueSelection></ValueItem>
            <ValueItem><ValueStringList id="j" value="x">
              <StringItem value="x"/><StringItem value="y"/>
            </ValueStringList></ValueItem>
          </Node>
        </Component>
      </TunerProperties>)";
    const Run run = Workshop().run(line("convert - - --to json"), xml);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, QStringLiteral(R"({
  "TunerProperties": {
    "Version": "1.1",
    "name": "N",
    "type": "Receiver",
    "baseresource": "B",
    "connectableResources": "C",
    "quantity": -2,
    "parentBaseResource": "P",
    "hwProcessing": true,
    "StartupModes": {"StartupMode": ["Stop", "Scan"]},
    "BandwidthSelection": [
      {"Name": "narrow", "MaxBandwidth": 2400.25}
    ],
    "MaxFFPDelay": "5000000000",
    "HRPANSupported": true,
    "Component": [
      {
        "type": "t1",
        "name": "n1",
        "displayName": "d1",
        "optional": false,
        "Node": [
          {
            "id": "plain",
            "ValueItem": [
              {"ChoiceValueItem": "ValueBoolean", "ValueBoolean": {"id": "a", "value": true}},
              {"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "b", "value": 0.35}},
              {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "c", "value": -7}},
              {"ChoiceValueItem": "ValueInt64", "ValueInt64": {"id": "d", "value": "9000000000"}},
              {"ChoiceValueItem": "ValueString", "ValueString": {"id": "e", "value": "text"}}
            ]
          },
          {
            "id": "ranged",
            "ValueItem": [
              {
                "ChoiceValueItem": "ValueNumericFloat",
                "ValueNumericFloat": {"id": "f", "value": 1.5, "min": -2.0, "max": 3.25, "step": 0.1}
              },
              {
                "ChoiceValueItem": "ValueNumericInt",
                "ValueNumericInt": {"id": "g", "value": 1, "min": 2, "max": 3, "step": 4}
              },
              {
                "ChoiceValueItem": "ValueNumericInt64",
                "ValueNumericInt64": {"id": "h", "value": "5", "min": "6", "max": "7", "step": "8"}
              }
            ]
          },
          {
            "id": "lists",
            "ValueItem": [
              {
                "ChoiceValueItem": "ValueSelection",
                "ValueSelection": {
                  "id": "i",
                  "value": 0.5,
                  "text": "half",
                  "index": 1,
                  "SelectionItem": [
                    {"name": "none", "value": 0.0},
                    {"name": "half", "value": 0.5}
                  ]
                }
              },
              {
                "ChoiceValueItem": "ValueStringList",
                "ValueStringList": {
                  "id": "j",
                  "value": "x",
                  "StringItem": [
                    {"value": "x"},
                    {"value": "y"}
                  ]
                }
              }
            ]
          }
        ]
      }
    ]
  }
}
)"));
}

void ToolJsonTest::whatIsNotSetStandsApart()
{
    // As it stands in the first column it is written again.
    for (const char *members : {
             R"("quantity": 1)",
             R"("unset": {"quantity": 2})",
             R"("unset": {"name": ""})",
             R"("StartupModes": {})",
             R"("StartupModes": {"StartupMode": []})",
             R"("StartupModes": {"unset": {"StartupMode": ["DF"]}})",
             R"("unset": {"StartupModes": {"StartupMode": []}})",
             R"("Component": [])",
             R"("unset": {"Component": [{}]})",
         })
        QCOMPARE(again(members), QString::fromUtf8(members));

    const auto item = [](const char *members) {
        return again(QByteArray(R"("Component": [{"Node": [{"ValueItem": [{)") + members + "}]}]}]");
    };
    const auto expected = [](const char *members) {
        return QStringLiteral(R"("Component": [{"Node": [{"ValueItem": [{%1}]}]}])").arg(QString::fromUtf8(members));
    };
    for (const char *members : {
             R"()",
             R"("ValueInt": {})",
             R"("ChoiceValueItem": "ValueInt")",
             R"("ChoiceValueItem": "ValueInt", "unset": {"ValueInt": {"value": 3}})",
             R"("ChoiceValueItem": "ValueInt", "ValueFloat": {}, "ValueInt": {})",
             R"("ChoiceValueItem": 77, "ValueString": {"id": null})",
         })
        QCOMPARE(item(members), expected(members));

    // What says nothing is not written.
    QCOMPARE(again(R"("quantity": 3, "unset": {"hwProcessing": false, "Component": [], "StartupModes": {}})"),
             QStringLiteral(R"("quantity": 3)"));
    QCOMPARE(item(R"("ChoiceValueItem": null, "unset": {"ValueInt": {"unset": {"value": 0}}})"), expected(""));
}

void ToolJsonTest::nullIsNoEmptyText()
{
    QCOMPARE(again(R"("name": null, "baseresource": "")"), QStringLiteral(R"("name": null, "baseresource": "")"));
}

void ToolJsonTest::numbersAreExact()
{
    const auto bandwidths = [](const char *numbers) {
        QByteArray json = R"("BandwidthSelection": [)";
        for (const QByteArray &number : QByteArray(numbers).split(' '))
            json += R"({"MaxBandwidth": )" + number + "}, ";
        return json.left(json.size() - 2) + "]";
    };
    for (const char *numbers :
         {"0.0", "-0.0", "0.1", "1e+21", "1.7976931348623157e+308", "5e-324", "1000000000000000.0",
          "0.30000000000000004", "\"NaN\"", "\"Infinity\"", "\"-Infinity\""})
        QCOMPARE(again(bandwidths(numbers)), QString::fromUtf8(bandwidths(numbers)));
    QCOMPARE(again(bandwidths("7 1E3 0.1000 1e-400 -12.50")),
             QString::fromUtf8(bandwidths("7.0 1000.0 0.1 0.0 -12.5")));

    for (const char *member : {R"("MaxFFPDelay": "18446744073709551615")", R"("MaxFFPDelay": "0")",
                               R"("quantity": -2147483648)", R"("quantity": 2147483647)"})
        QCOMPARE(again(member), QString::fromUtf8(member));
}

void ToolJsonTest::namesStandForEnumerations()
{
    for (const char *member : {R"("type": "FFP")", R"("type": null)", R"("type": 7)", R"("type": -128)",
                               R"("StartupModes": {"StartupMode": ["Scan", null, 11, -2, "Stop"]})"})
        QCOMPARE(again(member), QString::fromUtf8(member));
    QCOMPARE(again(R"("type": 3)"), QStringLiteral(R"("type": "Receiver")"));
}

void ToolJsonTest::examplesComeBackByteForByte_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << name;
}

void ToolJsonTest::examplesComeBackByteForByte()
{
    QFETCH(QString, name);
    Workshop shop;
    for (const char *form : {"xml", "tagged", "compressed", "snapshot"}) {
        const QString form8 = QString::fromUtf8(form);
        const auto convert = [&](const QString &from, const QString &to) {
            const Run run = shop.run({QStringLiteral("convert"), from, to, QStringLiteral("--to"), form8});
            QCOMPARE(run.err, QString());
        };
        convert(examplePath(name), QStringLiteral("direct.tps"));
        QCOMPARE(shop.run({QStringLiteral("convert"), examplePath(name), QStringLiteral("a.json")}).status, 0);
        convert(QStringLiteral("a.json"), QStringLiteral("throughJson.tps"));
        QVERIFY(shop.read(QStringLiteral("direct.tps")).size() > 100);
        QCOMPARE(shop.read(QStringLiteral("throughJson.tps")), shop.read(QStringLiteral("direct.tps")));
    }
}

void ToolJsonTest::theSuffixAndTheContentTellTheForm()
{
    Workshop shop;
    QCOMPARE(shop.run(line("convert - a.json"), smallXml).err, QString());
    QCOMPARE(shop.read(QStringLiteral("a.json")), QByteArray(smallJson));
    for (const QByteArray &start :
         {QByteArray(), QByteArray(" \r\n\t"), QByteArray("\xEF\xBB\xBF"), QByteArray("\xEF\xBB\xBF\n")}) {
        shop.write(QStringLiteral("data"), start + smallJson);
        const Run run = shop.run(line("convert data a.xml"));
        if (start.size() == 4)
            QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QCOMPARE(shop.read(QStringLiteral("a.xml")), QByteArray(smallXml));
    }
    // A snapshot with these first two bytes is none.
    QCOMPARE(shop.run(line("show --from json -"), QByteArray("{\n\0\0", 4)).status, 3);
    shop.write(QStringLiteral("a.tps"), QByteArray("\x7B\x0A\0\0\0\x06", 6));
    QVERIFY(shop.run(line("show a.tps")).err.startsWith(QStringLiteral("tunerproperties: a.tps: the snapshot ends")));
}

void ToolJsonTest::membersMayStandInAnyOrder()
{
    QCOMPARE(again(R"("unset": {"quantity": 9}, "Component": [], "type": "SCP", "name": "n")"),
             QStringLiteral(R"("name": "n", "type": "SCP", "Component": [], "unset": {"quantity": 9})"));
    const Run run = Workshop().run(line("convert - - --to json --no-validate"),
                                   R"({"TunerProperties": {"Component": [], "Version": "1.1"}})");
    QCOMPARE(onOneLine(run.out), QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "Component": []}})"));
}

void ToolJsonTest::numbersOf64BitsMayBeNumbers()
{
    QCOMPARE(again(R"("MaxFFPDelay": 18446744073709551615)"),
             QStringLiteral(R"("MaxFFPDelay": "18446744073709551615")"));
}

void ToolJsonTest::theVersionRuleHolds_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("isReset");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("older") << QByteArray(R"("Version": "1.0",)") << true;
    QTest::newRow("no number") << QByteArray(R"("Version": "<&\"'>",)") << true;
    QTest::newRow("this one") << QByteArray(R"("Version": "1.1",)") << false;
    QTest::newRow("newer") << QByteArray(R"("Version": "2.0",)") << false;
}

void ToolJsonTest::theVersionRuleHolds()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, isReset);
    // An older document begins with the default quantity, which counts as set.
    const Run run = Workshop().run(line("convert - - --to json --no-validate"),
                                   R"({"TunerProperties": {)" + version + R"("name": "n"}})");
    QCOMPARE(run.err, QString());
    QCOMPARE(onOneLine(run.out),
             isReset ? QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "name": "n", "quantity": 1}})")
                     : QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "name": "n"}})"));
}

void ToolJsonTest::whatIsNoJsonIsRefusedAtItsPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &json, const char *text) {
        QTest::newRow(name) << json << QString::fromUtf8(text);
    };
    row("cut off", "{\"a\": [1,\n 2",
        "-:2:3: syntax error while parsing array - unexpected end of input; expected ']'");
    row("no value", "{\n\n  \"a\": }",
        "-:3:8: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal");
    row("columns are characters", "{\"\u00E4\u00F6\": 07}",
        "-:1:9: syntax error while parsing object - unexpected number literal; expected '}'");
    row("twice", "{\"a\": 1,\n \"a\": 2}", "-:2:4: 'a' stands twice in the same object");
    row("a comment", "{ // no\n}",
        "-:1:3: syntax error while parsing object key - invalid literal; last read: '{ /'; expected string literal");
    row("something behind", "{} {}", "-:1:4: syntax error while parsing value - unexpected '{'; expected end of input");
    row("half a character", "{\"a\": \"\\ud800\"}",
        "-:1:14: syntax error while parsing value - invalid string: surrogate U+D800..U+DBFF must be followed by "
        "U+DC00..U+DFFF; last read: '\"\\ud800\"'");
    row("no UTF-8", QByteArray("{\"a\": \"\xC3\x28\"}"),
        "-:1:9: syntax error while parsing value - invalid string: ill-formed UTF-8 byte; last read: '\"\uFFFD('");
    row("a number of its own kind", "{\"a\": NaN}",
        "-:1:7: syntax error while parsing value - invalid literal; last read: '\"a\": N'");
    row("too large for any number", "{\"a\": 1e999}", "-:1:11: number overflow parsing '1e999'");
    const QByteArray nul(1, '\0');
    row("a NUL byte behind", R"({"TunerProperties":{}})" + nul + "garbage",
        "-:1:23: a NUL byte, which JSON cannot hold");
    row("a NUL byte at the end", "{}\n" + nul, "-:2:1: a NUL byte, which JSON cannot hold");
    row("a NUL byte between", "{\"a\":\n " + nul + "1}", "-:2:2: a NUL byte, which JSON cannot hold");
    row("a NUL byte behind a number", "{\"a\": 1" + nul + "}", "-:1:8: a NUL byte, which JSON cannot hold");
    row("a NUL byte in a text", "{\"a\": \"b" + nul + "\"}", "-:1:9: a NUL byte, which JSON cannot hold");
    row("an error in front of a NUL byte", "{]" + nul,
        "-:1:2: syntax error while parsing object key - unexpected ']'; expected string literal");
}

void ToolJsonTest::whatIsNoJsonIsRefusedAtItsPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: ") + text + QLatin1Char('\n'));
}

void ToolJsonTest::whatIsNoDocumentIsRefusedAtItsPath_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const auto row = [](const QByteArray &json, const QByteArray &text) {
        QTest::newRow(json.constData()) << json << QString::fromUtf8(text);
    };
    row("{}", "is no object with the one member 'TunerProperties'");
    row(R"({"TunerProperties": {}, "a": 1})", "is no object with the one member 'TunerProperties'");
    row(R"({"TunerProperties": []})", "'[]' is no object");
    row(R"({"TunerProperties": {"Version": 1.1}})", "Version: '1.1' is no text");
    row(R"({"TunerProperties": {"Version": "\u0001"}})", "Version: '\\u0001' is no version");

    const auto member = [&](const QByteArray &members, const QByteArray &text) {
        row(R"({"TunerProperties": {"Version": "1.1", )" + members + "}}", text);
    };
    member(R"("quantiy": 1)", "'quantiy' is no member of TunerProperties; did you mean 'quantity'?");
    member(R"("unset": {"quantiy": 1})", "'quantiy' is no member of TunerProperties; did you mean 'quantity'?");
    member(
        R"("unset": {"unset": {}})",
        "'unset' is no member of TunerProperties; it has name, type, baseresource, connectableResources, quantity, "
        "parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported, Component");
    member(R"("unset": [])", "unset: '[]' is no object");
    member(R"("name": "a", "unset": {"name": "b"})", "'name' cannot stand in \"unset\" and outside");
    member(R"("name": 5)", "name: '5' is no text");
    member(R"("unset": {"name": 5})", "name: '5' is no text");
    member(R"("hwProcessing": "true")", "hwProcessing: 'true' is neither true nor false");
    member(R"("quantity": "1")", "quantity: '1' is no whole number");
    member(R"("quantity": 1.0)", "quantity: '1.0' is no whole number");
    member(R"("quantity": 2147483648)", "quantity: '2147483648' is out of range");
    member(R"("quantity": -2147483649)", "quantity: '-2147483649' is out of range");
    member(R"("MaxFFPDelay": -1)", "MaxFFPDelay: '-1' is out of range");
    member(R"("MaxFFPDelay": "-1")", "MaxFFPDelay: '-1' is out of range");
    member(R"("MaxFFPDelay": "18446744073709551616")", "MaxFFPDelay: '18446744073709551616' is out of range");
    member(R"("MaxFFPDelay": 18446744073709551616)", "MaxFFPDelay: '1.8446744073709552e+19' is no whole number");
    member(R"("MaxFFPDelay": "+1")", "MaxFFPDelay: '+1' is no whole number");
    member(R"("MaxFFPDelay": "007")", "MaxFFPDelay: '007' is no whole number");
    member(R"("MaxFFPDelay": "1\n")", "MaxFFPDelay: '1\\n' is no whole number");
    member(R"("type": "receiver")", "type: 'receiver' is no name; did you mean 'Receiver'?");
    member(R"("type": "a\u0000b")",
           "type: 'a\\u0000b' is no name; the names are MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("type": "Recei\u0000ver")", "type: 'Recei\\u0000ver' is no name; did you mean 'Receiver'?");
    member(R"("a\u0000quantity": 1)", "'a\\u0000quantity' is no member of TunerProperties; did you mean 'quantity'?");
    member(R"("type": 128)", "type: '128' is out of range");
    member(R"("type": true)", "type: 'true' is no name");
    member(R"("StartupModes": {"StartupMode": "Scan"})", "StartupModes/StartupMode: 'Scan' is no list");
    member(R"("StartupModes": {"StartupMode": ["Scna"]})",
           "StartupModes/StartupMode: 'Scna' is no name; did you mean 'Scan'?");
    member(R"("Component": {})", "Component: '{}' is no list");
    member(R"("Component": [{}, null])", "Component[2]: 'null' is no object");
    member(R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "inf"}])",
           "BandwidthSelection[Name=x]/MaxBandwidth: 'inf' is no number");
    const auto item = [&](const char *members, const char *text) {
        member(R"("Component": [{"type": "t", "name": "c", "Node": [{"ValueItem": [{)" + QByteArray(members) + "}]}]}]",
               QByteArray("Component[type=t,name=c]/Node[1]/") + text);
    };
    item(R"("ValueInt": {"id": "i", "value": "abc"})", "ValueItem[id=i]/ValueInt/value: 'abc' is no whole number");
    item(R"("ValueFloat": {"value": 1e39})", "ValueItem[1]/ValueFloat/value: '1e+39' is out of range");
    item(R"("ChoiceValueItem": 256)", "ValueItem[1]/ChoiceValueItem: '256' is out of range");
    item(R"("unset": {"ChoiceValueItem": "ValueInt"})", "ValueItem[1]: 'ChoiceValueItem' cannot stand in \"unset\"");
}

void ToolJsonTest::whatIsNoDocumentIsRefusedAtItsPath()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: -: ") + text + QLatin1Char('\n'));
}

void ToolJsonTest::longNamesAreCutInMessages()
{
    const QByteArray name(5000000, 'Z');
    QCOMPARE(refusal(R"({"TunerProperties": {"StartupModes": {"StartupMode": [")" + name + R"("]}}})"),
             QStringLiteral(
                 "tunerproperties: -: StartupModes/StartupMode: 'ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ...' "
                 "is no name; the names are Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or "
                 "Stop\n"));
    QCOMPARE(refusal(R"({"TunerProperties": {"Component": [{"Node": [{")" + name + R"(": 1}]}]}})"),
             QStringLiteral("tunerproperties: -: Component[1]/Node[1]: 'ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ...' "
                            "is no member of Node; it has id, ValueItem\n"));
}

void ToolJsonTest::deepNestingIsRefused()
{
    const QByteArray deep = R"({"TunerProperties": )" + QByteArray(100000, '[');
    QCOMPARE(refusal(deep), QStringLiteral("tunerproperties: -:1:84: nested deeper than 64 levels\n"));
}

void ToolJsonTest::errorsShowTheEndOfALongToken_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const QByteArray xs(100'000, 'x');
    const QString shown = QStringLiteral("...") + QString(40, QLatin1Char('x'));
    QTest::newRow("a text without its end")
        << QByteArray("{\"TunerProperties\": {\"name\": \"" + xs)
        << QStringLiteral(
               "1:100031: syntax error while parsing value - invalid string: missing closing quote; last read: '")
            + shown + QLatin1Char('\'');
    QTest::newRow("a key") << QByteArray("{\"" + xs + "\x01\": 1}")
                           << QStringLiteral(
                                  "1:100003: syntax error while parsing object key - invalid string: control "
                                  "character U+0001 (SOH) must be escaped to \\u0001; last read: '...")
            + QString(32, QLatin1Char('x')) + QStringLiteral("<U+0001>'; expected string literal");
    QTest::newRow("a number") << QByteArray("{\"a\": " + QByteArray(100'000, '1') + ".}")
                              << QStringLiteral("1:100008: syntax error while parsing value - invalid number; expected "
                                                "digit after '.'; last read: '...")
            + QString(38, QLatin1Char('1')) + QStringLiteral(".}'");
    QTest::newRow("a key that is there twice") << QByteArray("{\"" + xs + "\": 1, \"" + xs + "\": 2}")
                                               << QStringLiteral("1:200010: '") + QString(40, QLatin1Char('x'))
            + QStringLiteral("...' stands twice in the same object");
}

void ToolJsonTest::errorsShowTheEndOfALongToken()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: -:") + text + QLatin1Char('\n'));
}

void ToolJsonTest::aTokenAsLongAsItsFileIsNotPrinted()
{
    Workshop shop;
    const Run run =
        shop.shell(QStringLiteral("{ printf '{\"a\": \"'; head -c 10000000 /dev/zero | tr '\\0' x; } > a.json; "
                                  "\"$tool\" validate a.json"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: a.json:1:10000008: syntax error while parsing value - invalid string: "
                            "missing closing quote; last read: '...%1'\n")
                 .arg(QString(40, QLatin1Char('x'))));
    QCOMPARE(run.status, 3);
}

void ToolJsonTest::manyMembersAreRefused()
{
    QByteArray many = R"({"TunerProperties": {)";
    for (int i = 0; i < 300; ++i)
        many += "\n\"" + QByteArray::number(i) + "\": 0,";
    QCOMPARE(refusal(many), QStringLiteral("tunerproperties: -:258:5: an object has more than 256 members\n"));
}

void ToolJsonTest::textsHoldEveryCharacter()
{
    const char *const members = R"("name": "\u0000\u0001\b\t\n\f\r\"\\/\u007f)"
                                "\u00E9"
                                R"(\u2028\ufeff\ufffe)"
                                "\U0001F600\"";
    QCOMPARE(again(members), QString::fromUtf8(members));
    QCOMPARE(again("\"name\": \"\u007F\u2028\uFEFF\uFFFE\U000E0041\""),
             QStringLiteral(R"("name": "\u007f\u2028\ufeff\ufffe\udb40\udc41")"));
    QCOMPARE(again(R"("name": "\u00e9\ud83d\ude00\/")"), QStringLiteral("\"name\": \"\u00E9\U0001F600/\""));
}

void ToolJsonTest::validatingTellsTheSameProblems()
{
    Workshop shop;
    const QByteArray json = QByteArray(smallJson).replace(R"("type": "t",)", "").replace(R"("type": "SCP",)", "");
    shop.write(QStringLiteral("a.json"), json);
    const Run run = shop.run(line("validate a.json"));
    QVERIFY(run.out.startsWith(QStringLiteral("a.json: Component \"c\": Component: Please set type properly.\n"
                                              "a.json: TunerProperties: Please set type properly.\n")));
    QCOMPARE(run.status, 1);
    shop.write(QStringLiteral("b.json"), smallJson);
    QCOMPARE(shop.run(line("validate b.json")).status, 0);
}

void ToolJsonTest::whatDoesNotValidateIsNotWritten()
{
    Workshop shop;
    const Run run = shop.run(line("convert - a.json"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    QVERIFY(run.err.startsWith(QStringLiteral("tunerproperties: -: TunerProperties: Please set type properly.\n")));
    QCOMPARE(run.status, 1);
    QCOMPARE(shop.files(), QStringList());
}

void ToolJsonTest::showCanWriteJson()
{
    QCOMPARE(Workshop().run(line("show --format json -"), smallXml).bytes, QByteArray(smallJson));
    QCOMPARE(Workshop().run(line("show --format json -"), R"(<TunerProperties Version="1.1"/>)").out,
             QStringLiteral("{\"TunerProperties\": {\"Version\": \"1.1\"}}\n"));
}

void ToolJsonTest::thePageShowsWhatIsWritten()
{
    QFile page(QStringLiteral(JSON_PAGE));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QStringList blocks = QString::fromUtf8(page.readAll()).split(QStringLiteral("```json\n")).mid(1);
    QCOMPARE(blocks.size(), 2);
    const QByteArray document = blocks[0].section(QStringLiteral("```"), 0, 0).toUtf8();
    QCOMPARE(Workshop().run(line("convert - - --to json"), document).bytes, document);
    const QString members = blocks[1].section(QStringLiteral("```"), 0, 0).trimmed();
    QCOMPARE(QLatin1Char('{') + again(members.mid(1, members.size() - 2).toUtf8()) + QLatin1Char('}'), members);
}

QTEST_GUILESS_MAIN(ToolJsonTest)
#include "tst_ToolJson.moc"
