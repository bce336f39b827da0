// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "Rows.h"
#include "Skip.h"
#include "tools/CommandsIn.h"
#include "tools/GitRepository.h"
#include "tools/Tool.h"

/// Documents get the canonical layout.
class ToolFmtTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_workshop = std::make_unique<Workshop>(); }
    void cleanup() { m_workshop.reset(); }

    void documentIsLaidOutInPlace();
    void jsonIsLaidOutInPlace();
    void fileThatHasTheLayoutIsNotTouched();
    void checkNamesTheFilesAndWritesNothing();
    void standardInputIsWrittenToStandardOutput();
    void standardInputIsChecked();
    void severalFilesAreNamedInOrder();
    void repeatedFileIsLaidOutOnce();
    void badFilesDoNotStopTheOthers();
    void quietRunReportsByItsExitStatus();
    void jsonDescribesEachFile();
    void nameOfAFileIsEscapedInJson();
    void binaryFormsHaveNoLayout_data();
    void binaryFormsHaveNoLayout();
    void outputOfConvertStays_data();
    void outputOfConvertStays();
    void newDocumentStays();
    void documentWithProblemsIsLaidOut();
    void unreadableFilesAreErrorsAndStay_data();
    void unreadableFilesAreErrorsAndStay();
    void fileThatCannotBeReplacedIsAnError();
    void linkStaysAndItsTargetIsLaidOut();
    void formattingLeavesNoOtherFiles();
    void gitRefusesOtherLayoutsByTheManual();

private:
    /// Status, output and errors.
    QString run(const char *arguments, const QByteArray &input = {})
    {
        return m_workshop->run(line(arguments), input).all();
    }

    void write(const char *name, const QByteArray &content) { m_workshop->write(QString::fromUtf8(name), content); }
    QByteArray read(const char *name) const { return m_workshop->read(QString::fromUtf8(name)); }

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

constexpr char typed[] = "<?xml version='1.0' encoding='UTF-8'?>\n<!-- as typed -->\n\n\n"
                         "<TunerProperties Version='1.1' type=\"SCP\"\n                 baseresource='b'>\n"
                         "\t<Component type='t' name='c' optional='TRUE'> <!-- one of two -->\n"
                         "<Node id='n'><ValueItem><ValueInt id='i' value='007' /></ValueItem></Node>\n</Component>\n"
                         "</TunerProperties>";
constexpr char laidOut[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- as typed -->\n\n"
                           "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                           "  <Component type=\"t\" name=\"c\" optional=\"TRUE\"> <!-- one of two -->\n"
                           "    <Node id=\"n\">\n"
                           "      <ValueItem>\n"
                           "        <ValueInt id=\"i\" value=\"007\"/>\n"
                           "      </ValueItem>\n"
                           "    </Node>\n"
                           "  </Component>\n"
                           "</TunerProperties>\n";

} // namespace

void ToolFmtTest::documentIsLaidOutInPlace()
{
    write("a.xml", typed);
    QCOMPARE(run("fmt a.xml"), QStringLiteral("0\na.xml\n"));
    QCOMPARE(read("a.xml"), QByteArray(laidOut));
    QCOMPARE(run("fmt a.xml"), QStringLiteral("0\n"));
}

void ToolFmtTest::jsonIsLaidOutInPlace()
{
    write("a.json", "{\"TunerProperties\":{\"quantity\":1,\n\"Version\":\"1.1\"}}");
    QCOMPARE(run("fmt a.json"), QStringLiteral("0\na.json\n"));
    QCOMPARE(read("a.json"), QByteArray("{\"TunerProperties\": {\"quantity\": 1, \"Version\": \"1.1\"}}\n"));
    QCOMPARE(run("fmt --check a.json"), QStringLiteral("0\n"));
}

void ToolFmtTest::fileThatHasTheLayoutIsNotTouched()
{
    write("a.xml", laidOut);
    const QFileInfo before(m_workshop->path(QStringLiteral("a.xml")));
    const QDateTime modified = before.lastModified();
    const QString hardLink = m_workshop->path(QStringLiteral("link.xml"));
    QCOMPARE(::link(qPrintable(before.filePath()), qPrintable(hardLink)), 0);
    QCOMPARE(run("fmt a.xml"), QStringLiteral("0\n"));
    QCOMPARE(QFileInfo(before.filePath()).lastModified(), modified);
    // A replaced file would be another one than that of the link.
    write("link.xml", "changed");
    QCOMPARE(read("a.xml"), QByteArray("changed"));
}

