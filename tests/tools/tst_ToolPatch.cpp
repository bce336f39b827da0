// SPDX-License-Identifier: MIT
#include "JsonDocument.h"
#include "tools/Tool.h"

/// Changes that `diff --json` has listed are made by `patch`.
class ToolPatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void patchMakesTheSecondDocumentFromTheFirst_data();
    void patchMakesTheSecondDocumentFromTheFirst();
    void patchUndoesChanges();
    void changesMayComeFromStandardInput();
    void dryRunListsTheDifferencesAndWritesNothing();
    void changesThatDoNotFitLeaveTheFileUnchanged();
    void fileWithoutChangesStaysAsItIs();
    void newProblemsAreRefused();
    void problemsThatWereThereBeforeAreAccepted();
    void restOfTheFileStaysAsItIs();
    void valuesAreExact();
    void lossesOfRewritingAreRefusedUnlessTheyAreAllowed();
    void changesThatTheFormCannotHoldAreRefusedUnlessTheyAreAllowed();
    void wrongChangesAreAnError();

private:
    void writeJson(const char *name, const QByteArray &members)
    {
        m_workshop->write(QString::fromUtf8(name), jsonWith(members));
    }
    /// Status, output and errors.
    QString run(const char *arguments, const QByteArray &input = {})
    {
        return m_workshop->run(line(arguments), input).all();
    }
    void writeChanges(const char *first, const char *second)
    {
        const Run diff = m_workshop->run(
            {QStringLiteral("diff"), QStringLiteral("--json"), QString::fromUtf8(first), QString::fromUtf8(second)});
        QCOMPARE(diff.err, QString());
        m_workshop->write(QStringLiteral("changes"), diff.bytes);
    }

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

const char *const complete = R"("type": "SCP", "baseresource": "b", "Component": [{"type": "t", "name": "c",
    "optional": true, "Node": [{"id": "n", "ValueItem": [
    {"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "i", "value": 0.25}}]}]}])";

} // namespace

void ToolPatchTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

void ToolPatchTest::patchMakesTheSecondDocumentFromTheFirst_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    for (const char *suffix : {"xml", "json", "tpb", "tpz", "tps"}) {
        const QString form = QString::fromUtf8(suffix);
        QTest::newRow(suffix) << QStringLiteral("receiver") << QStringLiteral("directionfinder.") + form;
    }
}

// Two documents that have nearly nothing in common.
void ToolPatchTest::patchMakesTheSecondDocumentFromTheFirst()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    const QString file = QStringLiteral("file.") + second.section(QLatin1Char('.'), 1);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), examplePath(first), file}).status, 0);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), examplePath(second.section(QLatin1Char('.'), 0, 0)), second})
                 .status,
             0);
    writeChanges(qPrintable(file), qPrintable(second));
    QVERIFY(m_workshop->read(QStringLiteral("changes")).count('\n') > 10);
    const Run patch = m_workshop->run({QStringLiteral("patch"), file, QStringLiteral("changes")});
    QCOMPARE(patch.out + patch.err, QString());
    QCOMPARE(patch.status, 0);
    QCOMPARE(run(qPrintable(QStringLiteral("diff %1 %2").arg(file, second))), QStringLiteral("0\n"));
    if (!file.endsWith(QLatin1String("xml")) && !file.endsWith(QLatin1String("json"))) // which keep their layout
        QCOMPARE(m_workshop->read(file), m_workshop->read(second));
}

void ToolPatchTest::patchUndoesChanges()
{
    writeJson("a.json", R"("name": "a", "BandwidthSelection": [{"Name": "x", "MaxBandwidth": 1.5}, {"Name": "y"}])");
    writeJson(
        "b.json",
        R"("quantity": 2, "BandwidthSelection": [{"Name": "z"}, {"Name": "y"}, {"Name": "w", "MaxBandwidth": 1.5}])");
    writeChanges("a.json", "b.json");
    QCOMPARE(run("patch --no-validate --reverse b.json changes"), QStringLiteral("0\n"));
    QCOMPARE(run("diff a.json b.json"), QStringLiteral("0\n"));
}

void ToolPatchTest::changesMayComeFromStandardInput()
{
    writeJson("a.json", complete);
    QCOMPARE(run("patch a.json -", R"({"change":"changed","path":"quantity","after":3})"), QStringLiteral("0\n"));
    QCOMPARE(run("get a.json quantity"), QStringLiteral("0\n3\n"));
    m_workshop->write(QStringLiteral("changes"), R"({"change":"changed","path":"quantity","before":3,"after":4})");
    const Run piped = m_workshop->run(line("patch - changes"), m_workshop->read(QStringLiteral("a.json")));
    QCOMPARE(piped.err, QString());
    QVERIFY(piped.out.contains(QLatin1String("\"quantity\": 4")));
    QCOMPARE(m_workshop->run(line("patch - -")).status, 2);
}

void ToolPatchTest::dryRunListsTheDifferencesAndWritesNothing()
{
    writeJson("a.json", complete);
    const QByteArray before = m_workshop->read(QStringLiteral("a.json"));
    QCOMPARE(run("patch --dry-run a.json -", R"({"change":"changed","path":"quantity","after":3}
{"change":"added","path":"BandwidthSelection[Name=w]","to":1,"after":{"Name":"w","MaxBandwidth":5}})"),
             QStringLiteral("0\n~ quantity: 1 (not set) -> 3\n+ BandwidthSelection[Name=w] (at 1): MaxBandwidth 5\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.json")), before);
}

