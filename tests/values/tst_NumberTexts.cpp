// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

namespace {

/// Equal, or both NaN.
template <class Number>
bool same(Number left, Number right)
{
    return left == right || (qIsNaN(left) && qIsNaN(right));
}

/// The result of reading a member of this class from a text, as attribute and as element.
template <class Object, class Getter>
auto readInXml(const char *member, const QString &text, Getter get)
{
    const auto pattern = QStringLiteral("<o %1=\"%2\"><other/></o>").arg(QLatin1String(member), text.toHtmlEscaped());
    Object fromAttribute;
    readXml(fromAttribute, pattern);
    Object fromElement;
    readXml(fromElement, QStringLiteral("<o><%1>%2</%1></o>").arg(QLatin1String(member), text.toHtmlEscaped()));
    return QVector<std::decay_t<decltype((fromElement.*get)())>>{(fromAttribute.*get)(), (fromElement.*get)()};
}

template <class Object, class Getter>
auto readInRecord(quint32 tag, const QString &text, Getter get)
{
    Object object;
    readRecord(object, recordWithText(tag, text.toUtf8()));
    return (object.*get)();
}

/// The text in the attribute of an element.
QString attributeOf(const QString &element, const char *name)
{
    QXmlStreamReader reader(element);
    reader.readNextStartElement();
    return reader.attributes().value(QLatin1String(name)).toString();
}

/// The double next to 1e300, in full.
const char tenToTheThreeHundred[] =
    "1000000000000000052504760255204420248704468581108159154915854115511802457988908195786371375080447864"
    "0437044438328838781769425232353604305756447921847867069828483872009265758037378302337947880900593689"
    "5323497079994508111903896764088007465274278014249457925878882005684283811566947219638686545940054016"
    "0.00";

} // namespace

/// Numbers as texts are read as QString reads them, and written with two decimals.
class NumberTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreReadAsIntegers_data();
    void textsAreReadAsIntegers();
    void textsAreReadAsFloatingPointNumbers_data();
    void textsAreReadAsFloatingPointNumbers();
    void everyTextSetsTheMember();
    void doublesAreWrittenWithTwoDecimals_data();
    void doublesAreWrittenWithTwoDecimals();
    void floatsAreWrittenWithTwoDecimals_data();
    void floatsAreWrittenWithTwoDecimals();
    void infinityAndNaNAreReadBack();
    void aTinyNegativeNumberLosesItsSignTheSecondTime();
};

void NumberTextsTest::textsAreReadAsIntegers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::addColumn<qint64>("wideNumber");

    const auto row = [](const char *name, const QString &text, int number, qint64 wideNumber) {
        QTest::newRow(name) << text << number << wideNumber;
    };
    const auto both = [&](const char *text, int number) { row(text, QString::fromUtf8(text), number, number); };
    both("12", 12);
    both("+12", 12);
    both("-12", -12);
    both("0012", 12);
    both("-0", 0);
    both(" 12", 12);
    both("12 ", 12);
    both("  -12  ", -12);
    both("- 12", 0);
    both("--12", 0);
    both("1 2", 0);
    both("12abc", 0);
    both("abc", 0);
    both("12.0", 0);
    both("1e3", 0);
    both("1,000", 0);
    both("0x12", 0);
    both("\xD9\xA3", 0); // an Arabic three
    row("nothing", QStringLiteral(""), 0, 0);
    row("blanks", QStringLiteral("  "), 0, 0);
    row("tabs and lines", QStringLiteral("\t12\n"), 12, 12);
    row("greatest int", QStringLiteral("2147483647"), 2147483647, 2147483647);
    row("one more", QStringLiteral("2147483648"), 0, 2147483648);
    row("least int", QStringLiteral("-2147483648"), std::numeric_limits<int>::min(), -2147483648LL);
    row("one less", QStringLiteral("-2147483649"), 0, -2147483649LL);
    row("not the low bits", QStringLiteral("4294967297"), 0, 4294967297);
    row("greatest long", QStringLiteral("9223372036854775807"), 0, std::numeric_limits<qint64>::max());
    row("one more than that", QStringLiteral("9223372036854775808"), 0, 0);
    row("least long", QStringLiteral("-9223372036854775808"), 0, std::numeric_limits<qint64>::min());
    row("one less than that", QStringLiteral("-9223372036854775809"), 0, 0);
}

