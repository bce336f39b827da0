// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/MemberTest.h"

/// Reading members of a document by their paths.
class ToolGetTest : public MemberTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginTest(); }

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
};

void ToolGetTest::pathSelectsAMember_data()
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

void ToolGetTest::pathSelectsAMember()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QCOMPARE(get(path), QStringLiteral("0 ") + value);
}

void ToolGetTest::emptyTextDiffersFromAMissingOne()
{
    m_workshop->write(QStringLiteral("f.json"), R"({"TunerProperties": {"Version": "1.1", "Component": [
        {"type": "a", "name": null}, {"type": "b", "name": ""}, {"type": "c"}]}})");
    QCOMPARE(get(QStringLiteral("Component[name=\"\"]/type")), QStringLiteral("0 b\n"));
}

void ToolGetTest::objectsArePrintedAsJson()
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

void ToolGetTest::invalidPathIsReportedWithTheReason_data()
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

void ToolGetTest::invalidPathIsReportedWithTheReason()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    QCOMPARE(get(path), QStringLiteral("1 tunerproperties: f.json: ") + why + QLatin1Char('\n'));
    QCOMPARE(set({QStringLiteral("f.json"), path, QStringLiteral("1")}),
             QStringLiteral("1 tunerproperties: f.json: ") + why + QLatin1Char('\n'));
}

void ToolGetTest::patternPrintsATable()
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

void ToolGetTest::tableOfSeveralFilesNamesEach()
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

void ToolGetTest::patternThatMatchesNothingIsReported()
{
    QCOMPARE(get(QStringLiteral("Component[*]/displayName")),
             QStringLiteral("1 tunerproperties: Component[*]/displayName: matches nothing in f.json\n"));
}

void ToolGetTest::pathsAreListed()
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

void ToolGetTest::pathsOfObjectsAreListedOnRequest()
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

void ToolGetTest::completionsOfAPathAreListed()
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

void ToolGetTest::memberWithoutValuePrintsNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("why");
    QTest::newRow("not set") << QStringLiteral("HRPANSupported") << QStringLiteral("is not set");
    QTest::newRow("not set, with a value") << QStringLiteral("parentBaseResource") << QStringLiteral("is not set");
    QTest::newRow("null") << QStringLiteral("connectableResources") << QStringLiteral("is set, but has no value");
}

void ToolGetTest::memberWithoutValuePrintsNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    const Run run = m_workshop->run({QStringLiteral("get"), QStringLiteral("f.json"), path});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: f.json: %1: %2\n").arg(path, why));
    QCOMPARE(run.status, 1);
}

TEST_SUITE(ToolGetTest)
#include "tst_ToolGet.moc"
