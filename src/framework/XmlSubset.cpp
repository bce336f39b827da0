// SPDX-License-Identifier: MIT
#include "framework/XmlSubset.h"

#include <array>
#include <cstring>
#include <string_view>

#include "framework/XmlBytes.h"

namespace JobXml {

namespace {

using namespace std::string_view_literals;
using XmlBytes::is;

/// Reads a document once, from its first byte to its last. Every function that returns bool returns false as soon as
/// the document is not in the subset. The NUL after the document is in no class of bytes, so no function reads past
/// it: a comparison with the end at each byte would cost time.
class Document
{
public:
    explicit Document(const QByteArray &utf8) : m_at(utf8.constData()), m_end(m_at + utf8.size()) { }

    bool isInSubset()
    {
        take("\xEF\xBB\xBF"sv);
        return takeDeclaration() && takeMarkupOutside() && takeElement() && takeMarkupOutside() && m_at == m_end;
    }

private:
    // --- Before and after the root element ---

    bool takeDeclaration()
    {
        if (!startsWith("<?xml"sv) || !is(m_at[5], XmlBytes::Blank))
            return true; // there is none
        m_at += 5;
        if (!takeBlanks() || !take("version"sv) || takeValue() != "1.0"sv)
            return false;
        bool hasBlanks = takeBlanks();
        if (hasBlanks && take("encoding"sv)) {
            const std::string_view encoding = takeValue();
            if (encoding.size() != 5 || qstrnicmp(encoding.data(), "utf-8", 5) != 0)
                return false;
            hasBlanks = takeBlanks();
        }
        if (hasBlanks && take("standalone"sv)) {
            const std::string_view standalone = takeValue();
            if (standalone != "yes"sv && standalone != "no"sv)
                return false;
            takeBlanks();
        }
        return take("?>"sv);
    }

    /// Takes the equals sign and the value in quotes; the value is empty if they are not there.
    std::string_view takeValue()
    {
        takeBlanks();
        if (!take("="sv))
            return {};
        takeBlanks();
        const char *const begin = m_at + 1;
        const bool isSingle = *m_at == '\'';
        if ((!isSingle && *m_at != '"')
            || !takeQuoted(isSingle ? XmlBytes::PlainInSingleQuotes : XmlBytes::PlainInDoubleQuotes, *m_at))
            return {};
        return {begin, std::size_t(m_at - 1 - begin)};
    }

    bool takeMarkupOutside()
    {
        for (;;) {
            takeBlanks();
            const bool isComment = startsWith("<!--"sv);
            if (!isComment && !startsWith("<?"sv))
                return true;
            if (isComment ? !takeComment() : !takeInstruction())
                return false;
        }
    }

    // --- The root element and everything in it ---

    bool takeElement()
    {
        if (*m_at != '<' || !takeStartTag())
            return false;
        while (m_depth > 0) {
            if (!takeText() || !takeMarkup())
                return false;
        }
        return true;
    }

    bool takeMarkup()
    {
        switch (m_at[1]) {
        case '/':
            return takeEndTag();
        case '!':
            return startsWith("<!--"sv) ? takeComment() : takeSection();
        case '?':
            return takeInstruction();
        default:
            return takeStartTag();
        }
    }

    bool takeStartTag()
    {
        ++m_at;
        const std::string_view name = takeName();
        if (name.empty() || m_depth == XmlSubset::Deepest)
            return false;
        int attributes = 0;
        for (;;) {
            const bool hasBlanks = takeBlanks();
            if (*m_at == '>') {
                ++m_at;
                m_open[std::size_t(m_depth++)] = name;
                return true;
            }
            if (*m_at == '/')
                return take("/>"sv);
            if (!hasBlanks || attributes == XmlSubset::MostAttributes || !takeAttribute(attributes))
                return false;
            ++attributes;
        }
    }

    bool takeAttribute(int count)
    {
        const std::string_view name = takeName();
        if (name.empty() || name == "xmlns"sv)
            return false;
        for (int i = 0; i < count; ++i) {
            if (m_attributes[std::size_t(i)] == name)
                return false;
        }
        m_attributes[std::size_t(count)] = name;
        takeBlanks();
        if (*m_at != '=')
            return false;
        ++m_at;
        takeBlanks();
        if (*m_at == '"')
            return takeQuoted(XmlBytes::PlainInDoubleQuotes, '"');
        return *m_at == '\'' && takeQuoted(XmlBytes::PlainInSingleQuotes, '\'');
    }

