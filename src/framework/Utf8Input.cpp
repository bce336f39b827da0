// SPDX-License-Identifier: MIT
#include "framework/Utf8Input.h"

#include <cstring>

#include "framework/Member.h"
#include "framework/Utf8.h"
#include "framework/XmlBytes.h"
#include "text/LongestText.h"

namespace JobXml {

namespace {

using namespace std::string_view_literals;
using XmlBytes::is;

const char *find(const char *from, const char *end, char byte)
{
    return static_cast<const char *>(std::memchr(from, byte, std::size_t(end - from)));
}

/// The place after the mark, which is there.
const char *findEnd(const char *from, const char *end, std::string_view mark)
{
    const std::string_view rest(from, std::size_t(end - from));
    return from + rest.find(mark) + mark.size();
}

constexpr int sizeOfCommentStart = 4;
constexpr int sizeOfSectionStart = 9;

bool isSame(std::string_view name, const XmlName &other)
{
    return name.size() == std::size_t(other.utf16.size()) && std::memcmp(name.data(), other.ascii, name.size()) == 0;
}

std::string_view view(const char *begin, const char *end)
{
    return {begin, std::size_t(end - begin)};
}

// What has other characters in a text than in the document.
constexpr int convertedInSections = XmlBytes::CarriageReturn;
constexpr int convertedInElements = XmlBytes::CarriageReturn | XmlBytes::Reference;
constexpr int convertedInAttributes = convertedInElements | XmlBytes::OtherBlank;

} // namespace

// --- Texts -----------------------------------------------------------------------------------------------------------

bool XmlText::is(QLatin1String ascii) const
{
    if (m_size != ascii.size())
        return false;
    return m_utf8 ? std::memcmp(m_utf8, ascii.data(), std::size_t(m_size)) == 0 : QStringView(m_utf16, m_size) == ascii;
}

bool XmlText::isVerbatim() const
{
    const int converted = m_form == Form::Attribute ? convertedInAttributes : convertedInElements;
    for (Size i = 0; i < m_size; ++i) {
        if (XmlBytes::is(m_utf8[i], converted))
            return false;
    }
    return true;
}

namespace {

/// Appends the character that the reference begins; returns the place after it.
const char *appendReferred(QString &text, const char *reference)
{
    quint32 character = 0;
    if (reference[1] == '#') {
        const char *const end = XmlBytes::readCharacterReference(reference, character);
        if (QChar::requiresSurrogates(character)) {
            text += QChar(QChar::highSurrogate(character));
            text += QChar(QChar::lowSurrogate(character));
        } else {
            text += QChar(ushort(character)); // QString::fromUcs4() would drop a byte order mark
        }
        return end;
    }
    static constexpr struct
    {
        std::string_view reference;
        char character;
    } entities[] = {{"&lt;"sv, '<'}, {"&gt;"sv, '>'}, {"&amp;"sv, '&'}, {"&quot;"sv, '"'}, {"&apos;"sv, '\''}};
    for (const auto &entity : entities) {
        if (std::strncmp(reference, entity.reference.data(), entity.reference.size()) == 0) {
            text += QLatin1Char(entity.character);
            return reference + entity.reference.size();
        }
    }
    return reference + 1; // never: the document is well-formed
}

/// Appends the text as a reader returns it: with a line feed for each line end, which is a blank in an attribute, as is
/// a tabulator, and with the characters to which references refer.
void appendConverted(QString &text, std::string_view raw, int converted, QLatin1Char lineEnd)
{
    const char *const end = raw.data() + raw.size();
    for (const char *at = raw.data(); at != end;) {
        const char *const begin = at;
        while (at != end && !is(*at, converted))
            ++at;
        text += utf8ToString(begin, int(at - begin));
        if (at == end)
            break;
        if (*at == '&') {
            at = appendReferred(text, at);
            continue;
        }
        at += at[0] == '\r' && at + 1 != end && at[1] == '\n' ? 2 : 1;
        text += lineEnd;
    }
}

} // namespace

QString XmlText::toString() const
{
    if (m_size == 0)
        return utf8ToString(nullptr, 0);
    if (!m_utf8)
        return QStringView(m_utf16, REPORTGENERATOR::lengthOfText(m_size)).toString();
    if (isVerbatim())
        return m_recent->text(m_utf8, m_size);
    QString text;
    text.reserve(REPORTGENERATOR::lengthOfText(m_size));
    const std::string_view raw(m_utf8, std::size_t(m_size));
    if (m_form == Form::Attribute)
        appendConverted(text, raw, convertedInAttributes, QLatin1Char(' '));
    else
        appendConverted(text, raw, convertedInElements, QLatin1Char('\n'));
    text.squeeze();
    return text;
}

// --- Tags ------------------------------------------------------------------------------------------------------------

XmlInput::Tag Utf8Input::next()
{
    if (m_isInStartTag)
        leaveStartTag();
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        return Tag::End;
    }
    for (;;) {
        const char *const tag = find(m_at, m_end, '<');
        if (!tag) {
            m_at = m_end;
            return Tag::None;
        }
        m_at = tag;
        switch (tag[1]) {
        case '/':
            m_tag = tag;
            takeName(tag + 2);
            m_at = find(m_at, m_end, '>') + 1;
            return Tag::End;
        case '?':
        case '!':
            skipUntagged();
            break;
        default:
            m_tag = tag;
            takeName(tag + 1);
            m_isInStartTag = true;
            m_hasAttributes = false;
            return Tag::Start;
        }
    }
}

