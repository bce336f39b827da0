// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/Tool.h"

/// Text that is not JSON, JSON that is not a document, and the locations and reasons of the errors.
class ToolJsonRefusalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invalidJsonIsAnErrorAtItsLocation_data();
    void invalidJsonIsAnErrorAtItsLocation();
    void invalidDocumentIsAProblemAtItsPlace_data();
    void invalidDocumentIsAProblemAtItsPlace();
    void allProblemsAreListedInTheOrderOfTheText();
    void problemsAreWrittenAsJsonWithPathLineAndColumn();
    void everyCommandReportsTheProblems_data();
    void everyCommandReportsTheProblems();
    void getGoesOnWithOtherFiles();
    void pathOfAProblemLeadsToTheMember();
    void problemsBeyondTheLimitAreCounted();
    void batchCountsTheFileAsOneWithProblems();
    void longNamesAreShortenedInMessages();
    void deepNestingIsAnError();
    void errorsShowTheEndOfALongToken_data();
    void errorsShowTheEndOfALongToken();
    void aTokenAsLongAsItsFileIsNotPrinted();
    void tooManyMembersAreAnError();
};

namespace {

QString refusal(const QByteArray &json, int status = 3)
{
    const Run run = Workshop().run(line("show -"), json);
    return run.status == status && run.out.isEmpty() ? run.err
                                                     : QStringLiteral("status %1: ").arg(run.status) + run.out;
}

// Problems of every kind: identities follow what they identify, and members are in no order.
constexpr char manyProblems[] = R"({
  "$schema": 5,
  "TunerPropertes": {},
  "TunerProperties": {
    "Component": [
      {
        "Node": [
          {"id": "n", "ValueItem": [
            {"ValueFloat": {"value": 1e39}, "ChoiceValueItem": "ValueInt", "ValueInt": {"value": "x", "id": "i"}},
            {"ValueInt": {"value": 1.5, "id": "i"}},
            null
          ]}
        ],
        "type": "t",
        "name": "ä"
      },
      7
    ],
    "unset": {"name": "b", "bogus": 1, "quantity": null},
    "type": "receiver",
    "name": "😀", "hwProcessing": 1,
    "StartupModes": {"StartupMode": ["Scan", "Scna", 1.0, 1000]},
    "MaxFFPDelay": 18446744073709551616,
    "Version": null
  }
}
)";

// Columns are UTF-16 units: the name in line 21 has two.
const char *const theirLines[] = {
    R"(:2:14: $schema: '5' is not a string; did you mean "5"?)",
    R"(:3:3: unknown member 'TunerPropertes' of the outermost object; did you mean 'TunerProperties'?)",
    R"(:9:38: Component[type=t,name=ä]/Node[id=n]/ValueItem[id=i][1]/ValueFloat/value: '1e39' is out of range; )"
    R"(expected -3.4028235e+38 to 3.4028235e+38)",
    R"(:9:98: Component[type=t,name=ä]/Node[id=n]/ValueItem[id=i][1]/ValueInt/value: the string 'x' is not a )"
    R"(whole number)",
    R"(:10:36: Component[type=t,name=ä]/Node[id=n]/ValueItem[id=i][2]/ValueInt/value: '1.5' is not a whole )"
    R"(number)",
    R"(:11:13: Component[type=t,name=ä]/Node[id=n]/ValueItem[3]: 'null' is not an object)",
    R"(:17:7: Component[2]: '7' is not an object)",
    R"(:19:15: 'name' is both in "unset" and outside it)",
    R"(:19:28: unknown member 'bogus' of TunerProperties; expected name, type, baseresource, connectableResources, )"
    R"(quantity, parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported or )"
    R"(Component)",
    R"(:19:52: quantity: 'null' is not a whole number)",
    R"(:20:13: type: unknown name 'receiver'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean )"
    R"('Receiver'?)",
    R"(:21:35: hwProcessing: '1' is neither true nor false)",
    R"(:22:46: StartupModes/StartupMode: unknown name 'Scna'; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, )"
    R"(MSearch, Polar, Search or Stop; did you mean 'Scan'?)",
    R"(:22:54: StartupModes/StartupMode: '1.0' is not a name; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, )"
    R"(MSearch, Polar, Search or Stop)",
    R"(:22:59: StartupModes/StartupMode: '1000' is out of range; expected Scan, FastScan, MScan, FFM, WFFM, Step, )"
    R"(DF, MSearch, Polar, Search or Stop)",
    R"(:23:20: MaxFFPDelay: '18446744073709551616' is out of range; expected 0 to 18446744073709551615)",
    R"(:24:16: Version: 'null' is not a string)",
};

