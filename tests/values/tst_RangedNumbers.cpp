// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

/// The classes with an id, a number and its range: ValueNumericFloat, ValueNumericInt and ValueNumericInt64. Each row
/// names its class and has the texts and bytes of this class in full.

namespace {

/// Calls the function with an empty object of the class that the row names.
template <class Function>
void withObjectOf(const QString &className, Function function)
{
    if (className == QLatin1String("ValueNumericFloat"))
        function(ValueNumericFloat());
    else if (className == QLatin1String("ValueNumericInt"))
        function(ValueNumericInt());
    else if (className == QLatin1String("ValueNumericInt64"))
        function(ValueNumericInt64());
    else
        qFatal("no class with a ranged number is named %s", qPrintable(className));
}

// An object of the class with every member set.

ValueNumericFloat full(const ValueNumericFloat &)
{
    return sample<ValueNumericFloat>("g", -0.5f, -1.f, 3.f, 0.25f);
}

ValueNumericInt full(const ValueNumericInt &)
{
    return sample<ValueNumericInt>("g", 258, -1, 10, -2);
}

ValueNumericInt64 full(const ValueNumericInt64 &)
{
    return sample<ValueNumericInt64, qint64>("g", 4294967296, -1, std::numeric_limits<qint64>::max(), -2);
}

/// One row for each class.
void classRows()
{
    QTest::addColumn<QString>("className");
    for (const char *className : {"ValueNumericFloat", "ValueNumericInt", "ValueNumericInt64"})
        QTest::newRow(className) << QString::fromLatin1(className);
}

void addEncodingColumns(const char *literal)
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<StreamSettings>("settings");
    QTest::addColumn<QByteArray>(literal);
}

void addEncoding(const char *className, const char *description, const char *literal,
                 StreamSettings settings = stockSettings)
{
    newRow(className, description) << settings << QByteArray(literal);
}

} // namespace

class RangedNumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass_data();
    void objectHasNameAndIdentifierOfItsClass();
    void everyMemberStoresAndResets_data() { classRows(); }
    void everyMemberStoresAndResets();
    void nullIdIsRefusedOnlyWhileValidating_data();
    void nullIdIsRefusedOnlyWhileValidating();
    void everyValueIsValidIncludingNullId_data() { classRows(); }
    void everyValueIsValidIncludingNullId();
    void checkNamesTheFirstMissingMember_data() { classRows(); }
    void checkNamesTheFirstMissingMember();
    void hasDataRequiresIdAndAllFourNumbers_data() { classRows(); }
    void hasDataRequiresIdAndAllFourNumbers();
    void reversedRangePassesCheckAndIsReadBack_data() { classRows(); }
    void reversedRangePassesCheckAndIsReadBack();
    void equalityComparesEveryMember_data() { classRows(); }
    void equalityComparesEveryMember();
    void floatsAreComparedExactlyAndNaNEqualsNothing();

    void objectHasThisElement_data();
    void objectHasThisElement();
    void objectHasThisRecord_data();
    void objectHasThisRecord();
    void objectHasThisSnapshot_data();
    void objectHasThisSnapshot();

    void minusOneIsEightBytesOfOnes_data();
    void minusOneIsEightBytesOfOnes();
    void numbersOf64BitsAreNarrowedToInt();
    void floatsAreWrittenWithTwoDecimals();
    void unsetNumbersAreWrittenAsTheirDefaults_data();
    void unsetNumbersAreWrittenAsTheirDefaults();
    void elementsAreReadLikeAttributes_data() { classRows(); }
    void elementsAreReadLikeAttributes();
    void missingRecordsLeaveMembersUnchanged_data() { classRows(); }
    void missingRecordsLeaveMembersUnchanged();
    void textOfARecordThatIsNotANumberIsStoredAsZero();
    void numbersOfOtherTypesAreSkipped();
    void snapshotIsReadWithoutSetters_data();
    void snapshotIsReadWithoutSetters();
    void wrongLengthThrowsLengthError_data();
    void wrongLengthThrowsLengthError();
};