void ToolFmtTest::checkNamesTheFilesAndWritesNothing()
{
    write("a.xml", typed);
    write("b.xml", laidOut);
    QCOMPARE(run("fmt --check a.xml"), QStringLiteral("1\na.xml\n"));
    QCOMPARE(run("fmt --check b.xml"), QStringLiteral("0\n"));
    QCOMPARE(run("fmt --check a.xml b.xml"),
             QStringLiteral("1\na.xml\ntunerproperties: 2 files: 1 unchanged, 1 unformatted\n"));
    QCOMPARE(read("a.xml"), QByteArray(typed));
}

void ToolFmtTest::standardInputIsWrittenToStandardOutput()
{
    QCOMPARE(run("fmt -", typed), QStringLiteral("0\n") + QLatin1String(laidOut));
    QCOMPARE(run("fmt -", laidOut), QStringLiteral("0\n") + QLatin1String(laidOut));
}

void ToolFmtTest::standardInputIsChecked()
{
    QCOMPARE(run("fmt --check -", typed), QStringLiteral("1\n-\n"));
    QCOMPARE(run("fmt --check -", laidOut), QStringLiteral("0\n"));
}

void ToolFmtTest::severalFilesAreNamedInOrder()
{
    QString names;
    QStringList arguments = line("fmt --jobs 4");
    for (int i = 0; i < 20; ++i) {
        const QString name = QStringLiteral("%1.xml").arg(i);
        m_workshop->write(name, i % 2 == 0 ? typed : laidOut);
        arguments += name;
        if (i % 2 == 0)
            names += name + QLatin1Char('\n');
    }
    const Run first = m_workshop->run(arguments);
    QCOMPARE(first.out, names);
    QCOMPARE(first.err, QStringLiteral("tunerproperties: 20 files: 10 unchanged, 10 formatted\n"));
    QCOMPARE(first.status, 0);
    const Run second = m_workshop->run(arguments);
    QCOMPARE(second.out, QString());
    QCOMPARE(second.err, QStringLiteral("tunerproperties: 20 files: 20 unchanged\n"));
    for (int i = 0; i < 20; ++i)
        QCOMPARE(m_workshop->read(QStringLiteral("%1.xml").arg(i)), QByteArray(laidOut));
}

void ToolFmtTest::repeatedFileIsLaidOutOnce()
{
    write("a.xml", typed);
    write("b.xml", typed);
    QVERIFY(QFile::link(QStringLiteral("a.xml"), m_workshop->path(QStringLiteral("link.xml"))));
    QCOMPARE(run("fmt a.xml ./a.xml b.xml link.xml a.xml"),
             QStringLiteral("0\na.xml\nb.xml\ntunerproperties: 2 files: 2 formatted\n"));
    write("a.xml", typed);
    QCOMPARE(run("fmt a.xml a.xml"), QStringLiteral("0\na.xml\n"));
}

void ToolFmtTest::badFilesDoNotStopTheOthers()
{
    write("bad.xml", "<TunerProperties>");
    write("bad.json", "{\"TunerProperties\": {\"quantity\": \"x\"}}");
    write("a.xml", typed);
    QCOMPARE(run("fmt bad.xml bad.json missing.xml a.xml"),
             QStringLiteral("3\n"
                            "a.xml\n"
                            "tunerproperties: bad.xml:1:17: Premature end of document.\n"
                            "tunerproperties: bad.json:1:34: quantity: the string 'x' is not a whole number\n"
                            "tunerproperties: missing.xml: cannot open: No such file or directory\n"
                            "tunerproperties: 4 files: 1 formatted, 1 with problems, 2 unreadable\n"));
    QCOMPARE(read("bad.xml"), QByteArray("<TunerProperties>"));
    QCOMPARE(read("a.xml"), QByteArray(laidOut));
}

void ToolFmtTest::quietRunReportsByItsExitStatus()
{
    write("a.xml", typed);
    write("b.xml", laidOut);
    QCOMPARE(run("fmt --quiet --check a.xml b.xml"), QStringLiteral("1\n"));
    QCOMPARE(run("fmt --quiet a.xml b.xml"), QStringLiteral("0\n"));
    QCOMPARE(run("fmt --quiet --check a.xml b.xml"), QStringLiteral("0\n"));
}

