// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "FaultyCalls.h"
#include "reportbase/NewFile.h"

using REPORTGENERATOR::NewFile;

/// Until it is complete, a new file exists beside the old one, here under a temporary name, as on file systems without
/// unnamed files.
class NewFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<Folder>();
        m_place = open(QFile::encodeName(m_folder->path()).constData(), O_PATH | O_CLOEXEC);
        QVERIFY(m_place >= 0);
        m_umask = umask(0);
        FaultyCalls::Plan plan;
        plan.unnamedFiles = false;
        FaultyCalls::begin(plan);
    }
    void cleanup()
    {
        FaultyCalls::end();
        umask(m_umask);
        close(m_place);
        m_folder.reset();
    }

    void newFileHasTheNameOfTheFileAndSixLetters_data();
    void newFileHasTheNameOfTheFileAndSixLetters();
    void newFileIsRemovedUnlessItReplacesTheOldOne();
    void newFileHasTheRequestedMode();
    void descriptorsOfOthersStayOpen();

private:
    mode_t permissionsOf(const char *name) const
    {
        struct stat status = {};
        return fstatat(m_place, name, &status, 0) == 0 ? status.st_mode & 07777 : 0;
    }

    int m_place = -1;
    std::unique_ptr<Folder> m_folder;
    mode_t m_umask = 0;
};

void NewFileTest::newFileHasTheNameOfTheFileAndSixLetters_data()
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

void NewFileTest::newFileHasTheNameOfTheFileAndSixLetters()
{
    QFETCH(const QString, name);
    QFETCH(const QString, start);
    NewFile file(m_place, QFile::encodeName(name));
    QVERIFY(file.create(0600));
    const QStringList names = m_folder->names();
    QCOMPARE(names.size(), 1);
    QCOMPARE(names.first().chopped(6), start + QLatin1Char('.'));
    for (const QChar letter : names.first().right(6))
        QVERIFY(letter >= QLatin1Char('a') && letter <= QLatin1Char('z'));
    QVERIFY(file.write("content", 7) && file.synchronize() && file.replace());
    QCOMPARE(m_folder->names(), QStringList(name));
    QCOMPARE(m_folder->read(name), QByteArray("content"));
}

void NewFileTest::newFileIsRemovedUnlessItReplacesTheOldOne()
{
    {
        NewFile file(m_place, "a");
        QVERIFY(file.create(0600) && file.write("content", 7));
        QCOMPARE(m_folder->names().size(), 1);
    }
    QCOMPARE(m_folder->names(), QStringList());
}

void NewFileTest::newFileHasTheRequestedMode()
{
    m_folder->write(QStringLiteral("a"), "old"); // its mode does not matter
    for (const mode_t mode : {0666U, 0600U}) {
        NewFile file(m_place, "a");
        QVERIFY(file.create(mode) && file.replace());
        QCOMPARE(permissionsOf("a"), mode);
    }
    umask(027);
    NewFile file(m_place, "b");
    QVERIFY(file.create(0666) && file.replace());
    QCOMPARE(permissionsOf("b"), mode_t(0640));
}

void NewFileTest::descriptorsOfOthersStayOpen()
{
    {
        const NewFile file(m_place, "a");
    }
    {
        NewFile file(m_place, "no folder/a"); // the folder of the temporary name does not exist either
        QVERIFY(!file.create(0600));
    }
    QVERIFY(fcntl(0, F_GETFD) != -1);
}

TEST_SUITE(NewFileTest)
#include "tst_NewFile.moc"
