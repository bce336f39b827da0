// SPDX-License-Identifier: MIT
#include "JsonDocument.h"
#include "Skip.h"
#include "tools/CommandsIn.h"
#include "tools/GitRepository.h"
#include "tools/Tool.h"

/// Three documents become one, also within git.
class ToolMergeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void changesOfBothSidesAreWrittenToOurs();
    void outputOptionWritesAnotherFile();
    void outputThatEqualsOursHasItsBytes();
    void commentsAndLayoutOfOursStay();
    void conflictsAreListedByPath();
    void emptyBaseIsADocumentWithoutData();
    void unreadableFileLeavesOursUnchanged();
    void contentOfTheirsThatReadersConvertOrSkipIsRefused();
    void allowLossesMergesWithoutSuchContent();
    void contentThatBaseOrOursHasIsNotLost();
    void commentsOfTheirsAreNoted();
    void gitMergesAndShowsDocumentsByTheManual();

private:
    void writeJson(const char *name, const QByteArray &members)
    {
        m_workshop->write(QString::fromUtf8(name), jsonWith(members));
    }
    QString run(const char *arguments, const QByteArray &input = {})
    {
        return m_workshop->run(line(arguments), input).all();
    }

    std::unique_ptr<Workshop> m_workshop;
};

void ToolMergeTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

void ToolMergeTest::changesOfBothSidesAreWrittenToOurs()
{
    m_workshop->write(QStringLiteral("base.xml"), smallXml);
    m_workshop->write(QStringLiteral("ours.xml"), QByteArray(smallXml).replace("value=\"7\"", "value=\"8\""));
    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(smallXml).replace("baseresource=\"b\"", "baseresource=\"c\""));
    QCOMPARE(run("convert theirs.xml theirs.tpb"), QStringLiteral("0\n")); // the forms may differ
    QCOMPARE(run("merge base.xml ours.xml theirs.tpb"), QStringLiteral("0\n"));
    QCOMPARE(
        m_workshop->read(QStringLiteral("ours.xml")),
        QByteArray(smallXml).replace("value=\"7\"", "value=\"8\"").replace("baseresource=\"b\"", "baseresource=\"c\""));
    QCOMPARE(m_workshop->read(QStringLiteral("base.xml")), QByteArray(smallXml));
}

void ToolMergeTest::outputOptionWritesAnotherFile()
{
    writeJson("base.json", R"("quantity": 1)");
    writeJson("ours.json", R"("quantity": 2)");
    writeJson("theirs.json", R"("quantity": 1, "name": "x")");
    const QByteArray before = m_workshop->read(QStringLiteral("ours.json"));
    QCOMPARE(run("merge -o merged.json base.json ours.json theirs.json"), QStringLiteral("0\n"));
    QCOMPARE(run("get merged.json name"), QStringLiteral("0\nx\n"));
    const Run stream = m_workshop->run(line("merge --output - base.json ours.json theirs.json"));
    QCOMPARE(stream.bytes, m_workshop->read(QStringLiteral("merged.json")));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.json")), before);
}

void ToolMergeTest::outputThatEqualsOursHasItsBytes()
{
    const QByteArray ours = QByteArray(smallXml).replace("<Node", "<!-- comment -->\r\n<Node");
    m_workshop->write(QStringLiteral("base.xml"), smallXml);
    m_workshop->write(QStringLiteral("ours.xml"), ours);
    QCOMPARE(run("merge base.xml ours.xml base.xml"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")), ours);
    QCOMPARE(run("merge -o merged.xml base.xml ours.xml base.xml"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("merged.xml")), ours);
}

void ToolMergeTest::commentsAndLayoutOfOursStay()
{
    const QByteArray ours = QByteArray(smallXml)
                                .replace("\n", "\r\n")
                                .replace("<Node id=\"n\">", "<!-- the only one -->\r\n\t<Node mine='1' id='n' >")
                                .replace("value=\"7\"", "value=\"0x7\"");
    m_workshop->write(QStringLiteral("base.xml"), smallXml);
    m_workshop->write(QStringLiteral("ours.xml"), ours);
    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(smallXml)
                          .replace("optional=\"true\"", "optional=\"false\"")
                          .replace("    <Node", "    <Node id=\"m\"/>\n    <Node"));
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")),
             QByteArray(ours)
                 .replace("optional=\"true\"", "optional=\"false\"")
                 .replace("<Node mine", "<Node id=\"m\"/>\r\n\t<Node mine"));
}

