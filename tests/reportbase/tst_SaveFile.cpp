// SPDX-License-Identifier: MIT
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include <reportbase/SaveFile.h>

#include "OnlyOnLinux.h"

using REPORTGENERATOR::SaveFile;
using REPORTGENERATOR::WriteAll;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(cannot be read)");
}

} // namespace

/// Failures while saving are tested in tests/faults.
class SaveFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exactlyTheBytesAreSaved_data();
    void exactlyTheBytesAreSaved();
    void emptyNameIsRefused();
    void aNulDoesNotEndAName();
    void bytesThatAreNotTextNameTheirOwnFile();
    void thePermissionsOfTheOldFileStay();
    void aProcessWithoutStandardInputCanSave();
    void theOriginalIsReplacedThroughALink();
    void anotherFileIsNotReplacedInPlaceOfTheOriginal_data();
    void anotherFileIsNotReplacedInPlaceOfTheOriginal();
    void allBytesAreAppendedToTheContent();
    void bytesThatADeviceAcceptsInPiecesAreAllWritten();
    void bufferedBytesAreWritten();
    void aDeviceThatTakesNothingIsAnError();

private:
    const QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("file"));
};

void SaveFileTest::exactlyTheBytesAreSaved_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("some") << QByteArray("a\0\r\n\xff", 5);
    QTest::newRow("many") << QByteArray(100000, 'x');
    QTest::newRow("none") << QByteArray();
}

void SaveFileTest::exactlyTheBytesAreSaved()
{
    QFETCH(QByteArray, content);
    for (const char *old : {"", "shorter", "a file that is longer than some bytes"}) {
        QFile::remove(m_path);
        if (*old)
            QVERIFY(SaveFile(m_path, old).isNull());
        QCOMPARE(SaveFile(m_path, content), QString());
        QVERIFY(contentOf(m_path) == content);
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList(QStringLiteral("file")));
    }
}

void SaveFileTest::emptyNameIsRefused()
{
    QCOMPARE(SaveFile(QString(), "x"), QStringLiteral("the file name is empty"));
    QCOMPARE(SaveFile(QStringLiteral(""), "x"), QStringLiteral("the file name is empty"));
}

void SaveFileTest::aNulDoesNotEndAName()
{
    QVERIFY(SaveFile(m_path, "old").isNull());
    const QString path = m_path + QChar(QChar::Null) + QStringLiteral(".xml");
    QCOMPARE(SaveFile(path, "new"), path + QStringLiteral(": cannot write: a file name cannot contain U+0000"));
    QCOMPARE(contentOf(m_path), QByteArray("old"));
}

/// "\xff" is not UTF-8; converted to text it would become U+FFFD, the name of a different file.
void SaveFileTest::bytesThatAreNotTextNameTheirOwnFile()
{
    ONLY_ON_LINUX("names of files that are not text");
    const QByteArray folder = QFile::encodeName(m_folder.path());
    const QByteArray path = folder + "/\xff.xml";
    const QString other = m_folder.filePath(QString(QChar(QChar::ReplacementCharacter)) + QStringLiteral(".xml"));
    QVERIFY(SaveFile(other, "other").isNull());
    QCOMPARE(SaveFile(path, QStringLiteral("shown"), "content"), QString());
    QCOMPARE(contentOf(other), QByteArray("other"));
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC);
    char content[20] = {};
    QCOMPARE(read(file, content, sizeof(content)), ssize_t(7));
    close(file);
    QCOMPARE(QByteArray(content), QByteArray("content"));

    const QString shown = QStringLiteral("the shown name");
    QCOMPARE(SaveFile(QByteArray("/no folder/\xff"), shown, "content"),
             shown + QStringLiteral(": cannot write: No such file or directory"));
    QCOMPARE(SaveFile(QByteArray("a\0b", 3), shown, "content"),
             shown + QStringLiteral(": cannot write: a file name cannot contain U+0000"));
    QCOMPARE(SaveFile(QByteArray(), shown, "content"), QStringLiteral("the file name is empty"));
    QCOMPARE(unlink(path.constData()), 0);
    QVERIFY(QFile::remove(other));
}

void SaveFileTest::thePermissionsOfTheOldFileStay()
{
    const auto all = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ReadOther;
    QVERIFY(SaveFile(m_path, "old").isNull());
    for (const auto permissions : {all, QFileDevice::ReadOwner | QFileDevice::WriteOwner}) {
        QVERIFY(QFile::setPermissions(m_path, permissions));
        QVERIFY(SaveFile(m_path, "new").isNull());
        const auto ofTheUser = QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ExeUser;
        QCOMPARE(QFile::permissions(m_path) & ~ofTheUser, permissions);
    }
}

