// SPDX-License-Identifier: MIT
#include "ReplaceFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <reportbase/SaveFile.h>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

namespace {

/// Qt does not say whether two files are the same; one with another size or time of change is another one.
bool mayBe(const QFileInfo &found, const QFileDevice &original)
{
    return original.isOpen() && found.exists() && found.size() == original.size()
        && found.lastModified() == original.fileTime(QFileDevice::FileModificationTime);
}

} // namespace

QString replaceFile(const QByteArray &path, const QByteArray &content, const QFileDevice *original)
{
    const QString name = QFile::decodeName(path);
    const QFileInfo found(name);
    if (found.isDir())
        return FailureTexts::isAFolder();
    if (found.exists() && !found.isFile()) // a file would replace a pipe or a device
        return FailureTexts::notAFile();
    if (original && !mayBe(found, *original))
        return FailureTexts::pathHasChanged();
    QSaveFile file(found.exists() ? found.canonicalFilePath()
                                  : name); // it would only follow the first of several links
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    QString reason = WriteAll(file, content);
    if (!reason.isNull())
        return reason;
    return file.commit() ? QString() : file.errorString();
}

} // namespace REPORTGENERATOR
