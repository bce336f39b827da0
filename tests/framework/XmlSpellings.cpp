// SPDX-License-Identifier: MIT
#include "framework/XmlSpellings.h"

#include <algorithm>
#include <map>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Model.h"

namespace XmlSpellings {

namespace {

// --- The model -------------------------------------------------------------------------------------------------------

struct Member
{
    QByteArray name;
    QByteArray child; ///< the class of the child objects; empty for values
};
using Shapes = std::map<QByteArray, std::vector<Member>>;

/// The members of each class.
const Shapes &shapes()
{
    static const Shapes all = [] {
        Shapes found;
        Model::forEachClass([&](JobXml::DataObject &object) {
            std::vector<Member> &members = found[object.GetObjectName().toLatin1()];
            JobXml::visit(object, [&](JobXml::MemberEditor &member) {
                const QByteArray name(member.GetName().data(), member.GetName().size());
                if (Model::holdsObjects(member.GetKind()))
                    members.push_back({name, Model::newChild(member).GetObjectName().toLatin1()});
                else if (member.GetKind() != JobXml::MemberKind::Choice)
                    members.push_back({name, QByteArray()});
            });
        });
        return found;
    }();
    return all;
}

std::vector<QByteArray> classNames()
{
    std::vector<QByteArray> names;
    for (const auto &[name, members] : shapes())
        names.push_back(name);
    return names;
}

/// Values as documents have them, for members of every kind, and texts whose characters need care.
const std::vector<QString> &values()
{
    static const std::vector<QString> all = {
        QStringLiteral("1"),
        QStringLiteral("-5"),
        QStringLiteral("0"),
        QStringLiteral("0.25"),
        QStringLiteral("1e3"),
        QStringLiteral(" 7 "),
        QStringLiteral("\t7\n"),
        QStringLiteral("+3"),
        QStringLiteral("1,000"),
        QStringLiteral("2147483648"),
        QStringLiteral("9223372036854775808"),
        QStringLiteral("18446744073709551615"),
        QStringLiteral("nan"),
        QStringLiteral("INF"),
        QStringLiteral("-0.001"),
        QStringLiteral("0x10"),
        QStringLiteral("\u0663"),
        QStringLiteral("\u00A05"),
        QStringLiteral("\u30007"),
        QStringLiteral("1\u200B"),
        QStringLiteral("true"),
        QStringLiteral("TRUE"),
        QStringLiteral("fAlse"),
        QStringLiteral(" true"),
        QStringLiteral("\u0130"),
        QStringLiteral("Receiver"),
        QStringLiteral("FFM"),
        QStringLiteral("DF"),
        QStringLiteral("Filter"),
        QStringLiteral(""),
        QStringLiteral(" "),
        QStringLiteral("a"),
        QStringLiteral("a<b&c>d\"e'f"),
        QStringLiteral("]]>"),
        QStringLiteral("]]"),
        QStringLiteral("]"),
        QStringLiteral("]]]>>"),
        QStringLiteral("--"),
        QStringLiteral("-->"),
        QStringLiteral("?>"),
        QStringLiteral("\t"),
        QStringLiteral("\n"),
        QStringLiteral("\r"),
        QStringLiteral("\r\n"),
        QStringLiteral("\n\r"),
        QStringLiteral("\r\r\n"),
        QStringLiteral("\t\n\r a \r\n\t"),
        QStringLiteral("a\r"),
        QStringLiteral("\rb"),
        QStringLiteral("\u00E4\u00DF"),
        QStringLiteral("\u20AC"),
        QStringLiteral("\U0001F4E1"),
        QStringLiteral("\uFEFF"),
        QStringLiteral("a\uFEFFb"),
        QStringLiteral("\uFEFF\uFEFF7"),
        QStringLiteral("\uFFFD"),
        QStringLiteral("\uFDD0"),
        QStringLiteral("\U0001FFFE\U0010FFFF"),
        QStringLiteral("\u007F\u0080\u0085\u009F"),
        QStringLiteral("\u2028\u2029"),
        QStringLiteral("\uD7FF\uE000"),
        QStringLiteral("\U00010000"),
        QStringLiteral("amp;"),
        QStringLiteral("&amp;"),
        QStringLiteral("&#13;"),
        QStringLiteral("<Node/>"),
        QStringLiteral("/"),
        QStringLiteral("a/"),
        QStringLiteral("/>"),
        QStringLiteral("a comparatively long text, of more than a few words, as display names have it")};
    return all;
}

// --- Spellings -------------------------------------------------------------------------------------------------------

/// How odd a document is.
struct Taste
{
    int oddity; ///< one in so many choices is an odd one
    bool onlyInMemory; ///< nothing that is not read in memory
};

class Writer
{
public:
    Writer(Random &random, Taste taste) : m_random(random), m_taste(taste) { }

