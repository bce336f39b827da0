// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <QByteArray>
#include <QString>

#include "json/Json.h"

/// An error in reading or writing JSON, with its location.
class JsonFailure : public std::runtime_error
{
public:
    /// An error in a document that is written; within() adds its path as the exception propagates.
    explicit JsonFailure(const QString &message);
    /// An error in a text that is read, at a line and a column, both counted from 1.
    JsonFailure(int line, int column, const QString &message);

    /// Returns the error with the step prefixed to its path.
    JsonFailure within(const QString &step) const;

    QString message() const { return m_message; }
    int line() const { return m_line; }
    int column() const { return m_column; }

    /// "PATH: message"; the message alone if there is no path.
    QString textInDocument() const;

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;

private:
    QString m_path;
    QString m_message;
    int m_line = 0;
    int m_column = 0;
};

/// JSON as text: UTF-8, strict in both directions.
namespace JsonText {

/// Returns the value, each part of which knows its place in the text. Throws JsonFailure for anything but JSON, for an
/// object with a duplicate key, a number that is too large for a double, and for nesting or objects larger than any
/// document has, so that processing the result needs little stack and time.
Json parse(const QByteArray &utf8);

/// The same, for a reader that lists everything that is wrong with a document: an object may have duplicate keys, see
/// Json::isDuplicate(), and a number may be too large for a double, and is infinite then.
Json parseLeniently(const QByteArray &utf8);

/// Returns the value indented by two spaces; a list or object of little more than plain values is on one line if it
/// fits. The text ends with a line feed.
QByteArray pretty(const Json &value);

/// The same layout for the text that the value was read from, in which keys, texts and numbers stay as they are
/// spelled: only the blanks between them change. The text that pretty() returns stays as it is.
QByteArray prettyAsSpelled(const Json &value, const QByteArray &text);

/// Returns the value on one line without blanks. Here and in pretty(), characters of texts that are not printable are
/// `\u` escapes, so the JSON can be shown on a terminal.
QByteArray compact(const Json &value);

/// A text as a JSON string. Throws JsonFailure for a text that UTF-8 cannot represent.
Json fromString(const QString &text);

/// The text of a JSON string, unchanged.
QString toString(const QByteArray &utf8);

/// The message on a member of an object that has another one of that key.
QString duplicateMember(const QByteArray &key);

/// The beginning of a long text, for messages, whose size must not depend on the size of the document.
QString shortened(const QString &text);

} // namespace JsonText
