// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Path.h>

#include "Rows.h"
#include "documents/RandomChanges.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Paths as text and back, and what they select.
class PathsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pathIsPrintedAsItIsRead_data();
    void pathIsPrintedAsItIsRead();
    void quotesAreOnlyWrittenWhereTheyAreRequired();
    void pathsWithAsterisksArePatterns_data();
    void pathsWithAsterisksArePatterns();
    void wrongPatternIsRefused_data();
    void wrongPatternIsRefused();
    void patternMatchesInTheOrderOfTheDocument_data();
    void patternMatchesInTheOrderOfTheDocument();
    void patternHasNoSingleMember();
    void listNamesEveryValueThatIsSet();
    void everyListedPathFindsItsMember();
    void listOfAllNamesObjectsBeforeWhatIsInThem();
    void everyPathInTheListOfAllFindsItsTarget();
    void itemAtAPositionHasItsStepInTheList();
    void failureNamesTheItemsThatThereAre_data();
    void failureNamesTheItemsThatThereAre();
    void failureInALongListSuggestsTheNearestText_data();
    void failureInALongListSuggestsTheNearestText();
    void textsOfStepsArePathsToTheObjects();
};

namespace {

const TunerProperties &document()
{
    static const TunerProperties loaded =
        Document::fromBytes(
            R"(<TunerProperties Version="1.1" name="N"><StartupModes><StartupMode>DF</StartupMode></StartupModes>
           <BandwidthSelection><Name>w</Name></BandwidthSelection>
           <Component type="A" name="one" optional="true">
             <Node id="gain"><ValueItem><ValueInt id="i" value="1"/></ValueItem>
               <ValueItem><ValueString id="unit" value="dB"/></ValueItem></Node>
             <Node id="mode"><ValueItem><ValueInt id="m" value="2"/></ValueItem></Node></Component>
           <Component type="A" name="two"><Node id="gain"><ValueItem><ValueInt id="i" value="3"/></ValueItem></Node></Component>
           <Component type="B" name="two"/></TunerProperties>)",
            QStringLiteral("d.xml"))
            .tuner;
    return loaded;
}

QStringList matchesOf(const QString &pattern)
{
    QStringList paths;
    const QVector<Paths::Target> targets = Paths::findAll(document(), Path::parse(pattern));
    for (const Paths::Target &target : targets)
        paths.append(target.path);
    return paths;
}

} // namespace

void PathsTest::pathIsPrintedAsItIsRead_data()
{
    QTest::addColumn<QString>("path");
    for (const char *path : {"name", "Component[1]/name", "Component[type=A,name=two]/Node[id=gain][2]/ValueItem/value",
                             "Component[*]/Node[id=gain][*]/*", "BandwidthSelection[Name=\"a,b]=\\\"c\\\"\"]",
                             "Node[id=\"\"]", "Node[id=\"\\u202E\\n\"]"})
        QTest::newRow(path) << QString::fromUtf8(path);
}

void PathsTest::pathIsPrintedAsItIsRead()
{
    QFETCH(QString, path);
    const Path parsed = Path::parse(path);
    const QString printed = parsed.text();
    QCOMPARE(printed.toLower(), path.toLower()); // codes of characters may have either case
    QCOMPARE(Path(Path::parse(printed).steps()).text(), printed);
}

void PathsTest::quotesAreOnlyWrittenWhereTheyAreRequired()
{
    QCOMPARE(Path::parse(QStringLiteral("Component[type=\"A\",name=\"a b\"]")).text(),
             QStringLiteral("Component[type=A,name=a b]"));
    QCOMPARE(Path::parse(QStringLiteral("Component[name=\" a\"]")).text(), QStringLiteral("Component[name=\" a\"]"));
    QCOMPARE(Path().text(), QString());
}

void PathsTest::pathsWithAsterisksArePatterns_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isPattern");
    QTest::newRow("items") << QStringLiteral("Component[*]/name") << true;
    QTest::newRow("members") << QStringLiteral("Component[1]/*") << true;
    QTest::newRow("text") << QStringLiteral("Component[name=*]/name") << false;
    QTest::newRow("plain") << QStringLiteral("Component/name") << false;
}

void PathsTest::pathsWithAsterisksArePatterns()
{
    QFETCH(QString, path);
    QFETCH(bool, isPattern);
    QCOMPARE(Path::parse(path).isPattern(), isPattern);
}

