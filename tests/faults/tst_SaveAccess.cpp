// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <Skip.h>
#include <reportbase/SaveFile.h>

#include "FaultyCalls.h"

using FaultyCalls::Action;
using REPORTGENERATOR::SaveFile;

namespace {

constexpr uid_t somebody = 65534; // who saves without privileges
constexpr uid_t another = 65533;
constexpr gid_t team = 65532;
constexpr char accessList[] = "system.posix_acl_access";
constexpr char defaultList[] = "system.posix_acl_default";

const QByteArray oldContent = "the old document";
const QByteArray newContent = "the new document";

/// An entry of an access control list as the kernel stores it: tag, permissions, user or group.
QByteArray entry(char tag, char permissions, quint32 id = 0xFFFFFFFF)
{
    QByteArray bytes;
    for (const char byte : {tag, '\0', permissions, '\0'})
        bytes.append(byte);
    for (int shift = 0; shift < 32; shift += 8)
        bytes.append(char((id >> shift) & 0xFF));
    return bytes;
}

/// The owner may read and write, `another` may do what is said, a group and all others nothing. The mask is the same,
/// and appears as the group's permissions in the mode.
QByteArray listFor(char permissions)
{
    return QByteArray("\2\0\0\0", 4) + entry(1, 6) + entry(2, permissions, another) + entry(4, 0)
        + entry(0x10, permissions) + entry(0x20, 0);
}

/// Whom a file belongs to and what is said about it.
struct Access
{
    uid_t owner = 0;
    gid_t group = 0;
    mode_t mode = 0;
    std::map<QByteArray, QByteArray> attributes; // lists too

    bool operator==(const Access &other) const
    {
        return owner == other.owner && group == other.group && mode == other.mode && attributes == other.attributes;
    }
};

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

/// With the file's own list, which says the rest about groups, nobody but the owner has more than the mode says.
bool isNotMoreOpen(const Access &access, const Access &than)
{
    const auto list = [](const Access &of) {
        const auto found = of.attributes.find(accessList);
        return found == of.attributes.end() ? QByteArray() : found->second;
    };
    const bool isClosed = (access.mode & 077) == 0;
    return isClosed
        || (access.owner == than.owner && access.group == than.group && (access.mode & ~than.mode & 0777) == 0
            && list(access) == list(than));
}

bool setAttribute(const QByteArray &path, const char *name, const QByteArray &value)
{
    return setxattr(path.constData(), name, value.constData(), std::size_t(value.size()), 0) == 0;
}

/// What SaveFile() returns in a process of `somebody`, with one further group if it is given; a text of its own if the
/// path cannot be reached then.
QString savedBySomebody(const QByteArray &path, std::optional<gid_t> furtherGroup = {})
{
    int ends[2];
    if (pipe(ends) != 0)
        return QStringLiteral("no pipe");
    const int status = statusOfChild([&] {
        const gid_t groups[] = {furtherGroup.value_or(0)};
        if (setgroups(furtherGroup ? 1 : 0, groups) != 0 || setresgid(somebody, somebody, somebody) != 0
            || setresuid(somebody, somebody, somebody) != 0)
            return 1;
        umask(022);
        const QByteArray reason = SaveFile(path, QStringLiteral("document"), newContent).toUtf8();
        return write(ends[1], reason.constData(), std::size_t(reason.size())) == reason.size() ? 0 : 2;
    });
    close(ends[1]);
    std::array<char, 1000> reason = {};
    const ssize_t size = read(ends[0], reason.data(), reason.size());
    close(ends[0]);
    if (status != 0)
        return QStringLiteral("status %1").arg(status);
    return size > 0 ? QString::fromUtf8(reason.data(), int(size)) : QString();
}

} // namespace

