// SPDX-License-Identifier: MIT
#include "files/FileSystem.h"

#include <QFile>
#include <QFileInfo>

#include <reportbase/SaveFile.h>

#include "console/Console.h"

namespace FileSystem {

bool exists(const FileName &name)
{
    return QFileInfo::exists(QFile::decodeName(name.bytes()));
}

bool isPipeOrDevice(const FileName &name)
{
    const QFileInfo found(QFile::decodeName(name.bytes()));
    return found.exists() && !found.isFile() && !found.isDir();
}

QString writeInto(const FileName &name, const QByteArray &bytes)
{
    QFile file(QFile::decodeName(name.bytes()));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file.errorString();
    return REPORTGENERATOR::WriteAll(file, Console::escapedFor(file.handle(), bytes));
}

} // namespace FileSystem
