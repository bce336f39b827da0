// SPDX-License-Identifier: MIT
#include <documents/XmlProblems.h>

#include <QTest>

/// What the checks of the tool do with XML that they cannot read to its end.
class XmlProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void xmlThatCannotBeReadIsAProblem_data();
    void xmlThatCannotBeReadIsAProblem();
    void wholeDocumentHasNoProblem();
};

void XmlProblemsTest::xmlThatCannotBeReadIsAProblem_data()
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

void XmlProblemsTest::xmlThatCannotBeReadIsAProblem()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, problem);
    const auto text = [](const XmlProblem &found) {
        return QStringLiteral("%1:%2: ").arg(found.line).arg(found.column) + found.message;
    };
    const QVector<XmlProblem> problems = findXmlProblems(xml);
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
    QVERIFY(findXmlProblems(xml).isEmpty());
}

QTEST_GUILESS_MAIN(XmlProblemsTest)
#include "tst_XmlProblems.moc"
