// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encodings.h"
#include "ExceptionText.h"
#include "Kinds.h"
#include "Model.h"

using namespace JobXml;
using namespace ValueItemKinds;

namespace {

const char notInitialized[] =
    "IncompleteDefinitionException: ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized";

} // namespace

/// The choice itself: selecting, setting flags, comparing. Its encodings are tested in tst_ValueItemEncodings.
class ValueItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theKindsAreAllAlternatives()
    {
        QStringList names;
        for (const Kind &kind : kinds())
            names += kind.name;
        QCOMPARE(names, Model::members(ValueItem()));
    }

    void objectHasNameAndIdentifierOfItsClass();
    void theTenKindsHaveTheirNamesInThisOrder();
    void nameIsFoundOnlyIfSpelledExactly();
    void everyChoiceButNoneIsValid();
    void aNewItemHasChosenNothing();
    void aNewItemIsRefusedBeforeAnythingIsWritten();
    void theSetterChoosesAndMarks_data() { kindRows(); }
    void theSetterChoosesAndMarks();
    void theModifiableGetterChoosesAndMarks_data() { kindRows(); }
    void theModifiableGetterChoosesAndMarks();
    void theConstGetterNeitherChoosesNorMarksNorRefuses_data() { kindRows(); }
    void theConstGetterNeitherChoosesNorMarksNorRefuses();
    void resettingAnAlternativeLeavesTheChoice_data() { kindRows(); }
    void resettingAnAlternativeLeavesTheChoice();
    void everyAlternativeIsValid_data() { kindRows(); }
    void everyAlternativeIsValid();
    void choosingAnotherKeepsWhatWasSet();
    void resettingTheChoiceTouchesNoAlternative();
    void resettingOfANewItemLeavesItWithoutData();
    void initChoiceStoresNothing();
    void initChoiceOfNoneThrowsAfterResetting();
    void resetForgetsChoiceAndAlternatives();
    void resetToDefaultLeavesTheItemInitialized();
    void hasDataDependsOnTheChosenAlternativeAlone();
    void aChoiceBeyondTheKindsIsNoneButCountsAsAnyData_data();
    void aChoiceBeyondTheKindsIsNoneButCountsAsAnyData();
    void checkReportsWhatTheChoiceLacks_data();
    void checkReportsWhatTheChoiceLacks();
    void checkPassesWithoutValidation_data() { kindRows(); }
    void checkPassesWithoutValidation();
    void checkDoesNotEnterTheAlternative();
    void flagAndLoggerPropagateToAllAlternatives_data() { kindRows(); }
    void flagAndLoggerPropagateToAllAlternatives();
    void differentChoicesAreUnequal();
    void equalChoicesCompareTheChosenAlternativesAlone();
    void unsetAlternativeOnTheLeftEqualsAnything();
    void itemsWithoutChoiceAreAlwaysEqual();
    void comparingLeavesBothItemsInitialized();
};

void ValueItemTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(ValueItem::GetStaticObjectName(), QStringLiteral("ValueItem"));
    QCOMPARE(ValueItem().GetObjectName(), QStringLiteral("ValueItem"));
    QCOMPARE(ValueItem::GetId(), Q_INT64_C(2797889743));
}

void ValueItemTest::theTenKindsHaveTheirNamesInThisOrder()
{
    const QStringList names = {QStringLiteral("ValueBoolean"),      QStringLiteral("ValueFloat"),
                               QStringLiteral("ValueInt"),          QStringLiteral("ValueInt64"),
                               QStringLiteral("ValueNumericFloat"), QStringLiteral("ValueNumericInt"),
                               QStringLiteral("ValueNumericInt64"), QStringLiteral("ValueSelection"),
                               QStringLiteral("ValueString"),       QStringLiteral("ValueStringList")};
    QCOMPARE(ValueItem::GetChoiceValueItems(), Model::withNewNames<JobXml::Kinds>(names));
    const ValueItem item;
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(item.ChoiceValueItemToName(Choice(i)), names.at(i));
        QCOMPARE(item.NameToChoiceValueItem(names.at(i)), Choice(i));
    }
    QVERIFY(item.ChoiceValueItemToName(Choice(255)).isNull());
    QCOMPARE(Choice::ValueNumericInt, Choice(5));
    QCOMPARE(Choice::None, Choice(255));
}

