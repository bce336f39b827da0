// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

class QFile;

/// A file to read, or standard input for "-", which can be read again from its start. What can be read only once, a
/// pipe for instance, is kept in a temporary file.
class Input
{
public:
    /// Throws FileFailure if the file cannot be read.
    explicit Input(const QString &name);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// As it was given.
    const QString &name() const { return m_name; }

    /// The open file, at its start.
    QFile &file();

    /// The first bytes, at most as many as that, or all. Throw FileFailure if they cannot be read.
    QByteArray head(int size);
    QByteArray bytes();

    /// Throws FileFailure if reading file() has failed.
    void check() const;

    /// An error text of the library about file(), with the name that the file has for the user.
    QString inMyName(const QString &errorText) const;

private:
    QString m_name;
    std::unique_ptr<QFile> m_file;
};
