// SPDX-License-Identifier: MIT
#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/Logger.h>

#include "Encoded.h"
#include "Encodings.h"

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
    void documentInMemoryIsReadAsTheFileOfItsBytes_data();
    void documentInMemoryIsReadAsTheFileOfItsBytes();
    void documentInMemoryThatIsTooLargeIsRefused();
    void documentInMemoryIsReadByAVisitor();
    void failureOfADocumentInMemoryIsLoggedWithItsName();

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
    const QByteArray bytes = encoded(codec, hasMark ? QChar(QChar::ByteOrderMark) + xml : xml);
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

namespace {

/// Everything about a problem.
QString wholeText(const Problem &problem)
{
    QString steps;
    for (const Step &step : problem.steps)
        steps += QStringLiteral("%1[%2]/").arg(step.member).arg(step.index);
    return steps
        + QStringLiteral("%1 %2:%3@%4 %5%6 ")
              .arg(problem.member)
              .arg(problem.line)
              .arg(problem.column)
              .arg(problem.offset)
              .arg(problem.isUnreadable)
              .arg(problem.xmlOnly)
        + problem.message;
}

QStringList wholeTexts(const QVector<Problem> &problems)
{
    QStringList texts;
    for (const Problem &problem : problems)
        texts.append(wholeText(problem));
    return texts;
}

class NotingLogger : public REPORTGENERATOR::Logger
{
public:
    void Log(Severity, const QString &message) override { messages.append(message); }

    QStringList messages;
};

} // namespace

void ReadProblemsXmlTest::documentInMemoryIsReadAsTheFileOfItsBytes_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("count"); // of the problems
    QTest::addColumn<QString>("failure"); // after the name of the document; null if it can be read
    const auto row = [](const char *name, const QByteArray &xml, int count, const char *failure = nullptr) {
        QTest::newRow(name) << xml << count << (failure ? QString::fromUtf8(failure) : QString());
    };
    const auto complete = [](const QString &declaration, const QString &attributes) {
        return declaration + QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\"")
            + attributes
            + QStringLiteral("><Component type=\"t\" name=\"\u00C9\" optional=\"true\"><Node id=\"n\"><ValueItem>"
                             "<ValueInt id=\"i\" value=\"7\"/></ValueItem></Node></Component></TunerProperties>\n");
    };
    const QString latin1 = QStringLiteral("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n");
    const QString badBoolean = QStringLiteral("\n hwProcessing=\"\"");
    row("UTF-8", complete({}, {}).toUtf8(), 0);
    row("UTF-8 with a problem", complete({}, badBoolean).toUtf8(), 1);
    row("UTF-8 with a byte order mark", "\xEF\xBB\xBF" + complete({}, badBoolean).toUtf8(), 1);
    row("UTF-16", encoded("UTF-16", complete({}, {})), 0);
    row("UTF-16 with a problem", encoded("UTF-16", complete({}, badBoolean)), 1);
    row("Latin-1", encoded("ISO-8859-1", complete(latin1, {})), 0);
    row("Latin-1 with a problem", encoded("ISO-8859-1", complete(latin1, badBoolean)), 1);
    row("a document type", "<!DOCTYPE x>" + complete({}, badBoolean).toUtf8(), 1);
    row("a prefix", "<p:TunerProperties xmlns:p=\"u\" Version=\"1.1\" type=\"SCP\"/>", 2);
    row("nothing", "", 1, ":1:1: Premature end of document.");
    row("binary data", QByteArray::fromHex("C10CBB5F00000000"), 1, ":1:1: Encountered incorrectly encoded content.");
    row("a truncated tag", "<TunerProperties Version=\"1.1\" typ", 1, ":1:34: Premature end of document.");
    row("a truncated document", "<TunerProperties Version=\"1.1\">\n<Component>", 1,
        ":2:11: Premature end of document.");
    row("tags that do not match", "<TunerProperties Version=\"1.1\">\n<Component></Node>", 1,
        ":2:18: Opening and ending tag mismatch.");
    row("another root", "<Component/>", 1, ":1:12: the root element is 'Component', not 'TunerProperties'");
    row("truncated UTF-16", encoded("UTF-16", QStringLiteral("<TunerProperties Version=\"1.1\">")).chopped(2), 1,
        ":1:30: Premature end of document.");
    QByteArray attributes;
    for (int i = 1; i <= 1025; ++i)
        attributes += " a" + QByteArray::number(i) + "=\"\"";
    // 16 characters, 1024 attributes of 5 characters and the digits of their numbers, and ` a1025`.
    row("too many attributes", "<TunerProperties" + attributes + "/>", 1,
        ":1:8131: an element has more than 1024 attributes");
}

