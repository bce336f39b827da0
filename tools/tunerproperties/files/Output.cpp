// SPDX-License-Identifier: MIT
#include "files/Output.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include <reportbase/SaveFile.h>

#include "console/Console.h"
#include "console/Interruption.h"

namespace {

/// Whether the file exists and is neither a regular file nor a folder.
bool isPipeOrDevice(const FileName &name)
{
    struct stat status = {};
    return stat(name.bytes().constData(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

/// Writes into a pipe or a device, such as a terminal; returns the error, or a null string. Atomic writing would
/// replace it with a file.
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

} // namespace

void Output::writeWhole(const FileName &name, const QByteArray &bytes, FileKinds kinds,
                        const std::function<void()> &written)
{
    if (name.isStandardStream()) {
        Console::write(bytes);
        return;
    }
    if (kinds == FileKinds::All && isPipeOrDevice(name)) {
        const QString reason = writeInto(name, bytes);
        if (!reason.isNull())
            throw FileFailure(name.shown() + QStringLiteral(": cannot write: ") + reason);
        return;
    }
    const Interruption::Shield shield;
    const QString failure = REPORTGENERATOR::SaveFile(name.bytes(), name.shown(), bytes);
    if (!failure.isNull())
        throw FileFailure(failure);
    if (written)
        written();
}

void Output::replace(const Input &input, const QByteArray &bytes, const std::function<void()> &written)
{
    const QFile *const original = input.original();
    if (!original && !input.name().isStandardStream())
        Input::refuseToReplace(input.name());
    if (!original) {
        Console::write(bytes);
        return;
    }
    const Interruption::Shield shield;
    input.check();
    const QString failure = REPORTGENERATOR::SaveFile(input.name().bytes(), input.shownName(), bytes, *original);
    if (!failure.isNull())
        throw FileFailure(failure);
    if (written)
        written();
}
