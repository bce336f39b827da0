// SPDX-License-Identifier: MIT
#include <QtTest>

#include <sys/stat.h>

#include <ExceptionText.h>

#include "Note.h"
#include "PipedFile.h"

class IRGObjectXmlFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aFileIsReadByItsPath();
    void aClosedFileIsOpenedAndClosedAgain();
    void aClosedFileIsClosedAgainWhenTheModelThrows();
    void openFileIsReadFromItsPositionAndStaysOpen();
    void aPipeIsRead();
    void theFlagStaysAsItIs();
    void unreadableFilesAreRefusedWithTheirReason();
    void malformedDocumentsAreRefusedWithTheirReason();
    void readErrorIsNotReportedAsAShortDocument();
    void exactlyTheUtf8OfTheXmlStringIsSaved();
    void aSavedFileReplacesTheOldOne();
    void theOldFileStaysWhenTheModelThrows();
    void theOldFileStaysWhenThereIsNothingToWrite();
    void theOldFileStaysWhenXmlCannotCarryAText();
    void unwritablePathsAreRefusedWithTheirReason();
    void aPipeIsNotReplacedByAFile();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QScopedPointer<QTemporaryDir> m_folder;
};

void IRGObjectXmlFilesTest::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void IRGObjectXmlFilesTest::aFileIsReadByItsPath()
{
    write(path("a"), "<?xml version='1.0' encoding='ISO-8859-1'?>\n<Note title='\xe4'><text>x</text></Note>\n");
    Note note;
    QVERIFY(note.LoadXml(path("a")));
    QCOMPARE(note.title, QStringLiteral("ä"));
    QCOMPARE(note.text, QStringLiteral("x"));
    QVERIFY(note.GetErrorString().isNull());
}

void IRGObjectXmlFilesTest::aClosedFileIsOpenedAndClosedAgain()
{
    write(path("a"), "<Note title='t'/>");
    QFile file(path("a"));
    Note note;
    QVERIFY(note.LoadXml(&file));
    QCOMPARE(note.title, QStringLiteral("t"));
    QVERIFY(!file.isOpen());

    write(path("a"), "<Note");
    QVERIFY(!note.LoadXml(&file));
    QVERIFY(!file.isOpen());
}

void IRGObjectXmlFilesTest::aClosedFileIsClosedAgainWhenTheModelThrows()
{
    write(path("a"), "<Note><bad/></Note>");
    QFile file(path("a"));
    Note note;
    QCOMPARE(thrownBy([&] { return note.LoadXml(&file); }), QStringLiteral("InvalidXmlException: Note: a bad child"));
    QVERIFY(!file.isOpen());
}

