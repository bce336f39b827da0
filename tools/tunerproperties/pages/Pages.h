// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Files that go with the program, made from the descriptions of its commands.
namespace Pages {

/// The manual page, in roff.
QString manual(const QString &version);

QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

} // namespace Pages
