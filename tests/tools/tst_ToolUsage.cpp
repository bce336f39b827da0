// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

class ToolUsageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoCommandLineIsRefused_data();
    void whatIsNoCommandLineIsRefused();
    void anEmptyFileNameIsRefused();
    void wrongUsageTouchesNoFile();
    void theHelpTellsTheCommands();
    void everyCommandHasHelp_data();
    void everyCommandHasHelp();
    void helpComesBeforeComplaints();
    void theVersionIsThatOfTheProject_data();
    void theVersionIsThatOfTheProject();
    void afterTwoDashesNothingIsAnOption();
    void outputThatCannotBeWrittenIsAnError();
    void messagesAreUtf8InEveryLocale();
};

void ToolUsageTest::whatIsNoCommandLineIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hint");

    const auto row = [](const char *arguments, const char *text, const char *hint) {
        QTest::newRow(*arguments ? arguments : "nothing")
            << line(arguments) << QString::fromUtf8(text) << QString::fromUtf8(hint);
    };
    row("", "a command is missing", "tunerproperties --help");
    row("frob", "'frob' is no command", "tunerproperties --help");
    row("frob show a.xml", "'frob' is no command", "tunerproperties --help");
    row("--frob", "Unknown option 'frob'.", "tunerproperties --help");
    row("--to xml", "a command is missing", "tunerproperties --help");
    row("show", "the arguments of 'show' are FILE", "tunerproperties show --help");
    row("show a.xml b.xml", "the arguments of 'show' are FILE", "tunerproperties show --help");
    row("show --frob a.xml", "Unknown option 'frob'.", "tunerproperties show --help");
    row("show --to xml a.xml", "Unknown option 'to'.", "tunerproperties show --help");
    row("show a.xml --from", "Missing value after '--from'.", "tunerproperties show --help");
    row("validate", "the arguments of 'validate' are FILE...", "tunerproperties validate --help");
    row("validate --no-validate a.xml", "Unknown option 'no-validate'.", "tunerproperties validate --help");
    row("convert", "the arguments of 'convert' are IN OUT", "tunerproperties convert --help");
    row("convert a.xml", "the arguments of 'convert' are IN OUT", "tunerproperties convert --help");
    row("convert a.xml b.xml c.xml", "the arguments of 'convert' are IN OUT", "tunerproperties convert --help");
    row("convert a.xml b.xml --to", "Missing value after '--to'.", "tunerproperties convert --help");
    row("convert a.xml b.xml --no-validate=1", "Unexpected value after '--no-validate'.",
        "tunerproperties convert --help");
    row("convert a.xml b", "the name of 'b' does not tell the form to write; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.txt", "the name of 'b.txt' does not tell the form to write; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.xml --to XML", "'XML' is no form; the forms are xml, tagged, compressed or snapshot",
        "tunerproperties convert --help");
    row("show a.xml --from tps", "'tps' is no form; the forms are xml, tagged, compressed or snapshot",
        "tunerproperties show --help");
}

void ToolUsageTest::whatIsNoCommandLineIsRefused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    QFETCH(QString, hint);
    const Run run = Workshop().run(arguments);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1\ntunerproperties: try '%2'\n").arg(text, hint));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

void ToolUsageTest::anEmptyFileNameIsRefused()
{
    const Run run = Workshop().run({QStringLiteral("show"), QString()});
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: the name of a file is empty\n"
                            "tunerproperties: try 'tunerproperties show --help'\n"));
    QCOMPARE(run.status, 2);
}

void ToolUsageTest::wrongUsageTouchesNoFile()
{
    Workshop shop;
    shop.write(QStringLiteral("in.xml"), smallXml);
    shop.write(QStringLiteral("out.txt"), "old");
    QCOMPARE(shop.run(line("convert in.xml out.txt")).status, 2);
    QCOMPARE(shop.run(line("convert in.xml new.txt")).status, 2);
    QCOMPARE(shop.files(), QStringList({QStringLiteral("in.xml"), QStringLiteral("out.txt")}));
    QCOMPARE(shop.read(QStringLiteral("out.txt")), QByteArray("old"));
}

