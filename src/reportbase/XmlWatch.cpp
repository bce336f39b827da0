// SPDX-License-Identifier: MIT
#include "XmlWatch.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <QLatin1String>
#include <QStringView>

#include "FailureTexts.h"
#include "XmlDeclaration.h"
#include "text/Encoding.h"

namespace REPORTGENERATOR {

namespace {

// An attribute takes five characters at least (` a=""`), so a tag of this length cannot have too many. It cannot have a
// name that is too long either.
constexpr int shortTag = 4 * XmlWatch::MostAttributes;
static_assert(shortTag <= XmlWatch::LongestName + 1);

/// How many UTF-16 units the character has that begins with this byte of UTF-8; none, if it begins earlier.
int unitsOf(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80 ? 0 : uchar(byte) >= 0xF0 ? 2 : 1;
}

int unitsOf(QChar)
{
    return 1;
}

ushort codeOf(char character)
{
    return uchar(character);
}

ushort codeOf(QChar character)
{
    return character.unicode();
}

/// The position of the character, or `end` if there is none.
Size indexOf(char character, const char *text, Size from, Size end)
{
    const void *const found = from < end ? std::memchr(text + from, character, std::size_t(end - from)) : nullptr;
    return found ? Size(static_cast<const char *>(found) - text) : end;
}

Size indexOf(char character, const QChar *text, Size from, Size end)
{
    const auto found = QStringView(text + from, end - from).indexOf(QLatin1Char(character));
    return found < 0 ? end : from + Size(found);
}

/// The position of the next '<' or '&', or `end` if there is none.
template <typename Character>
Size nextMarkup(const Character *text, Size from, Size end)
{
    const auto isMarkup = [](Character character) { return codeOf(character) == '<' || codeOf(character) == '&'; };
    return Size(std::find_if(text + from, text + end, isMarkup) - text);
}

const QLatin1String beginOfDeclaration("<?xml");
constexpr int longestDeclaration = 1024; // of a hundred characters, not counting repeated blanks

bool isBlank(ushort character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// Whether no name contains the character. Blanks and these end every name in the reader.
bool endsName(ushort character)
{
    constexpr std::string_view ends = "&#'\"<>=%/;()|+*,?![";
    return isBlank(character) || (character < 0x80 && ends.find(char(character)) != std::string_view::npos);
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
            i = nextMarkup(text, i, size);
            if (i == size)
                break;
        } else if (m_state == State::TagOpened && beginsName(codeOf(text[i]))) {
            // No tag contains a '<', not even in quotes. So this one ends before the next.
            const Size end = std::min(size, i + shortTag);
            const Size next = indexOf('<', text, i, end);
            if (next < end) {
                m_state = State::Text;
                m_mayHaveDocumentType = false;
                i = next;
            }
        }
        if (!take(codeOf(text[i]), unitsOf(text[i])))
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
        take(taken.unicode(), unitsOf(taken));
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
    const auto declaration = isEnd && !isTooLong ? XmlDeclaration::read(m_head) : std::nullopt;
    m_isHeadRead = declaration.has_value();
    if (declaration)
        m_encoding = declaration->encoding;
    // A refused declaration is read to its end, or until it certainly has none, so that the reader reports its own
    // errors first.
    else if (isTooLong || character == '<' || isEnd)
        m_refused = Refused::XmlDeclaration;
    return !isTooLong;
}

QString XmlWatch::readableDeclaration(const QString &head) const
{
    const bool isEncodingRefused = m_refused == Refused::UnknownEncoding || m_refused == Refused::OtherEncoding;
    return isEncodingRefused ? head.chopped(1) : XmlDeclaration::inUtf8(head);
}

void XmlWatch::refuse(Refused reason)
{
    if (!isRefused())
        m_refused = reason;
}

/// Returns false for the character that must not be read. It has so many UTF-16 units, as far as it has begun.
bool XmlWatch::take(ushort character, int units)
{
    switch (m_state) {
    case State::Text:
        takeInText(character);
        break;
    case State::Reference:
        if (!takeInName(character, units)) {
            m_state = State::Text;
            takeInText(character);
        }
        break;
    case State::TagOpened:
        takeTagOpened(character, units);
        break;
    case State::InTag:
        takeInTag(character, units);
        break;
    case State::InEndTag:
        if (!takeInName(character, units) && (character == '>' || character == '<'))
            m_state = character == '>' ? State::Text : State::TagOpened;
        break;
    case State::DeclarationOpened:
        if (character == '-')
            m_state = State::CommentOpened;
        else if (character == '[')
            beginSection(']', 2); // ]]>
        else
            beginDocumentType();
        break;
    case State::CommentOpened:
        beginSection('-', 2); // -->
        break;
    case State::InTarget:
        if (!takeInName(character, units)) {
            beginSection('?', 1); // ?>
            takeInSection(character);
        }
        break;
    case State::InSection:
        takeInSection(character);
        break;
    case State::InDocumentType:
        takeInDocumentType(character, units);
        break;
    }
    return !isRefused();
}

void XmlWatch::takeInText(ushort character)
{
    m_nameSize = 0;
    if (character == '<')
        m_state = State::TagOpened;
    else if (character == '&')
        m_state = State::Reference;
}

void XmlWatch::takeTagOpened(ushort character, int units)
{
    m_attributes = 0;
    m_quote = 0;
    m_nameSize = 0;
    if (character == '!') {
        m_state = State::DeclarationOpened;
    } else if (character == '?') {
        m_state = State::InTarget;
    } else if (character == '/') {
        m_state = State::InEndTag;
    } else {
        m_state = State::InTag;
        m_mayHaveDocumentType = false;
        takeInName(character, units);
    }
}

void XmlWatch::takeInTag(ushort character, int units)
{
    if (character == '<') {
        m_state = State::TagOpened; // as above
        return;
    }
    const bool isInName = (m_quote == 0 || m_isReference) && takeInName(character, units);
    m_isReference = character == '&' || (m_isReference && isInName);
    if (!isInQuotes(character)) {
        if (character == '>')
            m_state = State::Text;
        else if (character == '=' && ++m_attributes > MostAttributes)
            m_refused = Refused::Attributes;
    }
}

/// Returns false for a character that ends the name.
bool XmlWatch::takeInName(ushort character, int units)
{
    if (endsName(character)) {
        m_nameSize = 0;
        return false;
    }
    m_nameSize += units;
    if (m_nameSize > LongestName)
        refuse(Refused::Name);
    return true;
}

void XmlWatch::beginDocumentType()
{
    if (!m_mayHaveDocumentType)
        refuse(Refused::DocumentType);
    m_mayHaveDocumentType = false;
    m_state = State::InDocumentType;
}

void XmlWatch::takeInDocumentType(ushort character, int units)
{
    if (isInQuotes(character))
        return;
    takeInName(character, units);
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
    case Refused::UnknownEncoding:
        return FailureTexts::unknownEncoding(m_encoding, Encodings::all());
    case Refused::OtherEncoding:
        return FailureTexts::otherEncoding(m_encoding);
    case Refused::WrongBytes:
    case Refused::CutOffBytes:
        return FailureTexts::wrongBytes();
    case Refused::Character:
        return FailureTexts::wrongCharacter();
    case Refused::Attributes:
        return FailureTexts::tooManyAttributes(MostAttributes);
    case Refused::Name:
        return FailureTexts::nameTooLong(LongestName);
    case Refused::DocumentType:
        return FailureTexts::documentTypePlace();
    case Refused::InternalSubset:
        return FailureTexts::internalSubset();
    case Refused::Nothing:
        break;
    }
    return QString();
}

} // namespace REPORTGENERATOR