void ToolFmtTest::jsonDescribesEachFile()
{
    write("a.xml", typed);
    write("b.xml", laidOut);
    write("c.xml", "<");
    const QString rest = QStringLiteral(R"("problems":[],"problemCount":0,"error":)");
    const QString unreadable = QStringLiteral(R"({"file":"c.xml","status":"unreadable",)") + rest
        + QStringLiteral("\"c.xml:1:1: Premature end of document.\"}\n");
    const QString unchanged =
        QStringLiteral(R"({"file":"b.xml","status":"unchanged",)") + rest + QStringLiteral("null}\n") + unreadable;
    QCOMPARE(run("fmt --json --check a.xml b.xml c.xml"),
             QStringLiteral("3\n") + QStringLiteral(R"({"file":"a.xml","status":"unformatted",)") + rest
                 + QStringLiteral("null}\n") + unchanged);
    QCOMPARE(run("fmt --json a.xml b.xml c.xml"),
             QStringLiteral("3\n") + QStringLiteral(R"({"file":"a.xml","status":"formatted",)") + rest
                 + QStringLiteral("null}\n") + unchanged);
    QCOMPARE(read("a.xml"), QByteArray(laidOut));
}

void ToolFmtTest::nameOfAFileIsEscapedInJson()
{
    m_workshop->write(QStringLiteral("a\nb.xml"), typed);
    const Run run = m_workshop->run({QStringLiteral("fmt"), QStringLiteral("a\nb.xml")});
    QCOMPARE(run.out, QStringLiteral("a\\nb.xml\n"));
}

void ToolFmtTest::binaryFormsHaveNoLayout_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("form");
    QTest::newRow("tagged") << QStringLiteral("a.tpb") << QStringLiteral("tagged");
    QTest::newRow("compressed") << QStringLiteral("a.tpz") << QStringLiteral("compressed");
    QTest::newRow("snapshot") << QStringLiteral("a.tps") << QStringLiteral("snapshot");
}

void ToolFmtTest::binaryFormsHaveNoLayout()
{
    QFETCH(QString, file);
    QFETCH(QString, form);
    write("a.xml", smallXml);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), QStringLiteral("a.xml"), file}).status, 0);
    const QByteArray before = m_workshop->read(file);
    for (const char *arguments : {"fmt", "fmt --check"}) {
        const Run run = m_workshop->run(line(arguments) << file);
        QCOMPARE(run.out, QString());
        QCOMPARE(
            run.err,
            QStringLiteral("tunerproperties: %1: the form '%2' has no layout; nothing to format\n").arg(file, form));
        QCOMPARE(run.status, 0);
    }
    QCOMPARE(m_workshop->read(file), before);
    QCOMPARE(m_workshop->run(line("fmt -q - --from") << form, before).bytes, before);
    m_workshop->write(file, before.chopped(1));
    QCOMPARE(m_workshop->run(QStringList{QStringLiteral("fmt"), file}).status, 3);
}

void ToolFmtTest::outputOfConvertStays_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<QString>("file");
    for (const QString &name : exampleNames()) {
        for (const char *suffix : {"xml", "json"}) {
            const QString file = QStringLiteral("a.") + QLatin1String(suffix);
            QTest::addRow("%s as %s", qPrintable(name), suffix) << name << file;
        }
    }
}

/// Also after its layout was lost.
void ToolFmtTest::outputOfConvertStays()
{
    QFETCH(QString, example);
    QFETCH(QString, file);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), examplePath(example), file}).status, 0);
    const QByteArray written = m_workshop->read(file);
    QCOMPARE(m_workshop->run(QStringList{QStringLiteral("fmt"), file}).out, QString());
    QCOMPARE(m_workshop->read(file), written);

    m_workshop->write(file, QByteArray(written).replace('\n', "\r\n\t "));
    QCOMPARE(m_workshop->run(QStringList{QStringLiteral("fmt"), file}).out, file + QLatin1Char('\n'));
    QCOMPARE(m_workshop->read(file), written);
}

void ToolFmtTest::newDocumentStays()
{
    const QByteArray xml = m_workshop->run(line("new --type Receiver")).bytes;
    QVERIFY(xml.contains("<!--"));
    QCOMPARE(m_workshop->run(line("fmt -"), xml).bytes, xml);
}

