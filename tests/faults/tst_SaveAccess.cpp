// SPDX-License-Identifier: MIT
#include "OwnedFiles.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using FaultyCalls::Action;
using REPORTGENERATOR::SaveFile;

namespace {

constexpr char accessList[] = "system.posix_acl_access";
constexpr char defaultList[] = "system.posix_acl_default";

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

/// The owner may read and write, `another` has `permissions`, the group and all others have none. The mask equals
/// `permissions`, and appears as the group's permissions in the mode.
QByteArray listFor(char permissions)
{
    return QByteArray("\2\0\0\0", 4) + entry(1, 6) + entry(2, permissions, another) + entry(4, 0)
        + entry(0x10, permissions) + entry(0x20, 0);
}

/// Whether only the owner may have more access than with `than`. The group's bits of the mode are the mask of the list:
/// without them, the list grants nothing.
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

/// Returns the result of SaveFile() in a process of `somebody`, with the supplementary group if there is one; a
/// different text if the process fails otherwise.
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

/// A saved file grants the same access as the old one, or less.
class SaveAccessTest : public OwnedFilesTest
{
    Q_OBJECT

private Q_SLOTS:
    void savingKeepsTheMode_data();
    void savingKeepsTheMode();
    void setUserAndGroupBitsAreDropped();
    void aNewFileObeysTheMask();
    void newFileInheritsTheAccessListOfItsFolder();
    void savingKeepsOwnerAndGroup();
    void savingKeepsTheAccessList();
    void accessListOfTheFolderDoesNotWidenAccess();
    void savingKeepsAttributes();
    void attributesOfTheOldContentAreDropped_data();
    void attributesOfTheOldContentAreDropped();
    void hardLinkKeepsTheOldDocument();
    void supplementaryGroupIsKept();
    void groupThatCannotBeKeptDoesNotWidenAccess_data();
    void groupThatCannotBeKeptDoesNotWidenAccess();
    void accessListWithoutItsGroupIsAnError();
    void callerMayBecomeTheOwner();
    void labelThatCannotBeKeptIsAnError();
    void unreadableAttributesAreOmitted();
    void folderThatCannotBeListedAcceptsTheFile();
    void superuserKeepsTheOwnerOfAFile();
    void failingCallNeverWidensAccess_data();
    void failingCallNeverWidensAccess();
    void noOtherProgramInheritsAFile_data();
    void noOtherProgramInheritsAFile();
    void savingNeverWidensAccess_data();
    void savingNeverWidensAccess();
    void unreadableAttributeIsAnError();
    void existingLabelIsNotSetAgain();
    void fileWithWiderAccessIsAnError();

private:
    void setOwnerAndModeOfFolder(uid_t user, gid_t group, mode_t mode) const;
    void prepareEverything();
};

void SaveAccessTest::setOwnerAndModeOfFolder(uid_t user, gid_t group, mode_t mode) const
{
    setOwnerAndMode("", user, group, mode);
    const QByteArray folder = path("");
    const int status = statusOfChild([&] {
        const bool isSomebody = setgroups(0, nullptr) == 0 && setresgid(somebody, somebody, somebody) == 0
            && setresuid(somebody, somebody, somebody) == 0;
        return isSomebody && access(folder.constData(), X_OK) == 0 ? 0 : 1;
    });
    if (status != 0)
        SKIP("Others cannot enter this folder.");
}

void SaveAccessTest::savingKeepsTheMode_data()
{
    QTest::addColumn<uint>("mode");
    for (const uint mode : {0777U, 0666U, 0600U, 0621U, 0324U, 0200U})
        QTest::addRow("%o", mode) << mode;
}

void SaveAccessTest::savingKeepsTheMode()
{
    QFETCH(uint, mode);
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), mode), 0);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")).mode, mode);
}

/// As when a file is written in place.
void SaveAccessTest::setUserAndGroupBitsAreDropped()
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

void SaveAccessTest::newFileInheritsTheAccessListOfItsFolder()
{
    NEEDS(setAttribute(path(""), defaultList, listFor(4)), "Access control lists");
    writeOld("another"); // created without SaveFile()
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), accessOf(path("another")));
    QCOMPARE(accessOf(path("a")).attributes[accessList], listFor(4));
}

