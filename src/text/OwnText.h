// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

namespace REPORTGENERATOR {

/// The text of a literal, in memory of its own. A program may keep every text that the libraries return after it has
/// unloaded them, so they never return a QStringLiteral, whose characters are in the library's read-only data. Texts
/// that are used often are built when the library is loaded, and shared.
template <std::size_t size>
QString ownText(const char (&ascii)[size])
{
    return QString::fromLatin1(ascii, int(size) - 1);
}

} // namespace REPORTGENERATOR
