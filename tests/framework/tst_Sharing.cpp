// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;

using Use = std::function<void(const TunerProperties &)>;
Q_DECLARE_METATYPE(Use)

/// Objects share their data after assignment, without any visible effect.
class SharingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assignedObjectsShareUntilOneIsUsed();
    void writingToOneSideLeavesTheOtherAsItWas();
    void aCopyIsNotSharedAtAll();
    void aReferenceHeldDuringAnAssignmentReachesBothObjects();
    void referenceHeldDuringACopyChangesOnlyTheOriginal();
    void sharedTreesHaveSeparateFlags();
    void listsThatACallerHoldsDoNotFollowTheObject();
    void listsPassedToAnObjectDoNotFollowIt();
    void everyUseDetachesAListThatACallerHolds_data();
    void everyUseDetachesAListThatACallerHolds();
    void theRoomOfAnEmptiedListIsNotSharedEither();
    void twoObjectsNeverShareAnItem();
    void twoObjectsNeverShareTheirModes();
    void equalTreesWithANaNInsideDifferEvenWhenShared();
    void constGettersSetNoFlag();
    void nonConstGettersSetTheFlag();
    void referencesToAlternativesStayValid();
    void comparingLeavesItemsInitializedButNotThoseOfAListThatACallerHolds();
};

void SharingTest::assignedObjectsShareUntilOneIsUsed()
{
    const TunerProperties original = aDocument();
    const QVector<Component> *originalList = &original.GetComponent();
    TunerProperties assigned;
    assigned = original;
    // the side that is used first creates data of its own; the other one keeps the shared data
    QVERIFY(&std::as_const(assigned).GetComponent() != originalList);
    QCOMPARE(&original.GetComponent(), originalList);
}

void SharingTest::writingToOneSideLeavesTheOtherAsItWas()
{
    Node original = aNode();
    Node assigned;
    assigned = original;
    assigned.GetValueItem()[0].GetValueInt().Setvalue(7);
    assigned.Setid(QStringLiteral("other"));
    QCOMPARE(original.Getid(), QStringLiteral("att"));
    QCOMPARE(std::as_const(original).GetValueItem().at(0).GetValueInt().Getvalue(), 0);

    original.ResetValueItem();
    QCOMPARE(std::as_const(assigned).GetValueItem().size(), 1);
}

// As documented: the library does not know the references of callers.
void SharingTest::aReferenceHeldDuringAnAssignmentReachesBothObjects()
{
    TunerProperties original = aDocument();
    Component &held = original.GetComponent()[0];
    TunerProperties assigned;
    assigned = original;
    held.Setname(QStringLiteral("changed"));
    QCOMPARE(std::as_const(assigned).GetComponent().at(0).Getname(), QStringLiteral("changed"));
    QCOMPARE(std::as_const(original).GetComponent().at(0).Getname(), QStringLiteral("changed"));
}

void SharingTest::referenceHeldDuringACopyChangesOnlyTheOriginal()
{
    TunerProperties original = aDocument();
    Component &held = original.GetComponent()[0];
    const TunerProperties copy(original);
    TunerProperties assigned;
    assigned = TunerProperties(original);
    held.Setname(QStringLiteral("changed"));
    QCOMPARE(copy.GetComponent().at(0).Getname(), QStringLiteral("Preselector"));
    QCOMPARE(std::as_const(assigned).GetComponent().at(0).Getname(), QStringLiteral("Preselector"));
    QCOMPARE(std::as_const(original).GetComponent().at(0).Getname(), QStringLiteral("changed"));
}

void SharingTest::aCopyIsNotSharedAtAll()
{
    const Component original = aComponent();
    const Component copy(original);
    QVERIFY(&copy.GetNode() != &original.GetNode());
    QVERIFY(copy.GetNode().constData() != original.GetNode().constData());
}

void SharingTest::sharedTreesHaveSeparateFlags()
{
    TunerProperties original = aDocument();
    TunerProperties assigned;
    assigned = original;
    assigned.SetValidate(false);
    QVERIFY(!std::as_const(assigned).GetComponent().at(0).GetNode().at(0).GetValidate());
    QVERIFY(std::as_const(original).GetComponent().at(0).GetNode().at(0).GetValidate());
}

