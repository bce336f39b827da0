// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/MemberTest.h"

/// Changing one member of a document by its path: which values are stored.
class ToolSetTest : public MemberTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginTest(); }

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
    void anItemReceivesAnotherKindOfValueInOneCommand();
    void membersCanBeUnset();
    void infinityIsWrittenAsReadersKnowIt();
    void standardInputIsWrittenToStandardOutput();
    void objectThatIsNotSetIsSetInJson();
    void wrongArgumentsAreWrongUsage_data();
    void wrongArgumentsAreWrongUsage();
};

void ToolSetTest::valuesAreStored_data()
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

void ToolSetTest::valuesAreStored()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QString, change);
    QStringList arguments = {QStringLiteral("f.json"), path, value};
    if (value == QLatin1String("-x"))
        arguments.prepend(QStringLiteral("--"));
    QCOMPARE(set(arguments), QStringLiteral("0 ") + change);
}

void ToolSetTest::optionsMayFollowANegativeNumber()
{
    QCOMPARE(set(line("f.json quantity -5 --no-validate")), QStringLiteral("0 ~ quantity: -2 -> -5\n"));
    QCOMPARE(set(line("--from=json f.json quantity -6 --no-validate")), QStringLiteral("0 ~ quantity: -5 -> -6\n"));
}

void ToolSetTest::invalidValueIsAnError_data()
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

void ToolSetTest::invalidValueIsAnError()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QString, why);
    const QString message = set({QStringLiteral("f.json"), path, value});
    QVERIFY2(message.startsWith(QStringLiteral("1 tunerproperties: f.json: ")), qPrintable(message));
    QVERIFY2(message.endsWith(QStringLiteral(": ") + why + QLatin1Char('\n')), qPrintable(message));
}

void ToolSetTest::fileKeepsItsForm_data()
{
    QTest::addColumn<QString>("file");
    for (const char *file : {"f.xml", "f.tpb", "f.tpz", "f.tps", "f.json"})
        QTest::newRow(file) << QString::fromUtf8(file);
}

void ToolSetTest::fileKeepsItsForm()
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

void ToolSetTest::identifyingMembersCanBeChanged_data()
{
    fileKeepsItsForm_data();
}

void ToolSetTest::identifyingMembersCanBeChanged()
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

void ToolSetTest::kindOfValueCanBeChanged()
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

void ToolSetTest::anItemReceivesAnotherKindOfValueInOneCommand()
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

void ToolSetTest::membersCanBeUnset()
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

namespace {

constexpr char withBandwidth[] =
    "<TunerProperties Version='1.1' type='SCP' baseresource='b'>\n"
    "  <StartupModes><StartupMode>DF</StartupMode></StartupModes>\n"
    "  <BandwidthSelection><Name>w</Name><MaxBandwidth>1.5</MaxBandwidth></BandwidthSelection>\n"
    "</TunerProperties>\n";

} // namespace

void ToolSetTest::infinityIsWrittenAsReadersKnowIt()
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

void ToolSetTest::standardInputIsWrittenToStandardOutput()
{
    const Run run = m_workshop->run(line("set - Component/Node/ValueItem/value 9"), smallXml);
    QCOMPARE(run.bytes, QByteArray(smallXml).replace("value=\"7\"", "value=\"9\""));
    QCOMPARE(run.err, QString());
    QCOMPARE(m_workshop->run(line("set - Component/Node/ValueItem/value 7"), smallXml).bytes, QByteArray(smallXml));
}

void ToolSetTest::objectThatIsNotSetIsSetInJson()
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

void ToolSetTest::wrongArgumentsAreWrongUsage_data()
{
    const Rows<QString, QString> row("arguments", "why");
    row("set f.json", "'set' expects FILE PATH=VALUE... or FILE PATH VALUE or --unset FILE PATH...");
    row("set f.json quantity", "'set' requires a value; use --unset to remove the value");
    row("set --unset f.json quantity=3", "'set --unset' takes no value: 'quantity=3'");
    row("set f.json quantity=3 name", "'name' is not of the form PATH=VALUE");
    row("get f.json", "'get' expects FILE PATH or PATH FILE...");
    row("set f.json name -x", "unknown option '-x'; for a file of that name, write './-x' or put '--' before it");
}

void ToolSetTest::wrongArgumentsAreWrongUsage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, why);
    const Run run = m_workshop->run(line(arguments.toUtf8().constData()));
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("tunerproperties: ") + why);
    QCOMPARE(run.status, 2);
    QCOMPARE(m_workshop->read(QStringLiteral("f.json")), QByteArray(document));
}

TEST_SUITE(ToolSetTest)
#include "tst_ToolSet.moc"
