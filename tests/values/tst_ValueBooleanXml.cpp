// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

namespace {

const char emptyValue[] =
    "InvalidXmlException: Please set a value or a default for the boolean 'value' in 'ValueBoolean'.";

ValueBoolean readFrom(const char *element, bool validate = true)
{
    ValueBoolean object;
    object.SetValidate(validate);
    readXml(object, QString::fromUtf8(element));
    return object;
}

} // namespace

/// A switch in XML, as an example for the XML of every class.
class ValueBooleanXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeSwitchHasThisElement();
    void theElementHasTheNameOfTheObject();
    void switchWithoutValueIsRefusedWhileValidating();
    void switchWithoutIdIsRefusedWhileValidating();
    void anObjectWithoutDataWritesNothingEvenIfItsCheckPasses();
    void emptySwitchIsWrittenWithAnEmptyIdAndNoValueWithoutValidation();
    void valueIsWrittenAfterAnEmptyIdWithoutValidation();
    void specialCharactersSurvive();

    void booleanTextsAreRead_data();
    void booleanTextsAreRead();
    void anEmptyBooleanIsRefusedWhileValidating_data();
    void anEmptyBooleanIsRefusedWhileValidating();
    void anEmptyBooleanIsFalseWithoutValidation_data() { anEmptyBooleanIsRefusedWhileValidating_data(); }
    void anEmptyBooleanIsFalseWithoutValidation();
    void valuesReadBeforeAnErrorAreKept();

    void elementsAreReadLikeAttributes();
    void elementsWinOverAttributes();
    void ofSeveralElementsTheLastCounts();
    void anEmptyIdIsEmptyAndNotNull_data();
    void anEmptyIdIsEmptyAndNotNull();
    void textOfNestedElementsIsLeftOut();
    void textCommentsAndInstructionsAreSkipped();
    void missingRecordsLeaveMembersUnchanged();
    void namesAreCaseSensitive();

    void unknownAttributesAreIgnored();
    void unknownElementsAreSkippedWithTheirContent();
    void aNestedElementOfTheSameNameEndsTheSkipping();
    void nestedElementWithTheObjectsNameEndsReading();
    void readingEndsOnTheEndOfTheElement();
    void truncatedUnknownElementEndsReading();
};

void ValueBooleanXmlTest::aWholeSwitchHasThisElement()
{
    hasElement(sample<ValueBoolean>("a", true), QStringLiteral("<ValueBoolean id=\"a\" value=\"true\"/>"));
    hasElement(sample<ValueBoolean>("b", false), QStringLiteral("<ValueBoolean id=\"b\" value=\"false\"/>"));
}

void ValueBooleanXmlTest::theElementHasTheNameOfTheObject()
{
    Renamed<ValueBoolean> object(QStringLiteral("Relay"));
    object.Setid(QStringLiteral("a"));
    object.Setvalue(true);
    QCOMPARE(xmlOf(object), QStringLiteral("<Relay id=\"a\" value=\"true\"/>"));
}

void ValueBooleanXmlTest::switchWithoutValueIsRefusedWhileValidating()
{
    ValueBoolean object;
    object.Setid(QStringLiteral("a"));
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }),
             QStringLiteral("OutOfRangeException: ValueBoolean: Please set value properly."));
    QCOMPARE(xml, QString());
}

void ValueBooleanXmlTest::switchWithoutIdIsRefusedWhileValidating()
{
    ValueBoolean object;
    object.Setvalue(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }),
             QStringLiteral("OutOfRangeException: ValueBoolean: Please set id properly."));
    QCOMPARE(xml, QString());
}

void ValueBooleanXmlTest::anObjectWithoutDataWritesNothingEvenIfItsCheckPasses()
{
    Unchecked<ValueBoolean> object;
    object.Setid(QStringLiteral("a"));
    QCOMPARE(xmlOf(object), QString());
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueBoolean id=\"a\"/>"));
}

void ValueBooleanXmlTest::emptySwitchIsWrittenWithAnEmptyIdAndNoValueWithoutValidation()
{
    const auto object = withoutValidation<ValueBoolean>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueBoolean id=\"\"/>"));
    QVERIFY(object.IsInitialized());
    QVERIFY(!object.AnyData());
}

void ValueBooleanXmlTest::valueIsWrittenAfterAnEmptyIdWithoutValidation()
{
    auto object = withoutValidation<ValueBoolean>();
    object.Setvalue(true);
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueBoolean id=\"\" value=\"true\"/>"));
}

void ValueBooleanXmlTest::specialCharactersSurvive()
{
    ValueBoolean object;
    object.Setid(QStringLiteral("<\"&'> \u00E4\n\t"));
    object.Setvalue(true);
    ValueBoolean read;
    readXml(read, xmlOf(object));
    QCOMPARE(read.Getid(), QStringLiteral("<\"&'> \u00E4\n\t"));
}