    bool takeQuoted(int plain, char quote)
    {
        ++m_at;
        for (;;) {
            while (is(*m_at, plain))
                ++m_at;
            if (*m_at == quote) {
                ++m_at;
                return true;
            }
            if (*m_at == '&' ? !takeReference() : !takeBeyondAscii())
                return false;
        }
    }

    bool takeEndTag()
    {
        m_at += 2;
        if (!take(m_open[std::size_t(--m_depth)]))
            return false;
        takeBlanks();
        return take(">"sv);
    }

    /// Takes the text up to the next '<'.
    bool takeText()
    {
        for (;;) {
            while (is(*m_at, XmlBytes::PlainInText))
                ++m_at;
            switch (*m_at) {
            case '<':
                return true;
            case '&':
                if (!takeReference())
                    return false;
                break;
            case ']':
                // The reader also refuses "&#93;]>", which is well-formed.
                if (startsWith("]]>"sv) || (m_at[1] == '>' && m_at[-1] == ';'))
                    return false;
                ++m_at;
                break;
            default:
                if (!takeBeyondAscii())
                    return false;
            }
        }
    }

    bool takeReference()
    {
        if (m_at[1] != '#') {
            for (const std::string_view entity : {"&lt;"sv, "&gt;"sv, "&amp;"sv, "&quot;"sv, "&apos;"sv}) {
                if (take(entity))
                    return true;
            }
            return false;
        }
        quint32 character = 0;
        const char *const end = XmlBytes::readCharacterReference(m_at, character);
        if (end)
            m_at = end;
        return end != nullptr;
    }

    // --- Markup that may be anywhere ---

    bool takeComment()
    {
        m_at += 4;
        for (;;) {
            if (!takeCharactersUpTo('-'))
                return false;
            if (startsWith("--"sv))
                return take("-->"sv);
            ++m_at;
        }
    }

    bool takeSection() { return take("<![CDATA["sv) && takeThrough("]]>"sv); }

    bool takeInstruction()
    {
        m_at += 2;
        const std::string_view target = takeName();
        if (target.empty() || (target.size() == 3 && qstrnicmp(target.data(), "xml", 3) == 0))
            return false;
        return take("?>"sv) || (takeBlanks() && takeThrough("?>"sv));
    }

    // --- Parts of everything ---

    /// Takes everything up to this mark, and the mark.
    bool takeThrough(std::string_view mark)
    {
        while (takeCharactersUpTo(mark.front())) {
            if (take(mark))
                return true;
            ++m_at;
        }
        return false;
    }

    bool takeCharactersUpTo(char mark)
    {
        for (;;) {
            while (is(*m_at, XmlBytes::Character) && *m_at != mark)
                ++m_at;
            if (*m_at == mark)
                return true;
            if (!takeBeyondAscii())
                return false;
        }
    }

    /// Empty if there is none, or if it is too long.
    std::string_view takeName()
    {
        const char *const begin = m_at;
        if (is(*m_at, XmlBytes::BeginsName)) {
            do {
                ++m_at;
            } while (is(*m_at, XmlBytes::InName));
        }
        if (m_at - begin > XmlSubset::LongestName)
            return {};
        return {begin, std::size_t(m_at - begin)};
    }

    /// Takes a character of several bytes.
    bool takeBeyondAscii()
    {
        const int size = XmlBytes::sizeBeyondAscii(m_at);
        m_at += size;
        return size > 0;
    }

    bool takeBlanks()
    {
        const char *const begin = m_at;
        while (is(*m_at, XmlBytes::Blank))
            ++m_at;
        return m_at != begin;
    }

    bool startsWith(std::string_view text) const { return std::strncmp(m_at, text.data(), text.size()) == 0; }
    bool take(std::string_view text)
    {
        const bool isNext = startsWith(text);
        if (isNext)
            m_at += text.size();
        return isNext;
    }

    const char *m_at;
    const char *const m_end;
    int m_depth = 0;
    std::array<std::string_view, XmlSubset::Deepest> m_open; // the names of the elements that are open
    std::array<std::string_view, XmlSubset::MostAttributes> m_attributes; // their names, of the start tag
};

} // namespace

bool XmlSubset::contains(const QByteArray &utf8)
{
    // Raw data have no capacity, and perhaps no NUL after them. A copy has both.
    if (utf8.capacity() == 0)
        return Document(QByteArray(utf8.constData(), utf8.size())).isInSubset();
    return Document(utf8).isInSubset();
}

} // namespace JobXml
