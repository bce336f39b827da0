// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <reportbase/Export.h>

class QByteArray;
class QFileDevice;

namespace REPORTGENERATOR {

/// Puts a file in place whole: afterwards it holds exactly `content`, or it is as it was, with nothing else left beside
/// it. Returns `PATH: cannot write: reason` in the latter case, else a null string. The content has reached the disk by
/// then; that it stands under this name may get there later, and after a power failure the old file may be there.
///
/// A symbolic link stays, and the file that it leads to is written. What is no file (a pipe, a device) is refused,
/// since a file would take its place.
REPORTBASE_EXPORT QString SaveFile(const QString &path, const QByteArray &content);

/// As above, for a path that need not be text: its bytes reach the system unchanged. An error text calls the file
/// `shownName`.
REPORTBASE_EXPORT QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content);

/// Writes all of the bytes to a file that is open, a pipe or a device as well. Returns the reason if that is not
/// possible, else a null string.
REPORTBASE_EXPORT QString WriteAll(QFileDevice &file, const QByteArray &bytes);

} // namespace REPORTGENERATOR
