// SPDX-License-Identifier: MIT
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <jobxml/TunerProperties.h>

using namespace JobXml;

/// Problems of XML files in every encoding, with namespaces, and of those that are not well-formed.
class ReadProblemsXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileThatIsNotWellFormedEndsWithItsFailure_data();
    void aFileThatIsNotWellFormedEndsWithItsFailure();
    void contentBeforeTheFailureIsCheckedAndReadAll();
    void contentAfterTheDocumentMakesItUnreadable();
    void problemsAreFoundInEveryEncoding_data();
    void problemsAreFoundInEveryEncoding();
    void namespacesInsideTheRootAreNotProcessed();
    void anUndeclaredPrefixOfTheRootMakesTheDocumentUnreadable();
    void onlyTheEndOfReadingIsUnreadable();

private:
    QVector<Problem> problemsOf(const QByteArray &xml)
    {
        QVector<Problem> problems;
        const QString path = m_folder.filePath(QStringLiteral("a.xml"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size())
            qFatal("%s", qPrintable(file.errorString()));
        file.close();
        m_document = TunerProperties();
        m_document.LoadXml(path, problems);
        return problems;
    }

    QString textOfFailure(const char *placeAndReason) const
    {
        return m_folder.filePath(QStringLiteral("a.xml")) + QLatin1Char(':') + QString::fromUtf8(placeAndReason);
    }

    QTemporaryDir m_folder;
    TunerProperties m_document;
};

namespace {

QString text(const Problem &problem)
{
    return QStringLiteral("%1:%2: ").arg(problem.line).arg(problem.column) + problem.message;
}

QStringList locatedTexts(const QVector<Problem> &problems)
{
    QStringList result;
    for (const Problem &problem : problems) {
        if (problem.line > 0)
            result.append(text(problem));
    }
    return result;
}

} // namespace

void ReadProblemsXmlTest::aFileThatIsNotWellFormedEndsWithItsFailure_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const QByteArray &xml, const char *problem) {
        QTest::newRow(name) << xml << QString::fromUtf8(problem);
    };
    row("nothing", "", "1:1: Premature end of document.");
    row("no element", "<!-- x -->", "1:10: Premature end of document.");
    row("cut off", "<TunerProperties Version=\"1.1\">\n<Component>", "2:11: Premature end of document.");
    row("a tag that is cut off", "<TunerProperties Version=\"1.1\" typ", "1:34: Premature end of document.");
    row("tags that do not match", "<TunerProperties Version=\"1.1\">\n<Component></Node>",
        "2:18: Opening and ending tag mismatch.");
    row("another root", "<!-- x -->\n<Component/>", "2:12: the root element is 'Component', not 'TunerProperties'");
}

void ReadProblemsXmlTest::aFileThatIsNotWellFormedEndsWithItsFailure()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, problem);
    const QVector<Problem> problems = problemsOf(xml);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(text(problems.first()), problem);
    QVERIFY(problems.first().isUnreadable);
    QCOMPARE(m_document.GetErrorString(), textOfFailure(qUtf8Printable(problem)));
    TunerProperties strict;
    QVERIFY(!strict.LoadXml(m_folder.filePath(QStringLiteral("a.xml"))));
    QCOMPARE(strict.GetErrorString(), m_document.GetErrorString());
}

void ReadProblemsXmlTest::contentBeforeTheFailureIsCheckedAndReadAll()
{
    const QVector<Problem> problems = problemsOf("<TunerProperties Version=\"1.1\" name=\"n\">\n<Extra/>\n<Component>");
    QCOMPARE(locatedTexts(problems).last(), QStringLiteral("3:11: Premature end of document."));
    QCOMPARE(problems.size(), locatedTexts(problems).size()); // what the document lacks says nothing then
    QCOMPARE(m_document.GetErrorString(), textOfFailure("3:11: Premature end of document."));
    QCOMPARE(m_document.Getname(), QStringLiteral("n"));
}

void ReadProblemsXmlTest::contentAfterTheDocumentMakesItUnreadable()
{
    const QVector<Problem> problems = problemsOf("<TunerProperties Version=\"1.1\"/>\n<x/>");
    QCOMPARE(locatedTexts(problems), QStringList{QStringLiteral("2:4: Extra content at end of document.")});
    QVERIFY(problems.last().isUnreadable);
}

void ReadProblemsXmlTest::problemsAreFoundInEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<bool>("hasMark");
    for (const char *codec : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("%s", codec) << QByteArray(codec) << false;
        QTest::addRow("%s with a byte order mark", codec) << QByteArray(codec) << true;
    }
}

