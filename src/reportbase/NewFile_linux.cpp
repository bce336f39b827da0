// SPDX-License-Identifier: MIT
#include "NewFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include <QRandomGenerator>

namespace REPORTGENERATOR {

namespace {

constexpr int letters = 6; // at the end of a temporary name

/// The name with space for the letters after it. A name that would become too long is shortened.
QByteArray nameInBetween(const QByteArray &name)
{
    auto end = name.size();
    if (end > NAME_MAX - 1 - letters) {
        end = NAME_MAX - 1 - letters;
        while (end > 0 && (name[end] & 0xC0) == 0x80) // within a character of UTF-8, whose parts some systems refuse
            --end;
    }
    return name.left(end) + '.' + QByteArray(letters, 'X');
}

} // namespace

NewFile::NewFile(int folder, const QByteArray &name)
    : m_folder(folder), m_name(name), m_nameInBetween(nameInBetween(name))
{
}

NewFile::~NewFile()
{
    if (m_isNamed)
        unlinkat(m_folder, m_nameInBetween.constData(), 0);
}

bool NewFile::create(mode_t mode)
{
    const bool canBeNamedLater = access("/proc/self/fd", X_OK) == 0; // the file is found through it later
    if (canBeNamedLater) {
        if (open(".", O_TMPFILE, mode))
            return true;
        if (errno != EOPNOTSUPP && errno != EISDIR) // the errors of systems that do not support this
            return false;
    }
    m_isNamed = makeUnderNewName([=] { return open(m_nameInBetween.constData(), O_CREAT | O_EXCL, mode); });
    return m_isNamed;
}

bool NewFile::open(const char *name, int flags, mode_t mode)
{
    m_file = Descriptor(uninterrupted([=] { return openat(m_folder, name, flags | O_WRONLY | O_CLOEXEC, mode); }));
    return bool(m_file);
}

bool NewFile::write(const char *bytes, qint64 size)
{
    // A disk that becomes full writes what still fits without an error; the next attempt returns the reason.
    for (qint64 done = 0; done < size;) {
        const ssize_t written =
            uninterrupted([&] { return ::write(m_file.number(), bytes + done, std::size_t(size - done)); });
        if (written == 0)
            errno = EIO; // no system does that, but the loop must end
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

bool NewFile::synchronize()
{
    const bool done = uninterrupted([this] { return fsync(m_file.number()); }) == 0;
    // If the file system has no such operation, no error is known.
    return done || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

bool NewFile::replace()
{
    if (!m_isNamed) {
        char nameless[sizeof("/proc/self/fd/") + 12];
        std::snprintf(nameless, sizeof(nameless), "/proc/self/fd/%d", m_file.number());
        const auto name = [&] {
            return linkat(AT_FDCWD, nameless, m_folder, m_nameInBetween.constData(), AT_SYMLINK_FOLLOW);
        };
        m_isNamed = makeUnderNewName([&] { return uninterrupted(name) == 0; });
    }
    if (!m_isNamed
        || uninterrupted(
               [this] { return renameat(m_folder, m_nameInBetween.constData(), m_folder, m_name.constData()); })
            != 0)
        return false;
    m_isNamed = false;
    return true;
}

/// Creates the file under a name that no other has.
template <class Make>
bool NewFile::makeUnderNewName(Make &&make)
{
    constexpr int mostAttempts = 1000;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        for (char *letter = m_nameInBetween.data() + m_nameInBetween.size() - letters; *letter; ++letter)
            *letter = char('a' + QRandomGenerator::global()->bounded(26));
        if (make())
            return true;
        if (errno != EEXIST)
            return false;
    }
    return false;
}

} // namespace REPORTGENERATOR
