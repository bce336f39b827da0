// SPDX-License-Identifier: MIT
#include "Input.h"

#include <cstdio>

#include <QTemporaryFile>

#include "Console.h"

namespace {

[[noreturn]] void cannotRead(const QString &name, const QFile &file)
{
    throw FileFailure(name + QStringLiteral(": cannot read: ") + file.errorString());
}

/// Copies what is left of a file into a temporary one.
std::unique_ptr<QFile> kept(QFile &source, const QString &name)
{
    auto copy = std::make_unique<QTemporaryFile>();
    if (!copy->open())
        throw FileFailure(name + QStringLiteral(": cannot be kept in a temporary file: ") + copy->errorString());
    QByteArray piece(1 << 16, Qt::Uninitialized);
    qint64 size = 0;
    while ((size = source.read(piece.data(), piece.size())) > 0) {
        if (copy->write(piece.constData(), size) != size)
            break;
    }
    if (size < 0 || source.error() != QFileDevice::NoError)
        cannotRead(name, source);
    if (!copy->flush() || copy->error() != QFileDevice::NoError)
        throw FileFailure(name + QStringLiteral(": cannot be kept in a temporary file: ") + copy->errorString());
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
    return checked(file().read(size));
}

QByteArray Input::bytes()
{
    return checked(file().readAll());
}

QByteArray Input::checked(const QByteArray &bytes) const
{
    if (m_file->error() != QFileDevice::NoError)
        cannotRead(m_name, *m_file);
    return bytes;
}

QString Input::inMyName(const QString &errorText) const
{
    const QString known = m_file->fileName();
    return errorText.startsWith(known) ? m_name + errorText.mid(known.size()) : errorText;
}
