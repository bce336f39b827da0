// SPDX-License-Identifier: MIT
#include "documents/html/PageTree.h"
#include "tools/Tool.h"

/// The page that the tool writes.
class ToolHtmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormProducesTheSamePage_data();
    void everyFormProducesTheSamePage();
    void thePageIsNamedAfterItsDocument();
    void theProblemsOfTheFileAreShown();
    void theWarningsOfTheFileAreShownAndCounted();
    void treeIsTheDefaultFormat();
};

namespace {

QStringList textsOf(const QByteArray &page, const char *tag)
{
    QStringList texts;
    const PageTree tree(page);
    for (const PageNode *node : tree.root().allTagged(tag))
        texts.append(node->wholeText());
    return texts;
}

} // namespace

void ToolHtmlTest::everyFormProducesTheSamePage_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << examplePath(name);
}

void ToolHtmlTest::everyFormProducesTheSamePage()
{
    QFETCH(QString, path);
    Workshop shop;
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray xml = file.readAll();
    const Run fromXml = shop.run(line("show --format html -"), xml);
    QCOMPARE(fromXml.err, QString());
    QCOMPARE(fromXml.status, 0);
    QVERIFY(fromXml.bytes.startsWith("<!DOCTYPE html>\n<html "));
    QCOMPARE(PageTree(fromXml.bytes).error(), QString());
    for (const char *name : {"out.tpb", "out.tpz", "out.tps"}) {
        const QString out = QString::fromUtf8(name);
        QCOMPARE(shop.run({QStringLiteral("convert"), path, out}).status, 0);
        const Run run = shop.run(line("show --format html") << out);
        QCOMPARE(run.status, 0);
        QByteArray page = run.bytes;
        QCOMPARE(page.replace(name, "standard input"), fromXml.bytes);
    }
}

void ToolHtmlTest::thePageIsNamedAfterItsDocument()
{
    Workshop shop;
    shop.write(QStringLiteral("a<b>.xml"), "<TunerProperties Version=\"1.1\" name=\"The &lt;name&gt;\"/>");
    const Run named = shop.run(line("show --format html a<b>.xml"));
    QCOMPARE(textsOf(named.bytes, "title"), QStringList{QStringLiteral("The <name>")});
    shop.write(QStringLiteral("none.xml"), "<TunerProperties Version=\"1.1\"/>");
    const Run unnamed =
        shop.run({QStringLiteral("show"), QStringLiteral("--format=html"), shop.path(QStringLiteral("none.xml"))});
    QCOMPARE(textsOf(unnamed.bytes, "title"), QStringList{QStringLiteral("none.xml")});
    QCOMPARE(textsOf(unnamed.bytes, "h1"), QStringList{QStringLiteral("none.xml")});
}

void ToolHtmlTest::theProblemsOfTheFileAreShown()
{
    const Run run = Workshop().run(line("show --format html -"),
                                   "<TunerProperties Version=\"1.1\" type=\"SCP\">\n<Extra/>\n"
                                   "<Component type=\"t\" name=\"n\" optional=\"true\"/></TunerProperties>");
    QCOMPARE(run.status, 0);
    QCOMPARE(textsOf(run.bytes, "h2").first(), QStringLiteral("3 problems"));
    QCOMPARE(textsOf(run.bytes, "li"),
             (QStringList{QStringLiteral("Unknown Tag 'Extra' in 'TunerProperties'.line 2, column 1"),
                          QStringLiteral("Component: Please set Node properly.Component[type=t,name=n]"),
                          QStringLiteral("TunerProperties: Please set baseresource properly.")}));
    QCOMPARE(textsOf(run.bytes, "a"),
             (QStringList{QStringLiteral("Component: Please set Node properly."),
                          QStringLiteral("TunerProperties: Please set baseresource properly.")}));
}

void ToolHtmlTest::theWarningsOfTheFileAreShownAndCounted()
{
    const QByteArray item =
        "<ValueItem><ValueNumericInt id=\"level\" value=\"8\" min=\"0\" max=\"7\" step=\"1\"/></ValueItem>";
    const QByteArray xml = "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">"
                           "<Component type=\"t\" name=\"n\" optional=\"true\"><Node id=\"i\">"
        + item + item + "</Node></Component></TunerProperties>";
    const Run run = Workshop().run(line("show --format html -"), xml);
    QCOMPARE(run.status, 0);
    QCOMPARE(textsOf(run.bytes, "h2").first(), QStringLiteral("No problems, 2 warnings"));
    const QString path = QStringLiteral("Component[type=t,name=n]/Node[id=i]/ValueItem[id=level][%1]/ValueNumericInt");
    QCOMPARE(textsOf(run.bytes, "li"),
             (QStringList{QStringLiteral("value is above max value-out-of-range") + path.arg(1),
                          QStringLiteral("value is above max value-out-of-range") + path.arg(2)}));
    // As many as the option says, and the number of all.
    const Run one = Workshop().run(line("show --format html --max-problems 1 -"), xml);
    QCOMPARE(textsOf(one.bytes, "h2").first(), QStringLiteral("No problems, 2 warnings"));
    QCOMPARE(textsOf(one.bytes, "li"),
             QStringList{QStringLiteral("value is above max value-out-of-range") + path.arg(1)});
}

void ToolHtmlTest::treeIsTheDefaultFormat()
{
    const QByteArray xml = "<TunerProperties Version=\"1.1\"/>";
    const Run tree = Workshop().run(line("show --format tree -"), xml);
    QVERIFY(tree.out.startsWith(QLatin1String("TunerProperties\n  Version: \"1.1\"\n")));
    QCOMPARE(Workshop().run(line("show -"), xml).out, tree.out);
}

TEST_SUITE(ToolHtmlTest)
#include "tst_ToolHtml.moc"
