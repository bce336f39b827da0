// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <QByteArray>
#include <QString>

#include "documents/Json.h"

/// JSON that cannot be read or written: why, and where.
class JsonFailure : public std::runtime_error
{
public:
    /// At a place in a document, which whoever lets the exception pass completes from below, see below().
    explicit JsonFailure(const QString &message);
    /// At a line and a column of a text, both counted from 1.
    JsonFailure(int line, int column, const QString &message);

    /// The same one level further up.
    JsonFailure below(const QString &step) const;

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;

private:
    QString m_path;
    QString m_message;
    int m_line = 0;
    int m_column = 0;
};

/// JSON as text: UTF-8, strict both ways.
namespace JsonText {

/// Throws JsonFailure for what is no JSON, for an object that has a key twice, and for nesting or objects larger than
/// any document has, so that nothing that is read later can take more than its share of stack or time.
Json parse(const QByteArray &utf8);

/// Indented by two spaces; what holds little more than plain values stands on one line if it fits. Ends with a line
/// feed.
QByteArray pretty(const Json &value);

/// On one line, without blanks that mean nothing. Here and above, what is not printable in a text is a `\u` escape, so
/// that the JSON can be shown on a terminal.
QByteArray compact(const Json &value);

/// A text as a JSON string; throws JsonFailure for one that UTF-8 cannot carry.
Json fromString(const QString &text);

/// The text of a JSON string, as it stands.
QString toString(const QByteArray &utf8);

/// As much of a text as a message has room for, which is independent of the size of the document.
QString beginningOf(const QString &text);

} // namespace JsonText
