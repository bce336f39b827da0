// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/Tool.h"

class ToolUsageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invalidCommandLineIsWrongUsage_data();
    void invalidCommandLineIsWrongUsage();
    void emptyFileNameIsWrongUsage();
    void wrongUsageTouchesNoFile();
    void helpListsTheCommands();
    void helpOfACommandDescribesIt();
    void helpOfPathsDescribesCompletions();
    void helpOfACommandShowsEveryUsage();
    void helpOfFmtDescribesTheLayout();
    void helpOfMergeDescribesWhatIsNotMerged();
    void helpNeedsNoArgumentsOfTheCommand();
    void fileNameIsNeverAnOption_data();
    void fileNameIsNeverAnOption();
    void everyCommandRejectsAFileNameAsAnOption_data();
    void everyCommandRejectsAFileNameAsAnOption();
    void optionWithAValueCanBeUsedOnlyOnce();
    void valuesOfOptionsAreAcceptedInEverySpelling();
    void versionIsThatOfTheProject_data();
    void versionIsThatOfTheProject();
    void afterTwoDashesNothingIsAnOption();
    void outputThatCannotBeWrittenIsAnError();
    void messagesAreUtf8InEveryLocale();
};

void ToolUsageTest::invalidCommandLineIsWrongUsage_data()
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
    row("help show convert", "'help' expects [COMMAND]", "tunerproperties help --help");
    row("--xyzzy", "unknown option '--xyzzy'", "tunerproperties --help");
    row("--verison", "unknown option '--verison'; did you mean '--version'?", "tunerproperties --help");
    row("--jsno", "unknown option '--jsno'", "tunerproperties --help");
    row("--to xml", "a command is missing", "tunerproperties --help");
    row("show", "'show' expects FILE", "tunerproperties show --help");
    row("show a.xml b.xml", "'show' expects FILE", "tunerproperties show --help");
    row("show --frob a.xml", "unknown option '--frob'; did you mean '--from'?", "tunerproperties show --help");
    row("show --to xml a.xml", "unknown option '--to'; for a file of that name, write './--to' or put '--' before it",
        "tunerproperties show --help");
    row("show a.xml --from", "option '--from' requires a value: FORM", "tunerproperties show --help");
    row("validate", "'validate' expects FILE...", "tunerproperties validate --help");
    row("validate --no-validate a.xml",
        "unknown option '--no-validate'; for a file of that name, write './--no-validate' or put '--' "
        "before "
        "it",
        "tunerproperties validate --help");
    row("fmt", "'fmt' expects FILE...", "tunerproperties fmt --help");
    row("fmt --chek a.xml", "unknown option '--chek'; did you mean '--check'?", "tunerproperties fmt --help");
    row("fmt --json -", "--json cannot be combined with a document on standard output", "tunerproperties fmt --help");
    row("fmt - a.xml",
        "'fmt' writes the document from standard input to standard output and cannot combine it with other files, "
        "except with --check",
        "tunerproperties fmt --help");
    row("convert", "'convert' expects IN OUT or --to FORM --out-dir DIR FILE...", "tunerproperties convert --help");
    row("convert a.xml", "'convert' expects IN OUT; use --out-dir to convert several files",
        "tunerproperties convert --help");
    row("convert a.xml b.xml c.xml", "'convert' expects IN OUT; use --out-dir to convert several files",
        "tunerproperties convert --help");
    row("convert a.xml b.xml --to", "option '--to' requires a value: FORM", "tunerproperties convert --help");
    row("convert a.xml b.xml --no-validate=1",
        "option '--no-validate' takes no value; for a file of that name, write './--no-validate=1' or put '--' before "
        "it",
        "tunerproperties convert --help");
    row("convert a.xml b", "cannot determine the form of 'b' from its name; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.txt", "cannot determine the form of 'b.txt' from its name; use --to",
        "tunerproperties convert --help");
    row("convert a.xml b.xml --to XML", "unknown form 'XML'; did you mean 'xml'?", "tunerproperties convert --help");
    row("show --from taged a.xml", "unknown form 'taged'; did you mean 'tagged'?", "tunerproperties show --help");
    row("show --format htm a.xml", "unknown format 'htm'; did you mean 'html'?", "tunerproperties show --help");
    row("validate --jobs 0 a.xml", "--jobs must be a number from 1 to 256, not '0'", "tunerproperties validate --help");
    row("validate -j many a.xml", "--jobs must be a number from 1 to 256, not 'many'",
        "tunerproperties validate --help");
    row("convert --jobs=257 a.xml b.xml", "--jobs must be a number from 1 to 256, not '257'",
        "tunerproperties convert --help");
    row("validate --error lost-decimals a.xml", "--error requires --strict", "tunerproperties validate --help");
    row("validate --strict --error lost a.xml", "unknown rule 'lost'; did you mean 'lost-decimals'?",
        "tunerproperties validate --help");
    row("validate --quiet --json a.xml", "--quiet and --json cannot be combined", "tunerproperties validate --help");
    row("validate - a.xml -", "standard input can be read only once", "tunerproperties validate --help");
    row("convert --json a.xml -", "--json cannot be combined with a document on standard output",
        "tunerproperties convert --help");
    row("convert --out-dir out a.xml", "--out-dir requires --to", "tunerproperties convert --help");
    row("convert --out-dir= --to xml a.xml", "the folder name of --out-dir is empty", "tunerproperties convert --help");
    row("show a.xml --from tps", "unknown form 'tps'; did you mean 'snapshot'?", "tunerproperties show --help");
    row("convert a.xml b --to .TPB", "unknown form '.TPB'; did you mean 'tagged'?", "tunerproperties convert --help");
    row("convert a.xml b --to tpz", "unknown form 'tpz'; did you mean 'compressed'?", "tunerproperties convert --help");
    row("show a.xml --from txt", "unknown form 'txt'; expected xml, tagged, compressed, snapshot or json",
        "tunerproperties show --help");
    row("show --json a.xml", "unknown option '--json'; did you mean '--format json'?", "tunerproperties show --help");
    row("show --html a.xml", "unknown option '--html'; did you mean '--format html'?", "tunerproperties show --help");
    row("diff --html a.xml b.xml", "unknown option '--html'; did you mean '--format html'?",
        "tunerproperties diff --help");
    row("diff --format htm a.xml b.xml", "unknown format 'htm'; did you mean 'html'?", "tunerproperties diff --help");
    row("diff --json --format html a.xml b.xml", "--json and --format html cannot be combined",
        "tunerproperties diff --help");
    row("diff --format text --json a.xml b.xml", "--json and --format text cannot be combined",
        "tunerproperties diff --help");
    row("convert --format json a.xml b", "unknown option '--format'; did you mean '--to'?",
        "tunerproperties convert --help");
    row("new Receiver", "'new' takes no arguments; did you mean '--type Receiver'?", "tunerproperties new --help");
    row("new reciever", "'new' takes no arguments; did you mean '--type Receiver'?", "tunerproperties new --help");
    row("new out.xml", "'new' takes no arguments", "tunerproperties new --help");
    row("missing.xml", "unknown command 'missing.xml', and no file has that name", "tunerproperties --help");
    row("./missing", "unknown command './missing', and no file has that name", "tunerproperties --help");
}

