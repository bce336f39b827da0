// SPDX-License-Identifier: MIT
#include "NewFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QRandomGenerator>

namespace REPORTGENERATOR {

namespace {

constexpr int letters = 6; // at the end of a name in between

/// Calls the system until no signal interrupts it.
template <class Call>
auto uninterrupted(Call &&call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// The path with room for the letters behind it. Of a name that would become too long so, only the start is taken.
QByteArray nameInBetween(const QByteArray &path)
{
    const int start = path.lastIndexOf('/') + 1;
    int end = path.size();
    if (end - start > NAME_MAX - 1 - letters) {
        end = start + NAME_MAX - 1 - letters;
        while (end > start && (path[end] & 0xC0) == 0x80) // within a character of UTF-8, which some systems refuse
            --end;
    }
    return path.left(end) + '.' + QByteArray(letters, 'X');
}

} // namespace

NewFile::NewFile(const QByteArray &path)
    : m_path(path), m_folder(path.left(path.lastIndexOf('/') + 1)), m_name(nameInBetween(path))
{
}

NewFile::~NewFile()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
    if (m_isNamed)
        unlink(m_name.constData());
}

bool NewFile::create()
{
    const bool canBeNamedLater = access("/proc/self/fd", X_OK) == 0; // which is where it is found again
    if (!canBeNamedLater || !open(m_folder.constData(), O_TMPFILE)) {
        if (canBeNamedLater && errno != EOPNOTSUPP && errno != EISDIR) // by which the system says that it cannot
            return false;
        m_isNamed = makeUnderNewName([this] { return open(m_name.constData(), O_CREAT | O_EXCL); });
        if (!m_isNamed)
            return false;
    }

    struct stat old = {};
    if (stat(m_path.constData(), &old) == 0)
        static_cast<void>(fchmod(m_descriptor, old.st_mode & 0777)); // who may read it counts for less than the content
    return true;
}

bool NewFile::open(const char *path, int flags)
{
    m_descriptor = uninterrupted([&] { return ::open(path, flags | O_WRONLY | O_CLOEXEC, 0666); });
    return m_descriptor >= 0;
}

bool NewFile::write(const char *bytes, qint64 size)
{
    // A disk that becomes full takes what still fits, which is no error; the reason comes with the next attempt.
    for (qint64 done = 0; done < size;) {
        const ssize_t written =
            uninterrupted([&] { return ::write(m_descriptor, bytes + done, std::size_t(size - done)); });
        if (written == 0)
            errno = EIO; // no system does that, but without end it must not be tried
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

bool NewFile::synchronize()
{
    const bool done = uninterrupted([this] { return fsync(m_descriptor); }) == 0;
    // Where the file system has no such operation, nothing is known to be wrong.
    return done || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

bool NewFile::replace()
{
    if (!m_isNamed) {
        char nameless[sizeof("/proc/self/fd/") + 12];
        std::snprintf(nameless, sizeof(nameless), "/proc/self/fd/%d", m_descriptor);
        const auto name = [&] { return linkat(AT_FDCWD, nameless, AT_FDCWD, m_name.constData(), AT_SYMLINK_FOLLOW); };
        m_isNamed = makeUnderNewName([&] { return uninterrupted(name) == 0; });
    }
    if (!m_isNamed || uninterrupted([this] { return rename(m_name.constData(), m_path.constData()); }) != 0)
        return false;
    m_isNamed = false;
    return true;
}

/// Makes the file under a name that no other has.
template <class Make>
bool NewFile::makeUnderNewName(Make &&make)
{
    constexpr int mostAttempts = 1000;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        for (char *letter = m_name.data() + m_name.size() - letters; *letter; ++letter)
            *letter = char('a' + QRandomGenerator::global()->bounded(26));
        if (make())
            return true;
        if (errno != EEXIST)
            return false;
    }
    return false;
}

} // namespace REPORTGENERATOR
