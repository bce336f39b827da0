// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include "tools/Terminal.h"
#include "tools/Tool.h"

/// The completions in the shells that are installed.
class ToolCompletionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void possibleWordsAreCompleted_data();
    void possibleWordsAreCompleted();
    void bashSeparatesAnOptionFromItsValue();
    void bashFindsTheCommandAfterOptions();
    void pathsAreCompletedWhileTheyAreTyped_data();
    void pathsAreCompletedWhileTheyAreTyped();
    void nothingInADocumentIsExecuted_data();
    void nothingInADocumentIsExecuted();
    void errorsAreSilentWhileCompleting_data();
    void errorsAreSilentWhileCompleting();

private:
    void addShells(const char *column);
    std::unique_ptr<Terminal> startShell(const QString &shell);
    QStringList enter(Terminal &terminal, const QByteArray &keys);
    QStringList completed(const QString &shell, const QString &typed);
    QString completedByBash(const QStringList &words);
    QString completedByFish(const QString &typed);
    QString completedByZsh(const QString &typed);

    std::unique_ptr<Workshop> m_workshop;
    QTemporaryDir m_kept;
};

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

const char bash[] = BASH_PROGRAM; // empty if it is not there, as the others
const char fish[] = FISH_PROGRAM;
const char zsh[] = ZSH_PROGRAM;

QString outputOf(const char *program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(text(program), arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished())
        return text("(does not end)");
    return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
}

} // namespace

void ToolCompletionsTest::init()
{
    m_workshop = std::make_unique<Workshop>();
    QVERIFY(QDir().mkpath(m_workshop->path(text("folder"))));
    QVERIFY(QDir().mkpath(m_workshop->path(text("home"))));
    for (const char *name : {"tuner1.xml", "tuner 2.xml", "other"})
        m_workshop->write(text(name), smallXml);
}

void ToolCompletionsTest::cleanup()
{
    m_workshop.reset();
}

/// Sorted, and without what a shell adds: a description, the slash after a folder, the backslash before a blank.
QStringList ToolCompletionsTest::completed(const QString &shell, const QString &typed)
{
    const QString output = shell == text("bash") ? completedByBash(typed.split(QLatin1Char(' ')))
        : shell == text("fish")                  ? completedByFish(typed)
                                                 : completedByZsh(typed);
    QStringList result;
    for (const QString &line : output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString word = line.section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('\\'));
        result.append(word.endsWith(QLatin1Char('/')) || word.endsWith(QLatin1Char('=')) ? word.chopped(1) : word);
    }
    result.removeDuplicates(); // zsh may complete twice
    result.sort();
    return result;
}

QString ToolCompletionsTest::completedByBash(const QStringList &words)
{
    const QString script = text("source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1))\n"
                                "complete -p tunerproperties > /dev/null || exit\n"
                                "_tunerproperties; printf '%s\\n' \"${COMPREPLY[@]}\"");
    return outputOf(
        bash,
        QStringList{text("--norc"), text("-c"), script, text("bash"), text(PAGES_DIR "/tunerproperties.bash")} + words,
        m_workshop->path(text(".")));
}

QString ToolCompletionsTest::completedByFish(const QString &typed)
{
    const QString script = text("source $argv[1]; complete -C $argv[2]");
    return outputOf(fish, {text("--no-config"), text("-c"), script, text(PAGES_DIR "/tunerproperties.fish"), typed},
                    m_workshop->path(text(".")));
}

// Only the line editor of zsh completes, and only on a terminal.
QString ToolCompletionsTest::completedByZsh(const QString &typed)
{
    // Initializing the completions takes long, so its result is kept for the next time.
    m_workshop->write(text("home/.zshrc"),
                      "PS1='ready> '\n"
                      "fpath=(" PAGES_DIR " $fpath)\n"
                      "autoload -Uz compinit\n"
                      "compinit -u -d '"
                          + QFile::encodeName(m_kept.filePath(text("zcompdump")))
                          + "'\n"
                            "cd ..\n"
                            // Records every candidate; with these options compadd only tests.
                            "compadd() {\n"
                            "    if [[ \" $* \" != *\\ -[OAD]\\ * ]]; then\n"
                            "        local -a offered\n"
                            "        builtin compadd -A offered \"$@\"\n"
                            "        print -rl -- $offered >> home/offered\n"
                            "    fi\n"
                            "    builtin compadd \"$@\"\n"
                            "}\n"
                            "leave() { exit }\n"
                            "zle -N leave\n"
                            "bindkey '^X' leave\n"
                            "unsetopt list_beep always_last_prompt\n"
                            "LISTMAX=1000\n");
    Terminal terminal(m_workshop->path(text("home")), text("ZDOTDIR=$PWD exec " ZSH_PROGRAM " -i"), 200);
    if (!terminal.await("ready> "))
        return QString::fromUtf8(terminal.written());
    terminal.type(typed.toUtf8() + "\t\x18");
    terminal.readAll();
    return QString::fromUtf8(m_workshop->read(text("home/offered")));
}

