// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>
#include <QVector>

#include "commands/Command.h"

/// All commands, in the order of the help. Each is described in a file of its own, which ends with the function that
/// returns the description.
const QVector<Command> &allCommands();

/// The command of that name, if there is one. Describes no more commands than necessary: most runs need a single one.
std::optional<Command> commandNamed(const QString &name);

QStringList commandNames();

/// "unknown command 'vaildate'; did you mean 'validate'?"
QString unknownCommand(const QString &name);

Command showCommand();
Command validateCommand();
Command lintCommand();
Command convertCommand();
Command fmtCommand();
Command diffCommand();
Command patchCommand();
Command mergeCommand();
Command getCommand();
Command setCommand();
Command addCommand();
Command removeCommand();
Command moveCommand();
Command pathsCommand();
Command newCommand();
Command schemaCommand();
Command helpCommand();
