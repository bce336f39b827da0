// SPDX-License-Identifier: MIT
#include "StringLists.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

const char missingItems[] = "OutOfRangeException: ValueStringList: Please set StringItem properly.";

} // namespace

/// The list itself. Its encodings are tested in tst_ValueStringListEncodings.
class ValueStringListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void everyTextStoresAndResets();
    void theListStoresAndResets();
    void aNullTextIsRefusedOnlyWhileValidating();
    void everythingIsValid();
    void theModifiableListMarksItSetAndTheConstOneDoesNot();
    void settingTheListDoesNotCheckTheItems();
    void anIncompleteItemIsAppendedOnlyWithoutValidation();
    void anAppendedItemIsACopyWithItsOwnFlagAndNoLogger();
    void flagAndLoggerPropagateToTheItems();

    void checkNamesTheFirstMissingMember();
    void messageOfAnItemPassesThroughCheck();
    void emptyListThatIsSetPassesTheCheckButIsNotData();
    void hasDataRequiresAnItemAndBothTexts();
    void theValueNeedNotBeAmongTheItems();

    void anEmptyListEqualsAnUnsetOne();
    void flagOfTheLeftListIsIgnored();
    void itemsAreComparedInOrder();
    void textsAreEqualWhenSetAndEqualOrBothUnset();
};

void ValueStringListTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(ValueStringList::GetStaticObjectName(), QStringLiteral("ValueStringList"));
    QCOMPARE(ValueStringList().GetObjectName(), QStringLiteral("ValueStringList"));
    QCOMPARE(ValueStringList::GetId(), Q_INT64_C(0xC290BC31));
}

void ValueStringListTest::everyTextStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueStringList, id), QStringLiteral("l"), QString());
    storesAndResets(ACCESSORS(ValueStringList, value), QStringLiteral("Z"), QString());
}

void ValueStringListTest::theListStoresAndResets()
{
    ValueStringList object;
    QVERIFY(!object.IsStringItemSet());
    object.ResetStringItem();
    QVERIFY(!object.IsInitialized());
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
    QVERIFY(object.IsInitialized());

    object.SetStringItem({textItem("X"), textItem("Y")});
    QVERIFY(object.IsStringItemSet());
    QCOMPARE(textsOf(object), texts({"X", "Y"}));
    object.SetStringItem({textItem("Z")}); // replaces
    QCOMPARE(textsOf(object), texts({"Z"}));
    object.AppendStringItem(textItem("A")); // joins
    QCOMPARE(textsOf(object), texts({"Z", "A"}));

    object.ResetStringItem();
    QVERIFY(!object.IsStringItemSet());
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
}

void ValueStringListTest::aNullTextIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueStringList, id),
                QStringLiteral("OutOfRangeException: ValueStringList: Please set id properly (origin: Setter)."));
    refusesNull(ACCESSORS(ValueStringList, value),
                QStringLiteral("OutOfRangeException: ValueStringList: Please set value properly (origin: Setter)."));
}

void ValueStringListTest::everythingIsValid()
{
    const ValueStringList object;
    QVERIFY(object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("l")));
    QVERIFY(object.IsValidvalue(QString()));
    QVERIFY(object.IsValidvalue(QStringLiteral("Z")));
    QVERIFY(object.IsValidStringItem(StringItem()));
    QVERIFY(object.IsValidStringItem(QVector<StringItem>()));
    QVERIFY(object.IsValidStringItem(QVector<StringItem>{StringItem()}));
}

void ValueStringListTest::theModifiableListMarksItSetAndTheConstOneDoesNot()
{
    ValueStringList object;
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
    QVERIFY(!object.IsStringItemSet());
    object.GetStringItem().append(textItem("X"));
    QVERIFY(object.IsStringItemSet());
    object.GetStringItem()[0].Setvalue(QStringLiteral("Y"));
    QCOMPARE(textsOf(object), texts({"Y"}));

    ValueStringList assigned;
    assigned = object;
    assigned.GetStringItem().clear(); // of its own block
    QCOMPARE(textsOf(object), texts({"Y"}));
}