void RangedNumbersTest::objectHasNameAndIdentifierOfItsClass_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<qint64>("identifier");
    QTest::newRow("ValueNumericFloat") << QStringLiteral("ValueNumericFloat") << Q_INT64_C(0x4BA90080);
    QTest::newRow("ValueNumericInt") << QStringLiteral("ValueNumericInt") << Q_INT64_C(0xC55D0588);
    QTest::newRow("ValueNumericInt64") << QStringLiteral("ValueNumericInt64") << Q_INT64_C(0x044D7AEC);
}

void RangedNumbersTest::objectHasNameAndIdentifierOfItsClass()
{
    QFETCH(QString, className);
    QFETCH(qint64, identifier);
    withObjectOf(className, [&](const auto &object) {
        QCOMPARE(object.GetStaticObjectName(), className);
        QCOMPARE(object.GetObjectName(), className);
        QCOMPARE(object.GetId(), identifier);
    });
}

void RangedNumbersTest::everyMemberStoresAndResets()
{
    QFETCH(QString, className);
    withObjectOf(className, [](const auto &empty) {
        using Object = std::decay_t<decltype(empty)>;
        using Number = NumberOf<Object>;
        storesAndResets(ACCESSORS(Object, id), QStringLiteral("g"), QString());
        storesAndResets(ACCESSORS(Object, value), Number(5), Number(0));
        storesAndResets(ACCESSORS(Object, min), Number(-6), Number(0));
        storesAndResets(ACCESSORS(Object, max), Number(7), Number(0));
        storesAndResets(ACCESSORS(Object, step), Number(-8), Number(0));
    });
}

void RangedNumbersTest::nullIdIsRefusedOnlyWhileValidating_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("ValueNumericFloat")
        << QStringLiteral("ValueNumericFloat")
        << QStringLiteral("OutOfRangeException: ValueNumericFloat: Please set id properly (origin: Setter).");
    QTest::newRow("ValueNumericInt")
        << QStringLiteral("ValueNumericInt")
        << QStringLiteral("OutOfRangeException: ValueNumericInt: Please set id properly (origin: Setter).");
    QTest::newRow("ValueNumericInt64")
        << QStringLiteral("ValueNumericInt64")
        << QStringLiteral("OutOfRangeException: ValueNumericInt64: Please set id properly (origin: Setter).");
}

void RangedNumbersTest::nullIdIsRefusedOnlyWhileValidating()
{
    QFETCH(QString, className);
    QFETCH(QString, refusal);
    withObjectOf(className, [&](const auto &empty) {
        using Object = std::decay_t<decltype(empty)>;
        refusesNull(ACCESSORS(Object, id), refusal);
    });
}

void RangedNumbersTest::everyValueIsValidIncludingNullId()
{
    QFETCH(QString, className);
    withObjectOf(className, [](const auto &object) {
        using Number = NumberOf<std::decay_t<decltype(object)>>;
        QVERIFY(object.IsValidid(QString())); // although the setter refuses it
        QVERIFY(object.IsValidid(QStringLiteral("g")));
        for (const Number number : {std::numeric_limits<Number>::lowest(), Number(-1), Number(0),
                                    std::numeric_limits<Number>::max(), std::numeric_limits<Number>::quiet_NaN()}) {
            QVERIFY(object.IsValidvalue(number));
            QVERIFY(object.IsValidmin(number));
            QVERIFY(object.IsValidmax(number));
            QVERIFY(object.IsValidstep(number));
        }
    });
}

// The members are set in the order in which they are checked, except for those after the missing one.
void RangedNumbersTest::checkNamesTheFirstMissingMember()
{
    QFETCH(QString, className);
    const auto missing = [&](const char *member) {
        return QStringLiteral("OutOfRangeException: %1: Please set %2 properly.").arg(className, QLatin1String(member));
    };
    withObjectOf(className, [&](auto object) {
        auto withNullId(object);
        object.Setstep(1);
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("id"));
        object.Resetstep();
        object.Setid(QStringLiteral("g"));
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("value"));
        object.Setvalue(0);
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("min"));
        object.Setmin(0);
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("max"));
        object.Setmax(0);
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("step"));
        QCOMPARE(thrownBy([&] { object.Check(true); }), missing("step"));
        object.Setstep(0);
        QCOMPARE(thrownBy([&] { object.Check(); }), QString());
        object.Resetvalue();
        QCOMPARE(thrownBy([&] { object.Check(); }), missing("value"));

        withNullId.SetValidate(false);
        withNullId.Setid(QString());
        QCOMPARE(thrownBy([&] { withNullId.Check(); }), missing("id"));
    });
}