void SaveAccessTest::savingKeepsOwnerAndGroup()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    setOwnerAndMode("a", another, team, 0640);
    const Access before = accessOf(path("a"));
    QCOMPARE(before.owner, another);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::savingKeepsTheAccessList()
{
    writeOld("a");
    NEEDS(setAttribute(path("a"), accessList, listFor(4)), "Access control lists");
    const Access before = accessOf(path("a"));
    QCOMPARE(before.mode, mode_t(0640)); // the 4 is the mask; the group has no access
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::accessListOfTheFolderDoesNotWidenAccess()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 0640), 0);
    NEEDS(setAttribute(path(""), defaultList, listFor(7)), "Access control lists");
    const Access before = accessOf(path("a"));
    QCOMPARE(before.attributes.count(accessList), std::size_t(0));
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::savingKeepsAttributes()
{
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", QByteArray("a\0\xff", 3)), "Extended attributes");
    QVERIFY(setAttribute(path("a"), "user.empty", ""));
    QVERIFY(setAttribute(path("a"), "user.one", "1"));
    QVERIFY(setAttribute(path("a"), "user.long", QByteArray(1000, 'x')));
    if (geteuid() == 0)
        QVERIFY(setAttribute(path("a"), "security.tst_SaveAccess", "label"));
    const Access before = accessOf(path("a"));
    QVERIFY(before.attributes.size() >= 4);
    QCOMPARE(save("a"), QString());
    QCOMPARE(accessOf(path("a")), before);
}

void SaveAccessTest::attributesOfTheOldContentAreDropped_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("capabilities") << QByteArrayLiteral("security.capability")
                                  << QByteArray("\1\0\0\2\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
    QTest::newRow("hash of the content") << QByteArrayLiteral("security.ima") << QByteArrayLiteral("hash");
    QTest::newRow("hash of the attributes") << QByteArrayLiteral("security.evm") << QByteArrayLiteral("hash");
}

void SaveAccessTest::attributesOfTheOldContentAreDropped()
{
    NEEDS_SUPERUSER();
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    writeOld("a");
    NEEDS(setAttribute(path("a"), name.constData(), value), "Such attributes");
    QCOMPARE(accessOf(path("a")).attributes.count(name), std::size_t(1));
    QCOMPARE(save("a"), QString());
    QCOMPARE(read("a"), newContent);
    QCOMPARE(accessOf(path("a")).attributes.count(name), std::size_t(0));
}

void SaveAccessTest::hardLinkKeepsTheOldDocument()
{
    writeOld("a");
    QCOMPARE(link(path("a").constData(), path("b").constData()), 0);
    QCOMPARE(save("a"), QString());
    QCOMPARE(read("a"), newContent);
    QCOMPARE(read("b"), oldContent);
}

