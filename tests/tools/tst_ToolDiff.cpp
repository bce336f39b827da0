// SPDX-License-Identifier: MIT
#include "JsonDocument.h"
#include "Rows.h"
#include "documents/html/PageTree.h"
#include "tools/Terminal.h"
#include "tools/Tool.h"

/// The comparison of two documents.
class ToolDiffTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void equalDocumentsInDifferentFormsHaveNoDifferences_data();
    void equalDocumentsInDifferentFormsHaveNoDifferences();
    void differencesAreListedByPath_data();
    void differencesAreListedByPath();
    void linesAreInDocumentOrder();
    void exitCodeOptionReportsDifferences();
    void colorsAreUsedOnTerminals();
    void jsonOptionWritesDifferencesAsJson();
    void jsonIsAlsoAFormat();
    void htmlFormatWritesAPage();
    void pageNamesFilesByTheirFoldersIfNecessary();
    void pageOfEqualDocumentsSaysSo();
    void textsStayOnOneLine();
    void unreadableDocumentIsAnError();
    void standardInputIsReadOnce();

private:
    /// The differences of two documents with these members as JSON.
    QString diff(const QByteArray &first, const QByteArray &second);

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

QByteArray nodeOf(const QByteArray &items)
{
    return R"("Component": [{"type": "t", "name": "c", "Node": [{"id": "n", "ValueItem": [)" + items + "]}]}]";
}

QByteArray listOf(const QByteArray &items)
{
    QByteArray strings;
    for (const char item : items)
        strings += QByteArray(strings.isEmpty() ? "" : ", ") + R"({"value": ")" + item + "\"}";
    return nodeOf(R"({"ChoiceValueItem": "ValueStringList", "ValueStringList": {"id": "i", "StringItem": [)" + strings
                  + "]}}");
}

} // namespace

void ToolDiffTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

QString ToolDiffTest::diff(const QByteArray &first, const QByteArray &second)
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(first));
    m_workshop->write(QStringLiteral("b.json"), jsonWith(second));
    const Run run = m_workshop->run(line("diff a.json b.json"));
    return run.status == 0 && run.err.isEmpty() ? run.out : QStringLiteral("status %1: ").arg(run.status) + run.err;
}

void ToolDiffTest::equalDocumentsInDifferentFormsHaveNoDifferences_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    const QStringList suffixes = {QStringLiteral("xml"), QStringLiteral("tpb"), QStringLiteral("tpz"),
                                  QStringLiteral("tps"), QStringLiteral("json")};
    for (const QString &first : suffixes) {
        for (const QString &second : suffixes)
            QTest::newRow(qPrintable(first + QLatin1Char(' ') + second)) << first << second;
    }
}

