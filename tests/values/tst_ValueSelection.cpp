// SPDX-License-Identifier: MIT
#include "Selections.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

const char missingOptions[] = "OutOfRangeException: ValueSelection: Please set SelectionItem properly.";

} // namespace

/// The selection itself. Its encodings are tested in tst_ValueSelectionEncodings.
class ValueSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void everySimpleMemberStoresAndResets();
    void theListStoresAndResets();
    void aNullTextIsRefusedOnlyWhileValidating();
    void everythingIsValid();
    void theModifiableListMarksItSetAndTheConstOneDoesNot();
    void settingTheListDoesNotCheckTheOptions();
    void anOptionWithoutNameIsAppendedOnlyWithoutValidation();
    void anOptionWithoutValueIsAppendedOnlyWithoutValidation();
    void anAppendedOptionIsACopyWithItsOwnFlagAndNoLogger();
    void flagAndLoggerPropagateToTheOptions();

    void checkNamesTheFirstMissingMember();
    void messageOfAnOptionPassesThroughCheck();
    void unsetListFailsTheCheckIfAllOtherMembersAreSet();
    void emptyListThatIsSetPassesTheCheckButIsNotData();
    void hasDataRequiresAnOptionAndAllOtherMembers();
    void valueTextAndIndexNeedNotMatchTheOptions();

    void anEmptyListEqualsAnUnsetOne();
    void flagOfTheLeftListIsIgnored();
    void optionsAreComparedInOrder();
    void membersAreEqualWhenSetAndEqualOrBothUnset();
};

void ValueSelectionTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(ValueSelection::GetStaticObjectName(), QStringLiteral("ValueSelection"));
    QCOMPARE(ValueSelection().GetObjectName(), QStringLiteral("ValueSelection"));
    QCOMPARE(ValueSelection::GetId(), Q_INT64_C(0x00C375A5));
}

void ValueSelectionTest::everySimpleMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueSelection, id), QStringLiteral("s"), QString());
    storesAndResets(ACCESSORS(ValueSelection, value), 0.1, 0.0);
    storesAndResets(ACCESSORS(ValueSelection, text), QStringLiteral("on"), QString());
    storesAndResets(ACCESSORS(ValueSelection, index), -1, 0);
}

void ValueSelectionTest::theListStoresAndResets()
{
    ValueSelection object;
    QVERIFY(!object.IsSelectionItemSet());
    object.ResetSelectionItem();
    QVERIFY(!object.IsInitialized());
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    QVERIFY(object.IsInitialized());

    object.SetSelectionItem({option("a", 1), option("b", 2)});
    QVERIFY(object.IsSelectionItemSet());
    QCOMPARE(namesOf(object).join(QLatin1Char(' ')), QStringLiteral("a b"));
    object.SetSelectionItem({option("c", 3)}); // replaces
    QCOMPARE(namesOf(object).join(QLatin1Char(' ')), QStringLiteral("c"));
    object.AppendSelectionItem(option("d", 4)); // joins
    QCOMPARE(namesOf(object).join(QLatin1Char(' ')), QStringLiteral("c d"));

    object.ResetSelectionItem();
    QVERIFY(!object.IsSelectionItemSet());
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
}

void ValueSelectionTest::aNullTextIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueSelection, id),
                QStringLiteral("OutOfRangeException: ValueSelection: Please set id properly (origin: Setter)."));
    refusesNull(ACCESSORS(ValueSelection, text),
                QStringLiteral("OutOfRangeException: ValueSelection: Please set text properly (origin: Setter)."));
}

void ValueSelectionTest::everythingIsValid()
{
    const ValueSelection object;
    QVERIFY(object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("s")));
    QVERIFY(object.IsValidtext(QString()));
    QVERIFY(object.IsValidtext(QStringLiteral("on")));
    QVERIFY(object.IsValidvalue(qQNaN()));
    QVERIFY(object.IsValidvalue(-1e300));
    QVERIFY(object.IsValidindex(std::numeric_limits<int>::min()));
    QVERIFY(object.IsValidindex(std::numeric_limits<int>::max()));
    QVERIFY(object.IsValidSelectionItem(SelectionItem()));
    QVERIFY(object.IsValidSelectionItem(QVector<SelectionItem>()));
    QVERIFY(object.IsValidSelectionItem(QVector<SelectionItem>{SelectionItem()}));
}

