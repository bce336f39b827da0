// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <QRegularExpression>

#include "FaultyCalls.h"

using FaultyCalls::Action;
using JobXml::TunerProperties;

namespace {

const QString target = QStringLiteral("document");

struct Fault
{
    int error;
    const char *reason; // null if saving succeeds nevertheless
};

/// The errors of a call of that kind, and the result of saving.
QVector<Fault> faultsOf(char kind)
{
    static const Fault full = {ENOSPC, "No space left on device"};
    static const Fault quota = {EDQUOT, "Disk quota exceeded"};
    static const Fault broken = {EIO, "Input/output error"};
    static const Fault refused = {EACCES, "Permission denied"};
    static const Fault readOnly = {EROFS, "Read-only file system"};
    switch (kind) {
    case FaultyCalls::Find:
    case FaultyCalls::OpenOld:
        return {broken, refused, {EMFILE, "Too many open files"}};
    case FaultyCalls::Status:
        return {broken};
    case FaultyCalls::GetAttribute: // without attributes, there is nothing to keep
        return {{EIO, "the access control list of the old file cannot be kept: Input/output error"},
                {ENODATA, nullptr},
                {EOPNOTSUPP, nullptr}};
    case FaultyCalls::ListAttributes:
        return {{EIO, "the extended attributes of the old file cannot be kept: Input/output error"},
                {EOPNOTSUPP, nullptr}};
    case FaultyCalls::CreateUnnamed: // EISDIR: the kernel is too old for unnamed files
        return {full, quota, broken, refused, readOnly, {EMFILE, "Too many open files"}, {EISDIR, nullptr}};
    case FaultyCalls::Create:
        return {full, quota, broken, refused, readOnly, {EMFILE, "Too many open files"}, {EEXIST, "File exists"}};
    case FaultyCalls::Write:
        return {full, quota, broken, {EFBIG, "File too large"}};
    case FaultyCalls::Sync: // the last three: the file system cannot synchronize, which is not a failure
        return {full, quota, broken, {EINVAL, nullptr}, {ENOSYS, nullptr}, {EOPNOTSUPP, nullptr}};
    case FaultyCalls::Link:
        return {full, quota, broken, refused, readOnly, {EEXIST, "File exists"}};
    case FaultyCalls::Rename:
        return {full, quota, broken, refused, readOnly, {EXDEV, "Invalid cross-device link"}};
    case FaultyCalls::Chmod: // saving the document matters more than its mode
        return {{EPERM, nullptr}, {EIO, nullptr}};
    case FaultyCalls::Close: // the document is on the disk already
        return {{EIO, nullptr}, {ENOSPC, nullptr}};
    default:
        return {};
    }
}

/// The reason when the call fails with EIO.
QString reasonAfter(char kind)
{
    const QVector<Fault> faults = faultsOf(kind);
    const auto fault = std::find_if(faults.begin(), faults.end(), [](const Fault &one) { return one.error == EIO; });
    return fault == faults.end() ? QString() : QString::fromLatin1(fault->reason);
}

/// A row for each way to save, each size, with and without an old document, with and without unnamed files.
void addPlaces(std::initializer_list<bool> sizes = {false, true})
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("large");
    QTest::addColumn<bool>("replaces");
    QTest::addColumn<bool>("unnamedFiles");
    for (const Way &way : waysToSave) {
        for (const bool large : sizes) {
            for (const bool replaces : {false, true}) {
                for (const bool unnamedFiles : {true, false}) {
                    QTest::addRow("%s, %s, %s, %s", way.name, large ? "large" : "small", replaces ? "replaced" : "new",
                                  unnamedFiles ? "unnamed until whole" : "named at once")
                        << way << large << replaces << unnamedFiles;
                }
            }
        }
    }
}

} // namespace

class SaveFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void fullDiskKeepsTheOldDocument_data();
    void fullDiskKeepsTheOldDocument();
    void failingCallNeverDamagesADocument_data();
    void failingCallNeverDamagesADocument();
    void callThatFailsOnceNeverDamagesADocument_data();
    void callThatFailsOnceNeverDamagesADocument();
    void nameInUseIsFollowedByAnotherOne();
    void interruptedWritesContinue();
    void crashAtAnyCallLeavesTheOldOrTheNewDocument_data();
    void crashAtAnyCallLeavesTheOldOrTheNewDocument();
    void longTemporaryNameIsCutBetweenCharacters();

private:
    void prepare();
    bool save(const FaultyCalls::Plan &plan);
    bool saveWith(int call, Action action, int error);
    void checkThatItIsSaved() const;
    void checkThatItIsRefused(const QString &reason) const;

    Folder m_folder;
    TunerProperties m_small;
    TunerProperties m_large;
    QByteArray m_old;

    // of the current row and attempt
    Way m_way = {};
    bool m_replaces = false;
    bool m_unnamedFiles = true;
    TunerProperties *m_document = nullptr;
    QByteArray m_new;
    QByteArray m_calls;
};

