// SPDX-License-Identifier: MIT
#include <QTemporaryDir>
#include <QTest>

#include <tunerdocuments/DocumentError.h>

#include <documents/json/JsonForm.h>
#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/Finding.h>

#include "Rows.h"
#include "documents/RandomChanges.h"

using namespace TunerDocuments;
using JobXml::Problem;
using JobXml::TunerProperties;

/// The problems that are found while a document is read are those that a validating program would run into.
class DocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void problemsAreFoundExactlyInDocumentsThatAreRefused_data();
    void problemsAreFoundExactlyInDocumentsThatAreRefused();
    void documentIsTheOneOfAReaderThatDoesNotValidate_data();
    void documentIsTheOneOfAReaderThatDoesNotValidate();
    void charactersThatXmlCannotCarryAreAccepted();
    void problemsAreNotLookedForWithoutAVisitor();
    void valueThatIsNotSetIsLost();
    void lossesAreAllDifferences_data();
    void lossesAreAllDifferences();
    void versionOfJsonIsReadByTheRuleOfTheDocument_data();
    void versionOfJsonIsReadByTheRuleOfTheDocument();
};

namespace {

const QVector<Form> allForms = {Form::Xml, Form::Tagged, Form::Compressed, Form::Snapshot, Form::Json};

void addForms()
{
    QTest::addColumn<int>("form");
    for (const Form form : allForms)
        QTest::newRow(qPrintable(Forms::suffixOf(form))) << int(form);
}

/// The document in that form, whatever its state is; nothing if the form cannot hold it.
QByteArray composed(TunerProperties document, Form form)
{
    document.SetValidate(false);
    try {
        return form == Form::Snapshot ? snapshotOf(document) : Document(document).toBytes(form, QStringLiteral("f"));
    } catch (const DocumentError &) {
        return {};
    }
}

TunerProperties example(int number)
{
    static const QVector<TunerProperties> all = [] {
        QVector<TunerProperties> documents(5);
        const char *const names[] = {"directionfinder", "ffp", "mcp", "receiver", "scp"};
        for (int i = 0; i < documents.size(); ++i) {
            if (!documents[i].LoadXml(QStringLiteral(EXAMPLES_DIR "/%1.xml").arg(QLatin1String(names[i]))))
                qFatal("%s", qPrintable(documents[i].GetErrorString()));
        }
        return documents;
    }();
    return all[number % all.size()];
}

/// Complete documents and others, some of them changed, and bytes of some of them damaged.
QByteArray someDocument(int seed, Form form)
{
    RandomChanges random{quint32(seed)};
    TunerProperties document = seed % 2 == 0 ? example(seed / 2) : randomDocument(seed);
    document.SetValidate(false);
    for (int i = seed % 3; i > 0; --i)
        random.change(document);
    QByteArray bytes = composed(document, form);
    if (seed % 4 == 0 && !bytes.isEmpty()) {
        const int at = random.below(bytes.size());
        // A digit or letter in place of another one, usually: the document remains readable.
        bytes[at] = form == Form::Xml || form == Form::Json ? char('0' + random.below(75)) : char(random.below(256));
    }
    return bytes;
}

bool isForXml(const TunerProperties &document)
{
    const QVector<Problem> problems = document.GetProblems();
    return std::none_of(problems.begin(), problems.end(), [](const Problem &problem) { return problem.xmlOnly; });
}

/// What a program does that validates: it reads, checks and writes.
bool isAccepted(const QString &path, const QByteArray &bytes, Form form)
{
    TunerProperties document;
    try {
        switch (form) {
        case Form::Xml:
            if (!document.LoadXml(path))
                return false;
            break;
        case Form::Tagged:
        case Form::Compressed:
            if (!document.LoadBinary(path))
                return false;
            break;
        case Form::Snapshot:
            readSnapshot(document, bytes);
            break;
        case Form::Json:
            if (JsonForm::read(document, bytes) > 0)
                return false;
            break;
        }
        document.Check();
        return !document.GetXmlString().isEmpty();
    } catch (const ReportException &) {
        return false;
    }
}

class Folder
{
public:
    /// A file with that content.
    QString file(const QByteArray &bytes)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s", qPrintable(file.errorString()));
        return path();
    }

    QString path() const { return m_folder.filePath(QStringLiteral("document")); }

private:
    QTemporaryDir m_folder;
};

} // namespace

void DocumentTest::problemsAreFoundExactlyInDocumentsThatAreRefused_data()
{
    addForms();
}

void DocumentTest::problemsAreFoundExactlyInDocumentsThatAreRefused()
{
    QFETCH(int, form);
    Folder folder;
    int accepted = 0;
    int refused = 0;
    for (int seed = 0; seed < 600; ++seed) {
        const QByteArray bytes = someDocument(seed, Form(form));
        const QString file = folder.file(bytes);
        Findings findings(1);
        try {
            const Document document =
                Document::load(file, LoadOptions().setForm(Form(form)).setMaxExpansion(1100), findings.collector());
            if (!isForXml(document.tuner))
                continue; // writing it as XML would show nothing about the others
        } catch (const DocumentError &) {
            continue; // it is not a document
        }
        const bool isValid = isAccepted(folder.path(), bytes, Form(form));
        const QString first = findings.isEmpty() ? QString() : findings.listed().first().message;
        QVERIFY2(findings.isEmpty() == isValid, qPrintable(QStringLiteral("%1: '%2'").arg(seed).arg(first)));
        ++(isValid ? accepted : refused);
    }
    QVERIFY2(accepted > 50, qPrintable(QString::number(accepted)));
    QVERIFY2(refused > 100, qPrintable(QString::number(refused)));
}

