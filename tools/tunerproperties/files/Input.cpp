// SPDX-License-Identifier: MIT
#include "files/Input.h"

#include <algorithm>

#include <QFile>

#include "files/InputParts.h"
#include "text/Size.h"

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
