// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Files that are installed with the program, generated from the descriptions of the commands.
namespace Pages {

/// The manual page, in roff.
QString manual(const QString &version);

QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

} // namespace Pages
