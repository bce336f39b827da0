// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Alternatives of an item that are set although another one is chosen: paths lead to them as lint() prints them.
class UnchosenAlternativesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pathOfAFindingLeadsToTheAlternative();
    void alternativeWithoutDataIsNotFound();
    void omittedStepIsTheChosenAlternative();
    void everyMemberThatIsSetIsListed();
    void patternsMatchThemByNameAndByAsterisk_data();
    void patternsMatchThemByNameAndByAsterisk();
    void pathGoesOnIntoThem();
    void programChangesAValueAndTheChoiceStays();
    void editsKeepTheChoice_data();
    void editsKeepTheChoice();
    void dataThatAreNotSetAreFoundInJson();
};

namespace {

const QString item = QStringLiteral("Component/Node/ValueItem");

/// The ValueItem has a ValueInt, and has chosen the ValueString.
QByteArray xml(const QByteArray &alternatives)
{
    return R"(<TunerProperties Version="1.1"><Component type="A" name="a" optional="false"><Node id="n"><ValueItem>)"
        + alternatives + "</ValueItem></Node></Component></TunerProperties>";
}

QByteArray json(const QByteArray &members)
{
    return R"({"TunerProperties": {"Version": "1.1", "Component": [{"type": "A", "name": "a", "optional": false, )"
           R"("Node": [{"id": "n", "ValueItem": [{)"
        + members + "}]}]}]}}";
}

const QByteArray both = R"(<ValueInt id="i6" value="12"/><ValueString id="both" value="s"/>)";
const QByteArray bothInJson =
    R"("ChoiceValueItem": "ValueString", "ValueInt": {"id": "i6", "value": 12}, "ValueString": {"id": "both"})";

Document read(const QByteArray &text)
{
    return Document::fromBytes(text, QStringLiteral("d"));
}

QString errorOf(const TunerProperties &tuner, const QString &path)
{
    try {
        return QStringLiteral("found: ") + Paths::find(tuner, path).path;
    } catch (const PathFailure &failure) {
        return failure.text();
    }
}

} // namespace

void UnchosenAlternativesTest::pathOfAFindingLeadsToTheAlternative()
{
    const Document document = read(xml(both));
    QStringList paths;
    lint(document, [&](const Finding &finding) { paths.append(finding.place()); });
    QCOMPARE(paths, QStringList{QStringLiteral("Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/ValueInt")});
    const Paths::Target target = Paths::find(document.tuner, paths.first() + QStringLiteral("/value"));
    QCOMPARE(target.path, paths.first() + QStringLiteral("/value"));
    QCOMPARE(TypedValue::print(target.member.GetValue()), QStringLiteral("12"));
}

void UnchosenAlternativesTest::alternativeWithoutDataIsNotFound()
{
    const Document document = read(xml(both));
    QCOMPARE(errorOf(document.tuner, item + QStringLiteral("/ValueFloat")),
             QStringLiteral("Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/ValueFloat: the item holds a "
                            "ValueString"));
    QCOMPARE(errorOf(read(xml(QByteArray())).tuner, item + QStringLiteral("/ValueFloat")),
             QStringLiteral("Component[type=A,name=a]/Node[id=n]/ValueItem[1]/ValueFloat: the item has no value"));
}

void UnchosenAlternativesTest::omittedStepIsTheChosenAlternative()
{
    const Document document = read(xml(both));
    QCOMPARE(errorOf(document.tuner, item + QStringLiteral("/id")),
             QStringLiteral("found: Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/ValueString/id"));
    // What only the other one has.
    const Document range = read(xml(R"(<ValueInt id="i" min="1"/><ValueString id="both"/>)"));
    QVERIFY(errorOf(range.tuner, item + QStringLiteral("/min"))
                .startsWith(QLatin1String("Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/min: unknown member "
                                          "'min' of ValueString; ")));
    QVERIFY(Paths::findAll(range.tuner, Path::parse(item + QStringLiteral("/min"))).isEmpty());
}

