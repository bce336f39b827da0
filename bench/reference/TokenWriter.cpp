// SPDX-License-Identifier: MIT
#include "TokenWriter.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Bench {
namespace {

void write(QXmlStreamWriter &writer, const QVector<Token> &tokens)
{
    for (const Token &token : tokens) {
        switch (token.type) {
        case Token::Type::Start:
            writer.writeStartElement(token.name);
            break;
        case Token::Type::Attribute:
            writer.writeAttribute(token.name, token.text);
            break;
        case Token::Type::Characters:
            writer.writeCharacters(token.text);
            break;
        case Token::Type::End:
            writer.writeEndElement();
        }
    }
}

} // namespace

QVector<Token> tokensOf(const QByteArray &xml)
{
    QVector<Token> tokens;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            tokens.append({Token::Type::Start, reader.name().toString(), {}});
            for (const QXmlStreamAttribute &attribute : reader.attributes())
                tokens.append({Token::Type::Attribute, attribute.name().toString(), attribute.value().toString()});
            break;
        case QXmlStreamReader::Characters:
            if (!reader.isWhitespace())
                tokens.append({Token::Type::Characters, {}, reader.text().toString()});
            break;
        case QXmlStreamReader::EndElement:
            tokens.append({Token::Type::End, {}, {}});
            break;
        default:
            break;
        }
    }
    return tokens;
}

QString writeTokens(const QVector<Token> &tokens)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    write(writer, tokens);
    return xml;
}

QString writeTokensFormatted(const QVector<Token> &tokens)
{
    // A text has no encoding that the stream writer could declare.
    QString xml = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    write(writer, tokens);
    writer.writeEndDocument();
    return xml;
}

} // namespace Bench
