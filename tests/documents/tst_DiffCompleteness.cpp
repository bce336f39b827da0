// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include "Documents.h"
#include "Rows.h"
#include "documents/JsonOf.h"
#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"
#include <tunerdocuments/Diff.h>

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// A comparison reports every difference.
class DiffCompletenessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsWithEqualJsonHaveNoDifferences();
    void everyFlagAndEveryChoiceIsADifference();
    void differentDocumentsDiffer();
    void removedItemsAreAddedInTheOtherDirection();
    void comparingChangesNothing();
    void renamedItemsAreComparedInside_data();
    void renamedItemsAreComparedInside();
    void differencesReferToBothDocuments();
    void manyRenamedItemsTakeLittleTime_data();
    void manyRenamedItemsTakeLittleTime();
    void manyItemsTakeLittleTime_data();
    void manyItemsTakeLittleTime();
};

namespace {

int count(const QVector<Difference> &differences, Difference::Kind kind)
{
    return int(std::count_if(differences.begin(), differences.end(),
                             [kind](const Difference &difference) { return difference.kind == kind; }));
}

/// Calls the action for an object and everything below it, with its path; everything is set.
void forEachObject(const JobXml::DataObject &object, const QVector<JobXml::Step> &way,
                   const std::function<void(const JobXml::DataObject &, const QVector<JobXml::Step> &)> &action)
{
    action(object, way);
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        for (int i = 0; member.IsSet() && member.IsChosen() && i < member.GetSize(); ++i)
            forEachObject(member.GetChild(i), way + QVector<JobXml::Step>{{member.GetName(), i}}, action);
    });
}

JobXml::DataObject &objectAt(JobXml::DataObject &root, const QVector<JobXml::Step> &way)
{
    JobXml::DataObject *object = &root;
    for (const JobXml::Step &step : way) {
        JobXml::DataObject *child = nullptr;
        JobXml::visit(*object, [&](JobXml::MemberEditor &member) {
            if (member.GetName() == step.member)
                child = &member.EditChild(step.index);
        });
        object = child;
    }
    return *object;
}

} // namespace

void DiffCompletenessTest::documentsWithEqualJsonHaveNoDifferences()
{
    int same = 0;
    int different = 0;
    for (int seed = 0; seed < 600; ++seed) {
        const TunerProperties first = randomDocument(seed, seed % 7);
        TunerProperties second = first;
        second.SetValidate(false);
        RandomChanges random{quint32(seed) + 1000};
        for (int i = 1 + seed % 3; i > 0; --i)
            random.change(second);
        const QByteArray firstJson = jsonOf(first);
        const QByteArray secondJson = jsonOf(second);
        if (firstJson.isEmpty() || secondJson.isEmpty())
            continue; // JSON cannot carry it
        const QVector<Difference> differences = findDifferences(first, second);
        QVERIFY2(differences.isEmpty() == (firstJson == secondJson), qPrintable(QString::number(seed)));
        ++(differences.isEmpty() ? same : different);
    }
    QVERIFY(same > 20);
    QVERIFY(different > 300);
}

// Nothing else changes, so this must be the only difference.
void DiffCompletenessTest::everyFlagAndEveryChoiceIsADifference()
{
    int reported = 0;
    for (int seed = 0; seed < 300 && reported < 500; seed += 3) {
        const TunerProperties first = randomDocument(seed); // by the setters' rules
        const QByteArray firstJson = jsonOf(first);
        if (firstJson.isEmpty())
            continue; // JSON cannot carry it
        forEachObject(first, {}, [&](const JobXml::DataObject &object, const QVector<JobXml::Step> &way) {
            JobXml::visit(object, [&](const JobXml::MemberView &view) {
                TunerProperties second = first;
                JobXml::visit(objectAt(second, way), [&](JobXml::MemberEditor &member) {
                    if (member.GetName() != view.GetName())
                        return;
                    member.SetFlag(!view.IsSet());
                    if (member.GetKind() == JobXml::MemberKind::Choice)
                        QVERIFY(member.SetValue(QString()));
                });
                const QVector<Difference> differences = findDifferences(first, second);
                QVERIFY2(differences.isEmpty() == (jsonOf(second) == firstJson), view.GetName().data());
                reported += differences.isEmpty() ? 0 : 1;
            });
        });
    }
    QVERIFY(reported >= 500);
}

void DiffCompletenessTest::differentDocumentsDiffer()
{
    for (int seed = 0; seed < 200; ++seed) {
        const TunerProperties first = randomDocument(seed);
        const TunerProperties second = randomDocument(seed + 1);
        const QByteArray json = jsonOf(first);
        if (!json.isEmpty())
            QCOMPARE(findDifferences(first, second).isEmpty(), json == jsonOf(second));
    }
}