void SaveFaultsTest::initTestCase()
{
    QVERIFY(QFileInfo(m_folder.path()).isWritable());
    m_small = aSmallDocument("new");
    m_large = aLargeDocument(1, 20000); // larger than Qt's write buffer of 16 KiB
    m_old = "the old document";
}

void SaveFaultsTest::init()
{
    m_document = nullptr;
}

void SaveFaultsTest::prepare()
{
    QFETCH(Way, way);
    QFETCH(bool, large);
    QFETCH(bool, replaces);
    QFETCH(bool, unnamedFiles);
    m_way = way;
    m_replaces = replaces;
    m_unnamedFiles = unnamedFiles;
    m_document = large ? &m_large : &m_small;
    m_new = way.bytes(*m_document);
    QVERIFY(large ? m_new.size() > 20000 : m_new.size() < 2000);
}

/// Restores the initial state, then saves with the plan.
bool SaveFaultsTest::save(const FaultyCalls::Plan &plan)
{
    m_folder.clear();
    if (m_replaces)
        m_folder.write(target, m_old);
    FaultyCalls::begin(plan);
    const bool saved = m_way.save(*m_document, m_folder.path(target));
    m_calls = FaultyCalls::end();
    return saved;
}

bool SaveFaultsTest::saveWith(int call, Action action, int error)
{
    FaultyCalls::Plan plan;
    plan.call = call;
    plan.action = action;
    plan.error = error;
    plan.unnamedFiles = m_unnamedFiles;
    return save(plan);
}

void SaveFaultsTest::checkThatItIsSaved() const
{
    QVERIFY(m_document->GetErrorString().isNull());
    QCOMPARE(m_folder.names(), QStringList(target));
    QVERIFY(m_folder.read(target) == m_new);
}

void SaveFaultsTest::checkThatItIsRefused(const QString &reason) const
{
    QCOMPARE(m_document->GetErrorString(), m_folder.path(target) + QStringLiteral(": cannot write: ") + reason);
    QCOMPARE(m_folder.names(), m_replaces ? QStringList(target) : QStringList());
    QCOMPARE(m_folder.read(target), m_replaces ? m_old : QByteArray());
}

void SaveFaultsTest::fullDiskKeepsTheOldDocument_data()
{
    addPlaces();
}

/// The disk is full after each byte of a small document, and after some bytes of a large one. The bytes that fit are
/// written; only the next write fails.
void SaveFaultsTest::fullDiskKeepsTheOldDocument()
{
    prepare();
    const int step = m_document == &m_small ? 1 : 997;
    FaultyCalls::Plan plan;
    plan.unnamedFiles = m_unnamedFiles;
    for (int room = 0; room < m_new.size(); room = std::max(room + 1, std::min(room + step, int(m_new.size()) - 1))) {
        plan.room = room;
        QVERIFY2(!save(plan), qPrintable(QString::number(room)));
        checkThatItIsRefused(QStringLiteral("No space left on device"));
        if (QTest::currentTestFailed())
            return;
    }
    plan.room = m_new.size();
    QVERIFY(save(plan));
    checkThatItIsSaved();
}

void SaveFaultsTest::failingCallNeverDamagesADocument_data()
{
    addPlaces();
}

/// Each call fails in turn, and so do all later calls of its kind, as on a broken disk.
void SaveFaultsTest::failingCallNeverDamagesADocument()
{
    prepare();
    QVERIFY(saveWith(0, Action::Fail, 0));
    checkThatItIsSaved();
    const QByteArray allCalls = m_calls;
    QVERIFY2(allCalls.contains(FaultyCalls::Write) && allCalls.contains(FaultyCalls::Sync), allCalls.constData());
    for (int call = 1; call <= allCalls.size(); ++call) {
        const char kind = allCalls[call - 1];
        const QVector<Fault> faults = faultsOf(kind);
        QVERIFY2(!faults.isEmpty(), allCalls.constData());
        for (const Fault &fault : faults) {
            const bool saved = saveWith(call, Action::FailForEver, fault.error);
            const QString what = QStringLiteral("call %1 of %2: %3")
                                     .arg(call)
                                     .arg(QString::fromLatin1(m_calls), qt_error_string(fault.error));
            QVERIFY2(saved == !fault.reason, qPrintable(what));
            if (saved)
                checkThatItIsSaved();
            else
                checkThatItIsRefused(QString::fromLatin1(fault.reason));
            if (QTest::currentTestFailed())
                return;
        }
    }
}

void SaveFaultsTest::callThatFailsOnceNeverDamagesADocument_data()
{
    addPlaces();
}

