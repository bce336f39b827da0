// SPDX-License-Identifier: MIT
#include <QtEndian>

#include "tools/MemberTest.h"

/// Changes that are refused, since the document would have new problems or lose something.
class ToolSetRefusalsTest : public MemberTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginTest(); }

    void unreadableSnapshotIsNotWritten();
    void aValueThatTheFormCannotHoldIsAProblem_data();
    void aValueThatTheFormCannotHoldIsAProblem();
    void dataThatLintFindsCanBePrintedChangedAndRemoved();
    void newProblemsPreventTheChange();
    void knownProblemsDoNotPreventTheChange();
    void contentThatTheModelDoesNotHaveStaysInXml();
    void recordsThatTheModelDoesNotHavePreventTheChange();
    void newProblemsBeyondTheFirstHundredAreCounted();
    void valueThatTheFormCannotStorePreventsTheChange();
};

void ToolSetRefusalsTest::unreadableSnapshotIsNotWritten()
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

void ToolSetRefusalsTest::aValueThatTheFormCannotHoldIsAProblem_data()
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

namespace {

constexpr char withBandwidth[] =
    "<TunerProperties Version='1.1' type='SCP' baseresource='b'>\n"
    "  <StartupModes><StartupMode>DF</StartupMode></StartupModes>\n"
    "  <BandwidthSelection><Name>w</Name><MaxBandwidth>1.5</MaxBandwidth></BandwidthSelection>\n"
    "</TunerProperties>\n";

} // namespace

void ToolSetRefusalsTest::aValueThatTheFormCannotHoldIsAProblem()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    m_workshop->write(QStringLiteral("a.xml"), withBandwidth);
    const Run run = m_workshop->run(arguments);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: ") + error + QLatin1Char('\n'));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(withBandwidth));
}

void ToolSetRefusalsTest::dataThatLintFindsCanBePrintedChangedAndRemoved()
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

void ToolSetRefusalsTest::newProblemsPreventTheChange()
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

void ToolSetRefusalsTest::knownProblemsDoNotPreventTheChange()
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

void ToolSetRefusalsTest::contentThatTheModelDoesNotHaveStaysInXml()
{
    const QByteArray xml = QByteArray(smallXml).replace("</TunerProperties>", "  <Extra/>\n</TunerProperties>");
    m_workshop->write(QStringLiteral("small.xml"), xml);
    const Run run = m_workshop->run(line("set small.xml quantity 3"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")),
             QByteArray(xml).replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"3\""));
}

void ToolSetRefusalsTest::recordsThatTheModelDoesNotHavePreventTheChange()
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

void ToolSetRefusalsTest::newProblemsBeyondTheFirstHundredAreCounted()
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

void ToolSetRefusalsTest::valueThatTheFormCannotStorePreventsTheChange()
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

TEST_SUITE(ToolSetRefusalsTest)
#include "tst_ToolSetRefusals.moc"
