// SPDX-License-Identifier: MIT
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <reportbase/ReportException.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>

#include "Rows.h"

using namespace TunerDocuments;

/// Documents in files and in memory, in every form, and the texts of what goes wrong.
class DocumentFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void savedDocumentIsReadBackInEveryForm_data();
    void savedDocumentIsReadBackInEveryForm();
    void openFileIsReadFromItsBeginningAndStaysOpen();
    void formOfTheOptionsWinsOverTheContent();
    void unreadableFilesAreRefusedWithTheirReason();
    void unreadableBytesAreRefusedWithTheirReason_data();
    void unreadableBytesAreRefusedWithTheirReason();
    void expansionIsAllowedByTheOptions();
    void formsRefuseWhatTheyCannotHold();
    void failingSaveKeepsTheOldFile();
    void documentThatValidatesIsCheckedBeforeItIsWritten();
    void descriptionOfTheProgramKeepsItsFlag();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QString file(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s", qPrintable(file.errorString()));
        return file.fileName();
    }

    QByteArray content(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

constexpr char xml[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<TunerProperties Version="1.1" type="SCP" baseresource="b">
  <Component type="t" name="c" optional="true">
    <Node id="n">
      <ValueItem>
        <ValueInt id="i" value="7"/>
      </ValueItem>
    </Node>
  </Component>
</TunerProperties>
)";

Document small()
{
    return Document::fromBytes(xml, QStringLiteral("small"));
}

/// A description without its mandatory members.
Document incomplete()
{
    JobXml::TunerProperties tuner;
    tuner.SetValidate(false);
    tuner.GetComponent().append(JobXml::Component());
    return Document(tuner);
}

template <class Function>
QString failureOf(Function &&function)
{
    try {
        function();
    } catch (const DocumentError &error) {
        if (error.what() != error.text().toUtf8())
            return QStringLiteral("what() has another text");
        return error.text();
    }
    return QStringLiteral("no failure");
}

} // namespace

void DocumentFilesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void DocumentFilesTest::cleanup()
{
    m_folder.reset();
}

void DocumentFilesTest::savedDocumentIsReadBackInEveryForm_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QByteArray>("beginning");
    const auto row = [](const char *suffix, Form form, const QByteArray &beginning) {
        QTest::newRow(suffix) << int(form) << QString::fromLatin1(suffix) << beginning;
    };
    row(".xml", Form::Xml, xml);
    row(".tpb", Form::Tagged, QByteArray::fromHex("C10CBB5F 000000B3 CCFEDFA1 0000000A 00000006 0031002E0031"));
    row(".tpz", Form::Compressed, QByteArray::fromHex("52475A31"));
    row(".tps", Form::Snapshot, QByteArray::fromHex("D000 00000006 0031002E0031"));
    row(".json", Form::Json, "{\n  \"TunerProperties\": {\n    \"Version\": \"1.1\",\n    \"type\": \"SCP\",");
}

void DocumentFilesTest::savedDocumentIsReadBackInEveryForm()
{
    QFETCH(int, form);
    QFETCH(QString, suffix);
    QFETCH(QByteArray, beginning);
    const QString name = m_folder->filePath(QStringLiteral("a") + suffix);
    const Document document = small();
    document.save(name, Form(form));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    QCOMPARE(bytes.left(beginning.size()).toHex(' '), beginning.toHex(' '));
    QCOMPARE(bytes, document.toBytes(Form(form), name));

    for (const Document &read : {Document::load(name), Document::load(file), Document::fromBytes(bytes, name)}) {
        QCOMPARE(int(read.form), form);
        QVERIFY(read.tuner == document.tuner);
        QVERIFY(!read.tuner.GetValidate());
        QCOMPARE(read.toBytes(Form::Json, name), document.toBytes(Form::Json, name)); // to the last flag
    }
}

void DocumentFilesTest::openFileIsReadFromItsBeginningAndStaysOpen()
{
    QFile file(this->file("a.xml", xml));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.seek(100));
    QVERIFY(Document::load(file).tuner == small().tuner);
    QVERIFY(file.isOpen());
}

void DocumentFilesTest::formOfTheOptionsWinsOverTheContent()
{
    const QByteArray snapshot = small().toBytes(Form::Snapshot, {});
    LoadOptions options;
    options.setForm(Form::Snapshot);
    QVERIFY(Document::fromBytes(snapshot, QStringLiteral("a.xml"), options).tuner == small().tuner);
    options.setForm(Form::Json);
    QVERIFY(failureOf([&] {
                Document::fromBytes(xml, QStringLiteral("a"), options);
            }).startsWith(QLatin1String("a:1:1: ")));
}

void DocumentFilesTest::unreadableFilesAreRefusedWithTheirReason()
{
    QCOMPARE(failureOf([&] { Document::load(path("none.xml")); }),
             path("none.xml") + QStringLiteral(": cannot open: No such file or directory"));
    QCOMPARE(failureOf([&] { Document::load(m_folder->path()); }),
             m_folder->path() + QStringLiteral(": cannot open: file to open is a directory"));
    QCOMPARE(failureOf([&] { Document::load(QString()); }), QStringLiteral(": cannot open: No file name specified"));
    QCOMPARE(failureOf([&] { Document::load(file("a.xml", "<TunerProperties>")); }),
             path("a.xml") + QStringLiteral(":1:17: Premature end of document."));
}

