// SPDX-License-Identifier: MIT
#include <reportbase/SaveFile.h>

#include <cerrno>
#include <climits>

#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

namespace {

QString targetOfLink(const QString &path)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(QFile::encodeName(path).constData(), target, sizeof(target));
    return size > 0 ? QFile::decodeName(QByteArray(target, int(size))) : QString();
}

/// The file at the end of all symbolic links; a null string if they lead round in a circle. QSaveFile would follow them
/// by the text of the paths, and put the file elsewhere if ".." stands behind a folder that is a link itself; a circle
/// it would replace by the file.
QString endOfLinks(QString path)
{
    constexpr int mostLinks = 40; // as many as the system follows
    for (int i = 0; i <= mostLinks; ++i) {
        const QFileInfo file(path);
        const QString folder = QFileInfo(file.path()).canonicalFilePath();
        if (folder.isEmpty())
            return path; // there is none; opening the file will tell
        const QString here = folder + QLatin1Char('/') + file.fileName();
        const QString target = targetOfLink(here);
        if (target.isEmpty())
            return here;
        path = target.startsWith(QLatin1Char('/')) ? target : folder + QLatin1Char('/') + target;
    }
    return QString();
}

/// Waits until the file is on the disk. Some file systems notice only then that they are full or broken, and QSaveFile
/// would not listen.
QString synchronize(const QFileDevice &file)
{
    while (fsync(file.handle()) != 0) {
        if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)
            break; // the file system has no such operation, so nothing is known to be wrong
        if (errno != EINTR)
            return qt_error_string(errno);
    }
    return QString();
}

/// Gives the file its name; the reason why that is not possible, or a null string.
QString commit(QSaveFile &file)
{
    errno = 0;
    const bool done = file.commit();
    const int error = errno;
    if (done)
        return QString();
    // Where the name in between cannot be made, QSaveFile does not say why.
    return file.error() == QFileDevice::UnspecifiedError && error != 0 ? qt_error_string(error) : file.errorString();
}

/// The reason why it cannot be put in place, or a null string.
QString replace(const QString &path, const QByteArray &content)
{
    // QSaveFile renames its temporary file over whatever stands at the path: a pipe or a device would be gone.
    const QFileInfo old(path);
    if (old.exists() && !old.isFile() && !old.isDir())
        return FailureTexts::notAFile();
    if (old.isFile() && access(QFile::encodeName(path).constData(), W_OK) != 0)
        return qt_error_string(errno); // QSaveFile would not say which

    // What is buffered is written within commit(), which does not notice when that fails: a full disk would leave a
    // document of less than 16 KiB empty or cut, and report it as saved.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file.errorString();
    QString reason = WriteAll(file, content);
    if (reason.isNull())
        reason = synchronize(file);
    return reason.isNull() ? commit(file) : reason;
}

} // namespace

QString SaveFile(const QString &path, const QByteArray &content)
{
    if (path.isEmpty())
        return FailureTexts::noFileName();
    const QString realPath = endOfLinks(path);
    const QString reason = realPath.isNull() ? qt_error_string(ELOOP) : replace(realPath, content);
    return reason.isNull() ? QString() : FailureTexts::at(path, FailureTexts::cannotWrite(reason));
}

QString WriteAll(QFileDevice &file, const QByteArray &bytes)
{
    // A disk that becomes full takes what still fits, which is no error; the reason comes with the next attempt.
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return file.errorString();
        done += written;
    }
    // Likewise with what was kept back: the first attempt may have got out a part of it.
    return file.flush() || file.flush() ? QString() : file.errorString();
}

} // namespace REPORTGENERATOR