void ToolUsageTest::invalidCommandLineIsWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    QFETCH(QString, hint);
    const Run run = Workshop().run(arguments);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1\ntunerproperties: try '%2'\n").arg(text, hint));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

void ToolUsageTest::emptyFileNameIsWrongUsage()
{
    const Run run = Workshop().run({QStringLiteral("show"), QString()});
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: a file name is empty\n"
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

void ToolUsageTest::helpListsTheCommands()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties COMMAND [OPTION...] [FILE...]\n"
                       "       tunerproperties FILE\n"
                       "\n"
                       "Show, validate, convert, compare and change descriptions of radio tuners.\n"
                       "\n"
                       "Commands:\n"
                       "  show      Show a document as a tree, as JSON, or as a page for a browser.\n"
                       "  validate  List the problems of documents, one per line.\n"
                       "  lint      List what is suspicious in documents: for reviews.\n"
                       "  convert   Convert documents to another form.\n"
                       "  fmt       Lay documents out as the library writes them, in place.\n"
                       "  diff      Compare two documents and list the differences by path.\n"
                       "  patch     Make the changes that 'diff --json' has listed.\n"
                       "  merge     Merge two documents that were made from the same one.\n"
                       "  get       Print the values of members.\n"
                       "  set       Change values in a document.\n"
                       "  add       Add an item to a list of a document.\n"
                       "  remove    Remove items from a document.\n"
                       "  move      Move an item within its list.\n"
                       "  paths     List the paths of all members that are set.\n"
                       "  new       Write a new document as XML with comments.\n"
                       "  schema    Write the schema of documents, for XML or JSON.\n"
                       "  help      Show help for the program or for a command.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help     Show this help.\n"
                       "  -v, --version  Show the version.\n"
                       "\n"
                       "Exit status:\n"
                       "  0  Success.\n"
                       "  1  A document has problems or lacks the requested member, or changes do not\n"
                       "     fit or conflict; with --exit-code, two documents differ; with --check, a\n"
                       "     document has another layout.\n"
                       "  2  The command line is wrong; nothing was done.\n"
                       "  3  A file cannot be read or written.\n"
                       "\n"
                       "FILE is a document in any form, or - for standard input or output. XML, JSON and\n"
                       "the binary forms are recognized by their content; a snapshot is recognized by\n"
                       "its suffix or by --from snapshot. Without a command, the document is shown.\n"
                       "\n"
                       "An argument that begins with - is an option. Write ./* or -- *.xml to make sure\n"
                       "that file names are not options.\n"
                       "\n"
                       "The name - means standard input or output, even after --. For a file of that\n"
                       "name, write ./-.\n"
                       "\n"
                       "In messages, a file name is shown with \\xHH for each byte that is not UTF-8 and\n"
                       "\\\\ for a backslash. On a terminal, characters that are not printable are shown\n"
                       "as \\uXXXX; get and convert write them unchanged to a file or a pipe, except in\n"
                       "JSON.\n"
                       "\n"
                       "Ctrl-C, or another signal, leaves no incomplete file. The program reports its\n"
                       "progress if there are several files, and ends by that signal; a second signal\n"
                       "ends it at once.\n"
                       "\n"
                       "'tunerproperties help COMMAND' shows the help of a command.\n");
    for (const char *option : {"--help", "-h", "help"}) {
        const Run run = Workshop().run(line(option));
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
    }
}