/// The lines of the problems, each after this text.
QString listed(const QString &start, int most = 100)
{
    QString text;
    for (const char *const problem : theirLines) {
        if (most-- > 0)
            text += start + QString::fromUtf8(problem) + QLatin1Char('\n');
    }
    return text;
}

} // namespace

void ToolJsonRefusalsTest::invalidJsonIsAnErrorAtItsLocation_data()
{
    const Rows<QByteArray, QString> row("json", "text");
    row("cut off", "{\"a\": [1,\n 2",
        "-:2:3: syntax error while parsing array - unexpected end of input; expected ']'");
    row("no value", "{\n\n  \"a\": }",
        "-:3:8: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal");
    row("columns are characters", "{\"\u00E4\u00F6\": 07}",
        "-:1:9: syntax error while parsing object - unexpected number literal; expected '}'");
    row("a comment", "{ // no\n}",
        "-:1:3: syntax error while parsing object key - invalid literal; last read: '{ /'; expected string literal");
    row("text after the end", "{} {}",
        "-:1:4: syntax error while parsing value - unexpected '{'; expected end of input");
    row("half a character", "{\"a\": \"\\ud800\"}",
        "-:1:14: syntax error while parsing value - invalid string: surrogate U+D800..U+DBFF must be followed by "
        "U+DC00..U+DFFF; last read: '\"\\ud800\"'");
    row("no UTF-8", QByteArray("{\"a\": \"\xC3\x28\"}"),
        "-:1:9: syntax error while parsing value - invalid string: ill-formed UTF-8 byte; last read: '\"\uFFFD('");
    row("a number of its own kind", "{\"a\": NaN}",
        "-:1:7: syntax error while parsing value - invalid literal; last read: '\"a\": N'");
    row("an error after a number that is too large", "{\"a\": 1e999,\n \"b\": -1E+999}, 7",
        "-:2:15: syntax error while parsing value - unexpected ','; expected end of input");
    row("an error beside a number that is too large", "{\"a\": 1e999\n x}",
        "-:2:2: syntax error while parsing object - invalid literal; last read: '1e999<U+000A> x'; expected '}'");
    row("a number with a leading zero after one that is too large", "{\"a\": -1e999, \"b\": 01e999}",
        "-:1:25: syntax error while parsing object - unexpected number literal; expected '}'");
    row("a key that is not closed after one that is there twice", "{\"a\": 1, \"a\": 2, \"a",
        "-:1:20: syntax error while parsing object key - invalid string: missing closing quote; last read: '\"a'; "
        "expected string literal");
    const QByteArray nul(1, '\0');
    row("a NUL byte after the end", R"({"TunerProperties":{}})" + nul + "garbage",
        "-:1:23: NUL byte, which is not allowed in JSON");
    row("a NUL byte at the end", "{}\n" + nul, "-:2:1: NUL byte, which is not allowed in JSON");
    row("a NUL byte between", "{\"a\":\n " + nul + "1}", "-:2:2: NUL byte, which is not allowed in JSON");
    row("a NUL byte after a number", "{\"a\": 1" + nul + "}", "-:1:8: NUL byte, which is not allowed in JSON");
    row("a NUL byte in a text", "{\"a\": \"b" + nul + "\"}", "-:1:9: NUL byte, which is not allowed in JSON");
    row("an error before a NUL byte", "{]" + nul,
        "-:1:2: syntax error while parsing object key - unexpected ']'; expected string literal");
}

