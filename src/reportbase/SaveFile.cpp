// SPDX-License-Identifier: MIT
#include <reportbase/SaveFile.h>

#include <cerrno>

#include <QByteArray>
#include <QFile>

#include "FailureTexts.h"
#include "KeptAttributes.h"
#include "NewFile.h"
#include "SaveTarget.h"

namespace REPORTGENERATOR {

namespace {

constexpr int whateverIsThere = -2; // -1 is the handle of a file that is not open

/// The reason why it cannot be saved, or a null string. `original` is the file that must be replaced, if any.
QString replace(const QByteArray &path, const QByteArray &content, int original)
{
    SaveTarget target;
    QString reason = target.find(path);
    if (reason.isNull() && original != whateverIsThere && !target.leadsTo(original))
        reason = FailureTexts::pathHasChanged();
    if (!reason.isNull())
        return reason;
    NewFile file(target.folder(), target.name());
    // Nobody else can open it before it has the owner and the permissions of the old one.
    if (!file.create(target.isNew() ? 0666 : 0600) || !file.write(content.constData(), content.size()))
        return qt_error_string(errno);
    if (!target.isNew())
        reason = keepAttributes(target.old(), file.descriptor());
    if (!reason.isNull())
        return reason;
    return file.synchronize() && file.replace() ? QString() : qt_error_string(errno);
}

QString save(const QByteArray &path, const QString &shownName, const QByteArray &content, int original)
{
    if (path.isEmpty())
        return FailureTexts::noFileName();
    const auto failure = [&](const QString &reason) {
        return reason.isNull() ? QString() : FailureTexts::at(shownName, FailureTexts::cannotWrite(reason));
    };
    if (path.contains('\0')) // the system would end the path there
        return failure(FailureTexts::nulInFileName());
    // The copy always ends with a NUL.
    return failure(replace(QByteArray(path.constData(), path.size()), content, original));
}

} // namespace

QString SaveFile(const QString &path, const QByteArray &content)
{
    return SaveFile(QFile::encodeName(path), path, content);
}

QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content)
{
    return save(path, shownName, content, whateverIsThere);
}

QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content,
                 const QFileDevice &original)
{
    return save(path, shownName, content, original.handle());
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
