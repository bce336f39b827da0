// SPDX-License-Identifier: MIT
#include <QtEndian>

#include "Rows.h"
#include "tools/Tool.h"

/// Reading and changing one member of a document by its path.
class ToolGetSetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void pathSelectsAMember_data();
    void pathSelectsAMember();
    void emptyTextDiffersFromAMissingOne();
    void objectsArePrintedAsJson();
    void invalidPathIsReportedWithTheReason_data();
    void invalidPathIsReportedWithTheReason();
    void patternPrintsATable();
    void tableOfSeveralFilesNamesEach();
    void patternThatMatchesNothingIsReported();
    void pathsAreListed();
    void pathsOfObjectsAreListedOnRequest();
    void completionsOfAPathAreListed();
    void memberWithoutValuePrintsNothing_data();
    void memberWithoutValuePrintsNothing();

    void valuesAreStored_data();
    void valuesAreStored();
    void optionsMayFollowANegativeNumber();
    void invalidValueIsAnError_data();
    void invalidValueIsAnError();
    void fileKeepsItsForm_data();
    void fileKeepsItsForm();
    void identifyingMembersCanBeChanged_data();
    void identifyingMembersCanBeChanged();
    void kindOfValueCanBeChanged();
    void unreadableSnapshotIsNotWritten();
    void anItemReceivesAnotherKindOfValueInOneCommand();
    void aValueThatTheFormCannotHoldIsAProblem_data();
    void aValueThatTheFormCannotHoldIsAProblem();
    void infinityIsWrittenAsReadersKnowIt();
    void standardInputIsWrittenToStandardOutput();
    void membersCanBeUnset();
    void dataThatLintFindsCanBePrintedChangedAndRemoved();
    void newProblemsPreventTheChange();
    void knownProblemsDoNotPreventTheChange();
    void contentThatTheModelDoesNotHaveStaysInXml();
    void recordsThatTheModelDoesNotHavePreventTheChange();
    void newProblemsBeyondTheFirstHundredAreCounted();
    void valueThatTheFormCannotStorePreventsTheChange();
    void objectThatIsNotSetIsSetInJson();
    void onlyTheValueChangesInXml();
    void missingTextsStayMissingInXml();
    void severalValuesAreChangedAtOnce();
    void oneWrongValueOfSeveralChangesNothing();
    void dryRunShowsTheDifferencesAndWritesNothing();
    void unchangedFileIsNotWritten();
    void failedWritingKeepsTheFile();
    void wrongArgumentsAreWrongUsage_data();
    void wrongArgumentsAreWrongUsage();

private:
    /// The status, and the output or error of get.
    QString get(const QString &path);
    /// The status, the output or error of set, and the differences after it.
    QString set(const QStringList &arguments);

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

constexpr char document[] = R"({"TunerProperties": {"Version": "1.1", "name": "  two\n lines", "type": "SCP",
    "baseresource": "", "hwProcessing": true, "quantity": -2, "connectableResources": null,
    "unset": {"parentBaseResource": "kept"},
    "StartupModes": {"StartupMode": ["Scan", "DF", null, 99]}, "MaxFFPDelay": "18446744073709551615",
    "BandwidthSelection": [{"Name": "a,b]=\"c\"", "MaxBandwidth": 0.1}],
    "Component": [
      {"type": "Filter", "name": "Pre", "optional": false, "Node": [
        {"id": "gain", "ValueItem": [
          {"ChoiceValueItem": "ValueNumericInt",
           "ValueNumericInt": {"id": "gain", "value": 5, "min": 0, "max": 10, "step": 1}},
          {"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "gain", "value": 0.1}},
          {"ChoiceValueItem": "ValueString", "ValueString": {"id": "unit", "value": "dB"}}]},
        {"id": "mode", "ValueItem": [
          {"ChoiceValueItem": "ValueSelection", "ValueSelection": {"id": "mode", "value": "-Infinity", "text": "x",
           "index": 0, "SelectionItem": [{"name": "x", "value": 1}, {"name": "x", "value": 2}]}}]}]},
      {"type": "Filter", "name": "Post", "optional": true, "Node": [
        {"id": "1", "ValueItem": [{"ChoiceValueItem": "ValueInt64", "ValueInt64":
          {"id": "", "value": "-9223372036854775808"}}]}]},
      {"type": "Mixer", "name": "Pre", "optional": true, "Node": [
        {"id": "n", "ValueItem": [{"ChoiceValueItem": "ValueBoolean", "ValueBoolean": {"id": "i", "value": true}}]}]}
    ]}})";

const char *const gain = "Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[1]/ValueNumericInt/value";

} // namespace

void ToolGetSetTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_workshop->write(QStringLiteral("f.json"), document);
}

QString ToolGetSetTest::get(const QString &path)
{
    const Run run = m_workshop->run({QStringLiteral("get"), QStringLiteral("f.json"), path});
    return QStringLiteral("%1 ").arg(run.status) + run.out + run.err;
}

QString ToolGetSetTest::set(const QStringList &arguments)
{
    m_workshop->write(QStringLiteral("before.json"), m_workshop->read(QStringLiteral("f.json")));
    const Run run = m_workshop->run(QStringList{QStringLiteral("set")} + arguments);
    const Run diff = m_workshop->run(line("diff before.json f.json"));
    return QStringLiteral("%1 ").arg(run.status) + run.out + run.err + diff.out + diff.err;
}