void ToolCompletionsTest::possibleWordsAreCompleted_data()
{
    QTest::addColumn<QString>("shell");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("expected");
    QStringList shells;
    for (const auto &shell : {std::make_pair("bash", bash), std::make_pair("fish", fish), std::make_pair("zsh", zsh)}) {
        if (*shell.second)
            shells.append(text(shell.first));
    }
    const auto row = [&](const char *typed, const QStringList &expected) {
        for (const QString &shell : qAsConst(shells))
            QTest::newRow(qPrintable(shell + text(": ") + text(typed))) << shell << text(typed) << expected;
    };
    const QStringList forms = {text("compressed"), text("json"), text("snapshot"), text("tagged"), text("xml")};
    row("tunerproperties va", {text("validate")});
    row("tunerproperties co", {text("convert")});
    row("tunerproperties help s", {text("schema"), text("set"), text("show")});
    row("tunerproperties show --from ", forms);
    row("tunerproperties convert --from xml tuner1.xml --to ", forms);
    row("tunerproperties convert --to t", {text("tagged")});
    row("tunerproperties show --f", {text("--format"), text("--from")});
    row("tunerproperties show --format ", {text("html"), text("json"), text("tree")});
    row("tunerproperties schema --format ", {text("author"), text("json"), text("model"), text("xsd")});
    row("tunerproperties validate --qu", {text("--quiet")});
    row("tunerproperties convert --out-dir fo", {text("folder")});
    row("tunerproperties convert --out-dir tu", {});
    row("tunerproperties validate other tune", {text("tuner 2.xml"), text("tuner1.xml")});
    row("tunerproperties validate --jobs 2 ot", {text("other")});
    row("tunerproperties lint --disable unkn",
        {text("unknown-attribute"), text("unknown-element"), text("unknown-version")});
    row("tunerproperties validate --strict --error lost-d", {text("lost-decimals")});
}

void ToolCompletionsTest::possibleWordsAreCompleted()
{
    QFETCH(QString, shell);
    QFETCH(QString, typed);
    QFETCH(QStringList, expected);
    QStringList found = completed(shell, typed);
    if (expected.isEmpty()) // which zsh notes as no file at all
        found.removeAll(text("(no such file)"));
    QCOMPARE(found, expected);
}

// Bash splits "--to=t" into three words.
void ToolCompletionsTest::bashSeparatesAnOptionFromItsValue()
{
    const QStringList start = {text("tunerproperties"), text("convert"), text("--to"), text("=")};
    QCOMPARE(completedByBash(start), text("xml\ntagged\ncompressed\nsnapshot\njson\n"));
    QCOMPARE(completedByBash(start + QStringList(text("t"))), text("tagged\n"));
    QCOMPARE(completedByBash(start + QStringList({text("xml"), text("oth")})), text("other\n"));
}

void ToolCompletionsTest::bashFindsTheCommandAfterOptions()
{
    QCOMPARE(completedByBash(line("tunerproperties --from xml convert --out")), text("--out-dir\n"));
    QCOMPARE(completedByBash(line("tunerproperties -j = 3 validate --js")), text("--json\n"));
    QCOMPARE(completedByBash(line("tunerproperties --from xml sc")), text("schema\n"));
}

void ToolCompletionsTest::addShells(const char *column)
{
    QTest::addColumn<QString>(column);
    for (const auto &shell : {std::make_pair("bash", bash), std::make_pair("fish", fish), std::make_pair("zsh", zsh)}) {
        if (*shell.second)
            QTest::newRow(shell.first) << text(shell.first);
    }
}