void DocumentTest::documentIsTheOneOfAReaderThatDoesNotValidate_data()
{
    addForms();
}

void DocumentTest::documentIsTheOneOfAReaderThatDoesNotValidate()
{
    QFETCH(int, form);
    Folder folder;
    int read = 0;
    for (int seed = 0; seed < 300; ++seed) {
        const QString file = folder.file(someDocument(seed, Form(form)));
        Findings findings(1);
        QByteArray collected;
        QByteArray plain;
        QString failure;
        try {
            const Document document =
                Document::load(file, LoadOptions().setForm(Form(form)).setMaxExpansion(1100), findings.collector());
            QVERIFY(!document.tuner.GetValidate());
            collected = snapshotOf(document.tuner);
        } catch (const DocumentError &refused) {
            failure = refused.text();
        }
        try {
            plain = snapshotOf(Document::load(file, LoadOptions().setForm(Form(form)).setMaxExpansion(1100)).tuner);
            ++read;
        } catch (const DocumentError &refused) {
            QCOMPARE(failure, refused.text());
        }
        QCOMPARE(collected, plain);
    }
    QVERIFY2(read > 200, qPrintable(QString::number(read)));
}

void DocumentTest::charactersThatXmlCannotCarryAreAccepted()
{
    TunerProperties document = example(0);
    document.Setname(QStringLiteral("\u0001"));
    Folder folder;
    for (const Form form : {Form::Tagged, Form::Compressed, Form::Snapshot, Form::Json}) {
        Findings findings(1);
        const Document read = Document::load(folder.file(composed(document, form)),
                                             LoadOptions().setForm(form).setMaxExpansion(1100), findings.collector());
        QCOMPARE(findings.count(), 0);
        QCOMPARE(std::as_const(read.tuner).Getname(), QStringLiteral("\u0001"));
    }
}

void DocumentTest::problemsAreNotLookedForWithoutAVisitor()
{
    Folder folder;
    const Document document = Document::load(folder.file("<TunerProperties Version=\"1.1\" hwProcessing=\"\"><Extra/>"
                                                         "<Component/></TunerProperties>"));
    QCOMPARE(document.tuner.GetErrorString(), QString());
    QCOMPARE(document.tuner.GetComponent().size(), 1);
    QVERIFY(document.tuner.IshwProcessingSet());
}

void DocumentTest::valueThatIsNotSetIsLost()
{
    TunerProperties description;
    description.SetValidate(false);
    visit(description, [](JobXml::MemberEditor &member) {
        if (member.GetName() == QLatin1String("hwProcessing")) {
            QVERIFY(member.SetValue(true));
            member.SetFlag(false);
        }
    });
    const Document document(description);
    for (const Form form : {Form::Xml, Form::Compressed, Form::Snapshot}) {
        const QByteArray bytes = composed(description, form);
        const QVector<Loss> losses = document.lossesIn(bytes, form);
        QStringList texts;
        for (const Loss &loss : losses)
            texts.append(loss.text());
        QVERIFY2(texts.contains(QStringLiteral("hwProcessing: true (not set) becomes false (not set)")),
                 qPrintable(texts.join(QLatin1Char('\n'))));
    }
    QCOMPARE(document.lossesIn(composed(description, Form::Json), Form::Json).size(), 0);
}

void DocumentTest::lossesAreAllDifferences_data()
{
    addForms();
}

void DocumentTest::lossesAreAllDifferences()
{
    QFETCH(int, form);
    int lossy = 0;
    for (int seed = 0; seed < 60; ++seed) {
        const TunerProperties description = randomDocument(seed, seed % 6);
        const QByteArray bytes = composed(description, Form(form));
        if (bytes.isEmpty())
            continue;
        TunerProperties written;
        try {
            written =
                Document::fromBytes(bytes, QStringLiteral("f"), LoadOptions().setForm(Form(form)).setMaxExpansion(2000))
                    .tuner;
        } catch (const DocumentError &) {
            continue; // the snapshot of an incomplete document
        }
        const int differences = findDifferences(description, written).size();
        QCOMPARE(Document(description).lossesIn(bytes, Form(form)).size(), differences);
        lossy += differences > 0;
    }
    QVERIFY2(Form(form) == Form::Json ? lossy == 0 : lossy > 0, qPrintable(QString::number(lossy)));
}

void DocumentTest::versionOfJsonIsReadByTheRuleOfTheDocument_data()
{
    const Rows<QByteArray, QString> row("version", "loaded");
    row("1.1", QStringLiteral("1.1"));
    row("1.0", QStringLiteral("1.0"));
    row("", QStringLiteral(""));
    row(R"(\r\n\t<&\">'\u007f\ufeff\ud83d\ude00)", QStringLiteral("\r\n\t<&\">'\u007F\uFEFF\U0001F600"));
}

void DocumentTest::versionOfJsonIsReadByTheRuleOfTheDocument()
{
    QFETCH(QByteArray, version);
    QFETCH(QString, loaded);
    TunerProperties document;
    document.SetValidate(false);
    QCOMPARE(JsonForm::read(document, "{\"TunerProperties\": {\"Version\": \"" + version + "\"}}"), qint64(0));
    QCOMPARE(document.GetInitialVersionLoaded(), loaded);
    QVERIFY(!document.GetInitialVersionLoaded().isNull());
    QCOMPARE(document.IsquantitySet(), loaded != QLatin1String("1.1"));
    QCOMPARE(document.GetVersion(), QStringLiteral("1.1"));
}

TEST_SUITE(DocumentTest)
#include "tst_Document.moc"
