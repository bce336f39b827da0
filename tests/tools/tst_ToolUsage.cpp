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
    void theHelpOfACommandTellsAllAboutIt();
    void theHelpOfACommandTellsEveryWayToUseIt();
    void helpNeedsNoArgumentsOfTheCommand();
    void aFileNameIsNeverAnOption_data();
    void aFileNameIsNeverAnOption();
    void everyCommandRefusesAFileNameAsAnOption_data();
    void everyCommandRefusesAFileNameAsAnOption();
    void anOptionWithAValueIsGivenOnce();
    void valuesOfOptionsAreTakenInEveryWay();
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
    row("frob", "unknown command 'frob'", "tunerproperties --help");
    row("frob show a.xml", "unknown command 'frob'", "tunerproperties --help");
    row("vaildate a.xml", "unknown command 'vaildate'; did you mean 'validate'?", "tunerproperties --help");
    row("CONVERT a.xml", "unknown command 'CONVERT'; did you mean 'convert'?", "tunerproperties --help");
    row("val", "unknown command 'val'; did you mean 'validate'?", "tunerproperties --help");
    row("x", "unknown command 'x'", "tunerproperties --help");
    row("help vlidate", "unknown command 'vlidate'; did you mean 'validate'?", "tunerproperties help --help");
    row("help show convert", "the arguments of 'help' are [COMMAND]", "tunerproperties help --help");
    row("--xyzzy", "unknown option '--xyzzy'", "tunerproperties --help");
    row("--verison", "unknown option '--verison'; did you mean '--version'?", "tunerproperties --help");
    row("--to xml", "a command is missing", "tunerproperties --help");
    row("show", "the arguments of 'show' are FILE", "tunerproperties show --help");
    row("show a.xml b.xml", "the arguments of 'show' are FILE", "tunerproperties show --help");
    row("show --frob a.xml", "unknown option '--frob' of 'show'; did you mean '--from'?",
        "tunerproperties show --help");
    row("show --to xml a.xml",
        "unknown option '--to' of 'show'; for a file of that name, write './--to' or put '--' before it",
        "tunerproperties show --help");
    row("show a.xml --from", "'--from' needs a value: FORM", "tunerproperties show --help");
    row("validate", "the arguments of 'validate' are FILE...", "tunerproperties validate --help");
    row("validate --no-validate a.xml",
        "unknown option '--no-validate' of 'validate'; for a file of that name, write './--no-validate' or put '--' "
        "before "
        "it",
        "tunerproperties validate --help");
    row("convert", "the arguments of 'convert' are IN OUT or --to FORM --out-dir DIR FILE...",
        "tunerproperties convert --help");
    row("convert a.xml", "without --out-dir the arguments of 'convert' are IN OUT", "tunerproperties convert --help");
    row("convert a.xml b.xml c.xml", "without --out-dir the arguments of 'convert' are IN OUT",
        "tunerproperties convert --help");
    row("convert a.xml b.xml --to", "'--to' needs a value: FORM", "tunerproperties convert --help");
    row("convert a.xml b.xml --no-validate=1",
        "'--no-validate' takes no value; for a file of that name, write './--no-validate=1' or put '--' before it",
        "tunerproperties convert --help");
    row("convert a.xml b", "the name of 'b' does not tell the form to write; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.txt", "the name of 'b.txt' does not tell the form to write; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.xml --to XML", "'XML' is no form; did you mean 'xml'?", "tunerproperties convert --help");
    row("show --from taged a.xml", "'taged' is no form; did you mean 'tagged'?", "tunerproperties show --help");
    row("show --format htm a.xml", "'htm' is no format; did you mean 'html'?", "tunerproperties show --help");
    row("validate --jobs 0 a.xml", "--jobs must be a number from 1 to 256, not '0'", "tunerproperties validate --help");
    row("validate -j many a.xml", "--jobs must be a number from 1 to 256, not 'many'",
        "tunerproperties validate --help");
    row("convert --jobs=257 a.xml b.xml", "--jobs must be a number from 1 to 256, not '257'",
        "tunerproperties convert --help");
    row("validate --quiet --json a.xml", "--quiet and --json exclude each other", "tunerproperties validate --help");
    row("validate - a.xml -", "standard input can be read only once", "tunerproperties validate --help");
    row("convert --json a.xml -", "--json and a document on standard output exclude each other",
        "tunerproperties convert --help");
    row("convert --out-dir out a.xml", "--out-dir takes --to", "tunerproperties convert --help");
    row("convert --out-dir= --to xml a.xml", "the name of the folder is empty", "tunerproperties convert --help");
    row("show a.xml --from tps", "'tps' is no form; the forms are xml, tagged, compressed, snapshot or json",
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
    const QString expected =
        QStringLiteral("Usage: tunerproperties COMMAND [OPTION...] [FILE...]\n"
                       "\n"
                       "Shows, validates, converts, compares and changes descriptions of radio tuners.\n"
                       "\n"
                       "Commands:\n"
                       "  show      Shows all that a document holds, as a tree, as JSON, or as a page\n"
                       "            for a browser.\n"
                       "  validate  Tells every problem of the documents, a line each.\n"
                       "  convert   Writes documents in another form.\n"
                       "  diff      Tells in what two documents differ, by path.\n"
                       "  get       Writes the value of one member.\n"
                       "  set       Changes the value of one member.\n"
                       "  new       Writes a document to begin with, as XML with comments.\n"
                       "  schema    Writes the XML Schema of documents.\n"
                       "  help      Tells how to use the program, or one of its commands.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help     Shows this help.\n"
                       "  -v, --version  Shows the version.\n"
                       "\n"
                       "Exit status:\n"
                       "  0  All went well.\n"
                       "  1  A document has problems, or not the member that is asked for; or, if\n"
                       "     --exit-code is given, two differ.\n"
                       "  2  The command line is wrong; nothing was done.\n"
                       "  3  A file cannot be read or written.\n"
                       "\n"
                       "A FILE is one in any form, or - for standard input or output. XML, JSON and the\n"
                       "binary forms are recognised by their content; a snapshot, which carries no mark,\n"
                       "by its name or by --from snapshot.\n"
                       "\n"
                       "An argument that begins with - is an option. Write ./* or -- *.xml, so that the\n"
                       "name of a file is never an option.\n"
                       "\n"
                       "The name - stands for standard input or output, even after --. Write ./- for a\n"
                       "file of that name.\n"
                       "\n"
                       "In messages a name has \\xHH for a byte that is not UTF-8 and \\\\ for a backslash.\n"
                       "On a terminal, characters that are not printable are shown as \\uXXXX; to a file\n"
                       "or a pipe, get and convert write them unchanged, except in JSON.\n"
                       "\n"
                       "Ctrl-C, or another signal, leaves no file half written. The program tells how\n"
                       "far it came with many files, and ends by that signal; a second one ends it at\n"
                       "once.\n"
                       "\n"
                       "'tunerproperties help COMMAND' tells more about a command.\n");
    for (const char *option : {"--help", "-h", "help"}) {
        const Run run = Workshop().run(line(option));
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::theHelpOfACommandTellsAllAboutIt()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties validate [OPTION...] FILE...\n"
                       "\n"
                       "Tells every problem of the documents, a line each.\n"
                       "\n"
                       "A problem has its line and column, where only the reader of an XML document sees\n"
                       "it, or else the path of the object that has it. Nothing is told about a valid\n"
                       "document.\n"
                       "\n"
                       "The first 100 problems of a document are listed, and how many there are if there\n"
                       "are more. The label of an object in a path is shortened if it is long, and has\n"
                       "the object's place then: Component 3 \"abc...\" is what 'get FILE Component[3]'\n"
                       "shows in full.\n"
                       "\n"
                       "Several files are worked on at once, and told about in their order; behind them\n"
                       "comes a summary, on standard error.\n"
                       "\n"
                       "With --json a line for each file is an object with \"file\", \"status\" (\"valid\",\n"
                       "\"problems\" or \"unreadable\"), \"problems\" (those that are listed), \"problemCount\"\n"
                       "(how many there are) and \"error\" (why it is unreadable, or null). A problem has\n"
                       "\"path\" (the objects from the outermost to the one at fault), \"line\", \"column\"\n"
                       "and \"message\"; either path or line and column are null. There is no summary\n"
                       "then. A \"file\" that is not UTF-8 is escaped as in messages, and \"fileBytes\" has\n"
                       "its bytes as hexadecimal digits.\n"
                       "\n"
                       "The name - stands for standard input or output, even after --. Write ./- for a\n"
                       "file of that name.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help                 Shows this help.\n"
                       "      --from FORM            What the input is: xml, tagged, compressed,\n"
                       "                             snapshot or json. Only a snapshot whose name does\n"
                       "                             not end in .tps cannot be recognised.\n"
                       "  -j, --jobs NUMBER          Processes up to NUMBER files at once (default: the\n"
                       "                             number of processors).\n"
                       "  -q, --quiet                Reports only files that cannot be read or written.\n"
                       "                             The exit status reports whether there were\n"
                       "                             problems.\n"
                       "      --json                 Writes a line for each file to standard output, a\n"
                       "                             JSON object.\n"
                       "      --max-problems NUMBER  Lists the first NUMBER problems of a document\n"
                       "                             (default: 100), and how many there are.\n"
                       "      --max-expansion TIMES  Reads a compressed document that expands to up to\n"
                       "                             TIMES its size (default: 50).\n"
                       "      --special-files        Accepts pipes and devices among several files as\n"
                       "                             well. By default these must be regular files, since\n"
                       "                             a pipe in a folder could block the rest.\n"
                       "\n"
                       "Examples:\n"
                       "  tunerproperties validate receiver.xml\n"
                       "      Tells every problem of a document, and nothing if there is none.\n"
                       "  tunerproperties validate --quiet -- *.xml && echo fine\n"
                       "      Asks whether all documents are valid.\n"
                       "  tunerproperties validate --json -- *.xml\n"
                       "      Tells the problems of many documents to a program.\n");
    for (const char *arguments : {"validate --help", "validate -h", "help validate"}) {
        const Run run = Workshop().run(line(arguments));
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::theHelpOfACommandTellsEveryWayToUseIt()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties convert [OPTION...] IN OUT\n"
                       "       tunerproperties convert [OPTION...] --to FORM --out-dir DIR FILE...\n"
                       "\n"
                       "Writes documents in another form.\n"
                       "\n"
                       "An output is complete or stays as it was. A document that does not validate is\n"
                       "not converted; its problems go to standard error.\n"
                       "\n"
                       "Into a folder any number of files are converted, several at once. One that fails\n"
                       "does not keep the others from being converted. If two would get the same name\n"
                       "nothing is written at all. A summary comes at the end, on standard error.\n"
                       "\n"
                       "With --json a line for each file is an object with \"file\", \"output\", \"status\"\n"
                       "(\"converted\", \"problems\", \"unreadable\" or \"unwritable\"), \"problems\",\n"
                       "\"problemCount\" and \"error\", as 'validate --json' writes them; \"outputBytes\" is\n"
                       "like \"fileBytes\".\n"
                       "\n"
                       "The name - stands for standard input or output, even after --. Write ./- for a\n"
                       "file of that name.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help                 Shows this help.\n"
                       "      --from FORM            What the input is: xml, tagged, compressed,\n"
                       "                             snapshot or json. Only a snapshot whose name does\n"
                       "                             not end in .tps cannot be recognised.\n"
                       "      --to FORM              What to write: xml, tagged, compressed, snapshot or\n"
                       "                             json. Without it the name of the output says: .xml,\n"
                       "                             .tpb, .tpz, .tps or .json; standard output is XML.\n"
                       "      --out-dir DIR          Writes into this folder, which is made if it is\n"
                       "                             missing, under the names of the inputs with the\n"
                       "                             suffix of the form. Takes --to.\n"
                       "      --no-validate          Writes the document as it stands, whatever its\n"
                       "                             problems are.\n"
                       "  -j, --jobs NUMBER          Processes up to NUMBER files at once (default: the\n"
                       "                             number of processors).\n"
                       "  -q, --quiet                Reports only files that cannot be read or written.\n"
                       "                             The exit status reports whether there were\n"
                       "                             problems.\n"
                       "      --json                 Writes a line for each file to standard output, a\n"
                       "                             JSON object.\n"
                       "      --max-problems NUMBER  Lists the first NUMBER problems of a document\n"
                       "                             (default: 100), and how many there are.\n"
                       "      --max-expansion TIMES  Reads a compressed document that expands to up to\n"
                       "                             TIMES its size (default: 50).\n"
                       "      --special-files        Accepts pipes and devices among several files as\n"
                       "                             well. By default these must be regular files, since\n"
                       "                             a pipe in a folder could block the rest.\n"
                       "\n"
                       "Examples:\n"
                       "  tunerproperties convert receiver.xml receiver.tpz\n"
                       "      Writes the compressed form.\n"
                       "  tunerproperties convert receiver.tpz - | less\n"
                       "      Writes XML to standard output.\n"
                       "  tunerproperties convert --to tagged --out-dir records -- *.xml\n"
                       "      Writes records/NAME.tpb for every NAME.xml.\n");
    for (const char *arguments : {"convert --help", "convert -h", "help convert"}) {
        const Run run = Workshop().run(line(arguments));
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::helpNeedsNoArgumentsOfTheCommand()
{
    for (const char *arguments : {"convert --help", "--help convert", "convert --quiet -h", "convert -h -- "}) {
        const Run run = Workshop().run(line(arguments));
        QVERIFY2(run.out.startsWith(QLatin1String("Usage: tunerproperties convert [OPTION...] IN OUT\n")),
                 qPrintable(run.out));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::aFileNameIsNeverAnOption_data()
{
    const auto row = columnsOfTexts("name", "text");
    row("-h.xml", "unknown option '-h.xml' of 'validate'");
    row("-v.xml", "unknown option '-v.xml' of 'validate'");
    row("-q.xml", "unknown option '-q.xml' of 'validate'");
    row("-qh", "unknown option '-qh' of 'validate'");
    row("-hq", "unknown option '-hq' of 'validate'");
    row("--help=.xml", "'--help' takes no value");
    row("--version=.xml", "'--version' takes no value");
    row("--quiet=.xml", "'--quiet' takes no value");
    row("--help.xml", "unknown option '--help.xml' of 'validate'");
    row("--hel", "unknown option '--hel' of 'validate'; did you mean '--help'?");
    row("---help", "unknown option '---help' of 'validate'; did you mean '--help'?");
    row("--out-dir=dir.xml", "unknown option '--out-dir=dir.xml' of 'validate'");
    row("--=.xml", "unknown option '--=.xml' of 'validate'");
    row("--help", "'--help' does not go with files");
    row("-h", "'-h' does not go with files");
    row("--version", "'--version' does not go with files");
    row("-qmljsdebugger=file:x.xml", "unknown option '-qmljsdebugger=file:x.xml' of 'validate'");
}

// As "validate --quiet *.xml && echo fine" has it.
void ToolUsageTest::aFileNameIsNeverAnOption()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    Workshop shop;
    shop.write(QStringLiteral("good.xml"), smallXml);
    shop.write(name, "broken");
    const QString hint = text.endsWith(QLatin1Char('?'))
        ? QString()
        : QStringLiteral("; for a file of that name, write './") + name + QStringLiteral("' or put '--' before it");
    for (const QStringList &files :
         {QStringList{name, QStringLiteral("good.xml")}, QStringList{QStringLiteral("good.xml"), name}}) {
        const Run run = shop.run(QStringList{QStringLiteral("validate"), QStringLiteral("--quiet")} + files);
        QCOMPARE(run.err,
                 QStringLiteral("tunerproperties: ") + text + hint
                     + QStringLiteral("\ntunerproperties: try 'tunerproperties validate --help'\n"));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, 2);
    }
    for (const QStringList &files :
         {QStringList{QStringLiteral("--"), name}, QStringList{QStringLiteral("./") + name}}) {
        const Run run = shop.run(QStringList{QStringLiteral("validate"), QStringLiteral("--quiet")} + files);
        QVERIFY2(run.err.startsWith(QStringLiteral("tunerproperties: ") + files.last() + QLatin1Char(':')),
                 qPrintable(run.err));
        QCOMPARE(run.status, 3);
    }
}

void ToolUsageTest::everyCommandRefusesAFileNameAsAnOption_data()
{
    QTest::addColumn<QStringList>("arguments");
    for (const char *arguments :
         {"show -h.xml", "convert -h.xml a.tpb", "convert a.xml -h.tpb", "diff a.xml -h.xml", "get -h.xml type",
          "set -h.xml type SCP", "new -h.xml", "schema -h.xml", "help -h.xml"})
        QTest::newRow(arguments) << line(arguments);
}

void ToolUsageTest::everyCommandRefusesAFileNameAsAnOption()
{
    QFETCH(QStringList, arguments);
    const Run run = Workshop().run(arguments);
    QVERIFY2(run.err.startsWith(QStringLiteral("tunerproperties: unknown option '-h.")), qPrintable(run.err));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

void ToolUsageTest::anOptionWithAValueIsGivenOnce()
{
    Workshop shop;
    shop.write(QStringLiteral("--out-dir=dir.xml"), smallXml);
    shop.write(QStringLiteral("good.xml"), smallXml);
    const Run run = shop.run(line("convert --to tagged --out-dir records --out-dir=dir.xml good.xml"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: '--out-dir' is given twice; for a file of that name, write "
                            "'./--out-dir=dir.xml' or put '--' before it\n"
                            "tunerproperties: try 'tunerproperties convert --help'\n"));
    QCOMPARE(run.status, 2);
    QCOMPARE(shop.files(), QStringList({QStringLiteral("--out-dir=dir.xml"), QStringLiteral("good.xml")}));
}

void ToolUsageTest::valuesOfOptionsAreTakenInEveryWay()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    for (const char *arguments :
         {"validate -j 2 a.xml", "validate -j2 a.xml", "validate -j=2 a.xml", "validate --jobs 2 a.xml",
          "validate --jobs=2 a.xml", "--jobs 2 validate a.xml", "-- validate a.xml", "validate a.xml -q -q"}) {
        const Run run = shop.run(line(arguments));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
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

TEST_SUITE(ToolUsageTest)
#include "tst_ToolUsage.moc"
