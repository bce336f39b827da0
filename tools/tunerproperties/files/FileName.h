// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The name of a file as the system knows it: bytes, which need not be text in any encoding. They are passed to the
/// system unchanged; only messages show them as text.
class FileName
{
public:
    FileName() = default; ///< no name
    explicit FileName(const QByteArray &bytes) : m_bytes(bytes) { }

    const QByteArray &bytes() const { return m_bytes; }
    bool isEmpty() const { return m_bytes.isEmpty(); }

    /// Whether it is "-", which means standard input or output.
    bool isStandardStream() const { return m_bytes == "-"; }

    /// For messages: UTF-8, with `\xHH` for each byte that is not UTF-8, `\\` for a backslash, and escapes for what is
    /// not printable.
    QString shown() const;

    /// The part after the last slash.
    FileName withoutFolder() const { return FileName(m_bytes.mid(m_bytes.lastIndexOf('/') + 1)); }

    bool operator==(const FileName &other) const { return m_bytes == other.m_bytes; }

private:
    QByteArray m_bytes;
};
