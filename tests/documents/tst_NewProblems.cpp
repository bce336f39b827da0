// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Finding.h>

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Which problems of a changed document are new.
class NewProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void problemThatTheOriginalLacksIsNew();
    void problemThatIsNotTheFirstOfItsKindIsNew();
    void anotherProblemOfAnInvalidObjectIsNew();
    void problemThatIsThereAnywayIsNotNew();
    void problemOfAMovedObjectIsNotNew();
    void problemOfARenamedObjectIsNotNew();
    void problemInTheNodeOfARenamedObjectIsNotNew();
    void problemThatReplacesOneOfItsKindElsewhereIsNotNew();
    void asManyAreNewAsThereAreMoreOfTheKind();
    void problemsBeyondTheMostAreCounted();
    void charactersThatOnlyXmlCannotCarryDoNotCount();
    void valueWithoutANameIsShown();
    void editorReportsTheProblemsOfItsChanges();
    void editorLooksForNothingIfNoProblemIsPossible();
    void editorKeepsTheOriginal_data();
    void editorKeepsTheOriginal();
};

namespace {

const QString noFlag = QStringLiteral("f: Component[type=t,name=%1]: Component: Please set optional properly. "
                                      "Expected true or false");

/// A component that has everything but what `attributes` lacks: "name='a' optional='true'".
QByteArray component(const QByteArray &attributes)
{
    return "<Component type='t' " + attributes
        + "><Node id='n'><ValueItem><ValueInt id='i' value='7'/></ValueItem></Node></Component>";
}

QByteArray complete(const QByteArray &name)
{
    return component("name='" + name + "' optional='true'");
}

QByteArray withoutFlag(const QByteArray &name)
{
    return component("name='" + name + "'");
}

QByteArray xml(const QByteArray &components)
{
    return "<TunerProperties Version='1.1' type='SCP' baseresource='b'>" + components + "</TunerProperties>";
}

TunerProperties with(const QByteArray &components)
{
    return Document::fromBytes(xml(components), QStringLiteral("f.xml")).tuner;
}

QStringList newIn(const QByteArray &components, const QByteArray &original)
{
    return newProblems(with(original), with(components)).lines(QStringLiteral("f"));
}

} // namespace

void NewProblemsTest::problemThatTheOriginalLacksIsNew()
{
    QCOMPARE(newIn(withoutFlag("a"), complete("a")), QStringList{noFlag.arg(QStringLiteral("a"))});
    QCOMPARE(newIn(complete("a"), complete("a")), QStringList());
    QCOMPARE(newIn(complete("a"), withoutFlag("a")), QStringList());
}

void NewProblemsTest::problemThatIsNotTheFirstOfItsKindIsNew()
{
    QCOMPARE(newIn(withoutFlag("a") + withoutFlag("b"), withoutFlag("a") + complete("b")),
             QStringList{noFlag.arg(QStringLiteral("b"))});
    QCOMPARE(newIn(withoutFlag("a") + withoutFlag("b"), complete("a") + withoutFlag("b")),
             QStringList{noFlag.arg(QStringLiteral("a"))});
}

void NewProblemsTest::anotherProblemOfAnInvalidObjectIsNew()
{
    QCOMPARE(newIn(component(""), withoutFlag("a")),
             QStringList{QStringLiteral("f: Component[1]: Component: Please set name properly.")});
}

void NewProblemsTest::problemThatIsThereAnywayIsNotNew()
{
    QCOMPARE(newIn(withoutFlag("a"), withoutFlag("a")), QStringList());
    QCOMPARE(newIn(withoutFlag("a") + complete("b"), withoutFlag("a")), QStringList());
}

void NewProblemsTest::problemOfAMovedObjectIsNotNew()
{
    QCOMPARE(newIn(complete("b") + withoutFlag("a"), withoutFlag("a") + complete("b")), QStringList());
    // Objects without a name have only their position in their paths.
    const QByteArray nameless = component("optional='true'");
    QCOMPARE(newIn(complete("b") + nameless, nameless + complete("b")), QStringList());
}

void NewProblemsTest::problemOfARenamedObjectIsNotNew()
{
    QCOMPARE(newIn(withoutFlag("c"), withoutFlag("a")), QStringList());
}

void NewProblemsTest::problemInTheNodeOfARenamedObjectIsNotNew()
{
    const auto withoutId = [](const QByteArray &components) { return QByteArray(components).replace("id='n'", ""); };
    QCOMPARE(newIn(withoutId(complete("c")), withoutId(complete("a"))), QStringList());
    QCOMPARE(newIn(withoutId(complete("c")), complete("a")),
             QStringList{QStringLiteral("f: Component[type=t,name=c]/Node[1]: Node: Please set id properly.")});
}