void SaveFileTest::aProcessWithoutStandardInputCanSave()
{
    const int standardInput = dup(0);
    close(0);
    const QString failure = SaveFile(m_path, "content"); // the file is descriptor 0
    const bool isOpenStill = fcntl(0, F_GETFD) != -1;
    dup2(standardInput, 0);
    close(standardInput);
    QCOMPARE(failure, QString());
    QCOMPARE(contentOf(m_path), QByteArray("content"));
    QCOMPARE(isOpenStill, false);
}

void SaveFileTest::theOriginalIsReplacedThroughALink()
{
    QVERIFY(SaveFile(m_path, "old").isNull());
    const QString link = m_folder.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(m_path, link));
    QFile original(m_path);
    QVERIFY(original.open(QIODevice::ReadOnly));
    QCOMPARE(SaveFile(QFile::encodeName(link), QStringLiteral("it"), "new", original), QString());
    QCOMPARE(contentOf(m_path), QByteArray("new"));
    QVERIFY(QFileInfo(link).isSymLink());
}

void SaveFileTest::anotherFileIsNotReplacedInPlaceOfTheOriginal_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"replaced", "removed", "link", "closed"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void SaveFileTest::anotherFileIsNotReplacedInPlaceOfTheOriginal()
{
    QFETCH(QString, what);
    const QString other = m_folder.filePath(QStringLiteral("other"));
    QVERIFY(SaveFile(m_path, "old").isNull());
    QVERIFY(SaveFile(other, "another").isNull());
    QFile original(m_path);
    QVERIFY(original.open(QIODevice::ReadOnly));
    if (what == QLatin1String("replaced"))
        QVERIFY(SaveFile(m_path, "another").isNull());
    else if (what == QLatin1String("closed"))
        original.close();
    else
        QVERIFY(QFile::remove(m_path));
    if (what == QLatin1String("link"))
        QVERIFY(QFile::link(other, m_path));
    const QByteArray before = contentOf(m_path);

    QCOMPARE(SaveFile(QFile::encodeName(m_path), QStringLiteral("it"), "new", original),
             QStringLiteral("it: cannot write: the file at the end of the path was removed or renamed, or the path was "
                            "changed"));
    QCOMPARE(contentOf(m_path), before);
    QCOMPARE(contentOf(other), QByteArray("another"));
    QFile::remove(m_path);
}

void SaveFileTest::bytesThatADeviceAcceptsInPiecesAreAllWritten()
{
    class ReluctantFile : public QFile
    {
    public:
        using QFile::QFile;

    protected:
        qint64 writeData(const char *bytes, qint64 size) override
        {
            return QFile::writeData(bytes, std::min(size, qint64(3)));
        }
    };
    ReluctantFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QCOMPARE(WriteAll(file, "in pieces of three at most"), QString());
    QCOMPARE(contentOf(m_path), QByteArray("in pieces of three at most"));
}

void SaveFileTest::allBytesAreAppendedToTheContent()
{
    QVERIFY(SaveFile(m_path, "old").isNull());
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::Append | QIODevice::Unbuffered));
    QCOMPARE(WriteAll(file, QByteArray(100000, 'x')), QString());
    QVERIFY(contentOf(m_path) == "old" + QByteArray(100000, 'x'));
}

void SaveFileTest::bufferedBytesAreWritten()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("kept back "), qint64(10));
    QCOMPARE(contentOf(m_path), QByteArray());
    QCOMPARE(WriteAll(file, "new"), QString());
    QCOMPARE(contentOf(m_path), QByteArray("kept back new"));
    QCOMPARE(WriteAll(file, {}), QString());
}

void SaveFileTest::aDeviceThatTakesNothingIsAnError()
{
    // A device that is always full; nothing can be replaced here, since nothing is renamed.
    for (const auto mode : {QIODevice::WriteOnly | QIODevice::Unbuffered, QIODevice::OpenMode(QIODevice::WriteOnly)}) {
        QFile full(QStringLiteral("/dev/full"));
        QVERIFY(full.open(mode));
        QCOMPARE(WriteAll(full, "x"), QStringLiteral("No space left on device"));
    }
}

TEST_SUITE(SaveFileTest)
#include "tst_SaveFile.moc"