void ToolFmtTest::documentWithProblemsIsLaidOut()
{
    write("a.xml", "<TunerProperties Version='7' quantity='abc'><Componnt/><Component/></TunerProperties>");
    QCOMPARE(run("fmt a.xml"), QStringLiteral("0\na.xml\n"));
    QCOMPARE(read("a.xml"),
             QByteArray("<TunerProperties Version=\"7\" quantity=\"abc\">\n  <Componnt/>\n  <Component/>\n"
                        "</TunerProperties>\n"));
}

void ToolFmtTest::unreadableFilesAreErrorsAndStay_data()
{
    const Rows<QByteArray, QString> row("content", "expected");
    row("not well-formed", "<TunerProperties><a></TunerProperties>",
        "3\ntunerproperties: a.xml:1:38: Opening and ending tag mismatch.\n");
    row("another document", "<a/>", "3\ntunerproperties: a.xml:1:4: the root element is 'a', not 'TunerProperties'\n");
    row("unknown form", "text", "3\ntunerproperties: a.xml:1:1: Start tag expected.\n");
    row("nested too deeply",
        "<TunerProperties>" + QByteArray("<a>").repeated(1000) + QByteArray("</a>").repeated(1000)
            + "</TunerProperties>",
        "1\ntunerproperties: a.xml: cannot format the document: its elements are nested too deeply\n");
}

void ToolFmtTest::unreadableFilesAreErrorsAndStay()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);
    write("a.xml", content);
    QCOMPARE(run("fmt a.xml"), expected);
    QCOMPARE(run("fmt --check a.xml"), expected);
    QCOMPARE(read("a.xml"), content);
}

void ToolFmtTest::fileThatCannotBeReplacedIsAnError()
{
    write("a.xml", typed);
    const Run run = m_workshop->shell(QStringLiteral("trap '' XFSZ; ulimit -f 0; exec \"$tool\" fmt a.xml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err, QStringLiteral("tunerproperties: a.xml: cannot write: File too large\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(read("a.xml"), QByteArray(typed));
    QCOMPARE(m_workshop->files(), QStringList{QStringLiteral("a.xml")});
}

void ToolFmtTest::linkStaysAndItsTargetIsLaidOut()
{
    write("a.xml", typed);
    QVERIFY(QFile::link(QStringLiteral("a.xml"), m_workshop->path(QStringLiteral("link.xml"))));
    QCOMPARE(run("fmt link.xml"), QStringLiteral("0\nlink.xml\n"));
    QVERIFY(QFileInfo(m_workshop->path(QStringLiteral("link.xml"))).isSymLink());
    QCOMPARE(read("a.xml"), QByteArray(laidOut));
}

void ToolFmtTest::formattingLeavesNoOtherFiles()
{
    write("a.xml", typed);
    QCOMPARE(run("fmt a.xml"), QStringLiteral("0\na.xml\n"));
    QCOMPARE(m_workshop->files(), QStringList{QStringLiteral("a.xml")});
}

// The hook is that of the manual.
void ToolFmtTest::gitRefusesOtherLayoutsByTheManual()
{
    if (!GitRepository::isGitInstalled())
        SKIP("git is not installed");
    const QStringList blocks = commandsIn(QStringLiteral(GIT_PAGE)).mid(3);
    QCOMPARE(blocks.size(), 1);
    const GitRepository repository(*m_workshop);
    const auto shell = [&](const QString &commands) { return repository.shell(commands); };
    QCOMPARE(shell(blocks.first()), QStringLiteral("0\n"));
    write("repository/a b.xml", typed);
    write("repository/c.txt", "text");
    const QString commit = QStringLiteral("git add -A; git commit -q -m first");
    QCOMPARE(shell(commit), QStringLiteral("1\na b.xml\n"));
    QCOMPARE(shell(QStringLiteral("tunerproperties fmt *.xml")), QStringLiteral("0\na b.xml\n"));
    QCOMPARE(shell(commit), QStringLiteral("0\n"));
    QCOMPARE(shell(QStringLiteral("git rm -q 'a b.xml'; git commit -q -m second")), QStringLiteral("0\n"));
}

TEST_SUITE(ToolFmtTest)
#include "tst_ToolFmt.moc"