void ToolJsonRefusalsTest::invalidJsonIsAnErrorAtItsLocation()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: ") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::invalidDocumentIsAProblemAtItsPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const auto row = [](const QByteArray &json, const QByteArray &text) {
        QTest::newRow(QByteArray(json).replace('\n', ' ').constData()) << json << QString::fromUtf8(text);
    };
    row("{}", "1:1: expected an object with the member 'TunerProperties'");
    row(R"( {"$schema": "s"})", "1:2: expected an object with the member 'TunerProperties'");
    row(R"({"TunerProperties": {}, "a": 1})",
        "1:25: unknown member 'a' of the outermost object; expected TunerProperties or $schema");
    row(R"({"$shema": "s", "TunerProperties": {}})",
        "1:2: unknown member '$shema' of the outermost object; did you mean '$schema'?");
    row(R"({"TunerProperties": []})", "1:21: '[]' is not an object");
    row(R"({"TunerProperties": {}, "$schema": 1e400})",
        "1:36: $schema: '1e400' is not a string; did you mean \"1e400\"?");
    row(R"({"TunerProperties": {}, "TunerProperties": 7})", "1:25: duplicate member 'TunerProperties'");
    row(R"({"TunerProperties": {"Version": "1.1", "Version": 1e400}})", "1:40: duplicate member 'Version'");
    row(R"({"TunerProperties": {"name": "a",
 "name": "b"}})",
        "2:2: duplicate member 'name'");
    row(R"({"TunerProperties": {"unset": {"name": "a", "name": "b"}}})", "1:45: duplicate member 'name'");
    row(R"({"TunerProperties": {"unset": {}, "unset": 7}})", "1:35: duplicate member 'unset'");
    row(R"({"TunerProperties": {"quantity": -1e400}})", "1:34: quantity: '-1e400' is not a whole number");
    row(R"({"TunerProperties": {"quantity": )" + QByteArray(400, '1') + "}}",
        "1:34: quantity: '" + QByteArray(40, '1') + "...' is out of range; expected -2147483648 to 2147483647");
    row(R"({"TunerProperties": {"MaxFFPDelay": )" + QByteArray(310, '1') + ".5e" + QByteArray(500, '9') + "}}",
        "1:37: MaxFFPDelay: '" + QByteArray(40, '1') + "...' is not a whole number");
    row(R"({"TunerProperties": {"name": 1E400}})", "1:30: name: '1E400' is not a string; did you mean \"1E400\"?");
    row(R"({"TunerProperties": {"type": 1e400}})",
        "1:30: type: '1e400' is not a name; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    row(R"({"TunerProperties": {}, "$schema": ["a", 7]})", "1:36: $schema: '[\"a\", 7]' is not a string");
    row(R"({"TunerProperties": {"Version": 1.10}})", "1:33: Version: '1.10' is not a string; did you mean \"1.10\"?");
    row(R"({"TunerProperties": {"Version": "\u0001"}})",
        "1:33: Version: the string '\\u0001' is not a version; expected 1.1");
    row(R"({"TunerProperties": {"version": "1.1"}})",
        "1:22: unknown member 'version' of TunerProperties; did you mean 'Version'?");

    // On a line of their own, so that columns count from the beginning of the members.
    const auto member = [&](const QByteArray &members, const QByteArray &text) {
        row("{\"TunerProperties\": {\"Version\": \"1.1\",\n" + members + "}}", "2:" + text);
    };
    const QByteArray names = "name, type, baseresource, connectableResources, quantity, parentBaseResource, "
                             "hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported or Component";
    member(R"("quantiy": 1)", "1: unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    member(R"("zzz": 1)", "1: unknown member 'zzz' of TunerProperties; expected Version, " + names);
    member(R"("unset": {"quantiy": 1})", "11: unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    member(R"("unset": {"unset": {}})", "11: unknown member 'unset' of TunerProperties; expected " + names);
    member(R"("unset": {"Version": {}})", "11: unknown member 'Version' of TunerProperties; expected " + names);
    member(R"("unset": [])", "10: unset: '[]' is not an object");
    member(R"("StartupModes": {"unset": 0})", "27: StartupModes/unset: '0' is not an object");
    member(R"("name": "a", "unset": {"name": "b"})", "24: 'name' is both in \"unset\" and outside it");
    member(R"("unset": {"name": "b"}, "name": "a")", "11: 'name' is both in \"unset\" and outside it");
    member(R"("name": 5)", "9: name: '5' is not a string; did you mean \"5\"?");
    member(R"("name": true)", "9: name: 'true' is not a string; did you mean \"true\"?");
    member(R"("name": {"a" :   1})", "9: name: '{\"a\" : 1}' is not a string");
    member(R"("unset": {"name": 5})", "19: name: '5' is not a string; did you mean \"5\"?");
    member(R"("hwProcessing": "true")",
           "17: hwProcessing: the string 'true' is neither true nor false; did you mean true?");
    member(R"("hwProcessing": "yes")", "17: hwProcessing: the string 'yes' is neither true nor false");
    member(R"("quantity": "1")", "13: quantity: the string '1' is not a whole number; did you mean 1?");
    member(R"("quantity": 1.0)", "13: quantity: '1.0' is not a whole number; did you mean 1?");
    member(R"("quantity": -2E1)", "13: quantity: '-2E1' is not a whole number; did you mean -20?");
    member(R"("quantity": 0.5)", "13: quantity: '0.5' is not a whole number");
    member(R"("quantity": null)", "13: quantity: 'null' is not a whole number");
    member(R"("quantity": 2147483648)",
           "13: quantity: '2147483648' is out of range; expected -2147483648 to 2147483647");
    member(R"("quantity": -2147483649)",
           "13: quantity: '-2147483649' is out of range; expected -2147483648 to 2147483647");
    const QByteArray delays = " is out of range; expected 0 to 18446744073709551615";
    member(R"("MaxFFPDelay": -1)", "16: MaxFFPDelay: '-1'" + delays);
    member(R"("MaxFFPDelay": "-1")", "16: MaxFFPDelay: '-1'" + delays);
    member(R"("MaxFFPDelay": "18446744073709551616")", "16: MaxFFPDelay: '18446744073709551616'" + delays);
    member(R"("MaxFFPDelay": 18446744073709551616)", "16: MaxFFPDelay: '18446744073709551616'" + delays);
    member(R"("MaxFFPDelay": 1e3)", "16: MaxFFPDelay: '1e3' is not a whole number; did you mean 1000?");
    member(R"("MaxFFPDelay": "+1")", "16: MaxFFPDelay: the string '+1' is not a whole number");
    member(R"("MaxFFPDelay": "007")", "16: MaxFFPDelay: the string '007' is not a whole number");
    member(R"("MaxFFPDelay": "1\n")", "16: MaxFFPDelay: the string '1\\n' is not a whole number");
    member(R"("MaxFFPDelay": "")", "16: MaxFFPDelay: the string '' is not a whole number");
    member(R"("MaxFFPDelay": "-")", "16: MaxFFPDelay: the string '-' is not a whole number");
    member(R"("type": "receiver")",
           "9: type: unknown name 'receiver'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you mean "
           "'Receiver'?");
    member(R"("type": "a\u0000b")",
           "9: type: unknown name 'a\\u0000b'; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("type": "Recei\u0000ver")",
           "9: type: unknown name 'Recei\\u0000ver'; expected MCP, SCP, FFP, Receiver or DirectionFinder; did you "
           "mean 'Receiver'?");
    member(R"("a\u0000quantity": 1)",
           "1: unknown member 'a\\u0000quantity' of TunerProperties; did you mean 'quantity'?");
    member(R"("type": 128)", "9: type: '128' is out of range; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("type": 4294967297)",
           "9: type: '4294967297' is out of range; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("type": true)", "9: type: 'true' is not a name; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("StartupModes": {"StartupMode": "Scan"})",
           "33: StartupModes/StartupMode: the string 'Scan' is not an array");
    member(R"("StartupModes": {"StartupMode": ["Scna"]})",
           "34: StartupModes/StartupMode: unknown name 'Scna'; expected Scan, FastScan, MScan, FFM, WF"
           "FM, Step, DF, MSearch, Polar, Search or Stop; did you mean 'Scan'?");
    member(R"("Component": {})", "14: Component: '{}' is not an array");
    member(R"("Component": [{}, null])", "19: Component[2]: 'null' is not an object");
    const auto bandwidth = [&](const QByteArray &number, const QByteArray &text) {
        member(R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": )" + number + "}]",
               "54: BandwidthSelection[Name=x]/MaxBandwidth: " + text);
    };
    bandwidth(R"("inf")", "the string 'inf' is not a number; did you mean 'Infinity'?");
    bandwidth(R"("nan")", "the string 'nan' is not a number; did you mean 'NaN'?");
    bandwidth(R"("2.5")", "the string '2.5' is not a number; did you mean 2.5?");
    bandwidth(R"("wide")", "the string 'wide' is not a number");
    bandwidth("false", "'false' is not a number");
    bandwidth("[1]", "'[1]' is not a number");
    const auto item = [&](const char *members, const QByteArray &text) {
        row("{\"TunerProperties\": {\"Component\": [{\"type\": \"t\", \"name\": \"c\", \"Node\": [{\"ValueItem\": [{\n"
                + QByteArray(members) + "}]}]}]}}",
            "2:" + QByteArray(text).replace("@", "Component[type=t,name=c]/Node[1]/ValueItem"));
    };
    item(R"("ValueInt": {"id": "i", "value": "abc"})",
         "34: @[id=i]/ValueInt/value: the string 'abc' is not a whole number");
    item(R"("ValueFloat": {"value": 1e39})",
         "25: @[1]/ValueFloat/value: '1e39' is out of range; expected -3.4028235e+38 to 3.4028235e+38");
    const QByteArray choices = "ValueBoolean, ValueFloat, ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, "
                               "ValueNumericInt64, ValueSelection, ValueString or ValueStringList";
    item(R"("ChoiceValueItem": 256)", "20: @[1]/ChoiceValueItem: '256' is out of range; expected " + choices);
    item(R"("ChoiceValueItem": "ValueText", "ValueInt": {"id": "i"})",
         "20: @[1]/ChoiceValueItem: unknown name 'ValueText'; expected " + choices + "; did you mean 'ValueInt'?");
    item(R"("unset": {"ChoiceValueItem": "ValueInt"})", "11: @[1]: 'ChoiceValueItem' is not allowed in \"unset\"");
}

void ToolJsonRefusalsTest::invalidDocumentIsAProblemAtItsPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json, 1), QStringLiteral("tunerproperties: -:") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::allProblemsAreListedInTheOrderOfTheText()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), manyProblems);
    const Run run = shop.run(line("validate a.json"));
    QCOMPARE(run.out, listed(QStringLiteral("a.json")));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolJsonRefusalsTest::problemsAreWrittenAsJsonWithPathLineAndColumn()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), R"({"TunerProperties": {"name": 7, "Component": [{"name": "c", "id": 1}]}})");
    const Run run = shop.run(line("validate --json a.json"));
    QCOMPARE(run.out,
             QStringLiteral(R"({"file":"a.json","status":"problems","problems":[{"path":"name","line":1,"column":30,)"
                            R"("message":"'7' is not a string; did you mean \"7\"?","value":"7","choices":null,)"
                            R"("suggestion":"did you mean \"7\"?"},{"path":"Component[1]","line":1,)"
                            R"("column":61,"message":"unknown member 'id' of Component; expected type, name, )"
                            R"(displayName, optional or Node","value":"id","choices":["type","name","displayName",)"
                            R"("optional","Node"],"suggestion":null}],"problemCount":2,"error":null})"
                            "\n"));
    QCOMPARE(run.status, 1);
}

