// SPDX-License-Identifier: MIT
#include "documents/format/XmlLayout.h"

#include <algorithm>
#include <limits>

#include <QVector>

#include <reportbase/XmlMarkup.h>

#include "documents/format/ElementNames.h"
#include "documents/values/CannotEdit.h"

using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments::XmlLayout {

namespace {

constexpr int widthOfIndent = 2; // as the library writes XML
constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
constexpr int sizeOfMark = 3;

// A thousand levels of short elements would otherwise take hundreds of times the size of the text.
constexpr qint64 mostGrowth = 16;
constexpr qint64 alwaysAllowed = 1 << 20;

bool isLineEnd(char character)
{
    return character == '\n' || character == '\r';
}

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || isLineEnd(character);
}

qint64 largestResult(const QByteArray &text)
{
    constexpr qint64 largestArray = std::numeric_limits<int>::max() - 64; // which also allocates a header
    return std::min(largestArray, std::max(alwaysAllowed, mostGrowth * text.size()));
}

/// Goes through the text once, from one piece of markup to the next, and copies each to its place.
class Layout
{
public:
    explicit Layout(const QByteArray &text) : m_markup(text), m_text(text), m_most(largestResult(text)) { }

    QByteArray result()
    {
        if (!m_markup.isComplete())
            throw CannotEdit{QStringLiteral("its elements are nested too deeply")};
        m_out.reserve(m_text.size());
        if (m_text.startsWith(byteOrderMark))
            copyTo(sizeOfMark);
        for (;;) {
            const int lineEnds = skipBlanks();
            if (m_at < endOfContent())
                layOutNext(lineEnds);
            else if (!m_open.isEmpty())
                closeElement();
            else
                break;
        }
        append(QLatin1String("\n"));
        return m_out;
    }

private:
    const XmlMarkup::Element &element(int index) const { return m_markup.elements().at(index); }

    int endOfContent() const { return m_open.isEmpty() ? int(m_text.size()) : element(m_open.last()).content.end; }

    /// Returns how many line ends there are.
    int skipBlanks()
    {
        int lineEnds = 0;
        for (; m_at < m_text.size() && isBlank(m_text.at(m_at)); ++m_at) {
            const bool endsPair = m_text.at(m_at) == '\n' && m_at > 0 && m_text.at(m_at - 1) == '\r';
            if (isLineEnd(m_text.at(m_at)) && !endsPair)
                ++lineEnds;
        }
        return lineEnds;
    }

    void layOutNext(int lineEnds)
    {
        if (m_next < m_markup.elements().size() && element(m_next).startTag.begin == m_at)
            layOutElement(lineEnds);
        else if (isDeclaration())
            layOutDeclaration();
        else if (const int end = endOfRemark(m_at))
            layOutRemark(lineEnds, end);
        else if (startsWith("<!DOCTYPE", m_at))
            layOutDocumentType(lineEnds);
        else
            throw CannotEdit{QStringLiteral("it has text where only elements can be")};
    }

    // --- Elements ---

    void layOutElement(int lineEnds)
    {
        const int index = m_next;
        const XmlMarkup::Element &current = element(index);
        beginLine(lineEnds);
        append(QLatin1String("<"));
        append(m_markup.bytes(current.name));
        appendAttributes(m_markup, current);
        append(QLatin1String(current.isEmptyTag ? "/>" : ">"));
        m_at = current.content.begin;
        m_mayTrail = true;
        if (current.isEmptyTag) {
            ++m_next;
        } else if (hasLayout(index)) {
            m_open.append(index);
            m_isOpenEmpty = true;
            m_hasLine = false;
            ++m_next;
        } else {
            copyTo(current.content.end);
            appendEndTag(current);
            m_next = current.next;
        }
    }

    void closeElement()
    {
        const XmlMarkup::Element &current = element(m_open.takeLast());
        if (!m_isOpenEmpty)
            appendLine();
        appendEndTag(current);
        m_isOpenEmpty = false;
        m_hasLine = true;
        m_mayTrail = true;
    }

    void appendEndTag(const XmlMarkup::Element &current)
    {
        int end = current.end - 1;
        while (isBlank(m_text.at(end - 1)))
            --end;
        append(m_markup.bytes({current.content.end, end}));
        append(QLatin1String(">"));
        m_at = current.end;
    }

    /// Appends the attributes of an element, which may be in another text than the document.
    void appendAttributes(const XmlMarkup &markup, const XmlMarkup::Element &current)
    {
        const int end = current.firstAttribute + current.attributeCount;
        for (int i = current.firstAttribute; i < end; ++i) {
            const XmlMarkup::Attribute &attribute = markup.attributes().at(i);
            const QLatin1String name = markup.bytes(attribute.name);
            const QLatin1String value = markup.bytes(attribute.value);
            const QLatin1String quote(value.contains(QLatin1Char('"')) ? "'" : "\"");
            for (const QLatin1String part : {QLatin1String(" "), name, QLatin1String("="), quote, value, quote})
                append(part);
        }
    }

    /// Whether the content of an element, which is not an empty tag, consists of markup that can be moved: no blanks in
    /// it may be a text.
    bool hasLayout(int index) const
    {
        const XmlMarkup::Element &current = element(index);
        const QLatin1String name = m_markup.localName(current);
        if (ElementNames::isValue(name) || keepsBlanks(current))
            return false;
        bool hasElement = false;
        int child = index + 1;
        for (int at = current.content.begin; at < current.content.end;) {
            if (isBlank(m_text.at(at))) {
                ++at;
            } else if (const int end = endOfRemark(at)) {
                at = end;
            } else if (child < current.next && element(child).startTag.begin == at) {
                at = element(child).end;
                child = element(child).next;
                hasElement = true;
            } else {
                return false; // a text, a reference or a CDATA section
            }
        }
        return hasElement || ElementNames::isObject(name);
    }

    bool keepsBlanks(const XmlMarkup::Element &current) const
    {
        const int space = m_markup.findAttribute(current, QLatin1String("xml:space"));
        return space >= 0 && m_markup.bytes(m_markup.attributes().at(space).value) == QLatin1String("preserve");
    }

    // --- Everything else ---

    bool isDeclaration() const { return m_isAtBeginning && startsWith("<?xml", m_at) && isBlank(m_text.at(m_at + 5)); }

    /// The declaration has the attributes of a tag.
    void layOutDeclaration()
    {
        constexpr int sizeOfMarks = 2; // "<?" and "?>"
        const int end = endOfRemark(m_at);
        const QByteArray content = m_text.mid(m_at + sizeOfMarks, end - m_at - 2 * sizeOfMarks);
        const XmlMarkup tag('<' + content + "/>");
        beginLine(0);
        if (tag.isComplete()) {
            append(QLatin1String("<?xml"));
            appendAttributes(tag, tag.elements().first());
            append(QLatin1String("?>"));
            m_at = end;
        } else {
            copyTo(end);
        }
    }

    /// The offset after the comment or processing instruction that begins there; 0 if none does.
    int endOfRemark(int at) const
    {
        const bool isComment = startsWith("<!--", at);
        if (!isComment && !startsWith("<?", at))
            return 0;
        const char *const mark = isComment ? "-->" : "?>";
        const int end = int(m_text.indexOf(mark, at + (isComment ? 4 : 2)));
        return end < 0 ? 0 : end + int(qstrlen(mark));
    }

    /// Comments and processing instructions are on lines of their own, except those at the end of a line after a tag.
    void layOutRemark(int lineEnds, int end)
    {
        const bool isTrailing = m_mayTrail && lineEnds == 0 && isLastOnLine(end);
        if (isTrailing)
            append(QLatin1String(" "));
        else
            beginLine(lineEnds);
        copyWithLineFeeds(end);
        m_isOpenEmpty = false;
        m_mayTrail = isTrailing;
    }

    /// Whether nothing but blanks, comments and processing instructions follow on the line.
    bool isLastOnLine(int at)
    {
        if (at < m_knownTailEnd) // once for all on a line, which may have as many as the document
            return m_isKnownTailLast;
        const auto isAtEnd = [&] { return at == m_text.size() || isLineEnd(m_text.at(at)); };
        while (!isAtEnd()) {
            const int end = endOfRemark(at);
            if (end == 0 && m_text.at(at) != ' ' && m_text.at(at) != '\t')
                break;
            at = end == 0 ? at + 1 : end;
        }
        m_knownTailEnd = at;
        m_isKnownTailLast = isAtEnd();
        return m_isKnownTailLast;
    }

    /// Documents of the model have no document type. It stays as it is, with everything up to the root element.
    void layOutDocumentType(int lineEnds)
    {
        int end = element(0).startTag.begin;
        while (isBlank(m_text.at(end - 1)))
            --end;
        beginLine(lineEnds);
        copyWithLineFeeds(end);
    }

    // --- The result ---

    /// Begins a line, after an empty one if the author has separated it from the one before.
    void beginLine(int lineEnds)
    {
        if (m_hasLine && lineEnds > 1)
            append(QLatin1String("\n"));
        if (!m_isAtBeginning)
            appendLine();
        m_isAtBeginning = false;
        m_isOpenEmpty = false;
        m_hasLine = true;
        m_mayTrail = false;
    }

    void appendLine()
    {
        const int indentation = widthOfIndent * int(m_open.size());
        checkRoom(indentation + 1);
        m_out += '\n';
        m_out.append(indentation, ' ');
    }

    /// Copies the text from the present place up to `end`.
    void copyTo(int end)
    {
        append(m_markup.bytes({m_at, end}));
        m_at = end;
    }

    /// The same with line feeds for all line ends, as every reader of XML has them.
    void copyWithLineFeeds(int end)
    {
        const char *const text = m_text.constData();
        for (int begin = m_at; begin < end;) {
            const auto lineEnd = int(std::find(text + begin, text + end, '\r') - text);
            append(m_markup.bytes({begin, lineEnd}));
            begin = lineEnd;
            if (begin < end) {
                append(QLatin1String("\n"));
                begin += startsWith("\r\n", begin) ? 2 : 1;
            }
        }
        m_at = end;
    }

    void append(QLatin1String bytes)
    {
        checkRoom(int(bytes.size()));
        m_out.append(bytes.data(), bytes.size());
    }

    void checkRoom(int size) const
    {
        if (size > m_most - m_out.size())
            throw CannotEdit{QStringLiteral("the indentation of its nested elements would make it longer than %1 bytes")
                                 .arg(m_most)};
    }

    bool startsWith(const char *mark, int at) const
    {
        const int size = int(qstrlen(mark));
        return m_text.size() - at >= size && std::equal(mark, mark + size, m_text.constData() + at);
    }

    const XmlMarkup m_markup;
    const QByteArray m_text;
    const qint64 m_most;
    QByteArray m_out;
    int m_at = 0;
    int m_next = 0; // the first element that begins at m_at or after it
    QVector<int> m_open; // the elements around it, whose content is laid out
    bool m_isAtBeginning = true; // nothing but a byte order mark is written
    bool m_isOpenEmpty = true; // the content of the innermost one so far
    bool m_hasLine = false; // something in it is on a line of its own
    bool m_mayTrail = false; // a comment here would be after a tag on its line
    int m_knownTailEnd = 0; // up to which the answer of isLastOnLine() is known
    bool m_isKnownTailLast = false;
};

} // namespace

QByteArray laidOut(const QByteArray &utf8)
{
    return Layout(utf8).result();
}

} // namespace TunerDocuments::XmlLayout