void ValueSelectionTest::theModifiableListMarksItSetAndTheConstOneDoesNot()
{
    ValueSelection object;
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    QVERIFY(!object.IsSelectionItemSet());
    object.GetSelectionItem().append(option("a", 1));
    QVERIFY(object.IsSelectionItemSet());
    object.GetSelectionItem()[0].Setname(QStringLiteral("b"));
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("b")));

    ValueSelection assigned;
    assigned = object;
    assigned.GetSelectionItem().clear(); // of its own block
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("b")));
}

void ValueSelectionTest::settingTheListDoesNotCheckTheOptions()
{
    ValueSelection object; // validating
    object.SetSelectionItem({SelectionItem()});
    QVERIFY(object.IsSelectionItemSet());
    QCOMPARE(std::as_const(object).GetSelectionItem().size(), 1);
}

void ValueSelectionTest::anOptionWithoutNameIsAppendedOnlyWithoutValidation()
{
    SelectionItem nameless;
    nameless.Setvalue(1);
    ValueSelection object;
    QCOMPARE(thrownBy([&] { object.AppendSelectionItem(nameless); }), QLatin1String(incompleteOption));
    QVERIFY(!object.IsSelectionItemSet());
    object = selection({option("a", 1)});
    QCOMPARE(thrownBy([&] { object.AppendSelectionItem(nameless); }), QLatin1String(incompleteOption));
    QVERIFY(object == selection({option("a", 1)}));
    object.SetValidate(false);
    object.AppendSelectionItem(nameless);
    QCOMPARE(std::as_const(object).GetSelectionItem().size(), 2);
}

void ValueSelectionTest::anOptionWithoutValueIsAppendedOnlyWithoutValidation()
{
    auto valueless = withoutValidation<SelectionItem>(); // it is the selection's flag that counts
    valueless.Setname(QStringLiteral("a"));
    ValueSelection object;
    QCOMPARE(thrownBy([&] { object.AppendSelectionItem(valueless); }), QLatin1String(incompleteOption));
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    object.SetValidate(false);
    object.AppendSelectionItem(valueless);
    QVERIFY(object.IsSelectionItemSet());
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("a")));
}

void ValueSelectionTest::anAppendedOptionIsACopyWithItsOwnFlagAndNoLogger()
{
    SelectionItem source = option("a", 1);
    source.SetValidate(false);
    source.SetLogger(std::make_shared<Logger>());
    ValueSelection object;
    object.AppendSelectionItem(source);
    source.Setname(QStringLiteral("b"));
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("a")));
    QCOMPARE(std::as_const(object).GetSelectionItem().at(0).GetValidate(), false);
    QVERIFY(!std::as_const(object).GetSelectionItem().at(0).GetLogger());
}

void ValueSelectionTest::flagAndLoggerPropagateToTheOptions()
{
    const auto logger = std::make_shared<Logger>();
    ValueSelection object = selection({option("a", 1), option("b", 2)});
    object.SetValidate(false);
    object.SetLogger(logger);
    for (const SelectionItem &each : std::as_const(object).GetSelectionItem()) {
        QCOMPARE(each.GetValidate(), false);
        QCOMPARE(each.GetLogger(), logger);
    }
    object.AppendSelectionItem(option("c", 3));
    object.Check(); // propagates to items appended since
    QCOMPARE(std::as_const(object).GetSelectionItem().at(2).GetValidate(), false);
    QCOMPARE(std::as_const(object).GetSelectionItem().at(2).GetLogger(), logger);
}

void ValueSelectionTest::checkNamesTheFirstMissingMember()
{
    const auto missing = [](const char *member) {
        return QStringLiteral("OutOfRangeException: ValueSelection: Please set %1 properly.")
            .arg(QLatin1String(member));
    };
    ValueSelection object;
    object.Setindex(0); // the last one, to be checked last
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("SelectionItem"));
    object.SetSelectionItem({option("a", 1)});
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("id"));
    object.Setid(QStringLiteral("s"));
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("value"));
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("text"));
    object.Settext(QStringLiteral(""));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    object.Resetindex();
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("index"));
    QCOMPARE(thrownBy([&] { object.Check(true); }), missing("index"));

    object.SetValidate(false);
    object.Settext(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("text"));
    object.Setid(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("id"));
    QCOMPARE(thrownBy([&] { withUnsetOptions().Check(); }), missing("SelectionItem"));
}

void ValueSelectionTest::messageOfAnOptionPassesThroughCheck()
{
    SelectionItem valueless;
    valueless.Setname(QStringLiteral("b"));
    ValueSelection object; // and nothing else, which is checked after the options
    object.SetSelectionItem({option("a", 1), valueless, SelectionItem()});
    for (const bool flag : {false, true})
        QCOMPARE(thrownBy([&] { object.Check(flag); }),
                 QStringLiteral("OutOfRangeException: SelectionItem: Please set value properly."));
    object.SetSelectionItem({SelectionItem(), valueless});
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: SelectionItem: Please set name properly."));
}

