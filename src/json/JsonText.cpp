// SPDX-License-Identifier: MIT
#include "json/JsonText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <QRegularExpression>

#include <nlohmann/json.hpp>

#include "text/ExactNumber.h"
#include "text/LongestText.h"
#include "text/Printable.h"
#include "text/Size.h"
#include "text/TextLocation.h"
#include "json/Overflows.h"

using Parser = nlohmann::json;

JsonFailure::JsonFailure(const QString &message)
    : std::runtime_error(Printable::withoutNull(message)), m_message(message)
{
}

JsonFailure::JsonFailure(int line, int column, const QString &message) : JsonFailure(message)
{
    m_line = line;
    m_column = column;
}

JsonFailure JsonFailure::within(const QString &step) const
{
    JsonFailure further = *this;
    further.m_path = m_path.isEmpty() ? step : step + QLatin1Char('/') + m_path;
    return further;
}

QString JsonFailure::textInDocument() const
{
    return m_path.isEmpty() ? m_message : m_path + QStringLiteral(": ") + m_message;
}

QString JsonFailure::text(const QString &fileName) const
{
    const QString location = m_line == 0 ? QString() : QStringLiteral(":%1:%2").arg(m_line).arg(m_column);
    return fileName + location + QStringLiteral(": ") + textInDocument();
}

namespace JsonText {

using REPORTGENERATOR::Size;

namespace {

// Far more than a document needs, and few enough for recursion and for searching an object.
constexpr std::size_t deepest = 64;
constexpr std::size_t mostKeys = 256;

constexpr Size mostShown = 40; // characters of a text in a message

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

/// The index of the token that a message of the parser quotes, or -1. The token follows these words, so its content
/// cannot be mistaken for them; a number contains no words.
Size tokenBegin(const QByteArray &parseError)
{
    for (const QByteArray &mark : {QByteArrayLiteral("last read: '"), QByteArrayLiteral("number overflow parsing '")}) {
        const Size at = parseError.indexOf(mark);
        if (at >= 0)
            return at + mark.size();
    }
    return -1;
}

/// "... last read: 'what was read of the token'; expected ...", "number overflow parsing 'the number'". The error is at
/// the end of the token, which may be as long as the document. `spelling` returns the token as it is in the document.
template <class Spelling>
QString withShortToken(const QByteArray &parseError, Spelling spelling)
{
    const Size begin = tokenBegin(parseError);
    if (begin < 0)
        return QString::fromUtf8(parseError);
    constexpr int longestEnd = 40; // "'; expected string literal"
    const Size expected = parseError.lastIndexOf("'; expected ");
    const bool hasExpected = expected >= begin && parseError.size() - expected <= longestEnd;
    const Size end = hasExpected ? expected : parseError.size() - 1;
    const Size size = std::min<Size>(end - begin, 4 * mostShown);
    const QString last = QString::fromUtf8(spelling(parseError.mid(end - size, size)));
    const bool isWhole = size == end - begin && last.size() <= mostShown;
    return QString::fromUtf8(parseError.left(begin)) + (isWhole ? last : QStringLiteral("...") + last.right(mostShown))
        + QString::fromUtf8(parseError.mid(end));
}

/// An iterator over a text that records how far the parser has read.
class TrackingIterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    TrackingIterator(const char *at, const char **furthest) : m_at(at), m_furthest(furthest) { }

    reference operator*() const { return *m_at; }
    TrackingIterator &operator++()
    {
        *m_furthest = ++m_at;
        return *this;
    }
    TrackingIterator operator++(int)
    {
        const TrackingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const TrackingIterator &other) const { return m_at == other.m_at; }
    bool operator!=(const TrackingIterator &other) const { return m_at != other.m_at; }

private:
    const char *m_at;
    const char **m_furthest;
};

/// What to do with content that strict JSON does not have, but whose text has a structure.
enum class Oddities {
    Refuse,
    Accept,
};

/// The parser has read a number that is too large, and cannot continue.
struct FoundOverflow
{
};

/// Builds the value from the events of the parser, and rejects what the parser accepts.
class Builder
{
public:
    /// The parser reads `text`, of which all places are. That is `original` unless numbers are replaced.
    Builder(const QByteArray &text, const QByteArray &original, const char *const &furthest, Oddities oddities)
        : m_text(text), m_original(original), m_furthest(furthest),
          m_tokenEnd(text.constData() + (text.startsWith(byteOrderMark) ? 3 : 0)), m_oddities(oddities)
    {
    }

