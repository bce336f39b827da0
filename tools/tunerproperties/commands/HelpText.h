// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "commands/Command.h"

/// The text of --help, composed from the descriptions of the commands, as are the manual page and the completions.
namespace HelpText {

/// "tunerproperties"
QString program();

/// The arguments of the program.
QStringList usages();

/// The purpose of the program, and notes that apply to all commands.
QString purpose();
QStringList generalNotes();

/// The note that the help of each command that reads files repeats.
QString noteOnStandardStreams();

/// Exit statuses and their meanings.
struct Status
{
    ExitStatus status;
    QString meaning;
};
QVector<Status> statuses();

/// The options without a command.
QVector<Option> generalOptions();

/// The options of a command, --help first.
QVector<Option> optionsOf(const Command &command);

/// The first sentence without its full stop, for completions.
QString firstSentence(const QString &text);

QString ofProgram();
QString ofCommand(const Command &command);

} // namespace HelpText
