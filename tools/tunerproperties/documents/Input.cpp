// SPDX-License-Identifier: MIT
#include "documents/Input.h"

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryFile>

#include <reportbase/SaveFile.h>

#include "Console.h"
#include "batch/Interruption.h"

namespace {

[[noreturn]] void cannotRead(const QString &name, const QFile &file)
{
    throw FileFailure(name + QStringLiteral(": cannot read: ") + file.errorString());
}

[[noreturn]] void cannotKeep(const QString &name, const QString &reason)
{
    throw FileFailure(name + QStringLiteral(": cannot be kept in a temporary file: ") + reason);
}

/// A temporary file that nobody has to remove: it has no name, or loses it at once, before a signal may end the
/// program.
class NamelessFile : public QTemporaryFile
{
public:
    /// What texts call it; QTemporaryFile would give the file a name to return that.
    QString fileName() const override { return QStringLiteral("temporary file"); }

    bool openWithoutName()
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

std::unique_ptr<QTemporaryFile> nameless(const QString &name)
{
    auto file = std::make_unique<NamelessFile>();
    if (!file->openWithoutName())
        cannotKeep(name, file->errorString());
    return file;
}

/// Copies what is left of a file into a temporary one.
std::unique_ptr<QFile> kept(QFile &source, const QString &name)
{
    auto copy = nameless(name);
    QByteArray piece(1 << 16, Qt::Uninitialized);
    qint64 size = 0;
    while ((size = source.read(piece.data(), piece.size())) > 0) {
        const QString reason = REPORTGENERATOR::WriteAll(*copy, piece.left(int(size)));
        if (!reason.isNull())
            cannotKeep(name, reason);
    }
    if (size < 0 || source.error() != QFileDevice::NoError)
        cannotRead(name, source);
    return copy;
}

} // namespace

Input::Input(const QString &name) : m_name(name)
{
    const bool standardInput = name == Console::streamName();
    auto file = std::make_unique<QFile>(standardInput ? QString() : name);
    if (!(standardInput ? file->open(fileno(stdin), QIODevice::ReadOnly) : file->open(QIODevice::ReadOnly)))
        throw FileFailure(name + QStringLiteral(": cannot open: ") + file->errorString());
    m_file = standardInput || file->isSequential() ? kept(*file, name) : std::move(file);
}

Input::~Input() = default;

QFile &Input::file()
{
    m_file->seek(0);
    return *m_file;
}

QByteArray Input::head(int size)
{
    QByteArray bytes = file().read(size);
    check();
    return bytes;
}

QByteArray Input::bytes()
{
    QByteArray bytes = file().readAll();
    check();
    return bytes;
}

void Input::check() const
{
    if (m_file->error() != QFileDevice::NoError)
        cannotRead(m_name, *m_file);
}

QString Input::inMyName(const QString &errorText) const
{
    const QString known = m_file->fileName();
    return errorText.startsWith(known) ? m_name + errorText.mid(known.size()) : errorText;
}
