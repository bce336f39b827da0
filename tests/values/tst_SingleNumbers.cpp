// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

/// The classes with an id and one number: ValueFloat, ValueInt and ValueInt64. Each row names its class and has the
/// texts and bytes of this class in full.

namespace {

/// Calls the function with an empty object of the class that the row names.
template <class Function>
void withObjectOf(const QString &className, Function function)
{
    if (className == QLatin1String("ValueFloat"))
        function(ValueFloat());
    else if (className == QLatin1String("ValueInt"))
        function(ValueInt());
    else if (className == QLatin1String("ValueInt64"))
        function(ValueInt64());
    else
        qFatal("no class with a single number is named %s", qPrintable(className));
}

/// An object with this id and the number of a row.
template <class Object>
Object with(const Object &empty, const QString &id, const QVariant &number)
{
    Object object(empty);
    object.Setid(id);
    object.Setvalue(numberOf(empty, number));
    return object;
}

void addEncodingColumns(const char *literal)
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<StreamSettings>("settings");
    QTest::addColumn<QByteArray>(literal);
}

template <class Number>
void addEncoding(const char *className, const char *description, const char *id, Number number, const char *literal,
                 StreamSettings settings = stockSettings)
{
    newRow(className, description) << QString::fromLatin1(id) << QVariant::fromValue(number) << settings
                                   << QByteArray(literal);
}

} // namespace

class SingleNumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectHasNameAndIdentifierOfItsClass_data();
    void objectHasNameAndIdentifierOfItsClass();
    void everyMemberStoresAndResets_data();
    void everyMemberStoresAndResets();
    void nullIdIsRefusedOnlyWhileValidating_data();
    void nullIdIsRefusedOnlyWhileValidating();
    void onlyNullIdIsInvalid_data();
    void onlyNullIdIsInvalid();
    void checkNamesTheFirstMissingMember_data();
    void checkNamesTheFirstMissingMember();
    void hasDataRequiresIdAndSetValue_data();
    void hasDataRequiresIdAndSetValue();
    void equalityComparesIdAndValueExactly_data();
    void equalityComparesIdAndValueExactly();
    void unsetValueDiffersFromItsDefault_data();
    void unsetValueDiffersFromItsDefault();
    void copyOfNaNDiffers();

    void objectHasThisElement_data();
    void objectHasThisElement();
    void objectHasThisRecord_data();
    void objectHasThisRecord();
    void objectHasThisSnapshot_data();
    void objectHasThisSnapshot();

    void numberOf64BitsIsNarrowedToInt();
    void floatIsWrittenWithTwoDecimals_data();
    void floatIsWrittenWithTwoDecimals();
    void textThatIsNotANumberIsStoredAsZero_data();
    void textThatIsNotANumberIsStoredAsZero();
    void unsetValueIsWrittenAsItsDefault_data();
    void unsetValueIsWrittenAsItsDefault();
    void elementsAreReadLikeAttributes_data();
    void elementsAreReadLikeAttributes();
    void wrongLengthThrowsLengthError_data();
    void wrongLengthThrowsLengthError();
};

void SingleNumbersTest::objectHasNameAndIdentifierOfItsClass_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<qint64>("identifier");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat") << Q_INT64_C(0x6440D555);
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt") << Q_INT64_C(0x278DA93B);
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64") << Q_INT64_C(0x4E82A0AA);
}

void SingleNumbersTest::objectHasNameAndIdentifierOfItsClass()
{
    QFETCH(QString, className);
    QFETCH(qint64, identifier);
    withObjectOf(className, [&](const auto &object) {
        QCOMPARE(object.GetStaticObjectName(), className);
        QCOMPARE(object.GetObjectName(), className);
        QCOMPARE(object.GetId(), identifier);
    });
}

void SingleNumbersTest::everyMemberStoresAndResets_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<QVariant>("defaultNumber");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat") << QStringLiteral("f") << QVariant(2.5f)
                                << QVariant(0.f);
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt") << QStringLiteral("i") << QVariant(-7) << QVariant(0);
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64") << QStringLiteral("l")
                                << QVariant(Q_INT64_C(5000000000)) << QVariant(Q_INT64_C(0));
}

