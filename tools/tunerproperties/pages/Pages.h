// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Files that are installed with the program, generated from the descriptions of the commands.
namespace Pages {

/// What a page says about the installation.
struct Installation
{
    QString version; ///< of the program
    QString date; ///< of the version
    QString dataFolder; ///< of schemas, without a slash at the end
};

/// The manual page, in roff.
QString manual(const Installation &installation);

QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

} // namespace Pages