void ValueItemTest::nameIsFoundOnlyIfSpelledExactly()
{
    const ValueItem item;
    QCOMPARE(item.NameToChoiceValueItem(QStringLiteral("ValueSelection")), Choice(7));
    QCOMPARE(item.NameToChoiceValueItem(QStringLiteral("valueselection")), Choice(255));
    QCOMPARE(item.NameToChoiceValueItem(QStringLiteral("ValueSelection ")), Choice(255));
    QCOMPARE(item.NameToChoiceValueItem(QString()), Choice(255));
}

void ValueItemTest::everyChoiceButNoneIsValid()
{
    const ValueItem item;
    for (int i = 0; i < 255; ++i)
        QVERIFY2(item.IsValidChoiceValueItem(Choice(i)), qPrintable(QString::number(i)));
    QVERIFY(!item.IsValidChoiceValueItem(Choice(255)));
}

void ValueItemTest::aNewItemHasChosenNothing()
{
    const ValueItem item;
    QVERIFY(!item.HasData());
    QVERIFY(!item.AnyData());
    QCOMPARE(setKinds(item), QVector<int>());
    QVERIFY(!item.IsInitialized());
    QCOMPARE(item.GetChoiceValueItem(), Choice(255));
    QVERIFY(item.IsInitialized());
    QVERIFY(!item.HasData());
    QVERIFY(!item.AnyData());
}

void ValueItemTest::aNewItemIsRefusedBeforeAnythingIsWritten()
{
    const ValueItem item;
    QCOMPARE(thrownBy([&] { item.Check(); }), QString::fromLatin1(notInitialized));

    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { item.GetXml(writer); }), QString::fromLatin1(notInitialized));
    QCOMPARE(xml, QString());

    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    QCOMPARE(thrownBy([&] { return item.GetBinary(stream, 1, true); }), QString::fromLatin1(notInitialized));
    QCOMPARE(record, QByteArray());
}

void ValueItemTest::theSetterChoosesAndMarks()
{
    QFETCH(int, kind);
    ValueItem item;
    kinds().at(kind).setSample(item);
    QCOMPARE(item.GetChoiceValueItem(), Choice(kind));
    QCOMPARE(setKinds(item), QVector<int>{kind});
    QVERIFY(item.HasData());
    QVERIFY(item.AnyData());
    QVERIFY(kinds().at(kind).look(item).HasData());
    QCOMPARE(thrownBy([&] { item.Check(); }), QString());
}

void ValueItemTest::theModifiableGetterChoosesAndMarks()
{
    QFETCH(int, kind);
    ValueItem item;
    kinds().at(kind).modify(item);
    QCOMPARE(item.GetChoiceValueItem(), Choice(kind));
    QCOMPARE(setKinds(item), QVector<int>{kind});
    QVERIFY(!item.HasData());
    QVERIFY(item.AnyData());
}

void ValueItemTest::theConstGetterNeitherChoosesNorMarksNorRefuses()
{
    QFETCH(int, kind);
    const ValueItem untouched;
    QVERIFY(!kinds().at(kind).look(untouched).HasData());
    QVERIFY(untouched.IsInitialized());
    QCOMPARE(untouched.GetChoiceValueItem(), Choice::None);
    QCOMPARE(setKinds(untouched), QVector<int>());

    const int other = (kind + 1) % kinds().size();
    ValueItem item;
    kinds().at(other).setSample(item);
    QVERIFY(!kinds().at(kind).look(item).HasData());
    QCOMPARE(item.GetChoiceValueItem(), Choice(other));
    QCOMPARE(setKinds(item), QVector<int>{other});
}

void ValueItemTest::resettingAnAlternativeLeavesTheChoice()
{
    QFETCH(int, kind);
    ValueItem item;
    kinds().at(kind).setSample(item);
    kinds().at(kind).reset(item);
    QCOMPARE(setKinds(item), QVector<int>());
    QCOMPARE(item.GetChoiceValueItem(), Choice(kind));
    QVERIFY(!kinds().at(kind).look(item).IsInitialized());
    QVERIFY(!item.HasData());
    QVERIFY(item.AnyData());
}

void ValueItemTest::everyAlternativeIsValid()
{
    QFETCH(int, kind);
    QVERIFY(kinds().at(kind).isValid(ValueItem()));
}