void SingleNumbersTest::everyMemberStoresAndResets()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    QFETCH(QVariant, defaultNumber);
    withObjectOf(className, [&](const auto &empty) {
        using Object = std::decay_t<decltype(empty)>;
        storesAndResets(ACCESSORS(Object, id), id, QString());
        storesAndResets(ACCESSORS(Object, value), numberOf(empty, number), numberOf(empty, defaultNumber));
    });
}

void SingleNumbersTest::nullIdIsRefusedOnlyWhileValidating_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("ValueFloat") << QStringLiteral(
        "ValueFloat") << QStringLiteral("OutOfRangeException: ValueFloat: Please set id properly (origin: Setter).");
    QTest::newRow("ValueInt") << QStringLiteral(
        "ValueInt") << QStringLiteral("OutOfRangeException: ValueInt: Please set id properly (origin: Setter).");
    QTest::newRow("ValueInt64") << QStringLiteral(
        "ValueInt64") << QStringLiteral("OutOfRangeException: ValueInt64: Please set id properly (origin: Setter).");
}

void SingleNumbersTest::nullIdIsRefusedOnlyWhileValidating()
{
    QFETCH(QString, className);
    QFETCH(QString, refusal);
    withObjectOf(className, [&](const auto &empty) {
        using Object = std::decay_t<decltype(empty)>;
        refusesNull(ACCESSORS(Object, id), refusal);
    });
}

void SingleNumbersTest::onlyNullIdIsInvalid_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QVariantList>("validNumbers");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat")
                                << QVariantList{0.f, -1.f, 1e38f, float(qQNaN()), float(qInf())};
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt")
                              << QVariantList{0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64")
                                << QVariantList{qint64(0), std::numeric_limits<qint64>::min(),
                                                std::numeric_limits<qint64>::max()};
}

void SingleNumbersTest::onlyNullIdIsInvalid()
{
    QFETCH(QString, className);
    QFETCH(QVariantList, validNumbers);
    withObjectOf(className, [&](const auto &object) {
        QVERIFY(!object.IsValidid(QString()));
        QVERIFY(object.IsValidid(QStringLiteral("")));
        for (const QVariant &number : validNumbers)
            QVERIFY(object.IsValidvalue(numberOf(object, number)));
    });
}

void SingleNumbersTest::checkNamesTheFirstMissingMember_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("missingId");
    QTest::addColumn<QString>("missingValue");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat")
                                << QStringLiteral("OutOfRangeException: ValueFloat: Please set id properly.")
                                << QStringLiteral("OutOfRangeException: ValueFloat: Please set value properly.");
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt")
                              << QStringLiteral("OutOfRangeException: ValueInt: Please set id properly.")
                              << QStringLiteral("OutOfRangeException: ValueInt: Please set value properly.");
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64")
                                << QStringLiteral("OutOfRangeException: ValueInt64: Please set id properly.")
                                << QStringLiteral("OutOfRangeException: ValueInt64: Please set value properly.");
}

void SingleNumbersTest::checkNamesTheFirstMissingMember()
{
    QFETCH(QString, className);
    QFETCH(QString, missingId);
    QFETCH(QString, missingValue);
    withObjectOf(className, [&](auto object) {
        QCOMPARE(thrownBy([&] { object.Check(); }), missingId);
        object.Setid(QStringLiteral("i"));
        QCOMPARE(thrownBy([&] { object.Check(); }), missingValue);
        object.Setvalue(0);
        QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    });
}

void SingleNumbersTest::hasDataRequiresIdAndSetValue_data()
{
    QTest::addColumn<QString>("className");
    for (const char *className : {"ValueFloat", "ValueInt", "ValueInt64"})
        QTest::newRow(className) << QString::fromLatin1(className);
}

void SingleNumbersTest::hasDataRequiresIdAndSetValue()
{
    QFETCH(QString, className);
    withObjectOf(className, [&](auto object) {
        object.Setvalue(0);
        QVERIFY(object.AnyData());
        QVERIFY(!object.HasData());
        object.Setid(QStringLiteral("i"));
        QVERIFY(object.HasData());
        object.Resetvalue();
        QVERIFY(object.AnyData());
        QVERIFY(!object.HasData());
    });
}