void RangedNumbersTest::hasDataRequiresIdAndAllFourNumbers()
{
    QFETCH(QString, className);
    withObjectOf(className, [](auto object) {
        using Object = decltype(object);
        object.Setid(QStringLiteral("g"));
        QVERIFY(object.AnyData());
        object.Setvalue(0);
        object.Setmin(0);
        object.Setmax(0);
        QVERIFY(!object.HasData());
        object.Setstep(0);
        QVERIFY(object.HasData());
        for (const auto reset : {&Object::Resetid, &Object::Resetvalue, &Object::Resetmin, &Object::Resetmax}) {
            Object without(object);
            (without.*reset)();
            QVERIFY(!without.HasData());
        }
        for (const auto set : {&Object::Setvalue, &Object::Setmin, &Object::Setmax, &Object::Setstep}) {
            Object withOne;
            (withOne.*set)(0);
            QVERIFY(withOne.AnyData());
        }

        // An id that is there and not set is data, but does not pass the check.
        readSnapshot(object, snapshotOf(object).replace(0, 1, "\x1E"));
        QVERIFY(!object.IsidSet());
        QVERIFY(object.HasData());
        QVERIFY(!thrownBy([&] { object.Check(); }).isNull());
    });
}

// The library does not compare the numbers with each other.
void RangedNumbersTest::reversedRangePassesCheckAndIsReadBack()
{
    QFETCH(QString, className);
    withObjectOf(className, [](auto object) {
        using Object = decltype(object);
        object.Setid(QStringLiteral("g"));
        object.Setvalue(5);
        object.Setmin(10);
        object.Setmax(1);
        object.Setstep(-2);
        QCOMPARE(thrownBy([&] { object.Check(); }), QString());
        Object fromXml;
        readXml(fromXml, xmlOf(object));
        Object fromRecord;
        readRecord(fromRecord, recordOf(object));
        Object fromSnapshot;
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(object)), 0);
        for (Object *read : {&fromXml, &fromRecord, &fromSnapshot}) {
            QVERIFY(*read == object);
            QVERIFY(read->Getvalue() == 5);
            QVERIFY(read->Getmin() == 10);
            QVERIFY(read->Getmax() == 1);
            QVERIFY(read->Getstep() == -2);
        }
    });
}

// Two members are equal if both are set to the same number or both are not set.
void RangedNumbersTest::equalityComparesEveryMember()
{
    QFETCH(QString, className);
    withObjectOf(className, [](auto object) {
        using Object = decltype(object);
        object.Setid(QStringLiteral("g"));
        object.Setvalue(1);
        object.Setmin(2);
        object.Setmax(3);
        Object withStep(object);
        QVERIFY(object == withStep);
        withStep.Setstep(0);
        QVERIFY(object != withStep);
        QVERIFY(withStep != object);
        QVERIFY(Object() == Object());
        QVERIFY(Object() != object);

        const auto different = [&](auto change) {
            Object changed(object);
            change(changed);
            return changed != object && object != changed;
        };
        QVERIFY(different([](Object &changed) { changed.Setid(QStringLiteral("h")); }));
        QVERIFY(different([](Object &changed) { changed.Setvalue(9); }));
        QVERIFY(different([](Object &changed) { changed.Setmin(9); }));
        QVERIFY(different([](Object &changed) { changed.Setmax(9); }));
        QVERIFY(different([](Object &changed) { changed.Resetmin(); }));
        object.Setstep(1);
        QVERIFY(different([](Object &changed) { changed.Setstep(9); }));
    });
}

void RangedNumbersTest::floatsAreComparedExactlyAndNaNEqualsNothing()
{
    const ValueNumericFloat object = full(ValueNumericFloat());
    ValueNumericFloat other(object);
    other.Setstep(0.25f + 1e-7f); // the same with two decimals
    QVERIFY(other != object);
    other.Setstep(float(qQNaN()));
    QVERIFY(other != ValueNumericFloat(other));
}

