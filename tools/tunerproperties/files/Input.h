// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

#include "files/FileName.h"

class QFile;

/// Which kinds of files are accepted. Opening a pipe waits until somebody opens its other end, so a pipe that somebody
/// has placed in a folder would block a batch.
enum class FileKinds {
    All,
    RegularOnly,
    Replaceable, ///< to be replaced by the result: regular files, and standard input, whose result is standard output
};

/// A file, or standard input for "-", that can be read several times. Input that can be read only once, such as a pipe,
/// is copied to a temporary file.
///
/// All readers of one document see the same, complete bytes: the class rejects a file that changes meanwhile, and one
/// that is larger than the readers can handle.
class Input
{
public:
    /// In bytes: what each reader of the tool can hold in memory as text. Qt's containers are limited to 2^31 bytes.
    static constexpr qint64 largest = 1'000'000'000;

    /// Throws FileFailure if the file cannot be read, is larger than the limit, or is of another kind.
    explicit Input(const FileName &name, FileKinds kinds = FileKinds::All, qint64 limit = largest);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// The name on the command line.
    const FileName &name() const { return m_name; }
    QString shownName() const { return m_name.shown(); }

    /// The open file, positioned at its start. Its QFile::fileName() is the shown name, for messages. Call check()
    /// after reading it.
    QFile &file();

    /// The open file, if it is the named one; null if it is a temporary copy.
    const QFile *original() const { return m_isCopy ? nullptr : m_file.get(); }

    /// The first bytes, at most `size`, and all bytes. Both throw FileFailure if reading fails.
    QByteArray head(int size);
    QByteArray bytes();

    /// Throws FileFailure if reading file() has failed, or if the file has changed since it was opened.
    void check() const;

    /// Throws FileFailure for a pipe or a device, in which the result would be lost.
    [[noreturn]] static void refuseToReplace(const FileName &name);

private:
    struct State;

    FileName m_name;
    qint64 m_limit = largest;
    bool m_isCopy = false;
    std::unique_ptr<QFile> m_file;
    std::unique_ptr<State> m_state; ///< when it was opened
};