void SingleNumbersTest::equalityComparesIdAndValueExactly_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<QString>("otherId");
    QTest::addColumn<QVariant>("otherNumber");
    QTest::addColumn<bool>("equal");
    const QString f = QStringLiteral("f");
    newRow("ValueFloat", "the same") << f << QVariant(0.1f) << f << QVariant(0.1f) << true;
    newRow("ValueFloat", "number that differs in the last bit")
        << f << QVariant(0.1f) << f << QVariant(0.1f + 1e-8f) << false;
    newRow("ValueFloat", "another id") << f << QVariant(0.1f) << QStringLiteral("g") << QVariant(0.1f) << false;
    newRow("ValueFloat", "zero and minus zero") << f << QVariant(0.f) << f << QVariant(-0.f) << true;
    const QString i = QStringLiteral("i");
    newRow("ValueInt", "the same") << i << QVariant(1) << i << QVariant(1) << true;
    newRow("ValueInt", "another number") << i << QVariant(1) << i << QVariant(2) << false;
    newRow("ValueInt", "another id") << i << QVariant(1) << QStringLiteral("j") << QVariant(1) << false;
    const QString l = QStringLiteral("l");
    const QVariant one(Q_INT64_C(1));
    newRow("ValueInt64", "the same") << l << one << l << one << true;
    newRow("ValueInt64", "same low 32 bits") << l << one << l << QVariant(Q_INT64_C(4294967297)) << false;
    newRow("ValueInt64", "another id") << l << one << QStringLiteral("m") << one << false;
}

void SingleNumbersTest::equalityComparesIdAndValueExactly()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    QFETCH(QString, otherId);
    QFETCH(QVariant, otherNumber);
    QFETCH(bool, equal);
    withObjectOf(className, [&](const auto &empty) {
        const auto left = with(empty, id, number);
        const auto right = with(empty, otherId, otherNumber);
        QCOMPARE(left == right, equal);
        QCOMPARE(right == left, equal);
        QCOMPARE(left != right, !equal);
        QCOMPARE(right != left, !equal);
    });
}

void SingleNumbersTest::unsetValueDiffersFromItsDefault_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("defaultNumber");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat") << QStringLiteral("f") << QVariant(0.f);
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt") << QStringLiteral("i") << QVariant(0);
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64") << QStringLiteral("l") << QVariant(Q_INT64_C(0));
}

void SingleNumbersTest::unsetValueDiffersFromItsDefault()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, defaultNumber);
    withObjectOf(className, [&](const auto &empty) {
        auto withoutValue(empty);
        withoutValue.Setid(id);
        QVERIFY(withoutValue != with(empty, id, defaultNumber));
        QVERIFY(with(empty, id, defaultNumber) != withoutValue);
    });
}

void SingleNumbersTest::copyOfNaNDiffers()
{
    const auto nan = sample<ValueFloat>("f", float(qQNaN()));
    QVERIFY(nan != ValueFloat(nan));
}

void SingleNumbersTest::objectHasThisElement_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<QString>("element");
    const QString f = QStringLiteral("f");
    const QString i = QStringLiteral("i");
    const QString l = QStringLiteral("l");
    newRow("ValueFloat", "2.5") << f << QVariant(2.5f) << QStringLiteral("<ValueFloat id=\"f\" value=\"2.50\"/>");
    newRow("ValueInt", "-20") << i << QVariant(-20) << QStringLiteral("<ValueInt id=\"i\" value=\"-20\"/>");
    newRow("ValueInt", "least") << i << QVariant(std::numeric_limits<int>::min())
                                << QStringLiteral("<ValueInt id=\"i\" value=\"-2147483648\"/>");
    newRow("ValueInt", "greatest") << i << QVariant(std::numeric_limits<int>::max())
                                   << QStringLiteral("<ValueInt id=\"i\" value=\"2147483647\"/>");
    newRow("ValueInt64", "5000000000") << l << QVariant(Q_INT64_C(5000000000))
                                       << QStringLiteral("<ValueInt64 id=\"l\" value=\"5000000000\"/>");
    newRow("ValueInt64", "least") << l << QVariant(std::numeric_limits<qint64>::min())
                                  << QStringLiteral("<ValueInt64 id=\"l\" value=\"-9223372036854775808\"/>");
    newRow("ValueInt64", "greatest") << l << QVariant(std::numeric_limits<qint64>::max())
                                     << QStringLiteral("<ValueInt64 id=\"l\" value=\"9223372036854775807\"/>");
}

void SingleNumbersTest::objectHasThisElement()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    QFETCH(QString, element);
    withObjectOf(className, [&](const auto &empty) { hasElement(with(empty, id, number), element); });
}

