// SPDX-License-Identifier: MIT
#include "html/Markup.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include <QStringView>

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

/// Calls `plain(text)` for characters that are shown as they are, escaped, and `sign(code, sign)` for the others.
template <class Plain, class Sign>
void forEachCharacter(const QString &text, Plain plain, Sign sign)
{
    for (int i = 0; i < text.size(); ++i) {
        uint code = text.at(i).unicode();
        int length = 1;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
            length = 2;
        }
        if (const auto replacement = signFor(code))
            sign(code, *replacement);
        else if (code == '&')
            plain("&amp;");
        else if (code == '<')
            plain("&lt;");
        else if (code == '>')
            plain("&gt;");
        else if (code == '"')
            plain("&quot;");
        else if (code == '\'')
            plain("&#39;");
        else
            plain(code < 0x80 ? QByteArray(1, char(code)) : QStringView(text).mid(i, length).toUtf8());
        i += length - 1;
    }
}

} // namespace

QString percent(double part)
{
    return QString::number(part * 100, 'f', 2) + QLatin1Char('%');
}

QByteArray Markup::escaped(const QString &text)
{
    QByteArray result;
    result.reserve(text.size());
    forEachCharacter(
        text, [&](const QByteArray &plain) { result += plain; },
        [&](uint, const QString &sign) { result += sign.toUtf8(); });
    return result;
}

void Markup::text(const QString &text)
{
    forEachCharacter(
        text, [this](const QByteArray &plain) { m_text += plain; },
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

void Markup::append(Markup &&other)
{
    m_pieces.push_back(std::exchange(m_text, std::exchange(other.m_text, {}))); // its last piece becomes the last one
    std::move(other.m_pieces.begin(), other.m_pieces.end(), std::back_inserter(m_pieces));
    other.m_pieces.clear();
}

void Markup::forEachPiece(const std::function<void(const QByteArray &)> &action) const
{
    for (const QByteArray &piece : m_pieces)
        action(piece);
    action(m_text);
}

void Markup::source(const char *tag, const QString &code)
{
    open(tag, {});
    m_text += code.toUtf8();
    close(tag);
}

void Markup::open(const char *tag, Attributes attributes, const char *end)
{
    m_text += '<';
    m_text += tag;
    for (const Attribute &attribute : attributes) {
        if (!attribute.value.isNull())
            m_text += QByteArray(" ") + attribute.name + "=\"" + escaped(attribute.value) + '"';
    }
    m_text += end;
}

void Markup::close(const char *tag)
{
    m_text += QByteArray("</") + tag + '>';
    constexpr int mostInAPiece = 1 << 16;
    if (m_text.size() >= mostInAPiece)
        m_pieces.push_back(std::exchange(m_text, {}));
}