void DiffCompletenessTest::removedItemsAreAddedInTheOtherDirection()
{
    for (int seed = 0; seed < 100; ++seed) {
        const TunerProperties first = randomDocument(seed);
        TunerProperties second = first;
        RandomChanges random{quint32(seed)};
        for (int i = 0; i < 5; ++i)
            random.change(second);
        const auto forth = findDifferences(first, second);
        const auto back = findDifferences(second, first);
        QCOMPARE(count(back, Difference::Added), count(forth, Difference::Removed));
        QCOMPARE(count(back, Difference::Removed), count(forth, Difference::Added));
        QCOMPARE(count(back, Difference::Changed), count(forth, Difference::Changed));
        QCOMPARE(count(back, Difference::Moved), count(forth, Difference::Moved));
        QCOMPARE(count(back, Difference::Renamed), count(forth, Difference::Renamed));
    }
}

void DiffCompletenessTest::comparingChangesNothing()
{
    const TunerProperties first = randomDocument(1, 20);
    const TunerProperties second = randomDocument(2, 20);
    const QByteArray before = snapshotOf(first) + snapshotOf(second);
    findDifferences(first, second);
    QCOMPARE(snapshotOf(first) + snapshotOf(second), before);
}

void DiffCompletenessTest::manyItemsTakeLittleTime_data()
{
    QTest::addColumn<bool>("haveIdentity");
    QTest::newRow("nodes with an id") << true;
    QTest::newRow("nodes without an id") << false;
}

void DiffCompletenessTest::renamedItemsAreComparedInside_data()
{
    const Rows<QByteArray, QByteArray, QString> row("first", "second", "text");
    const auto component = [](const char *name, const QByteArray &members) {
        return R"("Component": [{"type": "t", "name": ")" + QByteArray(name) + "\", " + members + "}]";
    };
    const auto item = [](const char *id, const char *kind, const QByteArray &members) {
        return R"("Node": [{"id": "n", "ValueItem": [{"ChoiceValueItem": ")" + QByteArray(kind) + R"(", ")" + kind
            + R"(": {"id": ")" + id + "\", " + members + "}}]}]";
    };
    row("a component", component("c", R"("displayName": "d", "optional": true, "Node": [{"id": "n"}])"),
        component("e", R"("displayName": "d", "optional": false, "Node": [{"id": "n"}])"),
        "~ Component[type=t,name=c]: renamed to Component[type=t,name=e]\n"
        "~ Component[type=t,name=c]/optional: true -> false\n");
    row("a value", component("c", item("i", "ValueNumericInt", R"("value": 1, "min": 0, "max": 9)")),
        component("c", item("j", "ValueNumericInt", R"("value": 2, "min": 0, "max": 9)")),
        "~ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: renamed to ValueItem[id=j]\n"
        "~ Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueNumericInt/value: 1 -> 2\n");
    row("another kind of value", component("c", item("i", "ValueInt", R"("value": 1)")),
        component("c", item("j", "ValueInt64", R"("value": 1)")),
        "- Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: ValueInt value 1\n"
        "+ Component[type=t,name=c]/Node[id=n]/ValueItem[id=j] (at 1): ValueInt64 value 1\n");
    row("half of the content", component("c", item("i", "ValueInt", R"("value": 1)")),
        component("c", item("j", "ValueInt", R"("value": 2)")),
        "- Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: ValueInt value 1\n"
        "+ Component[type=t,name=c]/Node[id=n]/ValueItem[id=j] (at 1): ValueInt value 2\n");
    row("no content", R"("BandwidthSelection": [{"Name": "a"}])", R"("BandwidthSelection": [{"Name": "b"}])",
        "- BandwidthSelection[Name=a]\n"
        "+ BandwidthSelection[Name=b] (at 1)\n");
    row("renamed and moved",
        R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}, {"Name": "b"}, {"Name": "c"}])",
        R"("BandwidthSelection": [{"Name": "b"}, {"Name": "c"}, {"Name": "d", "MaxBandwidth": 1.0}])",
        "> BandwidthSelection[Name=a]: moved from 1 to 3\n"
        "~ BandwidthSelection[Name=a]: renamed to BandwidthSelection[Name=d]\n");
    row("the most similar one", R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 2.0}, {"Name": "c", "MaxBandwidth": 1.0}])",
        "+ BandwidthSelection[Name=b] (at 1): MaxBandwidth 2\n"
        "~ BandwidthSelection[Name=a]: renamed to BandwidthSelection[Name=c]\n");
}

void DiffCompletenessTest::renamedItemsAreComparedInside()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QString, text);
    QString found;
    findDifferences(documentOf(first), documentOf(second),
                    [&](const Difference &difference) { found += difference.text() + QLatin1Char('\n'); });
    QCOMPARE(found, text);
}

