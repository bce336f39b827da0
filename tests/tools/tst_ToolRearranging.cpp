// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

/// Items are added to documents, removed and moved by commands.
class ToolRearrangingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void addedItemIsWrittenAmongItsNeighbors();
    void contentMayComeFromAFileOrStandardInput();
    void addedItemMustNotCauseProblemsUnlessTheyAreAccepted();
    void contentThatIsNotReadCompletelyIsAnError();
    void nameIsAddedToAListOfNames();
    void itemsAreRemovedByPathsAndPatterns();
    void removedItemMustNotCauseProblemsUnlessTheyAreAccepted();
    void itemIsMovedWithItsText();
    void dryRunListsTheDifferencesAndWritesNothing();
    void binaryFormsAreWrittenAnew();
    void addReadsTheFormThatAnOptionNames();
    void standardInputIsEditedToStandardOutput();
    void wrongUsageIsReported();

private:
    QString run(const QString &arguments, const QByteArray &input = {})
    {
        return m_workshop->run(line(qPrintable(arguments)), input).all();
    }
    QByteArray file() const { return m_workshop->read(QStringLiteral("a.xml")); }

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

/// Comments, and a layout that the library would not write.
const QByteArray document = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a small tuner -->
<TunerProperties Version="1.1" type="SCP" baseresource="b">
	<StartupModes><StartupMode>Scan</StartupMode></StartupModes>
	<Component type='t' name='c' optional='true'>
		<Node id='n'> <!-- the first -->
			<ValueItem><ValueInt id='i' value='07'/></ValueItem>
		</Node>
		<!-- more to come -->
	</Component>
</TunerProperties>
)";

QByteArray withNode(const QByteArray &node)
{
    return QByteArray(document).replace("\t\t</Node>\n", "\t\t</Node>\n" + node);
}

const QByteArray secondNode = "\t\t<Node id=\"m\">\n\t\t\t<ValueItem>\n\t\t\t\t<ValueInt id=\"i\" value=\"8\"/>\n"
                              "\t\t\t</ValueItem>\n\t\t</Node>\n";

} // namespace

void ToolRearrangingTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_workshop->write(QStringLiteral("a.xml"), document);
}

void ToolRearrangingTest::addedItemIsWrittenAmongItsNeighbors()
{
    const Run run =
        m_workshop->run({QStringLiteral("add"), QStringLiteral("a.xml"), QStringLiteral("Component[name=c]/Node[id=m]"),
                         QStringLiteral("{\"ValueItem\": [{\"ValueInt\": {\"id\": \"i\", \"value\": 8}}]}")});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(file(), withNode(secondNode));
}

void ToolRearrangingTest::contentMayComeFromAFileOrStandardInput()
{
    const QByteArray node = "<?xml version='1.0'?>\n<!-- a node -->\n<Node>\n <ValueItem><ValueInt value='8' "
                            "id='i'/></ValueItem></Node>\n";
    m_workshop->write(QStringLiteral("node.xml"), node);
    QCOMPARE(run(QStringLiteral("add --from node.xml a.xml Component/Node[id=m]")), QStringLiteral("0\n"));
    QCOMPARE(file(), withNode(secondNode));
    QCOMPARE(run(QStringLiteral("add a.xml --from - Component/Node[id=o]"), node), QStringLiteral("0\n"));
    QCOMPARE(file(), withNode(secondNode + QByteArray(secondNode).replace("\"m\"", "\"o\"")));
}

void ToolRearrangingTest::addedItemMustNotCauseProblemsUnlessTheyAreAccepted()
{
    QCOMPARE(
        run(QStringLiteral("add a.xml Component/Node[id=m]")),
        QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]/Node[id=m]: Node: Please set ValueItem "
                       "properly.\n"));
    QCOMPARE(file(), document);
    QCOMPARE(run(QStringLiteral("add --no-validate a.xml Component/Node[id=m]")), QStringLiteral("0\n"));
    QCOMPARE(file(), withNode("\t\t<Node id=\"m\"/>\n"));
    QCOMPARE(
        run(QStringLiteral("add a.xml Component/Node[id=m]")),
        QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]/Node[id=m]: exists already; add [2] to "
                       "the path for another one\n"));
}

