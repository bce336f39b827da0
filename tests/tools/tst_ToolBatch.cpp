// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/Tool.h"

#include <sys/stat.h>

/// Many files at once: reports and outputs.
class ToolBatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void resultsAreWrittenInTheOrderOfTheFiles_data();
    void resultsAreWrittenInTheOrderOfTheFiles();
    void resultIsWrittenAsSoonAsThePreviousOnesAre();
    void slowFileDoesNotDelayTheOthers();
    void singleJobProcessesOneFileAtATime();
    void badFileDoesNotStopTheOthers();
    void summaryCountsTheResults_data();
    void summaryCountsTheResults();
    void aSingleFileHasNoSummary();
    void quietReportsOnlyFailures();
    void quietConversionWritesNoMessages();
    void jsonLineDescribesTheWholeResult();
    void jsonLineDescribesTheConversion();
    void jsonKeepsTextsUnchanged();

    void folderIsCreatedWithItsParents();
    void outputsHaveTheNamesOfTheInputs();
    void inputsWithTheSameOutputAreAnErrorBeforeAnythingIsWritten_data();
    void inputsWithTheSameOutputAreAnErrorBeforeAnythingIsWritten();
    void folderThatCannotBeCreatedIsAnError();
    void failedOutputDoesNotStopTheOthers();
    void badInputKeepsTheExistingOutput();
    void memoryDoesNotGrowWithTheNumberOfFiles();

private:
    std::unique_ptr<Workshop> m_workshop;
};

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// For the shell: waits for a file, with a timeout.
const QString await =
    text("await() { i=0; while ! test -f \"$1\" && test $i -lt 1000; do i=$((i + 1)); sleep 0.01; done; }\n");

} // namespace

void ToolBatchTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_workshop->write(text("good.xml"), smallXml);
    m_workshop->write(text("bad.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    m_workshop->write(text("cut.xml"), "<TunerProperties>");
}

void ToolBatchTest::cleanup()
{
    m_workshop.reset();
}

void ToolBatchTest::resultsAreWrittenInTheOrderOfTheFiles_data()
{
    QTest::addColumn<QString>("jobs");
    for (const char *jobs : {"1", "2", "7", "256"})
        QTest::newRow(jobs) << text(jobs);
}

void ToolBatchTest::resultsAreWrittenInTheOrderOfTheFiles()
{
    QFETCH(QString, jobs);
    QStringList files;
    QString out;
    QString err;
    for (int i = 0; i < 100; ++i) {
        const QString name = text("%1.xml").arg(i);
        const bool isBad = i % 3 == 0;
        const bool isMissing = i % 3 == 1;
        files.append(name);
        if (!isMissing)
            m_workshop->write(name, isBad ? QByteArray(smallXml).replace(" type=\"SCP\"", "") : QByteArray(smallXml));
        if (isBad)
            out += name
                + text(": TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                       "DirectionFinder\n");
        if (isMissing)
            err += text("tunerproperties: ") + name + text(": cannot open: No such file or directory\n");
    }
    const Run run = m_workshop->run(line("validate --jobs") << jobs << files);
    QCOMPARE(run.out, out);
    QCOMPARE(run.err, err + text("tunerproperties: 100 files: 33 valid, 34 with problems, 33 unreadable\n"));
    QCOMPARE(run.status, 3);
}

// The shell's own commands separate the output before the pipe is filled from the output after it.
void ToolBatchTest::resultIsWrittenAsSoonAsThePreviousOnesAre()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), 0600), 0);
    const Run run = m_workshop->shell(text("\"$tool\" validate --special-files --jobs 2 bad.xml pipe bad.xml 2>&1 | {\n"
                                           "  read first; echo \"first: $first\"\n"
                                           "  cat good.xml > pipe\n"
                                           "  sed 's/^/then: /'\n"
                                           "}"));
    QCOMPARE(run.out,
             text("first: bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                  "DirectionFinder\n"
                  "then: bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                  "DirectionFinder\n"
                  "then: tunerproperties: 3 files: 1 valid, 2 with problems\n"));
}

