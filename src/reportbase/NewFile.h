// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <sys/types.h>

#include "Descriptor.h"

namespace REPORTGENERATOR {

/// A new file that will replace an old one. If the system supports it, the file has no name until it is complete, so
/// that a killed process leaves no file; otherwise, and between naming and replacing, its name is that of the old file
/// (or the start of a very long name), followed by a dot and six letters.
///
/// The operations return false with the reason in `errno`. They allocate no memory: QSaveFile does so between naming
/// and replacing, and leaves the file there if this fails.
class NewFile
{
public:
    /// For a name in a folder, whose descriptor must stay open.
    NewFile(int folder, const QByteArray &name);
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;
    ~NewFile(); ///< removes the file unless it has replaced the old one

    /// Creates the file, with the permissions that result from the mode and the folder.
    bool create(mode_t mode);
    int descriptor() const { return m_file.number(); }
    bool write(const char *bytes, qint64 size);
    /// Waits until it is on the disk. Some file systems only then detect that they are full or broken.
    bool synchronize();
    /// Replaces the old file with it.
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
