// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <sys/types.h>

#include "Descriptor.h"

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
    /// For a name in a folder, whose descriptor must stay open.
    NewFile(int folder, const QByteArray &name);
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;
    ~NewFile(); ///< removes what did not get to its place

    /// Makes the file, with the permissions that the mode and the folder give it.
    bool create(mode_t mode);
    int descriptor() const { return m_file.number(); }
    bool write(const char *bytes, qint64 size);
    /// Waits until it is on the disk. Some file systems notice only then that they are full or broken.
    bool synchronize();
    /// Gives it the place of the old file.
    bool replace();

private:
    template <class Make>
    bool makeUnderNewName(Make &&make);
    bool open(const char *name, int flags, mode_t mode);

    const int m_folder;
    const QByteArray m_name;
    QByteArray m_nameInBetween;
    bool m_isNamed = false;
    Descriptor m_file;
};

} // namespace REPORTGENERATOR