void SingleNumbersTest::objectHasThisRecord_data()
{
    addEncodingColumns("record");
    addEncoding("ValueFloat", "2.5", "f", 2.5f,
                "00 00 00 1D" // 29 bytes
                "2B 26 2D C9 00 00 00 05 00 00 00 01 66" // id "f"
                "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30"); // value "2.50"
    addEncoding("ValueFloat", "2.5, single precision makes no difference", "f", 2.5f,
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 66"
                "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30",
                singlePrecision);
    addEncoding("ValueFloat", "2.5, little-endian", "f", 2.5f,
                "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 66"
                "9D 64 DF E3 08 00 00 00 04 00 00 00 32 2E 35 30",
                littleEndian);
    addEncoding("ValueInt", "258", "i", 258,
                "00 00 00 1D" // 29 bytes
                "2B 26 2D C9 00 00 00 05 00 00 00 01 69" // id "i"
                "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 01 02"); // value 258
    addEncoding("ValueInt", "258, little-endian", "i", 258,
                "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 69"
                "38 42 A4 0B 08 00 00 00 02 01 00 00 00 00 00 00",
                littleEndian);
    addEncoding("ValueInt", "-1, eight bytes of ones", "i", -1,
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                "0B A4 42 38 00 00 00 08 FF FF FF FF FF FF FF FF");
    addEncoding("ValueInt", "least", "i", std::numeric_limits<int>::min(),
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                "0B A4 42 38 00 00 00 08 FF FF FF FF 80 00 00 00");
    addEncoding("ValueInt", "greatest", "i", std::numeric_limits<int>::max(),
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 69"
                "0B A4 42 38 00 00 00 08 00 00 00 00 7F FF FF FF");
    addEncoding("ValueInt64", "5000000000", "l", Q_INT64_C(5000000000),
                "00 00 00 1D" // 29 bytes
                "2B 26 2D C9 00 00 00 05 00 00 00 01 6C" // id "l"
                "64 A0 3F 86 00 00 00 08 00 00 00 01 2A 05 F2 00"); // value 5000000000
    addEncoding("ValueInt64", "5000000000, little-endian", "l", Q_INT64_C(5000000000),
                "1D 00 00 00 C9 2D 26 2B 05 00 00 00 01 00 00 00 6C"
                "86 3F A0 64 08 00 00 00 00 F2 05 2A 01 00 00 00",
                littleEndian);
    addEncoding("ValueInt64", "least", "l", std::numeric_limits<qint64>::min(),
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 6C"
                "64 A0 3F 86 00 00 00 08 80 00 00 00 00 00 00 00");
    addEncoding("ValueInt64", "greatest", "l", std::numeric_limits<qint64>::max(),
                "00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 6C"
                "64 A0 3F 86 00 00 00 08 7F FF FF FF FF FF FF FF");
}

void SingleNumbersTest::objectHasThisRecord()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    QFETCH(StreamSettings, settings);
    QFETCH(QByteArray, record);
    withObjectOf(className,
                 [&](const auto &empty) { hasRecord(with(empty, id, number), record.constData(), settings); });
}