void ToolMergeTest::conflictsAreListedByPath()
{
    writeJson("base.json", R"("quantity": 1, "BandwidthSelection": [{"Name": "w", "MaxBandwidth": 1.0}])");
    writeJson("ours.json", R"("quantity": 2, "BandwidthSelection": [])");
    writeJson("theirs.json",
              R"("quantity": 3, "name": "x", "BandwidthSelection": [{"Name": "w", "MaxBandwidth": 2.0}])");
    QCOMPARE(
        run("merge base.json ours.json theirs.json"),
        QStringLiteral("1\n"
                       "tunerproperties: ours.json: conflict: quantity: changed on both sides: 2 in ours, 3 in "
                       "theirs, 1 in the base\n"
                       "tunerproperties: ours.json: conflict: BandwidthSelection[Name=w]: removed in ours, changed "
                       "in theirs: Name \"w\", MaxBandwidth 2 in theirs, Name \"w\", MaxBandwidth 1 in the base\n"));
    QCOMPARE(run("get ours.json name"), QStringLiteral("0\nx\n"));
    QCOMPARE(run("get ours.json quantity"), QStringLiteral("0\n2\n"));
}

void ToolMergeTest::emptyBaseIsADocumentWithoutData()
{
    m_workshop->write(QStringLiteral("base"), "");
    writeJson("ours.json", R"("quantity": 2)");
    writeJson("theirs.json", R"("name": "x")");
    QCOMPARE(run("merge base ours.json theirs.json"), QStringLiteral("0\n"));
    QCOMPARE(run("get ours.json name"), QStringLiteral("0\nx\n"));
    QCOMPARE(run("get ours.json quantity"), QStringLiteral("0\n2\n"));
}

void ToolMergeTest::unreadableFileLeavesOursUnchanged()
{
    writeJson("base.json", R"("quantity": 1)");
    writeJson("ours.json", R"("quantity": 2)");
    m_workshop->write(QStringLiteral("theirs.json"), "{");
    const QByteArray before = m_workshop->read(QStringLiteral("ours.json"));
    QVERIFY(run("merge base.json ours.json theirs.json")
                .startsWith(QLatin1String("3\ntunerproperties: theirs.json:1:2: ")));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.json")), before);
    QCOMPARE(m_workshop->run(line("merge base.json ours.json")).status, 2);
    QCOMPARE(m_workshop->run(line("merge - - ours.json")).status, 2);
}

namespace {

const char twoValues[] = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b">
  <Component type="A" name="a" optional="false">
    <Node id="shift">
      <ValueItem><ValueInt id="shift" value="40"/></ValueItem>
    </Node>
  </Component>
</TunerProperties>
)";

} // namespace

// The merged document would have 0 instead of abc, and neither the attribute nor the text.
void ToolMergeTest::contentOfTheirsThatReadersConvertOrSkipIsRefused()
{
    m_workshop->write(QStringLiteral("base.xml"), twoValues);
    m_workshop->write(QStringLiteral("ours.xml"), twoValues);
    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(twoValues)
                          .replace("value=\"40\"", "value=\"abc\"")
                          .replace("<Node id=\"shift\">", "<Node id=\"shift\" vendor=\"x\">see below")
                          .replace("baseresource=\"b\"", "baseresource=\"c\""));
    QCOMPARE(
        run("merge base.xml ours.xml theirs.xml"),
        QStringLiteral(
            "1\n"
            "tunerproperties: theirs.xml:3:22: Component[type=A,name=a]/Node[id=shift]: unknown attribute 'vendor' of "
            "Node; it is ignored; expected id [unknown-attribute]\n"
            "tunerproperties: theirs.xml:3:33: Component[type=A,name=a]/Node[id=shift]: there is a text that would be "
            "lost\n"
            "tunerproperties: theirs.xml:4:39: Component[type=A,name=a]/Node[id=shift]/ValueItem[id=shift]/ValueInt/"
            "value: 'abc' of value is not a number; it is read as 0 [not-a-number]\n"
            "tunerproperties: ours.xml: nothing was written; use --allow-losses to merge without this content\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")), QByteArray(twoValues));
    QVERIFY(run("merge -o merged.xml base.xml ours.xml theirs.xml").startsWith(QLatin1String("1\n")));
    QVERIFY(run("merge --dry-run base.xml ours.xml theirs.xml").startsWith(QLatin1String("1\ntunerproperties: ")));
    QVERIFY(!m_workshop->files().contains(QStringLiteral("merged.xml")));
}

