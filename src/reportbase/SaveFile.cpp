// SPDX-License-Identifier: MIT
#include <reportbase/SaveFile.h>

#include <QByteArray>
#include <QFile>

#include "FailureTexts.h"
#include "ReplaceFile.h"

namespace REPORTGENERATOR {

namespace {

QString save(const QByteArray &path, const QString &shownName, const QByteArray &content, const QFileDevice *original)
{
    if (path.isEmpty())
        return FailureTexts::noFileName();
    const auto failure = [&](const QString &reason) {
        return reason.isNull() ? QString() : FailureTexts::at(shownName, FailureTexts::cannotWrite(reason));
    };
    if (path.contains('\0')) // the system would end the path there
        return failure(FailureTexts::nulInFileName());
    // The copy always ends with a NUL.
    return failure(replaceFile(QByteArray(path.constData(), path.size()), content, original));
}

} // namespace

QString SaveFile(const QString &path, const QByteArray &content)
{
    return SaveFile(QFile::encodeName(path), path, content);
}

QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content)
{
    return save(path, shownName, content, nullptr);
}

QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content,
                 const QFileDevice &original)
{
    return save(path, shownName, content, &original);
}

QString WriteAll(QFileDevice &file, const QByteArray &bytes)
{
    // A disk that becomes full writes what still fits without an error; the next attempt returns the reason.
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return file.errorString();
        done += written;
    }
    // The same applies to buffered data: the first attempt may have written a part of them.
    return file.flush() || file.flush() ? QString() : file.errorString();
}

} // namespace REPORTGENERATOR