void DocumentFilesTest::unreadableBytesAreRefusedWithTheirReason_data()
{
    const Rows<QString, QByteArray, QString> row("name", "bytes", "failure");
    const char *const unknown = "a.txt: unknown form: neither XML, JSON nor binary; a snapshot is recognized by the "
                                "suffix .tps alone";
    row("no form", "a.txt", "hello", unknown);
    row("nothing", "a.txt", "", unknown);
    row("no XML", "a.XML", "hello", "a.XML:1:1: Start tag expected.");
    row("another root", "a", "<Component/>", "a:1:12: the root element is 'Component', not 'TunerProperties'");
    // 1000 bytes from 16 are 62.5 times as many.
    row("too much expansion", "a", QByteArray::fromHex("52475A31 00000008 000003E8 789C0000"),
        "a: expands from 16 to 1000 bytes, more than 50 times its size");
    row("a truncated snapshot", "a.tps", QByteArray::fromHex("D000 0000"),
        "a.tps: the snapshot is truncated, or the file is not a snapshot");
    row("more than a snapshot", "a.tps", small().toBytes(Form::Snapshot, {}) + "xy",
        "a.tps: the snapshot ends after 70 of 72 bytes, or the file is not a snapshot");
    row("other JSON", "a.json", R"({"TunerProperties": 1})", "a.json:1:21: '1' is not an object");
}

void DocumentFilesTest::unreadableBytesAreRefusedWithTheirReason()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, failure);
    QCOMPARE(failureOf([&] { Document::fromBytes(bytes, name); }), failure);
    // The same from a file, and with a visitor.
    const QString inFile = file(qPrintable(name), bytes);
    const auto ignore = [](const JobXml::Problem &) {};
    QCOMPARE(failureOf([&] { Document::load(inFile, {}, ignore); }), m_folder->path() + QLatin1Char('/') + failure);
}

void DocumentFilesTest::expansionIsAllowedByTheOptions()
{
    JobXml::TunerProperties tuner = small().tuner;
    tuner.Setname(QString(100000, QLatin1Char('x')));
    const QByteArray bytes = Document(tuner).toBytes(Form::Compressed, {});
    QVERIFY(failureOf([&] {
                Document::fromBytes(bytes, QStringLiteral("a"));
            }).endsWith(QLatin1String(" bytes, more than 50 times its size")));
    LoadOptions options;
    options.setMaxExpansion(1100);
    QVERIFY(Document::fromBytes(bytes, QStringLiteral("a"), options).tuner == tuner);
}

void DocumentFilesTest::formsRefuseWhatTheyCannotHold()
{
    QCOMPARE(failureOf([] { incomplete().toBytes(Form::Snapshot, QStringLiteral("a")); }),
             QStringLiteral("a: cannot write a snapshot that reads back unchanged, since the document is incomplete"));
    Document document = small();
    document.tuner.Setname(QString(QChar(0xD800)));
    QCOMPARE(failureOf([&] { document.toBytes(Form::Json, QStringLiteral("a")); }),
             QStringLiteral("a: name: the text contains an unpaired surrogate, which JSON cannot represent"));
    document.tuner.Setname(QStringLiteral("\u0001"));
    QCOMPARE(
        failureOf([&] { document.toBytes(Form::Xml, QStringLiteral("a")); }),
        QStringLiteral("a: a text in or just above line 2 of the document contains a character that XML cannot carry "
                       "(a control character, U+FFFE, U+FFFF or half a surrogate pair)"));
}

void DocumentFilesTest::failingSaveKeepsTheOldFile()
{
    file("a", "old");
    QVERIFY(failureOf([&] { incomplete().save(path("a"), Form::Snapshot); }).startsWith(path("a")));
    QCOMPARE(content("a"), QByteArray("old"));
    QCOMPARE(failureOf([&] { small().save(path("no/a"), Form::Xml); }),
             path("no/a") + QStringLiteral(": cannot write: No such file or directory"));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(failureOf([&] { small().save(path("folder"), Form::Xml); }),
             path("folder") + QStringLiteral(": cannot write: Filename refers to a directory"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("a"), QStringLiteral("folder")}));
}

void DocumentFilesTest::documentThatValidatesIsCheckedBeforeItIsWritten()
{
    file("a", "old");
    Document document = incomplete();
    document.tuner.SetValidate(true);
    for (const Form form : {Form::Xml, Form::Tagged, Form::Compressed, Form::Json}) {
        QVERIFY_THROWS_EXCEPTION(ReportException, document.save(path("a"), form));
        QCOMPARE(content("a"), QByteArray("old"));
    }
    document.tuner.SetValidate(false);
    document.save(path("a"), Form::Json);
    QVERIFY(content("a") != "old");
}

void DocumentFilesTest::descriptionOfTheProgramKeepsItsFlag()
{
    JobXml::TunerProperties tuner;
    QVERIFY(Document(tuner).tuner.GetValidate());
    QCOMPARE(int(Document(tuner, Form::Tagged).form), int(Form::Tagged));
    tuner.SetValidate(false);
    QVERIFY(!Document(tuner).tuner.GetValidate());
    QVERIFY(!Document().tuner.IsInitialized());
}

TEST_SUITE(DocumentFilesTest)
#include "tst_DocumentFiles.moc"
