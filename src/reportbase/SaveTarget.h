// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "Descriptor.h"

namespace REPORTGENERATOR {

/// The target of a path: a folder, a name in it, and the file of this name, if there is one. Descriptors of folder and
/// file stay open, so that the target stays the same if others rename something meanwhile.
///
/// Symbolic links are followed where the kernel follows them when it opens the path. In a sticky folder that other
/// users can write to, a link at the end of the path must belong to the caller or to the owner of the folder, even if
/// the kernel would follow it, and so must a file that is to be replaced there.
class SaveTarget
{
public:
    /// Finds the target. Returns the reason why nothing can be saved there, or a null string.
    QString find(const QByteArray &path);

    int folder() const { return m_folder.number(); }
    const QByteArray &name() const { return m_name; }

    bool isNew() const { return !m_old; }
    /// The old file, open for writing.
    int old() const { return m_old.number(); }
    /// Whether the old file is the one that `original` has open.
    bool leadsTo(int file) const;

private:
    QString walk(QByteArray path);
    QString followLink(QByteArray &path) const;
    QString confirm(const QByteArray &path) const;
    QString openOld();
    bool enter(const QByteArray &folder);

    Descriptor m_folder;
    QByteArray m_name;
    Descriptor m_old;
};

} // namespace REPORTGENERATOR
