// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Path.h>

#include "documents/RandomChanges.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;
using Paths::Completing;

/// How paths go on whose beginning has been typed.
class CompletionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pathGoesOnByOneStep_data();
    void pathGoesOnByOneStep();
    void assignmentGoesOnToItsValue_data();
    void assignmentGoesOnToItsValue();
    void assignmentHasAPathAndAValue_data();
    void assignmentHasAPathAndAValue();
    void everyListedPathIsReachedStepByStep();
    void manyObjectsBelowAStepAreNotListed();
};

namespace {

const TunerProperties &document()
{
    static const TunerProperties loaded =
        Document::fromBytes(
            R"(<TunerProperties Version="1.1" name="N"><StartupModes><StartupMode>DF</StartupMode></StartupModes>
           <Component type="A" name="one" optional="true">
             <Node id="gain"><ValueItem><ValueInt id="i" value="1"/></ValueItem>
               <ValueItem><ValueString id="a/b" value="dB"/></ValueItem></Node>
             <Node id="mode"/></Component>
           <Component type="A" name="two"><Node id="gain"/><Node id="gain"/></Component>
           <Component type="B" name="two"/></TunerProperties>)",
            QStringLiteral("d.xml"))
            .tuner;
    return loaded;
}

QString joined(const QString &beginning, Completing what)
{
    return Paths::completions(document(), beginning, what).join(QLatin1Char(' '));
}

/// Adds rows of a beginning and what completes it; a "~" in this is the beginning up to its last step.
auto columns()
{
    QTest::addColumn<QString>("beginning");
    QTest::addColumn<QString>("expected");
    return [](const char *start, const char *rest, const char *expected) {
        const QString beginning = QString::fromUtf8(start) + QString::fromUtf8(rest);
        QTest::newRow(qPrintable(QLatin1Char('<') + beginning))
            << beginning << QString::fromUtf8(expected).replace(QLatin1Char('~'), QString::fromUtf8(start));
    };
}

} // namespace

void CompletionsTest::pathGoesOnByOneStep_data()
{
    const auto row = columns();
    row("", "",
        "name StartupModes/ Component[type=A,name=one]/ Component[type=A,name=two]/ Component[type=B,name=two]/");
    row("", "n", "name");
    row("", "name", "name");
    row("", "quantity", ""); // is not set
    row("", "Star", "StartupModes/");
    row("StartupModes/", "", "~StartupMode");
    row("", "Component[type=B", "Component[type=B,name=two]/");
    row("", "Component[type=A,name=one]", "Component[type=A,name=one]/");
    // Other notations, as far as the usual one does not fit.
    row("", "Component[n", "Component[name=one]/ Component[name=two][1]/ Component[name=two][2]/");
    row("", "Component[2", "Component[2]/");
    row("", "Component[x", "");
    row("Component[name=one]/", "", "~type ~name ~optional ~Node[id=gain]/ ~Node[id=mode]/");
    row("Component[3]/", "", "~type ~name");
    row("Component[2]/", "No", "~Node[id=gain][1]/ ~Node[id=gain][2]/");
    row("Component[1]/Node[id=gain]/", "", "~id ~ValueItem[id=i]/ ~ValueItem[id=\"a/b\"]/");
    row("Component[1]/Node[id=gain]/", "ValueItem[id=\"a/", "~ValueItem[id=\"a/b\"]/");
    row("Component[1]/Node[id=gain]/ValueItem[id=\"a/b\"]/", "", "~ChoiceValueItem ~ValueString/");
    row("Component[1]/Node[id=gain]/ValueItem[1]/", "v", "~value");
    row("Component[1]/Node[id=gain]/ValueItem[1]/ValueInt/", "", "~id ~value");
    // Nothing goes on from here.
    for (const char *wrong :
         {"/", "name/", "name=", "Component/", "Component[", "Component[name=two]/", "Component[*]/", "Node",
          "Component[1]/Node[id=none]/", "Component[1]//", "]", "\"", "Component[\"", "*"})
        row(wrong, "",
            qstrcmp(wrong, "Component[") == 0
                ? "Component[type=A,name=one]/ Component[type=A,name=two]/ Component[type=B,name=two]/"
                : "");
}

void CompletionsTest::pathGoesOnByOneStep()
{
    QFETCH(QString, beginning);
    QFETCH(QString, expected);
    QCOMPARE(joined(beginning, Completing::Path), expected);
}