void ToolGetSetTest::pathSelectsAMember_data()
{
    const Rows<QString, QString> row("path", "value");
    row("name", "  two\n lines\n");
    row("baseresource", "\n");
    row("type", "SCP\n");
    row("hwProcessing", "true\n");
    row("quantity", "-2\n");
    row("MaxFFPDelay", "18446744073709551615\n");
    row("StartupModes/StartupMode", "Scan\nDF\n(null)\n99\n");
    row(R"(BandwidthSelection[Name="a,b]=\"c\""]/MaxBandwidth)", "0.1\n");
    row(R"(BandwidthSelection[Name="a\u002Cb\u005d=\"c\""]/MaxBandwidth)", "0.1\n");
    row("BandwidthSelection/MaxBandwidth", "0.1\n");
    row("Component[type=Filter,name=Post]/optional", "true\n");
    row("Component[name=Post]/optional", "true\n");
    row("Component[name=\"Post\"]/type", "Filter\n");
    row("Component[type=Mixer]/name", "Pre\n");
    row("Component[2]/name", "Post\n");
    row("Component[type=Filter][2]/name", "Post\n");
    row("Component[name=Pre][2]/type", "Mixer\n");
    row("Component[1]/Node[id=gain]/ValueItem[1]/value", "5\n");
    row("Component[1]/Node[id=gain]/ValueItem[1]/ValueNumericInt/max", "10\n");
    row("Component[1]/Node[id=gain]/ValueItem[id=gain][2]/value", "0.1\n");
    row("Component[1]/Node[id=gain]/ValueItem[id=unit]/value", "dB\n");
    row("Component[1]/Node[id=gain]/ValueItem[3]/ChoiceValueItem", "ValueString\n");
    row("Component[1]/Node[id=mode]/ValueItem/value", "-inf\n");
    row("Component[1]/Node[id=mode]/ValueItem/SelectionItem[name=x][2]/value", "2\n");
    row("Component[2]/Node[id=1]/ValueItem/value", "-9223372036854775808\n");
    row("Component[2]/Node[1]/ValueItem[id=\"\"]/value", "-9223372036854775808\n");
}

void ToolGetSetTest::pathSelectsAMember()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QCOMPARE(get(path), QStringLiteral("0 ") + value);
}

void ToolGetSetTest::emptyTextDiffersFromAMissingOne()
{
    m_workshop->write(QStringLiteral("f.json"), R"({"TunerProperties": {"Version": "1.1", "Component": [
        {"type": "a", "name": null}, {"type": "b", "name": ""}, {"type": "c"}]}})");
    QCOMPARE(get(QStringLiteral("Component[name=\"\"]/type")), QStringLiteral("0 b\n"));
}

void ToolGetSetTest::objectsArePrintedAsJson()
{
    QCOMPARE(get(QStringLiteral("StartupModes")),
             QStringLiteral("0 {\"StartupMode\": [\"Scan\", \"DF\", null, 99]}\n"));
    QCOMPARE(get(QStringLiteral("BandwidthSelection")),
             QStringLiteral("0 [\n  {\"Name\": \"a,b]=\\\"c\\\"\", \"MaxBandwidth\": 0.1}\n]\n"));
    QCOMPARE(get(QStringLiteral("BandwidthSelection[1]")),
             QStringLiteral("0 {\"Name\": \"a,b]=\\\"c\\\"\", \"MaxBandwidth\": 0.1}\n"));
    QCOMPARE(get(QStringLiteral("Component[1]/Node[1]/ValueItem[2]/ValueFloat")),
             QStringLiteral("0 {\"id\": \"gain\", \"value\": 0.1}\n"));
}

void ToolGetSetTest::invalidPathIsReportedWithTheReason_data()
{
    const Rows<QString, QString> row("path", "why");
    row("", "expected a member name at character 1 of the path");
    row("/name", "expected a member name at character 1 of the path");
    row("StartupModes/", "expected a member name at character 14 of the path");
    row("Component[1", "expected ']' at character 12 of the path");
    row("Component[0]", "expected a position (counted from 1) or MEMBER=TEXT at character 11 of the path");
    row("Component[Pre]", "expected a position (counted from 1) or MEMBER=TEXT at character 11 of the path");
    row("Component[1][2]", "unexpected second position at character 15 of the path");
    row("Component[name=Pre,Filter]", "expected '=' at character 26 of the path");
    row("Component[name=\"Pre]", "expected '\"' at character 21 of the path");
    row("Component[name=\"\\x\"]", "expected \\\" \\\\ \\n \\r \\t or \\u0000 at character 19 of the path");
    for (const char *digits : {"", "41", " 041", "+041", "-041", "0x41", "041 ", "004\u0661"})
        row(QStringLiteral("Component[name=\"\\u%1\"]").arg(QString::fromUtf8(digits)),
            "expected \\\" \\\\ \\n \\r \\t or \\u0000 at character 19 of the path");
    row("Component[1]x", "expected '/' or '[' at character 13 of the path");
    row("quantiy", "quantiy: unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    row("Component[1]/Nodes",
        "Component[type=Filter,name=Pre]/Nodes: unknown member 'Nodes' of Component; did you mean "
        "'Node'?");
    row("quantity/value", "quantity: is a value and has no members");
    row("quantity[1]", "quantity[1]: 'quantity' is not a list of objects");
    row("Component[4]/name", "Component[4]: position 4 is out of range; only 3 match");
    row("Component/name",
        "Component: 3 items match; choose one: Component[type=Filter,name=Pre], "
        "Component[type=Filter,name=Post], Component[type=Mixer,name=Pre]");
    row("Component[name=Pre]/type",
        "Component[name=Pre]: 2 items match; choose one: "
        "Component[type=Filter,name=Pre], Component[type=Mixer,name=Pre]");
    row("Component[name=pre]/type",
        "Component[name=pre]: there is no such Component; there are "
        "Component[type=Filter,name=Pre], Component[type=Filter,name=Post], "
        "Component[type=Mixer,name=Pre]");
    row("Component[optional=true]/type",
        "Component[optional=true]: 'optional' does not identify a Component; use "
        "type or name");
    row("Component[1]/Node[1]/ValueItem[1]/ValueInt/value",
        "Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][1]/ValueInt: the item holds a "
        "ValueNumericInt");
    row("Component[1]/Node[1]/ValueItem[1]/valu",
        "Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][1]/valu: unknown member 'valu' of "
        "ValueNumericInt; did you mean 'value'?");
}

void ToolGetSetTest::invalidPathIsReportedWithTheReason()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    QCOMPARE(get(path), QStringLiteral("1 tunerproperties: f.json: ") + why + QLatin1Char('\n'));
    QCOMPARE(set({QStringLiteral("f.json"), path, QStringLiteral("1")}),
             QStringLiteral("1 tunerproperties: f.json: ") + why + QLatin1Char('\n'));
}

