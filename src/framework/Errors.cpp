// SPDX-License-Identifier: MIT
#include "framework/Errors.h"

#include <array>

#include <jobxml/DataObject.h>

#include "framework/Block.h"
#include "text/OwnText.h"

namespace JobXml {

using REPORTGENERATOR::ownText;
using REPORTGENERATOR::Size;

namespace {

// Most texts are prefixed with the object's name; those that contain it already are not.
QString withName(const DataObject &object, const QString &text)
{
    return object.GetObjectName() + text;
}

// The name of a data member: that of the alternative with "m_" and a lower-case initial.
QString dataMember(QLatin1String alternative)
{
    QString name = alternative;
    name[0] = name[0].toLower();
    return ownText("m_") + name;
}

// One for each alternative that a class may have.
constexpr auto unchosenTexts = [] {
    std::array<const char *, mostMembers> texts{};
    for (const char *&text : texts)
        text = ": Tried to access an Interface that is nor selected.";
    return texts;
}();

} // namespace

void Errors::notSet(const DataObject &object, QLatin1String member)
{
    throw OutOfRangeException(withName(object, ownText(": Please set %1 properly.").arg(member)));
}

void Errors::nullText(const DataObject &object, QLatin1String member)
{
    throw OutOfRangeException(withName(object, ownText(": Please set %1 properly (origin: Setter).").arg(member)));
}

void Errors::invalidEnum(const QString &className, QLatin1String member)
{
    throw OutOfRangeException(ownText("enum is not valid (classname=%1,membername=m_%2)").arg(className, member));
}

void Errors::incompleteItem(const DataObject &object, QLatin1String item)
{
    throw IncompleteDefinitionException(
        withName(object, ownText(": Tried to append not completely defined or invalid item %1.").arg(item)));
}

void Errors::itemWithoutData(const DataObject &object, QLatin1String item)
{
    throw IncompleteDefinitionException(
        ownText("Parameters for %1 are not set properly in '%2'.").arg(item, object.GetObjectName()));
}

void Errors::emptyBoolean(const DataObject &object, QLatin1String member)
{
    throw InvalidXmlException(
        ownText("Please set a value or a default for the boolean '%1' in '%2'.").arg(member, object.GetObjectName()));
}

void Errors::unknownElement(const DataObject &object, const QString &element)
{
    throw InvalidXmlException(ownText("Unknown Tag '%1' in '%2'.").arg(element, object.GetObjectName()));
}

// The text contains no number: the remaining length would mean nothing to a user.
void Errors::wrongLength(const DataObject &object)
{
    throw BinaryParsingException(withName(
        object, ownText("::SetBinary(...): Length error occurred during processing of binary representation")));
}

void Errors::invalidChoice(const DataObject &object)
{
    throw OutOfRangeException(ownText("Invalid enum value set in '%1'.").arg(object.GetObjectName()));
}

void Errors::nothingChosen(const DataObject &object, QLatin1String choice)
{
    throw IncompleteDefinitionException(
        withName(object, ownText(":Check failed. The mandatory choice %1 is not initialized").arg(choice)));
}

void Errors::chosenNotSet(const DataObject &object, QLatin1String alternative)
{
    throw IncompleteDefinitionException(withName(
        object,
        ownText(":Check failed. The mandatory member (choice element) %1 is not set.").arg(dataMember(alternative))));
}

void Errors::chosenWithoutData(const DataObject &object, QLatin1String alternative)
{
    throw IncompleteDefinitionException(
        withName(object,
                 ownText(":Check failed. Mandatory data of the member (choice element) %1 is not set.")
                     .arg(dataMember(alternative))));
}

QString Errors::accessToUnchosen(const DataObject &object, int alternative)
{
    return withName(object, QLatin1String(unchosenTexts[std::size_t(alternative)]));
}

QString Errors::emptyList(const DataObject &object, QLatin1String list)
{
    return withName(object,
                    QLatin1String(": the list ") + list
                        + QLatin1String(" is set but empty, so nothing would be written; append at least one item"));
}

QString Errors::withoutData(const DataObject &object)
{
    return withName(object, QLatin1String(": HasData() returns false, so nothing would be written"));
}

QString Errors::notForXml(const DataObject &object, QLatin1String member, const QString &text, Size at)
{
    const QString number = QString::number(text.at(at).unicode(), 16).toUpper().rightJustified(4, QLatin1Char('0'));
    const QString position = QString::number(at + 1);
    if (text.at(at).isSurrogate())
        return withName(object,
                        QLatin1String(": ") + member + QLatin1String(" contains U+") + number
                            + QLatin1String(", half of a surrogate pair, at position ") + position
                            + QLatin1String(", which XML cannot carry; remove it, or complete the pair"));
    return withName(object,
                    QLatin1String(": ") + member + QLatin1String(" contains U+") + number
                        + QLatin1String(" at position ") + position
                        + QLatin1String(", which XML cannot carry; remove it, or save tagged records, which can"));
}

QString Errors::ownTextNotForXml(const DataObject &object)
{
    return withName(object,
                    QLatin1String(": a text that the derived class writes contains a character that XML cannot carry; "
                                  "remove it, or save tagged records, which can"));
}

} // namespace JobXml
