// SPDX-License-Identifier: MIT
#include "EveryWay.h"

#include <cerrno>
#include <cstdio>

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

using JobXml::TunerProperties;

namespace {

constexpr int SkipReturnCode = 77; // CTest counts it as skipped

/// A small file system in memory, mounted on a temporary folder. Only this process and its children see it.
class SmallDisk
{
public:
    explicit SmallDisk(const char *options)
        : m_path(QFile::encodeName(m_folder.path())),
          m_isThere(mount("none", m_path.constData(), "tmpfs", 0, options) == 0)
    {
    }
    ~SmallDisk()
    {
        if (m_isThere)
            umount2(m_path.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isThere() const { return m_isThere; }

    bool makeReadOnly() const
    {
        return mount(nullptr, m_path.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

    const Folder &folder() const { return m_folder; }

    qint64 freePages() const
    {
        struct statvfs status = {};
        return statvfs(m_path.constData(), &status) == 0 ? qint64(status.f_bfree) : -1;
    }

    /// Writes a file of this name until only so many pages are free.
    bool fillUpTo(qint64 pages, const QString &name) const
    {
        QFile filler(m_folder.path(name));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        const QByteArray page(int(sysconf(_SC_PAGESIZE)), 'x');
        while (freePages() > pages) {
            if (filler.write(page) != page.size())
                return false;
        }
        return freePages() == pages;
    }

private:
    Folder m_folder;
    QByteArray m_path;
    bool m_isThere;
};

const QString target = QStringLiteral("document");
const QString filler = QStringLiteral("filler");

} // namespace

class FullDiskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();

    void fullDiskKeepsTheOldDocument();
    void diskWithoutFreeInodesKeepsTheOldDocument();
    void readOnlyDiskKeepsTheOldDocument();

private:
    TunerProperties m_old = aSmallDocument("old");
    TunerProperties m_new = aLargeDocument(1, 20000);
};

void FullDiskTest::initTestCase_data()
{
    EveryWay::addRows();
}

void FullDiskTest::fullDiskKeepsTheOldDocument()
{
    QFETCH_GLOBAL(Saving, saving);
    const QByteArray options = "size=" + QByteArray::number(64 * qlonglong(sysconf(_SC_PAGESIZE)));
    const SmallDisk disk(options.constData());
    QVERIFY2(disk.isThere(), strerror(errno));
    const QString path = disk.folder().path(target);
    const qint64 allPages = disk.freePages();
    QCOMPARE(saving.save(m_new, path), QString());
    const QByteArray whole = disk.folder().read(target);
    const qint64 pagesNeeded = allPages - disk.freePages();
    QVERIFY(pagesNeeded > 0);

    QCOMPARE(saving.save(m_old, path), QString());
    const QByteArray old = disk.folder().read(target);
    for (qint64 pages = 0; pages < pagesNeeded; ++pages) {
        QVERIFY(disk.fillUpTo(pages, filler));
        QCOMPARE(saving.save(m_new, path), path + QStringLiteral(": cannot write: No space left on device"));
        QCOMPARE(disk.folder().names(), QStringList({target, filler}));
        QCOMPARE(disk.folder().read(target), old);
        QCOMPARE(disk.freePages(), pages); // no unnamed file is left either
    }
    QVERIFY(disk.fillUpTo(pagesNeeded, filler));
    QCOMPARE(saving.save(m_new, path), QString());
    QVERIFY(disk.folder().read(target) == whole);
}

void FullDiskTest::diskWithoutFreeInodesKeepsTheOldDocument()
{
    QFETCH_GLOBAL(Saving, saving);
    const SmallDisk disk("nr_inodes=5");
    QVERIFY2(disk.isThere(), strerror(errno));
    const QString path = disk.folder().path(target);
    QCOMPARE(saving.save(m_old, path), QString());
    const QByteArray old = disk.folder().read(target);
    int others = 0;
    while (QFile(disk.folder().path(QString::number(others))).open(QIODevice::WriteOnly))
        ++others;
    QVERIFY(others > 0 && others < 5);

    QCOMPARE(saving.save(m_new, path), path + QStringLiteral(": cannot write: No space left on device"));
    QCOMPARE(disk.folder().names().size(), others + 1);
    QCOMPARE(disk.folder().read(target), old);

    QVERIFY(QFile::remove(disk.folder().path(QStringLiteral("0"))));
    QCOMPARE(saving.save(m_new, path), QString());
}

void FullDiskTest::readOnlyDiskKeepsTheOldDocument()
{
    QFETCH_GLOBAL(Saving, saving);
    const SmallDisk disk("size=1m");
    QVERIFY2(disk.isThere(), strerror(errno));
    const QString path = disk.folder().path(target);
    QCOMPARE(saving.save(m_old, path), QString());
    const QByteArray old = disk.folder().read(target);
    QVERIFY2(disk.makeReadOnly(), strerror(errno));

    QCOMPARE(saving.save(m_new, path), path + QStringLiteral(": cannot write: Read-only file system"));
    const QString another = disk.folder().path(QStringLiteral("another"));
    QCOMPARE(saving.save(m_new, another), another + QStringLiteral(": cannot write: Read-only file system"));
    QCOMPARE(disk.folder().names(), QStringList(target));
    QCOMPARE(disk.folder().read(target), old);
}

static int run(int argc, char **argv)
{
    // Only this process sees what it mounts from here on; the mounts end with the process.
    const bool hasOwnMounts =
        unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    if (!hasOwnMounts || !SmallDisk("size=1m").isThere()) {
        std::printf("Nothing can be mounted here (%s), so no disk was filled.\n", strerror(errno));
        return SkipReturnCode;
    }
    QCoreApplication application(argc, argv);
    FullDiskTest test;
    return QTest::qExec(&test, argc, argv);
}

TEST_SUITE_RUN_BY(run)
#include "tst_FullDisk.moc"