void PathsTest::wrongPatternIsRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("why");
    QTest::newRow("twice") << QStringLiteral("Node[*][*]")
                           << QStringLiteral("unexpected '*' at character 9 of the path");
    QTest::newRow("after a position") << QStringLiteral("Node[1][*]")
                                      << QStringLiteral("unexpected '*' at character 9 of the path");
    QTest::newRow("before a position") << QStringLiteral("Node[*][1]")
                                       << QStringLiteral("unexpected second position at character 10 of the path");
    QTest::newRow("not closed") << QStringLiteral("Node[*")
                                << QStringLiteral("expected ']' at character 7 of the path");
}

void PathsTest::wrongPatternIsRefused()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    try {
        Path::parse(path);
        QFAIL("it was accepted");
    } catch (const PathFailure &failure) {
        QCOMPARE(failure.text(), why);
    }
}

void PathsTest::patternMatchesInTheOrderOfTheDocument_data()
{
    const Rows<QString, QStringList> row("pattern", "matches");
    const QString one = QStringLiteral("Component[type=A,name=one]/");
    const QString two = QStringLiteral("Component[type=A,name=two]/");
    row("name", {QStringLiteral("name")});
    row("quantity", {}); // not set
    row("Component[*]/optional", {one + QStringLiteral("optional")});
    row("Component[*]/Node[id=gain]/ValueItem/value",
        {one + QStringLiteral("Node[id=gain]/ValueItem[id=i]/ValueInt/value"),
         one + QStringLiteral("Node[id=gain]/ValueItem[id=unit]/ValueString/value"),
         two + QStringLiteral("Node[id=gain]/ValueItem[id=i]/ValueInt/value")});
    row("Component[name=two]/Node[*]/ValueItem/ValueInt/value",
        {two + QStringLiteral("Node[id=gain]/ValueItem[id=i]/ValueInt/value")});
    row("Component[type=A][2]/name", {two + QStringLiteral("name")});
    row("Component[*]",
        {QStringLiteral("Component[type=A,name=one]"), QStringLiteral("Component[type=A,name=two]"),
         QStringLiteral("Component[type=B,name=two]")});
    row("Component", {QStringLiteral("Component")});
    row("*",
        {QStringLiteral("name"), QStringLiteral("StartupModes"), QStringLiteral("BandwidthSelection"),
         QStringLiteral("Component")});
    row("Component[1]/*",
        {one + QStringLiteral("type"), one + QStringLiteral("name"), one + QStringLiteral("optional"),
         one + QStringLiteral("Node")});
    row("*/StartupMode", {QStringLiteral("StartupModes/StartupMode")});
    row("name/x", {});
    row("name[1]", {});
    row("Nothing[*]", {});
}

void PathsTest::patternMatchesInTheOrderOfTheDocument()
{
    QFETCH(QString, pattern);
    QFETCH(QStringList, matches);
    QCOMPARE(matchesOf(pattern), matches);
}

void PathsTest::patternHasNoSingleMember()
{
    for (const char *pattern : {"Component[*]/name", "*"}) {
        try {
            Paths::find(document(), QString::fromUtf8(pattern));
            QFAIL("a member was found");
        } catch (const PathFailure &failure) {
            QVERIFY2(failure.text().endsWith(QStringLiteral("a pattern does not select a single member")),
                     qPrintable(failure.text()));
        }
    }
}

void PathsTest::listNamesEveryValueThatIsSet()
{
    QStringList paths;
    Paths::list(document(), [&](const QString &path, const JobXml::MemberView &) { paths.append(path); });
    const QString one = QStringLiteral("Component[type=A,name=one]/");
    QCOMPARE(paths.mid(0, 9),
             (QStringList{QStringLiteral("name"), QStringLiteral("StartupModes/StartupMode"),
                          QStringLiteral("BandwidthSelection[Name=w]/Name"), one + QStringLiteral("type"),
                          one + QStringLiteral("name"), one + QStringLiteral("optional"),
                          one + QStringLiteral("Node[id=gain]/id"),
                          one + QStringLiteral("Node[id=gain]/ValueItem[id=i]/ChoiceValueItem"),
                          one + QStringLiteral("Node[id=gain]/ValueItem[id=i]/ValueInt/id")}));
    QCOMPARE(paths.size(), 25);
}

