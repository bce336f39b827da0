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
    void warningAboutTheTextIsOnThePageOfXmlOnly();
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
    for (const QString &name : exampleNames()) {
        if (name != QLatin1String("ffp")) // has a warning about its text
            QTest::newRow(qPrintable(name)) << examplePath(name);
    }
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

void ToolHtmlTest::warningAboutTheTextIsOnThePageOfXmlOnly()
{
    Workshop shop;
    const QString xml = examplePath(QStringLiteral("ffp"));
    const Run fromXml = shop.run(line("show --format html") << xml);
    QCOMPARE(textsOf(fromXml.bytes, "h2").first(), QStringLiteral("No problems, 1 warning"));
    QCOMPARE(textsOf(fromXml.bytes, "a"),
             QStringList{QStringLiteral("'yes' of value is not a boolean; it is read as true; use 'true'")});
    QCOMPARE(shop.run({QStringLiteral("convert"), xml, QStringLiteral("out.tpb")}).status, 0);
    const Run fromRecords = shop.run(line("show --format html out.tpb"));
    QCOMPARE(fromRecords.status, 0);
    QCOMPARE(textsOf(fromRecords.bytes, "a"), QStringList());
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
    QCOMPARE(textsOf(run.bytes, "h2").first(), QStringLiteral("3 problems, 1 warning"));
    QCOMPARE(
        textsOf(run.bytes, "li"),
        (QStringList{QStringLiteral("Unknown Tag 'Extra' in 'TunerProperties'.line 2, column 1"),
                     QStringLiteral("Component: Please set Node properly.Component[type=t,name=n], line 3, column 1"),
                     QStringLiteral("TunerProperties: Please set baseresource properly.line 1, column 1"),
                     QStringLiteral("unknown element 'Extra' in TunerProperties; what is in it counts as if it were "
                                    "in TunerProperties; expected name, type, baseresource, connectableResources, "
                                    "quantity, parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, "
                                    "MaxFFPDelay, HRPANSupported or Component unknown-elementline 2, column 1")}));
    QCOMPARE(textsOf(run.bytes, "a"),
             (QStringList{QStringLiteral("Component: Please set Node properly."),
                          QStringLiteral("TunerProperties: Please set baseresource properly.")}));
}

void ToolHtmlTest::theWarningsOfTheFileAreShownAndCounted()
{
    const auto item = [](const char *id) -> QByteArray {
        return "\n<ValueItem><ValueNumericInt id=\"" + QByteArray(id)
            + "\" value=\"8\" min=\"0\" max=\"7\" step=\"1\"/></ValueItem>";
    };
    const QByteArray xml = "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\" extra=\"1\">"
                           "<Component type=\"t\" name=\"n\" optional=\"true\"><Node id=\"i\">"
        + item("one") + item("two") + "</Node></Component></TunerProperties>";
    const Run run = Workshop().run(line("show --format html -"), xml);
    QCOMPARE(run.status, 0);
    QCOMPARE(textsOf(run.bytes, "h2").first(), QStringLiteral("No problems, 3 warnings"));
    const auto outOfRange = [](const char *id, int lineNumber) {
        return QStringLiteral(
                   "value 8 is above max 7; use a value from 0 to 7 value-out-of-range"
                   "Component[type=t,name=n]/Node[id=i]/ValueItem[id=%1]/ValueNumericInt, line %2, column 38")
            .arg(QLatin1String(id))
            .arg(lineNumber);
    };
    const QString unknown = QStringLiteral(
        "unknown attribute 'extra' of TunerProperties; it is ignored; expected name, type, baseresource, "
        "connectableResources, quantity, parentBaseResource or hwProcessing unknown-attributeline 1, column 60");
    QCOMPARE(textsOf(run.bytes, "li"), (QStringList{unknown, outOfRange("one", 2), outOfRange("two", 3)}));
    // As many as the option says, and the number of all.
    const Run two = Workshop().run(line("show --format html --max-problems 2 -"), xml);
    QCOMPARE(textsOf(two.bytes, "h2").first(), QStringLiteral("No problems, 3 warnings"));
    QCOMPARE(textsOf(two.bytes, "li"), (QStringList{unknown, outOfRange("one", 2)}));
    // The same findings as those of 'lint'.
    const QStringList linted = Workshop().run(line("lint -"), xml).out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(linted.size(), 3);
    QCOMPARE(linted[2],
             QStringLiteral("-:3:38: Component[type=t,name=n]/Node[id=i]/ValueItem[id=two]/"
                            "ValueNumericInt/value: value 8 is above max 7; use a value from 0 to 7 "
                            "[value-out-of-range]"));
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
