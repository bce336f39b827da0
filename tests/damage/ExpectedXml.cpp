// SPDX-License-Identifier: MIT
#include "Expected.h"

#include <algorithm>

namespace Damage {

namespace {

// Thrown at the error of a text that is not well formed.
struct TruncatedText
{
};

class XmlInput
{
public:
    explicit XmlInput(const XmlTokens &all) : m_all(all) { }

    /// The next token; null at the end of a well-formed text.
    const XmlTokens::Token *next()
    {
        if (m_next < m_all.tokens.size())
            return &m_all.tokens.at(m_next++);
        if (!m_all.wellFormed)
            throw TruncatedText();
        return nullptr;
    }

    /// The text of the element whose start was read last, without the text of its child elements.
    QString elementText()
    {
        QString text;
        int depth = 0;
        while (const XmlTokens::Token *token = next()) {
            if (token->type == XmlTokens::Start)
                ++depth;
            else if (token->type == XmlTokens::End && depth-- == 0)
                break;
            else if (token->type == XmlTokens::Text && depth == 0)
                text += token->text;
        }
        return text.isNull() ? QStringLiteral("") : text;
    }

    /// Skips to the next start or end of that name.
    void skip(const QString &name)
    {
        const XmlTokens::Token *token = next();
        while (token && token->name != name)
            token = next();
    }

private:
    const XmlTokens &m_all;
    int m_next = 0;
};

QVariant converted(const Expected &object, const MemberRule &member, const QString &text)
{
    switch (member.kind) {
    case Kind::Boolean: {
        const QString lower = text.toLower();
        if (lower.isEmpty() && object.validate)
            throw Refusal{QStringLiteral("InvalidXmlException: Please set a value or a default for the boolean '%1' in "
                                         "'%2'.")
                              .arg(QLatin1String(member.name), QLatin1String(object.rule->name))};
        return !lower.isEmpty() && lower != QLatin1String("0") && lower != QLatin1String("false");
    }
    case Kind::Integer:
        return text.toInt();
    case Kind::Integer64:
        return qlonglong(text.toLongLong());
    case Kind::Unsigned64:
        return qulonglong(text.toLongLong()); // read as a signed number
    case Kind::Float:
        return text.toFloat();
    case Kind::Double:
        return text.toDouble();
    case Kind::TypeName:
        return shownType(typeByName(text));
    default:
        return text.isNull() ? QStringLiteral("") : text;
    }
}

void readElement(Expected &object, const XmlTokens::Token &start, XmlInput &in);

void readMember(Expected &object, const MemberRule &member, const XmlTokens::Token &start, XmlInput &in)
{
    switch (member.kind) {
    case Kind::List: {
        Expected item(QString::fromLatin1(member.object), object.validate);
        readElement(item, start, in);
        object.append(member, item);
        break;
    }
    case Kind::Modes:
        object.appendMode(member, modeByName(in.elementText()));
        break;
    case Kind::Child:
        readElement(object.child(member), start, in);
        object.of(member).set = true;
        break;
    case Kind::Alternative: {
        Expected read(QString::fromLatin1(member.object), object.validate);
        readElement(read, start, in);
        object.of(member).objects = {read};
        object.of(member).set = true;
        object.choice = member.bit;
        break;
    }
    default:
        object.set(member, converted(object, member, in.elementText()));
    }
}

void readUnknown(const Expected &object, const XmlTokens::Token &start, XmlInput &in)
{
    if (!object.is("TunerProperties") || object.isOlder())
        in.skip(start.name);
    else if (object.validate)
        throw Refusal{QStringLiteral("InvalidXmlException: Unknown Tag '%1' in 'TunerProperties'.").arg(start.name)};
    // otherwise its content is read as part of the document itself
}

void readElement(Expected &object, const XmlTokens::Token &start, XmlInput &in)
{
    object.touched = true;
    if (object.is("TunerProperties")) {
        const QString version = start.attributes.value(QLatin1String(versionMember().name)).toString();
        object.setLoadedVersion(version.isNull() ? QStringLiteral("") : version);
    }
    for (const MemberRule &member : object.rule->members) {
        if (member.has(Attribute) && start.attributes.hasAttribute(QLatin1String(member.name)))
            object.set(member,
                       converted(object, member, start.attributes.value(QLatin1String(member.name)).toString()));
    }
    while (const XmlTokens::Token *token = in.next()) {
        if (token->type == XmlTokens::End && token->name == start.name)
            return;
        if (token->type != XmlTokens::Start)
            continue;
        if (const MemberRule *member = object.rule->byName(token->name))
            readMember(object, *member, *token, in);
        else
            readUnknown(object, *token, in);
    }
}

} // namespace

XmlOutcome readXml(Expected &object, const XmlTokens &tokens)
{
    XmlOutcome outcome;
    XmlInput in(tokens);
    try {
        const XmlTokens::Token *token = in.next();
        while (token && token->type != XmlTokens::Start)
            token = in.next();
        if (token && token->name != QLatin1String(object.rule->name)) {
            outcome.error = xmlErrorText(token->line, token->column,
                                         QStringLiteral("the root element is '%1', not '%2'")
                                             .arg(token->name, QLatin1String(object.rule->name)));
            return outcome;
        }
        if (token)
            readElement(object, *token, in);
        outcome.taken = tokens.wellFormed;
        outcome.error = tokens.error;
    } catch (const Refusal &refusal) {
        outcome.thrown = refusal.text;
    } catch (const TruncatedText &) {
        outcome.error = tokens.error;
        outcome.truncated = true;
    }
    return outcome;
}

QString xmlErrorText(qint64 line, qint64 column, const QString &why)
{
    return QStringLiteral("%1:%2: ").arg(line).arg(std::max(column, qint64(1))) + why;
}

XmlTokens XmlTokens::of(QXmlStreamReader &reader)
{
    XmlTokens all;
    while (!reader.atEnd() && !reader.hasError()) {
        const QXmlStreamReader::TokenType type = reader.readNext();
        const QString name = reader.name().toString();
        const qint64 line = reader.lineNumber();
        const qint64 column = reader.columnNumber();
        if (type == QXmlStreamReader::StartElement)
            all.tokens.append({Start, name, reader.attributes(), {}, line, column});
        else if (type == QXmlStreamReader::EndElement)
            all.tokens.append({End, name, {}, {}, line, column});
        else if (type == QXmlStreamReader::Characters || type == QXmlStreamReader::EntityReference)
            all.tokens.append({Text, name, {}, reader.text().toString(), line, column});
        else if (type != QXmlStreamReader::Invalid)
            all.tokens.append({Other, name, {}, {}, line, column});
    }
    all.wellFormed = !reader.hasError();
    if (reader.hasError())
        all.error = xmlErrorText(reader.lineNumber(), reader.columnNumber(), reader.errorString());
    return all;
}

} // namespace Damage