    Json takeResult() { return std::move(m_result); }

    bool null() { return add(Json()); }
    bool boolean(bool value) { return add(Json(value)); }
    bool number_integer(Parser::number_integer_t value) { return addNumber(Json(qint64(value))); }
    bool number_unsigned(Parser::number_unsigned_t value) { return addNumber(Json(quint64(value))); }
    bool number_float(Parser::number_float_t value, const std::string &) { return addNumber(Json(original(value))); }
    bool string(const std::string &value) { return add(Json(QByteArray::fromStdString(value))); }
    bool binary(Parser::binary_t &) { return false; } // does not occur in text
    bool start_object(std::size_t) { return open(Json::emptyObject()); }
    bool start_array(std::size_t) { return open(Json::emptyList()); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }

    bool key(const std::string &name)
    {
        const Json &object = *m_open.back();
        m_key = QByteArray::fromStdString(name);
        m_keyBegin = nextToken();
        m_tokenEnd = m_furthest;
        m_isDuplicate = object.find(m_key);
        if (m_isDuplicate && m_oddities == Oddities::Refuse)
            failHere(duplicateMember(m_key));
        if (object.members().size() == mostKeys)
            failHere(QStringLiteral("an object has more than %1 members").arg(mostKeys));
        return true;
    }

    bool parse_error(std::size_t position, const std::string &, const Parser::exception &exception)
    {
        constexpr int overflow = 406;
        if (exception.id == overflow && m_oddities == Oddities::Accept && !isReplaced())
            throw FoundOverflow();
        const char *const at = std::min(m_text.constBegin() + position - 1, m_text.constEnd());
        if (at != m_text.constEnd() && *at == '\0')
            refuseNul(at);
        // "[json.exception.parse_error.101] parse error at line 1, column 2: the error"
        static const QRegularExpression around(
            QStringLiteral(R"(^\[[^\]]*\] (?:parse error at line \d+, column \d+: )?)"));
        const Size end = std::min(Size(position), m_text.size());
        const auto spelling = [&](const QByteArray &token) {
            return isReplaced() ? Overflows::originalToken(token, m_original, end) : token;
        };
        // The position counts the characters that were read, and the end of the text as one more.
        fail(at, withShortToken(exception.what(), spelling).remove(around));
    }

    /// The parser treats a NUL byte as the end of the text.
    void refuseNulAfterEnd() const
    {
        const char *const nul = std::find(m_text.constBegin(), m_text.constEnd(), '\0');
        if (nul != m_text.constEnd())
            refuseNul(nul);
    }

private:
    bool isReplaced() const { return &m_text != &m_original; }

    /// The number that the parser has just read, or infinity if it was replaced by a smaller one.
    double original(double value) const
    {
        if (!isReplaced())
            return value;
        const char *const begin = nextToken();
        const auto size = std::size_t(endOfNumber() - begin);
        const bool isSame = std::memcmp(begin, m_original.constData() + offsetOf(begin), size) == 0;
        return isSame ? value : std::copysign(std::numeric_limits<double>::infinity(), value);
    }

    /// Reports an error at the last character that was read.
    [[noreturn]] void failHere(const QString &message) const { fail(m_furthest - 1, message); }

    [[noreturn]] void refuseNul(const char *at) const
    {
        fail(at, QStringLiteral("NUL byte, which is not allowed in JSON"));
    }

    [[noreturn]] void fail(const char *at, const QString &message) const
    {
        const TextLocation location = TextLocator(m_text).at(int(at - m_text.constData()));
        throw JsonFailure(location.line, location.column, message);
    }

    /// Adds a value that ends where the parser has read to.
    bool add(Json &&value) { return add(std::move(value), m_furthest); }

    bool addNumber(Json &&value) { return add(std::move(value), endOfNumber()); }

    /// The parser has read one character more than the number, unless the text ends with it.
    const char *endOfNumber() const
    {
        const char last = m_furthest[-1];
        const bool endsText = m_furthest == m_text.constEnd() && last >= '0' && last <= '9';
        return endsText ? m_furthest : m_furthest - 1;
    }

    bool add(Json &&value, const char *end)
    {
        addValue(std::move(value), nextToken(), end);
        m_tokenEnd = end;
        return true;
    }