void NumberTextsTest::textsAreReadAsIntegers()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QFETCH(qint64, wideNumber);
    QCOMPARE(text.toInt(), number);
    QCOMPARE(text.toLongLong(), wideNumber);

    const QVector<int> numbers = {number, number};
    QCOMPARE(readInXml<ValueInt>("value", text, &ValueInt::Getvalue), numbers);
    QCOMPARE(readInXml<ValueNumericInt>("value", text, &ValueNumericInt::Getvalue), numbers);
    QCOMPARE(readInXml<ValueNumericInt>("min", text, &ValueNumericInt::Getmin), numbers);
    QCOMPARE(readInXml<ValueNumericInt>("max", text, &ValueNumericInt::Getmax), numbers);
    QCOMPARE(readInXml<ValueNumericInt>("step", text, &ValueNumericInt::Getstep), numbers);
    QCOMPARE(readInXml<ValueSelection>("index", text, &ValueSelection::Getindex), numbers);

    const QVector<qint64> wideNumbers = {wideNumber, wideNumber};
    QCOMPARE(readInXml<ValueInt64>("value", text, &ValueInt64::Getvalue), wideNumbers);
    QCOMPARE(readInXml<ValueNumericInt64>("value", text, &ValueNumericInt64::Getvalue), wideNumbers);
    QCOMPARE(readInXml<ValueNumericInt64>("min", text, &ValueNumericInt64::Getmin), wideNumbers);
    QCOMPARE(readInXml<ValueNumericInt64>("max", text, &ValueNumericInt64::Getmax), wideNumbers);
    QCOMPARE(readInXml<ValueNumericInt64>("step", text, &ValueNumericInt64::Getstep), wideNumbers);
}

void NumberTextsTest::textsAreReadAsFloatingPointNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<float>("number");
    QTest::addColumn<double>("wideNumber");

    const auto row = [](const char *text, float number, double wideNumber) {
        QTest::newRow(text) << QString::fromUtf8(text) << number << wideNumber;
    };
    const float infinity = std::numeric_limits<float>::infinity();
    row("2.50", 2.5f, 2.5);
    row("7", 7.f, 7.);
    row("+2.5", 2.5f, 2.5);
    row("-2.5", -2.5f, -2.5);
    row("0.1", 0.1f, 0.1);
    row(" 2.5", 2.5f, 2.5);
    row("2.5 ", 2.5f, 2.5);
    row("- 2.5", 0.f, 0.);
    row(".5", 0.5f, 0.5);
    row("5.", 5.f, 5.);
    row("1e3", 1000.f, 1000.);
    row("1E3", 1000.f, 1000.);
    row("1e+3", 1000.f, 1000.);
    row("2.5e-1", 0.25f, 0.25);
    row("1e", 0.f, 0.);
    row("e3", 0.f, 0.);
    row("1,5", 0.f, 0.);
    row("1,000.5", 0.f, 0.);
    row("1.5.2", 0.f, 0.);
    row("1 000", 0.f, 0.);
    row("0x10", 0.f, 0.);
    row("12abc", 0.f, 0.);
    row("-", 0.f, 0.);
    row("", 0.f, 0.);
    row("16777217", 16777216.f, 16777217.); // more digits than a float has
    row("1e40", infinity, 1e40);
    row("-1e40", -infinity, -1e40);
    row("1e400", infinity, qInf());
    row("1e-50", 0.f, 1e-50);
    row("1e-400", 0.f, 0.);
    row("inf", infinity, qInf());
    row("-inf", -infinity, -qInf());
    row("nan", std::numeric_limits<float>::quiet_NaN(), qQNaN());
    row("infinity", 0.f, 0.);
}