void ToolUsageTest::helpOfPathsDescribesCompletions()
{
    QCOMPARE(Workshop().run(line("paths --help")).out,
             QStringLiteral("Usage: tunerproperties paths [OPTION...] FILE\n"
                            "\n"
                            "List the paths of all members that are set.\n"
                            "\n"
                            "Each line is a complete path to a value, as 'get' and 'set' accept it. With\n"
                            "--objects, the paths of objects and items are among them, as 'get', 'remove' and\n"
                            "'move' accept them. 'tunerproperties get --help' describes paths.\n"
                            "\n"
                            "The name - means standard input or output, even after --. For a file of that\n"
                            "name, write ./-.\n"
                            "\n"
                            "Options:\n"
                            "  -h, --help                 Show this help.\n"
                            "      --objects              List objects and items of lists as well, each\n"
                            "                             before what is in it.\n"
                            "      --complete BEGINNING   List how a path that begins like this can go on,\n"
                            "                             for completions of a shell. A step that can go on\n"
                            "                             ends with /.\n"
                            "      --assignments          With --complete: include members that are not set,\n"
                            "                             and complete PATH=VALUE as 'set' accepts it.\n"
                            "      --from FORM            Form of the input: xml, tagged, compressed,\n"
                            "                             snapshot or json (default: from the content or, for\n"
                            "                             a snapshot, the suffix .tps).\n"
                            "      --max-expansion TIMES  Accept a compressed document that expands to at\n"
                            "                             most TIMES its size (default: 50).\n"
                            "\n"
                            "Examples:\n"
                            "  tunerproperties paths receiver.xml | grep gain\n"
                            "      Find a value by its name.\n"
                            "  tunerproperties paths --objects receiver.xml | grep '/Node[^/]*$'\n"
                            "      List all nodes.\n"
                            "  tunerproperties paths receiver.xml --complete 'Component[name=audio]/'\n"
                            "      List the members and nodes of a component.\n"));
}

