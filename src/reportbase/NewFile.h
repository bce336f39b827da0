// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace REPORTGENERATOR {

/// A file on its way to its place. Where the system can do that it has no name until it is whole, so that a process
/// that is killed leaves nothing behind; otherwise, and for the moment between naming and replacing, it is called like
/// the file that it is to replace (or like the start of a very long name), with a dot and six letters behind.
///
/// The operations return false with the reason in `errno`. They ask for no memory: QSaveFile does, between naming and
/// replacing, and leaves the file there when it gets none.
class NewFile
{
public:
    /// For a path that tells the folder.
    explicit NewFile(const QByteArray &path);
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;
    ~NewFile(); ///< removes what did not get to its place

    /// Makes the file, with the permissions of the one that is to be replaced if there is one.
    bool create();
    bool write(const char *bytes, qint64 size);
    /// Waits until it is on the disk. Some file systems notice only then that they are full or broken.
    bool synchronize();
    /// Gives it the place of the old file.
    bool replace();

private:
    template <class Make>
    bool makeUnderNewName(Make &&make);
    bool open(const char *path, int flags);

    const QByteArray m_path;
    const QByteArray m_folder;
    QByteArray m_name;
    bool m_isNamed = false;
    int m_descriptor = -1;
};

} // namespace REPORTGENERATOR