    Json &addValue(Json &&value, const char *begin, const char *end)
    {
        Json *const parent = m_open.empty() ? nullptr : m_open.back();
        const bool isMember = parent && parent->isObject();
        value.setPlace(offsetOf(isMember ? m_keyBegin : begin), offsetOf(begin), offsetOf(end));
        if (isMember && m_isDuplicate)
            value.setDuplicate();
        if (!parent)
            return m_result = std::move(value);
        return isMember ? parent->insert(m_key, std::move(value)) : parent->append(std::move(value));
    }

    /// The beginning of the next key or value, which the parser has just read.
    const char *nextToken() const
    {
        const char *at = m_tokenEnd;
        while (*at == ' ' || *at == '\n' || *at == '\r' || *at == '\t' || *at == ',' || *at == ':')
            ++at;
        return at;
    }

    quint32 offsetOf(const char *at) const { return quint32(at - m_text.constData()); }

    bool open(Json &&empty)
    {
        if (m_open.size() == deepest)
            failHere(QStringLiteral("nested deeper than %1 levels").arg(deepest));
        m_open.push_back(&addValue(std::move(empty), m_furthest - 1, m_furthest));
        m_tokenEnd = m_furthest;
        return true;
    }

    bool close()
    {
        m_tokenEnd = m_furthest;
        Json &value = *m_open.back();
        value.setPlace(value.memberBegin(), value.textBegin(), offsetOf(m_tokenEnd));
        m_open.pop_back();
        return true;
    }

    const QByteArray &m_text;
    const QByteArray &m_original;
    const char *const &m_furthest;
    Json m_result;
    std::vector<Json *> m_open;
    QByteArray m_key;
    const char *m_keyBegin = nullptr;
    const char *m_tokenEnd; // of the last key, value or bracket
    const Oddities m_oddities;
    bool m_isDuplicate = false; // the last key
};

Json parsed(const QByteArray &text, const QByteArray &original, Oddities oddities)
{
    const char *furthest = text.constData();
    Builder builder(text, original, furthest, oddities);
    Parser::sax_parse(TrackingIterator(text.constData(), &furthest),
                      TrackingIterator(text.constData() + text.size(), &furthest), &builder);
    builder.refuseNulAfterEnd();
    return builder.takeResult();
}

std::string number(double value)
{
    const std::string digits = ExactNumber::text(value).toStdString();
    // Some readers take a number without any of these for a whole number, and "-0" for 0.
    return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
}

std::string quoted(const QByteArray &text)
{
    return Parser(text.toStdString()).dump();
}

bool isStructured(const Json &value)
{
    return value.isList() || value.isObject();
}

bool isPlain(const Json &value)
{
    return !isStructured(value) || value.isEmpty();
}

/// Whether all parts of a list or an object match the predicate.
template <class Predicate>
bool allParts(const Json &value, Predicate fits)
{
    if (value.isList())
        return std::all_of(value.items().begin(), value.items().end(), fits);
    return std::all_of(value.members().begin(), value.members().end(),
                       [&](const Json::Member &member) { return fits(member.value); });
}

/// Whether the value is readable on one line: plain values, and in an object also lists and objects of plain values.
bool isSimple(const Json &value)
{
    return allParts(value,
                    [&](const Json &part) { return isPlain(part) || (value.isObject() && allParts(part, isPlain)); });
}

/// The value on its own, as it is written if it has no parts.
std::string plainText(const Json &value)
{
    if (value.isText())
        return quoted(value.text());
    if (value.isReal())
        return number(value.toNumber<double>());
    if (value.isNegative())
        return std::to_string(value.toNumber<qint64>());
    if (value.isWholeNumber())
        return std::to_string(value.toNumber<quint64>());
    return value.isNull() ? "null" : value.toBoolean() ? "true" : "false";
}

class Printer
{
public:
    /// With `spelling`, the text that the value was read from, keys and values are written as they are spelled there.
    explicit Printer(bool pretty, const QByteArray *spelling = nullptr) : m_pretty(pretty), m_spelling(spelling) { }

    void print(const Json &value)
    {
        if (isStructured(value))
            printParts(value, m_pretty && !value.isEmpty() && !(isSimple(value) && fitsOnTheLine(value)));
        else
            append(plainText(value), value.textBegin(), value.textEnd());
    }

    std::string takeText() { return std::move(m_out); }

private:
    static constexpr std::size_t width = 110;

