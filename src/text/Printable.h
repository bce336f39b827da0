// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include <QByteArray>
#include <QString>

/// Which characters may reach a terminal, and how the others are escaped. Control characters can move the cursor,
/// rename the window or fill the clipboard; bidirectional controls and invisible characters make a text look like
/// another one.
namespace Printable {

/// False for control, format (including bidirectional and zero-width), private and unassigned characters, surrogates,
/// line and paragraph separators, and all others that Unicode declares ignorable.
bool isPrintable(uint character);

/// The text on one line: characters that are not printable are escaped as `\n`, `\r`, `\t` or `\uXXXX`.
QString onOneLine(const QString &text);

/// The same in quotes, with quotes and backslashes escaped as `\"` and `\\`.
QString quoted(const QString &text);

/// UTF-8 for what() of an exception, which would end at a U+0000: that is escaped as `\u0000`.
std::string withoutNull(const QString &text);

/// UTF-8 in which characters that are not printable are escaped as `\uXXXX` (as in JSON, two of them above U+FFFF), and
/// bytes that are not UTF-8 as `\xHH`. Line feeds and tabs stay, since they are layout. Escaped JSON is equivalent
/// JSON.
QByteArray escaped(const QByteArray &utf8);

/// The name with `\xHH` for each byte that is not UTF-8, `\\` for a backslash, and the rest escaped as by escaped(): no
/// two names look the same.
QString escapedName(const QByteArray &bytes);

/// Whether the bytes are UTF-8.
bool isUtf8(const QByteArray &bytes);

/// Decodes UTF-8, including a leading byte order mark; no value if the bytes are not UTF-8.
std::optional<QString> decoded(const QByteArray &utf8);

} // namespace Printable
