// SPDX-License-Identifier: MIT
#include "commands/HelpText.h"

#include "commands/Commands.h"
#include "commands/Options.h"
#include "text/TextLayout.h"

namespace HelpText {

namespace {

using TextLayout::Columns;
using TextLayout::wrapped;

QString optionsText(const QVector<Option> &options)
{
    Columns columns;
    for (const Option &option : options) {
        const QString names = (option.names.size() > 1 ? QString() : QStringLiteral("    "))
            + option.allTyped().join(QStringLiteral(", "));
        const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value;
        columns.add(names + value, option.help);
    }
    return QStringLiteral("\nOptions:\n") + columns.text();
}

QString usageText(const QStringList &forms)
{
    QString result;
    for (const QString &usage : forms)
        result += (result.isEmpty() ? QStringLiteral("Usage: ") : QStringLiteral("       ")) + program()
            + QLatin1Char(' ') + usage + QLatin1Char('\n');
    return result + QLatin1Char('\n');
}

} // namespace

QString program()
{
    return QStringLiteral("tunerproperties");
}

QStringList usages()
{
    return {QStringLiteral("COMMAND [OPTION...] [FILE...]"), QStringLiteral("FILE")};
}

QString purpose()
{
    return QStringLiteral("Show, validate, convert, compare and change descriptions of radio tuners.");
}

QString noteOnStandardStreams()
{
    return QStringLiteral(
        "The name - means standard input or output, even after --. For a file of that name, write ./-.");
}

QStringList generalNotes()
{
    return {QStringLiteral(
                "FILE is a document in any form, or - for standard input or output. XML, JSON and the binary forms are "
                "recognized by their content; a snapshot is recognized by its suffix or by --from snapshot. "
                "Without a command, the document is shown."),
            QStringLiteral("An argument that begins with - is an option. Write ./* or -- *.xml to make sure that file "
                           "names are not options."),
            noteOnStandardStreams(),
            QStringLiteral("In messages, a file name is shown with \\xHH for each byte that is not UTF-8 and \\\\ for "
                           "a backslash. On a terminal, characters that are not printable are shown as \\uXXXX; get "
                           "and convert write them unchanged to a file or a pipe, except in JSON."),
            QStringLiteral("Ctrl-C, or another signal, leaves no incomplete file. The program reports its progress if "
                           "there are several files, and ends by that signal; a second signal ends it at once.")};
}

QVector<Status> statuses()
{
    return {{ExitStatus::Ok, QStringLiteral("Success.")},
            {ExitStatus::Problems,
             QStringLiteral(
                 "A document has problems or lacks the requested member, or changes do not fit or conflict; with "
                 "--exit-code, two documents differ; with --check, a document has another layout.")},
            {ExitStatus::WrongUsage, QStringLiteral("The command line is wrong; nothing was done.")},
            {ExitStatus::FileFailure, QStringLiteral("A file cannot be read or written.")}};
}

QVector<Option> generalOptions()
{
    return {Options::help(), Options::version()};
}

QVector<Option> optionsOf(const Command &command)
{
    return QVector<Option>{Options::help()} + command.options;
}

QString firstSentence(const QString &text)
{
    const QString sentence = text.section(QStringLiteral(". "), 0, 0);
    return sentence.endsWith(QLatin1Char('.')) ? sentence.chopped(1) : sentence;
}

QString ofProgram()
{
    Columns commands;
    for (const Command &command : allCommands())
        commands.add(command.name, command.summary);
    Columns statusColumns;
    for (const Status &status : statuses())
        statusColumns.add(QString::number(int(status.status)), status.meaning);
    QString text = usageText(usages()) + wrapped(purpose(), 0, 0) + QStringLiteral("\nCommands:\n") + commands.text()
        + optionsText(generalOptions()) + QStringLiteral("\nExit status:\n") + statusColumns.text();
    for (const QString &note : generalNotes())
        text += QLatin1Char('\n') + wrapped(note, 0, 0);
    return text + QLatin1Char('\n')
        + wrapped(QStringLiteral("'%1 help COMMAND' shows the help of a command.").arg(program()), 0, 0);
}

QString ofCommand(const Command &command)
{
    QStringList forms;
    for (const QString &usage : command.usages)
        forms.append(command.name + QStringLiteral(" [OPTION...]")
                     + (usage.isEmpty() ? QString() : QLatin1Char(' ') + usage));
    QString text = usageText(forms) + wrapped(command.summary, 0, 0);
    for (const QString &paragraph : command.details)
        text += QLatin1Char('\n') + wrapped(paragraph, 0, 0);
    if (command.takesFiles())
        text += QLatin1Char('\n') + wrapped(noteOnStandardStreams(), 0, 0);
    text += optionsText(optionsOf(command)) + QStringLiteral("\nExamples:\n");
    for (const Example &example : command.examples)
        text += QStringLiteral("  ") + program() + QLatin1Char(' ') + example.line + QStringLiteral("\n      ")
            + wrapped(example.effect, 6, 6);
    return text;
}

} // namespace HelpText
