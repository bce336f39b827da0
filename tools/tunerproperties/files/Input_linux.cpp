// SPDX-License-Identifier: MIT
#include "files/Input.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryFile>

#include <reportbase/SaveFile.h>

#include "console/Console.h"
#include "console/Interruption.h"
#include "files/InputParts.h"

/// The state that shows whether a file has been written to.
struct Input::State
{
    qint64 size = 0;
    timespec modified = {};

    bool operator==(const State &other) const
    {
        return size == other.size && modified.tv_sec == other.modified.tv_sec
            && modified.tv_nsec == other.modified.tv_nsec;
    }
};

using namespace InputParts;

namespace {

/// Owns the descriptor of an open file.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) { }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }

    int number() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

struct stat statusOf(const FileName &name, int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        cannotRead(name, qt_error_string(errno));
    return status;
}

void checkKind(const FileName &name, const struct stat &status, FileKinds kinds)
{
    if (S_ISDIR(status.st_mode))
        cannotOpen(name, EISDIR);
    if (!S_ISREG(status.st_mode))
        refuseUnless(kinds, name);
}

/// Opens the file by the bytes of its name.
int open(const FileName &name, FileKinds kinds)
{
    if (name.isStandardStream())
        return fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
    if (kinds != FileKinds::All) {
        // Opening a device may have effects. A pipe may replace the file before it is opened, hence O_NONBLOCK.
        struct stat status = {};
        if (stat(name.bytes().constData(), &status) == 0)
            checkKind(name, status, kinds);
        flags |= O_NONBLOCK;
    }
    int descriptor = -1;
    do {
        descriptor = ::open(name.bytes().constData(), flags);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

std::unique_ptr<QFile> fileOf(int descriptor, const FileName &name)
{
    auto file = std::make_unique<NamedFile>(QString(), name);
    if (!file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        throw FileFailure(name.shown() + QStringLiteral(": cannot open: ") + file->errorString());
    }
    return file;
}

/// A temporary file that nobody has to remove: it has no name, or loses it at once, before a signal can end the
/// program.
class UnnamedFile : public QTemporaryFile
{
public:
    /// The name in messages; QTemporaryFile would give the file a name in order to return it.
    QString fileName() const override { return QStringLiteral("temporary file"); }

    bool openUnnamed()
    {
        const Interruption::Shield shield;
        if (!open())
            return false;
        struct stat status = {};
        if (fstat(handle(), &status) == 0 && status.st_nlink == 0)
            return true;
        setAutoRemove(false); // another program may have a file of that name later
        unlink(QFile::encodeName(QTemporaryFile::fileName()).constData());
        return true;
    }
};

std::unique_ptr<QTemporaryFile> unnamed(const FileName &name)
{
    auto file = std::make_unique<UnnamedFile>();
    if (!file->openUnnamed())
        cannotCopy(name, file->errorString());
    return file;
}

/// Copies the rest of a file into a temporary one, and returns a descriptor of that.
int copied(int source, const FileName &name, qint64 limit)
{
    const auto copy = unnamed(name);
    QByteArray piece(pieceSize, Qt::Uninitialized);
    for (qint64 done = 0;;) {
        const ssize_t size = read(source, piece.data(), std::size_t(piece.size()));
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            cannotRead(name, qt_error_string(errno));
        if (size == 0)
            break;
        done += size;
        if (done > limit)
            tooLarge(name, QStringLiteral("more than %1").arg(limit), limit);
        const QString reason = REPORTGENERATOR::WriteAll(*copy, piece.left(int(size)));
        if (!reason.isNull())
            cannotCopy(name, reason);
    }
    const int descriptor = fcntl(copy->handle(), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        cannotCopy(name, qt_error_string(errno));
    return descriptor;
}

} // namespace

Input::Input(const FileName &name, FileKinds kinds, qint64 limit)
    : m_name(name), m_limit(limit), m_state(std::make_unique<State>())
{
    Descriptor source(open(name, kinds));
    if (source.number() < 0 && name.isStandardStream())
        cannotRead(name, qt_error_string(errno));
    if (source.number() < 0)
        cannotOpen(name, errno);
    struct stat status = statusOf(name, source.number());
    if (!name.isStandardStream())
        checkKind(name, status, kinds);
    const off_t position = S_ISREG(status.st_mode) ? std::max(lseek(source.number(), 0, SEEK_CUR), off_t(0)) : 0;
    if (status.st_size - position > limit)
        tooLarge(name, QString::number(status.st_size - position), limit);

    *m_state = {status.st_size, status.st_mtim};
    const auto sourceState = *m_state;
    int descriptor = -1;
    if (name.isStandardStream() || !S_ISREG(status.st_mode)) {
        m_isCopy = true;
        descriptor = copied(source.number(), name, limit);
        const struct stat after = statusOf(name, source.number());
        if (S_ISREG(status.st_mode) && !(sourceState == State{after.st_size, after.st_mtim}))
            hasChanged(name);
        m_file = fileOf(descriptor, name);
        status = statusOf(name, m_file->handle());
        *m_state = {status.st_size, status.st_mtim};
    } else {
        m_file = fileOf(source.release(), name);
    }
}

Input::~Input() = default;

void Input::check() const
{
    if (m_file->error() != QFileDevice::NoError)
        cannotRead(m_name, m_file->errorString());
    const struct stat status = statusOf(m_name, m_file->handle());
    if (!(*m_state == State{status.st_size, status.st_mtim}))
        hasChanged(m_name);
}