void ValueBooleanXmlTest::booleanTextsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("value");

    for (const char *text : {"0", "false", "False", "FALSE", "fAlSe"})
        QTest::newRow(text) << QString::fromLatin1(text) << false;
    for (const char *text : {"1", "true", "TRUE", "yes", "no", "x", "off", "00", "0.0", "-0", " ", " 0", "false "})
        QTest::newRow(text) << QString::fromLatin1(text) << true;
}

void ValueBooleanXmlTest::booleanTextsAreRead()
{
    QFETCH(QString, text);
    QFETCH(bool, value);
    for (const bool validate : {true, false}) {
        for (const QString &element : {QStringLiteral("<ValueBoolean value=\"%1\"/>"),
                                       QStringLiteral("<ValueBoolean><value>%1</value></ValueBoolean>")}) {
            ValueBoolean object;
            object.Setvalue(!value);
            object.SetValidate(validate);
            readXml(object, element.arg(text));
            QCOMPARE(object.Getvalue(), value);
            object.Reset();
            readXml(object, element.arg(text));
            QVERIFY(object.IsvalueSet());
        }
    }
}

void ValueBooleanXmlTest::anEmptyBooleanIsRefusedWhileValidating_data()
{
    QTest::addColumn<QString>("element");

    QTest::newRow("attribute") << QStringLiteral("<ValueBoolean value=\"\"/>");
    QTest::newRow("element") << QStringLiteral("<ValueBoolean><value></value></ValueBoolean>");
    QTest::newRow("empty element") << QStringLiteral("<ValueBoolean><value/></ValueBoolean>");
    QTest::newRow("element without text of its own")
        << QStringLiteral("<ValueBoolean><value><x>true</x></value></ValueBoolean>");
}

void ValueBooleanXmlTest::anEmptyBooleanIsRefusedWhileValidating()
{
    QFETCH(QString, element);
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { readXml(object, element); }), QLatin1String(emptyValue));
    QVERIFY(!object.IsvalueSet());

    object.Setvalue(true);
    QCOMPARE(thrownBy([&] { readXml(object, element); }), QLatin1String(emptyValue));
    QVERIFY(object.IsvalueSet());
    QCOMPARE(object.Getvalue(), true);
}

void ValueBooleanXmlTest::anEmptyBooleanIsFalseWithoutValidation()
{
    QFETCH(QString, element);
    auto object = withoutValidation<ValueBoolean>();
    readXml(object, element);
    QVERIFY(object.IsvalueSet());
    QCOMPARE(object.Getvalue(), false);

    object.Setvalue(true);
    readXml(object, element);
    QCOMPARE(object.Getvalue(), false);
}

void ValueBooleanXmlTest::valuesReadBeforeAnErrorAreKept()
{
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { readXml(object, QStringLiteral("<ValueBoolean value=\"\" id=\"a\"/>")); }),
             QLatin1String(emptyValue)); // attributes are read in the order of the members
    QCOMPARE(object.Getid(), QStringLiteral("a"));

    ValueBoolean other;
    const auto elements = QStringLiteral("<ValueBoolean><id>a</id><value/><id>b</id></ValueBoolean>");
    QCOMPARE(thrownBy([&] { readXml(other, elements); }), QLatin1String(emptyValue));
    QCOMPARE(other.Getid(), QStringLiteral("a"));
}

