// SPDX-License-Identifier: MIT
#include "files/Input.h"

#include <algorithm>

#include <QFile>

#include "console/Console.h"
#include "files/InputParts.h"
#include "text/Size.h"

namespace InputParts {

void cannotOpen(const FileName &name, int error)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot open: ") + qt_error_string(error));
}

void cannotRead(const FileName &name, const QString &reason)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot read: ") + reason);
}

void cannotCopy(const FileName &name, const QString &reason)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot copy to a temporary file: ") + reason);
}

void tooLarge(const FileName &name, const QString &size, qint64 limit)
{
    throw FileFailure(name.shown()
                      + QStringLiteral(": too large: %1 bytes; the limit is %2 bytes").arg(size).arg(limit));
}

void hasChanged(const FileName &name)
{
    throw FileFailure(name.shown() + QStringLiteral(": changed while it was being read"));
}

void refuseUnless(FileKinds kinds, const FileName &name)
{
    if (kinds == FileKinds::All)
        return;
    if (kinds == FileKinds::Replaceable)
        Input::refuseToReplace(name);
    throw FileFailure(name.shown()
                      + QStringLiteral(": not a regular file; use --special-files to read it among several files"));
}

} // namespace InputParts

using namespace InputParts;

QFile &Input::file()
{
    if (!m_file->seek(0))
        cannotRead(m_name, m_file->errorString());
    return *m_file;
}

QByteArray Input::head(int size)
{
    QByteArray bytes = file().read(size);
    check();
    return bytes;
}

// QFile::readAll() returns nothing, and reports nothing, where a file does not fit into a QByteArray.
QByteArray Input::bytes()
{
    QFile &source = file();
    QByteArray bytes;
    bytes.reserve(REPORTGENERATOR::Size(source.size()));
    for (;;) {
        const auto had = bytes.size();
        bytes.resize(had + pieceSize);
        const qint64 size = source.read(bytes.data() + had, pieceSize);
        bytes.resize(had + REPORTGENERATOR::Size(std::max(size, qint64(0))));
        if (size < 0 || source.error() != QFileDevice::NoError)
            cannotRead(m_name, source.errorString());
        if (size == 0)
            break;
        if (bytes.size() > m_limit)
            tooLarge(m_name, QStringLiteral("more than %1").arg(m_limit), m_limit);
    }
    check();
    return bytes;
}

void Input::refuseToReplace(const FileName &name)
{
    throw FileFailure(name.shown()
                      + QStringLiteral(": not a regular file, so it cannot be changed in place; use - to read standard "
                                       "input and write standard output"));
}