void ToolMergeTest::allowLossesMergesWithoutSuchContent()
{
    m_workshop->write(QStringLiteral("base.xml"), twoValues);
    m_workshop->write(QStringLiteral("ours.xml"), twoValues);
    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(twoValues)
                          .replace("value=\"40\"", "value=\"4O\"")
                          .replace("optional=\"false\"", "optional=\"true\""));
    QCOMPARE(run("merge --allow-losses base.xml ours.xml theirs.xml"),
             QStringLiteral("0\n"
                            "tunerproperties: theirs.xml:4:39: Component[type=A,name=a]/Node[id=shift]/"
                            "ValueItem[id=shift]/ValueInt/value: '4O' of value is not a number; it is read as 0 "
                            "[not-a-number]\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")),
             QByteArray(twoValues)
                 .replace("value=\"40\"", "value=\"0\"")
                 .replace("optional=\"false\"", "optional=\"true\""));
}

void ToolMergeTest::contentThatBaseOrOursHasIsNotLost()
{
    const QByteArray strange = QByteArray(twoValues)
                                   .replace("<Node id", "<Node vendor=\"x\" id")
                                   .replace("<ValueItem>", "text<ValueItem>")
                                   .replace("value=\"40\"", "value=\"abc\"");
    m_workshop->write(QStringLiteral("base.xml"), strange);
    m_workshop->write(QStringLiteral("ours.xml"), twoValues);
    // Renamed, so the paths differ.
    m_workshop->write(QStringLiteral("theirs.xml"), QByteArray(strange).replace("name=\"a\"", "name=\"renamed\""));
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")),
             QByteArray(twoValues).replace("name=\"a\"", "name=\"renamed\""));

    // Both sides have changed it in the same way, and ours keeps its text.
    m_workshop->write(QStringLiteral("base.xml"), twoValues);
    m_workshop->write(QStringLiteral("ours.xml"), strange);
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"), QStringLiteral("0\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")),
             QByteArray(strange).replace("name=\"a\"", "name=\"renamed\""));
}

void ToolMergeTest::commentsOfTheirsAreNoted()
{
    const QByteArray known = QByteArray(twoValues).replace("    <Node", "    <!-- known -->\n    <Node");
    m_workshop->write(QStringLiteral("base.xml"), twoValues);
    m_workshop->write(QStringLiteral("ours.xml"), known);
    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(known)
                          .replace("optional=\"false\"", "optional=\"true\"")
                          .replace("      <ValueItem>", "<!--a--><!--b-->\n<!-- known --><ValueItem>"));
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"),
             QStringLiteral("0\n"
                            "tunerproperties: theirs.xml: 3 comments are not merged (lines 5, 6)\n"));
    QCOMPARE(m_workshop->read(QStringLiteral("ours.xml")),
             QByteArray(known).replace("optional=\"false\"", "optional=\"true\""));

    m_workshop->write(QStringLiteral("theirs.xml"),
                      QByteArray(known).replace("  </Component>", "<!---->\n</Component>"));
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"),
             QStringLiteral("0\ntunerproperties: theirs.xml: 1 comment is not merged (line 7)\n"));

    m_workshop->write(QStringLiteral("theirs.xml"), known + QByteArray("<!-- end -->\n").repeated(7));
    QCOMPARE(run("merge base.xml ours.xml theirs.xml"),
             QStringLiteral("0\ntunerproperties: theirs.xml: 7 comments are not merged (lines 9, 10, 11, 12, 13, "
                            "...)\n"));
}

