// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

#include "console/Console.h"

/// Runs a command line, without the name of the program: finds the command, checks options, values and the number of
/// arguments against its description, and runs it. Errors in the command line are written to standard error.
///
/// A file name must never count as an option. Therefore options must be spelled exactly, help and version cannot be
/// combined with files, an option with a value can be used only once, and any other argument that begins with "-" is an
/// error.
ExitStatus runCommandLine(const QByteArrayList &arguments);