void RangedNumbersTest::objectHasThisElement_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("element");
    QTest::newRow("ValueNumericFloat") << QStringLiteral("ValueNumericFloat")
                                       << QStringLiteral(
                                              "<ValueNumericFloat id=\"g\" value=\"-0.50\" min=\"-1.00\" max=\"3.00\" "
                                              "step=\"0.25\"/>");
    QTest::newRow("ValueNumericInt")
        << QStringLiteral("ValueNumericInt")
        << QStringLiteral("<ValueNumericInt id=\"g\" value=\"258\" min=\"-1\" max=\"10\" step=\"-2\"/>");
    QTest::newRow("ValueNumericInt64") << QStringLiteral("ValueNumericInt64")
                                       << QStringLiteral("<ValueNumericInt64 id=\"g\" value=\"4294967296\" min=\"-1\" "
                                                         "max=\"9223372036854775807\" step=\"-2\"/>");
}

void RangedNumbersTest::objectHasThisElement()
{
    QFETCH(QString, className);
    QFETCH(QString, element);
    withObjectOf(className, [&](const auto &empty) { hasElement(full(empty), element); });
}

void RangedNumbersTest::objectHasThisRecord_data()
{
    addEncodingColumns("record");
    const char ofFloats[] = "00 00 00 4F" // 79 bytes
                            "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
                            "E3 DF 64 9D 00 00 00 09 00 00 00 05 2D 30 2E 35 30" // value "-0.50"
                            "65 5B A9 DC 00 00 00 09 00 00 00 05 2D 31 2E 30 30" // min "-1.00"
                            "81 16 6A CB 00 00 00 08 00 00 00 04 33 2E 30 30" // max "3.00"
                            "A8 D4 64 CF 00 00 00 08 00 00 00 04 30 2E 32 35"; // step "0.25"
    addEncoding("ValueNumericFloat", "stock settings", ofFloats);
    addEncoding("ValueNumericFloat", "single precision makes no difference", ofFloats, singlePrecision);
    addEncoding("ValueNumericFloat", "little-endian",
                "4F 00 00 00"
                "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
                "9D 64 DF E3 09 00 00 00 05 00 00 00 2D 30 2E 35 30"
                "DC A9 5B 65 09 00 00 00 05 00 00 00 2D 31 2E 30 30"
                "CB 6A 16 81 08 00 00 00 04 00 00 00 33 2E 30 30"
                "CF 64 D4 A8 08 00 00 00 04 00 00 00 30 2E 32 35",
                littleEndian);
    addEncoding("ValueNumericInt", "stock settings",
                "00 00 00 4D" // 77 bytes
                "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
                "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 01 02" // value 258
                "68 56 54 A1 00 00 00 08 FF FF FF FF FF FF FF FF" // min -1
                "25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 0A" // max 10
                "43 76 6B 23 00 00 00 08 FF FF FF FF FF FF FF FE"); // step -2
    addEncoding("ValueNumericInt", "little-endian",
                "4D 00 00 00"
                "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
                "38 42 A4 0B 08 00 00 00 02 01 00 00 00 00 00 00"
                "A1 54 56 68 08 00 00 00 FF FF FF FF FF FF FF FF"
                "CC AF F6 25 08 00 00 00 0A 00 00 00 00 00 00 00"
                "23 6B 76 43 08 00 00 00 FE FF FF FF FF FF FF FF",
                littleEndian);
    addEncoding("ValueNumericInt64", "stock settings",
                "00 00 00 4D" // 77 bytes
                "2B 26 2D C9 00 00 00 05 00 00 00 01 67" // id "g"
                "64 A0 3F 86 00 00 00 08 00 00 00 01 00 00 00 00" // value 2^32
                "6A 28 E4 6A 00 00 00 08 FF FF FF FF FF FF FF FF" // min -1
                "86 12 33 63 00 00 00 08 7F FF FF FF FF FF FF FF" // max 2^63 - 1
                "27 D3 4B 73 00 00 00 08 FF FF FF FF FF FF FF FE"); // step -2
    addEncoding("ValueNumericInt64", "little-endian",
                "4D 00 00 00"
                "C9 2D 26 2B 05 00 00 00 01 00 00 00 67"
                "86 3F A0 64 08 00 00 00 00 00 00 00 01 00 00 00"
                "6A E4 28 6A 08 00 00 00 FF FF FF FF FF FF FF FF"
                "63 33 12 86 08 00 00 00 FF FF FF FF FF FF FF 7F"
                "73 4B D3 27 08 00 00 00 FE FF FF FF FF FF FF FF",
                littleEndian);
}