/// Who may use a file after it was saved: as before, or fewer. And where links lead.
class SaveAccessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

    void theModeStays_data();
    void theModeStays();
    void bitsThatLendAnIdentityAreDropped();
    void aNewFileObeysTheMask();
    void aNewFileGetsTheListOfItsFolder();
    void ownerAndGroupStay();
    void theListStays();
    void theListOfTheFolderDoesNotOpenAnOldFile();
    void attributesStay();
    void whatDescribesTheOldContentIsDropped();
    void anotherNameKeepsTheOldDocument();
    void aFurtherGroupOfTheCallerStays();
    void aGroupThatCannotBeKeptOpensNothing_data();
    void aGroupThatCannotBeKeptOpensNothing();
    void aListWithoutItsGroupIsRefused();
    void theCallerMayBecomeTheOwner();
    void aLabelThatCannotBeKeptIsRefused();
    void attributesThatCannotBeReadAreLeftOut();
    void theSuperuserTakesNoFileFromItsOwner();
    void noFailingCallOpensTheFile_data();
    void noFailingCallOpensTheFile();
    void noMomentOpensTheFile_data();
    void noMomentOpensTheFile();

    void aPlantedLinkIsNotFollowed_data();
    void aPlantedLinkIsNotFollowed();
    void linksOfTheCallerAndOfTheFoldersOwnerAreFollowed_data();
    void linksOfTheCallerAndOfTheFoldersOwnerAreFollowed();
    void aPlantedFileIsNotReplaced_data();
    void aPlantedFileIsNotReplaced();
    void aFileWithoutANameIsNotReplaced();
    void aRenamedFolderIsNotMistakenForAnother();
    void anExchangedFileIsNotMistakenForAnother();
    void aFileThatIsRemovedWhileItIsLookedForIsAnError();
    void attributesMayChangeMeanwhile_data();
    void attributesMayChangeMeanwhile();
    void anAttributeThatCannotBeReadIsAnError();
    void aLabelThatIsThereAlreadyIsNotSet();
    void aFileThatIsOpenToMoreUsersInTheEndIsRefused();

private:
    QByteArray callsOf(const char *name) const;
    QString saveWith(Action action, int call, void (*run)(), int error = 0);
    QByteArray path(const char *name) const { return QFile::encodeName(m_folder->filePath(QString::fromLatin1(name))); }
    void writeOld(const char *name) const;
    QByteArray read(const char *name) const;
    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QString save(const char *name) const { return SaveFile(path(name), QStringLiteral("document"), newContent); }
    void give(const char *name, uid_t user, gid_t group, mode_t mode) const;
    void giveFolder(uid_t user, gid_t group, mode_t mode) const;
    void prepareEverything();

    std::unique_ptr<QTemporaryDir> m_folder;
    mode_t m_umask = 0;
};

#define NEEDS_SUPERUSER()                                                                                              \
    if (geteuid() != 0)                                                                                                \
    SKIP("Only the superuser can give files to others.")
#define NEEDS(supported, what)                                                                                         \
    if (!(supported))                                                                                                  \
    SKIP(what " are not known to this file system, or not allowed.")

void SaveAccessTest::initTestCase_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("temporary files") << QDir::tempPath();
    QTest::newRow("memory") << QStringLiteral("/dev/shm");
    QTest::newRow("current folder") << QDir::currentPath();
}

void SaveAccessTest::init()
{
    QFETCH_GLOBAL(QString, where);
    m_umask = umask(022);
    m_folder = std::make_unique<QTemporaryDir>(where + QStringLiteral("/tst_SaveAccess-XXXXXX"));
    if (!m_folder->isValid())
        SKIP("There is no such folder, or it cannot be written.");
}

void SaveAccessTest::cleanup()
{
    FaultyCalls::end();
    m_folder.reset();
    umask(m_umask);
}

void SaveAccessTest::writeOld(const char *name) const
{
    QFile file(QFile::decodeName(path(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(oldContent), qint64(oldContent.size()));
}

QByteArray SaveAccessTest::read(const char *name) const
{
    QFile file(QFile::decodeName(path(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no such file)");
}

void SaveAccessTest::give(const char *name, uid_t user, gid_t group, mode_t mode) const
{
    QCOMPARE(chown(path(name).constData(), user, group), 0);
    QCOMPARE(chmod(path(name).constData(), mode), 0);
}

void SaveAccessTest::giveFolder(uid_t user, gid_t group, mode_t mode) const
{
    give("", user, group, mode);
    const QByteArray folder = path("");
    const int status = statusOfChild([&] {
        const bool isSomebody = setgroups(0, nullptr) == 0 && setresgid(somebody, somebody, somebody) == 0
            && setresuid(somebody, somebody, somebody) == 0;
        return isSomebody && access(folder.constData(), X_OK) == 0 ? 0 : 1;
    });
    if (status != 0)
        SKIP("Others cannot enter this folder.");
}

void SaveAccessTest::theModeStays_data()
{
    QTest::addColumn<uint>("mode");
    for (const uint mode : {0777U, 0666U, 0600U, 0621U, 0324U, 0200U})
        QTest::addRow("%o", mode) << mode;
}

void SaveAccessTest::theModeStays()
{
    QFETCH(uint, mode);
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), mode), 0);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")).mode, mode);
}

/// As when a file is written in place.
void SaveAccessTest::bitsThatLendAnIdentityAreDropped()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 07755), 0);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")).mode, mode_t(0755));
}

