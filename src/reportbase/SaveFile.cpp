// SPDX-License-Identifier: MIT
#include <reportbase/SaveFile.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <new>

#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>

#include "FailureTexts.h"
#include "NewFile.h"

namespace REPORTGENERATOR {

namespace {

QByteArray targetOfLink(const QByteArray &path)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(path.constData(), target, sizeof(target));
    return size > 0 ? QByteArray(target, int(size)) : QByteArray();
}

/// The folder without links in its path; a null array if there is none. QFileInfo would say the same when memory runs
/// out.
QByteArray folderItself(const QByteArray &folder)
{
    char itself[PATH_MAX];
    if (realpath(folder.constData(), itself))
        return itself;
    if (errno == ENOMEM)
        throw std::bad_alloc();
    return QByteArray();
}

/// The file at the end of all symbolic links; a null array if they lead round in a circle. The text of the paths alone
/// would lead elsewhere if ".." stands behind a folder that is a link itself.
QByteArray endOfLinks(QByteArray path)
{
    constexpr int mostLinks = 40; // as many as the system follows
    for (int i = 0; i <= mostLinks; ++i) {
        const int slash = path.lastIndexOf('/');
        const QByteArray folder = folderItself(slash < 0 ? QByteArray(".") : path.left(slash + 1));
        if (folder.isEmpty())
            return path; // there is none; making the file will tell
        QByteArray here = folder + '/' + path.mid(slash + 1);
        const QByteArray target = targetOfLink(here);
        if (target.isEmpty())
            return here;
        path = target.startsWith('/') ? target : folder + '/' + target;
    }
    return QByteArray();
}

/// Whether it is there and neither a file nor a folder: a file would take the place of a pipe or a device.
bool isNoFile(const QByteArray &path)
{
    struct stat old = {};
    return stat(path.constData(), &old) == 0 && !S_ISREG(old.st_mode) && !S_ISDIR(old.st_mode);
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
    return SaveFile(QFile::encodeName(path), path, content);
}

QString SaveFile(const QByteArray &path, const QString &shownName, const QByteArray &content)
{
    if (path.isEmpty())
        return FailureTexts::noFileName();
    const auto failure = [&](const QString &reason) {
        return reason.isNull() ? QString() : FailureTexts::at(shownName, FailureTexts::cannotWrite(reason));
    };
    if (path.contains('\0')) // the system would take what stands in front of it for the whole
        return failure(FailureTexts::nulInFileName());
    if (isNoFile(path))
        return failure(FailureTexts::notAFile());
    const QByteArray realPath = endOfLinks(path);
    return failure(realPath.isNull() ? qt_error_string(ELOOP) : replace(realPath, content));
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