void ToolJsonRefusalsTest::everyCommandReportsTheProblems_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command :
         {"show a.json", "show --format html a.json", "show --format json a.json", "get a.json name",
          "get a.json quantity", "get Component[*]/type a.json", "get --json a.json name", "set a.json name x",
          "set --no-validate a.json name x", "diff a.json a.json", "diff small.xml a.json", "convert a.json out.xml",
          "convert --no-validate a.json out.json"})
        QTest::newRow(command) << QString::fromUtf8(command);
}

void ToolJsonRefusalsTest::everyCommandReportsTheProblems()
{
    QFETCH(QString, command);
    Workshop shop;
    shop.write(QStringLiteral("a.json"), manyProblems);
    shop.write(QStringLiteral("small.xml"), smallXml);
    const Run run = shop.run(command.split(QLatin1Char(' ')));
    QCOMPARE(run.err, listed(QStringLiteral("tunerproperties: a.json")));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 1);
    QCOMPARE(shop.files(), QStringList({QStringLiteral("a.json"), QStringLiteral("small.xml")}));
    QCOMPARE(shop.read(QStringLiteral("a.json")), QByteArray(manyProblems));
}

void ToolJsonRefusalsTest::getGoesOnWithOtherFiles()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), manyProblems);
    shop.write(QStringLiteral("small.xml"), smallXml);
    const QString type = QStringLiteral("small.xml\ttype\tSCP\n");
    const QString problems = listed(QStringLiteral("tunerproperties: a.json"));
    const Run run = shop.run(line("get type a.json small.xml"));
    QCOMPARE(run.out, type);
    QCOMPARE(run.err, problems);
    QCOMPARE(run.status, 1);
    const QString noFile = QStringLiteral("tunerproperties: no.xml: cannot open: No such file or directory\n");
    const Run withoutFile = shop.run(line("get type no.xml a.json small.xml"));
    QCOMPARE(withoutFile.out, type);
    QCOMPARE(withoutFile.err, noFile + problems);
    QCOMPARE(withoutFile.status, 3);
}