void NumberTextsTest::textsAreReadAsFloatingPointNumbers()
{
    QFETCH(QString, text);
    QFETCH(float, number);
    QFETCH(double, wideNumber);
    QVERIFY(same(text.toFloat(), number));
    QVERIFY(same(text.toDouble(), wideNumber));

    QVector<float> numbers = {readInRecord<ValueFloat>(0xE3DF649D, text, &ValueFloat::Getvalue),
                              readInRecord<ValueNumericFloat>(0xE3DF649D, text, &ValueNumericFloat::Getvalue),
                              readInRecord<ValueNumericFloat>(0x655BA9DC, text, &ValueNumericFloat::Getmin),
                              readInRecord<ValueNumericFloat>(0x81166ACB, text, &ValueNumericFloat::Getmax),
                              readInRecord<ValueNumericFloat>(0xA8D464CF, text, &ValueNumericFloat::Getstep)};
    numbers += readInXml<ValueFloat>("value", text, &ValueFloat::Getvalue);
    numbers += readInXml<ValueNumericFloat>("value", text, &ValueNumericFloat::Getvalue);
    numbers += readInXml<ValueNumericFloat>("min", text, &ValueNumericFloat::Getmin);
    numbers += readInXml<ValueNumericFloat>("max", text, &ValueNumericFloat::Getmax);
    numbers += readInXml<ValueNumericFloat>("step", text, &ValueNumericFloat::Getstep);
    for (const float read : std::as_const(numbers))
        QVERIFY(same(read, number));

    QVector<double> wideNumbers = {readInRecord<SelectionItem>(0xC14D665E, text, &SelectionItem::Getvalue),
                                   readInRecord<ValueSelection>(0xC14D665E, text, &ValueSelection::Getvalue)};
    wideNumbers += readInXml<SelectionItem>("value", text, &SelectionItem::Getvalue);
    wideNumbers += readInXml<ValueSelection>("value", text, &ValueSelection::Getvalue);
    for (const double read : std::as_const(wideNumbers))
        QVERIFY(same(read, wideNumber));
}

void NumberTextsTest::everyTextSetsTheMember()
{
    for (const QString &text : {QStringLiteral(""), QStringLiteral("abc"), QStringLiteral("7")}) {
        ValueFloat number;
        readXml(number, QStringLiteral("<ValueFloat value=\"%1\"/>").arg(text));
        QVERIFY(number.IsvalueSet());
        ValueFloat numberOfRecord;
        readRecord(numberOfRecord, recordWithText(0xE3DF649D, text.toUtf8()));
        QVERIFY(numberOfRecord.IsvalueSet());
        ValueInt integer;
        readXml(integer, QStringLiteral("<ValueInt><value>%1</value></ValueInt>").arg(text));
        QVERIFY(integer.IsvalueSet());
        ValueInt64 wideInteger;
        readXml(wideInteger, QStringLiteral("<ValueInt64><value>%1</value></ValueInt64>").arg(text));
        QVERIFY(wideInteger.IsvalueSet());
    }
}

void NumberTextsTest::doublesAreWrittenWithTwoDecimals_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");

    const auto row = [](double number, const char *text) {
        QTest::newRow(QByteArray(text).left(40).constData()) << number << QString::fromLatin1(text);
    };
    row(0, "0.00");
    row(-0.0, "0.00");
    row(-0.001, "-0.00");
    row(0.004, "0.00");
    row(-2.5, "-2.50");
    row(0.333, "0.33");
    row(2, "2.00");
    row(0.125, "0.13"); // ties that a double holds exactly
    row(-0.125, "-0.13");
    row(0.375, "0.38");
    row(0.625, "0.63");
    row(0.875, "0.88");
    row(1000000.125, "1000000.13");
    row(0.005, "0.01"); // and those that are a little more
    row(0.015, "0.01"); // or a little less
    row(0.045, "0.04");
    row(1.005, "1.00");
    row(2.675, "2.67");
    row(9.995, "9.99");
    row(9.999, "10.00");
    row(1e10, "10000000000.00");
    row(9007199254740993.0, "9007199254740992.00");
    row(1e300, tenToTheThreeHundred);
    row(1e-300, "0.00");
    row(qQNaN(), "nan");
    row(qInf(), "inf");
    row(-qInf(), "-inf");
}