void SharingTest::listsThatACallerHoldsDoNotFollowTheObject()
{
    const TunerProperties document = aDocument();
    const QVector<Component> held = document.GetComponent();
    document.SetValidate(false);
    QVERIFY(!document.GetComponent().at(0).GetValidate());
    QVERIFY(held.at(0).GetValidate());
}

void SharingTest::listsPassedToAnObjectDoNotFollowIt()
{
    const QVector<Component> given{aComponent()};
    TunerProperties document;
    document.SetComponent(given);
    document.SetValidate(false);
    QVERIFY(!std::as_const(document).GetComponent().at(0).GetValidate());
    QVERIFY(given.at(0).GetValidate());
}

void SharingTest::everyUseDetachesAListThatACallerHolds_data()
{
    QTest::addColumn<Use>("use");
    QTest::newRow("getters") << Use([](const TunerProperties &o) {
        o.GetComponent();
        o.GetBandwidthSelection();
        o.GetStartupModes().GetStartupMode();
    });
    QTest::newRow("Check()") << Use([](const TunerProperties &o) { o.Check(); });
    QTest::newRow("GetProblems()") << Use([](const TunerProperties &o) { return o.GetProblems(); });
    QTest::newRow("GetXml()") << Use([](const TunerProperties &o) { xmlOf(o); });
    QTest::newRow("GetBinary()") << Use([](const TunerProperties &o) { recordOf(o); });
    QTest::newRow("snapshot") << Use([](const TunerProperties &o) { snapshotOf(o); });
    QTest::newRow("==") << Use([](const TunerProperties &o) { QVERIFY(o == o); });
}

// Then another thread may use the list while the object is used.
void SharingTest::everyUseDetachesAListThatACallerHolds()
{
    QFETCH(Use, use);
    const TunerProperties document = aDocument();
    const QVector<Component> components = document.GetComponent();
    const QVector<BandwidthSelection> bandwidths = document.GetBandwidthSelection();
    const QVector<StartupModes::StartupMode> modes = document.GetStartupModes().GetStartupMode();
    QVERIFY(!components.isDetached());
    QVERIFY(!bandwidths.isDetached());
    QVERIFY(!modes.isDetached());
    use(document);
    QVERIFY(components.isDetached());
    QVERIFY(bandwidths.isDetached());
    QVERIFY(modes.isDetached());
}

void SharingTest::theRoomOfAnEmptiedListIsNotSharedEither()
{
    Component original = aComponent();
    original.Reset();
    original.GetNode().reserve(4);
    const QVector<Node> held = std::as_const(original).GetNode();
    QVERIFY(!held.isDetached());
    QVERIFY(std::as_const(original).GetNode().isEmpty());
    QVERIFY(held.isDetached());

    original.GetNode().reserve(4);
    const Component copy(original);
    QVERIFY(std::as_const(original).GetNode().isDetached());
    QCOMPARE(copy.GetNode().capacity(), 0);

    StartupModes modes;
    modes.GetStartupMode().reserve(4);
    const StartupModes modesCopy(modes);
    QVERIFY(std::as_const(modes).GetStartupMode().isDetached());
    QCOMPARE(modesCopy.GetStartupMode().capacity(), 0);
}

void SharingTest::twoObjectsNeverShareTheirModes()
{
    using Mode = StartupModes::StartupMode;
    StartupModes first;
    StartupModes second;
    const QVector<Mode> list{Mode::Scan, Mode::DF};
    first.SetStartupMode(list);
    second.SetStartupMode(list);
    QVERIFY(list.isDetached());
    second.SetStartupMode(std::as_const(first).GetStartupMode());
    QVERIFY(std::as_const(first).GetStartupMode().constData() != std::as_const(second).GetStartupMode().constData());
    second.GetStartupMode() = std::as_const(first).GetStartupMode();
    QVERIFY(std::as_const(first).GetStartupMode().constData() != std::as_const(second).GetStartupMode().constData());
    first.SetStartupMode(std::as_const(first).GetStartupMode());
    QCOMPARE(std::as_const(first).GetStartupMode(), list);
}