void ValueSelectionTest::unsetListFailsTheCheckIfAllOtherMembersAreSet()
{
    QCOMPARE(thrownBy([] { selectionWithoutOptions().Check(); }), QLatin1String(missingOptions));
}

void ValueSelectionTest::emptyListThatIsSetPassesTheCheckButIsNotData()
{
    ValueSelection object = selectionWithoutOptions();
    object.SetSelectionItem({});
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    QVERIFY(!object.HasData());
    QCOMPARE(xmlOf(object), QString()); // so nothing is written for it
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QVERIFY(!object.GetBinary(stream, 1, true));
    QCOMPARE(hex(record), QString());
}

void ValueSelectionTest::hasDataRequiresAnOptionAndAllOtherMembers()
{
    const ValueSelection full = selection({option("a", 1)});
    QVERIFY(full.HasData());
    QVERIFY(withUnsetOptions().HasData());
    for (const auto reset : {&ValueSelection::ResetSelectionItem, &ValueSelection::Resetid, &ValueSelection::Resetvalue,
                             &ValueSelection::Resettext, &ValueSelection::Resetindex}) {
        ValueSelection object(full);
        (object.*reset)();
        QVERIFY(!object.HasData());
        QVERIFY(object.AnyData());
    }

    ValueSelection object;
    object.SetSelectionItem({});
    QVERIFY(!object.AnyData());
    object.Setindex(0);
    QVERIFY(object.AnyData());
    object.Reset();
    object.Setvalue(0);
    QVERIFY(object.AnyData());
    object.Reset();
    object.Settext(QStringLiteral(""));
    QVERIFY(object.AnyData());
    object.Reset();
    object.AppendSelectionItem(option("a", 1));
    QVERIFY(object.AnyData());
}

void ValueSelectionTest::valueTextAndIndexNeedNotMatchTheOptions()
{
    ValueSelection object = selection({option("a", 1), option("b", 2), option("c", 3)});
    object.Setindex(7);
    object.Setvalue(99);
    object.Settext(QStringLiteral("d"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    object.Setindex(-1);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueSelectionTest::anEmptyListEqualsAnUnsetOne()
{
    const ValueSelection unset = selectionWithoutOptions();
    ValueSelection empty = selectionWithoutOptions();
    empty.SetSelectionItem({});
    QVERIFY(empty == unset);
    QVERIFY(unset == empty);
    QVERIFY(selection({option("a", 1)}) != unset);
    QVERIFY(unset != selection({option("a", 1)}));
    QVERIFY(empty != selection({option("a", 1)}));
    QVERIFY(ValueSelection() == ValueSelection());
}

void ValueSelectionTest::flagOfTheLeftListIsIgnored()
{
    QVERIFY(withUnsetOptions() == selection({option("a", 1.5)}));
    QVERIFY(selection({option("a", 1.5)}) != withUnsetOptions()); // here the right one's says there is nothing
    QVERIFY(withUnsetOptions() != selectionWithoutOptions());
    QVERIFY(selectionWithoutOptions() == withUnsetOptions());
}

void ValueSelectionTest::optionsAreComparedInOrder()
{
    const SelectionItem a = option("a", 1);
    const SelectionItem b = option("b", 2);
    QVERIFY(selection({a, b}) == selection({a, b}));
    QVERIFY(selection({a, b}) != selection({b, a}));
    QVERIFY(selection({a, b}) != selection({a}));
    QVERIFY(selection({a}) != selection({a, b}));
    QVERIFY(selection({a}) != selection({option("a", 1.001)})); // exactly, not as written
    const ValueSelection nan = selection({option("a", qQNaN())});
    QVERIFY(nan != ValueSelection(nan));
}

void ValueSelectionTest::membersAreEqualWhenSetAndEqualOrBothUnset()
{
    const ValueSelection object = selection({option("a", 1)});
    const auto different = [&](auto change) {
        ValueSelection changed(object);
        change(changed);
        return changed != object && object != changed;
    };
    QVERIFY(different([](ValueSelection &changed) { changed.Setid(QStringLiteral("t")); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Resetid(); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Setvalue(0.501); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Resetvalue(); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Settext(QStringLiteral("off")); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Resettext(); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Setindex(0); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Resetindex(); }));
    QVERIFY(different([](ValueSelection &changed) { changed.Setvalue(qQNaN()); }));
}

TEST_SUITE(ValueSelectionTest)
#include "tst_ValueSelection.moc"
