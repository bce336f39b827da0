// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>
#include <vector>

#include <batch/Progress.h>
#include <jobxml/TunerProperties.h>
#include <text/Printable.h>

#include "Rows.h"
#include "tools/Terminal.h"
#include "tools/Tool.h"

#include <sys/stat.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// Output on a terminal: a progress bar, and escapes.
class ToolTerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void barShowsTheProgress_data();
    void barShowsTheProgress();
    void barIsBelowOtherOutput();
    void barIsShownOnlyOnTerminals();
    void barFitsTheTerminal_data();
    void barFitsTheTerminal();
    void everyCommandEscapesWhatIsNotPrintable_data();
    void everyCommandEscapesWhatIsNotPrintable();
    void getWritesTheValueUnchangedIntoAPipe();
    void jsonIsTheSameOnATerminalAndInAPipe();
    void binaryFormsAreEscapedOnATerminal();
    void outputFileThatIsATerminalIsEscapedLikeStandardOutput_data();
    void outputFileThatIsATerminalIsEscapedLikeStandardOutput();
    void outputFileThatIsAPipeReceivesUnchangedBytes();
    void diffKeepsItsColorsOnATerminal();

private:
    void writeHostile() const;

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

void ToolTerminalTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_workshop->write(text("good.xml"), smallXml);
    m_workshop->write(text("bad.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("pipe"))).constData(), 0600), 0);
}

void ToolTerminalTest::cleanup()
{
    m_workshop.reset();
}

void ToolTerminalTest::barShowsTheProgress_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QByteArray>("bar");
    QTest::newRow("80") << 80
                        << QByteArray("[==============================>                             ] 1 of 2 files");
    QTest::newRow("40") << 40 << QByteArray("[============>           ] 1 of 2 files");
}

// The pipe is filled once the bar has appeared, and then the program ends.
void ToolTerminalTest::barShowsTheProgress()
{
    QFETCH(int, columns);
    QFETCH(QByteArray, bar);
    QVERIFY(bar.size() < columns);
    QElapsedTimer timer;
    timer.start();
    Terminal terminal(m_workshop->path(text(".")), text("\"$tool\" validate --special-files --jobs 2 good.xml pipe"),
                      columns);
    QVERIFY2(terminal.await('\r' + bar + "\x1b[K"), terminal.written().constData());
    QVERIFY(timer.elapsed() >= 1000); // quick work has none
    m_workshop->shell(text("cat good.xml > pipe"));
    terminal.readAll();
    QCOMPARE(terminal.screen(), text("tunerproperties: 2 files: 2 valid\n"));
}

void ToolTerminalTest::barIsBelowOtherOutput()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(text("other"))).constData(), 0600), 0);
    Terminal terminal(m_workshop->path(text(".")),
                      text("\"$tool\" validate --special-files --jobs 2 bad.xml pipe missing.xml bad.xml other"), 40);
    QVERIFY2(terminal.await("[==============>         ] 3 of 5 files\x1b[K"), terminal.written().constData());
    m_workshop->shell(text("cat good.xml > pipe"));
    const QString withBar =
        text("bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"
             "tunerproperties: missing.xml: cannot open: No such file or directory\n"
             "bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"
             "[===================>    ] 4 of 5 files");
    QVERIFY2(terminal.awaitScreen(withBar), qPrintable(terminal.screen()));
    m_workshop->shell(text("cat good.xml > other"));
    terminal.readAll();
    QCOMPARE(
        terminal.screen(),
        text("bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"
             "tunerproperties: missing.xml: cannot open: No such file or directory\n"
             "bad.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"
             "tunerproperties: 5 files: 2 valid, 2 with problems, 1 unreadable\n"));
}

// All at once, since each one takes more than a second.
void ToolTerminalTest::barIsShownOnlyOnTerminals()
{
    struct Case
    {
        const char *command;
        int columns;
        const char *terminal;
        const char *written;
    };
    const char *const summary = "tunerproperties: 2 files: 2 valid\r\n";
    const Case cases[] = {
        {"\"$tool\" validate --special-files good.xml pipe 2>&1 | cat", 80, "xterm", summary},
        {"\"$tool\" validate --special-files good.xml pipe 2> err; cat err", 80, "xterm", summary},
        {"\"$tool\" validate --special-files --quiet good.xml pipe", 80, "xterm", ""},
        {"\"$tool\" validate --special-files good.xml pipe", 80, "dumb", summary},
        {"\"$tool\" validate --special-files good.xml pipe", 12, "xterm", summary}, // less than the numbers take
        {"\"$tool\" validate pipe", 80, "xterm", ""},
    };
    std::vector<std::unique_ptr<Workshop>> shops;
    std::vector<std::unique_ptr<Terminal>> terminals;
    for (const Case &each : cases) {
        shops.push_back(std::make_unique<Workshop>());
        shops.back()->write(text("good.xml"), smallXml);
        QCOMPARE(mkfifo(QFile::encodeName(shops.back()->path(text("pipe"))).constData(), 0600), 0);
        terminals.push_back(
            std::make_unique<Terminal>(shops.back()->path(text(".")), text(each.command), each.columns, each.terminal));
    }
    QTest::qSleep(1300);
    for (std::size_t i = 0; i < shops.size(); ++i) {
        shops[i]->shell(text("cat good.xml > pipe"));
        terminals[i]->readAll();
        QCOMPARE(terminals[i]->written(), QByteArray(cases[i].written));
    }
}