void ToolGetSetTest::patternPrintsATable()
{
    QCOMPARE(get(QStringLiteral("Component[*]/name")),
             QStringLiteral("0 f.json\tComponent[type=Filter,name=Pre]/name\tPre\n"
                            "f.json\tComponent[type=Filter,name=Post]/name\tPost\n"
                            "f.json\tComponent[type=Mixer,name=Pre]/name\tPre\n"));
    QCOMPARE(get(QStringLiteral("Component[name=Pre]/Node[*]/ValueItem[id=i]")),
             QStringLiteral("0 f.json\tComponent[type=Mixer,name=Pre]/Node[id=n]/ValueItem[id=i]\t"
                            "{\"ChoiceValueItem\":\"ValueBoolean\",\"ValueBoolean\":{\"id\":\"i\",\"value\":true}}\n"));
    QCOMPARE(m_workshop->run(line("get --json f.json *")).out.section(QLatin1Char('\n'), 0, 1),
             QStringLiteral("{\"file\":\"f.json\",\"path\":\"name\",\"value\":\"  two\\n lines\"}\n"
                            "{\"file\":\"f.json\",\"path\":\"type\",\"value\":\"SCP\"}"));
}

void ToolGetSetTest::tableOfSeveralFilesNamesEach()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("get name small.xml f.json"));
    QCOMPARE(run.out, QStringLiteral("f.json\tname\t  two\\n lines\n"));
    QCOMPARE(run.status, 0);
    const Run missing = m_workshop->run(line("get type small.xml none.xml f.json"));
    QCOMPARE(missing.out, QStringLiteral("small.xml\ttype\tSCP\nf.json\ttype\tSCP\n"));
    QCOMPARE(missing.err, QStringLiteral("tunerproperties: none.xml: cannot open: No such file or directory\n"));
    QCOMPARE(missing.status, 3);
    QCOMPARE(m_workshop->run(line("get quantity f.json")).out, QStringLiteral("-2\n"));
}

void ToolGetSetTest::patternThatMatchesNothingIsReported()
{
    QCOMPARE(get(QStringLiteral("Component[*]/displayName")),
             QStringLiteral("1 tunerproperties: Component[*]/displayName: matches nothing in f.json\n"));
}

void ToolGetSetTest::completionsOfAPathAreListed()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const auto listed = [&](const QStringList &arguments) {
        const Run run = m_workshop->run(line("paths small.xml --complete") + arguments);
        return run.status == 0 ? run.out : run.err;
    };
    QCOMPARE(listed({QStringLiteral("")}), QStringLiteral("type\nbaseresource\nComponent[type=t,name=c]/\n"));
    QCOMPARE(listed(line("Component/N")), QStringLiteral("Component/Node[id=n]/\n"));
    QCOMPARE(listed(line("type=S --assignments")), QStringLiteral("type=SCP\n"));
    QCOMPARE(listed(line("nothing")), QString());
    QCOMPARE(listed({QStringLiteral("Component[\n")}), QString());
    const Run run = m_workshop->run(line("paths small.xml --assignments"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: --assignments requires --complete\n"
                            "tunerproperties: try 'tunerproperties paths --help'\n"));
    QCOMPARE(run.status, 2);
}

void ToolGetSetTest::pathsAreListed()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("paths small.xml"));
    QCOMPARE(run.out,
             QStringLiteral("type\nbaseresource\nComponent[type=t,name=c]/type\nComponent[type=t,name=c]/name\n"
                            "Component[type=t,name=c]/optional\nComponent[type=t,name=c]/Node[id=n]/id\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ChoiceValueItem\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt/id\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt/value\n"));
    const QStringList paths = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &path : paths)
        QCOMPARE(m_workshop->run({QStringLiteral("get"), QStringLiteral("small.xml"), path}).status, 0);
}

void ToolGetSetTest::pathsOfObjectsAreListedOnRequest()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("paths --objects small.xml"));
    QCOMPARE(run.out,
             QStringLiteral("type\nbaseresource\nComponent[type=t,name=c]\nComponent[type=t,name=c]/type\n"
                            "Component[type=t,name=c]/name\nComponent[type=t,name=c]/optional\n"
                            "Component[type=t,name=c]/Node[id=n]\nComponent[type=t,name=c]/Node[id=n]/id\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ChoiceValueItem\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt/id\n"
                            "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt/value\n"));
    const QStringList paths = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &path : paths) {
        QCOMPARE(m_workshop->run({QStringLiteral("get"), QStringLiteral("small.xml"), path}).status, 0);
        const QStringList remove = {QStringLiteral("remove"), QStringLiteral("--dry-run"),
                                    QStringLiteral("--no-validate"), QStringLiteral("small.xml"), path};
        const bool isChoice = path.endsWith(QStringLiteral("/ChoiceValueItem")); // goes with its value
        QCOMPARE(m_workshop->run(remove).status, isChoice ? 1 : 0);
    }
    const Run wrong = m_workshop->run(line("paths --objects --complete C small.xml"));
    QCOMPARE(wrong.err,
             QStringLiteral("tunerproperties: --objects and --complete cannot be combined\n"
                            "tunerproperties: try 'tunerproperties paths --help'\n"));
    QCOMPARE(wrong.status, 2);
}

void ToolGetSetTest::memberWithoutValuePrintsNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("why");
    QTest::newRow("not set") << QStringLiteral("HRPANSupported") << QStringLiteral("is not set");
    QTest::newRow("not set, with a value") << QStringLiteral("parentBaseResource") << QStringLiteral("is not set");
    QTest::newRow("null") << QStringLiteral("connectableResources") << QStringLiteral("is set, but has no value");
}

void ToolGetSetTest::memberWithoutValuePrintsNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    const Run run = m_workshop->run({QStringLiteral("get"), QStringLiteral("f.json"), path});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: f.json: %1: %2\n").arg(path, why));
    QCOMPARE(run.status, 1);
}