void UnchosenAlternativesTest::everyMemberThatIsSetIsListed()
{
    const Document document = read(xml(both));
    QStringList paths;
    Paths::list(document.tuner, [&](const QString &path, const JobXml::MemberView &) {
        if (path.contains(QLatin1String("ValueItem")))
            paths.append(path.section(QLatin1Char('/'), 2));
        QCOMPARE(errorOf(document.tuner, path), QStringLiteral("found: ") + path);
    });
    QCOMPARE(paths,
             (QStringList{QStringLiteral("ValueItem[id=both]/ChoiceValueItem"),
                          QStringLiteral("ValueItem[id=both]/ValueInt/id"),
                          QStringLiteral("ValueItem[id=both]/ValueInt/value"),
                          QStringLiteral("ValueItem[id=both]/ValueString/id"),
                          QStringLiteral("ValueItem[id=both]/ValueString/value")}));
    QStringList objects;
    Paths::listAll(document.tuner, [&](const Paths::Target &target) {
        if (target.isItem() || target.member.GetKind() == JobXml::MemberKind::Alternative)
            objects.append(target.path.section(QLatin1Char('/'), 2));
    });
    QCOMPARE(objects.mid(2),
             (QStringList{QStringLiteral("ValueItem[id=both]"), QStringLiteral("ValueItem[id=both]/ValueInt"),
                          QStringLiteral("ValueItem[id=both]/ValueString")}));
}

void UnchosenAlternativesTest::patternsMatchThemByNameAndByAsterisk_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("ends");

    QTest::newRow("name") << QStringLiteral("Component[*]/Node[*]/ValueItem[*]/ValueInt/value")
                          << QStringList{QStringLiteral("ValueInt/value")};
    QTest::newRow("asterisk") << QStringLiteral("Component[*]/Node[*]/ValueItem[*]/*/value")
                              << QStringList{QStringLiteral("ValueInt/value"), QStringLiteral("ValueString/value")};
    QTest::newRow("no step") << QStringLiteral("Component[*]/Node[*]/ValueItem[*]/value")
                             << QStringList{QStringLiteral("ValueString/value")};
    QTest::newRow("not set") << QStringLiteral("Component[*]/Node[*]/ValueItem[*]/ValueFloat") << QStringList{};
}

void UnchosenAlternativesTest::patternsMatchThemByNameAndByAsterisk()
{
    QFETCH(QString, pattern);
    QFETCH(QStringList, ends);
    const Document document = read(xml(both));
    QStringList found;
    const QVector<Paths::Target> targets = Paths::findAll(document.tuner, Path::parse(pattern));
    for (const Paths::Target &target : targets)
        found.append(target.path.section(QLatin1Char('/'), 3));
    QCOMPARE(found, ends);
}

void UnchosenAlternativesTest::pathGoesOnIntoThem()
{
    const Document document = read(xml(both));
    const auto completed = [&](const char *beginning) {
        QStringList ends;
        const QStringList all = Paths::completions(document.tuner, item + QLatin1String(beginning));
        for (const QString &path : all)
            ends.append(path.mid(item.size()));
        return ends.join(QLatin1Char(' '));
    };
    QCOMPARE(completed("/Value"), QStringLiteral("/ValueInt/ /ValueString/"));
    QCOMPARE(completed("/ValueInt/"), QStringLiteral("/ValueInt/id /ValueInt/value"));
}

void UnchosenAlternativesTest::programChangesAValueAndTheChoiceStays()
{
    TunerProperties tuner = read(xml(both)).tuner;
    const Paths::Target target = Paths::find(tuner, item + QStringLiteral("/ValueInt/value"));
    Paths::edit(tuner, target, [](JobXml::MemberEditor &member) { QVERIFY(member.SetValue(13)); });
    QCOMPARE(Paths::find(tuner, item + QStringLiteral("/ValueInt/value")).member.GetValue().toInt(), 13);
    QCOMPARE(errorOf(tuner, item + QStringLiteral("/value")),
             QStringLiteral("found: Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/ValueString/value"));
}

