// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

#include "files/Input.h"

/// What the sources of Input for each system share.
namespace InputParts {

constexpr int pieceSize = 1 << 16;

[[noreturn]] void cannotOpen(const FileName &name, int error);
[[noreturn]] void cannotRead(const FileName &name, const QString &reason);
[[noreturn]] void cannotCopy(const FileName &name, const QString &reason);
[[noreturn]] void tooLarge(const FileName &name, const QString &size, qint64 limit);
[[noreturn]] void hasChanged(const FileName &name);

/// For pipes and devices.
void refuseUnless(FileKinds kinds, const FileName &name);

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
