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
    case Takes::File:
        return QStringLiteral(" -r -F");
    case Takes::Folder:
        return QStringLiteral(" -x -a '(__fish_complete_directories)'");
    default:
        return QStringLiteral(" -x");
    }
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
    for (const Command &command : allCommands()) {
        const QString condition = QStringLiteral("__fish_seen_subcommand_from ") + command.name;
        text += QLatin1Char('\n');
        for (const Option &option : HelpText::optionsOf(command))
            text += optionLine(condition, option);
        if (command.takes == Takes::Word && command.words)
            text += line(condition, QStringLiteral("-f -a ") + quoted(command.words().join(QLatin1Char(' '))));
        else if (command.takes != Takes::File && command.takes != Takes::Folder)
            text += line(condition, QStringLiteral("-f"));
    }
    return text;
}