// For programs: steps, kinds, values and objects of both sides.
void DiffCompletenessTest::differencesReferToBothDocuments()
{
    const TunerProperties first =
        documentOf(R"("quantity": 1, "BandwidthSelection": [{"Name": "a"}, {"Name": "b", "MaxBandwidth": 1.0}])");
    const TunerProperties second = documentOf(
        R"("unset": {"quantity": 2}, "BandwidthSelection": [{"Name": "b", "MaxBandwidth": 2.0}, {"Name": "c"}])");
    const QVector<Difference> differences = findDifferences(first, second);
    QCOMPARE(differences.size(), 4);
    const Difference &quantity = differences[0];
    QCOMPARE(quantity.kind, Difference::Changed);
    QCOMPARE(quantity.first.member->GetValue(), QVariant(1));
    QVERIFY(quantity.first.member->IsSet());
    QCOMPARE(quantity.second.member->GetValue(), QVariant(2));
    QVERIFY(!quantity.second.member->IsSet());
    QCOMPARE(quantity.first.steps.size(), 1);
    QCOMPARE(quantity.first.position(), -1);
    QVERIFY(!quantity.first.object());
    const Difference &removed = differences[1];
    QCOMPARE(removed.kind, Difference::Removed);
    QCOMPARE(removed.first.position(), 0);
    QCOMPARE(removed.first.object(), &std::as_const(first).GetBandwidthSelection().at(0));
    QVERIFY(!removed.second.isThere());
    const Difference &bandwidth = differences[2];
    QCOMPARE(bandwidth.first.steps.first().index, 1);
    QCOMPARE(bandwidth.second.steps.first().index, 0);
    QCOMPARE(bandwidth.second.steps.last().member, QStringLiteral("MaxBandwidth"));
    const Difference &added = differences[3];
    QCOMPARE(added.kind, Difference::Added);
    QCOMPARE(added.second.position(), 1);
    QCOMPARE(added.second.object(), &std::as_const(second).GetBandwidthSelection().at(1));
    QVERIFY(!added.first.isThere() && !added.first.object());
}

void DiffCompletenessTest::manyRenamedItemsTakeLittleTime_data()
{
    QTest::addColumn<bool>("areAlike");
    QTest::newRow("with values of their own") << false;
    QTest::newRow("all with the same values") << true;
}

// As below; the values differ in a third of the items, so that their content is similar and not equal.
void DiffCompletenessTest::manyRenamedItemsTakeLittleTime()
{
    QFETCH(bool, areAlike);
    constexpr int items = 10000;
    const auto withNames = [&](const QString &name, int changed) {
        JobXml::Node node;
        node.SetValidate(false);
        for (int i = 0; i < items; ++i) {
            JobXml::ValueNumericInt number;
            number.SetValidate(false);
            number.Setid(name.arg(i));
            number.Setmin(areAlike ? 1 : i);
            number.Setmax(areAlike ? 2 : items + i);
            number.Setvalue(i % 3 == 0 ? changed : 3);
            JobXml::ValueItem item;
            item.SetValueNumericInt(number);
            node.AppendValueItem(item);
        }
        return aDocumentWith(node);
    };
    const QVector<Difference> differences =
        findDifferences(withNames(QStringLiteral("a%1"), 4), withNames(QStringLiteral("b%1"), areAlike ? 4 : 5));
    QCOMPARE(count(differences, Difference::Renamed), items);
    QCOMPARE(differences.size(), areAlike ? items : items + (items + 2) / 3);
}

// Comparing all pairs would be 100 million comparisons, and exceed the timeout of the test.
void DiffCompletenessTest::manyItemsTakeLittleTime()
{
    QFETCH(bool, haveIdentity);
    constexpr int nodes = 10000;
    TunerProperties first;
    first.SetValidate(false);
    JobXml::Component component;
    component.SetValidate(false);
    for (int i = 0; i < nodes; ++i) {
        JobXml::ValueInt value;
        value.Setvalue(i);
        JobXml::ValueItem item;
        item.SetValueInt(value);
        JobXml::Node node;
        node.SetValidate(false);
        if (haveIdentity)
            node.Setid(QString::number(i));
        node.AppendValueItem(item);
        component.AppendNode(node);
    }
    first.AppendComponent(component);
    TunerProperties second = first;
    QVector<JobXml::Node> &all = second.GetComponent().first().GetNode();
    std::reverse(all.begin(), all.end());
    const QVector<Difference> differences = findDifferences(first, second);
    QCOMPARE(count(differences, Difference::Moved), nodes - 1);
    QCOMPARE(differences.size(), nodes - 1);
}

TEST_SUITE(DiffCompletenessTest)
#include "tst_DiffCompleteness.moc"