/// Skips a processing instruction, a comment or a CDATA section.
void Utf8Input::skipUntagged()
{
    if (m_at[1] == '?')
        m_at = findEnd(m_at, m_end, "?>"sv);
    else if (m_at[2] == '-')
        m_at = findEnd(m_at + sizeOfCommentStart, m_end, "-->"sv);
    else
        m_at = findEnd(m_at, m_end, "]]>"sv);
}

void Utf8Input::takeName(const char *begin)
{
    m_at = begin;
    while (is(*m_at, XmlBytes::InName))
        ++m_at;
    m_name = view(begin, m_at);
}

QString Utf8Input::name() const
{
    return utf8ToString(m_name.data(), Size(m_name.size()));
}

bool Utf8Input::isNamed(const XmlName &name) const
{
    return isSame(m_name, name);
}

const Member *Utf8Input::findRow(const ClassInfo::Rows &rows) const
{
    for (const Member *row : rows) {
        if (isSame(m_name, row->xmlName()))
            return row;
    }
    return nullptr;
}

void Utf8Input::leaveStartTag()
{
    for (; *m_at != '>'; ++m_at) {
        if (*m_at == '"' || *m_at == '\'')
            m_at = find(m_at + 1, m_end, *m_at);
    }
    m_isEmptyElement = m_at[-1] == '/';
    m_isInStartTag = false;
    ++m_at;
}

// --- Attributes ------------------------------------------------------------------------------------------------------

void Utf8Input::readAttributes()
{
    m_hasAttributes = true;
    m_attributeCount = 0;
    m_expected = 0;
    const auto skipBlanks = [this] {
        while (is(*m_at, XmlBytes::Blank))
            ++m_at;
    };
    for (skipBlanks(); *m_at != '>' && *m_at != '/'; skipBlanks()) {
        Attribute &attribute = m_attributes[std::size_t(m_attributeCount++)];
        const char *begin = m_at;
        while (is(*m_at, XmlBytes::InName))
            ++m_at;
        attribute.name = view(begin, m_at);
        while (*m_at != '"' && *m_at != '\'')
            ++m_at;
        begin = m_at + 1;
        m_at = find(begin, m_end, *m_at);
        attribute.value = view(begin, m_at);
        ++m_at;
    }
}

bool Utf8Input::findAttribute(const XmlName &name, XmlText &value)
{
    if (!m_hasAttributes)
        readAttributes();
    int at = m_expected;
    for (int tried = 0; tried < m_attributeCount; ++tried, ++at) {
        if (at == m_attributeCount)
            at = 0;
        const Attribute &attribute = m_attributes[std::size_t(at)];
        if (isSame(attribute.name, name)) {
            value = XmlText(attribute.value.data(), Size(attribute.value.size()), XmlText::Form::Attribute, m_texts);
            m_expected = at + 1;
            return true;
        }
    }
    return false;
}

Source::Position Utf8Input::position() const
{
    const bool isAttribute = m_isInStartTag && m_hasAttributes && m_expected > 0;
    return (isAttribute ? m_attributes[std::size_t(m_expected - 1)].name.data() : m_tag) - m_begin;
}

void Utf8Input::resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const
{
    location.offset = position;
    m_places.find(position, location.line, location.column);
}

// --- Content ---------------------------------------------------------------------------------------------------------

bool Utf8Input::readText(XmlText &text)
{
    leaveStartTag();
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        text = XmlText();
        return true;
    }
    const char *const begin = m_at;
    const char *const tag = find(begin, m_end, '<');
    if (tag[1] != '/') {
        readMixedText(text);
        return true;
    }
    text = XmlText(begin, Size(tag - begin), XmlText::Form::Element, m_texts);
    m_at = find(tag, m_end, '>') + 1;
    return true;
}

/// Reads a text that has other markup in it.
void Utf8Input::readMixedText(XmlText &text)
{
    m_text.resize(0);
    const char *const tag = m_tag;
    int depth = 0;
    const auto append = [&](const char *begin, const char *end, int converted) {
        if (depth == 0)
            appendConverted(m_text, view(begin, end), converted, QLatin1Char('\n'));
    };
    while (depth >= 0) {
        const char *const markup = find(m_at, m_end, '<');
        append(m_at, markup, convertedInElements);
        m_at = markup;
        if (markup[1] == '!' && markup[2] == '[') {
            m_at = findEnd(markup, m_end, "]]>"sv);
            append(markup + sizeOfSectionStart, m_at - 3, convertedInSections);
        } else if (markup[1] == '!' || markup[1] == '?') {
            skipUntagged();
        } else if (next() == Tag::End) {
            --depth;
        } else {
            leaveStartTag();
            depth += m_isEmptyElement ? 0 : 1;
            m_isEmptyElement = false;
        }
    }
    m_tag = tag;
    text = XmlText(m_text);
}

void Utf8Input::skipToSameName()
{
    const std::string_view name = m_name;
    while (next() != Tag::None && m_name != name) { }
}

} // namespace JobXml
