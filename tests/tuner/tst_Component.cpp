// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Components.h"
#include "ExceptionText.h"

using namespace JobXml;
using namespace Components;

/// The flags, presence, validity and equality of the members. tst_ComponentEncodings tests their encodings.
class ComponentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameAndIdentifier();
    void aNewComponentMissesItsNodesEvenWithoutValidation();
    void theNodesAreCheckedBeforeTheTexts();
    void theMembersAreCheckedInThisOrder();
    void aDisplayNameMayBeUnsetButNotNull();
    void textsMustBeSetAsWellAsNotNull();
    void withoutOptionalThereIsNoData();
    void presenceOfAnyMemberIsAnyData();
    void aNullTextIsRefusedOnlyWhileValidating();
    void onlyNullTextsAreInvalid();
    void falseIsAValueOfOptional();
    void resettingAMemberRestoresItsDefault();
    void anIncompleteNodeIsNotAppendedWhileValidating();
    void nonConstGetterOfTheListSetsItsFlag();
    void everyMemberAffectsEquality();
    void theListsAreComparedByTheFlagOfTheRightSide();
};

void ComponentTest::itHasItsNameAndIdentifier()
{
    QCOMPARE(Component::GetStaticObjectName(), QStringLiteral("Component"));
    QCOMPARE(Component().GetObjectName(), QStringLiteral("Component"));
    QCOMPARE(Component::GetId(), Q_INT64_C(182261847));
}

void ComponentTest::aNewComponentMissesItsNodesEvenWithoutValidation()
{
    for (const bool validate : {true, false}) {
        Component component;
        component.SetValidate(validate);
        QVERIFY(!component.HasData());
        QCOMPARE(thrownBy([&] { component.Check(); }), missing("Node"));
    }
}

void ComponentTest::theNodesAreCheckedBeforeTheTexts()
{
    Component component;
    component.SetNode({aNode(), Node()});
    QCOMPARE(thrownBy([&] { component.Check(); }),
             QStringLiteral("OutOfRangeException: Node: Please set ValueItem properly."));
    component.SetNode({aNode(), nodeWithEmptyList()});
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("type"));
}

void ComponentTest::theMembersAreCheckedInThisOrder()
{
    Component component;
    component.SetValidate(false);
    component.SetdisplayName(QString());
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("Node"));
    component.SetNode({});
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("type"));
    component.Settype(QString());
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("type"));
    component.Settype(QStringLiteral("F"));
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("name"));
    component.Setname(QString());
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("name"));
    component.Setname(QStringLiteral("n"));
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("displayName"));
    component.ResetdisplayName();
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("optional"));
    component.Setoptional(false);
    QCOMPARE(thrownBy([&] { component.Check(); }), QString());
}

void ComponentTest::aDisplayNameMayBeUnsetButNotNull()
{
    Component component = aComponent();
    QVERIFY(!component.IsdisplayNameSet());
    QCOMPARE(thrownBy([&] { component.Check(); }), QString());
    component.SetValidate(false);
    component.SetdisplayName(QString());
    QVERIFY(component.IsdisplayNameSet());
    QVERIFY(component.HasData()); // which requires only mandatory members
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("displayName"));
}

void ComponentTest::textsMustBeSetAsWellAsNotNull()
{
    // After reading these snapshots, there are texts whose flags are clear: only the nodes, then also the type, are
    // set.
    Component component;
    readSnapshot(component, bytes("11 00 00 00 00 00 00 00 02 00 46 00 00 00 02 00 6E 00"));
    QCOMPARE(component.Gettype(), QStringLiteral("F"));
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("type"));
    readSnapshot(component, bytes("13 00 00 00 00 00 00 00 02 00 46 00 00 00 02 00 6E 00"));
    QCOMPARE(component.Getname(), QStringLiteral("n"));
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("name"));
}

void ComponentTest::withoutOptionalThereIsNoData()
{
    Component component = aComponent();
    QVERIFY(component.HasData());
    component.Resetoptional();
    QVERIFY(!component.HasData());
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("optional"));
    QCOMPARE(thrownBy([&] { xmlOf(component); }), missing("optional"));
    QCOMPARE(thrownBy([&] { recordOf(component); }), missing("optional"));
}

void ComponentTest::presenceOfAnyMemberIsAnyData()
{
    Component component;
    QVERIFY(!component.AnyData());
    component.SetNode({});
    QVERIFY(!component.AnyData());
    component.Setoptional(false);
    QVERIFY(component.AnyData());
    component.Resetoptional();
    QVERIFY(!component.AnyData());
    component.SetdisplayName(QStringLiteral(""));
    QVERIFY(component.AnyData());
    component.ResetdisplayName();
    component.Settype(QStringLiteral(""));
    QVERIFY(component.AnyData());
    component.Resettype();
    component.Setname(QStringLiteral(""));
    QVERIFY(component.AnyData());
    component.Resetname();
    QVERIFY(!component.AnyData());
    component.AppendNode(aNode());
    QVERIFY(component.AnyData());
}

