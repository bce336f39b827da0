// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Suggestions for unknown words.
namespace Suggestion {

/// The known word that was probably meant: the nearest by letters that are missing, superfluous, replaced or swapped,
/// if it is near enough, or the first that begins with the word. Null if there is none.
QString nearest(const QString &word, const QStringList &known);

/// "; did you mean 'validate'?", or null if no known word is near.
QString hint(const QString &word, const QStringList &known);

/// The same for a suggestion that is known.
QString hintAt(const QString &meant);

/// "unknown form 'taged'; did you mean 'tagged'?" The kind is "form" here. If no word is near, the message lists all:
/// "unknown form 'tpz'; expected xml, tagged, compressed or snapshot".
QString unknownWord(const QString &word, const QString &kind, const QStringList &known);

/// The same with all known words and the suggestion: "unknown name 'scan'; expected Scan, Step or Stop; did you mean
/// 'Scan'?"
QString unknownWordAmong(const QString &word, const QString &kind, const QStringList &known);

/// "a, b or c"
QString listed(const QStringList &words);

} // namespace Suggestion