void SaveAccessTest::aNewFileObeysTheMask()
{
    umask(027);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")).mode, mode_t(0640));
}

void SaveAccessTest::aNewFileGetsTheListOfItsFolder()
{
    NEEDS(setAttribute(path(""), defaultList, listFor(4)), "Access control lists");
    writeOld("another"); // by the system's own means
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), accessOf(path("another")));
    QCOMPARE(accessOf(path("a")).attributes[accessList], listFor(4));
}

void SaveAccessTest::ownerAndGroupStay()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    give("a", another, team, 0640);
    const Access before = accessOf(path("a"));
    QCOMPARE(before.owner, another);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::theListStays()
{
    writeOld("a");
    NEEDS(setAttribute(path("a"), accessList, listFor(4)), "Access control lists");
    const Access before = accessOf(path("a"));
    QCOMPARE(before.mode, mode_t(0640)); // which nobody in the group may do
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::theListOfTheFolderDoesNotOpenAnOldFile()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 0640), 0);
    NEEDS(setAttribute(path(""), defaultList, listFor(7)), "Access control lists");
    const Access before = accessOf(path("a"));
    QCOMPARE(before.attributes.count(accessList), std::size_t(0));
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::attributesStay()
{
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", QByteArray("a\0\xff", 3)), "Extended attributes");
    QVERIFY(setAttribute(path("a"), "user.empty", ""));
    QVERIFY(setAttribute(path("a"), "user.long", QByteArray(1000, 'x')));
    if (geteuid() == 0)
        QVERIFY(setAttribute(path("a"), "security.tst_SaveAccess", "label"));
    const Access before = accessOf(path("a"));
    QVERIFY(before.attributes.size() >= 3);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::whatDescribesTheOldContentIsDropped()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    const QByteArray anyCapability("\1\0\0\2\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
    NEEDS(setAttribute(path("a"), "security.capability", anyCapability), "Capabilities of files");
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")).attributes.count("security.capability"), std::size_t(0));
}

void SaveAccessTest::anotherNameKeepsTheOldDocument()
{
    writeOld("a");
    QCOMPARE(link(path("a").constData(), path("b").constData()), 0);
    QCOMPARE(save("a"), QString());
    QCOMPARE(read("a"), newContent);
    QCOMPARE(read("b"), oldContent);
}

void SaveAccessTest::aFurtherGroupOfTheCallerStays()
{
    NEEDS_SUPERUSER();
    giveFolder(somebody, somebody, 0755);
    writeOld("a");
    give("a", somebody, team, 0660);
    const Access before = accessOf(path("a"));
    QCOMPARE(savedBySomebody(path("a"), team), QString());
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::aGroupThatCannotBeKeptOpensNothing_data()
{
    QTest::addColumn<uint>("before");
    QTest::addColumn<uint>("after");
    const auto row = [](uint before, uint after) { QTest::addRow("%o", before) << before << after; };
    row(0640, 0600);
    row(0660, 0600);
    row(0664, 0644);
    row(0666, 0666);
    row(0646, 0644);
    row(0604, 0600); // the group was shut out, and its members are among all others now
    row(0751, 0711);
}

void SaveAccessTest::aGroupThatCannotBeKeptOpensNothing()
{
    NEEDS_SUPERUSER();
    QFETCH(uint, before);
    QFETCH(uint, after);
    giveFolder(somebody, somebody, 0755);
    writeOld("a");
    give("a", somebody, team, before);
    QCOMPARE(savedBySomebody(path("a")), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.owner, somebody);
    QCOMPARE(access.group, gid_t(somebody));
    QCOMPARE(access.mode, after);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::aListWithoutItsGroupIsRefused()
{
    NEEDS_SUPERUSER();
    giveFolder(somebody, somebody, 0755);
    writeOld("a");
    give("a", somebody, team, 0600);
    NEEDS(setAttribute(path("a"), accessList, listFor(4)), "Access control lists");
    const Access before = accessOf(path("a"));
    QCOMPARE(savedBySomebody(path("a")),
             QStringLiteral("document: cannot write: the access control list of the old file cannot be kept: "
                            "Operation not permitted"));
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), oldContent);
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
    QCOMPARE(savedBySomebody(path("a"), team), QString());
    QCOMPARE(accessOf(path("a")), before);
}

/// Who may write a file of another user in a folder shared with them.
void SaveAccessTest::theCallerMayBecomeTheOwner()
{
    NEEDS_SUPERUSER();
    giveFolder(another, team, 0777);
    writeOld("a");
    give("a", another, team, 0664);
    QCOMPARE(savedBySomebody(path("a"), team), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.owner, somebody);
    QCOMPARE(access.group, team);
    QCOMPARE(access.mode, mode_t(0664));
}

void SaveAccessTest::aLabelThatCannotBeKeptIsRefused()
{
    NEEDS_SUPERUSER();
    giveFolder(somebody, somebody, 0755);
    writeOld("a");
    NEEDS(setAttribute(path("a"), "security.tst_SaveAccess", "label"), "Labels");
    give("a", somebody, somebody, 0600);
    const Access before = accessOf(path("a"));
    QCOMPARE(savedBySomebody(path("a")),
             QStringLiteral("document: cannot write: the extended attribute 'security.tst_SaveAccess' of the old file "
                            "cannot be kept: Operation not permitted"));
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), oldContent);
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