void ReadProblemsXmlTest::documentInMemoryIsReadAsTheFileOfItsBytes()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, count);
    QFETCH(QString, failure);
    const QVector<Problem> ofFile = problemsOf(xml);
    TunerProperties document;
    QVector<Problem> problems(3); // is replaced
    QCOMPARE(document.SetXmlDocument(xml, QStringLiteral("message 7"), problems), count == 0);
    QCOMPARE(problems.size(), count);
    QCOMPARE(wholeTexts(problems), wholeTexts(ofFile));
    const QString expected = failure.isNull() ? QString() : QStringLiteral("message 7") + failure;
    QCOMPARE(document.GetErrorString(), expected);
    QCOMPARE(document.GetErrorString().isNull(), m_document.GetErrorString().isNull());
    if (!failure.isNull()) {
        QCOMPARE(m_document.GetErrorString(), m_folder.filePath(QStringLiteral("a.xml")) + failure);
        QCOMPARE(document.GetErrorLocation().source, QStringLiteral("message 7"));
        QCOMPARE(document.GetErrorLocation().line, m_document.GetErrorLocation().line);
        QCOMPARE(document.GetErrorLocation().column, m_document.GetErrorLocation().column);
    }
    QCOMPARE(hex(snapshotOf(document)), hex(snapshotOf(m_document)));
    QVERIFY(document.GetValidate());
}

void ReadProblemsXmlTest::documentInMemoryThatIsTooLargeIsRefused()
{
    const QByteArray xml = "<TunerProperties Version=\"1.1\"/>"; // 32 bytes
    QVector<Problem> problems;
    ReadOptions options;
    options.setMaxBytes(31);
    TunerProperties document;
    QVERIFY(!document.SetXmlDocument(xml, QStringLiteral("a"), problems, options));
    QCOMPARE(document.GetErrorString(),
             QStringLiteral("a: the document has more than 31 bytes, the most that are accepted"));
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems[0].isUnreadable);
    QVERIFY(!document.IsInitialized());

    options.setMaxBytes(32).setValidate(false);
    QVERIFY(document.SetXmlDocument(xml, QStringLiteral("a"), problems, options));
    QCOMPARE(document.GetErrorString(), QString());
}

void ReadProblemsXmlTest::documentInMemoryIsReadByAVisitor()
{
    QStringList texts;
    TunerProperties document;
    QVERIFY(!document.SetXmlDocument("<TunerProperties Version=\"1.1\" hwProcessing=\"\"><Extra/></TunerProperties>",
                                     QStringLiteral("a"),
                                     [&](const Problem &problem) { texts.append(text(problem)); }));
    QCOMPARE(texts.mid(0, 2),
             (QStringList{QStringLiteral("1:32: Please set a value or a default for the boolean 'hwProcessing' in "
                                         "'TunerProperties'."),
                          QStringLiteral("1:48: Unknown Tag 'Extra' in 'TunerProperties'.")}));
}

void ReadProblemsXmlTest::failureOfADocumentInMemoryIsLoggedWithItsName()
{
    const auto logger = std::make_shared<NotingLogger>();
    TunerProperties document;
    document.SetLogger(logger);
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlDocument("<TunerProperties>", QStringLiteral("message 7"), problems));
    QCOMPARE(logger->messages, QStringList{QStringLiteral("message 7:1:17: Premature end of document.")});
}

TEST_SUITE(ReadProblemsXmlTest)
#include "tst_ReadProblemsXml.moc"
