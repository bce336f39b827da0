// SPDX-License-Identifier: MIT
#include "files/Output.h"

#include <QFile>

#include <reportbase/SaveFile.h>

#include "console/Console.h"
#include "console/Interruption.h"
#include "files/FileSystem.h"

void Output::writeWhole(const FileName &name, const QByteArray &bytes, FileKinds kinds,
                        const std::function<void()> &written)
{
    if (name.isStandardStream()) {
        Console::write(bytes);
        return;
    }
    if (kinds == FileKinds::All && FileSystem::isPipeOrDevice(name)) {
        const QString reason = FileSystem::writeInto(name, bytes);
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