// The pipe is filled once the output of the file after it exists: it is written before it is reported.
void ToolBatchTest::slowFileDoesNotDelayTheOthers()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), 0600), 0);
    const Run run = m_workshop->shell(
        await
        + text("{ await out/good.tpb; cat good.xml; } > pipe &\n"
               "\"$tool\" convert --special-files --jobs 2 --to tagged --out-dir out pipe good.xml; wait"));
    QCOMPARE(run.err, text("tunerproperties: 2 files: 2 converted\n"));
    QCOMPARE(m_workshop->read(text("out/pipe.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(m_workshop->read(text("out/good.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::singleJobProcessesOneFileAtATime()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), 0600), 0);
    // Opening the pipe waits until the program reads from it; the next file must not have been read by then.
    const Run run = m_workshop->shell(
        text("{ test -e out/good.tpb && echo early; cat good.xml; } > pipe &\n"
             "\"$tool\" convert --special-files --jobs 1 --to tagged --out-dir out pipe good.xml; wait"));
    QCOMPARE(run.err, text("tunerproperties: 2 files: 2 converted\n"));
    QCOMPARE(m_workshop->read(text("out/pipe.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::badFileDoesNotStopTheOthers()
{
    m_workshop->write(text("other.xml"), smallXml);
    const Run run =
        m_workshop->run(line("convert --to tagged --out-dir . bad.xml good.xml cut.xml missing.xml other.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             text("tunerproperties: bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, "
                  "Receiver or DirectionFinder\n"
                  "tunerproperties: cut.xml:1:17: Premature end of document.\n"
                  "tunerproperties: missing.xml: cannot open: No such file or directory\n"
                  "tunerproperties: 5 files: 2 converted, 1 with problems, 2 unreadable\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->read(text("good.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(m_workshop->read(text("other.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(m_workshop->files(),
             QStringList({text("bad.xml"), text("cut.xml"), text("good.tpb"), text("good.xml"), text("other.tpb"),
                          text("other.xml")}));
}

void ToolBatchTest::summaryCountsTheResults_data()
{
    const Rows<QString, int> row("summary", "status");
    row("good.xml good.xml", "2 files: 2 valid", 0);
    row("good.xml bad.xml good.xml", "3 files: 2 valid, 1 with problems", 1);
    row("bad.xml bad.xml", "2 files: 2 with problems", 1);
    row("cut.xml bad.xml", "2 files: 1 with problems, 1 unreadable", 3);
    row("cut.xml missing.xml", "2 files: 2 unreadable", 3);
}

void ToolBatchTest::summaryCountsTheResults()
{
    QFETCH(QString, summary);
    QFETCH(int, status);
    const Run run = m_workshop->run(line("validate") << line(QTest::currentDataTag()));
    QCOMPARE(run.err.section(QLatin1Char('\n'), -2, -2), text("tunerproperties: ") + summary);
    QCOMPARE(run.status, status);
}

void ToolBatchTest::aSingleFileHasNoSummary()
{
    QCOMPARE(m_workshop->run(line("validate bad.xml")).err, QString());
    QCOMPARE(m_workshop->run(line("convert good.xml out.tpb")).err, QString());
    const Run run = m_workshop->run(line("convert --to tagged --out-dir out good.xml"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(text("out/good.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::quietReportsOnlyFailures()
{
    for (const char *option : {"--quiet", "-q"}) {
        const Run run = m_workshop->run(line("validate") << text(option) << line("good.xml bad.xml cut.xml"));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.err, text("tunerproperties: cut.xml:1:17: Premature end of document.\n"));
        QCOMPARE(run.status, 3);
    }
    const Run problems = m_workshop->run(line("validate -q good.xml bad.xml"));
    QCOMPARE(problems.err, QString());
    QCOMPARE(problems.status, 1);
}

void ToolBatchTest::quietConversionWritesNoMessages()
{
    const Run run = m_workshop->run(line("convert --quiet --to tagged --out-dir out good.xml bad.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(text("out/good.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::jsonLineDescribesTheWholeResult()
{
    m_workshop->write(text("two.xml"),
                      QByteArray(smallXml).replace("optional=\"true\"", "optional=\"\"").replace(" value=\"7\"", ""));
    const Run run = m_workshop->run(line("validate --json two.xml good.xml bad.xml missing.xml"));
    QCOMPARE(
        run.out,
        text(
            R"({"file":"two.xml","status":"problems","problems":[)"
            R"({"path":null,"line":3,"column":32,"message":"Please set a value or a default for the boolean 'optional' )"
            R"(in 'Component'.","value":"","choices":["true","false"],"suggestion":null},)"
            R"({"path":"Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]","line":null,"column":null,"message":)"
            R"("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueInt is not set.",)"
            R"("value":null,"choices":null,"suggestion":null},)"
            R"({"path":"Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueInt","line":null,"column":null,)"
            R"("message":"ValueInt: Please set value properly.","value":null,"choices":null,"suggestion":null}],)"
            R"("problemCount":3,"warnings":0,"error":null})"
            "\n"
            R"({"file":"good.xml","status":"valid","problems":[],"problemCount":0,"warnings":0,"error":null})"
            "\n"
            R"({"file":"bad.xml","status":"problems","problems":[)"
            R"({"path":"","line":null,"column":null,"message":"TunerProperties: Please set type properly.",)"
            R"("value":null,"choices":["MCP","SCP","FFP","Receiver","DirectionFinder"],"suggestion":null}],)"
            R"("problemCount":1,"warnings":0,"error":null})"
            "\n"
            R"({"file":"missing.xml","status":"unreadable","problems":[],"problemCount":0,)"
            R"("error":"missing.xml: cannot open: No such file or directory"})"
            "\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 3);
}

void ToolBatchTest::jsonLineDescribesTheConversion()
{
    m_workshop->write(text("blocked.xml"), smallXml);
    QVERIFY(QDir().mkpath(m_workshop->path(text("out/blocked.tpb"))));
    const Run run =
        m_workshop->run(line("convert --json --to tagged --out-dir out good.xml bad.xml cut.xml blocked.xml"));
    QCOMPARE(
        run.out,
        text(R"({"file":"good.xml","output":"out/good.tpb","status":"converted","problems":[],"problemCount":0,)"
             R"("losses":[],"lossCount":0,"error":null})"
             "\n"
             R"({"file":"bad.xml","output":"out/bad.tpb","status":"problems","problems":[{"path":"","line":null,)"
             R"("column":null,"message":"TunerProperties: Please set type properly.","value":null,)"
             R"("choices":["MCP","SCP","FFP","Receiver","DirectionFinder"],"suggestion":null}],"problemCount":1,)"
             R"("losses":[],"lossCount":0,"error":null})"
             "\n"
             R"({"file":"cut.xml","output":"out/cut.tpb","status":"unreadable","problems":[],"problemCount":0,)"
             R"("losses":[],"lossCount":0,"error":"cut.xml:1:17: Premature end of document."})"
             "\n"
             R"({"file":"blocked.xml","output":"out/blocked.tpb","status":"unwritable","problems":[],"problemCount":0,)"
             R"("losses":[],"lossCount":0,"error":"out/blocked.tpb: cannot write: Filename refers to a directory"})"
             "\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 3);
}

void ToolBatchTest::jsonKeepsTextsUnchanged()
{
    const QString name = text("\u00dc \"x\"\n.xml");
    m_workshop->write(name,
                      QByteArray(smallXml).replace("name=\"c\"", "name=\"a&#10;b/\xC3\x9C\"").replace(" id=\"n\"", ""));
    const Run run = m_workshop->run({text("validate"), text("--json"), name});
    QCOMPARE(run.out,
             text(R"({"file":"Ü \"x\"\n.xml","status":"problems","problems":[)"
                  R"({"path":"Component[type=t,name=\"a\\nb/Ü\"]/Node[1]","line":null,"column":null,)"
                  R"("message":"Node: Please set id properly.","value":null,"choices":null,"suggestion":null}],)"
                  R"("problemCount":1,"warnings":1,"error":null})"
                  "\n"));
    QCOMPARE(run.status, 1);
}

void ToolBatchTest::folderIsCreatedWithItsParents()
{
    const Run run = m_workshop->run(line("convert --to tagged --out-dir a/b/c good.xml"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(text("a/b/c/good.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::outputsHaveTheNamesOfTheInputs()
{
    QVERIFY(QDir().mkpath(m_workshop->path(text("in"))));
    for (const char *name : {"in/a.xml", "in/B.XML", "in/c.v2", "in/d", "in/e.tpb.xml"})
        m_workshop->write(text(name), smallXml);
    const Run run =
        m_workshop->run(line("convert --to snapshot --out-dir out/ in/a.xml in/B.XML in/c.v2 in/d in/e.tpb.xml"));
    QCOMPARE(run.err, text("tunerproperties: 5 files: 5 converted\n"));
    QCOMPARE(QDir(m_workshop->path(text("out"))).entryList(QDir::Files, QDir::Name),
             QStringList({text("B.tps"), text("a.tps"), text("c.v2.tps"), text("d.tps"), text("e.tpb.tps")}));
    for (const char *name : {"B.tps", "a.tps", "c.v2.tps", "d.tps", "e.tpb.tps"})
        QCOMPARE(m_workshop->read(text("out/") + text(name)), QByteArray::fromHex(smallSnapshotHex));
}

void ToolBatchTest::inputsWithTheSameOutputAreAnErrorBeforeAnythingIsWritten_data()
{
    QTest::addColumn<QString>("error");
    QTest::newRow("good.xml sub/good.tpz")
        << text("'good.xml' and 'sub/good.tpz' would both be written to 'out/good.tpb'");
    QTest::newRow("bad.xml good.xml good.xml") << text("'good.xml' and 'good.xml' would both be written to "
                                                       "'out/good.tpb'");
    QTest::newRow("good.xml good") << text("'good.xml' and 'good' would both be written to 'out/good.tpb'");
    QTest::newRow("good.xml -") << text("cannot convert standard input into the folder 'out': it has no file name");
}

void ToolBatchTest::inputsWithTheSameOutputAreAnErrorBeforeAnythingIsWritten()
{
    QFETCH(QString, error);
    const QStringList before = m_workshop->files();
    const Run run =
        m_workshop->run(line("convert --to tagged --out-dir out") << line(QTest::currentDataTag()), smallXml);
    QCOMPARE(run.err, text("tunerproperties: %1\ntunerproperties: try 'tunerproperties convert --help'\n").arg(error));
    QCOMPARE(run.status, 2);
    QCOMPARE(m_workshop->files(), before);
}

void ToolBatchTest::folderThatCannotBeCreatedIsAnError()
{
    const Run run = m_workshop->run(line("convert --to tagged --out-dir good.xml/out bad.xml"));
    QCOMPARE(run.err, text("tunerproperties: good.xml/out: cannot create the folder: Not a directory\n"));
    QCOMPARE(run.status, 3);
}

void ToolBatchTest::failedOutputDoesNotStopTheOthers()
{
    QVERIFY(QDir().mkpath(m_workshop->path(text("out/blocked.tpb"))));
    m_workshop->write(text("blocked.xml"), smallXml);
    const Run run = m_workshop->run(line("convert --to tagged --out-dir out blocked.xml good.xml"));
    QCOMPARE(run.err,
             text("tunerproperties: out/blocked.tpb: cannot write: Filename refers to a directory\n"
                  "tunerproperties: 2 files: 1 converted, 1 unwritable\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->read(text("out/good.tpb")), QByteArray::fromHex(smallTaggedHex));
}

void ToolBatchTest::badInputKeepsTheExistingOutput()
{
    m_workshop->write(text("bad.tpb"), "old");
    QCOMPARE(m_workshop->run(line("convert --to tagged --out-dir . bad.xml")).status, 1);
    QCOMPARE(m_workshop->read(text("bad.tpb")), QByteArray("old"));
    QCOMPARE(m_workshop->run(line("convert --no-validate --to tagged --out-dir . bad.xml")).status, 0);
    QVERIFY(m_workshop->read(text("bad.tpb")).startsWith(QByteArray::fromHex("C10CBB5F")));
}

// The first file delays the reports of the others; the number of finished files is limited meanwhile.
void ToolBatchTest::memoryDoesNotGrowWithTheNumberOfFiles()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), 0600), 0);
    QStringList files;
    for (int i = 0; i < 200; ++i) {
        files.append(text("%1.xml").arg(i, 3, 10, QLatin1Char('0')));
        m_workshop->write(files.last(), smallXml);
    }
    // With two jobs, a thread may be 32 files ahead: of the pipe and 31 more; all others wait.
    const Run run = m_workshop->shell(
        await
        + text("\"$tool\" convert --special-files --quiet --jobs 2 --to tagged --out-dir out pipe %1 &\n"
               "await out/030.tpb; sleep 0.2; ls out | wc -l; cat good.xml > pipe; wait; ls out | wc -l")
              .arg(files.join(QLatin1Char(' '))));
    QCOMPARE(run.out.simplified(), text("31 201"));
    QCOMPARE(run.err, QString());
}

TEST_SUITE(ToolBatchTest)
#include "tst_ToolBatch.moc"