// A repository is set up by the blocks of the manual. Two branches change one file, first different values, then the
// same one.
void ToolMergeTest::gitMergesAndShowsDocumentsByTheManual()
{
    if (!GitRepository::isGitInstalled())
        SKIP("git is not installed");
    const QStringList blocks = commandsIn(QStringLiteral(GIT_PAGE)).mid(0, 3);
    QCOMPARE(blocks.size(), 3);
    const GitRepository repository(*m_workshop);
    const auto shell = [&](const QString &commands) { return repository.shell(commands); };
    for (const int setting : {0, 2})
        QCOMPARE(shell(blocks.at(setting)), QStringLiteral("0\n"));

    // Different values on the same line, which git alone cannot merge.
    QCOMPARE(shell(QStringLiteral("cp %1 r.xml; git add -A; git commit -q -m first; git branch other")
                       .arg(examplePath(QStringLiteral("receiver")))),
             QStringLiteral("0\n"));
    QCOMPARE(shell(QStringLiteral("tunerproperties set r.xml quantity 3; git commit -q -a -m three")),
             QStringLiteral("0\n"));
    QCOMPARE(shell(QStringLiteral(
                 "git checkout -q other; tunerproperties set r.xml name Changed; git commit -q -a -m name")),
             QStringLiteral("0\n"));
    const QString merged = shell(QStringLiteral("git merge -q main -m merged"));
    QVERIFY2(merged.startsWith(QLatin1String("0\n")), qPrintable(merged));
    QCOMPARE(shell(QStringLiteral("tunerproperties get r.xml quantity; tunerproperties get r.xml name")),
             QStringLiteral("0\n3\nChanged\n"));
    QFile example(examplePath(QStringLiteral("receiver")));
    QVERIFY(example.open(QIODevice::ReadOnly));
    QCOMPARE(m_workshop->read(QStringLiteral("repository/r.xml")),
             example.readAll()
                 .replace("quantity=\"2\"", "quantity=\"3\"")
                 .replace("name=\"Monitoring receiver\"", "name=\"Changed\""));

    // The same attribute: a conflict, with the value of ours in the file.
    QCOMPARE(shell(QStringLiteral("tunerproperties set r.xml quantity 4; git commit -q -a -m four")),
             QStringLiteral("0\n"));
    QCOMPARE(
        shell(QStringLiteral("git checkout -q main; tunerproperties set r.xml quantity 5; git commit -q -a -m five")),
        QStringLiteral("0\n"));
    const QString conflicting = shell(QStringLiteral("git merge other"));
    QVERIFY2(conflicting.startsWith(QLatin1String("1\n")), qPrintable(conflicting));
    QVERIFY2(
        conflicting.contains(QLatin1String("conflict: quantity: changed on both sides: 5 in ours, 4 in theirs, 3 in "
                                           "the base\n")),
        qPrintable(conflicting));
    QVERIFY2(conflicting.contains(QLatin1String("Merge conflict in r.xml")), qPrintable(conflicting));
    QCOMPARE(shell(QStringLiteral("tunerproperties get r.xml quantity; git merge --abort")), QStringLiteral("0\n5\n"));

    // Content that cannot be merged: nothing is written, and the manual's next block merges the rest.
    QCOMPARE(
        shell(QStringLiteral("git checkout -q other; sed -i 's/quantity=\"4\"/quantity=\"4\" vendor=\"v\"/; "
                             "s/baseresource=\"[^\"]*\"/baseresource=\"theirs\"/' r.xml; git commit -q -a -m "
                             "vendor; git checkout -q main; tunerproperties set r.xml quantity 4; git commit -q -a "
                             "-m same")),
        QStringLiteral("0\n"));
    const QString losing = shell(QStringLiteral("git merge other"));
    QVERIFY2(losing.startsWith(QLatin1String("1\n")), qPrintable(losing));
    QVERIFY2(losing.contains(QLatin1String(": unknown attribute 'vendor' of TunerProperties; it is ignored; ")),
             qPrintable(losing));
    QVERIFY2(losing.contains(QLatin1String("nothing was written; use --allow-losses to merge without this content\n")),
             qPrintable(losing));
    QVERIFY2(losing.contains(QLatin1String("Merge conflict in r.xml")), qPrintable(losing));
    const QString withoutIt =
        shell(QString(blocks.at(1)).replace(QLatin1String("receiver.xml"), QLatin1String("r.xml")));
    QVERIFY2(withoutIt.startsWith(QLatin1String("0\ntunerproperties: theirs.xml:")), qPrintable(withoutIt));
    QCOMPARE(
        shell(QStringLiteral("tunerproperties get r.xml baseresource; git reset -q --hard; rm base.xml theirs.xml; "
                             "tunerproperties set r.xml quantity 5; git commit -q -a -m five")),
        QStringLiteral("0\ntheirs\n"));

    // git diff compares the trees of two documents.
    const QString diff = shell(QStringLiteral("git diff HEAD~1 HEAD"));
    QVERIFY2(diff.contains(QLatin1String("\n-  quantity: 4\n+  quantity: 5\n")), qPrintable(diff));
    QVERIFY2(!diff.contains(QLatin1String("<TunerProperties")), qPrintable(diff));
}

TEST_SUITE(ToolMergeTest)
#include "tst_ToolMerge.moc"
