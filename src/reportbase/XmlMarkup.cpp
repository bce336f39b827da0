// SPDX-License-Identifier: MIT
#include <reportbase/XmlMarkup.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Size.h"

namespace REPORTGENERATOR {

namespace {

bool isBlank(char character)
{
    // Nearly all other characters are above the blank.
    return character <= ' ' && (character == ' ' || character == '\n' || character == '\t' || character == '\r');
}

/// Whether a character ends a name: a table, since most of a document is in names and texts.
struct NameEnds
{
    constexpr NameEnds()
    {
        for (const char character : {' ', '\n', '\t', '\r', '/', '>', '='})
            isEnd[static_cast<unsigned char>(character)] = true;
    }

    bool operator()(char character) const { return isEnd[static_cast<unsigned char>(character)]; }

    bool isEnd[256] = {};
};

constexpr NameEnds nameEnds;

bool endsName(char character)
{
    return nameEnds(character);
}

} // namespace

/// Goes through the document once.
class Q_DECL_HIDDEN XmlMarkup::Scanner
{
public:
    explicit Scanner(XmlMarkup &markup)
        : m_markup(markup), m_begin(markup.m_document.constData()), m_end(m_begin + markup.m_document.size()),
          m_at(m_begin)
    {
        constexpr int usualBytesPerElement = 48;
        constexpr int usualBytesPerAttribute = 40;
        markup.m_elements.reserve(markup.m_document.size() / usualBytesPerElement);
        markup.m_attributes.reserve(markup.m_document.size() / usualBytesPerAttribute);
    }

    /// Returns whether everything is closed.
    bool scan()
    {
        while (const char *const tag = find('<', m_at)) {
            m_at = tag;
            if (!scanMarkup())
                return false;
        }
        return m_open.empty() && !m_markup.m_elements.isEmpty();
    }

private:
    static constexpr std::size_t deepest = 1000; // far more than any document has
    static constexpr std::size_t compared = 8; // outermost elements, with which each name is compared

    bool scanMarkup()
    {
        switch (m_at + 1 == m_end ? '\0' : m_at[1]) {
        case '/':
            return scanEndTag();
        case '?':
            return skipTo("?>");
        case '!':
            break;
        default:
            return scanStartTag();
        }
        if (startsWith("<!--"))
            return scanComment();
        return startsWith("<![CDATA[") ? skipTo("]]>") : skipDocumentType();
    }

    bool scanStartTag()
    {
        Element element;
        const int index = int(m_markup.m_elements.size());
        element.startTag.begin = offset(m_at);
        ++m_at;
        element.name = scanName();
        element.firstAttribute = int(m_markup.m_attributes.size());
        while (skipBlanks() && *m_at != '>' && *m_at != '/') {
            if (!scanAttribute())
                return false;
        }
        element.attributeCount = int(m_markup.m_attributes.size()) - element.firstAttribute;
        element.isEmptyTag = m_end - m_at >= 2 && m_at[0] == '/' && m_at[1] == '>';
        m_at += element.isEmptyTag ? 1 : 0;
        if (m_at == m_end || *m_at != '>')
            return false;
        ++m_at;
        element.startTag.end = offset(m_at);
        element.content = {element.startTag.end, element.startTag.end};
        element.end = element.startTag.end;
        element.next = index + 1;
        element.parent = parent();
        m_markup.m_elements.append(element);
        const QLatin1String name = m_markup.localName(element);
        noteIn(innermostOf(name));
        if (!element.isEmptyTag)
            openElement(index, name);
        return m_open.size() <= deepest;
    }

    void openElement(int element, QLatin1String name)
    {
        Open open{element, name};
        if (m_open.size() >= compared) {
            open.innermost = &m_innermost.try_emplace(viewOf(name), -1).first->second;
            open.around = std::exchange(*open.innermost, element);
        }
        m_open.push_back(open);
    }

    /// The innermost open element of that name, without prefixes; -1 if there is none.
    int innermostOf(QLatin1String name) const
    {
        if (m_open.size() > compared) {
            const auto found = m_innermost.find(viewOf(name));
            if (found != m_innermost.end() && found->second >= 0)
                return found->second;
        }
        for (std::size_t i = std::min(m_open.size(), compared); i > 0; --i) {
            const Open &open = m_open[i - 1];
            if (open.name.size() == name.size() && open.name == name)
                return open.element;
        }
        return -1;
    }

    static std::string_view viewOf(QLatin1String name) { return {name.data(), std::size_t(name.size())}; }

    /// Marks the innermost element that contains one of its own name. Those of this name around it have the mark since
    /// it was opened.
    void noteIn(int element)
    {
        if (element >= 0)
            m_markup.m_elements[element].containsItsName = true;
    }