void ValueItemTest::choosingAnotherKeepsWhatWasSet()
{
    ValueItem item;
    item.SetValueFloat(sample<ValueFloat>("f", 2.5f));
    item.SetValueString(sample<ValueString>("t", QStringLiteral("on")));
    QCOMPARE(item.GetChoiceValueItem(), Choice(8));
    QCOMPARE(setKinds(item), (QVector<int>{1, 8}));
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem><ValueString id=\"t\" value=\"on\"/></ValueItem>"));

    item.ResetValueString();
    QCOMPARE(setKinds(item), QVector<int>{1});
    QCOMPARE(item.GetChoiceValueItem(), Choice(8));
    QCOMPARE(thrownBy([&] { item.Check(); }),
             QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. The mandatory member (choice "
                            "element) m_valueString is not set."));
    QCOMPARE(std::as_const(item).GetValueFloat().Getvalue(), 2.5f);
}

void ValueItemTest::resettingTheChoiceTouchesNoAlternative()
{
    ValueItem item;
    item.SetValueInt(sample<ValueInt>("i", 7));
    item.ResetChoiceValueItem();
    QCOMPARE(item.GetChoiceValueItem(), Choice::None);
    QCOMPARE(setKinds(item), QVector<int>{2});
    QCOMPARE(std::as_const(item).GetValueInt().Getvalue(), 7);
    QVERIFY(!item.HasData());
    QVERIFY(!item.AnyData());
}

void ValueItemTest::resettingOfANewItemLeavesItWithoutData()
{
    ValueItem item;
    item.ResetChoiceValueItem();
    for (const Kind &each : kinds())
        each.reset(item);
    item.Reset();
    QVERIFY(!item.IsInitialized());
}

void ValueItemTest::initChoiceStoresNothing()
{
    for (const int choice : {0, 2, 9, 10, 254}) {
        ValueItem item;
        item.SetValueFloat(sample<ValueFloat>("f", 2.5f));
        QCOMPARE(thrownBy([&] { item.InitChoice(Choice(choice)); }), QString());
        QCOMPARE(item.GetChoiceValueItem(), Choice(255));
        QCOMPARE(setKinds(item), QVector<int>());
        QVERIFY(!std::as_const(item).GetValueFloat().HasData());
    }
    ValueItem again; // the argument may be the item's own choice, which is reset before it is looked at
    again.SetValueFloat(sample<ValueFloat>("f", 2.5f));
    QCOMPARE(thrownBy([&] { again.InitChoice(again.GetChoiceValueItem()); }), QString());
    ValueItem untouched;
    untouched.InitChoice(Choice(2));
    QVERIFY(untouched.IsInitialized());
    QVERIFY(!untouched.AnyData());
}

void ValueItemTest::initChoiceOfNoneThrowsAfterResetting()
{
    for (const bool validate : {true, false}) {
        ValueItem item;
        item.SetValidate(validate);
        item.SetValueInt(sample<ValueInt>("i", 7));
        QCOMPARE(thrownBy([&] { item.InitChoice(Choice(255)); }),
                 QStringLiteral("OutOfRangeException: Invalid enum value set in 'ValueItem'."));
        QCOMPARE(item.GetChoiceValueItem(), Choice::None);
        QCOMPARE(setKinds(item), QVector<int>());
    }
}

void ValueItemTest::resetForgetsChoiceAndAlternatives()
{
    ValueItem item;
    for (const Kind &each : kinds())
        each.setSample(item);
    item.Reset();
    QCOMPARE(item.GetChoiceValueItem(), Choice::None);
    QCOMPARE(setKinds(item), QVector<int>());
    for (const Kind &each : kinds())
        QVERIFY2(!each.look(item).IsInitialized(), qPrintable(each.name));
}

void ValueItemTest::resetToDefaultLeavesTheItemInitialized()
{
    ValueItem untouched;
    untouched.ResetToDefault();
    QVERIFY(untouched.IsInitialized());
    QCOMPARE(untouched.GetChoiceValueItem(), Choice::None);

    ValueItem item;
    item.SetValueInt(sample<ValueInt>("i", 7));
    item.ResetToDefault();
    QVERIFY(item.IsInitialized());
    QCOMPARE(item.GetChoiceValueItem(), Choice::None);
    QCOMPARE(setKinds(item), QVector<int>());
}

void ValueItemTest::hasDataDependsOnTheChosenAlternativeAlone()
{
    // A snapshot can choose an alternative that is filled but not set: ValueInt "i" = 7.
    ValueItem item;
    readSnapshot(item,
                 bytes("00 00 02"
                       "03 00 00 00 02 00 69 00 00 00 00 00 00 00 07"));
    QCOMPARE(setKinds(item), QVector<int>());
    QVERIFY(item.HasData());
    QCOMPARE(thrownBy([&] { item.Check(); }),
             QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. The mandatory member (choice "
                            "element) m_valueInt is not set."));

    item.GetValueFloat();
    QVERIFY(!item.HasData());
}

