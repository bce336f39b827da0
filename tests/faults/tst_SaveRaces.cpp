// SPDX-License-Identifier: MIT
#include "OwnedFiles.h"

#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using FaultyCalls::Action;

/// Saving while folders and files are exchanged, and attributes changed.
class SaveRacesTest : public OwnedFilesTest
{
    Q_OBJECT

private Q_SLOTS:
    void aRenamedFolderIsNotMistakenForAnother();
    void exchangedFileIsNotMistakenForTheOldOne();
    void fileRemovedDuringTheSearchIsAnError();
    void attributesMayChangeMeanwhile_data();
    void attributesMayChangeMeanwhile();
};

namespace {

void exchangeFolders()
{
    const QByteArray meanwhile = place + "/meanwhile";
    rename((place + "/folder").constData(), meanwhile.constData());
    rename((place + "/other").constData(), (place + "/folder").constData());
    rename(meanwhile.constData(), (place + "/other").constData());
}

} // namespace

/// Whenever two folders exchange their names, one file is saved or none, and no temporary file is left.
void SaveRacesTest::aRenamedFolderIsNotMistakenForAnother()
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
        if (call == 1) { // before the folder was opened
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

/// After the old file was examined, its mode is used, and no other file is opened in its place.
void SaveRacesTest::exchangedFileIsNotMistakenForTheOldOne()
{
    writeOld("a");
    QCOMPARE(chmod(path("a").constData(), 0600), 0);
    const QByteArray calls = callsOf("a");
    QVERIFY2(calls.startsWith("ff") && calls.endsWith("rx"), calls.constData());
    QByteArray results;
    for (int call = 3; call < calls.size(); ++call) { // the last call closes the saved file
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

/// After the old file was opened, its name is irrelevant: the new file receives the name.
void SaveRacesTest::fileRemovedDuringTheSearchIsAnError()
{
    writeOld("a");
    const QByteArray calls = callsOf("a");
    for (int call = 1; call < calls.size(); ++call) { // the last call closes the saved file
        writeOld("a");
        const QString reason = saveWith(Action::Run, call, [] { unlink((place + "/a").constData()); });
        FaultyCalls::end();
        if (call <= 2) // there was no old file
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

void SaveRacesTest::attributesMayChangeMeanwhile_data()
{
    QTest::addColumn<bool>("removed");
    QTest::newRow("removed") << true;
    QTest::newRow("longer") << false;
}

void SaveRacesTest::attributesMayChangeMeanwhile()
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

TEST_SUITE(SaveRacesTest)
#include "tst_SaveRaces.moc"
