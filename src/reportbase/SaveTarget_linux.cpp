// SPDX-License-Identifier: MIT
#include "SaveTarget.h"

#include <climits>

#include <fcntl.h>
#include <sys/stat.h>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

namespace {

constexpr int look = O_PATH | O_CLOEXEC; // neither opens a device nor waits for a pipe

QString systemError()
{
    return qt_error_string(errno);
}

Descriptor openAt(const Descriptor &folder, const QByteArray &path, int flags)
{
    const int at = folder ? folder.number() : AT_FDCWD;
    return Descriptor(uninterrupted([&] { return openat(at, path.constData(), flags, 0); }));
}

bool readStatus(const Descriptor &file, struct stat &status)
{
    return fstat(file.number(), &status) == 0;
}

bool isSame(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Whether another user may have placed it in its folder, in which nobody can remove what belongs to somebody else.
bool isForeign(const struct stat &file, const struct stat &folder)
{
    return (folder.st_mode & S_ISVTX) && (folder.st_mode & (S_IWGRP | S_IWOTH)) && file.st_uid != geteuid()
        && file.st_uid != folder.st_uid;
}

} // namespace

QString SaveTarget::find(const QByteArray &path)
{
    QString reason = walk(path);
    if (reason.isNull())
        reason = confirm(path);
    return reason.isNull() && m_old ? openOld() : reason;
}

bool SaveTarget::leadsTo(int file) const
{
    struct stat found = {};
    struct stat expected = {};
    return m_old && readStatus(m_old, found) && fstat(file, &expected) == 0 && isSame(found, expected);
}

/// Follows all links to the file, step by step, so that each link can be checked and the folder stays open.
QString SaveTarget::walk(QByteArray path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    for (int links = 0; links <= mostLinks; ++links) {
        const auto start = path.lastIndexOf('/') + 1;
        m_name = path.mid(start);
        if (m_name.isEmpty() || m_name == "." || m_name == "..")
            return openAt(m_folder, path, look) ? FailureTexts::isAFolder() : systemError();
        if ((start > 0 || !m_folder) && !enter(path.left(start)))
            return systemError();

        m_old = openAt(m_folder, m_name, look | O_NOFOLLOW);
        if (!m_old)
            return errno == ENOENT ? QString() : systemError();
        struct stat status = {};
        if (!readStatus(m_old, status))
            return systemError();
        if (!S_ISLNK(status.st_mode))
            return QString();
        QString reason = followLink(path);
        if (!reason.isNull())
            return reason;
    }
    return qt_error_string(ELOOP);
}

/// The dot distinguishes links within the path from one at its end, to which the kernel applies other rules.
bool SaveTarget::enter(const QByteArray &folder)
{
    m_folder = openAt(m_folder, folder + '.', look | O_DIRECTORY);
    return bool(m_folder);
}

/// Replaces the path with the target of the link that it leads to.
QString SaveTarget::followLink(QByteArray &path) const
{
    struct stat link = {};
    struct stat folder = {};
    if (!readStatus(m_old, link) || !readStatus(m_folder, folder))
        return systemError();
    if (isForeign(link, folder))
        return FailureTexts::foreignLink();
    char target[PATH_MAX];
    const ssize_t size = readlinkat(m_old.number(), "", target, sizeof(target));
    if (size < 0)
        return systemError();
    path = QByteArray(target, int(size));
    return QString();
}

/// Lets the kernel open the path. It may refuse what walk() accepted, and must find the same file.
QString SaveTarget::confirm(const QByteArray &path) const
{
    const Descriptor there = openAt(Descriptor(), path, look);
    if (!there && errno != ENOENT)
        return systemError();
    if (!there)
        return m_old ? FailureTexts::pathHasChanged() : QString();
    struct stat status = {};
    if (!readStatus(there, status))
        return systemError();
    if (S_ISDIR(status.st_mode))
        return FailureTexts::isAFolder();
    if (!S_ISREG(status.st_mode)) // a file would replace a pipe or a device
        return FailureTexts::notAFile();
    struct stat found = {};
    if (m_old && !readStatus(m_old, found))
        return systemError();
    return m_old && isSame(found, status) ? QString() : FailureTexts::pathHasChanged();
}

/// Only a caller who can open a file for writing may replace it, although the system only requires access to the
/// folder.
QString SaveTarget::openOld()
{
    struct stat found = {};
    struct stat opened = {};
    struct stat folder = {};
    if (!readStatus(m_old, found) || !readStatus(m_folder, folder))
        return systemError();
    if (isForeign(found, folder))
        return FailureTexts::foreignFile();
    m_old = openAt(m_folder, m_name, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (!m_old || !readStatus(m_old, opened))
        return systemError();
    return isSame(found, opened) ? QString() : FailureTexts::pathHasChanged();
}

} // namespace REPORTGENERATOR