void ToolUsageTest::helpOfACommandDescribesIt()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties validate [OPTION...] FILE...\n"
                       "\n"
                       "List the problems of documents, one per line.\n"
                       "\n"
                       "A problem is reported with its line and column if only the XML reader can find\n"
                       "it, otherwise with the path of the object, which 'get' accepts. If JSON is not a\n"
                       "document, each reason is a problem with line, column and path. There is no\n"
                       "output for a valid document.\n"
                       "\n"
                       "After the message follow the value in the document, the values that are accepted\n"
                       "if they can be listed, and the one that was probably meant.\n"
                       "\n"
                       "The first 100 problems of a document are listed, followed by their total if\n"
                       "there are more.\n"
                       "\n"
                       "Several files are processed at once and reported in order, with a summary on\n"
                       "standard error.\n"
                       "\n"
                       "If 'lint' would list warnings, their number is reported on standard error. They\n"
                       "do not affect the exit status, except with --strict, which lists them after the\n"
                       "problems.\n"
                       "\n"
                       "With --json, each line is a JSON object for one file, with \"file\", \"status\"\n"
                       "(\"valid\", \"problems\" or \"unreadable\"), \"problems\" (those that are listed),\n"
                       "\"problemCount\" (their total), \"warnings\" (the number of warnings of 'lint'; with\n"
                       "--strict, \"findings\" has those that are listed) and \"error\" (why the file is\n"
                       "unreadable, or null). A problem has \"path\" (of the object, as 'get' accepts it;\n"
                       "empty for the document itself), \"line\", \"column\", \"message\", \"value\" (what the\n"
                       "document has), \"choices\" (what is accepted instead) and \"suggestion\"; what is\n"
                       "not known is null. There is no summary. A \"file\" that is not UTF-8 is escaped as\n"
                       "in messages, and \"fileBytes\" contains its bytes as hexadecimal digits.\n"
                       "\n"
                       "The name - means standard input or output, even after --. For a file of that\n"
                       "name, write ./-.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help                 Show this help.\n"
                       "      --strict               List the warnings of 'lint' as well; a document\n"
                       "                             that has any is not valid.\n"
                       "      --disable RULE         Do not apply these rules of 'lint'; separate\n"
                       "                             several by commas. 'lint --rules' lists them.\n"
                       "      --error RULE           Report the findings of these rules as errors\n"
                       "                             instead of warnings; separate several by commas.\n"
                       "      --from FORM            Form of the input: xml, tagged, compressed,\n"
                       "                             snapshot or json (default: from the content or, for\n"
                       "                             a snapshot, the suffix .tps).\n"
                       "  -j, --jobs NUMBER          Process up to NUMBER files at once (default: the\n"
                       "                             number of processors).\n"
                       "  -q, --quiet                Report only files that cannot be read or written.\n"
                       "                             The exit status reports whether there were\n"
                       "                             problems.\n"
                       "      --json                 Write a JSON object for each file to standard\n"
                       "                             output, one per line.\n"
                       "      --max-problems NUMBER  List at most NUMBER problems of a document\n"
                       "                             (default: 100), and their total.\n"
                       "      --max-expansion TIMES  Accept a compressed document that expands to at\n"
                       "                             most TIMES its size (default: 50).\n"
                       "      --special-files        Accept pipes and devices among several files. By\n"
                       "                             default these must be regular files, since a pipe\n"
                       "                             in a folder could block the others.\n"
                       "\n"
                       "Examples:\n"
                       "  tunerproperties validate receiver.xml\n"
                       "      List the problems of a document.\n"
                       "  tunerproperties validate --quiet -- *.xml && echo fine\n"
                       "      Check whether all documents are valid.\n"
                       "  tunerproperties validate --strict -- *.xml\n"
                       "      Accept only documents without warnings.\n"
                       "  tunerproperties validate --json -- *.xml\n"
                       "      Report the problems of many documents to a program.\n");
    for (const char *arguments : {"validate --help", "validate -h", "help validate"})
        QCOMPARE(Workshop().run(line(arguments)).all(), QStringLiteral("0\n") + expected);
}