void SingleNumbersTest::objectHasThisSnapshot_data()
{
    addEncodingColumns("snapshot");
    addEncoding("ValueFloat", "2.5", "f", 2.5f,
                "03" // both set
                "00 00 00 02 00 66" // id "f"
                "40 04 00 00 00 00 00 00"); // value 2.5, as wide as a double
    addEncoding("ValueFloat", "2.5, single precision", "f", 2.5f, "03 00 00 00 02 00 66 40 20 00 00", singlePrecision);
    addEncoding("ValueFloat", "2.5, little-endian", "f", 2.5f, "03 02 00 00 00 66 00 00 00 00 00 00 00 04 40",
                littleEndian);
    addEncoding("ValueFloat", "1.005, exactly", "f", 1.005f, "03 00 00 00 02 00 66 3F F0 14 7A E0 00 00 00");
    addEncoding("ValueFloat", "1.005, exactly in single precision", "f", 1.005f, "03 00 00 00 02 00 66 3F 80 A3 D7",
                singlePrecision);
    addEncoding("ValueInt", "258", "i", 258,
                "03" // both set
                "00 00 00 02 00 69" // id "i"
                "00 00 00 00 00 00 01 02"); // value 258
    addEncoding("ValueInt", "258, little-endian", "i", 258, "03 02 00 00 00 69 00 02 01 00 00 00 00 00 00",
                littleEndian);
    addEncoding("ValueInt", "-1, eight bytes of ones", "i", -1, "03 00 00 00 02 00 69 FF FF FF FF FF FF FF FF");
    addEncoding("ValueInt", "least", "i", std::numeric_limits<int>::min(),
                "03 00 00 00 02 00 69 FF FF FF FF 80 00 00 00");
    addEncoding("ValueInt", "greatest", "i", std::numeric_limits<int>::max(),
                "03 00 00 00 02 00 69 00 00 00 00 7F FF FF FF");
    addEncoding("ValueInt64", "5000000000", "l", Q_INT64_C(5000000000),
                "03" // both set
                "00 00 00 02 00 6C" // id "l"
                "00 00 00 01 2A 05 F2 00"); // value 5000000000
    addEncoding("ValueInt64", "5000000000, little-endian", "l", Q_INT64_C(5000000000),
                "03 02 00 00 00 6C 00 00 F2 05 2A 01 00 00 00", littleEndian);
    addEncoding("ValueInt64", "least", "l", std::numeric_limits<qint64>::min(),
                "03 00 00 00 02 00 6C 80 00 00 00 00 00 00 00");
    addEncoding("ValueInt64", "greatest", "l", std::numeric_limits<qint64>::max(),
                "03 00 00 00 02 00 6C 7F FF FF FF FF FF FF FF");
}

void SingleNumbersTest::objectHasThisSnapshot()
{
    QFETCH(QString, className);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    QFETCH(StreamSettings, settings);
    QFETCH(QByteArray, snapshot);
    withObjectOf(className,
                 [&](const auto &empty) { hasSnapshot(with(empty, id, number), snapshot.constData(), settings); });
}

void SingleNumbersTest::numberOf64BitsIsNarrowedToInt()
{
    ValueInt object;
    readRecord(object, bytes("00 00 00 10 0B A4 42 38 00 00 00 08 00 00 00 01 00 00 00 05"));
    QVERIFY(object.IsvalueSet());
    QCOMPARE(object.Getvalue(), 5);
    readRecord(object, bytes("00 00 00 10 0B A4 42 38 00 00 00 08 00 00 00 00 FF FF FF FE"));
    QCOMPARE(object.Getvalue(), -2);
    readSnapshot(object, bytes("02 FF FF FF FF 00 00 00 01 00 00 00 05"));
    QCOMPARE(object.Getvalue(), 5);
}

void SingleNumbersTest::floatIsWrittenWithTwoDecimals_data()
{
    QTest::addColumn<float>("number");
    QTest::addColumn<QString>("element");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<float>("readBack");
    QTest::newRow("1.005, which is a little less in binary")
        << 1.005f << QStringLiteral("<ValueFloat id=\"f\" value=\"1.00\"/>")
        << QByteArray("00 00 00 1D"
                      "2B 26 2D C9 00 00 00 05 00 00 00 01 66"
                      "E3 DF 64 9D 00 00 00 08" // a payload of 8
                      "00 00 00 04 31 2E 30 30") // "1.00"
        << 1.f;
    QTest::newRow("2.5") << 2.5f << QStringLiteral("<ValueFloat id=\"f\" value=\"2.50\"/>")
                         << QByteArray("00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 66"
                                       "E3 DF 64 9D 00 00 00 08 00 00 00 04 32 2E 35 30")
                         << 2.5f;
    QTest::newRow("0.004") << 0.004f << QStringLiteral("<ValueFloat id=\"f\" value=\"0.00\"/>")
                           << QByteArray("00 00 00 1D 2B 26 2D C9 00 00 00 05 00 00 00 01 66"
                                         "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 30 30")
                           << 0.f;
}

void SingleNumbersTest::floatIsWrittenWithTwoDecimals()
{
    QFETCH(float, number);
    QFETCH(QString, element);
    QFETCH(QByteArray, record);
    QFETCH(float, readBack);
    const auto object = sample<ValueFloat>("f", number);
    QCOMPARE(xmlOf(object), element);
    ValueFloat fromXml;
    readXml(fromXml, element);
    QCOMPARE(fromXml.Getvalue(), readBack);

    QCOMPARE(hex(recordOf(object)), hex(record.constData()));
    ValueFloat fromRecord;
    readRecord(fromRecord, bytes(record.constData()));
    QCOMPARE(fromRecord.Getvalue(), readBack);
}