void SaveAccessTest::attributesThatCannotBeReadAreLeftOut()
{
    NEEDS_SUPERUSER();
    giveFolder(somebody, somebody, 0755);
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", "x"), "Extended attributes");
    give("a", somebody, somebody, 0200);
    QCOMPARE(savedBySomebody(path("a")), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.mode, mode_t(0200));
    QCOMPARE(access.attributes.count("user.comment"), std::size_t(0));
}

/// An old file that has everything to keep that this process can give it.
void SaveAccessTest::prepareEverything()
{
    QFETCH(bool, hasList);
    QFile::remove(QFile::decodeName(path("a")));
    removexattr(path("").constData(), defaultList); // of the time before
    writeOld("a");
    if (geteuid() == 0)
        give("a", another, team, 0640);
    setAttribute(path("a"), "user.comment", "x");
    if (hasList)
        NEEDS(setAttribute(path("a"), accessList, listFor(4)), "Access control lists");
    NEEDS(setAttribute(path(""), defaultList, listFor(7)), "Access control lists"); // which is not the file's
}

void SaveAccessTest::theSuperuserTakesNoFileFromItsOwner()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    give("a", another, team, 0640);
    const Access before = accessOf(path("a"));
    FaultyCalls::begin({});
    QCOMPARE(save("a"), QString());
    FaultyCalls::Plan plan;
    plan.call = int(QByteArray(FaultyCalls::end()).indexOf(FaultyCalls::Chown)) + 1;
    QVERIFY(plan.call > 0);
    writeOld("a");
    plan.action = Action::FailForEver;
    plan.error = EPERM;
    FaultyCalls::begin(plan);
    QCOMPARE(save("a"),
             QStringLiteral("document: cannot write: owner and group of the old file cannot be kept: "
                            "Operation not permitted"));
    FaultyCalls::end();
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), oldContent);
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

void SaveAccessTest::noFailingCallOpensTheFile_data()
{
    QTest::addColumn<bool>("hasList");
    QTest::addColumn<bool>("unnamedFiles");
    for (const bool hasList : {true, false}) {
        for (const bool unnamedFiles : {true, false})
            QTest::addRow("%s list, %s", hasList ? "a" : "no", unnamedFiles ? "unnamed until whole" : "named at once")
                << hasList << unnamedFiles;
    }
}