void UnchosenAlternativesTest::editsKeepTheChoice_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QByteArray>("after");

    const auto row = [](const char *name, const QByteArray &before, const char *operation, const QByteArray &after) {
        QTest::newRow(name) << before << QString::fromUtf8(operation) << after;
    };
    row("value", xml(both), "set ValueInt/value 13", xml(QByteArray(both).replace("12", "13")));
    row("value that was not set", xml(R"(<ValueInt id="i"/><ValueString id="b"/>)"), "set ValueInt/value 13",
        xml(R"(<ValueInt id="i" value="13"/><ValueString id="b"/>)"));
    row("text", xml(both), "set ValueInt/id j", xml(QByteArray(both).replace("i6", "j")));
    row("unset value", xml(both), "unset ValueInt/value", xml(QByteArray(both).replace(" value=\"12\"", "")));
    row("unset", xml(both), "unset ValueInt", xml(R"(<ValueString id="both" value="s"/>)"));
    row("remove", xml(both), "remove ValueInt", xml(R"(<ValueString id="both" value="s"/>)"));
    row("remove value", xml(both), "remove ValueInt/value", xml(QByteArray(both).replace(" value=\"12\"", "")));
    row("remove the chosen one", xml(both), "remove ValueString", xml(R"(<ValueInt id="i6" value="12"/>)"));
    row("unset the chosen one", xml(both), "unset ValueString", xml(R"(<ValueInt id="i6" value="12"/>)"));
    row("remove both", xml(both), "remove ValueInt ValueString", xml(QByteArray()));
    row("remove both, the chosen one first", xml(both), "remove ValueString ValueInt", xml(QByteArray()));
    row("remove the chosen one of three", xml("<ValueFloat id='f'/>" + both), "remove ValueString", xml(QByteArray()));
    row("remove two of three", xml("<ValueFloat id='f'/>" + both), "remove ValueInt ValueString",
        xml("<ValueFloat id='f'/>"));
    row("one of three", xml("<ValueFloat id='f'/>" + both), "remove ValueInt",
        xml(R"(<ValueFloat id='f'/><ValueString id="both" value="s"/>)"));

    const QByteArray json1 = json(bothInJson);
    row("value in JSON", json1, "set ValueInt/value 13", QByteArray(json1).replace("12", "13"));
    row("unset value in JSON", json1, "unset ValueInt/value", QByteArray(json1).replace(", \"value\": 12", ""));
    row("unset in JSON", json1, "unset ValueInt",
        json(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "both"})"));
    row("remove the chosen one in JSON", json1, "remove ValueString",
        json(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i6", "value": 12})"));
    row("unset the chosen one in JSON", json1, "unset ValueString",
        json(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i6", "value": 12})"));
    row("remove in JSON", json1, "remove ValueInt",
        json(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "both"})"));
    const QByteArray none = json(R"("ChoiceValueItem": null, "ValueInt": {"id": "i", "value": 12})");
    row("nothing is chosen", none, "set ValueInt/value 13", QByteArray(none).replace("12", "13"));
    row("data that are not set",
        json(R"("ValueString": {"id": "both"}, "unset": {"ValueInt": {"id": "i", "value": 12}})"),
        "set ValueInt/value 13",
        json(
            R"("ChoiceValueItem": "ValueString", "ValueInt": {"id": "i", "value": 13}, "ValueString": {"id": "both"})"));
    row("removed data that are not set",
        json(R"("ValueString": {"id": "both"}, "unset": {"ValueInt": {"id": "i", "value": 12}})"), "remove ValueInt",
        json(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "both"})"));
}

void UnchosenAlternativesTest::editsKeepTheChoice()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, operation);
    QFETCH(QByteArray, after);
    const QStringList words = operation.split(QLatin1Char(' '));
    QStringList paths;
    for (const QString &word : words.mid(1))
        paths.append(item + QLatin1Char('/') + word);
    Editor editor(read(before), before, QStringLiteral("d"));
    if (words.at(0) == QLatin1String("set"))
        editor.set(paths.first(), words.at(2));
    else if (words.at(0) == QLatin1String("unset"))
        editor.unset(paths.first());
    else
        editor.remove(paths);
    QCOMPARE(editor.toBytes(), after);
    const auto choiceOf = [](const TunerProperties &tuner) {
        return Paths::find(tuner, item + QStringLiteral("/ChoiceValueItem")).member.GetValue().toString();
    };
    QCOMPARE(choiceOf(editor.document().tuner), choiceOf(read(after).tuner));
}

// Only programs and snapshots leave such data; JSON has them in "unset".
void UnchosenAlternativesTest::dataThatAreNotSetAreFoundInJson()
{
    const QByteArray text = json(R"("ValueString": {"id": "both"}, "unset": {"ValueInt": {"id": "i", "value": 12}})");
    const Document document = read(text);
    QStringList paths;
    lint(document, [&](const Finding &finding) { paths.append(finding.place()); });
    QCOMPARE(paths, QStringList{QStringLiteral("Component[type=A,name=a]/Node[id=n]/ValueItem[id=both]/ValueInt")});
    const Paths::Target target = Paths::find(document.tuner, paths.first());
    QVERIFY(!target.member.IsSet());
    QVERIFY(Paths::findAll(document.tuner, Path::parse(paths.first())).isEmpty()); // only what is set
}

TEST_SUITE(UnchosenAlternativesTest)
#include "tst_UnchosenAlternatives.moc"