void ToolGetSetTest::valuesAreStored_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("change");
    const auto row = [](const char *path, const char *value, const char *change) {
        QTest::newRow(qPrintable(QString::fromUtf8(path) + QLatin1Char(' ') + QString::fromUtf8(value)))
            << QString::fromUtf8(path) << QString::fromUtf8(value) << QString::fromUtf8(change);
    };
    row("quantity", "7", "~ quantity: -2 -> 7\n");
    row("quantity", "-7", "~ quantity: -2 -> -7\n");
    row("quantity", "2147483647", "~ quantity: -2 -> 2147483647\n");
    row("quantity", "007", "~ quantity: -2 -> 7\n");
    row("quantity", "-2", "");
    row("MaxFFPDelay", "0", "~ MaxFFPDelay: 18446744073709551615 -> 0\n");
    row("hwProcessing", "false", "~ hwProcessing: true -> false\n");
    row("hwProcessing", "0", "~ hwProcessing: true -> false\n");
    row("hwProcessing", "1", "");
    row("HRPANSupported", "false", "~ HRPANSupported: false (not set) -> false\n");
    row("type", "Receiver", "~ type: \"SCP\" -> \"Receiver\"\n");
    row("parentBaseResource", "kept", "~ parentBaseResource: \"kept\" (not set) -> \"kept\"\n");
    row("name", "-5v", "~ name: \"  two\\n lines\" -> \"-5v\"\n");
    row("name", "", "~ name: \"  two\\n lines\" -> \"\"\n");
    row("name", "\u00E4 \U0001F600", "~ name: \"  two\\n lines\" -> \"\u00E4 \U0001F600\"\n");
    row("StartupModes/StartupMode", "Stop,Scan",
        "~ StartupModes/StartupMode: [\"Scan\", \"DF\", (null), 99] -> [\"Stop\", \"Scan\"]\n");
    row("StartupModes/StartupMode", "Stop\nScan",
        "~ StartupModes/StartupMode: [\"Scan\", \"DF\", (null), 99] -> [\"Stop\", \"Scan\"]\n");
    row("Component[1]/displayName", "-x", "~ Component[type=Filter,name=Pre]/displayName: (not set) -> \"-x\"\n");
    row(gain, "6",
        "~ Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][1]/ValueNumericInt/value: 5 -> "
        "6\n");
    row("Component[1]/Node[1]/ValueItem[2]/value", "-1.5e-3",
        "~ Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][2]/ValueFloat/value: 0.1 -> -0.0015\n");
    row("Component[1]/Node[1]/ValueItem[2]/value", "-inf",
        "~ Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][2]/ValueFloat/value: 0.1 -> -inf\n");
    row("Component[1]/Node[1]/ValueItem[2]/value", "nan",
        "~ Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[id=gain][2]/ValueFloat/value: 0.1 -> nan\n");
    row("BandwidthSelection/MaxBandwidth", "Infinity",
        "~ BandwidthSelection[Name=\"a,b]=\\\"c\\\"\"]/MaxBandwidth: 0.1 -> inf\n");
    row("BandwidthSelection/MaxBandwidth", "1e-400",
        "~ BandwidthSelection[Name=\"a,b]=\\\"c\\\"\"]/MaxBandwidth: 0.1 -> 0\n");
}

void ToolGetSetTest::valuesAreStored()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QString, change);
    QStringList arguments = {QStringLiteral("f.json"), path, value};
    if (value == QLatin1String("-x"))
        arguments.prepend(QStringLiteral("--"));
    QCOMPARE(set(arguments), QStringLiteral("0 ") + change);
}

void ToolGetSetTest::optionsMayFollowANegativeNumber()
{
    QCOMPARE(set(line("f.json quantity -5 --no-validate")), QStringLiteral("0 ~ quantity: -2 -> -5\n"));
    QCOMPARE(set(line("--from=json f.json quantity -6 --no-validate")), QStringLiteral("0 ~ quantity: -5 -> -6\n"));
}

void ToolGetSetTest::invalidValueIsAnError_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("why");
    const auto row = [](const char *path, const char *value, const char *why) {
        QTest::newRow(qPrintable(QString::fromUtf8(path) + QLatin1Char(' ') + QString::fromUtf8(value)))
            << QString::fromUtf8(path) << QString::fromUtf8(value) << QString::fromUtf8(why);
    };
    for (const char *value : {"", "abc", "1.0", "1e3", "0x10", " 1", "1 ", "+1", "\u0661"})
        row("quantity", value, qPrintable(QStringLiteral("'%1' is not a whole number").arg(QString::fromUtf8(value))));
    row("quantity", "2147483648", "'2147483648' is out of range; expected -2147483648 to 2147483647");
    row("quantity", "-2147483649", "'-2147483649' is out of range; expected -2147483648 to 2147483647");
    row("MaxFFPDelay", "-1", "'-1' is out of range; expected 0 to 18446744073709551615");
    row("hwProcessing", "yes", "'yes' is neither true nor false");
    row("hwProcessing", "TRUE", "'TRUE' is neither true nor false");
    row("type", "receiver", "unknown type 'receiver'; did you mean 'Receiver'?");
    row("type", "3", "unknown type '3'; expected MCP, SCP, FFP, Receiver or DirectionFinder");
    row("StartupModes/StartupMode", "Scan,,DF",
        "unknown StartupMode ''; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar, Search or Stop");
    row("BandwidthSelection[1]/MaxBandwidth", ".5", "'.5' is not a number");
    row("BandwidthSelection[1]/MaxBandwidth", "1e400",
        "'1e400' is out of range; expected -1.7976931348623157e+308 to 1.7976931348623157e+308");
    row("Component[1]/Node[1]/ValueItem[2]/value", "1e39",
        "'1e39' is out of range; expected -3.4028235e+38 to 3.4028235e+38");
    row("StartupModes", "Scan", "holds objects and no value; add the name of a member to the path");
    row("Component", "x", "holds objects and no value; add the name of a member to the path");
    row("Component[1]", "x", "holds objects and no value; add the name of a member to the path");
}

