// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/Visitor.h>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;

/// Objects share their data after assignment, and nobody can tell.
class SharingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assignedObjectsShareUntilOneIsUsed();
    void writingToOneSideLeavesTheOtherAsItWas();
    void aCopyIsNotSharedAtAll();
    void flagsOfSharedTreesAreApart();
    void listsThatACallerHoldsDoNotFollowTheObject();
    void listsGivenToAnObjectDoNotFollowIt();
    void twoObjectsNeverShareAnItem();
    void equalTreesWithANaNInsideDifferEvenWhenShared();
    void constGettersDoNotMark();
    void nonConstGettersMark();
    void referencesToAlternativesStayValid();
    void comparingLeavesItemsInitializedButNotThoseOfAListThatACallerHolds();
    void whatAVisitorDoesToAChildStaysWithItsDocument();
};

void SharingTest::assignedObjectsShareUntilOneIsUsed()
{
    const TunerProperties original = aDocument();
    const QVector<Component> *originalList = &original.GetComponent();
    TunerProperties assigned;
    assigned = original;
    // the side that is used first takes data of its own; the other keeps what was there
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

void SharingTest::aCopyIsNotSharedAtAll()
{
    const Component original = aComponent();
    const Component copy(original);
    QVERIFY(&copy.GetNode() != &original.GetNode());
    QVERIFY(copy.GetNode().constData() != original.GetNode().constData());
}

void SharingTest::flagsOfSharedTreesAreApart()
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

void SharingTest::listsGivenToAnObjectDoNotFollowIt()
{
    const QVector<Component> given{aComponent()};
    TunerProperties document;
    document.SetComponent(given);
    document.SetValidate(false);
    QVERIFY(!std::as_const(document).GetComponent().at(0).GetValidate());
    QVERIFY(given.at(0).GetValidate());
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

void SharingTest::constGettersDoNotMark()
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

void SharingTest::nonConstGettersMark()
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

namespace {

class SwitchesValidationOff : public Visitor
{
public:
    void VisitValue(QLatin1String, const QVariant &, bool) override { }
    void VisitList(QLatin1String, int, bool) override { }
    void VisitChild(QLatin1String, const DataObject &child, int) override { child.SetValidate(false); }
};

} // namespace

void SharingTest::whatAVisitorDoesToAChildStaysWithItsDocument()
{
    const TunerProperties document = aDocument();
    const QVector<Component> held = document.GetComponent();
    TunerProperties assigned;
    assigned = document;
    SwitchesValidationOff visitor;
    document.Accept(visitor);
    QVERIFY(!document.GetComponent().at(0).GetValidate());
    QVERIFY(held.at(0).GetValidate());
    QVERIFY(std::as_const(assigned).GetComponent().at(0).GetValidate());
    QVERIFY(std::as_const(assigned).GetStartupModes().GetValidate());
}

QTEST_GUILESS_MAIN(SharingTest)
#include "tst_Sharing.moc"
