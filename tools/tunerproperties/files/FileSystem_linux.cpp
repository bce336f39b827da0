// SPDX-License-Identifier: MIT
#include "files/FileSystem.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include <reportbase/SaveFile.h>

#include "console/Console.h"

namespace FileSystem {

bool exists(const FileName &name)
{
    struct stat status = {};
    return stat(name.bytes().constData(), &status) == 0;
}

bool isPipeOrDevice(const FileName &name)
{
    struct stat status = {};
    return stat(name.bytes().constData(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

QString writeInto(const FileName &name, const QByteArray &bytes)
{
    int descriptor = -1;
    do {
        descriptor = open(name.bytes().constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return qt_error_string(errno);
    QFile file;
    if (!file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        return file.errorString();
    }
    return REPORTGENERATOR::WriteAll(file, Console::escapedFor(descriptor, bytes));
}

} // namespace FileSystem
