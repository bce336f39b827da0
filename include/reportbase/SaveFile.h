// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

#include <reportbase/Export.h>

class QByteArray;
class QFileDevice;

namespace REPORTGENERATOR {

/// Saves a file atomically: afterwards it contains exactly `content`, or it is unchanged, and no other file is left.
/// Returns `PATH: cannot write: reason` in the latter case, else a null string. The content is on the disk then; the
/// change of the folder may be written later, so after a power failure the old file may be there.
///
/// A symbolic link stays, and the file that it leads to is written. Links are followed as the kernel follows them, with
/// one exception: in a sticky folder that other users can write to (such as `/tmp`), a link at the end of the path must
/// belong to the caller or to the owner of the folder, whatever the setting of `fs.protected_symlinks`. The same
/// applies to a file that is replaced there. A target that is not a file (a pipe, a device) is refused, since a file
/// would replace it, and so is a file that the caller may not write.
///
/// A new file has the permissions that result from the umask and the folder. A file that replaces an old one keeps what
/// the caller may set: owner, group, mode, access control list and the other extended attributes. Otherwise:
///
/// - The file belongs to the caller if the owner cannot be kept; for the superuser this is an error instead.
/// - If the group cannot be kept, the new group and all others have the permissions that the old group and all others
///   had in common. A file with an access control list is not saved then.
/// - Labels and lists of other kinds (`security.`, `system.`) are kept, or the file is not saved. Other attributes that
///   the caller may not read or set are omitted.
/// - At no time does anybody but the caller have an access that the old file did not grant.
///
/// All of this is done by functions of Linux. On other systems, QSaveFile saves the file, which is also replaced as a
/// whole or not at all and keeps its mode, while links are followed wherever they are. But owner, group, access control
/// list and extended attributes become those of a new file, paths must be text, and a process that is killed may leave
/// a temporary file.
///
/// As when a file is written in place, the set-user-ID, set-group-ID and sticky bits are dropped, and so are the
/// attributes that describe the old content (`security.capability`, `security.ima`, `security.evm`). Another name of
/// the old file, a hard link, keeps the old content.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QString &path, const QByteArray &content);
QString SaveFile(std::nullptr_t, const QByteArray &) = delete;

/// As above, for a path that need not be text: its bytes reach the system unchanged. Error texts name the file
/// `shownName`.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QByteArray &path, const QString &shownName,
                                                 const QByteArray &content);

/// As above, to replace a file that was read and is still open as `original`. Nothing is saved if the path no longer
/// leads to that very file, because it was replaced, renamed or removed meanwhile. On other systems than Linux, a file
/// of the same size and time of change is taken for it.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QByteArray &path, const QString &shownName,
                                                 const QByteArray &content, const QFileDevice &original);

/// Writes all of the bytes to an open file, pipe or device. Returns the reason for a failure, else a null string.
[[nodiscard]] REPORTBASE_EXPORT QString WriteAll(QFileDevice &file, const QByteArray &bytes);

} // namespace REPORTGENERATOR