void ToolRearrangingTest::contentThatIsNotReadCompletelyIsAnError()
{
    m_workshop->write(QStringLiteral("node.xml"), "<Node\n  idd='m'/>");
    QCOMPARE(run(QStringLiteral("add --from node.xml a.xml Component/Node[id=m]")),
             QStringLiteral("1\ntunerproperties: node.xml:2:3: unknown attribute 'idd' of Node; it is ignored; did you "
                            "mean 'id'?\n"));
    QCOMPARE(run(QStringLiteral("add a.xml Component/Node[id=m] {\"ids\":1}")),
             QStringLiteral("1\ntunerproperties: VALUE:1:2: unknown member 'ids' of Node; did you mean 'id'?\n"));
    m_workshop->write(QStringLiteral("node.json"),
                      "{\"id\": 5,\n \"ValueItem\": [{\"ValueInt\": {\"value\": \"x\"}}]}");
    QCOMPARE(
        run(QStringLiteral("add --from node.json a.xml Component/Node")),
        QStringLiteral("1\ntunerproperties: node.json:1:8: id: '5' is not a string; did you mean \"5\"?\n"
                       "tunerproperties: node.json:2:39: ValueItem[1]/ValueInt/value: the string 'x' is not a whole "
                       "number\n"));
    QCOMPARE(run(QStringLiteral("add --from missing a.xml Component/Node[id=m]")),
             QStringLiteral("3\ntunerproperties: missing: cannot open: No such file or directory\n"));
    QCOMPARE(file(), document);
}

void ToolRearrangingTest::nameIsAddedToAListOfNames()
{
    QCOMPARE(run(QStringLiteral("add a.xml StartupModes/StartupMode DF")), QStringLiteral("0\n"));
    QCOMPARE(file(),
             QByteArray(document).replace("<StartupMode>Scan</StartupMode>",
                                          "<StartupMode>Scan</StartupMode><StartupMode>DF</StartupMode>"));
}

void ToolRearrangingTest::itemsAreRemovedByPathsAndPatterns()
{
    QCOMPARE(run(QStringLiteral("remove --no-validate a.xml StartupModes/StartupMode")), QStringLiteral("0\n"));
    QCOMPARE(file(), QByteArray(document).replace("<StartupMode>Scan</StartupMode>", ""));
    m_workshop->write(QStringLiteral("a.xml"), withNode(secondNode));
    QCOMPARE(run(QStringLiteral("remove a.xml Component[*]/Node[id=m]")), QStringLiteral("0\n"));
    QCOMPARE(file(), document);
    QCOMPARE(run(QStringLiteral("remove a.xml Component[*]/Node[id=m]")),
             QStringLiteral("1\ntunerproperties: a.xml: Component[*]/Node[id=m]: nothing fits the pattern\n"));
    QCOMPARE(run(QStringLiteral("remove a.xml StartupModes Component[name=x]")),
             QStringLiteral("1\ntunerproperties: a.xml: Component[name=x]: there is no such Component; there are "
                            "Component[type=t,name=c]\n"));
    QCOMPARE(file(), document);
}

void ToolRearrangingTest::removedItemMustNotCauseProblemsUnlessTheyAreAccepted()
{
    QCOMPARE(run(QStringLiteral("remove a.xml Component/Node")),
             QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]: Component: Please set Node "
                            "properly.\n"));
    QCOMPARE(file(), document);
    QCOMPARE(run(QStringLiteral("remove --no-validate a.xml Component/Node")), QStringLiteral("0\n"));
    QCOMPARE(file(),
             QByteArray(document).replace("\t\t<Node id='n'> <!-- the first -->\n"
                                          "\t\t\t<ValueItem><ValueInt id='i' value='07'/></ValueItem>\n\t\t</Node>\n",
                                          ""));
}

void ToolRearrangingTest::itemIsMovedWithItsText()
{
    m_workshop->write(QStringLiteral("a.xml"), withNode(secondNode));
    QCOMPARE(run(QStringLiteral("move a.xml Component/Node[id=m] 1")), QStringLiteral("0\n"));
    QCOMPARE(file(), QByteArray(document).replace("\t\t<Node", secondNode + "\t\t<Node"));
    QCOMPARE(run(QStringLiteral("move a.xml Component/Node[id=m] 3")),
             QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]/Node[id=m]: cannot be at 3; there are "
                            "2\n"));
}