/// Either nothing has changed and the reason is given, or the file is saved and open to nobody else than before.
void SaveAccessTest::noFailingCallOpensTheFile()
{
    QFETCH(bool, hasList);
    QFETCH(bool, unnamedFiles);
    prepareEverything();
    const Access before = accessOf(path("a"));
    FaultyCalls::Plan plan;
    plan.unnamedFiles = unnamedFiles;
    FaultyCalls::begin(plan);
    QCOMPARE(save("a"), QString());
    const QByteArray calls = FaultyCalls::end();
    QCOMPARE(accessOf(path("a")), before);
    for (const char kind : hasList ? QByteArray("aigt") : QByteArray("aigtvm"))
        QVERIFY2(calls.contains(kind), calls.constData());

    int refusals = 0;
    for (const Action action : {Action::Fail, Action::FailForEver}) {
        for (const int error : {EPERM, EACCES, EINVAL, EIO, ENOSPC, EDQUOT, ENODATA, EOPNOTSUPP, ERANGE}) {
            for (plan.call = 1; plan.call <= calls.size(); ++plan.call) {
                const char kind = calls[plan.call - 1];
                // A query that has no room for ever, and an attribute that is never there, would not be the truth.
                const bool saysNone = kind == 'g' && (error == ENODATA || error == EOPNOTSUPP);
                if (saysNone || (error == ERANGE && action == Action::FailForEver))
                    continue;
                prepareEverything();
                plan.action = action;
                plan.error = error;
                FaultyCalls::begin(plan);
                const QString reason = save("a");
                FaultyCalls::end();
                const Access after = accessOf(path("a"));
                const QByteArray what = QByteArray("call ") + QByteArray::number(plan.call) + " of " + calls + ": "
                    + qt_error_string(error).toUtf8();
                if (reason.isNull()) {
                    QVERIFY2(read("a") == newContent, what.constData());
                    QVERIFY2(after.owner == before.owner, what.constData());
                    QVERIFY2(isNotMoreOpen(after, before), what.constData());
                } else {
                    ++refusals;
                    QVERIFY2(reason.startsWith(QLatin1String("document: cannot write: ")), qPrintable(reason));
                    QVERIFY2(read("a") == oldContent, what.constData());
                    QVERIFY2(after == before, what.constData());
                }
                QCOMPARE(names(), QStringList(QStringLiteral("a")));
            }
        }
    }
    QVERIFY(refusals > 50);
}

void SaveAccessTest::noMomentOpensTheFile_data()
{
    noFailingCallOpensTheFile_data();
}

/// Whenever the process is killed, what it leaves is open to nobody whom the old file was not open to.
void SaveAccessTest::noMomentOpensTheFile()
{
    QFETCH(bool, unnamedFiles);
    prepareEverything();
    const Access before = accessOf(path("a"));
    int left = 0;
    for (const Action action : {Action::DieHalfway, Action::DieAfter}) {
        bool died = true;
        for (int call = 1; died; ++call) {
            prepareEverything();
            const int status = statusOfChild([&] {
                FaultyCalls::Plan plan;
                plan.call = call;
                plan.action = action;
                plan.unnamedFiles = unnamedFiles;
                FaultyCalls::begin(plan);
                return save("a").isNull() ? 0 : 1;
            });
            died = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
            QVERIFY(died || status == 0);
            for (const QString &name : names()) {
                const QByteArray file = path(QFile::encodeName(name).constData());
                const Access access = accessOf(file);
                const std::unique_ptr<char[]> shown(toString(access));
                QVERIFY2(isNotMoreOpen(access, before), shown.get());
                if (name != QLatin1String("a")) {
                    ++left;
                    QCOMPARE(unlink(file.constData()), 0);
                }
            }
        }
    }
    QVERIFY(left > 0);
}