void IRGObjectXmlFilesTest::openFileIsReadFromItsPositionAndStaysOpen()
{
    write(path("a"), "some words first\n<Note title='t'/>\n");
    QFile file(path("a"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.readLine();
    Note note;
    QVERIFY(note.LoadXml(&file));
    QCOMPARE(note.title, QStringLiteral("t"));
    QVERIFY(file.isOpen());

    QVERIFY(file.seek(0));
    QVERIFY(!note.LoadXml(&file));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(":1:1: Start tag expected."));
    QVERIFY(file.isOpen());
}

void IRGObjectXmlFilesTest::aPipeIsRead()
{
    const QByteArray longTitle(30000, 'x');
    QFile file;
    QVERIFY(openOnPipe(file, "<Note title='" + longTitle + "'/>"));
    Note note;
    QVERIFY(note.LoadXml(&file));
    QCOMPARE(note.title.toUtf8(), longTitle);

    QFile cut;
    QVERIFY(openOnPipe(cut, "<Note>"));
    QVERIFY(!note.LoadXml(&cut));
    QCOMPARE(note.GetErrorString(), QStringLiteral("unnamed file:1:6: Premature end of document."));

    QFile emptyNamed(QStringLiteral(""));
    QVERIFY(openOnPipe(emptyNamed, "<Note>"));
    QVERIFY(!note.LoadXml(&emptyNamed));
    QCOMPARE(note.GetErrorString(), QStringLiteral("unnamed file:1:6: Premature end of document."));
}

void IRGObjectXmlFilesTest::theFlagStaysAsItIs()
{
    write(path("a"), "<Note/>");
    Note note;
    note.SetValidate(false);
    QVERIFY(note.LoadXml(path("a")));
    QVERIFY(!note.GetValidate());
}

void IRGObjectXmlFilesTest::unreadableFilesAreRefusedWithTheirReason()
{
    Note note;
    QVERIFY(!note.LoadXml(path("missing")));
    QCOMPARE(note.GetErrorString(), path("missing") + QStringLiteral(": cannot open: No such file or directory"));

    QVERIFY(!note.LoadXml(m_folder->path()));
    QCOMPARE(note.GetErrorString(), m_folder->path() + QStringLiteral(": cannot open: file to open is a directory"));

    QVERIFY(!note.LoadXml(QString()));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file name is empty"));

    const QString twoNames = path("note.xml") + QChar(QChar::Null) + QStringLiteral(".xml");
    QFile existing(path("note.xml"));
    QVERIFY(existing.open(QIODevice::WriteOnly) && existing.write("<Note/>") == 7);
    existing.close();
    QVERIFY(!note.LoadXml(twoNames));
    QCOMPARE(note.GetErrorString(), twoNames + QStringLiteral(": cannot open: a file name cannot contain U+0000"));

    QVERIFY(!note.LoadXml(static_cast<QFile *>(nullptr)));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file pointer is null"));

    QFile writing(path("new"));
    QVERIFY(writing.open(QIODevice::WriteOnly));
    QVERIFY(!note.LoadXml(&writing));
    QCOMPARE(note.GetErrorString(), path("new") + QStringLiteral(": the file is open, but not for reading"));
    QVERIFY(writing.isOpen());
}

void IRGObjectXmlFilesTest::malformedDocumentsAreRefusedWithTheirReason()
{
    Note note;
    write(path("empty"), "");
    QVERIFY(!note.LoadXml(path("empty")));
    QCOMPARE(note.GetErrorString(), path("empty") + QStringLiteral(":1:1: Premature end of document."));

    write(path("%1:2"), "<Note>\n<a></Note>");
    QVERIFY(!note.LoadXml(path("%1:2")));
    QCOMPARE(note.GetErrorString(), path("%1:2") + QStringLiteral(":2:10: Opening and ending tag mismatch."));

    write(path("a"), "<Node/>");
    QVERIFY(!note.LoadXml(path("a")));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(":1:7: the root element is 'Node', not 'Note'"));

    write(path("a"), "<Note/>\nand more");
    QVERIFY(!note.LoadXml(path("a")));
    QCOMPARE(note.GetErrorString(), path("a") + QStringLiteral(":2:1: Extra content at end of document."));
}

void IRGObjectXmlFilesTest::readErrorIsNotReportedAsAShortDocument()
{
    // The first page of a process's memory can be opened, but not read.
    Note note;
    QVERIFY(!note.LoadXml(QStringLiteral("/proc/self/mem")));
    QCOMPARE(note.GetErrorString(), QStringLiteral("/proc/self/mem: cannot read: Input/output error"));

    // An earlier error of a file does not concern this read.
    write(path("a"), "<Note/>");
    QFile file(path("a"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!file.rename(QStringLiteral("/no/such/folder/a")));
    QVERIFY(file.error() != QFileDevice::NoError);
    if (!file.isOpen())
        QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(note.LoadXml(&file));
}

void IRGObjectXmlFilesTest::exactlyTheUtf8OfTheXmlStringIsSaved()
{
    Note note(QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                "e\r"));
    note.title = QStringLiteral("a\tb");
    QVERIFY(note.SaveXml(path("a")));
    const QByteArray expected("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<Note title=\"a&#9;b\">\n"
                              "  <text>Gr\xc3\xb6\xc3\x9f"
                              "e&#13;</text>\n"
                              "</Note>\n");
    QCOMPARE(contentOf(path("a")), expected);
    QCOMPARE(note.GetXmlString().toUtf8(), expected);

    Note other;
    QVERIFY(other.LoadXml(path("a")));
    QCOMPARE(other.text, note.text);
    QCOMPARE(other.title, note.title);
}

