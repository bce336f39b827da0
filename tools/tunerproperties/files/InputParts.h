// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

#include "console/Console.h"
#include "files/Input.h"

/// What the sources of Input for each system share.
namespace InputParts {

constexpr int pieceSize = 1 << 16;

[[noreturn]] inline void cannotOpen(const FileName &name, int error)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot open: ") + qt_error_string(error));
}

[[noreturn]] inline void cannotRead(const FileName &name, const QString &reason)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot read: ") + reason);
}

[[noreturn]] inline void cannotCopy(const FileName &name, const QString &reason)
{
    throw FileFailure(name.shown() + QStringLiteral(": cannot copy to a temporary file: ") + reason);
}

[[noreturn]] inline void tooLarge(const FileName &name, const QString &size, qint64 limit)
{
    throw FileFailure(name.shown()
                      + QStringLiteral(": too large: %1 bytes; the limit is %2 bytes").arg(size).arg(limit));
}

[[noreturn]] inline void hasChanged(const FileName &name)
{
    throw FileFailure(name.shown() + QStringLiteral(": changed while it was being read"));
}

/// For pipes and devices.
inline void refuseUnless(FileKinds kinds, const FileName &name)
{
    if (kinds == FileKinds::All)
        return;
    if (kinds == FileKinds::Replaceable)
        Input::refuseToReplace(name);
    throw FileFailure(name.shown()
                      + QStringLiteral(": not a regular file; use --special-files to read it among several files"));
}

/// A file that messages name as it is shown. One that is opened by a descriptor has no name of its own.
class NamedFile : public QFile
{
public:
    NamedFile(const QString &path, const FileName &name) : QFile(path), m_shownName(name.shown()) { }
    QString fileName() const override { return m_shownName; }

private:
    QString m_shownName;
};

} // namespace InputParts