namespace {

/// fs.protected_symlinks switched on, if it can be. Other tests that do the same wait for each other.
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

void SaveAccessTest::aPlantedLinkIsNotFollowed_data()
{
    addLinkRows();
}

/// The superuser saves into a folder like /tmp, where another user has placed a link by that name.
void SaveAccessTest::aPlantedLinkIsNotFollowed()
{
    NEEDS_SUPERUSER();
    QFETCH(bool, dangling);
    QFETCH(bool, byTheKernelToo);
    std::optional<ProtectedLinks> protection;
    if (byTheKernelToo && !protection.emplace().areOn())
        SKIP("fs.protected_symlinks is off, and cannot be switched on here.");

    QCOMPARE(mkdir(path("sticky").constData(), 0700), 0);
    give("sticky", 0, 0, 01777);
    if (!dangling)
        writeOld("victim");
    QCOMPARE(symlink("../victim", path("sticky/document").constData()), 0);
    QCOMPARE(lchown(path("sticky/document").constData(), another, another), 0);
    QCOMPARE(symlink("sticky/document", path("own").constData()), 0); // which leads on to the planted one
    const QStringList before = names();
    for (const char *name : {"sticky/document", "own"}) {
        QCOMPARE(save(name),
                 QStringLiteral("document: cannot write: a symbolic link on the way belongs to another user and is in "
                                "a folder where every user can place links"));
        QCOMPARE(names(), before);
        QCOMPARE(read("victim"), dangling ? QByteArray("(no such file)") : oldContent);
    }
    if (byTheKernelToo) { // which has the same opinion
        QCOMPARE(open(path("sticky/document").constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), -1);
        QCOMPARE(errno, EACCES);
    }
}

void SaveAccessTest::linksOfTheCallerAndOfTheFoldersOwnerAreFollowed_data()
{
    addLinkRows();
}

void SaveAccessTest::linksOfTheCallerAndOfTheFoldersOwnerAreFollowed()
{
    NEEDS_SUPERUSER();
    QFETCH(bool, dangling);
    QFETCH(bool, byTheKernelToo);
    std::optional<ProtectedLinks> protection;
    if (byTheKernelToo && !protection.emplace().areOn())
        SKIP("fs.protected_symlinks is off, and cannot be switched on here.");

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
    for (const Case &one : {Case{another, 0, 01777, "../file", "sticky/place"}, // the caller's
                            Case{another, another, 01777, "../file", "sticky/place"}, // of the folder's owner
                            Case{0, another, 01755, "../file", "sticky/place"}, // nobody else can place any there
                            Case{0, another, 0777, "../file", "sticky/place"}, // not sticky
                            Case{0, another, 01777, "../folder", "sticky/place/../file"}}) { // within the path
        give("sticky", one.ownerOfFolder, 0, one.mode);
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

void SaveAccessTest::aPlantedFileIsNotReplaced_data()
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

/// In such a folder the new document would end in the hands of whoever has placed a file by its name.
void SaveAccessTest::aPlantedFileIsNotReplaced()
{
    NEEDS_SUPERUSER();
    QFETCH(uint, mode);
    QFETCH(uint, ownerOfFolder);
    QFETCH(bool, saved);
    QCOMPARE(mkdir(path("place").constData(), 0700), 0);
    give("place", ownerOfFolder, team, mode);
    writeOld("place/a");
    give("place/a", another, another, 0644);
    const Access before = accessOf(path("place/a"));
    QCOMPARE(save("place/a"),
             saved ? QString()
                   : QStringLiteral("document: cannot write: the file belongs to another user and is in a folder where "
                                    "other users can place files"));
    QCOMPARE(accessOf(path("place/a")), before);
    QCOMPARE(read("place/a"), saved ? newContent : oldContent);
}

void SaveAccessTest::aFileWithoutANameIsNotReplaced()
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

namespace {

QByteArray place; // of which aRenamedFolderIsNotMistakenForAnother() is about

void exchangeFolders()
{
    const QByteArray meanwhile = place + "/meanwhile";
    rename((place + "/folder").constData(), meanwhile.constData());
    rename((place + "/other").constData(), (place + "/folder").constData());
    rename(meanwhile.constData(), (place + "/other").constData());
}

} // namespace

/// Whenever two folders change their names, one file is saved or none, and nothing is left anywhere.
void SaveAccessTest::aRenamedFolderIsNotMistakenForAnother()
{
    place = path("");
    bool reached = true;
    QByteArray results;
    for (int call = 1; reached; ++call) {
        QDir(QFile::decodeName(path("folder"))).removeRecursively();
        QDir(QFile::decodeName(path("other"))).removeRecursively();
        QVERIFY(mkdir(path("folder").constData(), 0700) == 0 && mkdir(path("other").constData(), 0700) == 0);
        writeOld("folder/a");
        writeOld("other/a");
        QCOMPARE(chmod(path("folder/a").constData(), 0600), 0);

        FaultyCalls::Plan plan;
        plan.call = call;
        plan.action = Action::Run;
        plan.run = exchangeFolders;
        FaultyCalls::begin(plan);
        const QString reason = save("folder/a");
        reached = std::strlen(FaultyCalls::end()) >= std::size_t(call);

        // The folder that was meant is called "other" now.
        const char *const meant = reached ? "other/a" : "folder/a";
        const char *const mistaken = reached ? "folder/a" : "other/a";
        if (call == 1) { // before anything was looked at
            QCOMPARE(reason, QString());
            QCOMPARE(read(mistaken), newContent);
            QCOMPARE(accessOf(path(mistaken)).mode, mode_t(0644));
            continue;
        }
        QCOMPARE(read(mistaken), oldContent);
        QCOMPARE(read(meant), reason.isNull() ? newContent : oldContent);
        QCOMPARE(accessOf(path(meant)).mode, mode_t(0600));
        if (!reason.isNull())
            QCOMPARE(reason,
                     QStringLiteral("document: cannot write: the file at the end of the path was removed or renamed, "
                                    "or the path was changed"));
        results.append(reason.isNull() ? 's' : 'r');
        for (const char *folder : {"folder", "other"}) {
            const QDir dir(QFile::decodeName(path(folder)));
            QCOMPARE(dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot),
                     QStringList(QStringLiteral("a")));
        }
    }
    QVERIFY2(results.contains("r") && results.endsWith("ss"), results.constData());
}

namespace {

void exchangeFiles()
{
    renameat2(AT_FDCWD, (place + "/a").constData(), AT_FDCWD, (place + "/b").constData(), RENAME_EXCHANGE);
}

const QString pathHasChanged =
    QStringLiteral("document: cannot write: the file at the end of the path was removed or renamed, or the path was "
                   "changed");

} // namespace

/// With files that have a name from the start, so that others can get at them.
QString SaveAccessTest::saveWith(Action action, int call, void (*run)(), int error)
{
    place = path("");
    FaultyCalls::Plan plan;
    plan.unnamedFiles = false;
    plan.action = action;
    plan.call = call;
    plan.run = run;
    plan.error = error;
    FaultyCalls::begin(plan);
    return save("a");
}

/// The calls by which it is saved if nothing happens.
QByteArray SaveAccessTest::callsOf(const char *name) const
{
    FaultyCalls::Plan plan;
    plan.unnamedFiles = false;
    FaultyCalls::begin(plan);
    const QString reason = save(name);
    const QByteArray calls = FaultyCalls::end();
    return reason.isNull() ? calls : QByteArray();
}

/// Once a file was looked at, its mode is the one that counts, and no other file is opened in its place.
void SaveAccessTest::anExchangedFileIsNotMistakenForAnother()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 0600), 0);
    const QByteArray calls = callsOf("a");
    QVERIFY2(calls.startsWith("ff") && calls.endsWith("rx"), calls.constData());
    QByteArray results;
    for (int call = 3; call < calls.size(); ++call) { // the last one closes what has its place
        for (const char *name : {"a", "b"}) {
            QFile::remove(QFile::decodeName(path(name)));
            writeOld(name);
        }
        QCOMPARE(chmod(path("a").constData(), 0600), 0);
        const QString reason = saveWith(Action::Run, call, exchangeFiles);
        FaultyCalls::end();
        QVERIFY2(reason.isNull() || reason == pathHasChanged, qPrintable(reason));
        QCOMPARE(read("a"), reason.isNull() ? newContent : oldContent);
        QCOMPARE(read("b"), oldContent);
        if (reason.isNull())
            QCOMPARE(accessOf(path("a")).mode, mode_t(0600));
        results.append(reason.isNull() ? 's' : 'r');
    }
    QVERIFY2(results.startsWith("rr") && results.endsWith("ss"), results.constData());
}