/// A shell on a terminal. The program is a function there, which writes its arguments into a file, except for the
/// completions, which call the program itself.
std::unique_ptr<Terminal> ToolCompletionsTest::startShell(const QString &shell)
{
    const QByteArray record = "printf '%s\\0' \"$@\" > arguments; echo 'recor''ded'";
    const QByteArray path = "PATH=" + QFile::encodeName(QFileInfo(text(TOOL_PROGRAM)).path()) + ":$PATH\n";
    m_workshop->write(text("home/.bashrc"),
                      path + "PS1='ready> '\ncd ..\nsource '" PAGES_DIR "/tunerproperties.bash'\ntunerproperties() { "
                          + record + "; }\n");
    m_workshop->write(text("home/.zshrc"),
                      path
                          + "PS1='ready> '\ncd ..\nfpath=(" PAGES_DIR " $fpath)\nautoload -Uz compinit\n"
                            "compinit -u -d '"
                          + QFile::encodeName(m_kept.filePath(text("dump"))) + "'\ntunerproperties() { " + record
                          + " }\nunsetopt list_beep always_last_prompt\n");
    m_workshop->write(text("home/rc.fish"),
                      "set -x PATH '" + QFile::encodeName(QFileInfo(text(TOOL_PROGRAM)).path())
                          + "' $PATH\ncd ..\nsource '" PAGES_DIR "/tunerproperties.fish'\n"
                            "function tunerproperties; printf '%s\\0' $argv > arguments; echo 'recor''ded'; end\n"
                            "function fish_prompt; echo -n 'ready> '; end\nset -g fish_autosuggestion_enabled 0\n");
    const QString start = shell == text("bash") ? text("exec " BASH_PROGRAM " --noprofile --rcfile .bashrc -i")
        : shell == text("fish")                 ? text("exec " FISH_PROGRAM " --no-config -i -C 'source rc.fish'")
                                                : text("ZDOTDIR=$PWD exec " ZSH_PROGRAM " -i");
    auto terminal = std::make_unique<Terminal>(m_workshop->path(text("home")), text("HOME=$PWD ") + start, 200);
    return terminal->await("ready> ") ? std::move(terminal) : nullptr;
}

/// The arguments of the program after these keys and Enter.
QStringList ToolCompletionsTest::enter(Terminal &terminal, const QByteArray &keys)
{
    m_workshop->write(text("arguments"), "");
    const int before = terminal.written().count("recorded");
    terminal.type(keys + "\r");
    if (!terminal.awaitThat([&] { return terminal.written().count("recorded") > before; }))
        return {text("(not executed) ") + QString::fromUtf8(terminal.written())};
    QStringList result;
    for (const QByteArray &argument : m_workshop->read(text("arguments")).split('\0'))
        result.append(QString::fromUtf8(argument));
    result.removeLast(); // after the last terminator
    return result;
}

void ToolCompletionsTest::pathsAreCompletedWhileTheyAreTyped_data()
{
    addShells("shell");
}

void ToolCompletionsTest::pathsAreCompletedWhileTheyAreTyped()
{
    QFETCH(QString, shell);
    m_workshop->write(text("r.xml"),
                      QByteArray(smallXml).replace("baseresource=\"b\"", "baseresource='b' quantity='2'"));
    m_workshop->write(text("two.xml"),
                      QByteArray(smallXml).replace("<ValueItem>",
                                                   "<ValueItem><ValueInt id=\"other\" value=\"1\"/>"
                                                   "</ValueItem><ValueItem>"));
    const std::unique_ptr<Terminal> terminal = startShell(shell);
    QVERIFY(terminal);
    const QString node = text("Component[type=t,name=c]/Node[id=n]/");
    const auto arguments = [&](const char *keys) { return enter(*terminal, keys).join(QLatin1Char('|')); };
    QCOMPARE(arguments("tunerproperties get r.xml qu\t"), text("get|r.xml|quantity"));
    // No blank follows a step that can go on.
    QCOMPARE(arguments("tunerproperties get r.xml Comp\tN\ti\t"), text("get|r.xml|") + node + text("id"));
    QCOMPARE(arguments("tunerproperties get 'tuner 2.xml' Comp\tN\tV\tV\tv\t"),
             text("get|tuner 2.xml|") + node + text("ValueItem[id=i]/ValueInt/value"));
    QCOMPARE(arguments("tunerproperties get --from xml r.xml 'Component[name=c]/N\ti\t"),
             text("get|--from|xml|r.xml|Component[name=c]/Node[id=n]/id"));
    // One of two, in double quotes.
    QCOMPARE(arguments("tunerproperties get two.xml \"Component[1]/Node/V\to\tV\tv\t"),
             text("get|two.xml|Component[1]/Node/ValueItem[id=other]/ValueInt/value"));
    // Values, of every assignment; members that are not set.
    QCOMPARE(arguments("tunerproperties set r.xml name=x ty\tRec\t"), text("set|r.xml|name=x|type=Receiver"));
    QCOMPARE(arguments("tunerproperties set r.xml hwP\tt\t"), text("set|r.xml|hwProcessing=true"));
    QCOMPARE(arguments("tunerproperties get r.xml hwP\t"), text("get|r.xml|hwP"));
    // What is unset has no value.
    QCOMPARE(arguments("tunerproperties set --unset r.xml qu\t"), text("set|--unset|r.xml|quantity"));
    // Several rules.
    QCOMPARE(arguments("tunerproperties lint r.xml --disable lost-decimals,useless\t"),
             text("lint|r.xml|--disable|lost-decimals,useless-comment"));
    // Without a file before it, the argument is a file, as for "get PATH FILE".
    QCOMPARE(arguments("tunerproperties get tuner1\tty\t"), text("get|tuner1.xml|type"));
    QCOMPARE(arguments("tunerproperties get quantity tuner1\t"), text("get|quantity|tuner1.xml"));
    QCOMPARE(arguments("tunerproperties get ./r.xml qu\t"), text("get|./r.xml|quantity"));
}

