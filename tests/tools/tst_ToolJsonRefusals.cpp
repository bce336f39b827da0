// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

/// Invalid JSON, and the locations and reasons of the errors.
class ToolJsonRefusalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invalidJsonIsAnErrorAtItsLocation_data();
    void invalidJsonIsAnErrorAtItsLocation();
    void invalidDocumentIsAnErrorAtItsPath_data();
    void invalidDocumentIsAnErrorAtItsPath();
    void longNamesAreShortenedInMessages();
    void deepNestingIsAnError();
    void errorsShowTheEndOfALongToken_data();
    void errorsShowTheEndOfALongToken();
    void aTokenAsLongAsItsFileIsNotPrinted();
    void tooManyMembersAreAnError();
};

namespace {

QString refusal(const QByteArray &json)
{
    const Run run = Workshop().run(line("show -"), json);
    return run.status == 3 && run.out.isEmpty() ? run.err : QStringLiteral("status %1: ").arg(run.status) + run.out;
}

} // namespace

void ToolJsonRefusalsTest::invalidJsonIsAnErrorAtItsLocation_data()
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
    row("twice", "{\"a\": 1,\n \"a\": 2}", "-:2:4: duplicate member 'a'");
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
    row("too large for any number", "{\"a\": 1e999}", "-:1:11: number overflow parsing '1e999'");
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

void ToolJsonRefusalsTest::invalidDocumentIsAnErrorAtItsPath_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const auto row = [](const QByteArray &json, const QByteArray &text) {
        QTest::newRow(json.constData()) << json << QString::fromUtf8(text);
    };
    row("{}", "expected an object with the single member 'TunerProperties'");
    row(R"({"TunerProperties": {}, "a": 1})", "expected an object with the single member 'TunerProperties'");
    row(R"({"TunerProperties": []})", "'[]' is not an object");
    row(R"({"TunerProperties": {"Version": 1.1}})", "Version: '1.1' is not a string");
    row(R"({"TunerProperties": {"Version": "\u0001"}})", "Version: '\\u0001' is not a version");

    const auto member = [&](const QByteArray &members, const QByteArray &text) {
        row(R"({"TunerProperties": {"Version": "1.1", )" + members + "}}", text);
    };
    member(R"("quantiy": 1)", "unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    member(R"("unset": {"quantiy": 1})", "unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    member(
        R"("unset": {"unset": {}})",
        "unknown member 'unset' of TunerProperties; expected name, type, baseresource, connectableResources, quantity, "
        "parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported or Component");
    member(R"("unset": [])", "unset: '[]' is not an object");
    member(R"("name": "a", "unset": {"name": "b"})", "'name' is both in \"unset\" and outside it");
    member(R"("name": 5)", "name: '5' is not a string");
    member(R"("unset": {"name": 5})", "name: '5' is not a string");
    member(R"("hwProcessing": "true")", "hwProcessing: 'true' is neither true nor false");
    member(R"("quantity": "1")", "quantity: '1' is not a whole number");
    member(R"("quantity": 1.0)", "quantity: '1.0' is not a whole number");
    member(R"("quantity": 2147483648)", "quantity: '2147483648' is out of range");
    member(R"("quantity": -2147483649)", "quantity: '-2147483649' is out of range");
    member(R"("MaxFFPDelay": -1)", "MaxFFPDelay: '-1' is out of range");
    member(R"("MaxFFPDelay": "-1")", "MaxFFPDelay: '-1' is out of range");
    member(R"("MaxFFPDelay": "18446744073709551616")", "MaxFFPDelay: '18446744073709551616' is out of range");
    member(R"("MaxFFPDelay": 18446744073709551616)", "MaxFFPDelay: '1.8446744073709552e+19' is not a whole number");
    member(R"("MaxFFPDelay": "+1")", "MaxFFPDelay: '+1' is not a whole number");
    member(R"("MaxFFPDelay": "007")", "MaxFFPDelay: '007' is not a whole number");
    member(R"("MaxFFPDelay": "1\n")", "MaxFFPDelay: '1\\n' is not a whole number");
    member(R"("type": "receiver")", "type: unknown name 'receiver'; did you mean 'Receiver'?");
    member(R"("type": "a\u0000b")",
           "type: unknown name 'a\\u0000b'; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    member(R"("type": "Recei\u0000ver")", "type: unknown name 'Recei\\u0000ver'; did you mean 'Receiver'?");
    member(R"("a\u0000quantity": 1)", "unknown member 'a\\u0000quantity' of TunerProperties; did you mean 'quantity'?");
    member(R"("type": 128)", "type: '128' is out of range");
    member(R"("type": true)", "type: 'true' is not a name");
    member(R"("StartupModes": {"StartupMode": "Scan"})", "StartupModes/StartupMode: 'Scan' is not an array");
    member(R"("StartupModes": {"StartupMode": ["Scna"]})",
           "StartupModes/StartupMode: unknown name 'Scna'; did you mean 'Scan'?");
    member(R"("Component": {})", "Component: '{}' is not an array");
    member(R"("Component": [{}, null])", "Component[2]: 'null' is not an object");
    member(R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "inf"}])",
           "BandwidthSelection[Name=x]/MaxBandwidth: 'inf' is not a number");
    const auto item = [&](const char *members, const char *text) {
        member(R"("Component": [{"type": "t", "name": "c", "Node": [{"ValueItem": [{)" + QByteArray(members) + "}]}]}]",
               QByteArray("Component[type=t,name=c]/Node[1]/") + text);
    };
    item(R"("ValueInt": {"id": "i", "value": "abc"})", "ValueItem[id=i]/ValueInt/value: 'abc' is not a whole number");
    item(R"("ValueFloat": {"value": 1e39})", "ValueItem[1]/ValueFloat/value: '1e+39' is out of range");
    item(R"("ChoiceValueItem": 256)", "ValueItem[1]/ChoiceValueItem: '256' is out of range");
    item(R"("unset": {"ChoiceValueItem": "ValueInt"})", "ValueItem[1]: 'ChoiceValueItem' is not allowed in \"unset\"");
}

