// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;
using REPORTGENERATOR::ObjectTypes;

namespace {

const char missingId[] = "OutOfRangeException: ValueBoolean: Please set id properly.";
const char missingValue[] = "OutOfRangeException: ValueBoolean: Please set value properly.";

/// Records how the base calls its operations.
class Observed : public ValueBoolean
{
public:
    void Reset() override
    {
        ++resets;
        ValueBoolean::Reset();
    }
    using ValueBoolean::Check;
    void Check(bool flag) const override { checkedWith.append(flag); }

    int resets = 0;
    mutable QVector<bool> checkedWith;
};

} // namespace

/// The state of a switch, as an example for the state of every class.
class ValueBooleanTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass();
    void everyMemberStoresAndResets();
    void onlyANullIdIsInvalid();
    void newSwitchHasNoDataAndResettingAddsNone();
    void readingAMemberInitializes();
    void queryingFlagsDoesNotInitialize();
    void aNullIdIsRefusedOnlyWhileValidating();
    void anEmptyIdIsAValueEvenWhileValidating();
    void nullIdIsSetButNotData();
    void resettingTheValueRestoresFalse();
    void anIdAloneIsAnyDataButNotAllData();
    void aValueAloneIsAnyDataButNotAllData();
    void hasDataRequiresTheTextAndCheckItsFlagToo();

    void checkWithoutArgumentPassesFalse();
    void theArgumentOfCheckMakesNoDifference();
    void checkNamesTheFirstMissingMemberOnly();
    void checkLeavesTheSwitchInitialized();
    void messagesCarryTheNameOfTheObject();

    void resettingClearsFlagsAndValues();
    void resettingToDefaultInitializesButSetsNothing();
    void resettingToDefaultResetsOnlyWhatWasThere();
    void settingTheObjectTypeDoesNothing();

    void aMemberSetOnOneSideOnlyMakesTheDifference();
    void membersSetOnBothSidesAreCompared();
    void nothingSetIsEqualWithAndWithoutABlock();
    void valuesOfUnsetMembersAreNotCompared();

    void copyHasTypeAndFlagAndTheNameOfTheClass();
    void aCopyOfAValidatingSwitchValidatesWithoutTheLogger();
    void aCopyIsInitializedExactlyWhenItsSourceWas();
    void settingOneOfTwoAssignedSwitchesLeavesTheOtherUnchanged();
    void assignmentKeepsFlagLoggerAndName();
    void assignmentFromANewSwitchLeavesNothing();
};

void ValueBooleanTest::objectHasNameAndIdentifierOfItsClass()
{
    QCOMPARE(ValueBoolean::GetStaticObjectName(), QStringLiteral("ValueBoolean"));
    QCOMPARE(ValueBoolean().GetObjectName(), QStringLiteral("ValueBoolean"));
    QCOMPARE(ValueBoolean::GetId(), Q_INT64_C(3371968097));
}

void ValueBooleanTest::everyMemberStoresAndResets()
{
    storesAndResets(ACCESSORS(ValueBoolean, id), QStringLiteral("x"), QString());
    storesAndResets(ACCESSORS(ValueBoolean, value), true, false);
}

void ValueBooleanTest::onlyANullIdIsInvalid()
{
    const ValueBoolean object;
    QVERIFY(!object.IsValidid(QString()));
    QVERIFY(object.IsValidid(QStringLiteral("")));
    QVERIFY(object.IsValidid(QStringLiteral("x")));
}

void ValueBooleanTest::newSwitchHasNoDataAndResettingAddsNone()
{
    ValueBoolean object;
    QVERIFY(!object.IsInitialized());
    QVERIFY(!object.HasData());
    QVERIFY(!object.AnyData());
    object.Reset();
    QVERIFY(!object.IsInitialized());
}

void ValueBooleanTest::readingAMemberInitializes()
{
    const ValueBoolean object;
    QCOMPARE(object.Getvalue(), false);
    QVERIFY(object.IsInitialized());
    QVERIFY(!object.AnyData());
}

void ValueBooleanTest::queryingFlagsDoesNotInitialize()
{
    ValueBoolean object;
    QVERIFY(!object.IsidSet());
    QVERIFY(!object.IsvalueSet());
    object.Resetid();
    object.Resetvalue();
    QVERIFY(!object.IsInitialized());
}

void ValueBooleanTest::aNullIdIsRefusedOnlyWhileValidating()
{
    refusesNull(ACCESSORS(ValueBoolean, id),
                QStringLiteral("OutOfRangeException: ValueBoolean: Please set id properly (origin: Setter)."));
}

void ValueBooleanTest::anEmptyIdIsAValueEvenWhileValidating()
{
    ValueBoolean object;
    object.Setid(QStringLiteral(""));
    QVERIFY(object.IsidSet());
    QVERIFY(object.AnyData());
    object.Setvalue(false);
    QVERIFY(object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
}

void ValueBooleanTest::nullIdIsSetButNotData()
{
    auto object = withoutValidation<ValueBoolean>();
    object.Setid(QString());
    QVERIFY(object.IsidSet());
    QVERIFY(!object.AnyData());
    object.Setvalue(true);
    QVERIFY(!object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingId));
}