void ToolJsonRefusalsTest::pathOfAProblemLeadsToTheMember()
{
    Workshop shop;
    const QByteArray wrong = R"({"TunerProperties": {"Component": [{"Node": [{"ValueItem": [
        {"ValueInt": {"value": 1, "id": "i"}}, {"ValueInt": {"value": "2", "id": "i"}}], "id": "[n]"}], "type": "t",
        "name": "c"}, {"type": "t", "name": "c"}]}})";
    shop.write(QStringLiteral("wrong.json"), wrong);
    shop.write(QStringLiteral("right.json"), QByteArray(wrong).replace("\"2\"", "2"));
    const QString path =
        QString::fromUtf8(R"(Component[type=t,name=c][1]/Node[id="[n]"]/ValueItem[id=i][2]/ValueInt/value)");
    QCOMPARE(shop.run(line("validate wrong.json")).out,
             QStringLiteral("wrong.json:2:71: ") + path
                 + QStringLiteral(": the string '2' is not a whole number; did you mean 2?\n"));
    QCOMPARE(shop.run({QStringLiteral("get"), QStringLiteral("right.json"), path}).out, QStringLiteral("2\n"));
}

void ToolJsonRefusalsTest::problemsBeyondTheLimitAreCounted()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), manyProblems);
    const QString count = QStringLiteral("a.json: 17 problems; only the first 2 are listed");
    const QString advice = QStringLiteral("; use --max-problems to list more\n");
    QCOMPARE(shop.run(line("validate --max-problems 2 a.json")).out,
             listed(QStringLiteral("a.json"), 2) + count + advice);
    QCOMPARE(shop.run(line("show --max-problems 2 a.json")).err,
             listed(QStringLiteral("tunerproperties: a.json"), 2) + QStringLiteral("tunerproperties: ") + count
                 + advice);
    QCOMPARE(shop.run(line("validate --quiet a.json")).out, QString());
    QCOMPARE(shop.run(line("validate --quiet a.json")).status, 1);
    // A command without that option has no advice.
    shop.write(QStringLiteral("b.json"),
               R"({"TunerProperties": {"Component": [)" + QByteArray("0,").repeated(150) + "0]}}");
    QCOMPARE(shop.run(line("get b.json name")).err.section(QLatin1Char('\n'), -2, -2),
             QStringLiteral("tunerproperties: b.json: 151 problems; only the first 100 are listed"));
}