void ToolDiffTest::equalDocumentsInDifferentFormsHaveNoDifferences()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    const QString a = QStringLiteral("a.") + first;
    const QString b = QStringLiteral("b.") + second;
    for (const QString &file : {a, b})
        QCOMPARE(m_workshop->run({QStringLiteral("convert"), examplePath(QStringLiteral("scp")), file}).status, 0);
    const Run run = m_workshop->run({QStringLiteral("diff"), QStringLiteral("--exit-code"), a, b});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolDiffTest::differencesAreListedByPath_data()
{
    const Rows<QByteArray, QByteArray, QString> row("first", "second", "text");
    row("a value", R"("quantity": 1)", R"("quantity": 2)", "~ quantity: 1 -> 2\n");
    row("set to the default", R"("type": "SCP")", R"("type": "SCP", "quantity": 1)", "~ quantity: 1 (not set) -> 1\n");
    row("taken away", R"("name": "x")", R"("type": null)", "~ name: \"x\" -> (not set)\n~ type: (not set) -> (null)\n");
    row("null and empty", R"("name": null)", R"("name": "")", "~ name: (null) -> \"\"\n");
    row("signs of zero", R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": 0.0}])",
        R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": -0.0}])",
        "~ BandwidthSelection[Name=x]/MaxBandwidth: 0 -> -0\n");
    row("no numbers are alike", R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "NaN"}])",
        R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "NaN"}])", "");
    row("modes", R"("StartupModes": {"StartupMode": ["Scan"]})", R"("StartupModes": {"StartupMode": ["Scan", 44]})",
        "~ StartupModes/StartupMode: [\"Scan\"] -> [\"Scan\", 44]\n");
    row("modes that come", R"("quantity": 1)", R"("quantity": 1, "StartupModes": {"StartupMode": ["Scan", "DF"]})",
        "+ StartupModes: StartupMode [\"Scan\", \"DF\"]\n");
    row("modes that go", R"("StartupModes": {"StartupMode": []}, "quantity": 1)", R"("quantity": 1)",
        "- StartupModes: StartupMode []\n");
    row("modes that are set no more", R"("StartupModes": {"StartupMode": ["DF"]})",
        R"("unset": {"StartupModes": {"StartupMode": ["DF"]}})", "~ StartupModes: (set) -> (not set)\n");
    row("a list that is set no more", R"("Component": [{}])", R"("unset": {"Component": [{}]})",
        "~ Component: 1 item -> 1 item (not set)\n");
    row("a list that is empty", R"("Component": [])", R"("quantity": 1)",
        "~ quantity: 1 (not set) -> 1\n~ Component: 0 items -> 0 items (not set)\n");

    row("an item that comes", nodeOf(""),
        nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 7}})"),
        "+ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i] (at 1): ValueInt value 7\n");
    row("an item without identity that goes", nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"value": 7}})"),
        nodeOf(""), "- Component[type=t,name=c]/Node[id=n]/ValueItem[1]: ValueInt value 7\n");
    row("a component that comes", R"("Component": [])", nodeOf("{}, {}"),
        "+ Component[type=t,name=c] (at 1): 1 Node\n");
    row("another kind of value", nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 7}})"),
        nodeOf(R"({"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "i", "value": 0.1}})"),
        "~ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: ValueInt -> ValueFloat\n"
        "+ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueFloat: id \"i\", value 0.1\n"
        "- Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt: id \"i\", value 7\n");
    row("nothing chosen", nodeOf("{}"), nodeOf(R"({"ChoiceValueItem": 77})"),
        "~ Component[type=t,name=c]/Node[id=n]/ValueItem[1]: (nothing) -> 77\n");
    row("chosen, and not set", nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {}})"),
        nodeOf(R"({"ChoiceValueItem": "ValueInt"})"), "- Component[type=t,name=c]/Node[id=n]/ValueItem[1]/ValueInt\n");

    row("moved to the end", listOf("abcd"), listOf("bcda"),
        "> Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueStringList/StringItem[value=a]: moved from 1 to "
        "4\n");
    row("the position stays, the neighbors do not", listOf("abcde"), listOf("decab"),
        "> Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueStringList/StringItem[value=c]: moved among its "
        "neighbors\n"
        "> Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueStringList/StringItem[value=d]: moved from 4 to 1\n"
        "> Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueStringList/StringItem[value=e]: moved from 5 to "
        "2\n");
    row("the second of those alike", nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1}},
                                              {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 2}})"),
        nodeOf(R"({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1}},
                  {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 3}})"),
        "~ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i][2]/ValueInt/value: 2 -> 3\n");
    row("without identity: by content, then in order",
        R"("Component": [{"displayName": "a"}, {"displayName": "b"}, {"displayName": "c"}])",
        R"("Component": [{"displayName": "b"}, {"displayName": "x"}, {"displayName": "y"}, {"displayName": "z"}])",
        "~ Component[1]/displayName: \"a\" -> \"x\"\n"
        "> Component[2]: moved from 2 to 1\n"
        "~ Component[3]/displayName: \"c\" -> \"y\"\n"
        "+ Component[4] (at 4): displayName \"z\"\n");
}

void ToolDiffTest::differencesAreListedByPath()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QString, text);
    QCOMPARE(diff(first, second), text);
    QCOMPARE(diff(first, first), QString());
    QCOMPARE(diff(second, second), QString());
}

void ToolDiffTest::linesAreInDocumentOrder()
{
    QCOMPARE(
        diff(listOf("adbz"), listOf("xabyc")),
        QStringLiteral("+ #[value=x] (at 1)\n- #[value=d]\n- #[value=z]\n+ #[value=y] (at 4)\n+ #[value=c] (at 5)\n")
            .replace(QLatin1Char('#'),
                     QLatin1String("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueStringList/StringItem")));
}