    QByteArray document(const QByteArray &className)
    {
        if (odd())
            m_text += "\xEF\xBB\xBF";
        declaration();
        outside();
        const QByteArray root = className.isEmpty() ? m_random.oneOf(classNames()) : className;
        m_left = 4 + m_random.below(28);
        objectElement(root, root, 0);
        outside();
        return m_text;
    }

private:
    bool odd() { return m_random.oneIn(m_taste.oddity); }
    bool veryOdd() { return odd() && odd(); }
    /// What is well-formed, but not read in memory.
    bool foreign() { return !m_taste.onlyInMemory && m_random.oneIn(400); }

    QByteArray blanks()
    {
        QByteArray text;
        do
            text += m_random.oneOf({" ", "\n", "\t", "\r", "\r\n", "  ", "\n  ", "\r\r\n"});
        while (odd());
        return text;
    }
    QByteArray maybeBlanks() { return odd() ? blanks() : QByteArray(); }

    void declaration()
    {
        if (m_random.oneIn(3))
            return;
        const auto value = [this](const char *name, const char *text) {
            const char quote = odd() ? '\'' : '"';
            m_text += name + maybeBlanks() + '=' + maybeBlanks() + quote + text + quote;
        };
        m_text += "<?xml ";
        m_text += maybeBlanks();
        value("version", "1.0");
        if (!odd()) {
            m_text += odd() ? blanks() : QByteArray(" ");
            value("encoding", foreign() ? "us-ascii" : m_random.oneOf({"UTF-8", "utf-8", "Utf-8"}));
        }
        if (odd()) {
            m_text += blanks();
            value("standalone", m_random.oneIn(2) ? "yes" : "no");
        }
        m_text += maybeBlanks() + "?>";
    }

    void outside()
    {
        if (!odd())
            m_text += '\n';
        while (odd()) {
            if (odd())
                comment();
            else if (odd())
                instruction();
            else
                m_text += blanks();
        }
    }

    // --- Elements ---

    void objectElement(const QByteArray &name, const QByteArray &className, int depth)
    {
        --m_left;
        std::vector<Member> attributes;
        std::vector<Member> elements;
        for (const Member &member : shapes().at(className)) {
            if (!member.child.isEmpty())
                elements.push_back(member);
            else if (!m_random.oneIn(4))
                (m_random.oneIn(3) ? elements : attributes).push_back(member);
        }
        if (odd())
            shuffle(elements);
        if (odd())
            shuffle(attributes);
        if (odd() && !elements.empty())
            elements.push_back(m_random.oneOf(elements));

        m_text += '<' + name;
        if (depth == 0 && !odd())
            attribute("Version", m_random.oneOf({"1.1", "1.1", "1.1", "1.0", "0.9", "2.0", "1.10", ""}));
        for (const Member &member : attributes)
            attribute(member.name, spelled(m_random.oneOf(values()), Context::Attribute));
        if (odd())
            attribute(m_random.oneOf({"unknown", "x-1", "_", "a.b", "xml", "XMLNS", "NAME"}), "1");
        if (foreign())
            attribute(m_random.oneOf({"xmlns:p", "xml:space", "xmlns"}), m_random.oneIn(2) ? "preserve" : "urn:p");
        if (foreign()) {
            for (int i = m_random.below(40); i >= 0; --i)
                attribute("a" + QByteArray::number(i), "");
        }
        const bool isEmpty = elements.empty() && odd();
        m_text += maybeBlanks() + (isEmpty ? "/>" : ">");
        if (isEmpty)
            return;
        for (const Member &member : elements) {
            between(depth);
            if (member.child.isEmpty()) {
                valueElement(member.name);
                continue;
            }
            for (int i = m_random.below(3); i >= 0 && m_left > 0 && depth < 8; --i) {
                between(depth);
                objectElement(member.name, member.child, depth + 1);
            }
        }
        between(depth);
        m_text += "</" + name + maybeBlanks() + '>';
    }

