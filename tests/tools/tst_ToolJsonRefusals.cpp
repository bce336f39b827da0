// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

/// JSON that is refused, and the errors: where and why.
class ToolJsonRefusalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

namespace {

QString refusal(const QByteArray &json)
{
    const Run run = Workshop().run(line("show -"), json);
    return run.status == 3 && run.out.isEmpty() ? run.err : QStringLiteral("status %1: ").arg(run.status) + run.out;
}

} // namespace

void ToolJsonRefusalsTest::whatIsNoJsonIsRefusedAtItsPlace_data()
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

void ToolJsonRefusalsTest::whatIsNoJsonIsRefusedAtItsPlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: ") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::whatIsNoDocumentIsRefusedAtItsPath_data()
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

void ToolJsonRefusalsTest::whatIsNoDocumentIsRefusedAtItsPath()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(refusal(json), QStringLiteral("tunerproperties: -: ") + text + QLatin1Char('\n'));
}

void ToolJsonRefusalsTest::longNamesAreCutInMessages()
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

void ToolJsonRefusalsTest::deepNestingIsRefused()
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
    QTest::newRow("a key that is there twice") << QByteArray("{\"" + xs + "\": 1, \"" + xs + "\": 2}")
                                               << QStringLiteral("1:200010: '") + QString(40, QLatin1Char('x'))
            + QStringLiteral("...' stands twice in the same object");
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

void ToolJsonRefusalsTest::manyMembersAreRefused()
{
    QByteArray many = R"({"TunerProperties": {)";
    for (int i = 0; i < 300; ++i)
        many += "\n\"" + QByteArray::number(i) + "\": 0,";
    QCOMPARE(refusal(many), QStringLiteral("tunerproperties: -:258:5: an object has more than 256 members\n"));
}

TEST_SUITE(ToolJsonRefusalsTest)
#include "tst_ToolJsonRefusals.moc"