void SingleNumbersTest::textThatIsNotANumberIsStoredAsZero_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QVariant>("zero");
    newRow("ValueFloat", "attribute") << QStringLiteral("<ValueFloat value=\"12abc\"/>") << QVariant(0.f);
    newRow("ValueFloat", "element") << QStringLiteral("<ValueFloat><value>12abc</value></ValueFloat>") << QVariant(0.f);
    newRow("ValueInt", "attribute") << QStringLiteral("<ValueInt value=\"12abc\"/>") << QVariant(0);
    newRow("ValueInt", "element") << QStringLiteral("<ValueInt><value>12abc</value></ValueInt>") << QVariant(0);
    newRow("ValueInt64", "attribute") << QStringLiteral("<ValueInt64 value=\"12abc\"/>") << QVariant(Q_INT64_C(0));
    newRow("ValueInt64", "element") << QStringLiteral("<ValueInt64><value>12abc</value></ValueInt64>")
                                    << QVariant(Q_INT64_C(0));
}

void SingleNumbersTest::textThatIsNotANumberIsStoredAsZero()
{
    QFETCH(QString, className);
    QFETCH(QString, xml);
    QFETCH(QVariant, zero);
    withObjectOf(className, [&](auto object) {
        readXml(object, xml);
        QVERIFY(object.IsvalueSet());
        QCOMPARE(object.Getvalue(), numberOf(object, zero));
        object.Setvalue(12);
        readXml(object, xml);
        QCOMPARE(object.Getvalue(), numberOf(object, zero));
    });
}

void SingleNumbersTest::unsetValueIsWrittenAsItsDefault_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("element");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QByteArray>("snapshot");
    QTest::addColumn<QByteArray>("snapshotWithUnsetNumber");
    QTest::addColumn<QVariant>("unsetNumber");
    QTest::newRow("ValueFloat") << QStringLiteral("ValueFloat")
                                << QStringLiteral("<ValueFloat id=\"\" value=\"0.00\"/>")
                                << QByteArray("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                                              "E3 DF 64 9D 00 00 00 08 00 00 00 04 30 2E 30 30")
                                << QByteArray("00 FF FF FF FF 00 00 00 00 00 00 00 00")
                                << QByteArray("00 FF FF FF FF 3F F0 00 00 00 00 00 00") << QVariant(1.f);
    QTest::newRow("ValueInt") << QStringLiteral("ValueInt") << QStringLiteral("<ValueInt id=\"\" value=\"0\"/>")
                              << QByteArray("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                                            "0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 00")
                              << QByteArray("00 FF FF FF FF 00 00 00 00 00 00 00 00")
                              << QByteArray("00 FF FF FF FF 00 00 00 00 00 00 00 07") << QVariant(7);
    QTest::newRow("ValueInt64") << QStringLiteral("ValueInt64") << QStringLiteral("<ValueInt64 id=\"\" value=\"0\"/>")
                                << QByteArray("00 00 00 1C 2B 26 2D C9 00 00 00 04 FF FF FF FF"
                                              "64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 00")
                                << QByteArray("00 FF FF FF FF 00 00 00 00 00 00 00 00")
                                << QByteArray("00 FF FF FF FF 00 00 00 00 00 00 00 07") << QVariant(Q_INT64_C(7));
}

void SingleNumbersTest::unsetValueIsWrittenAsItsDefault()
{
    QFETCH(QString, className);
    QFETCH(QString, element);
    QFETCH(QByteArray, record);
    QFETCH(QByteArray, snapshot);
    QFETCH(QByteArray, snapshotWithUnsetNumber);
    QFETCH(QVariant, unsetNumber);
    withObjectOf(className, [&](auto object) {
        auto read(object);
        object.SetValidate(false);
        QCOMPARE(xmlOf(object), element);
        QCOMPARE(hex(recordOf(object)), hex(record.constData()));
        QCOMPARE(hex(snapshotOf(object)), hex(snapshot.constData()));
        QCOMPARE(readSnapshot(read, bytes(snapshotWithUnsetNumber.constData())), 0);
        QVERIFY(!read.IsvalueSet());
        QCOMPARE(read.Getvalue(), numberOf(read, unsetNumber));
    });
}

void SingleNumbersTest::elementsAreReadLikeAttributes_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVariant>("number");
    newRow("ValueFloat", "elements after attributes")
        << QStringLiteral("<ValueFloat id=\"no\" value=\"1\"><other><value>2</value></other><value>2.5</value>"
                          "<id>f</id></ValueFloat>")
        << QStringLiteral("f") << QVariant(2.5f);
    newRow("ValueFloat", "empty elements")
        << QStringLiteral("<ValueFloat><id/><value/></ValueFloat>") << QStringLiteral("") << QVariant(0.f);
    newRow("ValueInt", "elements after attributes")
        << QStringLiteral("<ValueInt id=\"no\" value=\"1\"><other><value>2</value></other><value>-20</value>"
                          "<id>i</id></ValueInt>")
        << QStringLiteral("i") << QVariant(-20);
    newRow("ValueInt", "empty elements") << QStringLiteral("<ValueInt><id/><value/></ValueInt>") << QStringLiteral("")
                                         << QVariant(0);
    newRow("ValueInt64", "elements after attributes")
        << QStringLiteral("<ValueInt64 id=\"no\" value=\"1\"><other><value>2</value></other>"
                          "<value>5000000000</value><id>l</id></ValueInt64>")
        << QStringLiteral("l") << QVariant(Q_INT64_C(5000000000));
    newRow("ValueInt64", "empty elements")
        << QStringLiteral("<ValueInt64><id/><value/></ValueInt64>") << QStringLiteral("") << QVariant(Q_INT64_C(0));
}