void ComponentTest::aNullTextIsRefusedOnlyWhileValidating()
{
    Component component;
    QCOMPARE(thrownBy([&] { component.Settype(QString()); }),
             QStringLiteral("OutOfRangeException: Component: Please set type properly (origin: Setter)."));
    QCOMPARE(thrownBy([&] { component.Setname(QString()); }),
             QStringLiteral("OutOfRangeException: Component: Please set name properly (origin: Setter)."));
    QCOMPARE(thrownBy([&] { component.SetdisplayName(QString()); }),
             QStringLiteral("OutOfRangeException: Component: Please set displayName properly (origin: Setter)."));
    QVERIFY(!component.IstypeSet() && !component.IsnameSet() && !component.IsdisplayNameSet());
    component.SetValidate(false);
    component.Settype(QString());
    component.Setname(QString());
    component.SetdisplayName(QString());
    QVERIFY(component.IstypeSet() && component.IsnameSet() && component.IsdisplayNameSet());
    QVERIFY(!component.AnyData());
}

void ComponentTest::onlyNullTextsAreInvalid()
{
    const Component component;
    QVERIFY(!component.IsValidtype(QString()));
    QVERIFY(!component.IsValidname(QString()));
    QVERIFY(!component.IsValiddisplayName(QString()));
    QVERIFY(component.IsValidtype(QStringLiteral("")));
    QVERIFY(component.IsValidname(QStringLiteral("")));
    QVERIFY(component.IsValiddisplayName(QStringLiteral("")));
    QVERIFY(component.IsValidNode(Node()));
    QVERIFY(component.IsValidNode(QVector<Node>{Node()}));
}

void ComponentTest::falseIsAValueOfOptional()
{
    Component component;
    QVERIFY(!component.IsoptionalSet());
    component.SetValidate(false);
    component.Setoptional(false);
    QVERIFY(component.IsoptionalSet());
    QCOMPARE(xmlOf(component), QStringLiteral("<Component type=\"\" name=\"\" optional=\"false\"/>"));
}

void ComponentTest::resettingAMemberRestoresItsDefault()
{
    Component component = wholeComponent();
    component.Resettype();
    component.Resetname();
    component.ResetdisplayName();
    component.Resetoptional();
    component.ResetNode();
    QVERIFY(!component.IstypeSet() && component.Gettype().isNull() && component.GetDefaulttype().isNull());
    QVERIFY(!component.IsnameSet() && component.Getname().isNull() && component.GetDefaultname().isNull());
    QVERIFY(!component.IsdisplayNameSet() && component.GetdisplayName().isNull());
    QVERIFY(component.GetDefaultdisplayName().isNull());
    QVERIFY(!component.IsoptionalSet() && !component.Getoptional() && !component.GetDefaultoptional());
    QVERIFY(!component.IsNodeSet() && std::as_const(component).GetNode().isEmpty());
}

void ComponentTest::anIncompleteNodeIsNotAppendedWhileValidating()
{
    Component component;
    QCOMPARE(thrownBy([&] { component.AppendNode(nodeWithEmptyList()); }), QString::fromLatin1(incompleteNode));
    QVERIFY(!component.IsNodeSet());
    QVERIFY(std::as_const(component).GetNode().isEmpty());
    component.AppendNode(aNode());
    QVERIFY(component.IsNodeSet());
    component.SetValidate(false);
    component.AppendNode(Node());
    QCOMPARE(std::as_const(component).GetNode().size(), 2);
}

void ComponentTest::nonConstGetterOfTheListSetsItsFlag()
{
    Component component;
    QVERIFY(std::as_const(component).GetNode().isEmpty());
    QVERIFY(!component.IsNodeSet());
    component.GetNode();
    QVERIFY(component.IsNodeSet());
    QCOMPARE(thrownBy([&] { component.Check(); }), missing("type"));
}

void ComponentTest::everyMemberAffectsEquality()
{
    const Component whole = wholeComponent();
    QVERIFY(whole == wholeComponent());
    Component other = wholeComponent();
    other.Settype(QStringLiteral("x"));
    QVERIFY(whole != other);
    other = wholeComponent();
    other.Setname(QStringLiteral("x"));
    QVERIFY(whole != other);
    other = wholeComponent();
    other.ResetdisplayName();
    QVERIFY(whole != other);
    QVERIFY(other != whole);
    other = wholeComponent();
    other.Setoptional(false);
    QVERIFY(whole != other);
    other = wholeComponent();
    other.GetNode()[1].Setid(QStringLiteral("x"));
    QVERIFY(whole != other);
    other = wholeComponent();
    other.GetNode().removeLast();
    QVERIFY(whole != other);
    QVERIFY(Component() == Component());

    Component unset; // differs from a member that is set to its default
    Component set;
    set.Setoptional(false);
    QVERIFY(unset != set);
    QVERIFY(set != unset);
}

void ComponentTest::theListsAreComparedByTheFlagOfTheRightSide()
{
    Component empty;
    empty.SetNode({});
    QVERIFY(empty == Component());
    QVERIFY(Component() == empty);

    Component one;
    one.AppendNode(aNode());
    QVERIFY(one != Component());
    QVERIFY(Component() != one);

    // One node on both sides, but on one side the list is not set.
    const Component unset = withUnsetList();
    Component set = unset;
    set.SetNode(unset.GetNode());
    QVERIFY(unset == set);
    QVERIFY(set != unset);
}

TEST_SUITE(ComponentTest)
#include "tst_Component.moc"
