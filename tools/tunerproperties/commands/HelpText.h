// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "commands/Command.h"

/// What --help shows: made from the descriptions of the commands, as the manual page and the completions are.
namespace HelpText {

/// "tunerproperties"
QString program();

/// What the program is for, and what is true for all of its commands.
QString purpose();
QStringList generalNotes();

/// The one of these that each command repeats that reads files.
QString noteOnStandardStreams();

/// Exit statuses and their meanings.
struct Status
{
    ExitStatus status;
    QString meaning;
};
QVector<Status> statuses();

/// The options that the program has without a command.
QVector<Option> generalOptions();

/// Those of a command, --help first.
QVector<Option> optionsOf(const Command &command);

/// The first sentence without its full stop, for where there is little room.
QString shortly(const QString &text);

QString ofProgram();
QString ofCommand(const Command &command);

} // namespace HelpText
