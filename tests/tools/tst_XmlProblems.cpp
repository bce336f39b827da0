// SPDX-License-Identifier: MIT
#include <documents/XmlProblems.h>
#include <jobxml/TunerProperties.h>

#include <QTest>
#include <QTextCodec>
#include <QVector>

namespace {

QVector<XmlProblem> problemsOf(const QByteArray &xml)
{
    QVector<XmlProblem> problems;
    findXmlProblems(xml, [&](const XmlProblem &problem) { problems.append(problem); });
    return problems;
}

} // namespace

/// The checks of the tool for XML that ends with an error.
class XmlProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void malformedXmlIsAProblem_data();
    void malformedXmlIsAProblem();
    void wholeDocumentHasNoProblem();
    void problemsAreFoundInEveryEncoding_data();
    void problemsAreFoundInEveryEncoding();
    void namespacesInsideTheRootAreNotProcessed();
    void anUndeclaredPrefixOfTheRootIsAProblem();
};

void XmlProblemsTest::malformedXmlIsAProblem_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("problem");
    QTest::newRow("nothing") << QByteArray() << QStringLiteral("1:1: Premature end of document.");
    QTest::newRow("no element") << QByteArray("<!-- x -->") << QStringLiteral("1:10: Premature end of document.");
    QTest::newRow("cut off") << QByteArray("<TunerProperties Version=\"1.1\">\n<Component>")
                             << QStringLiteral("2:11: Premature end of document.");
    QTest::newRow("a tag that is cut off")
        << QByteArray("<TunerProperties Version=\"1.1\" typ") << QStringLiteral("1:34: Premature end of document.");
}

void XmlProblemsTest::malformedXmlIsAProblem()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, problem);
    const auto text = [](const XmlProblem &found) {
        return QStringLiteral("%1:%2: ").arg(found.line).arg(found.column) + found.message;
    };
    const QVector<XmlProblem> problems = problemsOf(xml);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(text(problems.first()), problem);
    const auto refusal = firstXmlRefusal(xml);
    QVERIFY(refusal.has_value());
    QVERIFY2(!refusal->message.isEmpty(), qPrintable(text(*refusal)));
}

void XmlProblemsTest::wholeDocumentHasNoProblem()
{
    const QByteArray xml = "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">"
                           "<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"/></Component>"
                           "</TunerProperties>\n<!-- end -->\n";
    QVERIFY(problemsOf(xml).isEmpty());
}

void XmlProblemsTest::problemsAreFoundInEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<bool>("hasMark");
    for (const char *codec : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("%s", codec) << QByteArray(codec) << false;
        QTest::addRow("%s with a byte order mark", codec) << QByteArray(codec) << true;
    }
}

void XmlProblemsTest::problemsAreFoundInEveryEncoding()
{
    QFETCH(QByteArray, codec);
    QFETCH(bool, hasMark);
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\" hwProcessing=\"\" name=\"\u00E9\">"
                                       "\n <Extra/></TunerProperties>");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString whole = hasMark ? QChar(QChar::ByteOrderMark) + xml : xml;
    const QByteArray bytes = QTextCodec::codecForName(codec)->fromUnicode(whole.constData(), whole.size(), &state);
    const QVector<XmlProblem> problems = problemsOf(bytes);
    QCOMPARE(problems.size(), 2);
    QCOMPARE(problems[0].message,
             QStringLiteral("Please set a value or a default for the boolean "
                            "'hwProcessing' in 'TunerProperties'."));
    QCOMPARE(problems[1].message, QStringLiteral("Unknown Tag 'Extra' in 'TunerProperties'."));
    QCOMPARE(problems[1].line, 2);
    QCOMPARE(problems[1].column, 2);
}

// As in the library: a reader that processes namespaces looks up each name in all declared ones, and deeply nested
// elements can declare any number of them. It would also stop at the first prefix without a declaration.
void XmlProblemsTest::namespacesInsideTheRootAreNotProcessed()
{
    const QByteArray xml = "<p:TunerProperties xmlns:p=\"u\" Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                           " <q:Extra q:type=\"x\"/>\n"
                           " <q:Component type=\"t\" name=\"c\" optional=\"\" q:optional=\"true\">\n"
                           "  <p:Other xmlns:q=\"v\"/><q:Node id=\"n\"/>\n"
                           " </q:Component>\n"
                           " <q:Last/>\n"
                           "</p:TunerProperties>\n";
    QStringList problems;
    for (const XmlProblem &problem : problemsOf(xml))
        problems.append(QStringLiteral("%1:%2: ").arg(problem.line).arg(problem.column) + problem.message);
    QCOMPARE(problems,
             (QStringList{
                 QStringLiteral("2:2: Unknown Tag 'Extra' in 'TunerProperties'."),
                 QStringLiteral("3:33: Please set a value or a default for the boolean 'optional' in 'Component'."),
                 QStringLiteral("6:2: Unknown Tag 'Last' in 'TunerProperties'."),
             }));
    JobXml::TunerProperties document;
    document.SetValidate(false);
    QVERIFY(document.SetXmlString(QString::fromUtf8(xml), false));
    QCOMPARE(document.GetComponent()[0].GetNode()[0].Getid(), QStringLiteral("n"));
}

void XmlProblemsTest::anUndeclaredPrefixOfTheRootIsAProblem()
{
    const QByteArray xml = "<p:TunerProperties Version=\"1.1\"><a/></p:TunerProperties>";
    const QVector<XmlProblem> problems = problemsOf(xml);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(problems[0].message, QStringLiteral("Namespace prefix 'p' not declared"));
    JobXml::TunerProperties document;
    QVERIFY(!document.SetXmlString(QString::fromUtf8(xml), false));
}

TEST_SUITE(XmlProblemsTest)
#include "tst_XmlProblems.moc"
