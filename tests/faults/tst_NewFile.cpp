// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "FaultyCalls.h"
#include "reportbase/NewFile.h"

using REPORTGENERATOR::NewFile;

/// A new file stands beside the one that it is to replace until it is whole. Here it has a name all that time, as on
/// file systems that know no files without one.
class NewFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<Folder>();
        m_umask = umask(0);
        FaultyCalls::Plan plan;
        plan.unnamedFiles = false;
        FaultyCalls::begin(plan);
    }
    void cleanup()
    {
        FaultyCalls::end();
        umask(m_umask);
        m_folder.reset();
    }

    void itsNameIsThatOfTheFileAndSixLetters_data();
    void itsNameIsThatOfTheFileAndSixLetters();
    void itIsGoneIfItTakesNoPlace();
    void everybodyMayReadAndWriteIt();
    void itTakesOverWhoMayUseTheOldOne();
    void descriptorsOfOthersStayOpen();

private:
    QByteArray path(const QString &name) const { return QFile::encodeName(m_folder->path(name)); }

    mode_t permissionsOf(const QString &name) const
    {
        struct stat status = {};
        return stat(path(name).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    std::unique_ptr<Folder> m_folder;
    mode_t m_umask = 0;
};

void NewFileTest::itsNameIsThatOfTheFileAndSixLetters_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("start");
    const auto letters = [](int count) { return QString(count, QLatin1Char('n')); };
    const auto euros = [](int count) { return QString(count, QChar(0x20AC)); }; // three bytes each
    QTest::newRow("short") << QStringLiteral("a.xml") << QStringLiteral("a.xml");
    // A name has 255 bytes at most.
    QTest::newRow("248 bytes") << letters(248) << letters(248);
    QTest::newRow("249 bytes") << letters(249) << letters(248);
    QTest::newRow("255 bytes") << letters(255) << letters(248);
    QTest::newRow("characters of three bytes") << euros(85) << euros(82);
    QTest::newRow("characters of three bytes and two others") << letters(2) + euros(84) << letters(2) + euros(82);
}

void NewFileTest::itsNameIsThatOfTheFileAndSixLetters()
{
    QFETCH(const QString, name);
    QFETCH(const QString, start);
    NewFile file(path(name));
    QVERIFY(file.create());
    const QStringList names = m_folder->names();
    QCOMPARE(names.size(), 1);
    QCOMPARE(names.first().chopped(6), start + QLatin1Char('.'));
    for (const QChar letter : names.first().right(6))
        QVERIFY(letter >= QLatin1Char('a') && letter <= QLatin1Char('z'));
    QVERIFY(file.write("content", 7) && file.synchronize() && file.replace());
    QCOMPARE(m_folder->names(), QStringList(name));
    QCOMPARE(m_folder->read(name), QByteArray("content"));
}

void NewFileTest::itIsGoneIfItTakesNoPlace()
{
    {
        NewFile file(path(QStringLiteral("a")));
        QVERIFY(file.create() && file.write("content", 7));
        QCOMPARE(m_folder->names().size(), 1);
    }
    QCOMPARE(m_folder->names(), QStringList());
}

void NewFileTest::everybodyMayReadAndWriteIt()
{
    NewFile file(path(QStringLiteral("a")));
    QVERIFY(file.create() && file.replace());
    QCOMPARE(permissionsOf(QStringLiteral("a")), mode_t(0666)); // unless the user's mask says otherwise
}

void NewFileTest::itTakesOverWhoMayUseTheOldOne()
{
    m_folder->write(QStringLiteral("a"), "old");
    for (const mode_t permissions : {0777U, 0600U, 0421U, 0124U}) {
        QCOMPARE(chmod(path(QStringLiteral("a")).constData(), permissions), 0);
        NewFile file(path(QStringLiteral("a")));
        QVERIFY(file.create() && file.replace());
        QCOMPARE(permissionsOf(QStringLiteral("a")), permissions);
    }
}

void NewFileTest::descriptorsOfOthersStayOpen()
{
    {
        const NewFile file(path(QStringLiteral("a")));
    }
    {
        NewFile file(path(QStringLiteral("no folder/a")));
        QVERIFY(!file.create());
    }
    QVERIFY(fcntl(0, F_GETFD) != -1);
}

QTEST_GUILESS_MAIN(NewFileTest)
#include "tst_NewFile.moc"