void ToolTerminalTest::barFitsTheTerminal_data()
{
    QTest::addColumn<int>("done");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("bar");
    const auto row = [](int done, int count, int width, const char *bar) {
        QTest::addRow("%d of %d in %d", done, count, width) << done << count << width << text(bar);
    };
    row(0, 2, 25, "[>         ] 0 of 2 files");
    row(1, 2, 25, "[=====>    ] 1 of 2 files");
    row(2, 2, 25, "[==========] 2 of 2 files");
    row(1, 2, 26, "[=====>     ] 1 of 2 files");
    row(1, 2, 24, "1 of 2 files");
    row(1, 2, 12, "1 of 2 files");
    row(1, 2, 11, "");
    row(7, 1000, 31, "[>         ]    7 of 1000 files");
    row(999, 1000, 31, "[=========>]  999 of 1000 files");
    row(1000000, 2147483647, 300,
        "[>                                                           ]    1000000 of 2147483647 files");
}

void ToolTerminalTest::barFitsTheTerminal()
{
    QFETCH(int, done);
    QFETCH(int, count);
    QFETCH(int, width);
    QFETCH(QString, bar);
    QCOMPARE(progressText(done, count, width), bar);
    QVERIFY(bar.size() <= width);
}

namespace {

// Colors, a window's title, the clipboard (OSC 52), a link (OSC 8), CSI as a single character of C1, and characters
// that turn the direction of the text, hide or join what follows.
const char *const hostileName = "a\x1B[31m\x1B]0;t\x07\x1B]52;c;eA==\x07\x1B]8;;http://x\x1B\\\xC2\x9B"
                                "2J\r\b\x7F\xE2\x80\xAE\xE2\x80\x8B\xE2\x81\xA6\xEF\xBB\xBF\xF3\xA0\x81\x81z";
const char *const shownName = R"(a\u001b[31m\u001b]0;t\u0007\u001b]52;c;eA==\u0007\u001b]8;;http://x\u001b\\u009b2J)"
                              R"(\r\u0008\u007f\u202e\u200b\u2066\ufeff\udb40\udc41z)";

bool isPrintable(const QByteArray &written)
{
    const QString all = QString::fromUtf8(written);
    const auto units = all.toUcs4();
    return all.toUtf8() == written && std::all_of(units.begin(), units.end(), [](uint character) {
               return character == '\r' || character == '\n' || character == '\t' || Printable::isPrintable(character);
           });
}

} // namespace

/// In the forms that can represent all of it.
void ToolTerminalTest::writeHostile() const
{
    JobXml::TunerProperties document;
    document.SetValidate(false);
    QVERIFY(document.SetXmlString(text(smallXml), false));
    document.Setname(text(hostileName));
    document.GetComponent()[0].Setname(text(hostileName));
    // Paths have positions in place of long identities, and the texts of short ones.
    JobXml::Node &node = document.GetComponent()[0].GetNode()[0];
    node.Setid(text("\u009B2J"));
    node.ResetValueItem();
    m_workshop->write(text("h.tpb"), document.GetBinaryRepresentationAsQByteArray());
    document.Setname(text("other"));
    m_workshop->write(text("o.tpb"), document.GetBinaryRepresentationAsQByteArray());
    m_workshop->write(text("s.xml"), smallXml);
}