void ToolGetSetTest::invalidValueIsAnError()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QString, why);
    const QString message = set({QStringLiteral("f.json"), path, value});
    QVERIFY2(message.startsWith(QStringLiteral("1 tunerproperties: f.json: ")), qPrintable(message));
    QVERIFY2(message.endsWith(QStringLiteral(": ") + why + QLatin1Char('\n')), qPrintable(message));
}

void ToolGetSetTest::fileKeepsItsForm_data()
{
    QTest::addColumn<QString>("file");
    for (const char *file : {"f.xml", "f.tpb", "f.tpz", "f.tps", "f.json"})
        QTest::newRow(file) << QString::fromUtf8(file);
}

void ToolGetSetTest::fileKeepsItsForm()
{
    QFETCH(QString, file);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    m_workshop->write(QStringLiteral("changed.xml"), QByteArray(smallXml).replace("value=\"7\"", "value=\"-8\""));
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), QStringLiteral("small.xml"), file}).status, 0);
    QCOMPARE(
        m_workshop->run({QStringLiteral("convert"), QStringLiteral("changed.xml"), QStringLiteral("c-") + file}).status,
        0);
    const Run run = m_workshop->run(
        {QStringLiteral("set"), file, QStringLiteral("Component/Node/ValueItem/value"), QStringLiteral("-8")});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(file), m_workshop->read(QStringLiteral("c-") + file));
}

void ToolGetSetTest::identifyingMembersCanBeChanged_data()
{
    fileKeepsItsForm_data();
}

void ToolGetSetTest::identifyingMembersCanBeChanged()
{
    QFETCH(QString, file);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), QStringLiteral("small.xml"), file}).status, 0);
    const auto change = [&](const char *path, const char *value) {
        const Run run =
            m_workshop->run({QStringLiteral("set"), file, QString::fromUtf8(path), QString::fromUtf8(value)});
        return QStringLiteral("%1 ").arg(run.status) + run.out + run.err;
    };
    QCOMPARE(change("Component[name=c]/name", "d"), QStringLiteral("0 "));
    QCOMPARE(change("Component[name=d]/type", "u"), QStringLiteral("0 "));
    QCOMPARE(change("Component[type=u,name=d]/Node[id=n]/id", "m"), QStringLiteral("0 "));
    const Run run =
        m_workshop->run({QStringLiteral("get"), file, QStringLiteral("Component[type=u,name=d]/Node[id=m]/id")});
    QCOMPARE(run.out + run.err, QStringLiteral("m\n"));
}

void ToolGetSetTest::kindOfValueCanBeChanged()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    QCOMPARE(m_workshop->run(line("convert small.xml small.tps")).status, 0);
    const QString item = QStringLiteral("Component/Node/ValueItem[1]/");
    const auto run = [&](const QStringList &arguments) {
        const Run done = m_workshop->run(QStringList{QStringLiteral("set")} + arguments);
        return QStringLiteral("%1 ").arg(done.status) + done.out + done.err;
    };
    const QString file = QStringLiteral("small.tps");
    QCOMPARE(run({QStringLiteral("--no-validate"), file, item + QStringLiteral("ChoiceValueItem"),
                  QStringLiteral("ValueFloat")}),
             QStringLiteral("0 "));
    QCOMPARE(run({QStringLiteral("--no-validate"), file, item + QStringLiteral("ValueFloat/id"), QStringLiteral("f")}),
             QStringLiteral("0 "));
    QCOMPARE(run({file, item + QStringLiteral("ValueFloat/value"), QStringLiteral("0.5")}), QStringLiteral("0 "));
    QCOMPARE(m_workshop->run(line("validate small.tps")).status, 0);
    QCOMPARE(m_workshop->run({QStringLiteral("get"), file, item + QStringLiteral("value")}).out,
             QStringLiteral("0.5\n"));
}

namespace {

constexpr char withBandwidth[] =
    "<TunerProperties Version='1.1' type='SCP' baseresource='b'>\n"
    "  <StartupModes><StartupMode>DF</StartupMode></StartupModes>\n"
    "  <BandwidthSelection><Name>w</Name><MaxBandwidth>1.5</MaxBandwidth></BandwidthSelection>\n"
    "</TunerProperties>\n";

} // namespace

void ToolGetSetTest::anItemReceivesAnotherKindOfValueInOneCommand()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const QString item = QStringLiteral("Component[1]/Node[1]/ValueItem[1]/");
    const Run run = m_workshop->run({QStringLiteral("set"), QStringLiteral("small.xml"),
                                     item + QStringLiteral("ChoiceValueItem=ValueFloat"), item + QStringLiteral("id=f"),
                                     item + QStringLiteral("value=0.5")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")),
             QByteArray(smallXml).replace("<ValueInt id=\"i\" value=\"7\"/>", "<ValueFloat id=\"f\" value=\"0.5\"/>"));
}

void ToolGetSetTest::aValueThatTheFormCannotHoldIsAProblem_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *arguments, const char *error) {
        QTest::newRow(arguments) << line(arguments) << QString::fromUtf8(error);
    };
    row("set a.xml StartupModes/StartupMode=",
        "cannot edit the document in place: StartupMode: [] would be read as (not set)");
    row("set a.xml MaxFFPDelay=18446744073709551615",
        "cannot edit the document in place: MaxFFPDelay: 18446744073709551615 would be read as 0");
    row("set a.xml name=\001", "cannot edit the document in place: XML cannot carry the character U+0001");
    row("set --rewrite a.xml name=\001",
        "a text in or just above line 2 of the document contains a character that XML cannot carry (a control "
        "character, U+FFFE, U+FFFF or half a surrogate pair)");
}

void ToolGetSetTest::aValueThatTheFormCannotHoldIsAProblem()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    m_workshop->write(QStringLiteral("a.xml"), withBandwidth);
    const Run run = m_workshop->run(arguments);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: ") + error + QLatin1Char('\n'));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(withBandwidth));
}

