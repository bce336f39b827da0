// SPDX-License-Identifier: MIT
#include <reportbase/SaveFile.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <new>

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>

#include "FailureTexts.h"
#include "NewFile.h"

namespace REPORTGENERATOR {

namespace {

QString targetOfLink(const QString &path)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(QFile::encodeName(path).constData(), target, sizeof(target));
    return size > 0 ? QFile::decodeName(QByteArray(target, int(size))) : QString();
}

/// The folder without links in its path; a null string if there is none. QFileInfo would say the same when memory runs
/// out.
QString folderItself(const QString &folder)
{
    char itself[PATH_MAX];
    if (realpath(QFile::encodeName(folder).constData(), itself))
        return QFile::decodeName(itself);
    if (errno == ENOMEM)
        throw std::bad_alloc();
    return QString();
}

/// The file at the end of all symbolic links; a null string if they lead round in a circle. The text of the paths alone
/// would lead elsewhere if ".." stands behind a folder that is a link itself.
QString endOfLinks(QString path)
{
    constexpr int mostLinks = 40; // as many as the system follows
    for (int i = 0; i <= mostLinks; ++i) {
        const QFileInfo file(path);
        const QString folder = folderItself(file.path());
        if (folder.isEmpty())
            return path; // there is none; making the file will tell
        QString here = folder + QLatin1Char('/') + file.fileName();
        const QString target = targetOfLink(here);
        if (target.isEmpty())
            return here;
        path = target.startsWith(QLatin1Char('/')) ? target : folder + QLatin1Char('/') + target;
    }
    return QString();
}

/// The reason why it cannot be put in place, or a null string.
QString replace(const QByteArray &path, const QByteArray &content)
{
    struct stat old = {};
    if (stat(path.constData(), &old) == 0) {
        if (S_ISDIR(old.st_mode))
            return FailureTexts::isAFolder();
        if (access(path.constData(), W_OK) != 0)
            return qt_error_string(errno);
    }
    NewFile file(path);
    const bool done =
        file.create() && file.write(content.constData(), content.size()) && file.synchronize() && file.replace();
    return done ? QString() : qt_error_string(errno);
}

} // namespace

QString SaveFile(const QString &path, const QByteArray &content)
{
    if (path.isEmpty())
        return FailureTexts::noFileName();
    const auto failure = [&](const QString &reason) {
        return reason.isNull() ? QString() : FailureTexts::at(path, FailureTexts::cannotWrite(reason));
    };
    if (path.contains(QChar::Null)) // the system would take what stands in front of it for the whole
        return failure(FailureTexts::nulInFileName());
    // A file would take the place of whatever stands there: a pipe or a device would be gone.
    const QFileInfo old(path);
    if (old.exists() && !old.isFile() && !old.isDir())
        return failure(FailureTexts::notAFile());
    const QString realPath = endOfLinks(path);
    return failure(realPath.isNull() ? qt_error_string(ELOOP) : replace(QFile::encodeName(realPath), content));
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