void ValueBooleanTest::resettingTheValueRestoresFalse()
{
    ValueBoolean object;
    object.Setvalue(true);
    object.Resetvalue();
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getvalue(), false);
}

void ValueBooleanTest::anIdAloneIsAnyDataButNotAllData()
{
    ValueBoolean object;
    object.Setid(QStringLiteral("x"));
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
}

void ValueBooleanTest::aValueAloneIsAnyDataButNotAllData()
{
    ValueBoolean object;
    object.Setvalue(false);
    QVERIFY(object.AnyData());
    QVERIFY(!object.HasData());
}

void ValueBooleanTest::hasDataRequiresTheTextAndCheckItsFlagToo()
{
    ValueBoolean object;
    readSnapshot(object, bytes("02 00 00 00 02 00 78 01")); // an id that is there and not set
    QVERIFY(!object.IsidSet());
    QVERIFY(object.HasData());
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingId));

    ValueBoolean withIdAlone;
    readSnapshot(withIdAlone, bytes("00 00 00 00 02 00 78 01")); // and a value that is there and not set
    QVERIFY(withIdAlone.AnyData());
    QVERIFY(!withIdAlone.HasData());
    withIdAlone.Resetid();
    QVERIFY(!withIdAlone.AnyData());
}

void ValueBooleanTest::checkWithoutArgumentPassesFalse()
{
    const Observed object;
    object.Check();
    QCOMPARE(object.checkedWith, QVector<bool>{false});
}

void ValueBooleanTest::theArgumentOfCheckMakesNoDifference()
{
    for (const bool flag : {false, true}) {
        ValueBoolean object;
        QCOMPARE(thrownBy([&] { object.Check(flag); }), QLatin1String(missingId));
        object.Setid(QStringLiteral("x"));
        QCOMPARE(thrownBy([&] { object.Check(flag); }), QLatin1String(missingValue));
        object.Setvalue(false);
        QCOMPARE(thrownBy([&] { object.Check(flag); }), QString());
    }
}

void ValueBooleanTest::checkNamesTheFirstMissingMemberOnly()
{
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingId));
    object.Setvalue(true);
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingId));
    object.Setid(QStringLiteral("x"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    object.Resetvalue();
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));

    object.SetValidate(false); // an explicit check does not depend on the flag
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingValue));
}

void ValueBooleanTest::checkLeavesTheSwitchInitialized()
{
    const ValueBoolean object;
    QCOMPARE(thrownBy([&] { object.Check(); }), QLatin1String(missingId));
    QVERIFY(object.IsInitialized());
}

void ValueBooleanTest::messagesCarryTheNameOfTheObject()
{
    Renamed<ValueBoolean> object(QStringLiteral("Relay"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QStringLiteral("OutOfRangeException: Relay: Please set id properly."));
    QCOMPARE(thrownBy([&] { object.Setid(QString()); }),
             QStringLiteral("OutOfRangeException: Relay: Please set id properly (origin: Setter)."));
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("FF FF FF FF")); }),
             QStringLiteral("BinaryParsingException: Relay::SetBinary(...): Length error occurred during processing of "
                            "binary representation"));
    QCOMPARE(thrownBy([&] { readXml(object, QStringLiteral("<Relay value=\"\"/>")); }),
             QStringLiteral("InvalidXmlException: Please set a value or a default for the boolean 'value' in "
                            "'Relay'."));
}

void ValueBooleanTest::resettingClearsFlagsAndValues()
{
    auto object = sample<ValueBoolean>("x", true);
    object.Reset();
    QVERIFY(object.IsInitialized());
    QVERIFY(!object.IsidSet());
    QVERIFY(!object.IsvalueSet());
    QVERIFY(object.Getid().isNull());
    QCOMPARE(object.Getvalue(), false);
    QVERIFY(!object.AnyData());
}

void ValueBooleanTest::resettingToDefaultInitializesButSetsNothing()
{
    for (ValueBoolean object : {ValueBoolean(), sample<ValueBoolean>("x", true)}) {
        object.ResetToDefault();
        QVERIFY(object.IsInitialized());
        QVERIFY(!object.HasData());
        QVERIFY(!object.IsidSet());
        QVERIFY(!object.IsvalueSet());
        QVERIFY(object.Getid().isNull());
        QCOMPARE(object.Getvalue(), false);
    }
}

void ValueBooleanTest::resettingToDefaultResetsOnlyWhatWasThere()
{
    Observed object;
    object.ResetToDefault();
    QCOMPARE(object.resets, 0);
    object.ResetToDefault();
    QCOMPARE(object.resets, 1);
}

void ValueBooleanTest::settingTheObjectTypeDoesNothing()
{
    ValueBoolean object;
    for (const int type : {0, 1, -1, 7}) {
        object.SetObjectType(ObjectTypes(type));
        QVERIFY(object.GetObjectType() == ObjectTypes::Undefined);
    }
}

