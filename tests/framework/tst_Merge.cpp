// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "ExceptionText.h"

using namespace JobXml;

/// MergeRGObject() copies the set members of another object of the same class.
class MergeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mergingWithAnotherClassFails()
    {
        ValueInt number = anInt(3);
        QVERIFY(!number.MergeRGObject(ValueInt64()));
        QVERIFY(!number.MergeRGObject(aNode()));
        QVERIFY(number == anInt(3));
    }

    void setMembersReplaceAndUnsetMembersStay()
    {
        Component target = aComponent();
        target.SetdisplayName(QStringLiteral("shown"));
        Component other;
        other.Setname(QStringLiteral("other"));
        other.Setoptional(true);
        QVERIFY(target.MergeRGObject(other));
        QCOMPARE(target.Getname(), QStringLiteral("other"));
        QCOMPARE(target.Getoptional(), true);
        QCOMPARE(target.Gettype(), QStringLiteral("Filter"));
        QCOMPARE(target.GetdisplayName(), QStringLiteral("shown"));
        QCOMPARE(std::as_const(target).GetNode().size(), 1);
    }

    void aMemberThatIsSetToItsDefaultReplacesToo()
    {
        ValueInt target = anInt(3);
        ValueInt other;
        other.Setvalue(0);
        QVERIFY(target.MergeRGObject(other));
        QCOMPARE(target.Getvalue(), 0);
        QCOMPARE(target.Getid(), QStringLiteral("number"));
    }

    void itemsOfListsAreAppended()
    {
        Node target = aNode();
        Node other;
        other.AppendValueItem(anIntItem(8));
        QVERIFY(target.MergeRGObject(other));
        QCOMPARE(std::as_const(target).GetValueItem().size(), 2);
        QCOMPARE(std::as_const(target).GetValueItem().at(1).GetValueInt().Getvalue(), 8);
    }

    void emptyListThatIsSetOnlySetsTheFlag()
    {
        Node target;
        Node other;
        other.SetValueItem({});
        QVERIFY(target.MergeRGObject(other));
        QVERIFY(target.IsValueItemSet());
        QVERIFY(std::as_const(target).GetValueItem().isEmpty());
    }

    void emptyListOfModesThatIsSetOnlySetsTheFlag()
    {
        StartupModes target;
        QVERIFY(target.MergeRGObject(StartupModes()));
        StartupModes other;
        other.ResetToDefault();
        QVERIFY(target.MergeRGObject(other));
        QVERIFY(!target.IsStartupModeSet());
        other.SetStartupMode({});
        QVERIFY(target.MergeRGObject(other));
        QVERIFY(target.IsStartupModeSet());
        QVERIFY(std::as_const(target).GetStartupMode().isEmpty());
    }

    void childObjectsMerge()
    {
        TunerProperties target = aDocument();
        TunerProperties other;
        other.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::DF);
        QVERIFY(target.MergeRGObject(other));
        const QVector<StartupModes::StartupMode> both{StartupModes::StartupMode::FFM, StartupModes::StartupMode::DF};
        QCOMPARE(std::as_const(target).GetStartupModes().GetStartupMode(), both);
        QCOMPARE(std::as_const(target).GetComponent().size(), 1);
    }

    void itemReceivesTheChosenAlternative()
    {
        ValueItem target = anIntItem(3);
        ValueItem other;
        ValueString text;
        text.Setid(QStringLiteral("t"));
        text.Setvalue(QStringLiteral("x"));
        other.SetValueString(text);
        QVERIFY(target.MergeRGObject(other));
        QCOMPARE(target.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueString);
        QVERIFY(std::as_const(target).GetValueString() == text);
        QVERIFY(target.IsValueIntSet()); // the flags of other alternatives stay

        QVERIFY(target.MergeRGObject(ValueItem()));
        QCOMPARE(target.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueString);
        other.ResetValueString(); // chosen, but not set
        QVERIFY(anIntItem(3).MergeRGObject(other));
        ValueItem number = anIntItem(3);
        QVERIFY(number.MergeRGObject(other));
        QCOMPARE(number.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueInt);
    }

    void mergingFollowsTheRulesOfSettersAndAppending()
    {
        ValueInt nullId;
        nullId.SetValidate(false);
        nullId.Setid(QString());
        ValueInt target;
        QCOMPARE(thrownBy([&] { return target.MergeRGObject(nullId); }),
                 QStringLiteral("OutOfRangeException: ValueInt: Please set id properly (origin: Setter)."));
        target.SetValidate(false);
        QVERIFY(target.MergeRGObject(nullId));
        QVERIFY(target.IsidSet());

        Node incomplete;
        incomplete.SetValidate(false);
        incomplete.AppendValueItem(ValueItem());
        Node node = aNode();
        QCOMPARE(
            thrownBy([&] { return node.MergeRGObject(incomplete); }),
            QStringLiteral("IncompleteDefinitionException: Node: Tried to append not completely defined or invalid "
                           "item ValueItem."));
        QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
        Node refused;
        QVERIFY(!thrownBy([&] { return refused.MergeRGObject(incomplete); }).isNull());
        QVERIFY(!refused.IsValueItemSet());
    }

    void mergingWithItselfChangesNothing()
    {
        TunerProperties document = aDocument();
        QVERIFY(document.MergeRGObject(document));
        QVERIFY(document == aDocument());
    }

    void objectsThatShareTheirDataMergeLikeAnyOthers()
    {
        Node node = aNode();
        Node assigned;
        assigned = node;
        QVERIFY(assigned.MergeRGObject(node));
        QCOMPARE(std::as_const(assigned).GetValueItem().size(), 2);
        QCOMPARE(std::as_const(node).GetValueItem().size(), 1);
    }

    void anObjectWithoutDataChangesNothing()
    {
        Node node;
        QVERIFY(node.MergeRGObject(Node()));
        QVERIFY(!node.IsInitialized());
    }
};

TEST_SUITE(MergeTest)
#include "tst_Merge.moc"