void ToolGetSetTest::infinityIsWrittenAsReadersKnowIt()
{
    const QString path = QStringLiteral("BandwidthSelection[1]/MaxBandwidth");
    for (const auto &[typed, written] :
         {std::pair("infinity", "inf"), std::pair("Infinity", "inf"), std::pair("-infinity", "-inf"),
          std::pair("INF", "inf"), std::pair("NAN", "nan")}) {
        m_workshop->write(QStringLiteral("a.xml"), withBandwidth);
        const Run run = m_workshop->run({QStringLiteral("set"), QStringLiteral("--no-validate"),
                                         QStringLiteral("a.xml"), path, QString::fromLatin1(typed)});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(withBandwidth).replace("1.5", written));
        QCOMPARE(m_workshop->run({QStringLiteral("get"), QStringLiteral("a.xml"), path}).out,
                 QString::fromLatin1(written) + QLatin1Char('\n'));
    }
}

// A snapshot omits the chosen value if it is not set, but its reader expects it.
void ToolGetSetTest::unreadableSnapshotIsNotWritten()
{
    const QByteArray half = R"({"TunerProperties": {"Version": "1.1", "Component": [{"Node": [
        {"ValueItem": [{"ChoiceValueItem": "ValueInt"}]}]}]}})";
    m_workshop->write(QStringLiteral("half.json"), half);
    m_workshop->write(QStringLiteral("half.tps"), "as it was");
    const Run run = m_workshop->run(line("convert --no-validate half.json half.tps"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: half.tps: cannot write a snapshot that reads back unchanged, since the "
                            "document is incomplete\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("half.tps")), QByteArray("as it was"));
    QCOMPARE(m_workshop->run(line("convert --no-validate half.json half.xml")).status, 0);
}

void ToolGetSetTest::standardInputIsWrittenToStandardOutput()
{
    const Run run = m_workshop->run(line("set - Component/Node/ValueItem/value 9"), smallXml);
    QCOMPARE(run.bytes, QByteArray(smallXml).replace("value=\"7\"", "value=\"9\""));
    QCOMPARE(run.err, QString());
    QCOMPARE(m_workshop->run(line("set - Component/Node/ValueItem/value 7"), smallXml).bytes, QByteArray(smallXml));
}

void ToolGetSetTest::membersCanBeUnset()
{
    QCOMPARE(set(line("--unset f.json quantity")), QStringLiteral("0 ~ quantity: -2 -> 1 (not set)\n"));
    QCOMPARE(set(line("--unset f.json quantity")), QStringLiteral("0 "));
    QCOMPARE(set(line("--unset f.json parentBaseResource")),
             QStringLiteral("0 ~ parentBaseResource: \"kept\" (not set) -> (not set)\n"));
    QCOMPARE(set(line("f.json --unset StartupModes")),
             QStringLiteral("0 - StartupModes: StartupMode [\"Scan\", \"DF\", (null), 99]\n"));
    QCOMPARE(set(line("--unset f.json BandwidthSelection")),
             QStringLiteral("0 - BandwidthSelection[Name=\"a,b]=\\\"c\\\"\"]: MaxBandwidth 0.1\n"));
    QCOMPARE(
        set(line("--unset f.json Component[1]")),
        QStringLiteral("1 tunerproperties: f.json: Component[type=Filter,name=Pre]: cannot unset an item of a list; "
                       "'remove' it, or unset the whole list\n"));
}

void ToolGetSetTest::dataThatLintFindsCanBePrintedChangedAndRemoved()
{
    const QByteArray text = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b">
  <StartupModes><StartupMode>Scan</StartupMode></StartupModes>
  <Component type="t" name="c" optional="true"><Node id="n">
    <ValueItem> <!-- two -->
      <ValueInt id="i6" value="12"/>
      <ValueString id="both" value="s"/>
    </ValueItem>
  </Node></Component>
</TunerProperties>
)";
    m_workshop->write(QStringLiteral("two.xml"), text);
    const QString found = m_workshop->run({QStringLiteral("lint"), QStringLiteral("two.xml")}).out;
    const QString path = QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=both]/ValueInt");
    QCOMPARE(found,
             QStringLiteral("two.xml:5:7: ") + path
                 + QStringLiteral(": ValueInt has data, but ValueString is chosen; remove one of them "
                                  "[unchosen-data]\n"));
    const auto run = [&](const QStringList &arguments) {
        const Run result = m_workshop->run(arguments);
        return QStringLiteral("%1\n").arg(result.status) + result.out + result.err;
    };
    QCOMPARE(run({QStringLiteral("get"), QStringLiteral("two.xml"), path}),
             QStringLiteral("0\n{\"id\": \"i6\", \"value\": 12}\n"));
    QVERIFY(run({QStringLiteral("paths"), QStringLiteral("two.xml")}).contains(path + QStringLiteral("/value\n")));
    QCOMPARE(
        run({QStringLiteral("set"), QStringLiteral("two.xml"), path + QStringLiteral("/value"), QStringLiteral("13")}),
        QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("two.xml")), QByteArray(text).replace("12", "13"));
    const QByteArray without = QByteArray(text).replace("      <ValueInt id=\"i6\" value=\"12\"/>\n", "");
    QCOMPARE(run({QStringLiteral("remove"), QStringLiteral("two.xml"), path}), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("two.xml")), without);
    m_workshop->write(QStringLiteral("two.xml"), text);
    QCOMPARE(run({QStringLiteral("set"), QStringLiteral("--unset"), QStringLiteral("two.xml"), path}),
             QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("two.xml")), without);
    QCOMPARE(run({QStringLiteral("get"), QStringLiteral("two.xml"), path}),
             QStringLiteral("1\ntunerproperties: two.xml: ") + path
                 + QStringLiteral(": the item holds a ValueString\n"));
}