void ValueStringListTest::settingTheListDoesNotCheckTheItems()
{
    ValueStringList object; // validating
    object.SetStringItem({StringItem()});
    QVERIFY(object.IsStringItemSet());
    QCOMPARE(std::as_const(object).GetStringItem().size(), 1);
}

void ValueStringListTest::anIncompleteItemIsAppendedOnlyWithoutValidation()
{
    ValueStringList object;
    QCOMPARE(thrownBy([&] { object.AppendStringItem(StringItem()); }), QLatin1String(incompleteTextItem));
    QVERIFY(!object.IsStringItemSet());
    QVERIFY(std::as_const(object).GetStringItem().isEmpty());
    object.AppendStringItem(textItem("X"));
    QCOMPARE(thrownBy([&] { object.AppendStringItem(StringItem()); }), QLatin1String(incompleteTextItem));
    QCOMPARE(textsOf(object), texts({"X"}));

    // It is the list's flag that counts, not the item's.
    const auto careless = withoutValidation<StringItem>();
    QCOMPARE(thrownBy([&] { object.AppendStringItem(careless); }), QLatin1String(incompleteTextItem));
    auto lenient = withoutValidation<ValueStringList>();
    lenient.AppendStringItem(StringItem());
    QVERIFY(lenient.IsStringItemSet());
    QCOMPARE(std::as_const(lenient).GetStringItem().size(), 1);
}

void ValueStringListTest::anAppendedItemIsACopyWithItsOwnFlagAndNoLogger()
{
    StringItem source = textItem("X");
    source.SetValidate(false);
    source.SetLogger(std::make_shared<Logger>());
    ValueStringList object;
    object.AppendStringItem(source);
    source.Setvalue(QStringLiteral("Y"));
    QCOMPARE(textsOf(object), texts({"X"}));
    QCOMPARE(std::as_const(object).GetStringItem().at(0).GetValidate(), false);
    QVERIFY(!std::as_const(object).GetStringItem().at(0).GetLogger());
}

void ValueStringListTest::flagAndLoggerPropagateToTheItems()
{
    const auto logger = std::make_shared<Logger>();
    ValueStringList object = textList({"X", "Y"});
    object.SetValidate(false);
    object.SetLogger(logger);
    for (const StringItem &text : std::as_const(object).GetStringItem()) {
        QCOMPARE(text.GetValidate(), false);
        QCOMPARE(text.GetLogger(), logger);
    }
    object.AppendStringItem(textItem("Z"));
    object.Check(); // propagates to items appended since
    QCOMPARE(std::as_const(object).GetStringItem().at(2).GetValidate(), false);
    QCOMPARE(std::as_const(object).GetStringItem().at(2).GetLogger(), logger);
}

void ValueStringListTest::checkNamesTheFirstMissingMember()
{
    ValueStringList object;
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingItems));
    object.Setid(QStringLiteral("l"));
    object.Setvalue(QStringLiteral("Z"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingItems));
    QCOMPARE(thrownBy([&] { object.Check(true); }), QLatin1String(missingItems));
    object.SetStringItem({});
    object.Resetid();
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueStringList: Please set id properly."));
    object.Setid(QStringLiteral("l"));
    object.Resetvalue();
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueStringList: Please set value properly."));
    object.SetValidate(false);
    object.Setvalue(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueStringList: Please set value properly."));
    object.Setid(QString());
    QCOMPARE(thrownBy([&] { object.Check(); }),
             QStringLiteral("OutOfRangeException: ValueStringList: Please set id properly."));
    QCOMPARE(thrownBy([&] { withUnsetTexts().Check(); }), QLatin1String(missingItems));
}

void ValueStringListTest::messageOfAnItemPassesThroughCheck()
{
    ValueStringList object; // neither id nor value, which are checked after the items
    object.SetStringItem({textItem("X"), StringItem()});
    for (const bool flag : {false, true})
        QCOMPARE(thrownBy([&] { object.Check(flag); }),
                 QStringLiteral("OutOfRangeException: StringItem: Please set value properly."));
}

