// SPDX-License-Identifier: MIT
#include "documents/html/Markup.h"

#include <optional>
#include <utility>

#include <QStringView>

using REPORTGENERATOR::Size;

namespace TunerDocuments {

namespace {

bool isBetween(uint code, uint first, uint last)
{
    return code >= first && code <= last;
}

QString codeOf(uint code)
{
    return QStringLiteral("U+%1").arg(QString::number(code, 16).toUpper(), 4, QLatin1Char('0'));
}

/// The sign for a character that is not shown as it is: control characters, which are invisible and not allowed in XML;
/// line ends; characters that change the direction of the text; and code points that are not characters.
std::optional<QString> signFor(uint code)
{
    if (code == '\n')
        return QStringLiteral("\\n");
    if (code == '\r')
        return QStringLiteral("\\r");
    if (code == '\t')
        return QStringLiteral("\\t");
    const bool turnsTheDirection = isBetween(code, 0x202A, 0x202E) || isBetween(code, 0x2066, 0x2069);
    const bool isNone = isBetween(code, 0xD800, 0xDFFF) || isBetween(code, 0xFDD0, 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
    const bool isControl = code < 0x20 || isBetween(code, 0x7F, 0x9F);
    if (isControl || code == 0x2028 || code == 0x2029 || turnsTheDirection || isNone)
        return codeOf(code);
    return {};
}

/// Calls `plain(bytes, size)` for characters that are shown as they are, escaped, and `sign(code, sign)` for the
/// others.
template <class Plain, class Sign>
void forEachCharacter(const QString &text, Plain plain, Sign sign)
{
    const auto entity = [&](const char *reference) { plain(reference, Size(qstrlen(reference))); };
    for (int i = 0; i < text.size(); ++i) {
        uint code = text.at(i).unicode();
        int length = 1;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
            length = 2;
        }
        if (const auto replacement = signFor(code)) {
            sign(code, *replacement);
        } else if (code == '&') {
            entity("&amp;");
        } else if (code == '<') {
            entity("&lt;");
        } else if (code == '>') {
            entity("&gt;");
        } else if (code == '"') {
            entity("&quot;");
        } else if (code == '\'') {
            entity("&#39;");
        } else if (code < 0x80) {
            const char character = char(code);
            plain(&character, 1);
        } else {
            const QByteArray character = QStringView(text).mid(i, length).toUtf8();
            plain(character.constData(), character.size());
        }
        i += length - 1;
    }
}

/// In bytes.
constexpr Size usualPiece = 1 << 16;

} // namespace

QString percent(double part)
{
    return QString::number(part * 100, 'f', 2) + QLatin1Char('%');
}

Markup::Markup(Write write) : m_write(std::move(write))
{
    m_text.reserve(2 * usualPiece);
}

void Markup::words(const QString &text)
{
    forEachCharacter(
        text, [this](const char *bytes, Size size) { add(bytes, size); },
        [this](uint, const QString &sign) { add(sign.toUtf8()); });
}

void Markup::text(const QString &text)
{
    forEachCharacter(
        text, [this](const char *bytes, Size size) { add(bytes, size); },
        [this](uint code, const QString &sign) {
            element("span", {{"class", "sign"}, {"title", codeOf(code)}}, sign);
            if (code == '\n')
                voidElement("br", {});
        });
}

void Markup::element(const char *tag, Attributes attributes, const QString &text)
{
    const Tag element(*this, tag, attributes);
    words(text);
}

void Markup::element(const char *tag, Attributes attributes, const char *text)
{
    element(tag, attributes, QString::fromUtf8(text));
}

void Markup::voidElement(const char *tag, Attributes attributes)
{
    open(tag, attributes, "/>");
}

void Markup::line(const char *text)
{
    add(text);
    add("\n");
}

void Markup::source(const char *tag, const QString &code)
{
    open(tag, {});
    add(code.toUtf8());
    close(tag);
}

void Markup::flush()
{
    if (m_write)
        m_write(m_text);
    m_text.resize(0); // what is reserved stays
}

void Markup::add(const char *bytes, Size size)
{
    m_text.append(bytes, size);
    if (m_text.size() >= usualPiece)
        flush();
}

void Markup::open(const char *tag, Attributes attributes, const char *end)
{
    add("<");
    add(tag);
    for (const Attribute &attribute : attributes) {
        if (attribute.value.isNull())
            continue;
        add(" ");
        add(attribute.name);
        add("=\"");
        words(attribute.value);
        add("\"");
    }
    add(end);
}

void Markup::close(const char *tag)
{
    add("</");
    add(tag);
    add(">");
}

} // namespace TunerDocuments