void ToolGetSetTest::newProblemsPreventTheChange()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("set --unset small.xml Component/type"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: small.xml: Component[1]: Component: Please set type "
                            "properly.\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));

    QCOMPARE(m_workshop->run(line("set --no-validate --unset small.xml Component/type")).err, QString());
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml).replace("type=\"t\" ", ""));
    const Run choice = m_workshop->run(line("set small.xml Component/Node/ValueItem/ChoiceValueItem ValueFloat"));
    const QString where = QStringLiteral("tunerproperties: small.xml: Component[1]/Node[id=n]/ValueItem[1]");
    QCOMPARE(
        choice.err,
        where
            + QStringLiteral(": ValueItem:Check failed. Mandatory data of the member (choice element) m_valueFloat "
                             "is not set.\n")
            + where + QStringLiteral("/ValueFloat: ValueFloat: Please set id properly.\n") + where
            + QStringLiteral("/ValueFloat: ValueFloat: Please set value properly.\n"));
    QCOMPARE(choice.status, 1);
}

void ToolGetSetTest::knownProblemsDoNotPreventTheChange()
{
    // Even if their path changes.
    m_workshop->write(QStringLiteral("f.json"), QByteArray(document).replace("\"id\": \"n\",", ""));
    QCOMPARE(set(line("f.json Component[3]/name Other")).left(2), QStringLiteral("0 "));

    m_workshop->write(QStringLiteral("f.json"), QByteArray(document).replace("\"type\": \"SCP\",", ""));
    QCOMPARE(set(line("f.json quantity 3")), QStringLiteral("0 ~ quantity: -2 -> 3\n"));
    QCOMPARE(set(line("f.json type MCP")), QStringLiteral("0 ~ type: (not set) -> \"MCP\"\n"));

    // The readers of XML and records refuse the incomplete component, but the document has it.
    m_workshop->write(QStringLiteral("a.xml"), QByteArray(smallXml).replace("type=\"t\" ", ""));
    QCOMPARE(m_workshop->run(line("convert a.xml a.tpb --no-validate")).status, 0);
    for (const char *name : {"a.xml", "a.tpb"}) {
        const Run run = m_workshop->run(line("set") << QString::fromUtf8(name) << line("Component/type Filter"));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml).replace("type=\"t\"", "type=\"Filter\""));
}

void ToolGetSetTest::contentThatTheModelDoesNotHaveStaysInXml()
{
    const QByteArray xml = QByteArray(smallXml).replace("</TunerProperties>", "  <Extra/>\n</TunerProperties>");
    m_workshop->write(QStringLiteral("small.xml"), xml);
    const Run run = m_workshop->run(line("set small.xml quantity 3"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")),
             QByteArray(xml).replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"3\""));
}

void ToolGetSetTest::recordsThatTheModelDoesNotHavePreventTheChange()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    QCOMPARE(m_workshop->run(line("convert small.xml small.tpb")).status, 0);
    QByteArray records = m_workshop->read(QStringLiteral("small.tpb"));
    constexpr int lengthAt = 4;
    records += QByteArray::fromHex("12345678"
                                   "00000002"
                                   "ABCD"); // an unknown tag, the length, and two bytes
    qToBigEndian(qFromBigEndian<quint32>(records.constData() + lengthAt) + 10, records.data() + lengthAt);
    m_workshop->write(QStringLiteral("small.tpb"), records);
    const Run run = m_workshop->run(line("set small.tpb quantity 3"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: small.tpb: content that the model does not have is lost\n"
                            "tunerproperties: small.tpb: nothing was written; use --rewrite to write the document with "
                            "these losses\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.tpb")), records);

    const Run rewritten = m_workshop->run(line("set --rewrite small.tpb quantity 3"));
    QCOMPARE(rewritten.err,
             QStringLiteral("tunerproperties: small.tpb: content that the model does not have is lost\n"));
    QCOMPARE(rewritten.status, 0);
    QCOMPARE(m_workshop->run(line("get small.tpb quantity")).out, QStringLiteral("3\n"));
}

void ToolGetSetTest::newProblemsBeyondTheFirstHundredAreCounted()
{
    // 150 options without name and value, of a selection that is not chosen and lacks its text and its index.
    const QByteArray options = "{}" + QByteArray(",{}").repeated(149);
    m_workshop->write(QStringLiteral("many.json"),
                      R"({"TunerProperties":{"type":"SCP","baseresource":"b","Component":[{"type":"t","name":"c",)"
                      R"("optional":true,"Node":[{"id":"n","ValueItem":[{"ChoiceValueItem":"ValueInt",)"
                      R"("ValueInt":{"id":"i","value":3},"ValueSelection":{"id":"s","value":1,"SelectionItem":[)"
                          + options + "]}}]}]}]}}");
    const Run run = m_workshop->run(line("set many.json Component/Node/ValueItem/ChoiceValueItem ValueSelection"));
    const QStringList lines = run.err.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 102); // the last one is empty
    QCOMPARE(lines[1],
             QStringLiteral("tunerproperties: many.json: Component[type=t,name=c]/Node[id=n]/ValueItem[id=s]/"
                            "ValueSelection/SelectionItem[1]: SelectionItem: Please set name properly."));
    QCOMPARE(lines[100], QStringLiteral("tunerproperties: many.json: 303 problems; only the first 100 are listed"));
    QCOMPARE(run.status, 1);
}

void ToolGetSetTest::valueThatTheFormCannotStorePreventsTheChange()
{
    m_workshop->write(QStringLiteral("small.xml"), QByteArray(smallXml).replace("ValueInt", "ValueFloat"));
    QCOMPARE(m_workshop->run(line("convert small.xml small.tpb")).status, 0);
    const QByteArray records = m_workshop->read(QStringLiteral("small.tpb"));
    const QString value = QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueFloat/value");
    const Run rounded =
        m_workshop->run({QStringLiteral("set"), QStringLiteral("small.tpb"), value, QStringLiteral("0.126")});
    QCOMPARE(rounded.err,
             QStringLiteral("tunerproperties: small.tpb: %1: 0.126 becomes 0.13\n"
                            "tunerproperties: small.tpb: nothing was written; use --rewrite to write the document with "
                            "these losses\n")
                 .arg(value));
    QCOMPARE(rounded.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.tpb")), records);
    QCOMPARE(m_workshop->run({QStringLiteral("set"), QStringLiteral("small.tpb"), value, QStringLiteral("-0.5")}).err,
             QString());

    const QByteArray xml = m_workshop->read(QStringLiteral("small.xml"));
    const Run large = m_workshop->run(line("set small.xml MaxFFPDelay 9223372036854775808"));
    QCOMPARE(large.err,
             QStringLiteral("tunerproperties: small.xml: cannot edit the document in place: MaxFFPDelay: "
                            "9223372036854775808 would be read as 0\n"));
    QCOMPARE(large.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), xml);
    QCOMPARE(m_workshop->run(line("set small.xml MaxFFPDelay 9223372036854775807")).err, QString());
}

