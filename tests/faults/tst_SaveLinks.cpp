// SPDX-License-Identifier: MIT
#include "OwnedFiles.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using REPORTGENERATOR::SaveFile;

/// Links and files that other users have planted are not followed and not replaced; all others are.
class SaveLinksTest : public OwnedFilesTest
{
    Q_OBJECT

private Q_SLOTS:
    void plantedLinkIsNotFollowed_data();
    void plantedLinkIsNotFollowed();
    void linkPlantedByAGroupIsNotFollowed();
    void linksOfTheCallerAndOfTheFoldersOwnerAreFollowed_data();
    void linksOfTheCallerAndOfTheFoldersOwnerAreFollowed();
    void plantedFileIsNotReplaced_data();
    void plantedFileIsNotReplaced();
    void fileWithoutANameIsNotReplaced();
};

namespace {

/// Switches fs.protected_symlinks on, if possible, during its lifetime. Tests that do the same wait for each other.
class ProtectedLinks
{
public:
    ProtectedLinks() : m_file(open("/proc/sys/fs/protected_symlinks", O_RDWR | O_CLOEXEC))
    {
        if (m_file >= 0 && flock(m_file, LOCK_EX) == 0 && pread(m_file, &m_before, 1, 0) == 1 && m_before == '0')
            m_isChanged = pwrite(m_file, "1", 1, 0) == 1;
    }
    ~ProtectedLinks()
    {
        if (m_isChanged && pwrite(m_file, &m_before, 1, 0) != 1)
            qWarning("fs.protected_symlinks could not be set back.");
        if (m_file >= 0)
            close(m_file);
    }
    ProtectedLinks(const ProtectedLinks &) = delete;
    ProtectedLinks &operator=(const ProtectedLinks &) = delete;

    bool areOn() const { return m_isChanged || m_before == '1'; }

private:
    int m_file = -1;
    char m_before = '?';
    bool m_isChanged = false;
};

/// Protects links until the end of the test function, or skips it.
#define PROTECT_LINKS_IF(wanted)                                                                                       \
    std::optional<ProtectedLinks> protection;                                                                          \
    if ((wanted) && !protection.emplace().areOn())                                                                     \
    SKIP("fs.protected_symlinks is off, and cannot be switched on here.")

void addLinkRows()
{
    QTest::addColumn<bool>("dangling");
    QTest::addColumn<bool>("byTheKernelToo");
    for (const bool dangling : {false, true}) {
        for (const bool byTheKernelToo : {false, true}) {
            QTest::addRow("%s, %s", dangling ? "to a file that is not there" : "to a file",
                          byTheKernelToo ? "fs.protected_symlinks is on" : "fs.protected_symlinks as it is")
                << dangling << byTheKernelToo;
        }
    }
}

} // namespace

void SaveLinksTest::plantedLinkIsNotFollowed_data()
{
    addLinkRows();
}

/// The kernel follows such links, since not everybody can write to the folder.
void SaveLinksTest::linkPlantedByAGroupIsNotFollowed()
{
    NEEDS_SUPERUSER();
    QCOMPARE(mkdir(path("sticky").constData(), 0700), 0);
    setOwnerAndMode("sticky", 0, team, 01770);
    writeOld("victim");
    QCOMPARE(symlink("../victim", path("sticky/document").constData()), 0);
    QCOMPARE(lchown(path("sticky/document").constData(), another, another), 0);
    QCOMPARE(save("sticky/document"),
             QStringLiteral("document: cannot write: a symbolic link on the path belongs to another user and is in a "
                            "folder where other users can place links"));
    QCOMPARE(read("victim"), oldContent);
}

/// The superuser saves into a folder like /tmp, where another user has placed a link by that name.
void SaveLinksTest::plantedLinkIsNotFollowed()
{
    NEEDS_SUPERUSER();
    QFETCH(bool, dangling);
    QFETCH(bool, byTheKernelToo);
    PROTECT_LINKS_IF(byTheKernelToo);

    QCOMPARE(mkdir(path("sticky").constData(), 0700), 0);
    setOwnerAndMode("sticky", 0, 0, 01777);
    if (!dangling)
        writeOld("victim");
    QCOMPARE(symlink("../victim", path("sticky/document").constData()), 0);
    QCOMPARE(lchown(path("sticky/document").constData(), another, another), 0);
    QCOMPARE(symlink("sticky/document", path("own").constData()), 0); // leads to the planted link
    const QStringList before = names();
    for (const char *name : {"sticky/document", "own"}) {
        QCOMPARE(save(name),
                 QStringLiteral("document: cannot write: a symbolic link on the path belongs to another user and is in "
                                "a folder where other users can place links"));
        QCOMPARE(names(), before);
        QCOMPARE(read("victim"), dangling ? QByteArray("(no such file)") : oldContent);
    }
    if (byTheKernelToo) { // the kernel refuses it too
        QCOMPARE(open(path("sticky/document").constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), -1);
        QCOMPARE(errno, EACCES);
    }
}

