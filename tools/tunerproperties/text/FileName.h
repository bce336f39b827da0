// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The name of a file as the system knows it: bytes, which need not be text in any encoding. They reach the system as
/// they were typed; only messages show them as text.
class FileName
{
public:
    FileName() = default; ///< none
    explicit FileName(const QByteArray &bytes) : m_bytes(bytes) { }

    const QByteArray &bytes() const { return m_bytes; }
    bool isEmpty() const { return m_bytes.isEmpty(); }

    /// Whether it is "-", which stands for standard input or output.
    bool isStandardStream() const { return m_bytes == "-"; }

    /// For messages: UTF-8 as it is, but `\xHH` for each byte that is not UTF-8, `\\` for a backslash, and escapes for
    /// what is not printable.
    QString shown() const;

    /// What follows the last slash.
    FileName withoutFolder() const { return FileName(m_bytes.mid(m_bytes.lastIndexOf('/') + 1)); }

    bool operator==(const FileName &other) const { return m_bytes == other.m_bytes; }

private:
    QByteArray m_bytes;
};