    /// Appends a key or a value. The column counts what the library writes, so that the layout depends on the value
    /// alone and not on its spelling.
    void append(const std::string &token, quint32 begin, quint32 end)
    {
        m_column += token.size();
        if (m_spelling)
            m_out.append(m_spelling->constData() + begin, end - begin);
        else
            m_out += token;
    }

    void append(const char *mark)
    {
        m_column += std::strlen(mark);
        m_out += mark;
    }

    void appendKey(const Json::Member &member)
    {
        const quint32 begin = member.value.memberBegin();
        append(quoted(member.key), begin, m_spelling ? endOfKey(*m_spelling, begin) : begin);
    }

    /// The offset after the closing quote of the key whose opening quote is there.
    static quint32 endOfKey(const QByteArray &text, quint32 begin)
    {
        const char *at = text.constData() + begin + 1;
        while (*at != '"')
            at += *at == '\\' ? 2 : 1;
        return quint32(at + 1 - text.constData());
    }

    bool fitsOnTheLine(const Json &value) const
    {
        Printer flat(true);
        flat.printParts(value, false);
        return m_column + flat.m_out.size() <= width;
    }

    void printParts(const Json &value, bool onLinesOfTheirOwn)
    {
        bool isFirst = true;
        const auto beginPart = [&] {
            if (!isFirst)
                append(m_pretty && !onLinesOfTheirOwn ? ", " : ",");
            if (onLinesOfTheirOwn)
                breakLine();
            isFirst = false;
        };
        append(value.isObject() ? "{" : "[");
        ++m_depth;
        if (value.isObject()) {
            for (const Json::Member &member : value.members()) {
                beginPart();
                appendKey(member);
                append(m_pretty ? ": " : ":");
                print(member.value);
            }
        } else {
            for (const Json &item : value.items()) {
                beginPart();
                print(item);
            }
        }
        --m_depth;
        if (onLinesOfTheirOwn)
            breakLine();
        append(value.isObject() ? "}" : "]");
    }

    void breakLine()
    {
        m_column = 2 * m_depth;
        m_out += '\n' + std::string(m_column, ' ');
    }

    const bool m_pretty;
    const QByteArray *const m_spelling;
    std::string m_out;
    std::size_t m_column = 0;
    std::size_t m_depth = 0;
};

QByteArray printed(const Json &value, bool pretty)
{
    Printer printer(pretty);
    printer.print(value);
    return Printable::escaped(QByteArray::fromStdString(printer.takeText()));
}

} // namespace

Json parse(const QByteArray &utf8)
{
    return parsed(utf8, utf8, Oddities::Refuse);
}

Json parseLeniently(const QByteArray &utf8)
{
    try {
        return parsed(utf8, utf8, Oddities::Accept);
    } catch (const FoundOverflow &) {
        const QByteArray readable = Overflows::replaced(utf8);
        return parsed(readable, utf8, Oddities::Accept);
    }
}

QByteArray pretty(const Json &value)
{
    return printed(value, true) + '\n';
}

QByteArray prettyAsSpelled(const Json &value, const QByteArray &text)
{
    Printer printer(true, &text);
    printer.print(value);
    return (text.startsWith(byteOrderMark) ? QByteArray(byteOrderMark) : QByteArray())
        + QByteArray::fromStdString(printer.takeText()) + '\n';
}

QByteArray compact(const Json &value)
{
    return printed(value, false);
}

Json fromString(const QString &text)
{
    if (!text.isValidUtf16())
        throw JsonFailure(QStringLiteral("the text contains an unpaired surrogate, which JSON cannot represent"));
    return text.toUtf8();
}

QString toString(const QByteArray &utf8)
{
    // Qt does not treat a byte order mark at the beginning as a part of the text; in a JSON string it is one.
    constexpr int markSize = 3;
    const char *rest = utf8.constData();
    QString marks;
    for (; std::strncmp(rest, byteOrderMark, markSize) == 0; rest += markSize)
        marks += QChar(QChar::ByteOrderMark);
    const QString text =
        QString::fromUtf8(rest, REPORTGENERATOR::lengthOfText(REPORTGENERATOR::Size(utf8.constEnd() - rest)));
    return marks.isEmpty() ? text : marks + text;
}

QString duplicateMember(const QByteArray &key)
{
    return QStringLiteral("duplicate member '%1'").arg(shortened(toString(key)));
}

QString shortened(const QString &text)
{
    return text.size() > mostShown ? text.left(mostShown) + QStringLiteral("...") : text;
}

} // namespace JsonText