void SharingTest::twoObjectsNeverShareAnItem()
{
    TunerProperties first;
    TunerProperties second;
    const QVector<Component> list{aComponent()};
    first.SetComponent(list);
    second.SetComponent(list);
    QVERIFY(std::as_const(first).GetComponent().constData() != list.constData());
    QVERIFY(std::as_const(first).GetComponent().constData() != std::as_const(second).GetComponent().constData());

    second.SetComponent(std::as_const(first).GetComponent());
    QVERIFY(std::as_const(first).GetComponent().constData() != std::as_const(second).GetComponent().constData());

    second.GetComponent() = std::as_const(first).GetComponent();
    QVERIFY(std::as_const(first).GetComponent().constData() != std::as_const(second).GetComponent().constData());
    first.SetComponent(std::as_const(first).GetComponent());
    QVERIFY(std::as_const(first).GetComponent().at(0) == aComponent());
}

void SharingTest::equalTreesWithANaNInsideDifferEvenWhenShared()
{
    ValueItem item;
    ValueFloat number;
    number.Setid(QStringLiteral("n"));
    number.Setvalue(std::numeric_limits<float>::quiet_NaN());
    item.SetValueFloat(number);
    Node node = aNode();
    node.AppendValueItem(item);

    QVERIFY(!(node == node)); // a NaN does not equal itself, shared or not
    Node assigned;
    assigned = node;
    QVERIFY(assigned != node);
}

void SharingTest::constGettersSetNoFlag()
{
    const TunerProperties document;
    QVERIFY(document.GetComponent().isEmpty());
    QVERIFY(document.GetBandwidthSelection().isEmpty());
    document.GetStartupModes();
    QVERIFY(!document.IsComponentSet());
    QVERIFY(!document.IsBandwidthSelectionSet());
    QVERIFY(!document.IsStartupModesSet());

    const ValueItem item;
    item.GetValueInt();
    QVERIFY(!item.IsValueIntSet());
    QCOMPARE(item.GetChoiceValueItem(), ValueItem::ChoiceValueItem::None);
}

void SharingTest::nonConstGettersSetTheFlag()
{
    TunerProperties document;
    document.GetComponent();
    document.GetBandwidthSelection();
    document.GetStartupModes().GetStartupMode();
    QVERIFY(document.IsComponentSet());
    QVERIFY(document.IsBandwidthSelectionSet());
    QVERIFY(document.IsStartupModesSet());
    QVERIFY(std::as_const(document).GetStartupModes().IsStartupModeSet());

    Component component;
    component.GetNode();
    QVERIFY(component.IsNodeSet());
    Node node;
    node.GetValueItem();
    QVERIFY(node.IsValueItemSet());
    ValueStringList texts;
    texts.GetStringItem();
    QVERIFY(texts.IsStringItemSet());
    ValueSelection selection;
    selection.GetSelectionItem();
    QVERIFY(selection.IsSelectionItemSet());
    ValueItem item;
    item.GetValueInt64();
    QVERIFY(item.IsValueInt64Set());
}

void SharingTest::referencesToAlternativesStayValid()
{
    ValueItem item;
    ValueInt &number = item.GetValueInt();
    ValueString &text = item.GetValueString();
    number.Setid(QStringLiteral("n"));
    text.Setid(QStringLiteral("t"));
    item.GetValueBoolean();
    QCOMPARE(std::as_const(item).GetValueInt().Getid(), QStringLiteral("n"));
    QCOMPARE(&std::as_const(item).GetValueInt(), &number);
    item.Reset();
    QCOMPARE(&std::as_const(item).GetValueString(), &text);
    QVERIFY(!text.IsInitialized());
}

void SharingTest::comparingLeavesItemsInitializedButNotThoseOfAListThatACallerHolds()
{
    Node left;
    Node right;
    for (Node *node : {&left, &right}) {
        node->SetValidate(false);
        node->Setid(QStringLiteral("n"));
        node->AppendValueItem(ValueItem()); // without data
    }
    right.GetValueItem()[0].ResetToDefault();
    const QVector<ValueItem> held = std::as_const(left).GetValueItem();
    Node assigned;
    assigned = left;
    QVERIFY(left == right);
    QVERIFY(std::as_const(left).GetValueItem().at(0).IsInitialized());
    QVERIFY(!held.at(0).IsInitialized());
    QVERIFY(!std::as_const(assigned).GetValueItem().at(0).IsInitialized());
}

TEST_SUITE(SharingTest)
#include "tst_Sharing.moc"