    void valueElement(const QByteArray &name)
    {
        const QString &value = m_random.oneOf(values());
        m_text += '<' + name;
        if (odd())
            attribute("value", spelled(m_random.oneOf(values()), Context::Attribute));
        if (value.isEmpty() && m_random.oneIn(2)) {
            m_text += maybeBlanks() + "/>";
            return;
        }
        m_text += maybeBlanks() + '>';
        m_text += spelled(value, Context::Element);
        if (odd())
            unknownElement(2);
        if (odd())
            m_text += spelled(m_random.oneOf(values()), Context::Element);
        m_text += "</" + name + maybeBlanks() + '>';
    }

    /// Unknown where it is; its name may be known elsewhere.
    void unknownElement(int depth)
    {
        static const std::vector<QByteArray> names = {
            "x",       "x", "y", "Node",      "Component", "value", "id", "Name", "StartupModes", "TunerProperties",
            "x-1.a_b", "_", "X", "ValueItem", "ValueInt",  "xmlx"};
        QByteArray name = m_random.oneOf(names);
        if (foreign())
            name = m_random.oneIn(2) ? "\xC3\xA4\xE2\x82\xAC" : "g\xC3\xB6";
        else if (foreign())
            name = "xml:" + name;
        m_text += '<' + name;
        while (odd())
            attribute("a" + QByteArray::number(++m_serial), spelled(m_random.oneOf(values()), Context::Attribute));
        if (m_random.oneIn(3)) {
            m_text += maybeBlanks() + "/>";
            return;
        }
        m_text += maybeBlanks() + '>';
        while (odd()) {
            m_text += spelled(m_random.oneOf(values()), Context::Element);
            if (depth > 0)
                unknownElement(depth - 1);
        }
        m_text += "</" + name + maybeBlanks() + '>';
    }

    void attribute(const QByteArray &name, const QByteArray &spelledValue)
    {
        m_text += (odd() ? blanks() : QByteArray(" ")) + name + maybeBlanks() + '=' + maybeBlanks();
        const bool single = spelledValue.contains('"') || (odd() && !spelledValue.contains('\''));
        m_text += (single ? '\'' : '"') + spelledValue + (single ? '\'' : '"');
    }

    /// Between the members of an object.
    void between(int depth)
    {
        if (!m_random.oneIn(4))
            m_text += '\n' + QByteArray(2 * depth, ' ');
        while (odd()) {
            switch (m_random.below(6)) {
            case 0:
                comment();
                break;
            case 1:
                instruction();
                break;
            case 2:
                m_text += spelled(m_random.oneOf(values()), Context::Element);
                break;
            case 3:
                unknownElement(3);
                break;
            case 4:
                section(m_random.oneOf(values()));
                break;
            default:
                m_text += blanks();
            }
        }
    }

    template <class Container>
    void shuffle(Container &items)
    {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[std::size_t(m_random.below(int(i)))]);
    }

    // --- Texts ---

    enum class Context { Attribute, Element };

    /// The text with its characters, references, sections, comments and instructions. A line end or a carriage return
    /// may become another character by that.
    QByteArray spelled(const QString &text, Context context)
    {
        QByteArray raw;
        const char forbiddenQuote = m_random.oneIn(2) ? '"' : '\'';
        const auto characters = text.toUcs4();
        for (int i = 0; i < characters.size(); ++i) {
            const uint character = characters.at(i);
            if (context == Context::Element && veryOdd())
                raw += interruption();
            const bool isMarkup = character == '<' || character == '&'
                || (character == uint(forbiddenQuote) && context == Context::Attribute)
                || (character == '>' && raw.endsWith("]]"));
            if (context == Context::Element && odd() && character != ']') {
                raw += "<![CDATA[" + utf8(character) + "]]>";
            } else if (isMarkup || odd()) {
                raw += reference(character);
            } else {
                raw += utf8(character);
            }
        }
        if (context == Context::Element && veryOdd())
            raw += interruption();
        return raw;
    }

    static QByteArray utf8(uint character)
    {
        const char32_t text[] = {'.', character}; // at the beginning, a byte order mark would be dropped
        return QString::fromUcs4(text, 2).toUtf8().mid(1);
    }