void SaveLinksTest::linksOfTheCallerAndOfTheFoldersOwnerAreFollowed_data()
{
    addLinkRows();
}

void SaveLinksTest::linksOfTheCallerAndOfTheFoldersOwnerAreFollowed()
{
    NEEDS_SUPERUSER();
    QFETCH(bool, dangling);
    QFETCH(bool, byTheKernelToo);
    PROTECT_LINKS_IF(byTheKernelToo);

    QCOMPARE(mkdir(path("sticky").constData(), 0700), 0);
    QCOMPARE(mkdir(path("folder").constData(), 0700), 0);
    struct Case
    {
        uid_t ownerOfFolder;
        uid_t ownerOfLink;
        mode_t mode;
        const char *target;
        const char *place; // what is saved
    };
    for (const Case &one : {Case{another, 0, 01777, "../file", "sticky/place"}, // the caller's link
                            Case{another, another, 01777, "../file", "sticky/place"}, // a link of the folder's owner
                            Case{0, another, 01755, "../file", "sticky/place"}, // nobody else can place links there
                            Case{0, another, 0777, "../file", "sticky/place"}, // not sticky
                            Case{0, another, 01777, "../folder", "sticky/place/../file"}}) { // a link within the path
        setOwnerAndMode("sticky", one.ownerOfFolder, 0, one.mode);
        unlink(path("sticky/place").constData());
        unlink(path("file").constData());
        if (!dangling)
            writeOld("file");
        QCOMPARE(symlink(one.target, path("sticky/place").constData()), 0);
        QCOMPARE(lchown(path("sticky/place").constData(), one.ownerOfLink, one.ownerOfLink), 0);
        QCOMPARE(save(one.place), QString());
        QCOMPARE(read("file"), newContent);
        QVERIFY(QFileInfo(QFile::decodeName(path("sticky/place"))).isSymLink());
    }
}

void SaveLinksTest::plantedFileIsNotReplaced_data()
{
    QTest::addColumn<uint>("mode");
    QTest::addColumn<uint>("ownerOfFolder");
    QTest::addColumn<bool>("saved");
    QTest::newRow("everybody can write to the folder") << 01777U << 0U << false;
    QTest::newRow("a group can write to the folder") << 01775U << 0U << false;
    QTest::newRow("nobody else can") << 01755U << 0U << true;
    QTest::newRow("a folder that is not sticky") << 0777U << 0U << true;
    QTest::newRow("the file of the folder's owner") << 01777U << uint(another) << true;
}

/// The new document would belong to the user who has placed a file with its name in the folder.
void SaveLinksTest::plantedFileIsNotReplaced()
{
    NEEDS_SUPERUSER();
    QFETCH(uint, mode);
    QFETCH(uint, ownerOfFolder);
    QFETCH(bool, saved);
    QCOMPARE(mkdir(path("place").constData(), 0700), 0);
    setOwnerAndMode("place", ownerOfFolder, team, mode);
    writeOld("place/a");
    setOwnerAndMode("place/a", another, another, 0644);
    const Access before = accessOf(path("place/a"));
    QCOMPARE(save("place/a"),
             saved ? QString()
                   : QStringLiteral("document: cannot write: the file belongs to another user and is in a folder where "
                                    "other users can place files"));
    QCOMPARE(accessOf(path("place/a")), before);
    QCOMPARE(read("place/a"), saved ? newContent : oldContent);
}

void SaveLinksTest::fileWithoutANameIsNotReplaced()
{
    writeOld("a");
    const int file = open(path("a").constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(unlink(path("a").constData()), 0);
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(file);
    QCOMPARE(SaveFile(name, QStringLiteral("document"), newContent),
             QStringLiteral("document: cannot write: the file at the end of the path was removed or renamed, or the "
                            "path was changed"));
    close(file);
    QCOMPARE(names(), QStringList());
}

TEST_SUITE(SaveLinksTest)
#include "tst_SaveLinks.moc"
