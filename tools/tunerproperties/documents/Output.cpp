// SPDX-License-Identifier: MIT
#include "documents/Output.h"

#include <QFile>
#include <QFileInfo>

#include <reportbase/SaveFile.h>

#include "Console.h"
#include "batch/Interruption.h"

void Output::writeWhole(const QString &name, const QByteArray &bytes, const std::function<void()> &written)
{
    if (name == Console::streamName()) {
        Console::write(bytes);
        return;
    }
    const QFileInfo there(name);
    if (there.exists() && !there.isFile() && !there.isDir()) {
        // Replacing it, which is what writing atomically means, would leave a file in place of the device.
        QFile file(name);
        const QString reason = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
            ? REPORTGENERATOR::WriteAll(file, bytes)
            : file.errorString();
        if (!reason.isNull())
            throw FileFailure(name + QStringLiteral(": cannot write: ") + reason);
        return;
    }
    const Interruption::Shield shield;
    const QString failure = REPORTGENERATOR::SaveFile(name, bytes);
    if (!failure.isNull())
        throw FileFailure(failure);
    if (written)
        written();
}