/// Once it is open, its name does not matter: the new file gets it.
void SaveAccessTest::aFileThatIsRemovedWhileItIsLookedForIsAnError()
{
    writeOld("a");
    const QByteArray calls = callsOf("a");
    for (int call = 1; call < calls.size(); ++call) { // the last one closes what has its place
        writeOld("a");
        const QString reason = saveWith(Action::Run, call, [] { unlink((place + "/a").constData()); });
        FaultyCalls::end();
        if (call <= 2) // then there was none
            QCOMPARE(reason, QString());
        else if (call <= calls.lastIndexOf('f') + 1)
            QCOMPARE(reason, pathHasChanged);
        else if (call <= calls.indexOf('o') + 1)
            QCOMPARE(reason, QStringLiteral("document: cannot write: No such file or directory"));
        else
            QCOMPARE(reason, QString());
        QCOMPARE(names(), reason.isNull() ? QStringList(QStringLiteral("a")) : QStringList());
    }
}

void SaveAccessTest::attributesMayChangeMeanwhile_data()
{
    QTest::addColumn<bool>("removed");
    QTest::newRow("removed") << true;
    QTest::newRow("longer") << false;
}

void SaveAccessTest::attributesMayChangeMeanwhile()
{
    QFETCH(bool, removed);
    const auto remove = [] { removexattr((place + "/a").constData(), "user.comment"); };
    const auto lengthen = [] { setAttribute(place + "/a", "user.comment", "longer"); };
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", "x"), "Extended attributes");
    const QByteArray calls = callsOf("a");
    const int list = calls.indexOf("iigg") + 1;
    QVERIFY2(list > 0, calls.constData());
    for (int call = list; call <= list + 3; ++call) {
        QVERIFY(setAttribute(path("a"), "user.comment", "x"));
        QCOMPARE(saveWith(Action::Run, call, removed ? +remove : +lengthen), QString());
        FaultyCalls::end();
        const auto attributes = accessOf(path("a")).attributes;
        QCOMPARE(attributes.count("user.comment"), std::size_t(removed ? 0 : 1));
        if (!removed)
            QCOMPARE(attributes.at("user.comment"), QByteArray("longer"));
    }
}