    bool scanAttribute()
    {
        Attribute attribute;
        attribute.name = scanName();
        const bool isCompact = m_end - m_at >= 2 && m_at[0] == '=' && m_at[1] == '"'; // as nearly all are
        if (isCompact ? attribute.name.size() == 0 : !skipToValue(attribute.name))
            return false;
        m_at += isCompact ? 1 : 0;
        const char *const quote = find(*m_at, m_at + 1);
        if (!quote)
            return false;
        attribute.value = {offset(m_at + 1), offset(quote)};
        m_at = quote + 1;
        m_markup.m_attributes.append(attribute);
        return true;
    }

    /// Skips blanks and the equals sign. Returns whether a quote follows.
    bool skipToValue(const Span &name)
    {
        if (name.size() == 0 || !skipBlanks() || *m_at != '=')
            return false;
        ++m_at;
        return skipBlanks() && (*m_at == '"' || *m_at == '\'');
    }

    bool scanEndTag()
    {
        const char *const bracket = find('>', m_at);
        if (!bracket || m_open.empty())
            return false;
        const Open &open = m_open.back();
        Element &element = m_markup.m_elements[open.element];
        if (open.innermost)
            *open.innermost = open.around;
        m_open.pop_back();
        element.content.end = offset(m_at);
        element.next = int(m_markup.m_elements.size());
        m_at = bracket + 1;
        element.end = offset(m_at);
        return true;
    }

    bool scanComment()
    {
        Comment comment;
        comment.whole.begin = offset(m_at);
        comment.parent = parent();
        comment.next = int(m_markup.m_elements.size());
        m_at += 4; // "<!--->" is not a comment: its marks would overlap
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
            const bool isComment = startsWith("<!--");
            if (isComment || startsWith("<?")) {
                m_at += isComment ? 4 : 2;
                if (!skipTo(isComment ? "-->" : "?>"))
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

    /// The element around what follows; -1 outside of the root.
    int parent() const { return m_open.empty() ? -1 : m_open.back().element; }

    Span scanName()
    {
        const char *at = m_at; // a copy, which stays in a register
        while (at != m_end && !endsName(*at))
            ++at;
        const Span name{offset(m_at), offset(at)};
        m_at = at;
        return name;
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

    /// An element whose end tag has not been read.
    struct Open
    {
        int element;
        QLatin1String name;
        int around = -1; // the innermost one of the same name around it, beyond those that are compared
        int *innermost = nullptr; // of its name; null for those that are compared
    };

    XmlMarkup &m_markup;
    const char *const m_begin;
    const char *const m_end;
    const char *m_at;
    std::vector<Open> m_open;
    // For each name of the elements further inside than those that are compared, the innermost open one; -1 if none is
    // open. A map has no names that make it slow, as a hash has.
    std::map<std::string_view, int> m_innermost;
};

XmlMarkup::XmlMarkup(const QByteArray &document) : m_document(document)
{
    // Larger ones, which only Qt 6 can hold, have places that no Span can express.
    m_isComplete = document.size() <= std::numeric_limits<int>::max() && Scanner(*this).scan();
}

XmlMarkup::~XmlMarkup() = default;

namespace {

/// Where the places of a document are after parts of it were replaced.
class Moved
{
public:
    explicit Moved(const QVector<XmlMarkup::TextPart> &parts)
    {
        int distance = 0;
        for (const XmlMarkup::TextPart &part : parts) {
            distance += part.newSize - part.span.size();
            m_steps.push_back({part.span.end, distance});
        }
    }

    /// The first place that moves.
    int first() const { return m_steps.front().from; }

    void move(int &offset) const
    {
        const auto after = std::upper_bound(m_steps.begin(), m_steps.end(), offset,
                                            [](int place, const Step &step) { return place < step.from; });
        if (after != m_steps.begin())
            offset += std::prev(after)->distance;
    }

    void move(XmlMarkup::Span &span) const
    {
        move(span.begin);
        move(span.end);
    }

private:
    struct Step
    {
        int from; // the places from here on
        int distance;
    };

    std::vector<Step> m_steps;
};

} // namespace

void XmlMarkup::replaceTexts(const QByteArray &document, const QVector<TextPart> &parts)
{
    m_document = document;
    if (parts.isEmpty())
        return;
    const Moved moved(parts);
    for (Element &element : m_elements) {
        if (element.end < moved.first())
            continue;
        moved.move(element.name);
        moved.move(element.startTag);
        moved.move(element.content);
        moved.move(element.end);
    }
    const auto isBefore = [&](const Attribute &attribute) { return attribute.value.end < moved.first(); };
    const auto first = std::partition_point(m_attributes.begin(), m_attributes.end(), isBefore);
    std::for_each(first, m_attributes.end(), [&](Attribute &attribute) {
        moved.move(attribute.name);
        moved.move(attribute.value);
    });
    for (Comment &comment : m_comments)
        moved.move(comment.whole);
}

QLatin1String XmlMarkup::localName(const Element &element) const
{
    const QLatin1String name = bytes(element.name);
    const char *const colon = static_cast<const char *>(std::memchr(name.data(), ':', std::size_t(name.size())));
    return colon ? QLatin1String(colon + 1, Size(name.data() + name.size() - colon) - 1) : name;
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