void ToolTerminalTest::everyCommandEscapesWhatIsNotPrintable_data()
{
    const Rows<QString, QString> row("command", "shown"); // a part of the output
    const QString name = text(shownName);
    const QString quoted = QString(name).replace(text("\\\\u009b"), text("\\\\\\u009b"));
    row("get h.tpb name", name + text("\r\n"));
    row("get h.tpb Component", text("eA=="));
    row("show h.tpb", text("name: \"") + quoted + text("\""));
    row("show --format json h.tpb", text("\\u009b2J"));
    row("show --format html h.tpb", text("U+009B2J"));
    row("diff o.tpb h.tpb", quoted);
    row("diff --color never o.tpb h.tpb", quoted);
    row("diff --json o.tpb h.tpb", text("\\\\u009b2J"));
    row("merge o.tpb h.tpb s.xml", quoted);
    row("validate h.tpb", text("h.tpb: Component[1]/Node[id=\"\\u009b2J\"]: Node: Please set ValueItem properly."));
    row("validate --json h.tpb", text(R"("path":"Component[1]/Node[id=\"\\u009b2J\"]")"));
    row("convert --no-validate h.tpb - --to json", text("\\u009b2J"));
    row("get h.tpb $(printf 'x\\342\\200\\256')", text("x\\u202e"));
    row("show $(printf 'x\\302\\2332J')", text("x\\u009b2J: cannot open"));
    row("$(printf '\\033[31m')", text("\\u001b[31m"));
    row("set h.tpb type $(printf '\\302\\233')", text("\\u009b"));
}

void ToolTerminalTest::everyCommandEscapesWhatIsNotPrintable()
{
    QFETCH(QString, command);
    QFETCH(QString, shown);
    writeHostile();
    Terminal terminal(m_workshop->path(text(".")), text("TERM=dumb \"$tool\" ") + command, 80);
    terminal.readAll();
    const QByteArray written = terminal.written();
    QVERIFY2(written.contains(shown.toUtf8()), written.constData());
    QVERIFY2(isPrintable(written), written.toPercentEncoding().constData());
}

void ToolTerminalTest::getWritesTheValueUnchangedIntoAPipe()
{
    writeHostile();
    QCOMPARE(m_workshop->run(line("get h.tpb name")).bytes, QByteArray(hostileName) + '\n');
    Terminal terminal(m_workshop->path(text(".")), text("\"$tool\" get h.tpb name | od -An -tx1"), 80);
    terminal.readAll();
    QCOMPARE(QByteArray::fromHex(terminal.written()), QByteArray(hostileName) + '\n');
}

void ToolTerminalTest::jsonIsTheSameOnATerminalAndInAPipe()
{
    writeHostile();
    for (const char *command :
         {"show --format json h.tpb", "diff --json h.tpb o.tpb", "validate --json h.tpb", "get h.tpb Component"}) {
        Terminal terminal(m_workshop->path(text(".")), text("\"$tool\" ") + text(command), 80);
        terminal.readAll();
        const QByteArray piped = m_workshop->run(line(command)).bytes;
        QCOMPARE(QByteArray(terminal.written()).replace("\r\n", "\n"), piped);
        QVERIFY(QJsonDocument::fromJson(piped).object().size() + QJsonDocument::fromJson(piped).array().size() > 0);
    }
    const QByteArray json = m_workshop->run(line("show --format json h.tpb")).bytes;
    QCOMPARE(QJsonDocument::fromJson(json)[text("TunerProperties")][text("name")].toString(), text(hostileName));
}

void ToolTerminalTest::binaryFormsAreEscapedOnATerminal()
{
    Terminal terminal(m_workshop->path(text(".")), text("\"$tool\" convert good.xml - --to tagged"), 80);
    terminal.readAll();
    QVERIFY2(terminal.written().startsWith(R"(\xc1\u000c\xbb_\u0000\u0000\u0000\xb3\xcc\xfe)"),
             terminal.written().constData());
    QVERIFY(isPrintable(terminal.written()));
}

void ToolTerminalTest::outputFileThatIsATerminalIsEscapedLikeStandardOutput_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("file");
    for (const char *form : {"tagged", "compressed", "snapshot", "json", "xml"}) {
        for (const char *file : {"/dev/tty", "/dev/stdout", "/dev/stderr"})
            QTest::addRow("%s to %s", form, file) << text(form) << text(file);
    }
}

void ToolTerminalTest::outputFileThatIsATerminalIsEscapedLikeStandardOutput()
{
    QFETCH(QString, form);
    QFETCH(QString, file);
    writeHostile();
    // XML cannot represent most of the characters, and a snapshot omits what is not set.
    m_workshop->write(text("h.xml"),
                      QByteArray(smallXml).replace("\"n\"",
                                                   "\"\xC2\x9B"
                                                   "2J\xE2\x80\xAEn\""));
    const QString convert = text("\"$tool\" convert --no-validate %1 %2 --to %3");
    const bool isLimited = form == text("xml") || form == text("snapshot");
    const QString input = isLimited ? text("h.xml") : text("h.tpb");
    Terminal standard(m_workshop->path(text(".")), convert.arg(input, text("-"), form), 80);
    standard.readAll();
    Terminal named(m_workshop->path(text(".")), convert.arg(input, file, form), 80);
    named.readAll();
    QVERIFY2(isPrintable(named.written()), named.written().toPercentEncoding().constData());
    QCOMPARE(named.written(), standard.written());
    QVERIFY(named.written().size() > 60);
}

void ToolTerminalTest::outputFileThatIsAPipeReceivesUnchangedBytes()
{
    writeHostile();
    Terminal terminal(m_workshop->path(text(".")),
                      text("\"$tool\" convert --no-validate h.tpb /dev/stdout --to tagged | cmp - h.tpb && echo same"),
                      80);
    terminal.readAll();
    QCOMPARE(terminal.written(), QByteArray("same\r\n"));
}

void ToolTerminalTest::diffKeepsItsColorsOnATerminal()
{
    writeHostile();
    Terminal terminal(m_workshop->path(text(".")), text("\"$tool\" diff o.tpb h.tpb"), 80);
    terminal.readAll();
    QByteArray written = terminal.written();
    QVERIFY2(written.startsWith("\x1B[33m~ name: ") && written.endsWith("\x1B[m\r\n"), written.constData());
    written.replace("\x1B[33m", "").replace("\x1B[m", "");
    QVERIFY2(isPrintable(written), written.toPercentEncoding().constData());
}

TEST_SUITE(ToolTerminalTest)
#include "tst_ToolTerminal.moc"
