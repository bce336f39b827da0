// SPDX-License-Identifier: MIT
#include "OwnedFiles.h"

#include <algorithm>
#include <array>

#include <sys/stat.h>
#include <sys/xattr.h>

QByteArray place;

char *toString(const Access &access)
{
    QByteArray text = QByteArray::number(access.owner) + ':' + QByteArray::number(access.group) + ' '
        + QByteArray::number(access.mode, 8);
    for (const auto &[name, value] : access.attributes)
        text += ' ' + name + '=' + value.toHex();
    return qstrdup(text.constData());
}

Access accessOf(const QByteArray &path)
{
    Access access;
    struct stat status = {};
    if (lstat(path.constData(), &status) != 0)
        return access;
    access.owner = status.st_uid;
    access.group = status.st_gid;
    access.mode = status.st_mode & 07777;
    std::array<char, 4096> names = {};
    const ssize_t size = listxattr(path.constData(), names.data(), names.size());
    for (const QByteArray &name : QByteArray(names.data(), int(std::max<ssize_t>(size, 0))).split('\0')) {
        std::array<char, 4096> value = {};
        if (!name.isEmpty()) {
            const ssize_t got = getxattr(path.constData(), name.constData(), value.data(), value.size());
            access.attributes[name] = QByteArray(value.data(), int(std::max<ssize_t>(got, 0)));
        }
    }
    return access;
}

bool setAttribute(const QByteArray &path, const char *name, const QByteArray &value)
{
    return setxattr(path.constData(), name, value.constData(), std::size_t(value.size()), 0) == 0;
}

void OwnedFilesTest::initTestCase_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("temporary files") << QDir::tempPath();
    QTest::newRow("memory") << QStringLiteral("/dev/shm");
    QTest::newRow("current folder") << QDir::currentPath();
}

void OwnedFilesTest::init()
{
    QFETCH_GLOBAL(QString, where);
    m_umask = umask(022);
    m_folder =
        std::make_unique<QTemporaryDir>(where + QStringLiteral("/%1-XXXXXX").arg(QCoreApplication::applicationName()));
    if (!m_folder->isValid())
        SKIP("There is no such folder, or it cannot be written.");
}

void OwnedFilesTest::cleanup()
{
    FaultyCalls::end();
    m_folder.reset();
    umask(m_umask);
}

void OwnedFilesTest::writeOld(const char *name) const
{
    QFile file(QFile::decodeName(path(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(oldContent), qint64(oldContent.size()));
}

QByteArray OwnedFilesTest::read(const char *name) const
{
    QFile file(QFile::decodeName(path(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no such file)");
}

void OwnedFilesTest::setOwnerAndMode(const char *name, uid_t user, gid_t group, mode_t mode) const
{
    QCOMPARE(chown(path(name).constData(), user, group), 0);
    QCOMPARE(chmod(path(name).constData(), mode), 0);
}

QString OwnedFilesTest::saveWith(FaultyCalls::Action action, int call, void (*run)(), int error, bool unnamedFiles)
{
    place = path("");
    FaultyCalls::Plan plan;
    plan.unnamedFiles = unnamedFiles;
    plan.action = action;
    plan.call = call;
    plan.run = run;
    plan.error = error;
    FaultyCalls::begin(plan);
    return save("a");
}

QByteArray OwnedFilesTest::callsOf(const char *name) const
{
    FaultyCalls::Plan plan;
    plan.unnamedFiles = false;
    FaultyCalls::begin(plan);
    const QString reason = save(name);
    const QByteArray calls = FaultyCalls::end();
    return reason.isNull() ? calls : QByteArray();
}

#include "moc_OwnedFiles.cpp"
