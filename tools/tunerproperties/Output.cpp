// SPDX-License-Identifier: MIT
#include "Output.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "Console.h"

namespace {

[[noreturn]] void cannotWrite(const QString &name, const QFileDevice &file)
{
    throw FileFailure(name + QStringLiteral(": cannot write: ") + file.errorString());
}

} // namespace

void Output::writeWhole(const QString &name, const QByteArray &bytes)
{
    if (name == Console::streamName()) {
        Console::write(bytes);
        return;
    }
    const QFileInfo there(name);
    if (there.exists() && !there.isFile() && !there.isDir()) {
        // Replacing it, which is what writing atomically means, would leave a file in place of the device.
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size())
            cannotWrite(name, file);
        return;
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        cannotWrite(name, file);
}