void ToolDiffTest::exitCodeOptionReportsDifferences()
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 1)"));
    m_workshop->write(QStringLiteral("b.json"), jsonWith(R"("quantity": 2)"));
    QCOMPARE(m_workshop->run(line("diff a.json b.json")).status, 0);
    const Run run = m_workshop->run(line("diff --exit-code a.json b.json"));
    QCOMPARE(run.status, 1);
    QCOMPARE(run.out, QStringLiteral("~ quantity: 1 -> 2\n"));
    QCOMPARE(m_workshop->run(line("diff --exit-code a.json a.json")).status, 0);
}

void ToolDiffTest::colorsAreUsedOnTerminals()
{
    m_workshop->write(
        QStringLiteral("a.json"),
        jsonWith(R"("quantity": 1, "BandwidthSelection": [{"Name": "a"}, {"Name": "m"}, {"Name": "n"}])"));
    m_workshop->write(
        QStringLiteral("b.json"),
        jsonWith(R"("quantity": 2, "BandwidthSelection": [{"Name": "n"}, {"Name": "m"}, {"Name": "b"}])"));
    const QString plain = QStringLiteral("~ quantity: 1 -> 2\n"
                                         "- BandwidthSelection[Name=a]\n"
                                         "+ BandwidthSelection[Name=b] (at 3)\n"
                                         "> BandwidthSelection[Name=n]: moved from 3 to 1\n");
    QCOMPARE(m_workshop->run(line("diff a.json b.json")).out, plain);
    QCOMPARE(m_workshop->run(line("diff --color auto a.json b.json")).out, plain);
    QCOMPARE(m_workshop->run(line("diff --color never a.json b.json")).out, plain);
    const QString colored = QStringLiteral("\x1B[33m~ quantity: 1 -> 2\x1B[m\n"
                                           "\x1B[31m- BandwidthSelection[Name=a]\x1B[m\n"
                                           "\x1B[32m+ BandwidthSelection[Name=b] (at 3)\x1B[m\n"
                                           "\x1B[36m> BandwidthSelection[Name=n]: moved from 3 to 1\x1B[m\n");
    QCOMPARE(m_workshop->run(line("diff --color always a.json b.json")).out, colored);

    const auto onTerminal = [&](const char *environment, const char *kind) {
        Terminal terminal(
            m_workshop->path(QStringLiteral(".")),
            QStringLiteral("unset NO_COLOR; %1 $tool diff a.json b.json").arg(QString::fromUtf8(environment)), 80,
            kind);
        terminal.readAll();
        return QString::fromUtf8(terminal.written()).remove(QLatin1Char('\r')); // a terminal's end of a line has one
    };
    QCOMPARE(onTerminal("", "xterm"), colored);
    QCOMPARE(onTerminal("NO_COLOR=", "xterm"), colored);
    QCOMPARE(onTerminal("NO_COLOR=1", "xterm"), plain);
    QCOMPARE(onTerminal("", "dumb"), plain);

    const Run wrong = m_workshop->run(line("diff --color sometimes a.json b.json"));
    QCOMPARE(wrong.status, 2);
}

void ToolDiffTest::jsonOptionWritesDifferencesAsJson()
{
    m_workshop->write(
        QStringLiteral("a.json"),
        jsonWith(R"("name": "\"\n", "BandwidthSelection": [{"Name": "a"}, {"Name": "m"}, {"Name": "n"}])"));
    m_workshop->write(QStringLiteral("b.json"),
                      jsonWith(R"("BandwidthSelection": [{"Name": "n"}, {"Name": "m"}, {"Name": "b"}])"));
    const Run run = m_workshop->run(line("diff --json a.json b.json"));
    QCOMPARE(run.out, QStringLiteral(R"_({"change":"changed","path":"name","before":"\"\n"}
{"change":"removed","path":"BandwidthSelection[Name=a]","from":1,"before":{"Name":"a"}}
{"change":"added","path":"BandwidthSelection[Name=b]","to":3,"after":{"Name":"b"}}
{"change":"moved","path":"BandwidthSelection[Name=n]","from":3,"to":1}
)_"));
    QCOMPARE(run.err, QString());
}

void ToolDiffTest::jsonIsAlsoAFormat()
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 1)"));
    m_workshop->write(QStringLiteral("b.json"), jsonWith(R"("quantity": 2)"));
    const QString changes = QStringLiteral("{\"change\":\"changed\",\"path\":\"quantity\",\"before\":1,\"after\":2}\n");
    QCOMPARE(m_workshop->run(line("diff --format json a.json b.json")).out, changes);
    QCOMPARE(m_workshop->run(line("diff --json --format json a.json b.json")).out, changes);
    QCOMPARE(m_workshop->run(line("diff --format text a.json b.json")).out, QStringLiteral("~ quantity: 1 -> 2\n"));
}