void ValueItemTest::aChoiceBeyondTheKindsIsNoneButCountsAsAnyData_data()
{
    QTest::addColumn<int>("choice");
    QTest::addColumn<QByteArray>("snapshot");
    const char *const firstBeyond[] = {"04 00 0A", "04 00 0B", "04 00 0C", "04 00 0D",
                                       "04 00 0E", "04 00 0F", "04 00 10"};
    QTest::newRow("the first one") << JobXml::Kinds::size << QByteArray(firstBeyond[JobXml::Kinds::size - 10]);
    QTest::newRow("200") << 200 << QByteArray("04 00 C8");
}

void ValueItemTest::aChoiceBeyondTheKindsIsNoneButCountsAsAnyData()
{
    QFETCH(int, choice);
    QFETCH(QByteArray, snapshot);
    ValueItem item;
    QCOMPARE(readSnapshot(item, bytes(snapshot.constData())), 0);
    QCOMPARE(item.GetChoiceValueItem(), Choice(choice));
    QVERIFY(!item.HasData());
    QVERIFY(item.AnyData());
    QCOMPARE(thrownBy([&] { item.Check(); }), QString::fromLatin1(notInitialized));
    item.SetValidate(false);
    QCOMPARE(xmlOf(item), QStringLiteral("<ValueItem/>"));
    QCOMPARE(hex(recordOf(item)), hex("00 00 00 00"));
    QCOMPARE(hex(snapshotOf(item)), hex(snapshot.constData()));
}

void ValueItemTest::checkReportsWhatTheChoiceLacks_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("set");
    QTest::addColumn<QString>("message");

    // clang-format off
    QTest::newRow("nothing chosen") << -1 << false << QStringLiteral("ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized");
    QTest::newRow("ValueBoolean not set") << 0 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueBoolean is not set.");
    QTest::newRow("ValueFloat not set") << 1 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueFloat is not set.");
    QTest::newRow("ValueInt not set") << 2 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueInt is not set.");
    QTest::newRow("ValueInt64 not set") << 3 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueInt64 is not set.");
    QTest::newRow("ValueNumericFloat not set") << 4 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueNumericFloat is not set.");
    QTest::newRow("ValueNumericInt not set") << 5 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueNumericInt is not set.");
    QTest::newRow("ValueNumericInt64 not set") << 6 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueNumericInt64 is not set.");
    QTest::newRow("ValueSelection not set") << 7 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueSelection is not set.");
    QTest::newRow("ValueString not set") << 8 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueString is not set.");
    QTest::newRow("ValueStringList not set") << 9 << false << QStringLiteral("ValueItem:Check failed. The mandatory member (choice element) m_valueStringList is not set.");
    QTest::newRow("ValueBoolean without data") << 0 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueBoolean is not set.");
    QTest::newRow("ValueFloat without data") << 1 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueFloat is not set.");
    QTest::newRow("ValueInt without data") << 2 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueInt is not set.");
    QTest::newRow("ValueInt64 without data") << 3 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueInt64 is not set.");
    QTest::newRow("ValueNumericFloat without data") << 4 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueNumericFloat is not set.");
    QTest::newRow("ValueNumericInt without data") << 5 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueNumericInt is not set.");
    QTest::newRow("ValueNumericInt64 without data") << 6 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueNumericInt64 is not set.");
    QTest::newRow("ValueSelection without data") << 7 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueSelection is not set.");
    QTest::newRow("ValueString without data") << 8 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueString is not set.");
    QTest::newRow("ValueStringList without data") << 9 << true << QStringLiteral("ValueItem:Check failed. Mandatory data of the member (choice element) m_valueStringList is not set.");
    // clang-format on
}

void ValueItemTest::checkReportsWhatTheChoiceLacks()
{
    QFETCH(int, kind);
    QFETCH(bool, set);
    QFETCH(QString, message);
    ValueItem item;
    if (kind >= 0)
        kinds().at(kind).modify(item);
    if (kind >= 0 && !set)
        kinds().at(kind).reset(item);
    const QString expected = QStringLiteral("IncompleteDefinitionException: ") + message;
    QCOMPARE(thrownBy([&] { item.Check(); }), expected);
    QCOMPARE(thrownBy([&] { item.Check(true); }), expected);
    QCOMPARE(thrownBy([&] { xmlOf(item); }), expected);
    QCOMPARE(thrownBy([&] { recordOf(item); }), expected);
}