void ToolGetSetTest::objectThatIsNotSetIsSetInJson()
{
    const QByteArray json = R"({"TunerProperties": {"type":"SCP", "baseresource":"b", "Component": [
  {"type":"t","name":"c","optional":true,"Node":[{"id":"n","ValueItem":[{"ValueInt":{"id":"i","value":3}}]}]}],
 "unset": { "StartupModes": {"StartupMode": ["DF"]} } } })";
    m_workshop->write(QStringLiteral("unset.json"), json);
    QCOMPARE(m_workshop->run(line("set unset.json StartupModes/StartupMode Scan")).err, QString());
    QCOMPARE(m_workshop->read(QStringLiteral("unset.json")),
             QByteArray(json)
                 .replace("\"baseresource\":\"b\",",
                          "\"baseresource\":\"b\", \"StartupModes\":{\"StartupMode\":[\"Scan\"]},")
                 .replace(",\n \"unset\": { \"StartupModes\": {\"StartupMode\": [\"DF\"]} }", ""));
}

void ToolGetSetTest::onlyTheValueChangesInXml()
{
    QFile example(QStringLiteral(EXAMPLES_DIR "/receiver.xml"));
    QVERIFY(example.open(QIODevice::ReadOnly));
    const QByteArray xml = example.readAll()
                               .replace("<MaxBandwidth>600</MaxBandwidth>", "<MaxBandwidth>2400.123456</MaxBandwidth>")
                               .replace("hwProcessing=\"false\"", "hwProcessing=\"false\" owner=\"us\"")
                               .replace("Version=\"1.1\"", "Version=\"1.2\"");
    m_workshop->write(QStringLiteral("r.xml"), xml);
    const Run run = m_workshop->run(line("set r.xml quantity 3"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("r.xml")), QByteArray(xml).replace("quantity=\"2\"", "quantity=\"3\""));
}

void ToolGetSetTest::missingTextsStayMissingInXml()
{
    const QByteArray xml = QByteArray(smallXml).replace(" id=\"n\"", "").replace("value=\"7\"", "value=\"abc\"");
    m_workshop->write(QStringLiteral("small.xml"), xml);
    QCOMPARE(m_workshop->run(line("set small.xml quantity 3")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")),
             QByteArray(xml).replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"3\""));
    QCOMPARE(m_workshop->run(line("validate small.xml")).status, 1);
}

void ToolGetSetTest::severalValuesAreChangedAtOnce()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run({QStringLiteral("set"), QStringLiteral("small.xml"), QStringLiteral("quantity=3"),
                                     QStringLiteral("Component[name=c]/Node[id=\"n\"]/ValueItem/value=8"),
                                     QStringLiteral("name=a=b"), QStringLiteral("baseresource=")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(
        m_workshop->read(QStringLiteral("small.xml")),
        QByteArray(smallXml)
            .replace("type=\"SCP\" baseresource=\"b\"", "name=\"a=b\" type=\"SCP\" baseresource=\"\" quantity=\"3\"")
            .replace("value=\"7\"", "value=\"8\""));
}

void ToolGetSetTest::oneWrongValueOfSeveralChangesNothing()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("set small.xml quantity=3 type=Reciever"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: small.xml: type: unknown type 'Reciever'; did you mean 'Receiver'?\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
}

void ToolGetSetTest::dryRunShowsTheDifferencesAndWritesNothing()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("set --dry-run small.xml quantity=3 name=new"));
    QCOMPARE(run.out, QStringLiteral("~ name: (not set) -> \"new\"\n~ quantity: 1 (not set) -> 3\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
}

void ToolGetSetTest::unchangedFileIsNotWritten()
{
    // Its layout would change otherwise.
    QCOMPARE(m_workshop->run(line("set f.json quantity -2")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("f.json")), QByteArray(document));
}

void ToolGetSetTest::failedWritingKeepsTheFile()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(
        {QStringLiteral("set"), QStringLiteral("small.xml"), QStringLiteral("name"), QStringLiteral("a\x01z")});
    QVERIFY(run.err.startsWith(QStringLiteral("tunerproperties: small.xml: ")));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
    QCOMPARE(m_workshop->files(), QStringList({QStringLiteral("f.json"), QStringLiteral("small.xml")}));
}

void ToolGetSetTest::wrongArgumentsAreWrongUsage_data()
{
    const Rows<QString, QString> row("arguments", "why");
    row("set f.json", "'set' expects FILE PATH=VALUE... or FILE PATH VALUE or --unset FILE PATH...");
    row("set f.json quantity", "'set' requires a value; use --unset to remove the value");
    row("set --unset f.json quantity=3", "'set --unset' takes no value: 'quantity=3'");
    row("set f.json quantity=3 name", "'name' is not of the form PATH=VALUE");
    row("get f.json", "'get' expects FILE PATH or PATH FILE...");
    row("set f.json name -x", "unknown option '-x'; for a file of that name, write './-x' or put '--' before it");
}

void ToolGetSetTest::wrongArgumentsAreWrongUsage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, why);
    const Run run = m_workshop->run(line(arguments.toUtf8().constData()));
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("tunerproperties: ") + why);
    QCOMPARE(run.status, 2);
    QCOMPARE(m_workshop->read(QStringLiteral("f.json")), QByteArray(document));
}

TEST_SUITE(ToolGetSetTest)
#include "tst_ToolGetSet.moc"