void ToolJsonRefusalsTest::batchCountsTheFileAsOneWithProblems()
{
    Workshop shop;
    shop.write(QStringLiteral("a.json"), R"({"TunerProperties": 1})");
    shop.write(QStringLiteral("b.json"), "{");
    shop.write(QStringLiteral("small.xml"), smallXml);
    const Run run = shop.run(line("validate a.json b.json small.xml"));
    QCOMPARE(run.out, QStringLiteral("a.json:1:21: '1' is not an object\n"));
    QVERIFY(run.err.endsWith(QStringLiteral("3 files: 1 valid, 1 with problems, 1 unreadable\n")));
    QCOMPARE(run.status, 3);
}

void ToolJsonRefusalsTest::longNamesAreShortenedInMessages()
{
    const QByteArray name(5000000, 'Z');
    QCOMPARE(refusal(R"({"TunerProperties": {"StartupModes": {"StartupMode": [")" + name + R"("]}}})", 1),
             QStringLiteral("tunerproperties: -:1:55: StartupModes/StartupMode: unknown name "
                            "'ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ...'; expected Scan, FastScan, MScan, FFM, WFFM, "
                            "Step, DF, MSearch, Polar, Search or "
                            "Stop\n"));
    QCOMPARE(refusal(R"({"TunerProperties": {"Component": [{"Node": [{")" + name + R"(": 1}]}]}})", 1),
             QStringLiteral("tunerproperties: -:1:47: Component[1]/Node[1]: unknown member "
                            "'ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ...' of Node; expected id or ValueItem\n"));
}

