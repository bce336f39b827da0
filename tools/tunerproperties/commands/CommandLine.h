// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

#include "console/Console.h"

/// Runs the command line, without the program's name: finds the command, checks that options, their values and the
/// number of arguments are among those that the command's description allows, and runs it. What is wrong with the
/// command line goes to standard error.
///
/// A file name must never pass for an option. So an option is only what is spelled exactly as one, help and the version
/// are shown only where no file is given, an option with a value is given once, and everything else that begins with
/// "-" is wrong usage.
ExitStatus runCommandLine(const QByteArrayList &arguments);
