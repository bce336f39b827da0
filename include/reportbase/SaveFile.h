// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

#include <reportbase/Export.h>

class QByteArray;
class QFileDevice;

namespace REPORTGENERATOR {

/// Puts a file in place whole: afterwards it holds exactly `content`, or it is as it was, with nothing else left beside
/// it. Returns `PATH: cannot write: reason` in the latter case, else a null string. The content has reached the disk by
/// then; that it stands under this name may get there later, and after a power failure the old file may be there.
///
/// A symbolic link stays, and the file that it leads to is written. Links are followed as the kernel follows them, with
/// one exception: in a sticky folder that other users can write to (such as `/tmp`), a link at the end of the path must
/// belong to the caller or to the owner of the folder, whatever `fs.protected_symlinks` says. The same holds for a file
/// that is to be replaced there. What is not a file (a pipe, a device) is refused, since a file would take its place,
/// and so is a file that the caller may not write.
///
/// A new file gets the permissions that the umask and the folder give it. A file that takes the place of an old one
/// keeps what the caller may set: owner, group, mode, access control list and the other extended attributes. Otherwise:
///
/// - The file belongs to the caller if the owner cannot be kept; the superuser gets an error instead.
/// - If the group cannot be kept, the new group and all others both get what the old group and all others had in
///   common. A file with an access control list is not saved then.
/// - Labels and lists of other kinds (`security.`, `system.`) are kept, or the file is not saved. Other attributes that
///   the caller may not read or set are left out.
/// - Nobody but the caller gets an access that the old file did not give them, at no time.
///
/// As when a file is written in place, the set-user-ID, set-group-ID and sticky bits are dropped, and so are the
/// attributes that describe the old content (`security.capability`, `security.ima`, `security.evm`). Another name of
/// the old file, a hard link, keeps the old content.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QString &path, const QByteArray &content);
QString SaveFile(std::nullptr_t, const QByteArray &) = delete;

/// As above, for a path that need not be text: its bytes reach the system unchanged. An error text calls the file
/// `shownName`.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QByteArray &path, const QString &shownName,
                                                 const QByteArray &content);

/// As above, to replace a file that was read and is still open as `original`. Nothing is saved if the path does not
/// lead to that very file any more, because it was replaced, renamed or removed meanwhile.
[[nodiscard]] REPORTBASE_EXPORT QString SaveFile(const QByteArray &path, const QString &shownName,
                                                 const QByteArray &content, const QFileDevice &original);

/// Writes all of the bytes to a file that is open, a pipe or a device as well. Returns the reason if that is not
/// possible, else a null string.
[[nodiscard]] REPORTBASE_EXPORT QString WriteAll(QFileDevice &file, const QByteArray &bytes);

} // namespace REPORTGENERATOR