void PathsTest::everyListedPathFindsItsMember()
{
    int found = 0;
    for (int seed = 0; seed < 60; ++seed) {
        const TunerProperties random = randomDocument(seed, seed % 7);
        Paths::list(random, [&](const QString &path, const JobXml::MemberView &member) {
            const Paths::Target target = Paths::find(random, path);
            QCOMPARE(target.path, path);
            QCOMPARE(target.member.GetName(), member.GetName());
            QCOMPARE(target.member.GetValue().isValid(), member.GetValue().isValid());
            const QVector<Paths::Target> all = Paths::findAll(random, Path::parse(path));
            QCOMPARE(all.size(), 1);
            QCOMPARE(all.first().path, path);
            ++found;
        });
    }
    QVERIFY2(found > 1000, qPrintable(QString::number(found)));
}

void PathsTest::listOfAllNamesObjectsBeforeWhatIsInThem()
{
    QStringList paths;
    Paths::listAll(document(), [&](const Paths::Target &target) { paths.append(target.path); });
    const QString one = QStringLiteral("Component[type=A,name=one]");
    const QString item = one + QStringLiteral("/Node[id=gain]/ValueItem[id=i]");
    QCOMPARE(paths.mid(0, 14),
             (QStringList{QStringLiteral("name"), QStringLiteral("StartupModes"),
                          QStringLiteral("StartupModes/StartupMode"), QStringLiteral("BandwidthSelection[Name=w]"),
                          QStringLiteral("BandwidthSelection[Name=w]/Name"), one, one + QStringLiteral("/type"),
                          one + QStringLiteral("/name"), one + QStringLiteral("/optional"),
                          one + QStringLiteral("/Node[id=gain]"), one + QStringLiteral("/Node[id=gain]/id"), item,
                          item + QStringLiteral("/ChoiceValueItem"), item + QStringLiteral("/ValueInt")}));
    QCOMPARE(paths.last(), QStringLiteral("Component[type=B,name=two]/name"));
    QCOMPARE(paths.size(), 25 + 16); // values, objects and items
    TunerProperties empty;
    empty.SetValidate(false);
    empty.SetComponent({});
    empty.SetStartupModes({});
    paths.clear();
    Paths::listAll(empty, [&](const Paths::Target &target) { paths.append(target.path); });
    QCOMPARE(paths, (QStringList{QStringLiteral("StartupModes"), QStringLiteral("Component")}));
}

void PathsTest::everyPathInTheListOfAllFindsItsTarget()
{
    int items = 0;
    for (int seed = 0; seed < 60; ++seed) {
        const TunerProperties random = randomDocument(seed, seed % 7);
        QStringList values;
        Paths::listAll(random, [&](const Paths::Target &listed) {
            const Paths::Target target = Paths::find(random, listed.path);
            QCOMPARE(target.path, listed.path);
            QCOMPARE(target.member.GetName(), listed.member.GetName());
            QCOMPARE(target.steps.size(), listed.steps.size());
            for (int i = 0; i < target.steps.size(); ++i) {
                QCOMPARE(target.steps.at(i).member, listed.steps.at(i).member);
                QCOMPARE(target.steps.at(i).index, listed.steps.at(i).index);
            }
            items += listed.isItem();
            const JobXml::MemberKind kind = listed.member.GetKind();
            if (kind != JobXml::MemberKind::ObjectList && kind != JobXml::MemberKind::Object
                && kind != JobXml::MemberKind::Alternative)
                values.append(listed.path);
        });
        QStringList listed;
        Paths::list(random, [&](const QString &path, const JobXml::MemberView &) { listed.append(path); });
        QCOMPARE(values, listed);
    }
    QVERIFY2(items > 300, qPrintable(QString::number(items)));
}

void PathsTest::itemAtAPositionHasItsStepInTheList()
{
    int alike = 0;
    int byPosition = 0;
    const auto findItems = [&](const JobXml::DataObject &object) {
        JobXml::visit(object, [&](const JobXml::MemberView &list) {
            if (list.GetKind() != JobXml::MemberKind::ObjectList || !list.IsSet())
                return;
            const QStringList steps = Paths::stepsTo(list);
            for (int i = 0; i < list.GetSize(); ++i) {
                const QString path = QStringLiteral("%1[%2]").arg(list.GetName()).arg(i + 1);
                QCOMPARE(Paths::find(object, path).path, steps.at(i));
                const QVector<Paths::Target> all = Paths::findAll(object, Path::parse(path));
                QCOMPARE(all.size(), 1);
                QCOMPARE(all.first().path, steps.at(i));
                alike += steps.at(i).contains(QStringLiteral("]["));
                byPosition += steps.at(i) == path;
            }
        });
    };
    for (int seed = 0; seed < 200; ++seed) {
        TunerProperties random = randomDocument(seed, 5 + seed % 40);
        findItems(random);
        for (const JobXml::Component &component : qAsConst(random).GetComponent()) {
            findItems(component);
            for (const JobXml::Node &node : component.GetNode())
                findItems(node);
        }
    }
    QVERIFY2(alike > 250, qPrintable(QString::number(alike)));
    QVERIFY2(byPosition > 500, qPrintable(QString::number(byPosition)));
}