void NewProblemsTest::problemThatReplacesOneOfItsKindElsewhereIsNotNew()
{
    QCOMPARE(newIn(complete("a") + withoutFlag("b"), withoutFlag("a") + complete("b")), QStringList());
}

void NewProblemsTest::asManyAreNewAsThereAreMoreOfTheKind()
{
    QCOMPARE(newIn(withoutFlag("c") + withoutFlag("d"), withoutFlag("a")),
             QStringList{noFlag.arg(QStringLiteral("c"))});
    QCOMPARE(newIn(withoutFlag("c") + withoutFlag("a") + withoutFlag("d"), withoutFlag("a") + withoutFlag("b")),
             QStringList{noFlag.arg(QStringLiteral("c"))});
}

void NewProblemsTest::problemsBeyondTheMostAreCounted()
{
    const Findings problems =
        newProblems(with(complete("a")), with(withoutFlag("a") + withoutFlag("b") + withoutFlag("c")), 2);
    QCOMPARE(problems.count(), qint64(3));
    QCOMPARE(problems.lines(QStringLiteral("f")),
             (QStringList{noFlag.arg(QStringLiteral("a")), noFlag.arg(QStringLiteral("b")),
                          QStringLiteral("f: 3 problems; only the first 2 are listed")}));
    QCOMPARE(problems.listed().first().path, QStringLiteral("Component[type=t,name=a]"));
    QCOMPARE(problems.listed().first().member, QStringLiteral("optional"));
}

void NewProblemsTest::charactersThatOnlyXmlCannotCarryDoNotCount()
{
    const TunerProperties original = with(complete("a"));
    TunerProperties changed(original);
    changed.Setname(QString(QChar(1)));
    QCOMPARE(changed.GetProblems().size(), 1);
    QVERIFY(newProblems(original, changed).isEmpty());
}

void NewProblemsTest::valueWithoutANameIsShown()
{
    // Nothing is set but type, which is that number, and base resource.
    const auto ofType = [](const QByteArray &hexadecimal) {
        const QByteArray bytes =
            QByteArray::fromHex("D000 00000006 0031002E0031 00000000" + hexadecimal + "00000002 0062");
        return Document::fromBytes(bytes, QStringLiteral("f.tps")).tuner;
    };
    QCOMPARE(newProblems(ofType("01"), ofType("07")).lines(QStringLiteral("f")),
             QStringList{QStringLiteral("f: TunerProperties: Please set type properly. '7' is out of range; expected "
                                        "MCP, SCP, FFP, Receiver or DirectionFinder")});
}

void NewProblemsTest::editorReportsTheProblemsOfItsChanges()
{
    const QByteArray bytes = xml(withoutFlag("a") + complete("b"));
    const QString name = QStringLiteral("f.xml");
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    QVERIFY(editor.newProblems().isEmpty());
    editor.move(QStringLiteral("Component[name=a]"), 2);
    QVERIFY(editor.mayCauseProblems());
    QVERIFY(editor.newProblems().isEmpty());
    editor.remove({QStringLiteral("Component[*]/Node")});
    QCOMPARE(editor.newProblems(1).lines(name),
             (QStringList{QStringLiteral("f.xml: Component[type=t,name=b]: Component: Please set Node properly."),
                          QStringLiteral("f.xml: 2 problems; only the first is listed")}));
}

void NewProblemsTest::editorLooksForNothingIfNoProblemIsPossible()
{
    const QByteArray bytes = xml(withoutFlag("a"));
    const QString name = QStringLiteral("f.xml");
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    editor.set(QStringLiteral("baseresource"), QStringLiteral("c"));
    QVERIFY(!editor.mayCauseProblems());
    QVERIFY(editor.newProblems().isEmpty());
}

void NewProblemsTest::editorKeepsTheOriginal_data()
{
    QTest::addColumn<int>("form");
    QTest::newRow("XML, in place") << int(Form::Xml);
    QTest::newRow("JSON, in place") << int(Form::Json);
    QTest::newRow("compressed records") << int(Form::Compressed);
}

void NewProblemsTest::editorKeepsTheOriginal()
{
    QFETCH(int, form);
    const Document before(with(complete("a")), Form(form));
    const QByteArray bytes = before.toBytes(before.form, QString());
    Editor editor(Document::fromBytes(bytes, QStringLiteral("f"), LoadOptions().setForm(before.form)), bytes,
                  QStringLiteral("f"));
    editor.set(QStringLiteral("baseresource"), QStringLiteral("c"));
    editor.remove({QStringLiteral("Component")});
    QVERIFY(editor.original().tuner == before.tuner);
    QVERIFY(editor.original().form == before.form);
    QVERIFY(editor.document().tuner != before.tuner);
}

TEST_SUITE(NewProblemsTest)
#include "tst_NewProblems.moc"
