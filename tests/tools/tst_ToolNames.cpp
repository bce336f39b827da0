// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/Tool.h"

/// File names are bytes: they reach the system as they were typed, and messages show them escaped.
class ToolNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nameThatIsNotUtf8OpensItsOwnFile_data();
    void nameThatIsNotUtf8OpensItsOwnFile();
    void everyCommandReadsAFileWhoseNameIsNotUtf8_data();
    void everyCommandReadsAFileWhoseNameIsNotUtf8();
    void namesReachTheSystemUnchanged_data();
    void namesReachTheSystemUnchanged();
    void setWritesAFileWhoseNameIsNotUtf8();
    void dashMeansStandardInputEvenAfterTwoDashes();
    void aDashInAFolderIsAFile();
    void outputsInAFolderKeepTheBytesOfTheirNames();
    void namesThatLookAlikeAsTextAreDifferentOutputs();
    void jsonContainsTheBytesOfANameThatIsNotUtf8();
    void namesAreEscapedInMessages();
    void temporaryFilesAreInTheFolderThatTheEnvironmentNames_data();
    void temporaryFilesAreInTheFolderThatTheEnvironmentNames();
    void pathsAndValuesAreUtf8_data();
    void pathsAndValuesAreUtf8();

private:
    /// The shell creates the names, since a QString cannot hold them.
    Run shell(const char *script) { return m_workshop->shell(QStringLiteral("set -e; ") + QString::fromUtf8(script)); }

    std::unique_ptr<Workshop> m_workshop;
};

void ToolNamesTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    m_workshop->write(QStringLiteral("small"), smallXml);
    m_workshop->write(QStringLiteral("broken"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
}

// QTemporaryDir cannot remove files whose names are not text.
void ToolNamesTest::cleanup()
{
    QCOMPARE(m_workshop->shell(QStringLiteral("rm -rf -- ..?* * .[!.]*")).status, 0);
    m_workshop.reset();
}

void ToolNamesTest::nameThatIsNotUtf8OpensItsOwnFile_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"C", "C.UTF-8", "en_US.ISO-8859-1"})
        QTest::newRow(locale) << QString::fromUtf8(locale);
}