void ToolDiffTest::htmlFormatWritesAPage()
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 1)"));
    m_workshop->write(QStringLiteral("b.json"), jsonWith(R"("quantity": 2)"));
    const Run run = m_workshop->run(line("diff --format html a.json b.json"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(PageTree(run.bytes).error(), QString());
    QCOMPARE(textsOf(run.bytes, "title"), QStringList{QStringLiteral("Differences of a.json and b.json")});
    QCOMPARE(textsOf(run.bytes, "tr"),
             (QStringList{QStringLiteral("memberbeforeafter"), QStringLiteral("quantity 12")}));
    QCOMPARE(m_workshop->run(line("diff --exit-code --format html a.json b.json")).status, 1);
    QCOMPARE(m_workshop->run(line("diff --exit-code --format=html a.json a.json")).status, 0);
    // Colors are for lines.
    QCOMPARE(m_workshop->run(line("diff --color always --format html a.json b.json")).bytes, run.bytes);
}

void ToolDiffTest::pageNamesFilesByTheirFoldersIfNecessary()
{
    QVERIFY(QDir(m_workshop->path(QStringLiteral("."))).mkpath(QStringLiteral("old")));
    m_workshop->write(QStringLiteral("old/a.json"), jsonWith(R"("quantity": 1)"));
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 2)"));
    m_workshop->write(QStringLiteral("b.json"), jsonWith(R"("quantity": 2)"));
    const auto title = [&](const char *arguments, const QByteArray &in = {}) {
        return textsOf(m_workshop->run(line(arguments), in).bytes, "h1").value(0);
    };
    QCOMPARE(title("diff --format html old/a.json a.json"), QStringLiteral("Differences of old/a.json and a.json"));
    QCOMPARE(title("diff --format html old/a.json b.json"), QStringLiteral("Differences of a.json and b.json"));
    QCOMPARE(title("diff --format html - b.json", jsonWith(R"("quantity": 3)")),
             QStringLiteral("Differences of standard input and b.json"));
}

void ToolDiffTest::pageOfEqualDocumentsSaysSo()
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 1)"));
    const Run run = m_workshop->run(line("diff --exit-code --format html a.json a.json"));
    QCOMPARE(run.status, 0);
    QVERIFY(run.bytes.contains("<p class=\"fine\">The documents are equal.</p>"));
    QCOMPARE(textsOf(run.bytes, "table"), QStringList());
}

void ToolDiffTest::textsStayOnOneLine()
{
    QCOMPARE(diff(R"("BandwidthSelection": [{"Name": "a\n]\u0007\"b"}])",
                  R"("BandwidthSelection": [{"Name": "a\n]\u0007\"b", "MaxBandwidth": 1}])"),
             QStringLiteral(R"(~ BandwidthSelection[Name="a\n]\u0007\"b"]/MaxBandwidth: 0 (not set) -> 1)"
                            "\n"));
}

void ToolDiffTest::unreadableDocumentIsAnError()
{
    m_workshop->write(QStringLiteral("a.json"), jsonWith(R"("quantity": 1)"));
    m_workshop->write(QStringLiteral("b.json"), "{");
    const Run missing = m_workshop->run(line("diff --exit-code a.json c.json"));
    QCOMPARE(missing.err, QStringLiteral("tunerproperties: c.json: cannot open: No such file or directory\n"));
    QCOMPARE(missing.status, 3);
    const Run damaged = m_workshop->run(line("diff b.json a.json"));
    QCOMPARE(damaged.err,
             QStringLiteral("tunerproperties: b.json:1:2: syntax error while parsing object key - unexpected end of "
                            "input; expected string literal\n"));
    QCOMPARE(damaged.status, 3);
}

void ToolDiffTest::standardInputIsReadOnce()
{
    const Run run = m_workshop->run(line("diff - -"), smallXml);
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("tunerproperties: standard input can be read only once"));
    QCOMPARE(run.status, 2);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    QCOMPARE(m_workshop->run(line("diff small.xml -"), QByteArray::fromHex(smallTaggedHex)).out, QString());
}

TEST_SUITE(ToolDiffTest)
#include "tst_ToolDiff.moc"
