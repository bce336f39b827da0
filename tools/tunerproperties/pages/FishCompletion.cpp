// SPDX-License-Identifier: MIT
#include "Pages.h"

#include "commands/Commands.h"
#include "commands/HelpText.h"

namespace {

QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString line(const QString &condition, const QString &rest)
{
    return QStringLiteral("complete -c %1 -n %2 %3\n").arg(HelpText::program(), quoted(condition), rest);
}

/// Files are what the shell completes by itself.
QString values(Takes takes, const QStringList &words)
{
    switch (takes) {
    case Takes::Word:
        return QStringLiteral(" -x -a ") + quoted(words.join(QLatin1Char(' ')));
    case Takes::Words:
        return QStringLiteral(" -x -a ")
            + quoted(QStringLiteral("(__fish_complete_list , 'string split \" \" \"%1\"')")
                         .arg(words.join(QLatin1Char(' '))));
    case Takes::File:
        return QStringLiteral(" -r -F");
    case Takes::Folder:
        return QStringLiteral(" -x -a '(__fish_complete_directories)'");
    default:
        return QStringLiteral(" -x");
    }
}

/// The options of all commands that have a value.
QString optionsWithValue()
{
    QStringList names;
    for (const Command &command : allCommands()) {
        for (const Option &option : command.options) {
            if (!option.value.isEmpty())
                names += option.allTyped();
        }
    }
    names.removeDuplicates();
    return names.join(QLatin1Char(' '));
}

/// Functions that print the file and complete a path in it. Nothing that was typed or found is evaluated.
QString pathFunctions()
{
    return QStringLiteral(R"(
function __%1_file
    set -l typed (commandline -opc)
    set -l has_command
    set -l is_value
    set -l has_options yes
    for word in $typed[2..-1]
        if test -n "$is_value"
            set is_value
        else if test -n "$has_options" -a "$word" = --
            set has_options
        else if test -n "$has_options"; and contains -- "$word" %2
            set is_value yes
        else if test -n "$has_options"; and string match -q -- '-?*' "$word"
            continue
        else if test -z "$has_command"
            set has_command yes
        else
            set -l file (string replace -r '^~/' "$HOME/" -- "$word" | string collect)
            test -f "$file"; and printf '%s' "$file"
            return
        end
    end
    return 1
end

function __%1_paths
    set -l program (commandline -opc)[1]
    string match -q -- '*/%1' "$program"; or set program %1
    set program (string replace -r '^~/' "$HOME/" -- "$program")
    set -l file (__%1_file | string collect)
    set -l token (commandline -ct | string collect)
    set -l beginning (begin
        string unescape -- "$token"
        or string unescape -- "$token'"
        or string unescape -- "$token\""
    end | string collect)
    command $program paths $argv --complete "$beginning" -- "$file" 2>/dev/null </dev/null
end
)")
        .arg(HelpText::program(), optionsWithValue());
}

/// The call that completes a path, without values if an option says so.
QString pathsOf(const Command &command)
{
    if (command.takes != Takes::Assignment)
        return QStringLiteral("(__%1_paths)").arg(HelpText::program());
    return QStringLiteral("(contains -- %2 (commandline -opc); and __%1_paths; or __%1_paths --assignments)")
        .arg(HelpText::program(), command.withoutValues);
}

QString optionLine(const QString &condition, const Option &option)
{
    QString rest;
    for (const QString &name : option.names)
        rest += (name.size() == 1 ? QStringLiteral("-s ") : QStringLiteral("-l ")) + name + QLatin1Char(' ');
    rest += QStringLiteral("-d ") + quoted(HelpText::firstSentence(option.help));
    return line(condition, option.value.isEmpty() ? rest : rest + values(option.takes, option.words));
}

} // namespace

QString Pages::fishCompletion()
{
    const QString noCommand =
        QStringLiteral("not __fish_seen_subcommand_from ") + commandNames().join(QLatin1Char(' '));
    QString text = QStringLiteral("# Completions of fish for %1, made from the descriptions of its commands.\n\n")
                       .arg(HelpText::program());
    for (const Command &command : allCommands())
        text +=
            line(noCommand,
                 QStringLiteral("-f -a %1 -d %2").arg(command.name, quoted(HelpText::firstSentence(command.summary))));
    for (const Option &option : HelpText::generalOptions())
        text += optionLine(noCommand, option);
    text += pathFunctions();
    for (const Command &command : allCommands()) {
        const QString condition = QStringLiteral("__fish_seen_subcommand_from ") + command.name;
        text += QLatin1Char('\n');
        for (const Option &option : HelpText::optionsOf(command))
            text += optionLine(condition, option);
        if (command.takes == Takes::Word && command.words)
            text += line(condition, QStringLiteral("-f -a ") + quoted(command.words().join(QLatin1Char(' '))));
        else if (command.takesPaths())
            text += line(condition + QStringLiteral("; and __%1_file >/dev/null").arg(HelpText::program()),
                         QStringLiteral("-f -a ") + quoted(pathsOf(command)));
        else if (command.takes != Takes::File && command.takes != Takes::Folder)
            text += line(condition, QStringLiteral("-f"));
    }
    return text;
}