void NumberTextsTest::doublesAreWrittenWithTwoDecimals()
{
    QFETCH(double, number);
    QFETCH(QString, text);
    QCOMPARE(QStringLiteral("%1").arg(number, 0, 'f', 2), text);

    SelectionItem option;
    option.Setname(QStringLiteral("a"));
    option.Setvalue(number);
    QCOMPARE(attributeOf(xmlOf(option), "value"), text);
    QCOMPARE(hex(recordOf(option)).mid(17 * 3), hex(recordWithText(0xC14D665E, text.toLatin1())).mid(4 * 3));
    auto selection = withoutValidation<ValueSelection>();
    selection.Setvalue(number);
    QCOMPARE(attributeOf(xmlOf(selection), "value"), text);
    QVERIFY(recordOf(selection).contains(recordWithText(0xC14D665E, text.toLatin1()).mid(4)));
}

void NumberTextsTest::floatsAreWrittenWithTwoDecimals_data()
{
    QTest::addColumn<float>("number");
    QTest::addColumn<QString>("text");

    const auto row = [](float number, const char *text) { QTest::newRow(text) << number << QString::fromLatin1(text); };
    row(0.f, "0.00");
    row(-0.f, "0.00");
    row(-0.001f, "-0.00");
    row(0.126f, "0.13");
    row(3.f, "3.00");
    row(-0.5f, "-0.50");
    row(1.234f, "1.23");
    row(0.125f, "0.13"); // ties that a float holds exactly
    row(-0.125f, "-0.13");
    row(0.375f, "0.38");
    row(0.625f, "0.63");
    row(0.005f, "0.00"); // less than in a double
    row(0.045f, "0.05"); // more than in a double
    row(1.005f, "1.00");
    row(2.675f, "2.67");
    row(123456.785f, "123456.78"); // really .78125
    row(16777217.f, "16777216.00");
    row(std::numeric_limits<float>::max(), "340282346638528859811704183484516925440.00");
    row(std::numeric_limits<float>::denorm_min(), "0.00");
    row(std::numeric_limits<float>::quiet_NaN(), "nan");
    row(std::numeric_limits<float>::infinity(), "inf");
    row(-std::numeric_limits<float>::infinity(), "-inf");
}

void NumberTextsTest::floatsAreWrittenWithTwoDecimals()
{
    QFETCH(float, number);
    QFETCH(QString, text);
    QCOMPARE(QStringLiteral("%1").arg(double(number), 0, 'f', 2), text);

    const auto value = sample<ValueFloat>("f", number);
    QCOMPARE(attributeOf(xmlOf(value), "value"), text);
    QCOMPARE(hex(recordOf(value)).mid(17 * 3), hex(recordWithText(0xE3DF649D, text.toLatin1())).mid(4 * 3));
    const auto ranged = sample<ValueNumericFloat>("f", number, number, number, number);
    for (const char *member : {"value", "min", "max", "step"})
        QCOMPARE(attributeOf(xmlOf(ranged), member), text);
    for (const quint32 tag : {0xE3DF649Du, 0x655BA9DCu, 0x81166ACBu, 0xA8D464CFu})
        QVERIFY(recordOf(ranged).contains(recordWithText(tag, text.toLatin1()).mid(4)));
}

void NumberTextsTest::infinityAndNaNAreReadBack()
{
    for (const float number : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN()}) {
        const auto value = sample<ValueFloat>("f", number);
        ValueFloat fromXml;
        readXml(fromXml, xmlOf(value));
        ValueFloat fromRecord;
        readRecord(fromRecord, recordOf(value));
        ValueFloat fromSnapshot;
        readSnapshot(fromSnapshot, snapshotOf(value));
        for (const ValueFloat *read : {&fromXml, &fromRecord, &fromSnapshot})
            QVERIFY(same(read->Getvalue(), number));
    }
}

void NumberTextsTest::aTinyNegativeNumberLosesItsSignTheSecondTime()
{
    const auto value = sample<ValueFloat>("f", -0.001F);
    QCOMPARE(attributeOf(xmlOf(value), "value"), QStringLiteral("-0.00"));

    // It is read as the zero that has a sign, and Qt writes that one without.
    ValueFloat reread;
    readXml(reread, xmlOf(value));
    QVERIFY(std::signbit(reread.Getvalue()));
    QCOMPARE(attributeOf(xmlOf(reread), "value"), QStringLiteral("0.00"));
}

TEST_SUITE(NumberTextsTest)
#include "tst_NumberTexts.moc"