/// If the library repeats the call, the document is saved; otherwise the error is reported.
void SaveFaultsTest::callThatFailsOnceNeverDamagesADocument()
{
    prepare();
    for (int call = 1; !saveWith(call, Action::Fail, EIO) || m_calls.size() >= call; ++call) {
        if (m_document->GetErrorString().isNull())
            checkThatItIsSaved();
        else
            checkThatItIsRefused(reasonAfter(m_calls[call - 1]));
        if (QTest::currentTestFailed())
            return;
    }
    checkThatItIsSaved(); // the last round made fewer calls
}

void SaveFaultsTest::nameInUseIsFollowedByAnotherOne()
{
    m_way = waysToSave[0];
    m_document = &m_small;
    m_new = m_way.bytes(m_small);
    for (const bool unnamedFiles : {true, false}) {
        m_unnamedFiles = unnamedFiles;
        QVERIFY(saveWith(0, Action::Fail, 0));
        const int call = int(m_calls.indexOf(unnamedFiles ? FaultyCalls::Link : FaultyCalls::Create)) + 1;
        QVERIFY(call > 0);
        QVERIFY2(saveWith(call, Action::Fail, EEXIST), qPrintable(m_small.GetErrorString()));
        checkThatItIsSaved();
    }
}

void SaveFaultsTest::interruptedWritesContinue()
{
    for (const Way &way : waysToSave) {
        m_way = way;
        m_document = &m_large;
        m_new = way.bytes(m_large);
        QVERIFY(saveWith(0, Action::Fail, 0));
        for (const char kind : {FaultyCalls::Write, FaultyCalls::Sync}) {
            const int call = int(m_calls.indexOf(kind)) + 1;
            QVERIFY(call > 0);
            QVERIFY2(saveWith(call, Action::Fail, EINTR), qPrintable(m_large.GetErrorString()));
            checkThatItIsSaved();
        }
    }
}

void SaveFaultsTest::crashAtAnyCallLeavesTheOldOrTheNewDocument_data()
{
    addPlaces({false}); // documents of any size are written by one call
}

void SaveFaultsTest::crashAtAnyCallLeavesTheOldOrTheNewDocument()
{
    prepare();
    const QRegularExpression leftOver(QStringLiteral("^document\\.[A-Za-z]{6}$"));
    bool leftOld = false;
    bool leftNew = false;
    for (const Action action : {Action::DieHalfway, Action::DieAfter}) { // after a call is also before the next one
        bool reached = true;
        for (int call = 1; reached; ++call) {
            const int status = statusOfChild([=] { return saveWith(call, action, 0) ? 0 : 1; });
            reached = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
            if (!reached)
                QCOMPARE(status, 0);

            const QByteArray found = m_folder.read(target);
            const bool isOld = m_replaces ? found == m_old : found.isNull();
            leftOld = leftOld || isOld;
            leftNew = leftNew || found == m_new;
            QVERIFY2(isOld || found == m_new, qPrintable(QString::number(call)));

            // A file that a killed process has left is recognizable by its name and does no harm.
            QStringList others = m_folder.names();
            others.removeAll(target);
            QVERIFY2(others.size() <= 1, qPrintable(others.join(QLatin1Char(' '))));
            if (!others.isEmpty())
                QVERIFY2(leftOver.match(others.first()).hasMatch(), qPrintable(others.first()));
            FaultyCalls::begin({});
            QVERIFY(m_way.save(*m_document, m_folder.path(target)));
            FaultyCalls::end();
            QVERIFY(m_folder.read(target) == m_new);
        }
    }
    QVERIFY(leftOld && leftNew);
}

/// A name that the added letters make too long loses whole characters, since some systems reject half a character.
void SaveFaultsTest::longTemporaryNameIsCutBetweenCharacters()
{
    m_folder.clear();
    // 3 bytes each: 255 bytes, of which 248 fit before a dot and six letters.
    const QString longest(85, QChar(0x20AC));
    const int status = statusOfChild([&] {
        FaultyCalls::Plan plan;
        plan.call = 5; // the write, after two attempts to find the file, one to find its folder, and the creation
        plan.action = Action::DieHalfway;
        plan.unnamedFiles = false;
        FaultyCalls::begin(plan);
        return m_small.SaveXml(m_folder.path(longest)) ? 0 : 1;
    });
    QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL, qPrintable(QString::number(status)));
    const QStringList names = m_folder.names();
    QCOMPARE(names.size(), 1);
    QVERIFY2(QRegularExpression(QStringLiteral("^\u20AC{82}\\.[a-zA-Z]{6}$")).match(names.first()).hasMatch(),
             qPrintable(names.first()));
}

TEST_SUITE(SaveFaultsTest)
#include "tst_SaveFaults.moc"
