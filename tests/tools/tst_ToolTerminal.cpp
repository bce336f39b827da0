// SPDX-License-Identifier: MIT
#include <memory>
#include <vector>

#include <batch/Progress.h>

#include "tools/Terminal.h"
#include "tools/Tool.h"

#include <sys/stat.h>

#include <QElapsedTimer>

/// What people see who start the tool on a terminal: a bar while it is at work on many files.
class ToolTerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aBarShowsHowFarItIs_data();
    void aBarShowsHowFarItIs();
    void theBarStandsBelowWhatIsTold();
    void whereNobodyWantsABarThereIsNone();
    void theBarFitsTheTerminal_data();
    void theBarFitsTheTerminal();

private:
    std::unique_ptr<Workshop> m_shop;
};

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

void ToolTerminalTest::init()
{
    m_shop = std::make_unique<Workshop>();
    m_shop->write(text("good.xml"), smallXml);
    m_shop->write(text("bad.xml"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    QCOMPARE(mkfifo(QFile::encodeName(m_shop->path(text("pipe"))).constData(), 0600), 0);
}

void ToolTerminalTest::cleanup()
{
    m_shop.reset();
}

void ToolTerminalTest::aBarShowsHowFarItIs_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QByteArray>("bar");
    QTest::newRow("80") << 80
                        << QByteArray("[==============================>                             ] 1 of 2 files");
    QTest::newRow("40") << 40 << QByteArray("[============>           ] 1 of 2 files");
}

// The pipe is filled when the bar has been seen, and the program ends.
void ToolTerminalTest::aBarShowsHowFarItIs()
{
    QFETCH(int, columns);
    QFETCH(QByteArray, bar);
    QVERIFY(bar.size() < columns);
    QElapsedTimer timer;
    timer.start();
    Terminal terminal(m_shop->path(text(".")), text("\"$tool\" validate --jobs 2 good.xml pipe"), columns);
    QVERIFY2(terminal.await('\r' + bar + "\x1b[K"), terminal.written().constData());
    QVERIFY(timer.elapsed() >= 1000); // quick work has none
    m_shop->shell(text("cat good.xml > pipe"));
    terminal.readAll();
    QCOMPARE(terminal.screen(), text("tunerproperties: 2 files: 2 valid\n"));
}

void ToolTerminalTest::theBarStandsBelowWhatIsTold()
{
    QCOMPARE(mkfifo(QFile::encodeName(m_shop->path(text("other"))).constData(), 0600), 0);
    Terminal terminal(m_shop->path(text(".")),
                      text("\"$tool\" validate --jobs 2 bad.xml pipe missing.xml bad.xml other"), 40);
    QVERIFY2(terminal.await("[==============>         ] 3 of 5 files\x1b[K"), terminal.written().constData());
    m_shop->shell(text("cat good.xml > pipe"));
    const QString withBar = text("bad.xml: TunerProperties: Please set type properly.\n"
                                 "tunerproperties: missing.xml: cannot open: No such file or directory\n"
                                 "bad.xml: TunerProperties: Please set type properly.\n"
                                 "[===================>    ] 4 of 5 files");
    QVERIFY2(terminal.awaitScreen(withBar), qPrintable(terminal.screen()));
    m_shop->shell(text("cat good.xml > other"));
    terminal.readAll();
    QCOMPARE(terminal.screen(),
             text("bad.xml: TunerProperties: Please set type properly.\n"
                  "tunerproperties: missing.xml: cannot open: No such file or directory\n"
                  "bad.xml: TunerProperties: Please set type properly.\n"
                  "tunerproperties: 5 files: 2 valid, 2 with problems, 1 unreadable\n"));
}

// All at once, since each takes more than a second.
void ToolTerminalTest::whereNobodyWantsABarThereIsNone()
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
        {"\"$tool\" validate good.xml pipe 2>&1 | cat", 80, "xterm", summary},
        {"\"$tool\" validate good.xml pipe 2> err; cat err", 80, "xterm", summary},
        {"\"$tool\" validate --quiet good.xml pipe", 80, "xterm", ""},
        {"\"$tool\" validate good.xml pipe", 80, "dumb", summary},
        {"\"$tool\" validate good.xml pipe", 12, "xterm", summary}, // less than the numbers take
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

void ToolTerminalTest::theBarFitsTheTerminal_data()
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

void ToolTerminalTest::theBarFitsTheTerminal()
{
    QFETCH(int, done);
    QFETCH(int, count);
    QFETCH(int, width);
    QFETCH(QString, bar);
    QCOMPARE(progressText(done, count, width), bar);
    QVERIFY(bar.size() <= width);
}

QTEST_GUILESS_MAIN(ToolTerminalTest)
#include "tst_ToolTerminal.moc"
