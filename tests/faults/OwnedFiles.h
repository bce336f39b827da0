// SPDX-License-Identifier: MIT
#pragma once

#include "Saving.h"

#include <map>
#include <memory>

#include <sys/types.h>

#include <Skip.h>
#include <reportbase/SaveFile.h>

#include "FaultyCalls.h"

constexpr uid_t somebody = 65534; // saves without privileges
constexpr uid_t another = 65533;
constexpr gid_t team = 65532;

inline const QByteArray oldContent = "the old document";
inline const QByteArray newContent = "the new document";

/// The owner of a file and its access rights.
struct Access
{
    uid_t owner = 0;
    gid_t group = 0;
    mode_t mode = 0;
    std::map<QByteArray, QByteArray> attributes; // extended attributes, access control lists included

    bool operator==(const Access &other) const
    {
        return owner == other.owner && group == other.group && mode == other.mode && attributes == other.attributes;
    }
};

char *toString(const Access &access);
Access accessOf(const QByteArray &path);
bool setAttribute(const QByteArray &path, const char *name, const QByteArray &value);

/// The folder of the test, for functions that are called during a save: Plan::run takes no arguments.
extern QByteArray place;

#define NEEDS_SUPERUSER()                                                                                              \
    if (geteuid() != 0)                                                                                                \
    SKIP("Only the superuser can give files to others.")
#define NEEDS(supported, what)                                                                                         \
    if (!(supported))                                                                                                  \
    SKIP(what " are not supported by this file system, or not allowed.")

/// Tests of SaveFile() with files of several users. Each test runs on several file systems, in a new folder.
class OwnedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

protected:
    QByteArray path(const char *name) const { return QFile::encodeName(m_folder->filePath(QString::fromLatin1(name))); }
    void writeOld(const char *name) const;
    QByteArray read(const char *name) const;
    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    void setOwnerAndMode(const char *name, uid_t user, gid_t group, mode_t mode) const;
    QString save(const char *name) const
    {
        return REPORTGENERATOR::SaveFile(path(name), QStringLiteral("document"), newContent);
    }
    /// Saves with a plan. Without `unnamedFiles`, the new file has a name from the start, so that `run` can access it.
    QString saveWith(FaultyCalls::Action action, int call, void (*run)(), int error = 0, bool unnamedFiles = false);
    /// The calls of a save without faults; empty if it fails.
    QByteArray callsOf(const char *name) const;

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    mode_t m_umask = 0;
};