void ToolPatchTest::changesThatDoNotFitLeaveTheFileUnchanged()
{
    writeJson("a.json", complete);
    const QByteArray before = m_workshop->read(QStringLiteral("a.json"));
    QCOMPARE(
        run("patch a.json -", R"({"change":"changed","path":"quantity","after":3}
{"change":"changed","path":"baseresource","before":"x","after":"y"})"),
        QStringLiteral("1\ntunerproperties: a.json: the changes do not fit: baseresource: expected \"x\", but it is "
                       "\"b\"\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.json")), before);
}

// It has comments, and a layout that the library would not write.
void ToolPatchTest::fileWithoutChangesStaysAsItIs()
{
    const QByteArray text = QByteArray(smallXml).replace("  ", "\t").replace("<Node", "<!-- comment --><Node");
    m_workshop->write(QStringLiteral("a.xml"), text);
    QCOMPARE(run("patch a.xml -"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), text);
}

void ToolPatchTest::newProblemsAreRefused()
{
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    const char *const change = R"({"change":"changed","path":"Component[type=t,name=c]/Node[id=n]/id","before":"n"})";
    QCOMPARE(
        run("patch a.xml -", change),
        QStringLiteral("1\ntunerproperties: a.xml: Component[type=t,name=c]/Node[1]: Node: Please set id properly.\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml));
    QCOMPARE(run("patch --no-validate a.xml -", change), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml).replace("<Node id=\"n\"", "<Node"));
}

// The changes move the component that has the problem.
void ToolPatchTest::problemsThatWereThereBeforeAreAccepted()
{
    writeJson("a.json", R"("type": "SCP", "Component": [{"type": "t", "name": "a"}, {"type": "t"}])");
    writeJson("b.json", R"("type": "SCP", "Component": [{"type": "t"}, {"type": "t", "name": "a"}])");
    writeChanges("a.json", "b.json");
    QCOMPARE(run("patch a.json changes"), QStringLiteral("0\n"));
    QCOMPARE(run("diff a.json b.json"), QStringLiteral("0\n"));
}

void ToolPatchTest::restOfTheFileStaysAsItIs()
{
    const QByteArray text =
        QByteArray(smallXml)
            .replace("  ", "\t")
            .replace("</TunerProperties>", "<!-- end --><Unknown value='0.2567'/></TunerProperties>");
    m_workshop->write(QStringLiteral("a.xml"), text);
    QCOMPARE(run("patch a.xml -", R"({"change":"changed","path":"quantity","after":3})"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")),
             QByteArray(text).replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"3\""));
}

void ToolPatchTest::valuesAreExact()
{
    writeJson("a.json", complete);
    QCOMPARE(run("convert a.json a.xml"), QStringLiteral("0\n"));
    QCOMPARE(run("patch a.xml -",
                 R"({"change":"changed","path":"Component/Node/ValueItem/value","before":0.25,"after":0.2567})"),
             QStringLiteral("0\n"));
    QCOMPARE(run("get a.xml Component/Node/ValueItem/value"), QStringLiteral("0\n0.2567\n"));
}

void ToolPatchTest::lossesOfRewritingAreRefusedUnlessTheyAreAllowed()
{
    const QByteArray text = QByteArray(smallXml).replace("</TunerProperties>", "<Unknown/></TunerProperties>");
    m_workshop->write(QStringLiteral("a.xml"), text);
    const char *const change = R"({"change":"changed","path":"quantity","after":3})";
    m_workshop->write(QStringLiteral("nested.xml"),
                      QByteArray(smallXml).replace("</Component>", "<Component/></Component>"));
    const QString refused = run("patch --no-validate nested.xml -", change);
    QCOMPARE(refused,
             QStringLiteral("1\ntunerproperties: nested.xml: cannot edit the document in place: the document has a "
                            "'Component' inside another one; use --rewrite to write it anew\n"));
    QCOMPARE(run("patch --rewrite a.xml -", change),
             QStringLiteral("0\ntunerproperties: a.xml: comments, layout and content that the model does not have are "
                            "lost\n"));
    QVERIFY(!m_workshop->read(QStringLiteral("a.xml")).contains("Unknown"));
}

// A tagged document cannot hold the value of a member that is not set.
void ToolPatchTest::changesThatTheFormCannotHoldAreRefusedUnlessTheyAreAllowed()
{
    writeJson("a.json", complete);
    QCOMPARE(run("convert a.json a.tpb"), QStringLiteral("0\n"));
    const QByteArray before = m_workshop->read(QStringLiteral("a.tpb"));
    const char *const change = R"({"change":"changed","path":"hwProcessing","unset":{"after":true}})";
    QCOMPARE(run("patch a.tpb -", change),
             QStringLiteral("1\ntunerproperties: a.tpb: hwProcessing: true (not set) becomes false (not set)\n"
                            "tunerproperties: a.tpb: nothing was written; use --rewrite to write the document with "
                            "these losses\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("a.tpb")), before);
    QCOMPARE(run("patch --rewrite a.tpb -", change),
             QStringLiteral("0\ntunerproperties: a.tpb: hwProcessing: true (not set) becomes false (not set)\n"));
}

void ToolPatchTest::wrongChangesAreAnError()
{
    writeJson("a.json", complete);
    m_workshop->write(QStringLiteral("changes"), "\n{\"change\":\"replaced\"}\n");
    QCOMPARE(run("patch a.json changes"),
             QStringLiteral("3\ntunerproperties: changes: line 2: unknown change 'replaced'; expected removed, added, "
                            "changed, moved or renamed\n"));
    QCOMPARE(run("patch a.json missing"),
             QStringLiteral("3\ntunerproperties: missing: cannot open: No such file or directory\n"));
}

TEST_SUITE(ToolPatchTest)
#include "tst_ToolPatch.moc"