void ToolUsageTest::theHelpTellsTheCommands()
{
    const QString expected = QStringLiteral(
        "Usage: " TOOL_PROGRAM " [options] COMMAND FILE...\n"
        "Shows, validates and converts descriptions of radio tuners.\n"
        "\n"
        "Commands:\n"
        "  show FILE         Shows all that a document holds, as a tree.\n"
        "  validate FILE...  Tells every problem of the documents, a line each, and nothing if there is none.\n"
        "  convert IN OUT    Writes a document in another form. Writes nothing if the document does not validate.\n"
        "\n"
        "Options:\n"
        "  -h, --help     Shows this help.\n"
        "  -v, --version  Shows the version.\n"
        "\n"
        "Arguments:\n"
        "  FILE           A file, or - for standard input or output.\n");
    for (const char *option : {"--help", "-h"}) {
        const Run run = Workshop().run(line(option));
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::everyCommandHasHelp_data()
{
    QTest::addColumn<QString>("text");
    const QString from =
        QStringLiteral("  --from <form>  What the input is: xml, tagged, compressed or snapshot. Only a\n"
                       "                 snapshot whose name does not end in .tps cannot be recognised.\n");
    const QString help = QStringLiteral("\nOptions:\n  -h, --help     Shows this help.\n") + from;
    QTest::newRow("show") << QStringLiteral("FILE\nShows all that a document holds, as a tree.\n") + help
            + QStringLiteral("\nArguments:\n  FILE           Files; - is standard input or output.\n");
    QTest::newRow("validate")
        << QStringLiteral("FILE...\nTells every problem of the documents, a line each, and nothing if there is none.\n")
            + help + QStringLiteral("\nArguments:\n  FILE...        Files; - is standard input or output.\n");
    QTest::newRow("convert")
        << QStringLiteral("IN OUT\nWrites a document in another form. Writes nothing if the document does not "
                          "validate.\n")
            + help
            + QStringLiteral("  --to <form>    What to write: xml, tagged, compressed or snapshot. Without it\n"
                             "                 the name of the output says: .xml, .tpb, .tpz or .tps; standard\n"
                             "                 output is XML.\n"
                             "  --no-validate  Writes the document as it stands, whatever its problems are.\n"
                             "\nArguments:\n  IN OUT         Files; - is standard input or output.\n");
}

void ToolUsageTest::everyCommandHasHelp()
{
    QFETCH(QString, text);
    const QString command = QString::fromUtf8(QTest::currentDataTag());
    const Run run = Workshop().run({command, QStringLiteral("--help")});
    QCOMPARE(run.out, QStringLiteral("Usage: " TOOL_PROGRAM " [options] %1 %2").arg(command, text));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolUsageTest::helpComesBeforeComplaints()
{
    const Run run = Workshop().run(line("convert --frob --help"));
    QVERIFY(run.out.startsWith(QLatin1String("Usage: " TOOL_PROGRAM " [options] convert IN OUT\n")));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolUsageTest::theVersionIsThatOfTheProject_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("--version") << line("--version");
    QTest::newRow("-v") << line("-v");
    QTest::newRow("behind a command") << line("show --version");
}

void ToolUsageTest::theVersionIsThatOfTheProject()
{
    QFETCH(QStringList, arguments);
    const Run run = Workshop().run(arguments);
    QCOMPARE(run.out, QStringLiteral("tunerproperties " TOOL_VERSION "\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolUsageTest::afterTwoDashesNothingIsAnOption()
{
    Workshop shop;
    shop.write(QStringLiteral("--to"), smallXml);
    const Run run = shop.run(line("convert --to tagged -- --to out"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(shop.read(QStringLiteral("out")), QByteArray::fromHex(smallTaggedHex));
}

void ToolUsageTest::outputThatCannotBeWrittenIsAnError()
{
    Workshop shop;
    shop.write(QStringLiteral("in.xml"), smallXml);
    for (const char *arguments : {"--help", "--version", "show in.xml", "convert in.xml -"}) {
        const Run run = shop.runInto(QStringLiteral("/dev/full"), line(arguments));
        QCOMPARE(run.err, QStringLiteral("tunerproperties: -: cannot write: No space left on device\n"));
        QCOMPARE(run.status, 3);
    }
}

void ToolUsageTest::messagesAreUtf8InEveryLocale()
{
    for (const char *locale : {"C", "C.UTF-8"}) {
        Workshop shop;
        shop.setEnvironment(QStringLiteral("LC_ALL"), QString::fromUtf8(locale));
        const Run run = shop.run(line("show Ömpfänger.xml"));
        QCOMPARE(run.err,
                 QString::fromUtf8("tunerproperties: Ömpfänger.xml: cannot open: No such file or directory\n"));
        QCOMPARE(run.status, 3);
    }
}

QTEST_GUILESS_MAIN(ToolUsageTest)
#include "tst_ToolUsage.moc"