void IRGObjectXmlFilesTest::aSavedFileReplacesTheOldOne()
{
    write(path("a"), QByteArray(10000, 'x'));
    QVERIFY(Note(QStringLiteral("b")).SaveXml(path("a")));
    QCOMPARE(contentOf(path("a")),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<Note>\n  <text>b</text>\n</Note>\n"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({QStringLiteral("a")}));
}

void IRGObjectXmlFilesTest::theOldFileStaysWhenTheModelThrows()
{
    write(path("a"), "old");
    const Note note(QStringLiteral("half"));
    QCOMPARE(thrownBy([&] { return note.SaveXml(path("a")); }),
             QStringLiteral("IncompleteDefinitionException: Note: half a note"));
    QCOMPARE(thrownBy([&] { return note.SaveXml(path("b")); }),
             QStringLiteral("IncompleteDefinitionException: Note: half a note"));
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({QStringLiteral("a")}));
    QVERIFY(note.GetErrorString().isNull());
}

void IRGObjectXmlFilesTest::theOldFileStaysWhenThereIsNothingToWrite()
{
    write(path("a"), "old");
    const Note note;
    QVERIFY(!note.SaveXml(path("a")));
    QCOMPARE(note.GetErrorString(),
             path("a") + QStringLiteral(": the object has no data, so there is nothing to write"));
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
    QVERIFY(!note.SaveXml(path("b")));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({QStringLiteral("a")}));
}

void IRGObjectXmlFilesTest::theOldFileStaysWhenXmlCannotCarryAText()
{
    write(path("a"), "old");
    const Note note(QStringLiteral("a\x02"));
    QVERIFY(!note.SaveXml(path("a")));
    QCOMPARE(
        note.GetErrorString(),
        path("a")
            + QStringLiteral(": a text in or just above line 3 of the document contains a character that XML cannot "
                             "carry (a control character, U+FFFE, U+FFFF or half a surrogate pair)"));
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
}

void IRGObjectXmlFilesTest::unwritablePathsAreRefusedWithTheirReason()
{
    const Note note(QStringLiteral("a"));
    QVERIFY(!note.SaveXml(path("no/folder/a")));
    QCOMPARE(note.GetErrorString(), path("no/folder/a") + QStringLiteral(": cannot write: No such file or directory"));
    QVERIFY(!QFileInfo::exists(path("no")));

    QVERIFY(!note.SaveXml(m_folder->path()));
    QCOMPARE(note.GetErrorString(),
             m_folder->path() + QStringLiteral(": cannot write: Filename refers to a directory"));

    QVERIFY(!note.SaveXml(QString()));
    QCOMPARE(note.GetErrorString(), QStringLiteral("the file name is empty"));
}

void IRGObjectXmlFilesTest::aPipeIsNotReplacedByAFile()
{
    const QByteArray pipePath = QFile::encodeName(path("pipe"));
    QCOMPARE(mkfifo(pipePath.constData(), 0600), 0);
    const Note note(QStringLiteral("a"));
    QVERIFY(!note.SaveXml(path("pipe")));
    QCOMPARE(note.GetErrorString(),
             path("pipe") + QStringLiteral(": cannot write: it exists and is not a regular file"));
    struct stat now = {};
    QCOMPARE(stat(pipePath.constData(), &now), 0);
    QVERIFY(S_ISFIFO(now.st_mode));
}

TEST_SUITE(IRGObjectXmlFilesTest)
#include "tst_IRGObjectXmlFiles.moc"
