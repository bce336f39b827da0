// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// For words that are none of those that are known.
namespace Suggestion {

/// The known word that was probably meant: the nearest by letters that are missing, too many, other or swapped, if it
/// is near enough; or the first that begins so. Null if there is none.
QString nearest(const QString &word, const QStringList &known);

/// "; did you mean 'validate'?", or a null string if no known word is near.
QString hint(const QString &word, const QStringList &known);

/// "'taged' is no form; did you mean 'tagged'?" The kind is "form" here. If no word is near, all are told: "'tpz' is no
/// form; the forms are xml, tagged, compressed or snapshot".
QString insteadOf(const QString &word, const QString &kind, const QStringList &known);

/// "a, b or c"
QString listed(const QStringList &words);

} // namespace Suggestion