// The valid file is beside it, under the name that decoding and encoding the other name results in.
void ToolNamesTest::nameThatIsNotUtf8OpensItsOwnFile()
{
    QFETCH(QString, locale);
    m_workshop->setEnvironment(QStringLiteral("LC_ALL"), locale);
    const Run run = shell(R"sh(bad=$(printf '\377.xml'); good=$(printf '\357\277\275.xml')
                             cp broken "$bad"; cp small "$good"
                             "$tool" validate "$good"
                             "$tool" validate "$bad")sh");
    QCOMPARE(run.out,
             QStringLiteral("\\xff.xml: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                            "DirectionFinder\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolNamesTest::everyCommandReadsAFileWhoseNameIsNotUtf8_data()
{
    const Rows<QString, QString> row("command", "out");
    row("show $name.xml | head -n 1", "TunerProperties\n");
    row("validate $name.xml", "");
    row("convert $name.xml - | head -n 1", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    row("diff small $name.xml", "");
    row("get $name.xml type", "SCP\n");
    row("set $name.xml type MCP && \"$tool\" get $name.xml type", "MCP\n");
    row("show --format html $name.xml | grep -o '<title>[^<]*'", "<title>\\xff.xml\n");
}

void ToolNamesTest::everyCommandReadsAFileWhoseNameIsNotUtf8()
{
    QFETCH(QString, command);
    QFETCH(QString, out);
    const Run run =
        m_workshop->shell(QStringLiteral("name=$(printf '\\377'); cp small $name.xml; \"$tool\" ") + command);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, out);
    QCOMPARE(run.status, 0);
}

void ToolNamesTest::namesReachTheSystemUnchanged_data()
{
    const Rows<QString, QString> row("name", "shown");
    row(R"(\357\273\277.xml)", R"(\ufeff.xml)");
    row(R"(\\xff.xml)", R"(\\xff.xml)");
    row(R"(e\314\201.xml)", "e\xCC\x81.xml");
    row(R"(\355\240\200.xml)", R"(\xed\xa0\x80.xml)");
    row(R"(a\001\033\177.xml)", R"(a\u0001\u001b\u007f.xml)");
    row(R"(a\342\200\256lmx.xml)", R"(a\u202elmx.xml)");
    row(R"(%%1%%2.xml)", "%1%2.xml");
    row(R"(:/a\200.xml)", R"(:/a\x80.xml)");
}

void ToolNamesTest::namesReachTheSystemUnchanged()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    const Run run = m_workshop->shell(QStringLiteral(R"(name=$(printf '%1'); mkdir -p :; cp small "$name"
                                                    "$tool" convert "$name" "$name.tpb" && test -f "$name.tpb"
                                                    "$tool" get "$name" name)")
                                          .arg(name));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: ") + shown + QStringLiteral(": name: is not set\n"));
    QCOMPARE(run.status, 1);
}

void ToolNamesTest::setWritesAFileWhoseNameIsNotUtf8()
{
    const Run run = shell(R"sh(name=$(printf '\377.xml'); other=$(printf '\357\277\275.xml'); cp small "$name"
                             "$tool" set "$name" quantity 7
                             test ! -e "$other"; "$tool" get "$name" quantity)sh");
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, QStringLiteral("7\n"));
}

void ToolNamesTest::dashMeansStandardInputEvenAfterTwoDashes()
{
    m_workshop->write(QStringLiteral("-"), smallXml);
    const Run run = m_workshop->run(line("validate -- -"), m_workshop->read(QStringLiteral("broken")));
    QCOMPARE(
        run.out,
        QStringLiteral(
            "-: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void ToolNamesTest::aDashInAFolderIsAFile()
{
    m_workshop->write(QStringLiteral("-"), m_workshop->read(QStringLiteral("broken")));
    for (const char *arguments : {"validate ./-", "validate -- ./-"}) {
        const Run run = m_workshop->run(line(arguments), smallXml);
        QCOMPARE(run.out,
                 QStringLiteral("./-: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or "
                                "DirectionFinder\n"));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 1);
    }
}

void ToolNamesTest::outputsInAFolderKeepTheBytesOfTheirNames()
{
    const Run run = shell(R"sh(name=$(printf 'a\377\344'); folder=$(printf 'out\351'); cp small "$name.xml"
                             "$tool" convert --to tagged --out-dir "$folder" "$name.xml"
                             test -f "$folder/$name.tpb"; ls | wc -l)sh");
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out.trimmed(), QStringLiteral("4"));
}

void ToolNamesTest::namesThatLookAlikeAsTextAreDifferentOutputs()
{
    const Run run = shell(R"sh(a=$(printf '\377'); b=$(printf '\376'); cp small "$a.xml"; cp small "$b.xml"
                             "$tool" convert --quiet --to tagged --out-dir out "$a.xml" "$b.xml"; ls out | wc -l
                             cp small "$a.json"; "$tool" convert --to tagged --out-dir out "$a.xml" "$a.json")sh");
    QCOMPARE(run.out.trimmed(), QStringLiteral("2"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: '\\xff.xml' and '\\xff.json' would both be written to 'out/\\xff.tpb'\n"
                            "tunerproperties: try 'tunerproperties convert --help'\n"));
}

void ToolNamesTest::jsonContainsTheBytesOfANameThatIsNotUtf8()
{
    const Run run = shell(R"sh(a=$(printf '\377\\.xml'); b=$(printf 'b\\\342\200\256.xml'); cp small "$a"; cp small "$b"
                             "$tool" convert --json --to tagged --out-dir out "$a" "$b")sh");
    QCOMPARE(run.bytes,
             QByteArray(R"({"file":"\\xff\\\\.xml","fileBytes":"ff5c2e786d6c","output":"out/\\xff\\\\.tpb",)"
                        R"("outputBytes":"6f75742fff5c2e747062","status":"converted","problems":[],"problemCount":0,)"
                        R"("losses":[],"lossCount":0,"error":null})"
                        "\n"
                        R"({"file":"b\\\u202e.xml","output":"out/b\\\u202e.tpb","status":"converted","problems":[],)"
                        R"("problemCount":0,)"
                        R"("losses":[],"lossCount":0,"error":null})"
                        "\n"));
}

void ToolNamesTest::namesAreEscapedInMessages()
{
    const Run run = shell(R"sh("$tool" validate "$(printf 'no\377\033[31m\n\302\233.xml')")sh");
    QCOMPARE(run.err,
             QStringLiteral(R"(tunerproperties: no\xff\u001b[31m\n\u009b.xml: cannot open: No such file or directory)"
                            "\n"));
    QCOMPARE(run.status, 3);
    const Run option = shell(R"sh("$tool" validate "$(printf -- '-\377')")sh");
    QCOMPARE(option.err.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral(R"(tunerproperties: unknown option '-\xff'; for a file of that name, write )"
                            R"('./-\xff' or put '--' before it)"));
    QCOMPARE(shell(R"sh("$tool" "$(printf '\377')")sh").err.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral(R"(tunerproperties: unknown command '\xff')"));
}

void ToolNamesTest::temporaryFilesAreInTheFolderThatTheEnvironmentNames_data()
{
    const Rows<QString, QString> row("folder", "locale");
    row("plain", "");
    row("beyond \xC3\x84SCII", "loaded\n"); // to decode the name
}

// Standard input is copied into a temporary file without a name; here, it does not end.
void ToolNamesTest::temporaryFilesAreInTheFolderThatTheEnvironmentNames()
{
    QFETCH(QString, folder);
    QFETCH(QString, locale);
    m_workshop->setEnvironment(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    m_workshop->setEnvironment(QStringLiteral("TMPDIR"), m_workshop->path(folder));
    const Run run = shell(R"sh(mkdir "$TMPDIR"
                             mkfifo endless
                             exec 3<>endless
                             "$tool" validate - <&3 & tool_id=$!
                             until readlink /proc/$tool_id/fd/* | grep -o "^$TMPDIR/"; do sleep 0.01; done
                             ! grep -q /locale/ /proc/$tool_id/maps || echo loaded
                             kill $tool_id)sh");
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, m_workshop->path(folder) + QStringLiteral("/\n") + locale);
    QCOMPARE(run.status, 0);
}

void ToolNamesTest::pathsAndValuesAreUtf8_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("a path") << QStringLiteral("get small \"$bytes\"");
    QTest::newRow("a value") << QStringLiteral("set small name \"$bytes\"");
    QTest::newRow("the value of an option") << QStringLiteral("new --type SCP --name \"$bytes\"");
    QTest::newRow("a form") << QStringLiteral("show --from \"$bytes\" small");
    QTest::newRow("a command") << QStringLiteral("help \"$bytes\"");
}

void ToolNamesTest::pathsAndValuesAreUtf8()
{
    QFETCH(QString, command);
    const Run run = m_workshop->shell(QStringLiteral("bytes=$(printf 'a\\377b'); \"$tool\" ") + command);
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("tunerproperties: 'a\\xffb' is not valid UTF-8"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
    QCOMPARE(m_workshop->read(QStringLiteral("small")), QByteArray(smallXml));
}

TEST_SUITE(ToolNamesTest)
#include "tst_ToolNames.moc"
