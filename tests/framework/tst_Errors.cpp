// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include <jobxml/StringItem.h>

#include "ExceptionText.h"
#include "framework/Errors.h"

using namespace JobXml;

using Failure = std::function<void(const DataObject &)>;
Q_DECLARE_METATYPE(Failure)

/// Every error of the model with its type and its complete text, for an object named "StringItem".
class ErrorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFailureHasItsTypeAndItsText_data();
    void everyFailureHasItsTypeAndItsText();
    void theTextForAnAlternativeThatIsNotChosenIsDefinedForAllTen_data();
    void theTextForAnAlternativeThatIsNotChosenIsDefinedForAllTen();
    void problemsForWhichNothingIsThrownHaveTheirTexts();
};

void ErrorsTest::everyFailureHasItsTypeAndItsText_data()
{
    QTest::addColumn<Failure>("failure");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, Failure failure, const char *text) {
        QTest::newRow(name) << failure << QString::fromLatin1(text);
    };
    const QLatin1String id("id");
    const QLatin1String node("Node");
    const QLatin1String valueInt64("ValueInt64");
    row(
        "not set", [=](const DataObject &o) { Errors::notSet(o, id); },
        "OutOfRangeException: StringItem: Please set id properly.");
    row(
        "null given", [=](const DataObject &o) { Errors::nullText(o, id); },
        "OutOfRangeException: StringItem: Please set id properly (origin: Setter).");
    row(
        "invalid enumeration value given",
        [](const DataObject &) { Errors::invalidEnum(QStringLiteral("TunerProperties"), QLatin1String("type")); },
        "OutOfRangeException: enum is not valid (classname=TunerProperties,membername=m_type)");
    row(
        "incomplete item", [=](const DataObject &o) { Errors::incompleteItem(o, node); },
        "IncompleteDefinitionException: StringItem: Tried to append not completely defined or invalid item Node.");
    row(
        "item without data", [=](const DataObject &o) { Errors::itemWithoutData(o, node); },
        "IncompleteDefinitionException: Parameters for Node are not set properly in 'StringItem'.");
    row(
        "empty boolean", [](const DataObject &o) { Errors::emptyBoolean(o, QLatin1String("value")); },
        "InvalidXmlException: Please set a value or a default for the boolean 'value' in 'StringItem'.");
    row(
        "unknown element", [](const DataObject &o) { Errors::unknownElement(o, QStringLiteral("Größe")); },
        "InvalidXmlException: Unknown Tag 'Gr\xF6\xDF"
        "e' in 'StringItem'.");
    row(
        "wrong length", [](const DataObject &o) { Errors::wrongLength(o); },
        "BinaryParsingException: StringItem::SetBinary(...): Length error occurred during processing of binary "
        "representation");
    row(
        "invalid choice", [](const DataObject &o) { Errors::invalidChoice(o); },
        "OutOfRangeException: Invalid enum value set in 'StringItem'.");
    row(
        "nothing chosen", [](const DataObject &o) { Errors::nothingChosen(o, QLatin1String("ChoiceValueItem")); },
        "IncompleteDefinitionException: StringItem:Check failed. The mandatory choice ChoiceValueItem is not "
        "initialized");
    row(
        "chosen, not set", [=](const DataObject &o) { Errors::chosenNotSet(o, valueInt64); },
        "IncompleteDefinitionException: StringItem:Check failed. The mandatory member (choice element) m_valueInt64 is "
        "not set.");
    row(
        "chosen, without data", [=](const DataObject &o) { Errors::chosenWithoutData(o, valueInt64); },
        "IncompleteDefinitionException: StringItem:Check failed. Mandatory data of the member (choice element) "
        "m_valueInt64 is not set.");
}

void ErrorsTest::everyFailureHasItsTypeAndItsText()
{
    QFETCH(Failure, failure);
    QFETCH(QString, text);
    const StringItem object;
    QCOMPARE(thrownBy([&] { failure(object); }), text);
}

void ErrorsTest::theTextForAnAlternativeThatIsNotChosenIsDefinedForAllTen_data()
{
    QTest::addColumn<int>("alternative");
    for (int i = 0; i < 10; ++i)
        QTest::addRow("alternative %d", i) << i;
}

void ErrorsTest::theTextForAnAlternativeThatIsNotChosenIsDefinedForAllTen()
{
    QFETCH(int, alternative);
    QCOMPARE(Errors::accessToUnchosen(StringItem(), alternative),
             QStringLiteral("StringItem: Tried to access an Interface that is nor selected."));
}

void ErrorsTest::problemsForWhichNothingIsThrownHaveTheirTexts()
{
    const StringItem object;
    const QLatin1String value("value");
    QCOMPARE(Errors::emptyList(object, QLatin1String("Node")),
             QStringLiteral("StringItem: the list Node is set but empty, so nothing would be written; append at least "
                            "one item"));
    QCOMPARE(Errors::withoutData(object),
             QStringLiteral("StringItem: HasData() returns false, so nothing would be written"));
    QCOMPARE(Errors::notForXml(object, value, QStringLiteral("a\x1f"), 1),
             QStringLiteral("StringItem: value contains U+001F at position 2, which XML cannot carry; remove it, or "
                            "save tagged records, which can"));
    QCOMPARE(Errors::notForXml(object, value, QString(QChar(0xD800)), 0),
             QStringLiteral("StringItem: value contains U+D800, half of a surrogate pair, at position 1, which XML "
                            "cannot carry; remove it, or complete the pair"));
}

TEST_SUITE(ErrorsTest)
#include "tst_Errors.moc"
