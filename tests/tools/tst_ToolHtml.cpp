// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

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
    void theFindingsAreThoseOfLint();
    void treeIsTheDefaultFormat();
};

namespace {

/// Findings of the document and of its text.
const char manyFindings[] = R"(<TunerProperties Version="1.1" type="scp" baseresource="b" extra="1" quantity="x">
<Extra/>
<!-- tunerproperties-lint-disable nothing -->
<Component type="t" name="c" optional="yes"><Node id="n">
<ValueItem><ValueNumericInt id="a" value="8" min="0" max="7" step="1"/></ValueItem>
<ValueItem><ValueNumericInt id="b" value="5" min="9" max="7" step="1"/></ValueItem>
<ValueItem><ValueFloat id="c" value="0.2567"/></ValueItem>
<ValueItem><ValueFloat id="d" value="1e39"/></ValueItem>
<ValueItem><ValueInt id="a" value="1" valeu="2"/></ValueItem>
<ValueItem><ValueString id="e" value="a&#x202E;b"/></ValueItem>
</Node></Component>
<Component type="t" name="c" optional="true"/>
<BandwidthSelection Name="w"><MaxBandwidth>0</MaxBandwidth></BandwidthSelection>
</TunerProperties>
)";

/// "MESSAGE [RULE], line 3, column 1" for each finding in the list of the page.
QStringList listedOn(const QByteArray &page)
{
    QStringList texts;
    const PageTree tree(page);
    for (const PageNode *entry : tree.root().allTagged("li")) {
        static const QRegularExpression location(QStringLiteral(", line .*$"));
        const QString where = QStringLiteral(", ") + entry->children.back()->wholeText();
        const PageNode &message = *entry->children.front();
        QString text = message.allTagged("bdi").front()->wholeText();
        for (const PageNode *rule : message.allTagged("code"))
            text += QStringLiteral(" [%1]").arg(rule->wholeText());
        texts.append(text + location.match(where).captured());
    }
    return texts;
}

/// The same for each line of the tool. The JSON of the same findings has their paths, which are left out, and their
/// rules, of which `rules` receives each once.
QStringList listedIn(const QString &lines, const QByteArray &json, QStringList &rules)
{
    QStringList texts;
    const QJsonArray findings = QJsonDocument::fromJson(json).object().value(QStringLiteral("findings")).toArray();
    for (int i = 0; i < findings.size(); ++i) {
        const QJsonValue finding = findings.at(i);
        const int row = finding[QStringLiteral("line")].toInt();
        const int column = finding[QStringLiteral("column")].toInt();
        const QString path = finding[QStringLiteral("path")].toString();
        const QString start = QStringLiteral("-:%1:%2: ").arg(row).arg(column)
            + (path.isEmpty() ? QString() : path + QStringLiteral(": "));
        const QString text = lines.section(QLatin1Char('\n'), i, i);
        texts.append(text.startsWith(start)
                         ? text.mid(start.size()) + QStringLiteral(", line %1, column %2").arg(row).arg(column)
                         : text);
        const QString rule = finding[QStringLiteral("rule")].toString();
        rules.append(rule.isNull() ? QStringLiteral("a problem") : rule);
    }
    rules.removeDuplicates();
    rules.sort();
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
        (QStringList{QStringLiteral("Unknown Tag 'Extra' in 'TunerProperties'. Expected name, type, baseresource, "
                                    "connectableResources, quantity, parentBaseResource, hwProcessing, StartupModes, "
                                    "BandwidthSelection, MaxFFPDelay, HRPANSupported or Componentline 2, column 1"),
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
}

void ToolHtmlTest::theFindingsAreThoseOfLint()
{
    QStringList rules;
    const QStringList linted = listedIn(Workshop().run(line("lint -"), manyFindings).out,
                                        Workshop().run(line("lint --json -"), manyFindings).bytes, rules);
    QCOMPARE(rules.join(QLatin1Char(' ')),
             QStringLiteral("a problem bandwidth-not-positive duplicate-component duplicate-value lost-decimals "
                            "min-above-max not-a-boolean not-a-number number-out-of-range unknown-attribute "
                            "unknown-element unprintable-text useless-comment value-out-of-range"));
    QCOMPARE(linted.size(), 20);
    QCOMPARE(listedOn(Workshop().run(line("show --format html -"), manyFindings).bytes), linted);
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