void ValueBooleanTest::aMemberSetOnOneSideOnlyMakesTheDifference()
{
    ValueBoolean left;
    ValueBoolean right;
    left.Setvalue(false); // the default, but set
    QVERIFY(left != right);
    QVERIFY(right != left);
    QVERIFY(!(left == right));
    right.Getvalue(); // a block makes no difference
    QVERIFY(left != right);
    QVERIFY(right != left);

    right.Setvalue(false);
    QVERIFY(left == right);
    right.Setid(QStringLiteral(""));
    QVERIFY(left != right);
    QVERIFY(right != left);
}

void ValueBooleanTest::membersSetOnBothSidesAreCompared()
{
    const auto object = sample<ValueBoolean>("x", true);
    QVERIFY(object == sample<ValueBoolean>("x", true));
    QVERIFY(!(object != sample<ValueBoolean>("x", true)));
    QVERIFY(object != sample<ValueBoolean>("x", false));
    QVERIFY(object != sample<ValueBoolean>("y", true));
}

void ValueBooleanTest::nothingSetIsEqualWithAndWithoutABlock()
{
    const ValueBoolean bare;
    const ValueBoolean initialized;
    initialized.Getid();
    QVERIFY(bare == ValueBoolean());
    QVERIFY(bare == initialized);
    QVERIFY(initialized == bare);
    QVERIFY(!(bare != initialized));
}

void ValueBooleanTest::valuesOfUnsetMembersAreNotCompared()
{
    ValueBoolean left;
    ValueBoolean right;
    readSnapshot(left, bytes("00 00 00 00 02 00 78 01"));
    readSnapshot(right, bytes("00 00 00 00 02 00 79 00"));
    QVERIFY(left.Getid() != right.Getid());
    QVERIFY(left.Getvalue() != right.Getvalue());
    QVERIFY(left == right);
    QVERIFY(left == ValueBoolean());
}

void ValueBooleanTest::copyHasTypeAndFlagAndTheNameOfTheClass()
{
    Renamed<ValueBoolean> original(QStringLiteral("Relay"));
    original.Setid(QStringLiteral("x"));
    for (const bool validate : {true, false}) {
        original.SetValidate(validate);
        ValueBoolean copy(original);
        QVERIFY(copy.GetObjectType() == original.GetObjectType());
        QCOMPARE(copy.GetValidate(), validate);
        QCOMPARE(copy.GetObjectName(), QStringLiteral("ValueBoolean"));
        QCOMPARE(copy.Getid(), QStringLiteral("x"));
    }
}

void ValueBooleanTest::aCopyOfAValidatingSwitchValidatesWithoutTheLogger()
{
    ValueBoolean original;
    original.SetLogger(std::make_shared<Logger>());
    ValueBoolean copy(original);
    QVERIFY(copy.GetValidate());
    QVERIFY(!copy.GetLogger());
    QVERIFY(!thrownBy([&] { copy.Setid(QString()); }).isNull());
}

void ValueBooleanTest::aCopyIsInitializedExactlyWhenItsSourceWas()
{
    const ValueBoolean original;
    const ValueBoolean copyOfNothing(original);
    QVERIFY(!copyOfNothing.IsInitialized());
    original.Getvalue();
    const ValueBoolean copy(original);
    QVERIFY(copy.IsInitialized());
}

void ValueBooleanTest::settingOneOfTwoAssignedSwitchesLeavesTheOtherUnchanged()
{
    const auto a = sample<ValueBoolean>("x", false);
    ValueBoolean b;
    b = a;
    QVERIFY(a == b);
    b.Setvalue(true);
    QCOMPARE(a.Getvalue(), false);
    QCOMPARE(b.Getvalue(), true);
    QCOMPARE(b.Getid(), QStringLiteral("x"));
}

void ValueBooleanTest::assignmentKeepsFlagLoggerAndName()
{
    auto original = sample<ValueBoolean>("x", true);
    original.SetLogger(std::make_shared<Logger>());
    const auto logger = std::make_shared<Logger>();
    Renamed<ValueBoolean> target(QStringLiteral("Relay"));
    target.SetValidate(false);
    target.SetLogger(logger);
    static_cast<ValueBoolean &>(target) = original;
    QCOMPARE(target.Getid(), QStringLiteral("x"));
    QCOMPARE(target.GetValidate(), false);
    QCOMPARE(target.GetLogger(), logger);
    QCOMPARE(target.GetObjectName(), QStringLiteral("Relay"));
}

void ValueBooleanTest::assignmentFromANewSwitchLeavesNothing()
{
    auto object = sample<ValueBoolean>("x", true);
    object = ValueBoolean();
    QVERIFY(!object.IsInitialized());
    object = sample<ValueBoolean>("x", true);
    const ValueBoolean nothing;
    object = nothing;
    QVERIFY(!object.IsInitialized());
}

TEST_SUITE(ValueBooleanTest)
#include "tst_ValueBoolean.moc"