    QByteArray reference(uint character)
    {
        static const std::map<uint, QByteArray> entities = {
            {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'"', "&quot;"}, {'\'', "&apos;"}};
        const auto entity = entities.find(character);
        if (entity != entities.end() && !odd())
            return entity->second;
        const QByteArray zeros(odd() ? m_random.below(12) : 0, '0');
        if (m_random.oneIn(2))
            return "&#" + zeros + QByteArray::number(character) + ';';
        const QByteArray digits = QByteArray::number(character, 16);
        return "&#x" + zeros + (m_random.oneIn(2) ? digits.toUpper() : digits) + ';';
    }

    QByteArray interruption()
    {
        const QByteArray before = m_text;
        m_text.clear();
        switch (m_random.below(4)) {
        case 0:
            comment();
            break;
        case 1:
            instruction();
            break;
        case 2:
            section(QString());
            break;
        default:
            section(m_random.oneOf(values()));
        }
        const QByteArray text = m_text;
        m_text = before;
        return text;
    }

    /// A text as it is, without an end of the markup that it is in.
    QByteArray within(const char *end)
    {
        QByteArray text = m_random.oneOf(values()).toUtf8();
        while (odd())
            text += m_random.oneOf({"<", ">", "&", "&x;", "<x>", "\"", "]]", "-", "?", "<!--", "<![CDATA["});
        for (;;) {
            const int at = text.indexOf(end);
            if (at < 0)
                return text;
            text.remove(at, 1);
        }
    }

    void comment()
    {
        QByteArray text = within("--");
        if (text.endsWith('-'))
            text += ' ';
        m_text += "<!--" + text + "-->";
    }

    void instruction()
    {
        const QByteArray text = within("?>");
        m_text += "<?" + QByteArray(m_random.oneOf({"p", "xml-stylesheet", "_", "x.1"}));
        if (!odd())
            m_text += ' ' + text;
        m_text += "?>";
    }

    void section(const QString &text)
    {
        QByteArray raw = text.toUtf8();
        raw.replace("]]>", "]]]]><![CDATA[>");
        m_text += "<![CDATA[" + raw + "]]>";
    }

    Random &m_random;
    const Taste m_taste;
    QByteArray m_text;
    int m_left = 0; // how many objects may follow
    int m_serial = 0;
};

} // namespace

QByteArray document(Random &random, const QByteArray &root)
{
    return Writer(random, {3 + random.below(30), random.oneIn(2)}).document(root);
}

QByteArray plainDocument(Random &random, const QByteArray &root)
{
    return Writer(random, {60, true}).document(root);
}