void ToolCompletionsTest::nothingInADocumentIsExecuted_data()
{
    addShells("shell");
}

void ToolCompletionsTest::nothingInADocumentIsExecuted()
{
    QFETCH(QString, shell);
    // The id of a node in XML, and how a path has it.
    const std::vector<std::pair<QByteArray, QString>> hostile = {
        {"a$(touch executed)", text("a$(touch executed)")},
        {"b`touch executed`", text("b`touch executed`")},
        {"c'; touch executed; '", text(R"("c'; touch executed; '")")},
        {"d&quot;; touch executed; &quot;", text(R"("d\"; touch executed; \"")")},
        {"e!!f!$", text("e!!f!$")},
        {"g\\h\\", text(R"("g\\h\\")")},
        {"i&amp;touch executed|touch executed&gt;executed&lt;x", text("i&touch executed|touch executed>executed<x")},
        {"j{a,b}*?~#$HOME", text(R"("j{a,b}*?~#$HOME")")},
        {"k&#10;touch executed&#13;&#9;x", text(R"("k\ntouch executed\r\tx")")},
        {"l\xC2\x9B\xE2\x80\xAEx", text(R"("l\u009b\u202ex")")},
        {"m\xC3\xA4%s%n-", text("m\u00E4%s%n-")},
        {"n[$(touch executed)]", text(R"("n[$(touch executed)]")")},
        {"(touch executed)", text("(touch executed)")},
        {"~", text("~")},
    };
    const std::unique_ptr<Terminal> terminal = startShell(shell);
    QVERIFY(terminal);
    for (const auto &id : hostile) {
        m_workshop->write(text("h.xml"), QByteArray(smallXml).replace("\"n\"", "\"" + id.first + "\""));
        const QStringList expected = {text("get"), text("h.xml"),
                                      text("Component[type=t,name=c]/Node[id=%1]/id").arg(id.second)};
        for (const char *quote : {"", "'", "\""})
            QCOMPARE(enter(*terminal, "tunerproperties get h.xml " + QByteArray(quote) + "Comp\tN\ti\t")
                         .join(QLatin1Char('|')),
                     expected.join(QLatin1Char('|')));
        QVERIFY(!m_workshop->files().contains(text("executed")));
    }
    // Neither is what has been typed.
    m_workshop->write(text("$(touch executed).xml"), smallXml);
    QCOMPARE(enter(*terminal, "tunerproperties get '$(touch executed).xml' Comp\tN\ti\t").mid(0, 2),
             (QStringList{text("get"), text("$(touch executed).xml")}));
    enter(*terminal, "tunerproperties get h.xml '$(touch executed)`touch executed`\t\x15tunerproperties");
    enter(*terminal,
          "tunerproperties lint h.xml --disable '$(touch executed)`touch executed`,lost\t\x15tunerproperties");
    QCOMPARE(enter(*terminal, "tunerproperties get h.xml ty\t").value(2), text("type"));
    QVERIFY(!m_workshop->files().contains(text("executed")));
}

void ToolCompletionsTest::errorsAreSilentWhileCompleting_data()
{
    addShells("shell");
}

void ToolCompletionsTest::errorsAreSilentWhileCompleting()
{
    QFETCH(QString, shell);
    m_workshop->write(text("broken.xml"), "<TunerProperties");
    QCOMPARE(mkfifo(qPrintable(m_workshop->path(text("pipe.xml"))), 0600), 0);
    const std::unique_ptr<Terminal> terminal = startShell(shell);
    QVERIFY(terminal);
    for (const char *typed : {"get broken.xml type", "get missing.xml type", "get pipe.xml type", "get - type",
                              "get tuner1.xml Component[type", "get tuner1.xml type/x", "set tuner1.xml nothing="}) {
        const QByteArray shown = QByteArray(typed).replace("[", "\\[");
        QCOMPARE(enter(*terminal, "tunerproperties " + shown + "x\t").join(QLatin1Char(' ')).trimmed(),
                 text(typed) + QLatin1Char('x'));
    }
    const QByteArray written = terminal->written();
    for (const char *message : {"tunerproperties: ", "Premature", "No such file", "error"})
        QVERIFY2(!written.contains(message), written.constData());
}

TEST_SUITE(ToolCompletionsTest)
#include "tst_ToolCompletions.moc"