void ValueStringListTest::emptyListThatIsSetPassesTheCheckButIsNotData()
{
    auto object = sample<ValueStringList>("l", QStringLiteral("Z"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingItems));
    object.SetStringItem({});
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    QVERIFY(!object.HasData());
    QCOMPARE(xmlOf(object), QString()); // so nothing is written for it
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QVERIFY(!object.GetBinary(stream, 1, true));
    QCOMPARE(hex(record), QString());
}

void ValueStringListTest::hasDataRequiresAnItemAndBothTexts()
{
    ValueStringList object;
    object.SetStringItem({});
    QVERIFY(!object.AnyData());
    object.AppendStringItem(textItem("X"));
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
    object.Setid(QStringLiteral(""));
    QVERIFY(!object.HasData());
    object.Setvalue(QStringLiteral(""));
    QVERIFY(object.HasData());
    object.ResetStringItem();
    QVERIFY(object.AnyData());
    object.Resetid();
    QVERIFY(object.AnyData());
    object.Resetvalue();
    QVERIFY(!object.AnyData());

    readSnapshot(object, bytes("01 00 00 00 01 01 00 00 00 02 00 58 00 00 00 02 00 6C 00 00 00 02 00 5A"));
    QVERIFY(!object.IsidSet()); // there and not set
    QVERIFY(!object.IsvalueSet());
    QVERIFY(object.HasData());
    QVERIFY(withUnsetTexts().HasData());
}

void ValueStringListTest::theValueNeedNotBeAmongTheItems()
{
    QCOMPARE(thrownBy([] { textList({"X", "Y"}).Check(); }), QString());
}

void ValueStringListTest::anEmptyListEqualsAnUnsetOne()
{
    const ValueStringList unset = textList({});
    ValueStringList empty = textList({});
    empty.SetStringItem({});
    QVERIFY(empty == unset);
    QVERIFY(unset == empty);
    QVERIFY(textList({"X"}) != unset);
    QVERIFY(unset != textList({"X"}));
    QVERIFY(textList({"X"}) != empty);
    QVERIFY(empty != textList({"X"}));

    ValueStringList emptyAlone;
    emptyAlone.SetStringItem({});
    QVERIFY(emptyAlone == ValueStringList());
    QVERIFY(ValueStringList() == emptyAlone);
    QVERIFY(ValueStringList() == ValueStringList());
}

void ValueStringListTest::flagOfTheLeftListIsIgnored()
{
    QVERIFY(withUnsetTexts() == textList({"X"}));
    QVERIFY(textList({"X"}) != withUnsetTexts()); // here it is the right one's that says there is nothing
    QVERIFY(withUnsetTexts() != textList({}));
    QVERIFY(textList({}) == withUnsetTexts());
}

void ValueStringListTest::itemsAreComparedInOrder()
{
    QVERIFY(textList({"X", "Y"}) == textList({"X", "Y"}));
    QVERIFY(textList({"X", "Y"}) != textList({"Y", "X"}));
    QVERIFY(textList({"X", "Y"}) != textList({"X"}));
    QVERIFY(textList({"X"}) != textList({"X", "Y"}));
    QVERIFY(textList({"X", "Y"}) != textList({"X", "Z"}));
}

void ValueStringListTest::textsAreEqualWhenSetAndEqualOrBothUnset()
{
    const ValueStringList object = textList({"X"});
    const auto different = [&](auto change) {
        ValueStringList changed(object);
        change(changed);
        return changed != object && object != changed;
    };
    QVERIFY(different([](ValueStringList &changed) { changed.Setid(QStringLiteral("m")); }));
    QVERIFY(different([](ValueStringList &changed) { changed.Resetid(); }));
    QVERIFY(different([](ValueStringList &changed) { changed.Setvalue(QStringLiteral("X")); }));
    QVERIFY(different([](ValueStringList &changed) { changed.Resetvalue(); }));
    ValueStringList left;
    left.AppendStringItem(textItem("X"));
    ValueStringList right;
    right.AppendStringItem(textItem("X"));
    QVERIFY(left == right);
}

TEST_SUITE(ValueStringListTest)
#include "tst_ValueStringList.moc"