const std::vector<QByteArray> &tokens()
{
    static const std::vector<QByteArray> all = [] {
        std::vector<QByteArray> pieces = {
            // markup, whole and in pieces
            "<", ">", "/", "=", "\"", "'", "&", ";", "]", "]]", "]]>", "-", "--", "-->", "?>", "/>", "</", "<!", "<?",
            "<!--", "<!---->", "<!--->", "<!-- -- -->", "<!-- --->", "<!-- - - -->", "<![CDATA[", "<![CDATA[]]>",
            "<![CDATA[]]]]>", "<![CDATA[a]]><![CDATA[b]]>", "<![cdata[a]]>", "<!DOCTYPE a>", "<!DOCTYPE a []>", "<?p?>",
            "<?p ?>", "<? p?>",
            "<?p?"
            "?>",
            "<?p x?y?>", "<?xml?>", "<?XML ?>", "<?xml version='1.0'?>", "<?xml version=\"1.1\"?>",
            "<?xml version='1.0' encoding='UTF-16'?>", "<?xml-x ?>", "<?p:q ?>",
            // elements and attributes
            "<x>", "</x>", "<x/>", "< x>", "</ x>", "<x/ >", "<x / >", "<x a='1'/>", "<x a='1'b='2'/>",
            "<x a='1' a='2'/>", "<x a/>", "<x a=1/>", "<x a=''/>", "<x 1a=''/>", "<x -a=''/>", "<x a='<'/>", "<x><x>",
            "<x></x><x/>", "<p:x/>", "<x xmlns='u'/>", "<x xmlns:p='u'/>", "<x xml:space='preserve'/>", "<x :a=''/>",
            "<:x/>", "<x.y-z_1/>", "<\xC3\xA4/>", "<x\xC2\xB7/>", "<Node>", "</Node>", "<Node/>", "<value>", "</value>",
            " a='1'", " value=\"2\"", " id='>'", " id='/>'", " id=\"]]>\"", " xmlns='u'",
            // references
            "&lt;", "&gt;", "&amp;", "&quot;", "&apos;", "&LT;", "&nbsp;", "&lt", "&;", "&#", "&#;", "&#x;", "&#x",
            "&#9;", "&#10;", "&#13;", "&#13;&#10;", "&#xD;\n", "\r&#10;", "&#x20;", "&#32;", "&#0;", "&#00;", "&#1;",
            "&#x1F;", "&#x7F;", "&#x85;", "&#xD7FF;", "&#xD800;", "&#xDFFF;", "&#xE000;", "&#xFFFD;", "&#xFFFE;",
            "&#xFFFF;", "&#x10000;", "&#x1FFFE;", "&#x10FFFF;", "&#x110000;", "&#4294967361;",
            "&#18446744073709551681;", "&#00000000000000000000000000000000000000065;",
            "&#x00000000000000000000000000000041;", "&#X41;", "&#x4G;", "&# 65;", "&#65 ;", "&#+65;", "&#-65;", "&#93;",
            "&#93;]>", "]&#93;>", "]]&#62;", "&#38;lt;", "&#60;x/>", "&#60;", "&#38;", "&#39;", "&#34;", "&#62;",
            // bytes
            "\r", "\n", "\t", "\r\n", "\r\r\n", "\n\r", " ", "\x01", "\x08", "\x0B", "\x0C", "\x1F", "\x7F", "\xC2\x80",
            "\xC2\x85", "\xC2\xA0", "\xC3\xA4", "\xDF\xBF", "\xE0\xA0\x80", "\xE2\x80\xA8", "\xE3\x80\x80",
            "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBB\xBF", "\xEF\xBB\xBF\xEF\xBB\xBF", "\xEF\xB7\x90", "\xEF\xBF\xBD",
            "\xF0\x90\x80\x80", "\xF0\x9F\x93\xA1", "\xF0\x9F\xBF\xBE", "\xF4\x8F\xBF\xBF",
            // what UTF-8 or XML do not have
            "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC3", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xE2\x82",
            "\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xA0\xBD\xED\xB3\xA1", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xEF\xBF",
            "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF", "\xF0\x9F\x93", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
            "\xF8\x88\x80\x80\x80", "\xFC\x84\x80\x80\x80\x80", "\xFE", "\xFF", "\xFF\xFE", "\xFE\xFF"};
        pieces.emplace_back("\0", 1);
        pieces.emplace_back("a\0", 2);
        for (const QString &value : values())
            pieces.push_back(value.toUtf8());
        for (const auto &[name, members] : shapes()) {
            pieces.push_back('<' + name + '>');
            pieces.push_back("</" + name + '>');
        }
        return pieces;
    }();
    return all;
}

QByteArray mutated(Random &random, const QByteArray &document, const QByteArray &other)
{
    QByteArray result = document;
    const auto place = [&](const QByteArray &text) { return random.below(text.size() + 1); };
    const auto placeOfMarkup = [&] { // half of them where markup is
        const int at = place(result);
        if (random.oneIn(2))
            return at;
        const int found = result.indexOf(random.oneOf({'<', '>', '"', '&', ']', '=', '\n'}), at);
        return found < 0 ? at : found + random.below(2);
    };
    const auto placeOfContent = [&] { // or after a comment
        return result.indexOf('>', place(result)) + 1;
    };
    do {
        const int at = placeOfMarkup();
        const int size = 1 + random.below(random.oneIn(4) ? 64 : 4);
        switch (random.below(8)) {
        case 0:
            if (at < result.size())
                result[at] = char(result.at(at) ^ (1 << random.below(8)));
            break;
        case 1:
            if (at < result.size())
                result[at] = char(random.below(256));
            break;
        case 2:
            result.remove(at, size);
            break;
        case 3:
            result.insert(at, result.mid(place(result), size));
            break;
        case 4:
            result.insert(at, other.mid(place(other), size));
            break;
        case 5:
            result.replace(at, size, random.oneOf(tokens()));
            break;
        case 6:
            if (random.oneIn(8)) {
                result.truncate(at);
                break;
            }
            Q_FALLTHROUGH();
        default:
            result.insert(random.oneIn(3) ? at : placeOfContent(), random.oneOf(tokens()));
        }
    } while (random.oneIn(3));
    return result;
}

} // namespace XmlSpellings