void ToolJsonRefusalsTest::deepNestingIsAnError()
{
    const QByteArray deep = R"({"TunerProperties": )" + QByteArray(100000, '[');
    QCOMPARE(refusal(deep), QStringLiteral("tunerproperties: -:1:84: nested deeper than 64 levels\n"));
}

void ToolJsonRefusalsTest::errorsShowTheEndOfALongToken_data()
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
    QTest::newRow("a text that looks like the message on a number")
        << QByteArray("{\"a\": \"parsing 'last read: '" + xs)
        << QStringLiteral(
               "1:100029: syntax error while parsing value - invalid string: missing closing quote; last read: '")
            + shown + QLatin1Char('\'');
    QTest::newRow("the text after a number that is too large")
        << QByteArray("{\"a\": -1e" + QByteArray(100'000, '1') + "x}")
        << QStringLiteral("1:100010: syntax error while parsing object - invalid literal; last read: '...")
            + QString(39, QLatin1Char('1')) + QStringLiteral("x'; expected '}'");
}

void ToolJsonRefusalsTest::errorsShowTheEndOfALongToken()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: -:") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::aTokenAsLongAsItsFileIsNotPrinted()
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

void ToolJsonRefusalsTest::tooManyMembersAreAnError()
{
    QByteArray many = R"({"TunerProperties": {)";
    for (int i = 0; i < 300; ++i)
        many += "\n\"" + QByteArray::number(i) + "\": 0,";
    QCOMPARE(refusal(many), QStringLiteral("tunerproperties: -:258:5: an object has more than 256 members\n"));
}

TEST_SUITE(ToolJsonRefusalsTest)
#include "tst_ToolJsonRefusals.moc"
