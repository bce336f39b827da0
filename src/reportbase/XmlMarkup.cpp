// SPDX-License-Identifier: MIT
#include <reportbase/XmlMarkup.h>

#include <algorithm>
#include <cstring>

namespace REPORTGENERATOR {

namespace {

bool isBlank(char character)
{
    return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

bool endsName(char character)
{
    return isBlank(character) || character == '/' || character == '>' || character == '=';
}

} // namespace

/// Goes through the document once.
class XmlMarkup::Scanner
{
public:
    explicit Scanner(XmlMarkup &markup)
        : m_markup(markup), m_begin(markup.m_document.constData()), m_end(m_begin + markup.m_document.size()),
          m_at(m_begin)
    {
    }

    /// Returns whether everything is closed.
    bool scan()
    {
        while (const char *const tag = find('<', m_at)) {
            m_at = tag;
            if (!scanMarkup())
                return false;
        }
        return m_open.isEmpty() && !m_markup.m_elements.isEmpty();
    }

private:
    static constexpr int deepest = 1000; // each name is compared with those of the elements around it

    bool scanMarkup()
    {
        if (startsWith("</"))
            return scanEndTag();
        if (startsWith("<!--"))
            return scanComment();
        if (startsWith("<![CDATA["))
            return skipTo("]]>");
        if (startsWith("<!"))
            return skipDocumentType();
        if (startsWith("<?"))
            return skipTo("?>");
        return scanStartTag();
    }

    bool scanStartTag()
    {
        Element element;
        const int index = m_markup.m_elements.size();
        element.startTag.begin = offset(m_at);
        ++m_at;
        element.name = scanName();
        element.firstAttribute = m_markup.m_attributes.size();
        while (skipBlanks() && *m_at != '>' && *m_at != '/') {
            if (!scanAttribute())
                return false;
        }
        element.attributeCount = m_markup.m_attributes.size() - element.firstAttribute;
        element.isEmptyTag = startsWith("/>");
        m_at += element.isEmptyTag ? 1 : 0;
        if (m_at == m_end || *m_at != '>')
            return false;
        ++m_at;
        element.startTag.end = offset(m_at);
        element.content = {element.startTag.end, element.startTag.end};
        element.end = element.startTag.end;
        element.next = index + 1;
        element.parent = m_open.isEmpty() ? -1 : m_open.last();
        noteNameInAncestors(element);
        m_markup.m_elements.append(element);
        if (!element.isEmptyTag)
            m_open.append(index);
        return m_open.size() <= deepest;
    }

    bool scanAttribute()
    {
        Attribute attribute;
        attribute.name = scanName();
        if (attribute.name.size() == 0 || !skipBlanks() || *m_at != '=')
            return false;
        ++m_at;
        if (!skipBlanks() || (*m_at != '"' && *m_at != '\''))
            return false;
        const char *const quote = find(*m_at, m_at + 1);
        if (!quote)
            return false;
        attribute.value = {offset(m_at + 1), offset(quote)};
        m_at = quote + 1;
        m_markup.m_attributes.append(attribute);
        return true;
    }

    bool scanEndTag()
    {
        const char *const bracket = find('>', m_at);
        if (!bracket || m_open.isEmpty())
            return false;
        Element &element = m_markup.m_elements[m_open.takeLast()];
        element.content.end = offset(m_at);
        element.next = m_markup.m_elements.size();
        m_at = bracket + 1;
        element.end = offset(m_at);
        return true;
    }

    bool scanComment()
    {
        Comment comment;
        comment.whole.begin = offset(m_at);
        comment.parent = m_open.isEmpty() ? -1 : m_open.last();
        comment.next = m_markup.m_elements.size();
        m_at += 2; // "<!-->" is not a comment
        if (!skipTo("-->"))
            return false;
        comment.whole.end = offset(m_at);
        m_markup.m_comments.append(comment);
        return true;
    }

    /// A document type ends with the first '>' that is neither in quotes, nor in a comment, nor in the brackets of its
    /// internal subset.
    bool skipDocumentType()
    {
        bool isInBrackets = false;
        for (m_at += 2; m_at != m_end;) {
            if (startsWith("<!--") || startsWith("<?")) {
                if (!skipTo(m_at[1] == '?' ? "?>" : "-->"))
                    return false;
                continue;
            }
            const char character = *m_at;
            if (character == '"' || character == '\'') {
                m_at = find(character, m_at + 1);
                if (!m_at)
                    return false;
            }
            if (character == '[' || character == ']')
                isInBrackets = character == '[';
            ++m_at;
            if (character == '>' && !isInBrackets)
                return true;
        }
        return false;
    }

    void noteNameInAncestors(const Element &element)
    {
        const QLatin1String name = m_markup.localName(element);
        for (const int ancestor : qAsConst(m_open)) {
            Element &outer = m_markup.m_elements[ancestor];
            if (m_markup.localName(outer) == name)
                outer.containsItsName = true;
        }
    }

    Span scanName()
    {
        const char *const begin = m_at;
        m_at = std::find_if(m_at, m_end, endsName);
        return {offset(begin), offset(m_at)};
    }

    /// Whether there is anything after the blanks.
    bool skipBlanks()
    {
        while (m_at != m_end && isBlank(*m_at))
            ++m_at;
        return m_at != m_end;
    }

    bool skipTo(const char *mark)
    {
        const int size = int(std::strlen(mark));
        const char *const found = std::search(m_at, m_end, mark, mark + size);
        m_at = found == m_end ? m_end : found + size;
        return found != m_end;
    }

    bool startsWith(const char *mark) const
    {
        const auto size = std::ptrdiff_t(std::strlen(mark));
        return m_end - m_at >= size && std::memcmp(m_at, mark, std::size_t(size)) == 0;
    }

    const char *find(char character, const char *from) const
    {
        return from >= m_end ? nullptr
                             : static_cast<const char *>(std::memchr(from, character, std::size_t(m_end - from)));
    }

    int offset(const char *at) const { return int(at - m_begin); }

    XmlMarkup &m_markup;
    const char *const m_begin;
    const char *const m_end;
    const char *m_at;
    QVector<int> m_open; // the elements whose end tags have not been read
};

XmlMarkup::XmlMarkup(const QByteArray &document) : m_document(document)
{
    m_isComplete = Scanner(*this).scan();
}

XmlMarkup::~XmlMarkup() = default;

QLatin1String XmlMarkup::localName(const Element &element) const
{
    const QLatin1String name = bytes(element.name);
    const char *const colon = static_cast<const char *>(std::memchr(name.data(), ':', std::size_t(name.size())));
    return colon ? QLatin1String(colon + 1, int(name.data() + name.size() - colon) - 1) : name;
}

int XmlMarkup::findAttribute(const Element &element, QLatin1String name) const
{
    for (int i = element.firstAttribute; i < element.firstAttribute + element.attributeCount; ++i) {
        if (bytes(m_attributes[i].name) == name)
            return i;
    }
    return -1;
}

} // namespace REPORTGENERATOR