void CompletionsTest::assignmentGoesOnToItsValue_data()
{
    const auto row = columns();
    row("", "q", "quantity="); // although it is not set
    row("", "Comp", "Component[type=A,name=one]/ Component[type=A,name=two]/ Component[type=B,name=two]/");
    row("", "type=", "type=MCP type=SCP type=FFP type=Receiver type=DirectionFinder");
    row("", "type=S", "type=SCP");
    row("", "hwProcessing=", "hwProcessing=true hwProcessing=false");
    row("", "quantity=", "");
    row("", "Component[name=one]/optional=t", "Component[name=one]/optional=true");
    row("", "StartupModes/StartupMode=Scan,St",
        "StartupModes/StartupMode=Scan,Step StartupModes/StartupMode=Scan,Stop");
    row("", "Component[1]/Node[1]/ValueItem[1]/ChoiceValueItem=ValueB",
        "Component[1]/Node[1]/ValueItem[1]/ChoiceValueItem=ValueBoolean");
    row("Component[1]/Node[1]/ValueItem[1]/", "v", "~value=");
    row("", "nothing=", "");
    row("", "=", "");
}

void CompletionsTest::assignmentGoesOnToItsValue()
{
    QFETCH(QString, beginning);
    QFETCH(QString, expected);
    QCOMPARE(joined(beginning, Completing::Assignment), expected);
}

void CompletionsTest::assignmentHasAPathAndAValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path"); // null if it is not an assignment
    QTest::addColumn<QString>("value");
    const auto add = [](const char *text, const char *path, const char *value) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(path) << QString::fromUtf8(value);
    };
    add("quantity=2", "quantity", "2");
    add("name=", "name", "");
    add("name=a=b", "name", "a=b");
    add("name=[a=b]", "name", "[a=b]");
    add("Component[name=Pre]/optional=true", "Component[name=Pre]/optional", "true");
    add(R"(Component[name="a]=\"b"]/name=c)", R"(Component[name="a]=\"b"]/name)", "c");
    add("=2", "", "2");
    add("quantity", nullptr, nullptr);
    QTest::newRow("empty") << QString() << QString() << QString();
    add("Component[name=Pre]", nullptr, nullptr);
    add("Component[name=Pre", nullptr, nullptr);
    add(R"(Component[name="a]=b)", nullptr, nullptr);
}

void CompletionsTest::assignmentHasAPathAndAValue()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    QFETCH(QString, value);
    const std::optional<Paths::Assignment> assignment = Paths::assignmentIn(text);
    QCOMPARE(assignment.has_value(), !path.isNull());
    if (!assignment)
        return;
    QCOMPARE(assignment->path, path);
    QCOMPARE(assignment->value, value);
    QVERIFY(!assignment->value.isNull());
}

// Whatever a document contains, each step of its paths is among the completions of what precedes it.
void CompletionsTest::everyListedPathIsReachedStepByStep()
{
    int steps = 0;
    for (int seed = 0; seed < 30; ++seed) {
        const TunerProperties random = randomDocument(seed, seed % 7);
        Paths::list(random, [&](const QString &path, const JobXml::MemberView &) {
            QString beginning;
            const QVector<Path::Step> all = Path::parse(path).steps();
            for (int i = 0; i < all.size(); ++i) {
                const bool isLast = i + 1 == all.size();
                const QString next = Path(all.mid(0, i + 1)).text() + (isLast ? QString() : QStringLiteral("/"));
                QVERIFY2(Paths::completions(random, beginning).contains(next), qPrintable(next));
                beginning = next;
                ++steps;
            }
        });
    }
    QVERIFY(steps > 1000);
}

void CompletionsTest::manyObjectsBelowAStepAreNotListed()
{
    TunerProperties many;
    many.SetValidate(false);
    for (int i = 0; i < 2; ++i) {
        JobXml::Component component;
        component.SetValidate(false);
        component.Setname(QString::number(i));
        component.Settype(QStringLiteral("t"));
        for (int node = 0; node < 20'000; ++node) {
            JobXml::Node each;
            each.SetValidate(false);
            each.Setid(QString::number(node));
            component.AppendNode(each);
        }
        many.AppendComponent(component);
    }
    QCOMPARE(Paths::completions(many, QStringLiteral("Comp")),
             (QStringList{QStringLiteral("Component[type=t,name=0]/"), QStringLiteral("Component[type=t,name=1]/")}));
    QCOMPARE(Paths::completions(many, QStringLiteral("Component[2]/Node[id=1999")).size(), 11);
}

TEST_SUITE(CompletionsTest)
#include "tst_Completions.moc"