void ToolJsonRefusalsTest::invalidDocumentIsAnErrorAtItsPath()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: -: ") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::longNamesAreShortenedInMessages()
{
    const QByteArray name(5000000, 'Z');
    QCOMPARE(refusal(R"({"TunerProperties": {"StartupModes": {"StartupMode": [")" + name + R"("]}}})"),
             QStringLiteral("tunerproperties: -: StartupModes/StartupMode: unknown name "
                            "'ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ...'; expected Scan, FastScan, MScan, FFM, WFFM, "
                            "Step, DF, MSearch, Polar, Search or "
                            "Stop\n"));
    QCOMPARE(refusal(R"({"TunerProperties": {"Component": [{"Node": [{")" + name + R"(": 1}]}]}})"),
             QStringLiteral("tunerproperties: -: Component[1]/Node[1]: unknown member "
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
    QTest::newRow("a whole number that is too large")
        << QByteArray("{\"TunerProperties\":{\"Version\":" + QByteArray(100'000, '1') + "}}")
        << QStringLiteral("1:100030: number overflow parsing '...") + QString(40, QLatin1Char('1')) + QLatin1Char('\'');
    QTest::newRow("a number whose exponent is too large")
        << QByteArray("{\"a\": -1e" + QByteArray(100'000, '1') + "}")
        << QStringLiteral("1:100009: number overflow parsing '...") + QString(40, QLatin1Char('1')) + QLatin1Char('\'');
    QTest::newRow("a number of forty characters that is too large")
        << QByteArray("{\"a\": 1e" + QByteArray(38, '9') + "}")
        << QStringLiteral("1:46: number overflow parsing '1e") + QString(38, QLatin1Char('9')) + QLatin1Char('\'');
    QTest::newRow("a text that looks like the message on a number")
        << QByteArray("{\"a\": \"parsing 'last read: '" + xs)
        << QStringLiteral(
               "1:100029: syntax error while parsing value - invalid string: missing closing quote; last read: '")
            + shown + QLatin1Char('\'');
    QTest::newRow("a key that is there twice")
        << QByteArray("{\"" + xs + "\": 1, \"" + xs + "\": 2}")
        << QStringLiteral("1:200010: duplicate member '") + QString(40, QLatin1Char('x')) + QStringLiteral("...'");
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
