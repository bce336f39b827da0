// SPDX-License-Identifier: MIT
#include "documents/xml/XmlText.h"

#include <cmath>
#include <vector>

#include <tunerdocuments/Value.h>

#include "documents/values/FindMember.h"
#include "text/XmlCharacters.h"

using namespace JobXml;

namespace TunerDocuments::XmlText {

bool hasChosenIn(const DataObject &object)
{
    const auto chosen = chosenIn(object);
    return chosen && chosen->IsSet() && chosen->GetSize() != 0;
}

namespace {

QByteArray escaped(const QString &text, const EncodedText &encoding, const QByteArray &special)
{
    const REPORTGENERATOR::Size bad = REPORTGENERATOR::firstNotForXml(text);
    if (bad >= 0) {
        const QString code = QString::number(text.at(bad).unicode(), 16).toUpper().rightJustified(4, QLatin1Char('0'));
        throw CannotEdit{QStringLiteral("XML cannot carry the character U+") + code};
    }
    QByteArray result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        if (character == '&')
            result += "&amp;";
        else if (character == '<')
            result += "&lt;";
        else if (character == '>')
            result += "&gt;"; // a text may not contain "]]>"
        else if (character == '"' && special.contains('"'))
            result += "&quot;";
        else if (character == '\'' && special.contains('\''))
            result += "&apos;";
        else if ((character < 0x20 && special.contains(char(character))) || !encoding.canEncode(character))
            result += "&#" + QByteArray::number(character) + ';';
        else
            result += textOf(character).toUtf8();
    }
    return result;
}

/// The members of an object in the order of its text. The last alternative of an item is the one that it has chosen, so
/// others precede it; they cannot be written without it.
std::vector<MemberView> writtenMembers(const DataObject &object)
{
    std::vector<MemberView> members;
    const bool hasChosen = hasChosenIn(object);
    visit(object, [&](const MemberView &member) {
        const bool isAlternative = member.GetKind() == MemberKind::Alternative;
        if (member.IsSet() && member.GetKind() != MemberKind::Choice
            && (!isAlternative || (hasChosen && !member.IsChosen())))
            members.push_back(member);
    });
    if (hasChosen)
        members.push_back(*chosenIn(object));
    return members;
}

QByteArray attributesOf(const std::vector<MemberView> &members, const EncodedText &encoding)
{
    QByteArray attributes;
    for (const MemberView &member : members) {
        if (member.IsAttribute())
            attributes += ' ' + QByteArray(member.GetName().data(), member.GetName().size()) + "=\""
                + inAttribute(ofValue(member).value(0), '"', encoding) + '"';
    }
    return attributes;
}

} // namespace

QStringList ofValue(const MemberView &member)
{
    const QVariant value = member.GetValue();
    switch (member.GetKind()) {
    case MemberKind::EnumerationList: {
        QStringList texts;
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries)
            texts.append(entry.toString());
        return texts;
    }
    case MemberKind::Boolean:
        return {value.toBool() ? QStringLiteral("true") : QStringLiteral("false")};
    case MemberKind::Float: {
        // The shortest text of the largest numbers is a double that is out of range.
        const QString text = TypedValue::print(value);
        const float number = value.value<float>();
        return {std::isinf(text.toFloat()) && !std::isinf(number) ? ValueText::exactly(double(number)) : text};
    }
    default:
        return {TypedValue::print(value)};
    }
}

QByteArray inAttribute(const QString &text, char quote, const EncodedText &encoding)
{
    return escaped(text, encoding, QByteArray("\t\n\r") + quote);
}

QByteArray inElement(const QString &text, const EncodedText &encoding)
{
    return escaped(text, encoding, "\r");
}

QByteArray element(const DataObject &object, const Layout &layout, const EncodedText &encoding)
{
    Layout inside = layout;
    inside.indentation += layout.step;
    const QByteArray name = layout.prefix + object.GetObjectName().toUtf8();
    const QByteArray separator = layout.lineEnd.isEmpty() ? QByteArray() : layout.lineEnd + inside.indentation;
    const std::vector<MemberView> members = writtenMembers(object);
    QByteArray content;
    for (const MemberView &member : members) {
        if (member.IsAttribute())
            continue;
        for (int i = 0; i < member.GetSize(); ++i)
            content += separator + element(member.GetChild(i), inside, encoding);
        const QStringList texts = holdsObjects(member) ? QStringList() : ofValue(member);
        for (const QString &text : texts)
            content += separator + element(member.GetName(), text, inside, encoding);
    }
    const QByteArray start = '<' + name + attributesOf(members, encoding);
    if (content.isEmpty())
        return start + "/>";
    const QByteArray end = layout.lineEnd.isEmpty() ? QByteArray() : layout.lineEnd + layout.indentation;
    return start + '>' + content + end + "</" + name + '>';
}

QByteArray element(const QString &name, const QString &text, const Layout &layout, const EncodedText &encoding)
{
    const QByteArray tag = layout.prefix + name.toUtf8();
    return '<' + tag + '>' + inElement(text, encoding) + "</" + tag + '>';
}

} // namespace TunerDocuments::XmlText