void PathsTest::failureNamesTheItemsThatThereAre_data()
{
    const Rows<QString, QString> row("path", "why");
    row("Component[name=three]",
        "there is no such Component; there are Component[type=A,name=one], Component[type=A,name=two], "
        "Component[type=B,name=two]");
    row("Component[name=two]/name",
        "2 items match; choose one: Component[type=A,name=two], Component[type=B,name=two]");
    row("Component[4]", "position 4 is out of range; only 3 match");
    row("Component[type=A][3]", "position 3 is out of range; only 2 match");
    row("Component[color=red]", "'color' does not identify a Component; use type or name");
}

void PathsTest::failureNamesTheItemsThatThereAre()
{
    QFETCH(QString, path);
    QFETCH(QString, why);
    try {
        Paths::find(document(), path);
        QFAIL("an item was found");
    } catch (const PathFailure &failure) {
        QCOMPARE(failure.text(), path.section(QLatin1Char('/'), 0, 0) + QStringLiteral(": ") + why);
    }
}

void PathsTest::failureInALongListSuggestsTheNearestText_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("hint");
    const auto row = [](const char *path, const char *hint) {
        QTest::newRow(path) << QString::fromUtf8(path) << QString::fromUtf8(hint);
    };
    row("Component[name=audoi]", "; did you mean 'audio'?");
    row("Component[type=Audio,name=audoi]", "; did you mean 'audio'?");
    row("Component[type=Aduio,name=audio]", "; did you mean 'Audio'?");
    row("Component[name=AUDIO]/Node[1]", "; did you mean 'audio'?");
    row("Component[name=something else]", "");
    row("Component[type=Audio,name=mixer1]", ""); // both texts exist
    row("Component[name=x]", ""); // every short text would be near
}

void PathsTest::failureInALongListSuggestsTheNearestText()
{
    QFETCH(QString, path);
    QFETCH(QString, hint);
    QByteArray components;
    for (int i = 1; i <= 6; ++i)
        components += "<Component type=\"Mixer\" name=\"mixer" + QByteArray::number(i) + "\"/>";
    const Document document = Document::fromBytes("<TunerProperties Version=\"1.1\">" + components
                                                      + "<Component type=\"Audio\" name=\"audio\"/>"
                                                        "<Component type=\"z\" name=\"z\"/></TunerProperties>",
                                                  QStringLiteral("d.xml"));
    try {
        Paths::find(document.tuner, path);
        QFAIL("an item was found");
    } catch (const PathFailure &failure) {
        QCOMPARE(failure.text(),
                 path.section(QLatin1Char('/'), 0, 0)
                     + QStringLiteral(": there is no such Component; there are Component[type=Mixer,name=mixer1], "
                                      "Component[type=Mixer,name=mixer2], Component[type=Mixer,name=mixer3], "
                                      "Component[type=Mixer,name=mixer4], Component[type=Mixer,name=mixer5] and 3 more")
                     + hint);
    }
}

void PathsTest::textsOfStepsArePathsToTheObjects()
{
    Paths::Texts texts(document());
    QCOMPARE(texts.of({}), QStringLiteral(""));
    QCOMPARE(texts.of({{QStringLiteral("Component"), 0}, {QStringLiteral("Node"), 1}}),
             QStringLiteral("Component[type=A,name=one]/Node[id=mode]"));
    QCOMPARE(texts.of({{QStringLiteral("Component"), 1}, {QStringLiteral("Node"), 0}}),
             QStringLiteral("Component[type=A,name=two]/Node[id=gain]"));
    QCOMPARE(texts.of({{QStringLiteral("Component"), 2}, {QStringLiteral("Node"), 7}}),
             QStringLiteral("Component[type=B,name=two]"));
    QCOMPARE(texts.of({{QStringLiteral("StartupModes"), -1}}), QStringLiteral("StartupModes"));
}

TEST_SUITE(PathsTest)
#include "tst_Paths.moc"