void ToolUsageTest::helpOfACommandShowsEveryUsage()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties convert [OPTION...] IN OUT\n"
                       "       tunerproperties convert [OPTION...] --to FORM --out-dir DIR FILE...\n"
                       "\n"
                       "Convert documents to another form.\n"
                       "\n"
                       "An output is written completely or not at all. A document with problems is not\n"
                       "converted; the problems are written to standard error.\n"
                       "\n"
                       "XML and tagged records have numbers with two decimals, and no null texts. What\n"
                       "the output does not have is listed on standard error; --exact makes it an error.\n"
                       "Comments of an XML document are not a part of what is converted.\n"
                       "\n"
                       "Reading XML skips attributes and elements that the model does not have, and\n"
                       "replaces texts that are not numbers or booleans. --exact refuses that, and lists\n"
                       "it as 'lint' does.\n"
                       "\n"
                       "With --out-dir, any number of files are converted, several at once. A file that\n"
                       "fails does not stop the others. If two inputs would have the same output,\n"
                       "nothing is written. A summary follows on standard error.\n"
                       "\n"
                       "With --json, each line is a JSON object for one file, with \"file\", \"output\",\n"
                       "\"status\" (\"converted\", \"problems\", \"unreadable\" or \"unwritable\"), \"problems\",\n"
                       "\"problemCount\" and \"error\", as described in 'validate --help'; \"error\" is also\n"
                       "why the form cannot hold the document. \"outputBytes\" corresponds to \"fileBytes\".\n"
                       "\"losses\" lists what the output does not have, each with \"path\", \"before\" and\n"
                       "\"after\"; \"lossCount\" is their total. With --exact, \"findings\" lists what was\n"
                       "lost in reading, as 'lint --json' does, and \"warnings\" is the number of all.\n"
                       "\n"
                       "The name - means standard input or output, even after --. For a file of that\n"
                       "name, write ./-.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help                 Show this help.\n"
                       "      --from FORM            Form of the input: xml, tagged, compressed,\n"
                       "                             snapshot or json (default: from the content or, for\n"
                       "                             a snapshot, the suffix .tps).\n"
                       "      --to FORM              Form of the output: xml, tagged, compressed,\n"
                       "                             snapshot or json (default: from the suffix .xml,\n"
                       "                             .tpb, .tpz, .tps or .json; XML on standard output).\n"
                       "      --out-dir DIR          Write into the folder DIR, which is created if it\n"
                       "                             does not exist, under the names of the inputs with\n"
                       "                             the suffix of the form. Requires --to.\n"
                       "      --no-validate          Write the document even if it has problems.\n"
                       "      --exact                Do not convert a document that the form cannot hold\n"
                       "                             exactly, or an XML document of which something is\n"
                       "                             lost in reading it.\n"
                       "  -j, --jobs NUMBER          Process up to NUMBER files at once (default: the\n"
                       "                             number of processors).\n"
                       "  -q, --quiet                Report only files that cannot be read or written.\n"
                       "                             The exit status reports whether there were\n"
                       "                             problems.\n"
                       "      --json                 Write a JSON object for each file to standard\n"
                       "                             output, one per line.\n"
                       "      --max-problems NUMBER  List at most NUMBER problems of a document\n"
                       "                             (default: 100), and their total.\n"
                       "      --max-expansion TIMES  Accept a compressed document that expands to at\n"
                       "                             most TIMES its size (default: 50).\n"
                       "      --special-files        Accept pipes and devices among several files. By\n"
                       "                             default these must be regular files, since a pipe\n"
                       "                             in a folder could block the others.\n"
                       "\n"
                       "Examples:\n"
                       "  tunerproperties convert receiver.xml receiver.tpz\n"
                       "      Write the compressed form.\n"
                       "  tunerproperties convert receiver.tpz - | less\n"
                       "      Write XML to standard output.\n"
                       "  tunerproperties convert --to tagged --out-dir records -- *.xml\n"
                       "      Write records/NAME.tpb for every NAME.xml.\n");
    for (const char *arguments : {"convert --help", "convert -h", "help convert"})
        QCOMPARE(Workshop().run(line(arguments)).all(), QStringLiteral("0\n") + expected);
}

