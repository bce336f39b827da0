// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

#include "text/FileName.h"

class QFile;

/// Which kinds of files are read and written. Opening a pipe waits until somebody opens its other end, so that one
/// planted in a folder would block a batch.
enum class FileKinds {
    All,
    RegularOnly,
};

/// A file to read, or standard input for "-", which can be read again from its start. What can be read only once, a
/// pipe for instance, is kept in a temporary file.
///
/// All readers of one document see the same bytes, all of them: a file that changes meanwhile is refused, and so is one
/// that is larger than the readers can handle.
class Input
{
public:
    /// In bytes: what each reader of the tool can hold in memory as text. Qt's containers end at 2^31 bytes.
    static constexpr qint64 largest = 1'000'000'000;

    /// Throws FileFailure if the file cannot be read, is larger than the limit, or is of another kind.
    explicit Input(const FileName &name, FileKinds kinds = FileKinds::All, qint64 limit = largest);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// As it was given.
    const FileName &name() const { return m_name; }
    QString shownName() const { return m_name.shown(); }

    /// The open file, at its start. Its QFile::fileName() is the shown name, for messages. Call check() when it is
    /// read.
    QFile &file();

    /// The open file if it is the named one itself; null if what it held is kept in a temporary file.
    const QFile *original() const { return m_isKept ? nullptr : m_file.get(); }

    /// The first bytes, at most as many as that, or all. Throw FileFailure if they cannot be read.
    QByteArray head(int size);
    QByteArray bytes();

    /// Throws FileFailure if reading file() has failed, or if the file has changed since it was opened.
    void check() const;

private:
    struct State;

    FileName m_name;
    qint64 m_limit = largest;
    bool m_isKept = false;
    std::unique_ptr<QFile> m_file;
    std::unique_ptr<State> m_state; ///< when it was opened
};