// In UTF-8 they start where the attribute or element does, otherwise where its start tag ends.
void ReadProblemsXmlTest::problemsAreFoundInEveryEncoding()
{
    QFETCH(QByteArray, codec);
    QFETCH(bool, hasMark);
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\" hwProcessing=\"\" name=\"\u00E9\">"
                                       "\n <Extra/></TunerProperties>");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString whole = hasMark ? QChar(QChar::ByteOrderMark) + xml : xml;
    const QByteArray bytes = QTextCodec::codecForName(codec)->fromUnicode(whole.constData(), whole.size(), &state);
    const bool isUtf8 = codec == "UTF-8";
    const QString unset = QStringLiteral("Please set a value or a default for the boolean 'hwProcessing' in "
                                         "'TunerProperties'.");
    const QString unknown = QStringLiteral("Unknown Tag 'Extra' in 'TunerProperties'.");
    const QVector<Problem> problems = problemsOf(bytes);
    QCOMPARE(locatedTexts(problems),
             (QStringList{QString::fromLatin1(isUtf8 ? "1:32: " : "1:56: ") + unset,
                          QString::fromLatin1(isUtf8 ? "2:2: " : "2:9: ") + unknown}));
    QCOMPARE(m_document.Getname(), QStringLiteral("\u00E9"));
    for (const Problem &problem : problems)
        QCOMPARE(problem.offset >= 0, isUtf8 && problem.line > 0);
    if (isUtf8)
        QCOMPARE(problems.first().offset, qint64(bytes.indexOf("hwProcessing")));
}

// A reader that processes namespaces looks up each name in all declared ones, and deeply nested elements can declare
// any number of them. It would also stop at the first prefix without a declaration.
void ReadProblemsXmlTest::namespacesInsideTheRootAreNotProcessed()
{
    const QVector<Problem> problems =
        problemsOf("<p:TunerProperties xmlns:p=\"u\" Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                   " <q:Extra q:type=\"x\"/>\n"
                   " <q:Component type=\"t\" name=\"c\" optional=\"\" q:optional=\"true\">\n"
                   "  <p:Other xmlns:q=\"v\"/><q:Node id=\"n\"/>\n"
                   " </q:Component>\n"
                   " <q:Last/>\n"
                   "</p:TunerProperties>\n");
    // Where the start tags end.
    QCOMPARE(locatedTexts(problems),
             (QStringList{
                 QStringLiteral("2:22: Unknown Tag 'Extra' in 'TunerProperties'."),
                 QStringLiteral("3:62: Please set a value or a default for the boolean 'optional' in 'Component'."),
                 QStringLiteral("4:40: Component: Tried to append not completely defined or invalid item Node."),
                 QStringLiteral("6:10: Unknown Tag 'Last' in 'TunerProperties'."),
             }));
    QCOMPARE(m_document.GetComponent()[0].GetNode()[0].Getid(), QStringLiteral("n"));
}

void ReadProblemsXmlTest::anUndeclaredPrefixOfTheRootMakesTheDocumentUnreadable()
{
    const QVector<Problem> problems = problemsOf("<p:TunerProperties Version=\"1.1\"><a/></p:TunerProperties>");
    QCOMPARE(problems.size(), 1);
    QCOMPARE(problems[0].message, QStringLiteral("Namespace prefix 'p' not declared"));
    QVERIFY(problems[0].isUnreadable);
}

void ReadProblemsXmlTest::onlyTheEndOfReadingIsUnreadable()
{
    QVector<Problem> problems = problemsOf("<TunerProperties Version=\"1.1\" hwProcessing=\"\"><Extra/>");
    QCOMPARE(problems.size(), 3);
    for (int i = 0; i < problems.size(); ++i)
        QCOMPARE(problems[i].isUnreadable, i == 2);

    problems = problemsOf("<TunerProperties Version=\"1.1\" hwProcessing=\"\"><Extra/></TunerProperties>");
    QVERIFY(problems.size() > 2);
    for (const Problem &problem : qAsConst(problems))
        QVERIFY(!problem.isUnreadable);

    // A record that says that it has 7 bytes, of which a text takes 6.
    QVERIFY(!m_document.SetBinaryRepresentation(
        QByteArray::fromHex("C10CBB5F 0000000E E0CFAE8E 00000007 00000002 6262"), problems));
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems[0].isUnreadable);
    QVERIFY(m_document.GetErrorString().isNull());
}

TEST_SUITE(ReadProblemsXmlTest)
#include "tst_ReadProblemsXml.moc"
