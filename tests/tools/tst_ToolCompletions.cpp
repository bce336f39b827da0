// SPDX-License-Identifier: MIT
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

private:
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

TEST_SUITE(ToolCompletionsTest)
#include "tst_ToolCompletions.moc"