void SaveAccessTest::anAttributeThatCannotBeReadIsAnError()
{
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", "x"), "Extended attributes");
    const int list = callsOf("a").indexOf("iigg") + 1;
    QVERIFY(list > 0);
    for (const int call : {list + 2, list + 3}) {
        QCOMPARE(saveWith(Action::Fail, call, nullptr, EIO),
                 QStringLiteral("document: cannot write: the extended attribute 'user.comment' of the old file cannot "
                                "be kept: Input/output error"));
        FaultyCalls::end();
    }
}

/// Security modules give labels to new files and let few change them.
void SaveAccessTest::aLabelThatIsThereAlreadyIsNotSet()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    NEEDS(setAttribute(path("a"), "security.tst_SaveAccess", "label"), "Labels");
    const QByteArray calls = callsOf("a");
    QVERIFY2(calls.contains('a'), calls.constData());
    const auto label = [] {
        const QStringList files = QDir(QFile::decodeName(place)).entryList({QStringLiteral("a.*")}, QDir::Files);
        for (const QString &file : files)
            setAttribute(place + '/' + QFile::encodeName(file), "security.tst_SaveAccess", "label");
    };
    QCOMPARE(saveWith(Action::Run, calls.indexOf('i') + 1, label), QString());
    const QByteArray callsWithLabel = FaultyCalls::end();
    QVERIFY2(!callsWithLabel.contains('a'), callsWithLabel.constData());
    QCOMPARE(accessOf(path("a")).attributes["security.tst_SaveAccess"], QByteArray("label"));
}

/// As on file systems that give all files one mode.
void SaveAccessTest::aFileThatIsOpenToMoreUsersInTheEndIsRefused()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 0640), 0);
    const QByteArray calls = callsOf("a");
    const int change = calls.indexOf("mt") + 1;
    QVERIFY2(change > 0, calls.constData());
    writeOld("a");
    const auto open = [] {
        const QStringList files = QDir(QFile::decodeName(place)).entryList({QStringLiteral("a.*")}, QDir::Files);
        for (const QString &file : files)
            chmod((place + '/' + QFile::encodeName(file)).constData(), 0644);
    };
    QCOMPARE(saveWith(Action::Run, change + 1, open),
             QStringLiteral("document: cannot write: the new file would be open to more users than the old one"));
    FaultyCalls::end();
    QCOMPARE(read("a"), oldContent);
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

QTEST_GUILESS_MAIN(SaveAccessTest)
#include "tst_SaveAccess.moc"
