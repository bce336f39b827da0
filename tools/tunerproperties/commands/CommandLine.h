// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "Console.h"

/// Does what the command line says, the program's name in front of it: finds the command, sees that options, their
/// values and the number of arguments are among those that the command's description allows, and runs it. What is wrong
/// with the command line goes to standard error.
ExitStatus runCommandLine(const QStringList &arguments);
