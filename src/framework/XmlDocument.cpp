// SPDX-License-Identifier: MIT
#include "framework/XmlDocument.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "text/XmlCharacters.h"

namespace JobXml {

namespace {

constexpr int widthOfIndent = 2;

/// Whether a character is written unchanged, as one byte.
bool isPlain(ushort character)
{
    return character >= 0x20 && character < 0x80 && character != '<' && character != '>' && character != '&'
        && character != '"';
}

} // namespace

XmlDocument::XmlDocument()
{
    restart();
}

void XmlDocument::restart()
{
    m_size = 0;
    m_names.clear();
    m_isInStartTag = false;
    m_isExact = true;
    append(QLatin1String("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
}

void XmlDocument::writeStartElement(const QString &name)
{
    beginElement(name);
    m_names.append(name);
    m_isInStartTag = true;
}

void XmlDocument::writeEndElement()
{
    if (m_isInStartTag) {
        append(QLatin1String("/>"));
        m_isInStartTag = false;
    } else {
        appendLineOf(m_names.size() - 1);
        append(QLatin1String("</"));
        appendName(m_names.constLast());
        append(QLatin1String(">"));
    }
    m_names.removeLast();
}

void XmlDocument::writeAttribute(const QString &name, const QString &text)
{
    append(QLatin1String(" "));
    appendName(name);
    append(QLatin1String("=\""));
    appendText(text, Context::Attribute);
    append(QLatin1String("\""));
}

void XmlDocument::writeAttribute(const QString &name, QLatin1String number)
{
    append(QLatin1String(" "));
    appendName(name);
    append(QLatin1String("=\""));
    append(number);
    append(QLatin1String("\""));
}

void XmlDocument::writeTextElement(const QString &name, const QString &text)
{
    beginElement(name);
    append(QLatin1String(">"));
    appendText(text, Context::Element);
    append(QLatin1String("</"));
    appendName(name);
    append(QLatin1String(">"));
}

void XmlDocument::writeTextElement(const QString &name, QLatin1String number)
{
    beginElement(name);
    append(QLatin1String(">"));
    append(number);
    append(QLatin1String("</"));
    appendName(name);
    append(QLatin1String(">"));
}

QByteArray XmlDocument::takeUtf8()
{
    append(QLatin1String("\n"));
    m_utf8.truncate(m_size);
    return std::move(m_utf8);
}

void XmlDocument::beginElement(const QString &name)
{
    closeStartTag();
    appendLineOf(m_names.size());
    append(QLatin1String("<"));
    appendName(name);
}

void XmlDocument::closeStartTag()
{
    if (m_isInStartTag)
        append(QLatin1String(">"));
    m_isInStartTag = false;
}

void XmlDocument::appendLineOf(Size depth)
{
    char *const at = room(1 + widthOfIndent * depth);
    *at = '\n';
    std::memset(at + 1, ' ', widthOfIndent * std::size_t(depth));
}

// Names need no escaping.
void XmlDocument::appendName(const QString &name)
{
    const QChar *const text = name.constData();
    char *const at = room(name.size());
    ushort all = 0;
    for (Size i = 0; i < name.size(); ++i) {
        all = ushort(all | text[i].unicode());
        at[i] = char(text[i].unicode());
    }
    if (all >= 0x80)
        m_isExact = false;
}

void XmlDocument::appendText(const QString &text, Context context)
{
    const QChar *const begin = text.constData();
    const Size size = text.size();
    for (Size i = 0; i < size;) {
        char *const at = room(size - i);
        Size plain = 0;
        while (i + plain < size && isPlain(begin[i + plain].unicode())) {
            at[plain] = char(begin[i + plain].unicode());
            ++plain;
        }
        m_size -= size - i - plain;
        i += plain;
        if (i < size)
            i = appendSpecialCharacters(text, i, context);
    }
}

/// Appends a character that is not plain, and further ones of the same kind; returns the index of the next one.
Size XmlDocument::appendSpecialCharacters(const QString &text, Size at, Context context)
{
    const ushort character = text[at].unicode();
    switch (character) {
    case '<':
        append(QLatin1String("&lt;"));
        return at + 1;
    case '>':
        append(QLatin1String("&gt;"));
        return at + 1;
    case '&':
        append(QLatin1String("&amp;"));
        return at + 1;
    case '"':
        append(QLatin1String("&quot;"));
        return at + 1;
    case '\t':
        append(context == Context::Attribute ? QLatin1String("&#9;") : QLatin1String("\t"));
        return at + 1;
    case '\n':
        append(context == Context::Attribute ? QLatin1String("&#10;") : QLatin1String("\n"));
        return at + 1;
    case '\r': // also in element text: readers would treat a carriage return as a line end
        append(QLatin1String("&#13;"));
        return at + 1;
    default:
        break;
    }
    Size end = at;
    while (end < text.size() && text[end].unicode() >= 0x80 && text[end].unicode() < 0xFFFE)
        ++end;
    if (end == at) { // a control character or a noncharacter
        m_isExact = false;
        return at + 1;
    }
    const QStringView run = QStringView(text).mid(at, end - at);
    if (REPORTGENERATOR::firstNotForXml(run) >= 0)
        m_isExact = false; // half of a surrogate pair
    const QByteArray utf8 = run.toUtf8();
    append(utf8.constData(), utf8.size());
    return end;
}

void XmlDocument::append(const char *ascii, Size size)
{
    std::memcpy(room(size), ascii, std::size_t(size));
}

char *XmlDocument::room(Size size)
{
    constexpr int least = 1024;
    constexpr int most = std::numeric_limits<int>::max() - 64; // no reader takes more; Qt 5 also allocates a header
    if (size > m_utf8.size() - m_size) {
        if (size > most - m_size)
            throw std::bad_alloc();
        m_utf8.resize(Size(std::min(qint64(most), std::max(qint64(least), 2 * (qint64(m_size) + size)))));
    }
    char *const begin = m_utf8.data() + m_size;
    m_size += size;
    return begin;
}

} // namespace JobXml