void ToolUsageTest::helpOfFmtDescribesTheLayout()
{
    const QString expected =
        QStringLiteral("Usage: tunerproperties fmt [OPTION...] FILE...\n"
                       "\n"
                       "Lay documents out as the library writes them, in place.\n"
                       "\n"
                       "In XML, each element is on a line, indented by two spaces, with its attributes\n"
                       "in double quotes. JSON has the layout of 'convert'. Only the layout changes:\n"
                       "comments, values as they are spelled, order, encoding and content that the model\n"
                       "does not have stay, and texts keep their blanks. Of empty lines between\n"
                       "elements, one is kept. Line ends become LF.\n"
                       "\n"
                       "A comment at the end of a line, after a tag, stays there; other comments have\n"
                       "lines of their own. The content of an element stays as it is if there is text\n"
                       "between its elements, or if it has the attribute xml:space=\"preserve\".\n"
                       "\n"
                       "A file is replaced only if it changes, completely or not at all, and is then\n"
                       "named on standard output. Standard input is written to standard output. A\n"
                       "document with problems is laid out as well. The result is read and compared with\n"
                       "the document before it is written.\n"
                       "\n"
                       "The binary forms have no layout: such files stay as they are.\n"
                       "\n"
                       "Several files are processed at once and reported in order, with a summary on\n"
                       "standard error. A file that fails does not stop the others.\n"
                       "\n"
                       "With --json, each line is a JSON object for one file, with \"file\", \"status\"\n"
                       "(\"unchanged\", \"formatted\", with --check \"unformatted\" instead, \"problems\" for\n"
                       "JSON that is not a document and for text that cannot be laid out, \"unreadable\"\n"
                       "or \"unwritable\"), \"problems\", \"problemCount\" and \"error\", as described in\n"
                       "'validate --help'.\n"
                       "\n"
                       "The name - means standard input or output, even after --. For a file of that\n"
                       "name, write ./-.\n"
                       "\n"
                       "Options:\n"
                       "  -h, --help                 Show this help.\n"
                       "      --check                Write nothing, and name the files that would\n"
                       "                             change. The exit status is 1 if there are any.\n"
                       "      --from FORM            Form of the input: xml, tagged, compressed,\n"
                       "                             snapshot or json (default: from the content or, for\n"
                       "                             a snapshot, the suffix .tps).\n"
                       "  -j, --jobs NUMBER          Process up to NUMBER files at once (default: the\n"
                       "                             number of processors).\n"
                       "  -q, --quiet                Report only files that cannot be read or written.\n"
                       "                             The exit status reports whether there were\n"
                       "                             problems.\n"
                       "      --json                 Write a JSON object for each file to standard\n"
                       "                             output, one per line.\n"
                       "      --max-problems NUMBER  List at most NUMBER problems of a document\n"
                       "                             (default: 100), and their total.\n"
                       "      --max-expansion TIMES  Accept a compressed document that expands to at\n"
                       "                             most TIMES its size (default: 50).\n"
                       "      --special-files        Accept pipes and devices among several files. By\n"
                       "                             default these must be regular files, since a pipe\n"
                       "                             in a folder could block the others.\n"
                       "\n"
                       "Examples:\n"
                       "  tunerproperties fmt receiver.xml\n"
                       "      Lay a document out, in place.\n"
                       "  tunerproperties fmt - < receiver.xml | diff receiver.xml -\n"
                       "      Show what would change.\n"
                       "  tunerproperties fmt --check -- *.xml\n"
                       "      Name the documents that have another layout.\n");
    const Run run = Workshop().run(line("fmt --help"));
    QCOMPARE(run.out, expected);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolUsageTest::helpOfMergeDescribesWhatIsNotMerged()
{
    const QString help = Workshop().run(line("merge --help")).out;
    QVERIFY2(
        help.contains(QLatin1String("What the reader of XML converts or skips, such as a misspelt number or an\n"
                                    "unknown attribute, is not merged. If THEIRS has such content that neither BASE\n"
                                    "nor OURS has, it is listed with line, column and path, nothing is written, and\n"
                                    "the exit status is 1. New comments of THEIRS are not merged, either; they are\n"
                                    "noted.\n")),
        qPrintable(help));
    QVERIFY2(
        help.contains(QLatin1String("      --allow-losses         Merge although content of THEIRS is lost, which is\n"
                                    "                             listed nevertheless.\n")),
        qPrintable(help));
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

void ToolUsageTest::fileNameIsNeverAnOption_data()
{
    const Rows<QString, QString> row("name", "text");
    row("-h.xml", "unknown option '-h.xml'");
    row("-v.xml", "unknown option '-v.xml'");
    row("-q.xml", "unknown option '-q.xml'");
    row("-qh", "unknown option '-qh'");
    row("-hq", "unknown option '-hq'");
    row("--help=.xml", "option '--help' takes no value");
    row("--version=.xml", "option '--version' takes no value");
    row("--quiet=.xml", "option '--quiet' takes no value");
    row("--help.xml", "unknown option '--help.xml'");
    row("--hel", "unknown option '--hel'; did you mean '--help'?");
    row("---help", "unknown option '---help'; did you mean '--help'?");
    row("--out-dir=dir.xml", "unknown option '--out-dir=dir.xml'");
    row("--=.xml", "unknown option '--=.xml'");
    row("--help", "option '--help' cannot be combined with files");
    row("-h", "option '-h' cannot be combined with files");
    row("--version", "option '--version' cannot be combined with files");
    row("-qmljsdebugger=file:x.xml", "unknown option '-qmljsdebugger=file:x.xml'");
}

// As in "validate --quiet *.xml && echo fine".
void ToolUsageTest::fileNameIsNeverAnOption()
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

void ToolUsageTest::everyCommandRejectsAFileNameAsAnOption_data()
{
    QTest::addColumn<QStringList>("arguments");
    for (const char *arguments :
         {"show -h.xml", "convert -h.xml a.tpb", "convert a.xml -h.tpb", "diff a.xml -h.xml", "get -h.xml type",
          "set -h.xml type SCP", "new -h.xml", "schema -h.xml", "help -h.xml"})
        QTest::newRow(arguments) << line(arguments);
}

void ToolUsageTest::everyCommandRejectsAFileNameAsAnOption()
{
    QFETCH(QStringList, arguments);
    const Run run = Workshop().run(arguments);
    QVERIFY2(run.err.startsWith(QStringLiteral("tunerproperties: unknown option '-h.")), qPrintable(run.err));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

void ToolUsageTest::optionWithAValueCanBeUsedOnlyOnce()
{
    Workshop shop;
    shop.write(QStringLiteral("--out-dir=dir.xml"), smallXml);
    shop.write(QStringLiteral("good.xml"), smallXml);
    const Run run = shop.run(line("convert --to tagged --out-dir records --out-dir=dir.xml good.xml"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: option '--out-dir' can be used only once; for a file of that name, write "
                            "'./--out-dir=dir.xml' or put '--' before it\n"
                            "tunerproperties: try 'tunerproperties convert --help'\n"));
    QCOMPARE(run.status, 2);
    QCOMPARE(shop.files(), QStringList({QStringLiteral("--out-dir=dir.xml"), QStringLiteral("good.xml")}));
}

void ToolUsageTest::valuesOfOptionsAreAcceptedInEverySpelling()
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

void ToolUsageTest::versionIsThatOfTheProject_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("--version") << line("--version");
    QTest::newRow("-v") << line("-v");
    QTest::newRow("after a command") << line("show --version");
}

void ToolUsageTest::versionIsThatOfTheProject()
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
