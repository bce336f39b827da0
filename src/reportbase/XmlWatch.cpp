// SPDX-License-Identifier: MIT
#include "XmlWatch.h"

#include <algorithm>
#include <cstring>

#include <QLatin1String>
#include <QStringView>
#include <QVector>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

namespace {

// An attribute takes five characters at least (` a=""`), so a tag of this length cannot have too many.
constexpr Size shortTag = 4 * XmlWatch::MostAttributes;

ushort codeOf(char character)
{
    return uchar(character);
}

ushort codeOf(QChar character)
{
    return character.unicode();
}

/// The position of the next '<', or `end` if there is none.
Size nextOpening(const char *text, Size from, Size end)
{
    const void *const found = std::memchr(text + from, '<', std::size_t(end - from));
    return found ? Size(static_cast<const char *>(found) - text) : end;
}

Size nextOpening(const QChar *text, Size from, Size end)
{
    const auto found = QStringView(text + from, end - from).indexOf(QLatin1Char('<'));
    return found < 0 ? end : from + Size(found);
}

const QLatin1String beginOfDeclaration("<?xml");
constexpr int longestDeclaration = 1024; // of a hundred characters, not counting repeated blanks

bool isBlank(ushort character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

Size skipBlanks(const QString &text, Size from)
{
    while (from < text.size() && isBlank(text[from].unicode()))
        ++from;
    return from;
}

bool beginsName(ushort character)
{
    return character != '!' && character != '?' && character != '/';
}

} // namespace

template <typename Character>
Size XmlWatch::readable(const Character *text, Size size)
{
    Size i = m_isHeadRead ? 0 : readableHead(text, size);
    while (i < size && !isRefused()) {
        if (m_state == State::Text) {
            i = nextOpening(text, i, size);
            if (i == size)
                break;
        } else if (m_state == State::TagOpened && beginsName(codeOf(text[i]))) {
            // No tag contains a '<', not even in quotes. So this one ends before the next.
            const Size end = std::min(size, i + shortTag);
            const Size next = nextOpening(text, i, end);
            if (next < end) {
                m_state = State::Text;
                i = next;
            }
        }
        if (!take(codeOf(text[i])))
            break;
        ++i;
    }
    return i;
}

template Size XmlWatch::readable(const char *text, Size size);
template Size XmlWatch::readable(const QChar *text, Size size);

template <typename Character>
Size XmlWatch::readableHead(const Character *text, Size size)
{
    Size i = 0;
    while (i < size && !m_isHeadRead && !isRefused() && takeInHead(codeOf(text[i])))
        ++i;
    return i;
}

template Size XmlWatch::readableHead(const char *text, Size size);
template Size XmlWatch::readableHead(const QChar *text, Size size);

/// Returns false for a character that is not part of the head, or must not be read.
bool XmlWatch::takeInHead(ushort character)
{
    constexpr ushort byteOrderMark = 0xFEFF;
    const Size size = m_head.size();
    if (size > beginOfDeclaration.size())
        return takeInDeclaration(character);
    if (size == 0 && character == byteOrderMark)
        return true;
    const bool isBegin =
        size < beginOfDeclaration.size() ? character == codeOf(beginOfDeclaration[size]) : isBlank(character);
    if (isBegin) {
        m_head += QChar(character);
        return true;
    }
    m_isHeadRead = true; // without a declaration
    for (const QChar taken : qAsConst(m_head))
        take(taken.unicode());
    return false;
}

bool XmlWatch::takeInDeclaration(ushort character)
{
    const bool isInValue = isInQuotes(character);
    if (!isInValue && isBlank(character) && isBlank(m_head.back().unicode()))
        return true; // there may be any number of them
    const bool isEnd = !isInValue && character == '>' && m_head.endsWith(QLatin1Char('?'));
    const bool isTooLong = m_head.size() == longestDeclaration;
    m_head += QChar(character);
    m_isHeadRead = isEnd && !isTooLong && readDeclaration(m_head.mid(beginOfDeclaration.size()).chopped(2));
    // A refused declaration is read to its end, or until it certainly has none, so that the reader reports its own
    // errors first.
    if (isTooLong || character == '<' || (isEnd && !m_isHeadRead))
        m_refused = Refused::XmlDeclaration;
    return !isTooLong;
}

/// Reads the text between "<?xml" and "?>": version, encoding and standalone, each once at most, and no references,
/// which the reader would resolve.
bool XmlWatch::readDeclaration(const QString &declaration)
{
    if (declaration.contains(QLatin1Char('&')))
        return false;
    QVector<QLatin1String> expected{QLatin1String("version"), QLatin1String("encoding"), QLatin1String("standalone")};
    for (Size i = skipBlanks(declaration, 0); i < declaration.size();) {
        const Size equalSign = declaration.indexOf(QLatin1Char('='), i);
        const Size open = skipBlanks(declaration, equalSign + 1);
        if (equalSign < 0 || open == declaration.size())
            return false;
        const QChar quote = declaration[open];
        const Size close = declaration.indexOf(quote, open + 1);
        if ((quote != QLatin1Char('"') && quote != QLatin1Char('\'')) || close < 0)
            return false;
        const QString name = declaration.mid(i, equalSign - i).trimmed();
        const auto found = std::find(expected.begin(), expected.end(), name);
        if (found == expected.end())
            return false;
        expected.erase(found);
        if (name == QLatin1String("encoding"))
            m_encoding = declaration.mid(open + 1, close - open - 1);
        i = skipBlanks(declaration, close + 1);
    }
    return true;
}

/// Returns false for the character that must not be read.
bool XmlWatch::take(ushort character)
{
    switch (m_state) {
    case State::Text:
        if (character == '<')
            m_state = State::TagOpened;
        break;
    case State::TagOpened:
        m_attributes = 0;
        m_quote = 0;
        if (character == '!')
            m_state = State::DeclarationOpened;
        else if (character == '?')
            beginSection('?', 1); // ?>
        else if (character == '/')
            m_state = State::Text; // an end tag has no attributes
        else
            m_state = State::InTag;
        break;
    case State::InTag:
        takeInTag(character);
        break;
    case State::DeclarationOpened:
        if (character == '-')
            m_state = State::CommentOpened;
        else if (character == '[')
            beginSection(']', 2); // ]]>
        else
            m_state = State::InDocumentType;
        break;
    case State::CommentOpened:
        beginSection('-', 2); // -->
        break;
    case State::InSection:
        takeInSection(character);
        break;
    case State::InDocumentType:
        takeInDocumentType(character);
        break;
    }
    return !isRefused();
}

void XmlWatch::takeInTag(ushort character)
{
    if (character == '<') {
        m_state = State::TagOpened; // as above
    } else if (!isInQuotes(character)) {
        if (character == '>')
            m_state = State::Text;
        else if (character == '=' && ++m_attributes > MostAttributes)
            m_refused = Refused::Attributes;
    }
}

void XmlWatch::takeInDocumentType(ushort character)
{
    if (isInQuotes(character))
        return;
    if (character == '>')
        m_state = State::Text;
    else if (character == '[')
        m_refused = Refused::InternalSubset;
}

bool XmlWatch::isInQuotes(ushort character)
{
    const bool isIn = m_quote != 0;
    if (isIn && character == m_quote)
        m_quote = 0;
    else if (!isIn && (character == '"' || character == '\''))
        m_quote = character;
    return isIn;
}

void XmlWatch::beginSection(char mark, int marks)
{
    m_state = State::InSection;
    m_mark = mark;
    m_marksOfEnd = marks;
    m_marks = 0;
}

void XmlWatch::takeInSection(ushort character)
{
    if (character == codeOf(m_mark)) {
        m_marks = std::min(m_marks + 1, m_marksOfEnd);
        return;
    }
    if (character == '>' && m_marks == m_marksOfEnd)
        m_state = State::Text;
    m_marks = 0;
}

QString XmlWatch::refusal() const
{
    switch (m_refused) {
    case Refused::XmlDeclaration:
        return FailureTexts::xmlDeclaration();
    case Refused::Attributes:
        return FailureTexts::tooManyAttributes(MostAttributes);
    case Refused::InternalSubset:
        return FailureTexts::internalSubset();
    case Refused::Nothing:
        break;
    }
    return QString();
}

} // namespace REPORTGENERATOR
