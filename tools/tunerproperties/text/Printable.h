// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

/// Which characters may reach a terminal, and how the others are shown. Control characters can move the cursor, rename
/// the window or fill the clipboard; bidirectional controls and characters without width make a text look like another
/// one.
namespace Printable {

/// Whether a character is shown as such: false for control, format (bidirectional and zero-width ones among them),
/// private and unassigned characters, halves of surrogate pairs, line and paragraph separators, and all others that
/// Unicode wants ignored where they cannot be displayed.
bool isPrintable(uint character);

/// The text with `\n`, `\r`, `\t` and `\uXXXX` in place of what is not printable, and so on one line.
QString onOneLine(const QString &text);

/// The same between quotes, with `\"` and `\\` in place of the quotes and backslashes in it.
QString quoted(const QString &text);

/// UTF-8 with `\uXXXX` (as in JSON, two of them above U+FFFF) in place of what is not printable, and `\xHH` in place of
/// bytes that are not UTF-8. Line feeds and tabs stay, since they are layout. JSON remains the same JSON.
QByteArray escaped(const QByteArray &utf8);

/// The bytes of a name, with `\xHH` in place of those that are not UTF-8, `\\` in place of a backslash, and the rest as
/// escaped() has it: no two names look the same.
QString escapedName(const QByteArray &bytes);

/// The text that is UTF-8, a leading byte order mark included; nothing if the bytes are not UTF-8.
std::optional<QString> decoded(const QByteArray &utf8);

} // namespace Printable
