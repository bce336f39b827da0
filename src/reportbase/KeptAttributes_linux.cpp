// SPDX-License-Identifier: MIT
#include "KeptAttributes.h"

#include <cerrno>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QList>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

namespace {

constexpr char accessList[] = "system.posix_acl_access";

/// Whether the error means that the caller or the file system cannot do it at all.
bool isRefusal(int error)
{
    // The kernel returns EINVAL for an owner that a container does not know.
    return error == EPERM || error == EACCES || error == EINVAL || error == EOPNOTSUPP || error == ENOSYS;
}

bool isMissing(int error)
{
    return error == ENODATA || error == EOPNOTSUPP || error == ENOSYS;
}

/// The content that a call reads, which only returns the size if it is called without a buffer. A null array with the
/// reason in `errno` if it fails.
template <class Read>
QByteArray readWhole(Read &&read)
{
    for (;;) {
        const ssize_t size = read(nullptr, 0);
        if (size < 0)
            return QByteArray();
        QByteArray content(int(size), Qt::Uninitialized);
        const ssize_t got = size > 0 ? read(content.data(), std::size_t(size)) : 0;
        if (got >= 0) {
            content.truncate(int(got));
            return content;
        }
        if (errno != ERANGE) // it has grown meanwhile
            return QByteArray();
    }
}

QByteArray attribute(int file, const char *name)
{
    return readWhole([=](char *room, std::size_t size) { return fgetxattr(file, name, room, size); });
}

/// Attributes that describe the content (what a program may do, checksums) do not apply to a new one. The kernel also
/// removes them when a file is written.
bool describesContent(const QByteArray &name)
{
    return name == "security.capability" || name == "security.ima" || name == "security.evm";
}

/// Labels and lists of other kinds decide in unknown ways who may use the file.
bool decidesAboutAccess(const QByteArray &name)
{
    return name.startsWith("security.") || name.startsWith("system.");
}

class Attributes
{
public:
    Attributes(int old, int fresh) : m_oldFile(old), m_newFile(fresh) { }

    QString keep()
    {
        for (const auto step : {&Attributes::readStatus, &Attributes::keepOwners, &Attributes::keepAccessList,
                                &Attributes::keepOthers, &Attributes::keepMode}) {
            QString reason = (this->*step)();
            if (!reason.isNull())
                return reason;
        }
        return QString();
    }

private:
    bool groupIsKept() const { return m_new.st_gid == m_old.st_gid; }

    QString readStatus()
    {
        return fstat(m_oldFile, &m_old) == 0 && fstat(m_newFile, &m_new) == 0 ? QString() : qt_error_string(errno);
    }

    QString keepOwners()
    {
        if (m_new.st_uid == m_old.st_uid && groupIsKept())
            return QString();
        // A caller who may not change the owner may still choose one of their own groups.
        const bool done = fchown(m_newFile, m_old.st_uid, m_old.st_gid) == 0
            || (isRefusal(errno) && (groupIsKept() || fchown(m_newFile, uid_t(-1), m_old.st_gid) == 0));
        if ((!done && !isRefusal(errno)) || fstat(m_newFile, &m_new) != 0)
            return FailureTexts::cannotKeepOwners(qt_error_string(errno));
        // A superuser who is not allowed to do so would become the owner of the file.
        const bool isCallers = m_new.st_uid == geteuid() && geteuid() != 0;
        if (m_new.st_uid == m_old.st_uid || isCallers)
            return QString();
        errno = EPERM;
        return FailureTexts::cannotKeepOwners(qt_error_string(errno));
    }

    /// The new file may have inherited a list from its folder, in which the mode means something else.
    QString keepAccessList()
    {
        const QByteArray list = attribute(m_oldFile, accessList);
        if (list.isNull() && !isMissing(errno))
            return FailureTexts::cannotKeepAccessList(qt_error_string(errno));
        bool done = false;
        if (list.isNull()) {
            const bool hasNone = attribute(m_newFile, accessList).isNull();
            done = hasNone ? isMissing(errno) : fremovexattr(m_newFile, accessList) == 0;
        } else if (groupIsKept()) {
            done = fsetxattr(m_newFile, accessList, list.constData(), std::size_t(list.size()), 0) == 0;
        } else { // the list's entry for the group would apply to a different one
            errno = EPERM;
        }
        return done ? QString() : FailureTexts::cannotKeepAccessList(qt_error_string(errno));
    }

    QString keepOthers()
    {
        const QByteArray names =
            readWhole([this](char *room, std::size_t size) { return flistxattr(m_oldFile, room, size); });
        if (names.isNull())
            return isMissing(errno) ? QString() : FailureTexts::cannotKeepAttributes(qt_error_string(errno));
        const QList<QByteArray> list = names.split('\0');
        for (const QByteArray &name : list) {
            if (name.isEmpty() || name == accessList || describesContent(name) || keepOne(name))
                continue;
            if (decidesAboutAccess(name) || !isRefusal(errno))
                return FailureTexts::cannotKeepAttribute(QFile::decodeName(name), qt_error_string(errno));
        }
        return QString();
    }

    bool keepOne(const QByteArray &name)
    {
        const QByteArray value = attribute(m_oldFile, name.constData());
        if (value.isNull())
            return errno == ENODATA; // removed meanwhile
        const QByteArray present = attribute(m_newFile, name.constData());
        // Labels are often set automatically, and few callers may set them.
        return (!present.isNull() && present == value)
            || fsetxattr(m_newFile, name.constData(), value.constData(), std::size_t(value.size()), 0) == 0;
    }

    /// If the group has changed, its members and those of the old group have the permissions that the old group and
    /// everybody else had in common.
    mode_t wantedMode() const
    {
        const mode_t mode = m_old.st_mode & 0777;
        if (groupIsKept())
            return mode;
        const mode_t common = (mode >> 3) & mode & 07;
        return (mode & 0700) | common << 3 | common;
    }

    QString keepMode()
    {
        if (fstat(m_newFile, &m_new) != 0)
            return qt_error_string(errno);
        const mode_t wanted = wantedMode();
        if ((m_new.st_mode & 07777) == wanted)
            return QString();
        // If that fails, the file stays closed to everybody else, which matters less than the content.
        static_cast<void>(fchmod(m_newFile, wanted));
        if (fstat(m_newFile, &m_new) != 0)
            return qt_error_string(errno);
        return m_new.st_mode & ~wanted & 077 ? FailureTexts::moreOpen() : QString();
    }

    const int m_oldFile;
    const int m_newFile;
    struct stat m_old = {};
    struct stat m_new = {};
};

} // namespace

QString keepAttributes(int old, int fresh)
{
    return Attributes(old, fresh).keep();
}

} // namespace REPORTGENERATOR