void SingleNumbersTest::elementsAreReadLikeAttributes()
{
    QFETCH(QString, className);
    QFETCH(QString, xml);
    QFETCH(QString, id);
    QFETCH(QVariant, number);
    withObjectOf(className, [&](auto object) {
        const auto expected = with(object, id, number);
        readXml(object, xml);
        QVERIFY(object == expected);
        object.Setid(QStringLiteral("before"));
        object.Setvalue(9);
        readXml(object, xml); // replaces what is there
        QVERIFY(object == expected);
    });
}

void SingleNumbersTest::wrongLengthThrowsLengthError_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QVariant>("before");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QVariant>("after");
    newRow("ValueFloat", "record longer than stated")
        << QVariant(0.f) << QByteArray("00 00 00 01 E3 DF 64 9D 00 00 00 05 00 00 00 01 37")
        << QStringLiteral("BinaryParsingException: ValueFloat::SetBinary(...): Length error occurred during "
                          "processing of binary representation")
        << QVariant(7.f);
    newRow("ValueInt", "record longer than stated")
        << QVariant(0) << QByteArray("00 00 00 0C 0B A4 42 38 00 00 00 08 00 00 00 00 00 00 00 07")
        << QStringLiteral("BinaryParsingException: ValueInt::SetBinary(...): Length error occurred during "
                          "processing of binary representation")
        << QVariant(7);
    // The four bytes are as wide as an int, but a number takes eight: it is truncated and not stored.
    newRow("ValueInt", "truncated number")
        << QVariant(7) << QByteArray("00 00 00 0C 0B A4 42 38 00 00 00 04 00 00 00 09")
        << QStringLiteral("BinaryParsingException: ValueInt::SetBinary(...): Length error occurred during "
                          "processing of binary representation")
        << QVariant(7);
    newRow("ValueInt64", "record longer than stated")
        << QVariant(Q_INT64_C(0)) << QByteArray("00 00 00 0C 64 A0 3F 86 00 00 00 08 00 00 00 00 00 00 00 07")
        << QStringLiteral("BinaryParsingException: ValueInt64::SetBinary(...): Length error occurred during "
                          "processing of binary representation")
        << QVariant(Q_INT64_C(7));
}

void SingleNumbersTest::wrongLengthThrowsLengthError()
{
    QFETCH(QString, className);
    QFETCH(QVariant, before);
    QFETCH(QByteArray, record);
    QFETCH(QString, error);
    QFETCH(QVariant, after);
    withObjectOf(className, [&](auto object) {
        object.Setvalue(numberOf(object, before));
        QCOMPARE(thrownBy([&] { readRecord(object, bytes(record.constData())); }), error);
        QCOMPARE(object.Getvalue(), numberOf(object, after));
    });
}

TEST_SUITE(SingleNumbersTest)
#include "tst_SingleNumbers.moc"