void ToolRearrangingTest::dryRunListsTheDifferencesAndWritesNothing()
{
    QCOMPARE(run(QStringLiteral("add --dry-run --no-validate a.xml Component/Node[id=m]")),
             QStringLiteral("0\n+ Component[type=t,name=c]/Node[id=m] (at 2)\n"));
    QCOMPARE(run(QStringLiteral("remove --dry-run a.xml StartupModes")),
             QStringLiteral("0\n- StartupModes: StartupMode [\"Scan\"]\n"));
    QCOMPARE(run(QStringLiteral("move --dry-run a.xml Component/Node 1")),
             QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]/Node: is not an item of a list\n"));
    QCOMPARE(file(), document);
}

void ToolRearrangingTest::binaryFormsAreWrittenAnew()
{
    for (const char *suffix : {"tpb", "tpz", "tps", "json"}) {
        const QString name = QStringLiteral("a.") + QLatin1String(suffix);
        QCOMPARE(run(QStringLiteral("convert a.xml ") + name), QStringLiteral("0\n"));
        QCOMPARE(run(QStringLiteral("add %1 BandwidthSelection[Name=w] {\"MaxBandwidth\":5}").arg(name)),
                 QStringLiteral("0\n"));
        QCOMPARE(run(QStringLiteral("diff a.xml ") + name),
                 QStringLiteral("0\n+ BandwidthSelection[Name=w] (at 1): MaxBandwidth 5\n"));
    }
}

void ToolRearrangingTest::addReadsTheFormThatAnOptionNames()
{
    QCOMPARE(run(QStringLiteral("convert --to snapshot a.xml b.snap")), QStringLiteral("0\n"));
    const QString add = QStringLiteral("add %1 b.snap StartupModes/StartupMode DF");
    QCOMPARE(
        run(add.arg(QStringLiteral("--dry-run"))),
        QStringLiteral("3\ntunerproperties: b.snap: unknown form: neither XML, JSON nor binary; for a snapshot, use "
                       "the suffix .tps or --file-form snapshot\n"));
    QCOMPARE(run(add.arg(QStringLiteral("--file-form snapshot"))), QStringLiteral("0\n"));
    QCOMPARE(run(QStringLiteral("get --from snapshot b.snap StartupModes/StartupMode")),
             QStringLiteral("0\nScan\nDF\n"));
    QCOMPARE(
        run(QStringLiteral("set b.snap name=x")),
        QStringLiteral("3\ntunerproperties: b.snap: unknown form: neither XML, JSON nor binary; for a snapshot, use "
                       "the suffix .tps or --from snapshot\n"));
}

void ToolRearrangingTest::standardInputIsEditedToStandardOutput()
{
    const Run run = m_workshop->run(line("remove - StartupModes"), document);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes,
             QByteArray(document).replace("\t<StartupModes><StartupMode>Scan</StartupMode></StartupModes>\n", ""));
}

void ToolRearrangingTest::wrongUsageIsReported()
{
    const auto first = [this](const char *arguments) {
        return run(QString::fromUtf8(arguments)).section(QLatin1Char('\n'), 0, 1);
    };
    QCOMPARE(first("add a.xml"),
             QStringLiteral("2\ntunerproperties: 'add' expects FILE PATH [VALUE] or --from FILE FILE PATH"));
    QCOMPARE(first("add --from b a.xml name x"),
             QStringLiteral("2\ntunerproperties: 'add' takes the content from an argument or from a file, not both"));
    QCOMPARE(first("add --from - - Component"), first("merge - - -"));
    QCOMPARE(first("move a.xml Component first"),
             QStringLiteral("2\ntunerproperties: the position 'first' is not a number"));
    QCOMPARE(first("add a.xml name x"), QStringLiteral("1\ntunerproperties: a.xml: name: is a value; set it instead"));
}

TEST_SUITE(ToolRearrangingTest)
#include "tst_ToolRearranging.moc"
