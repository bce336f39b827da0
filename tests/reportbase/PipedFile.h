// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

#include <unistd.h>

/// Opens `file` on a pipe that contains `content` (up to the capacity of a pipe, 64 KiB) and then ends.
inline bool openOnPipe(QFile &file, const QByteArray &content)
{
    int ends[2];
    if (pipe(ends) != 0)
        return false;
    const bool filled = ::write(ends[1], content.constData(), size_t(content.size())) == content.size();
    close(ends[1]);
    return file.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) && filled && file.isSequential();
}