void SaveAccessTest::supplementaryGroupIsKept()
{
    NEEDS_SUPERUSER();
    setOwnerAndModeOfFolder(somebody, somebody, 0755);
    writeOld("a");
    setOwnerAndMode("a", somebody, team, 0660);
    const Access before = accessOf(path("a"));
    QCOMPARE(savedBySomebody(path("a"), team), QString());
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::groupThatCannotBeKeptDoesNotWidenAccess_data()
{
    QTest::addColumn<uint>("before");
    QTest::addColumn<uint>("after");
    const auto row = [](uint before, uint after) { QTest::addRow("%o", before) << before << after; };
    row(0640, 0600);
    row(0660, 0600);
    row(0664, 0644);
    row(0666, 0666);
    row(0646, 0644);
    row(0604, 0600); // the group had no access, and its members count as others now
    row(0751, 0711);
}

void SaveAccessTest::groupThatCannotBeKeptDoesNotWidenAccess()
{
    NEEDS_SUPERUSER();
    QFETCH(uint, before);
    QFETCH(uint, after);
    setOwnerAndModeOfFolder(somebody, somebody, 0755);
    writeOld("a");
    setOwnerAndMode("a", somebody, team, before);
    QCOMPARE(savedBySomebody(path("a")), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.owner, somebody);
    QCOMPARE(access.group, gid_t(somebody));
    QCOMPARE(access.mode, after);
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::accessListWithoutItsGroupIsAnError()
{
    NEEDS_SUPERUSER();
    setOwnerAndModeOfFolder(somebody, somebody, 0755);
    writeOld("a");
    setOwnerAndMode("a", somebody, team, 0600);
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

/// The caller may write the file of another user, in a folder that both share.
void SaveAccessTest::callerMayBecomeTheOwner()
{
    NEEDS_SUPERUSER();
    setOwnerAndModeOfFolder(another, team, 0777);
    writeOld("a");
    setOwnerAndMode("a", another, team, 0664);
    QCOMPARE(savedBySomebody(path("a"), team), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.owner, somebody);
    QCOMPARE(access.group, team);
    QCOMPARE(access.mode, mode_t(0664));
}

void SaveAccessTest::labelThatCannotBeKeptIsAnError()
{
    NEEDS_SUPERUSER();
    setOwnerAndModeOfFolder(somebody, somebody, 0755);
    writeOld("a");
    NEEDS(setAttribute(path("a"), "security.tst_SaveAccess", "label"), "Labels");
    setOwnerAndMode("a", somebody, somebody, 0600);
    const Access before = accessOf(path("a"));
    QCOMPARE(savedBySomebody(path("a")),
             QStringLiteral("document: cannot write: the extended attribute 'security.tst_SaveAccess' of the old file "
                            "cannot be kept: Operation not permitted"));
    QCOMPARE(accessOf(path("a")), before);
    QCOMPARE(read("a"), oldContent);
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

void SaveAccessTest::unreadableAttributesAreOmitted()
{
    NEEDS_SUPERUSER();
    setOwnerAndModeOfFolder(somebody, somebody, 0755);
    writeOld("a");
    NEEDS(setAttribute(path("a"), "user.comment", "x"), "Extended attributes");
    setOwnerAndMode("a", somebody, somebody, 0200);
    QCOMPARE(savedBySomebody(path("a")), QString());
    const Access access = accessOf(path("a"));
    QCOMPARE(access.mode, mode_t(0200));
    QCOMPARE(access.attributes.count("user.comment"), std::size_t(0));
}

/// An old file with all attributes that this process can set.
void SaveAccessTest::prepareEverything()
{
    QFETCH(bool, hasList);
    QFile::remove(QFile::decodeName(path("a")));
    removexattr(path("").constData(), defaultList); // left by the call before
    writeOld("a");
    if (geteuid() == 0)
        setOwnerAndMode("a", another, team, 0640);
    setAttribute(path("a"), "user.comment", "x");
    if (hasList)
        NEEDS(setAttribute(path("a"), accessList, listFor(4)), "Access control lists");
    NEEDS(setAttribute(path(""), defaultList, listFor(7)), "Access control lists"); // of the folder, not of the file
}

/// Saving requires search and write permission for the folder, as the kernel's own calls do.
void SaveAccessTest::folderThatCannotBeListedAcceptsTheFile()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    setOwnerAndMode("a", somebody, somebody, 0600);
    setOwnerAndModeOfFolder(somebody, somebody, 0300);
    QCOMPARE(savedBySomebody(path("a")), QString());
    QCOMPARE(read("a"), newContent);
}

void SaveAccessTest::superuserKeepsTheOwnerOfAFile()
{
    NEEDS_SUPERUSER();
    writeOld("a");
    setOwnerAndMode("a", another, team, 0640);
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

void SaveAccessTest::failingCallNeverWidensAccess_data()
{
    QTest::addColumn<bool>("hasList");
    QTest::addColumn<bool>("unnamedFiles");
    for (const bool hasList : {true, false}) {
        for (const bool unnamedFiles : {true, false})
            QTest::addRow("%s list, %s", hasList ? "a" : "no", unnamedFiles ? "unnamed until whole" : "named at once")
                << hasList << unnamedFiles;
    }
}

/// Either nothing has changed and the error is returned, or the file is saved and no other user has more access.
void SaveAccessTest::failingCallNeverWidensAccess()
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
                // ERANGE for every call and a missing attribute are not failures that a kernel reports.
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

namespace {

int filesSeen = 0;
QByteArray inherited; // the file that a program started now would inherit

/// Checks all open files in the folder of the test.
void lookForInheritedFiles()
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString &number :
         descriptors.entryList(QDir::Files | QDir::System | QDir::Dirs | QDir::NoDotAndDotDot)) {
        std::array<char, 4096> target = {};
        const QByteArray link = QFile::encodeName(descriptors.filePath(number));
        const ssize_t size = readlink(link.constData(), target.data(), target.size());
        const QByteArray file(target.data(), int(std::max<ssize_t>(size, 0)));
        const int flags = fcntl(number.toInt(), F_GETFD);
        if (flags < 0 || !(file + '/').startsWith(place))
            continue;
        ++filesSeen;
        if (!(flags & FD_CLOEXEC))
            inherited = file;
    }
}

} // namespace

void SaveAccessTest::noOtherProgramInheritsAFile_data()
{
    failingCallNeverWidensAccess_data();
}

/// Another thread may start a program at any moment.
void SaveAccessTest::noOtherProgramInheritsAFile()
{
    QFETCH(bool, unnamedFiles);
    prepareEverything();
    const int calls = callsOf("a").size();
    QVERIFY(calls > 0);
    filesSeen = 0;
    inherited.clear();
    for (int call = 1; call <= calls; ++call) {
        prepareEverything();
        QCOMPARE(saveWith(Action::Run, call, lookForInheritedFiles, 0, unnamedFiles), QString());
        QCOMPARE(inherited, QByteArray());
    }
    QVERIFY(filesSeen >= calls);
}

void SaveAccessTest::savingNeverWidensAccess_data()
{
    failingCallNeverWidensAccess_data();
}

/// Whenever the process is killed, a file that it leaves grants no access that the old file did not grant.
void SaveAccessTest::savingNeverWidensAccess()
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

void SaveAccessTest::unreadableAttributeIsAnError()
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

/// Security modules label new files, and few processes may change labels.
void SaveAccessTest::existingLabelIsNotSetAgain()
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

/// As on file systems where all files have the same mode.
void SaveAccessTest::fileWithWiderAccessIsAnError()
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

TEST_SUITE(SaveAccessTest)
#include "tst_SaveAccess.moc"