void RangedNumbersTest::objectHasThisRecord()
{
    QFETCH(QString, className);
    QFETCH(StreamSettings, settings);
    QFETCH(QByteArray, record);
    withObjectOf(className, [&](const auto &empty) { hasRecord(full(empty), record.constData(), settings); });
}

void RangedNumbersTest::objectHasThisSnapshot_data()
{
    addEncodingColumns("snapshot");
    addEncoding("ValueNumericFloat", "stock settings",
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "BF E0 00 00 00 00 00 00" // value -0.5, as wide as a double
                "BF F0 00 00 00 00 00 00" // min -1
                "40 08 00 00 00 00 00 00" // max 3
                "3F D0 00 00 00 00 00 00"); // step 0.25
    addEncoding("ValueNumericFloat", "single precision",
                "1F 00 00 00 02 00 67"
                "BF 00 00 00" // value -0.5
                "BF 80 00 00" // min -1
                "40 40 00 00" // max 3
                "3E 80 00 00", // step 0.25
                singlePrecision);
    addEncoding("ValueNumericFloat", "little-endian",
                "1F 02 00 00 00 67 00"
                "00 00 00 00 00 00 E0 BF"
                "00 00 00 00 00 00 F0 BF"
                "00 00 00 00 00 00 08 40"
                "00 00 00 00 00 00 D0 3F",
                littleEndian);
    addEncoding("ValueNumericInt", "stock settings",
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "00 00 00 00 00 00 01 02" // value 258
                "FF FF FF FF FF FF FF FF" // min -1
                "00 00 00 00 00 00 00 0A" // max 10
                "FF FF FF FF FF FF FF FE"); // step -2
    addEncoding("ValueNumericInt", "little-endian",
                "1F 02 00 00 00 67 00"
                "02 01 00 00 00 00 00 00"
                "FF FF FF FF FF FF FF FF"
                "0A 00 00 00 00 00 00 00"
                "FE FF FF FF FF FF FF FF",
                littleEndian);
    addEncoding("ValueNumericInt64", "stock settings",
                "1F" // all five set
                "00 00 00 02 00 67" // id "g"
                "00 00 00 01 00 00 00 00" // value 2^32
                "FF FF FF FF FF FF FF FF" // min -1
                "7F FF FF FF FF FF FF FF" // max 2^63 - 1
                "FF FF FF FF FF FF FF FE"); // step -2
    addEncoding("ValueNumericInt64", "little-endian",
                "1F 02 00 00 00 67 00"
                "00 00 00 00 01 00 00 00"
                "FF FF FF FF FF FF FF FF"
                "FF FF FF FF FF FF FF 7F"
                "FE FF FF FF FF FF FF FF",
                littleEndian);
}

void RangedNumbersTest::objectHasThisSnapshot()
{
    QFETCH(QString, className);
    QFETCH(StreamSettings, settings);
    QFETCH(QByteArray, snapshot);
    withObjectOf(className, [&](const auto &empty) { hasSnapshot(full(empty), snapshot.constData(), settings); });
}

void RangedNumbersTest::minusOneIsEightBytesOfOnes_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QByteArray>("recordOfMin");
    QTest::newRow("ValueNumericInt") << QStringLiteral("ValueNumericInt")
                                     << QByteArray("68 56 54 A1 00 00 00 08 FF FF FF FF FF FF FF FF");
    QTest::newRow("ValueNumericInt64") << QStringLiteral("ValueNumericInt64")
                                       << QByteArray("6A 28 E4 6A 00 00 00 08 FF FF FF FF FF FF FF FF");
}