void ValueItemTest::checkPassesWithoutValidation()
{
    QFETCH(int, kind);
    ValueItem item = withoutValidation();
    QCOMPARE(thrownBy([&] { item.Check(); }), QString());
    QVERIFY(item.IsInitialized());
    kinds().at(kind).modify(item);
    QCOMPARE(thrownBy([&] { item.Check(); }), QString());
    kinds().at(kind).reset(item);
    QCOMPARE(thrownBy([&] { item.Check(); }), QString());
}

void ValueItemTest::checkDoesNotEnterTheAlternative()
{
    // A list of texts that has data, with an item that has none.
    ValueItem item;
    item.SetValueStringList(sampleStringList());
    item.GetValueStringList().SetStringItem({StringItem()});
    QCOMPARE(thrownBy([&] { item.Check(); }), QString());
    const QString missing = QStringLiteral("OutOfRangeException: StringItem: Please set value properly.");
    QCOMPARE(thrownBy([&] { xmlOf(item); }), missing);
    QCOMPARE(thrownBy([&] { recordOf(item); }), missing);
}

void ValueItemTest::flagAndLoggerPropagateToAllAlternatives()
{
    QFETCH(int, kind);
    ValueItem item = withoutValidation();
    QVERIFY(!kinds().at(kind).look(item).GetValidate()); // created after the flag was set
    const auto logger = std::make_shared<REPORTGENERATOR::Logger>();
    item.GetValueInt();
    item.SetValidate(true);
    item.SetLogger(logger);
    QVERIFY(kinds().at(kind).look(item).GetValidate());
    QCOMPARE(kinds().at(kind).look(item).GetLogger(), logger);
}

void ValueItemTest::differentChoicesAreUnequal()
{
    ValueItem number;
    number.SetValueInt(sample<ValueInt>("a", 1));
    ValueItem bigNumber;
    bigNumber.SetValueInt64(sample<ValueInt64>("a", 1));
    QVERIFY(!(number == bigNumber));
    QVERIFY(number != bigNumber);
    QVERIFY(number != ValueItem());
    QVERIFY(ValueItem() != number);
}

void ValueItemTest::equalChoicesCompareTheChosenAlternativesAlone()
{
    ValueItem left;
    left.SetValueFloat(sample<ValueFloat>("f", 2.5f));
    left.SetValueInt(sample<ValueInt>("a", 1));
    ValueItem right;
    right.SetValueInt(sample<ValueInt>("a", 1));
    QVERIFY(left == right);
    QVERIFY(!(left != right));
    right.GetValueInt().Setvalue(2);
    QVERIFY(left != right);
}

void ValueItemTest::unsetAlternativeOnTheLeftEqualsAnything()
{
    ValueItem unset;
    unset.GetValueInt();
    unset.ResetValueInt();
    ValueItem filled;
    filled.SetValueInt(sample<ValueInt>("a", 1));
    QVERIFY(unset == filled);
    QVERIFY(filled != unset); // here the left one is set, and its value is another
}

void ValueItemTest::itemsWithoutChoiceAreAlwaysEqual()
{
    ValueItem filled;
    filled.SetValueInt(sample<ValueInt>("a", 1));
    filled.ResetChoiceValueItem();
    QVERIFY(filled == ValueItem());
    QVERIFY(ValueItem() == filled);

    ValueItem left;
    ValueItem right;
    readSnapshot(left, bytes("01 00 C8"));
    readSnapshot(right, bytes("02 00 C8"));
    QVERIFY(left == right);
    QVERIFY(left != ValueItem());
}

void ValueItemTest::comparingLeavesBothItemsInitialized()
{
    ValueItem left;
    ValueItem right;
    QVERIFY(left == right);
    QVERIFY(!left.IsInitialized());
    QVERIFY(!right.IsInitialized());
    left.ResetToDefault();
    QVERIFY(left == right);
    QVERIFY(right.IsInitialized());
    ValueItem other;
    QVERIFY(other == left);
    QVERIFY(other.IsInitialized());
}

TEST_SUITE(ValueItemTest)
#include "tst_ValueItem.moc"