void ValueBooleanXmlTest::elementsAreReadLikeAttributes()
{
    const ValueBoolean object = readFrom("<ValueBoolean><id>a</id><value>true</value></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("a", true));
    QVERIFY(object == readFrom("<ValueBoolean id=\"a\" value=\"true\"/>"));
    QVERIFY(object == readFrom("<ValueBoolean><value>true</value><id>a</id></ValueBoolean>"));
    QVERIFY(object == readFrom("<ValueBoolean value=\"true\"><id>a</id></ValueBoolean>"));
}

void ValueBooleanXmlTest::elementsWinOverAttributes()
{
    const ValueBoolean object =
        readFrom("<ValueBoolean id=\"a\" value=\"true\"><id>b</id><value>false</value></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("b", false));
}

void ValueBooleanXmlTest::ofSeveralElementsTheLastCounts()
{
    const ValueBoolean object =
        readFrom("<ValueBoolean><id>a</id><value>1</value><value>0</value><id>b</id></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("b", false));
}

void ValueBooleanXmlTest::anEmptyIdIsEmptyAndNotNull_data()
{
    QTest::addColumn<QString>("element");

    QTest::newRow("attribute") << QStringLiteral("<ValueBoolean id=\"\"/>");
    QTest::newRow("element") << QStringLiteral("<ValueBoolean><id></id></ValueBoolean>");
    QTest::newRow("empty element") << QStringLiteral("<ValueBoolean><id/></ValueBoolean>");
    QTest::newRow("element without text of its own")
        << QStringLiteral("<ValueBoolean><id><!-- --></id></ValueBoolean>");
}

void ValueBooleanXmlTest::anEmptyIdIsEmptyAndNotNull()
{
    QFETCH(QString, element);
    ValueBoolean object;
    readXml(object, element); // not refused as null would be
    QVERIFY(object.IsidSet());
    QCOMPARE(object.Getid(), QStringLiteral(""));
    QVERIFY(!object.Getid().isNull());
}

void ValueBooleanXmlTest::textOfNestedElementsIsLeftOut()
{
    const ValueBoolean object = readFrom("<ValueBoolean><id>a<b>no<id>no</id></b>c<![CDATA[<d>]]>&amp;</id>"
                                         "<value>tr<!-- no -->ue</value></ValueBoolean>");
    QCOMPARE(object.Getid(), QStringLiteral("ac<d>&"));
    QCOMPARE(object.Getvalue(), true);
}

void ValueBooleanXmlTest::textCommentsAndInstructionsAreSkipped()
{
    const ValueBoolean object = readFrom("<ValueBoolean> text <!-- <id>no</id> --><id>a</id> more <?value no?>"
                                         "<value>false</value><![CDATA[<id>no</id>]]></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("a", false));
}

void ValueBooleanXmlTest::missingRecordsLeaveMembersUnchanged()
{
    auto object = sample<ValueBoolean>("a", true);
    readXml(object, QStringLiteral("<ValueBoolean/>"));
    QVERIFY(object == sample<ValueBoolean>("a", true));
    readXml(object, QStringLiteral("<ValueBoolean id=\"b\"/>"));
    QVERIFY(object == sample<ValueBoolean>("b", true));

    ValueBoolean nothing;
    readXml(nothing, QStringLiteral("<ValueBoolean/>"));
    QVERIFY(nothing.IsInitialized());
    QVERIFY(!nothing.AnyData());
}

void ValueBooleanXmlTest::namesAreCaseSensitive()
{
    QVERIFY(!readFrom("<ValueBoolean ID=\"a\" Value=\"true\"><Id>a</Id><VALUE>true</VALUE></ValueBoolean>").AnyData());
}

void ValueBooleanXmlTest::unknownAttributesAreIgnored()
{
    const ValueBoolean object = readFrom("<ValueBoolean min=\"1\" id=\"a\" Version=\"9\" value=\"true\"/>");
    QVERIFY(object == sample<ValueBoolean>("a", true));
}

void ValueBooleanXmlTest::unknownElementsAreSkippedWithTheirContent()
{
    const ValueBoolean object =
        readFrom("<ValueBoolean><other/><other id=\"no\">text<id>no</id><inner><value>true</value></inner></other>"
                 "<id>a</id><min>1</min><value>false</value><last><id>no</id></last></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("a", false));
}

void ValueBooleanXmlTest::aNestedElementOfTheSameNameEndsTheSkipping()
{
    // Skipping searches for the name, not for the end: the second "other" ends it, and the content after it is read.
    const ValueBoolean object = readFrom("<ValueBoolean><other><id>no</id><other><id>inner</id></other>"
                                         "<value>true</value></other></ValueBoolean>");
    QVERIFY(object == sample<ValueBoolean>("inner", true));
}

void ValueBooleanXmlTest::nestedElementWithTheObjectsNameEndsReading()
{
    const ValueBoolean once =
        readFrom("<ValueBoolean><ValueBoolean id=\"no\"/><id>a</id><value>true</value></ValueBoolean>");
    QVERIFY(once == sample<ValueBoolean>("a", true));

    // Skipping ends at the inner start, and reading at the first end tag with the object's own name.
    const ValueBoolean twice = readFrom("<ValueBoolean><id>a</id><ValueBoolean><ValueBoolean/></ValueBoolean>"
                                        "<value>true</value></ValueBoolean>");
    QCOMPARE(twice.Getid(), QStringLiteral("a"));
    QVERIFY(!twice.IsvalueSet());
}

void ValueBooleanXmlTest::readingEndsOnTheEndOfTheElement()
{
    QXmlStreamReader reader(QStringLiteral("<r><ValueBoolean id=\"a\"><value>1</value></ValueBoolean>"
                                           "<ValueBoolean id=\"b\" value=\"0\"/></r>"));
    reader.readNextStartElement();
    for (const auto &expected : {sample<ValueBoolean>("a", true), sample<ValueBoolean>("b", false)}) {
        QVERIFY(reader.readNextStartElement());
        ValueBoolean object;
        object.ProcessXml(reader);
        QVERIFY(object == expected);
        QVERIFY(reader.isEndElement());
        QVERIFY(reader.name() == QLatin1String("ValueBoolean"));
    }
    QVERIFY(!reader.readNextStartElement());
    QVERIFY(!reader.hasError());
}

void ValueBooleanXmlTest::truncatedUnknownElementEndsReading()
{
    const ValueBoolean object = readFrom("<ValueBoolean id=\"a\"><other><inner>");
    QCOMPARE(object.Getid(), QStringLiteral("a"));
    QVERIFY(!object.IsvalueSet());
}

TEST_SUITE(ValueBooleanXmlTest)
#include "tst_ValueBooleanXml.moc"