void RangedNumbersTest::minusOneIsEightBytesOfOnes()
{
    QFETCH(QString, className);
    QFETCH(QByteArray, recordOfMin);
    withObjectOf(className, [&](auto object) {
        object.SetValidate(false);
        object.Setmin(-1);
        const QByteArray record = recordOf(object);
        QCOMPARE(hex(record.mid(4 + 12 + 16, 16)), hex(recordOfMin.constData()));
    });
}

void RangedNumbersTest::numbersOf64BitsAreNarrowedToInt()
{
    ValueNumericInt object;
    readRecord(object, bytes("00 00 00 10 68 56 54 A1 00 00 00 08 00 00 00 01 00 00 00 05")); // 2^32 + 5
    QVERIFY(object.IsminSet());
    QCOMPARE(object.Getmin(), 5);
    readSnapshot(object,
                 bytes("00 FF FF FF FF"
                       "00 00 00 01 00 00 00 05 00 00 00 01 FF FF FF FF"
                       "00 00 00 00 80 00 00 00 FF FF FF FF 00 00 00 07"));
    QCOMPARE(object.Getvalue(), 5);
    QCOMPARE(object.Getmin(), -1);
    QCOMPARE(object.Getmax(), std::numeric_limits<int>::min());
    QCOMPARE(object.Getstep(), 7);
}

void RangedNumbersTest::floatsAreWrittenWithTwoDecimals()
{
    const auto object = sample<ValueNumericFloat>("g", 1.234f, 0.126f, 3.f, -0.5f);
    const auto element = QStringLiteral("<ValueNumericFloat id=\"g\" value=\"1.23\" min=\"0.13\" max=\"3.00\" "
                                        "step=\"-0.50\"/>");
    QCOMPARE(xmlOf(object), element);
    ValueNumericFloat fromXml;
    readXml(fromXml, element);
    QCOMPARE(fromXml.Getvalue(), 1.23f);
    ValueNumericFloat fromRecord;
    readRecord(fromRecord, recordOf(object));
    QCOMPARE(fromRecord.Getvalue(), 1.23f);
    QCOMPARE(fromRecord.Getmin(), 0.13f);
    QVERIFY(fromRecord == fromXml);

    ValueNumericFloat fromSnapshot;
    readSnapshot(fromSnapshot, snapshotOf(object));
    QVERIFY(fromSnapshot == object);
}

void RangedNumbersTest::unsetNumbersAreWrittenAsTheirDefaults_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("element");
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("ValueNumericFloat")
        << QStringLiteral("ValueNumericFloat")
        << QStringLiteral("<ValueNumericFloat id=\"\" value=\"0.00\" min=\"0.00\" max=\"0.00\" step=\"0.00\"/>")
        << QByteArray("00 00 00 4C" // 76 bytes
                      "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                      "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 30 30" // the numbers "0.00"
                      "65 5B A9 DC 00 00 00 08 00 00 00 04 30 2E 30 30"
                      "81 16 6A CB 00 00 00 08 00 00 00 04 30 2E 30 30"
                      "A8 D4 64 CF 00 00 00 08 00 00 00 04 30 2E 30 30");
    QTest::newRow("ValueNumericInt") << QStringLiteral(
        "ValueNumericInt") << QStringLiteral("<ValueNumericInt id=\"\" value=\"0\" min=\"0\" max=\"0\" step=\"0\"/>")
                                     << QByteArray("00 00 00 4C" // 76 bytes
                                                   "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                                                   "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00"
                                                   "68 56 54 A1 00 00 00 08 00 00 00 00 00 00 00 00"
                                                   "25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 00"
                                                   "43 76 6B 23 00 00 00 08 00 00 00 00 00 00 00 00");
    QTest::newRow("ValueNumericInt64") << QStringLiteral("ValueNumericInt64")
                                       << QStringLiteral(
                                              "<ValueNumericInt64 id=\"\" value=\"0\" min=\"0\" max=\"0\" step=\"0\"/>")
                                       << QByteArray("00 00 00 4C" // 76 bytes
                                                     "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                                                     "64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 00"
                                                     "6A 28 E4 6A 00 00 00 08 00 00 00 00 00 00 00 00"
                                                     "86 12 33 63 00 00 00 08 00 00 00 00 00 00 00 00"
                                                     "27 D3 4B 73 00 00 00 08 00 00 00 00 00 00 00 00");
}

