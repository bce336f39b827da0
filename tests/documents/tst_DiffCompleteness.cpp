// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

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
    void manyItemsTakeLittleTime_data();
    void manyItemsTakeLittleTime();
};

namespace {

int count(const QVector<Difference> &differences, Difference::Kind kind)
{
    return int(std::count_if(differences.begin(), differences.end(),
                             [kind](const Difference &difference) { return difference.kind == kind; }));
}

QByteArray jsonOf(const TunerProperties &document)
{
    try {
        return JsonForm::compose(document);
    } catch (const JsonFailure &) {
        return QByteArray();
    }
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