void RangedNumbersTest::unsetNumbersAreWrittenAsTheirDefaults()
{
    QFETCH(QString, className);
    QFETCH(QString, element);
    QFETCH(QByteArray, record);
    withObjectOf(className, [&](auto object) {
        object.SetValidate(false);
        QCOMPARE(xmlOf(object), element);
        QCOMPARE(hex(recordOf(object)), hex(record.constData()));
        QCOMPARE(hex(snapshotOf(object)),
                 hex("00 FF FF FF FF"
                     "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                     "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    });
}

void RangedNumbersTest::elementsAreReadLikeAttributes()
{
    QFETCH(QString, className);
    withObjectOf(className, [&](const auto &unused) {
        using Object = std::decay_t<decltype(unused)>;
        Object object;
        readXml(object, QStringLiteral("<%1><value>7</value></%1>").arg(className));
        QVERIFY(object.IsvalueSet());
        QVERIFY(object.Getvalue() == 7);

        Object attributes;
        readXml(attributes,
                QStringLiteral("<%1 id=\"g\" value=\"7\" min=\"-1\" max=\"9\" step=\"2\"/>").arg(className));
        Object elements;
        readXml(elements,
                QStringLiteral("<%1 value=\"1\" unit=\"dB\"><step>2</step><other><min>5</min><value>6</value></other>"
                               "<max>9</max><min>-1</min><value>7</value><id>g</id></%1>")
                    .arg(className));
        QVERIFY(elements == attributes);
        QVERIFY(elements.HasData());

        Object empty;
        readXml(empty, QStringLiteral("<%1><id/><value/><min/><max></max><step/></%1>").arg(className));
        QVERIFY(empty.HasData()); // the id is empty and not null; an empty text is the number 0
        QVERIFY(empty.Getvalue() == 0);
        readXml(attributes, QStringLiteral("<%1 min=\"12abc\"/>").arg(className));
        QVERIFY(attributes.IsminSet());
        QVERIFY(attributes.Getmin() == 0);
    });
}

// The record has an id and an unknown tag, but no numbers.
void RangedNumbersTest::missingRecordsLeaveMembersUnchanged()
{
    QFETCH(QString, className);
    withObjectOf(className, [](const auto &empty) {
        auto object = full(empty);
        readRecord(object,
                   bytes("00 00 00 17" // 23 bytes
                         "01 02 03 04 00 00 00 02 FF FF" // unknown
                         "2B 26 2D C9 00 00 00 05 00 00 00 01 68")); // id "h"
        QCOMPARE(object.Getid(), QStringLiteral("h"));
        object.Setid(QStringLiteral("g"));
        QVERIFY(object == full(empty));
    });
}

void RangedNumbersTest::textOfARecordThatIsNotANumberIsStoredAsZero()
{
    ValueNumericFloat object = full(ValueNumericFloat());
    readRecord(object,
               bytes("00 00 00 2E" // 46 bytes
                     "65 5B A9 DC 00 00 00 09 00 00 00 05 31 32 61 62 63" // min "12abc"
                     "81 16 6A CB 00 00 00 04 FF FF FF FF" // max null
                     "A8 D4 64 CF 00 00 00 09 00 00 00 05 31 2E 31 32 35")); // step "1.125"
    QVERIFY(object.IsminSet());
    QCOMPARE(object.Getmin(), 0.f);
    QVERIFY(object.IsmaxSet());
    QCOMPARE(object.Getmax(), 0.f);
    QCOMPARE(object.Getstep(), 1.125f); // more than two decimals are read
    QCOMPARE(object.Getvalue(), -0.5f);
}

void RangedNumbersTest::numbersOfOtherTypesAreSkipped()
{
    // The members have the same names and other types, so other tags. The id is the same in all classes.
    auto object = full(ValueNumericInt64());
    readRecord(object, recordOf(sample<ValueNumericInt>("i", 1, 2, 3, 4)));
    readRecord(object, recordOf(sample<ValueNumericFloat>("f", 1.f, 2.f, 3.f, 4.f)));
    QCOMPARE(object.Getid(), QStringLiteral("f"));
    object.Setid(QStringLiteral("g"));
    QVERIFY(object == full(ValueNumericInt64()));
}

void RangedNumbersTest::snapshotIsReadWithoutSetters_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QByteArray>("snapshot"); // id and max set, id null
    QTest::addColumn<QVariantList>("numbers"); // value, min, max and step
    QTest::newRow("ValueNumericFloat") << QStringLiteral("ValueNumericFloat")
                                       << QByteArray("09 FF FF FF FF"
                                                     "3F F0 00 00 00 00 00 00 40 00 00 00 00 00 00 00"
                                                     "40 08 00 00 00 00 00 00 40 10 00 00 00 00 00 00")
                                       << QVariantList{1.f, 2.f, 3.f, 4.f};
    QTest::newRow("ValueNumericInt") << QStringLiteral("ValueNumericInt")
                                     << QByteArray("09 FF FF FF FF"
                                                   "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02"
                                                   "00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 04")
                                     << QVariantList{1, 2, 3, 4};
    QTest::newRow("ValueNumericInt64") << QStringLiteral("ValueNumericInt64")
                                       << QByteArray("09 FF FF FF FF"
                                                     "00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 02"
                                                     "00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 04")
                                       << QVariantList{Q_INT64_C(4294967297), Q_INT64_C(2), Q_INT64_C(3), Q_INT64_C(4)};
}

void RangedNumbersTest::snapshotIsReadWithoutSetters()
{
    QFETCH(QString, className);
    QFETCH(QByteArray, snapshot);
    QFETCH(QVariantList, numbers);
    withObjectOf(className, [&](const auto &empty) {
        auto object = full(empty);
        QCOMPARE(readSnapshot(object, bytes(snapshot.constData())), 0);
        QVERIFY(object.IsidSet());
        QVERIFY(object.Getid().isNull());
        QVERIFY(!object.IsvalueSet());
        QVERIFY(!object.IsminSet());
        QVERIFY(object.IsmaxSet());
        QVERIFY(!object.IsstepSet());
        QCOMPARE(object.Getvalue(), numberOf(object, numbers.at(0)));
        QCOMPARE(object.Getmin(), numberOf(object, numbers.at(1)));
        QCOMPARE(object.Getmax(), numberOf(object, numbers.at(2)));
        QCOMPARE(object.Getstep(), numberOf(object, numbers.at(3)));
        QCOMPARE(hex(snapshotOf(object)), hex(snapshot.constData()));
    });
}

void RangedNumbersTest::wrongLengthThrowsLengthError_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("error");
    QTest::newRow("ValueNumericFloat")
        << QStringLiteral("ValueNumericFloat") << QByteArray("00 00 00 0E 81 16 6A CB 00 00 00 05 00 00 00 01 37")
        << QStringLiteral("BinaryParsingException: ValueNumericFloat::SetBinary(...): Length error occurred during "
                          "processing of binary representation");
    QTest::newRow("ValueNumericInt")
        << QStringLiteral("ValueNumericInt")
        << QByteArray("00 00 00 0C 25 F6 AF CC 00 00 00 08 00 00 00 00 00 00 00 07")
        << QStringLiteral("BinaryParsingException: ValueNumericInt::SetBinary(...): Length error occurred during "
                          "processing of binary representation");
    QTest::newRow("ValueNumericInt64")
        << QStringLiteral("ValueNumericInt64")
        << QByteArray("00 00 00 0C 86 12 33 63 00 00 00 08 00 00 00 00 00 00 00 07")
        << QStringLiteral("BinaryParsingException: ValueNumericInt64::SetBinary(...): Length error occurred during "
                          "processing of binary representation");
}

void RangedNumbersTest::wrongLengthThrowsLengthError()
{
    QFETCH(QString, className);
    QFETCH(QByteArray, record);
    QFETCH(QString, error);
    withObjectOf(className, [&](auto object) {
        QCOMPARE(thrownBy([&] { readRecord(object, bytes(record.constData())); }), error);
        QVERIFY(object.Getmax() == 7); // what was read before the error is kept
    });
}

TEST_SUITE(RangedNumbersTest)
#include "tst_RangedNumbers.moc"
