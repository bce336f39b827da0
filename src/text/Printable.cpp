// SPDX-License-Identifier: MIT
#include "text/Printable.h"

#include <algorithm>
#include <iterator>

#include <QChar>

#include "text/Ascii.h"
#include "text/Size.h"

namespace Printable {

using REPORTGENERATOR::Size;

namespace {

/// Whether Unicode declares the character ignorable although its category is printable.
bool isIgnorable(uint character)
{
    struct Range
    {
        uint first;
        uint last;
    };
    static constexpr Range ranges[] = {
        {0x034F, 0x034F}, {0x115F, 0x1160}, {0x17B4, 0x17B5}, {0x180B, 0x180F},
        {0x3164, 0x3164}, {0xFE00, 0xFE0F}, {0xFFA0, 0xFFA0}, {0xE0000, 0xE0FFF},
    };
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [&](const Range &range) { return character >= range.first && character <= range.last; });
}

QString unitEscape(ushort unit)
{
    return QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0'));
}

QString escape(uint character)
{
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    return QChar::requiresSurrogates(character)
        ? unitEscape(QChar::highSurrogate(character)) + unitEscape(QChar::lowSurrogate(character))
        : unitEscape(ushort(character));
}

QByteArray byteEscape(char byte)
{
    return "\\x" + QByteArray(1, byte).toHex();
}

struct Utf8Character
{
    uint code = 0;
    int size = 0; ///< 0 if the first byte does not begin a character
};

/// The character at the start of the bytes.
Utf8Character characterAt(const char *bytes, Size size)
{
    const auto byte = [&](int index) { return uint(static_cast<unsigned char>(bytes[index])); };
    if (byte(0) < 0x80)
        return {byte(0), 1};
    const int length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
    if (byte(0) < 0xC2 || byte(0) > 0xF4 || length > size)
        return {};
    uint code = byte(0) & (0xFFU >> (length + 1));
    for (int i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {};
        code = (code << 6) | (byte(i) & 0x3F);
    }
    const bool isLongerThanNeeded = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    return isLongerThanNeeded || QChar::isSurrogate(code) || code > QChar::LastValidCodePoint
        ? Utf8Character{}
        : Utf8Character{code, length};
}

} // namespace

bool isPrintable(uint character)
{
    if (character < 0x7F)
        return character >= ' ';
    return QChar::isPrint(character) && character != QChar::LineSeparator && character != QChar::ParagraphSeparator
        && !isIgnorable(character);
}

namespace {

QString escapedText(const QString &text, bool quotes)
{
    const bool isPlain = REPORTGENERATOR::isPrintableAscii(text)
        && !(quotes && (text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\\'))));
    if (isPlain)
        return text;
    QString result;
    result.reserve(text.size());
    for (Size i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(unit, text[i + 1]) : unit.unicode();
        if (quotes && (character == '"' || character == '\\'))
            result += QLatin1Char('\\');
        if (isPrintable(character))
            result.append(text.constData() + i, isPair ? 2 : 1);
        else
            result += escape(character);
        i += isPair ? 1 : 0;
    }
    return result;
}

} // namespace

QString onOneLine(const QString &text)
{
    return escapedText(text, false);
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + escapedText(text, true) + QLatin1Char('"');
}

std::string withoutNull(const QString &text)
{
    return QString(text).replace(QChar(0), QStringLiteral("\\u0000")).toStdString();
}

QByteArray escaped(const QByteArray &utf8)
{
    const auto isPlain = [](char byte) { return (byte >= ' ' && byte < 0x7F) || byte == '\n' || byte == '\t'; };
    const char *const end = utf8.constData() + utf8.size();
    const char *at = std::find_if_not(utf8.constData(), end, isPlain);
    if (at == end)
        return utf8;
    QByteArray result(utf8.constData(), Size(at - utf8.constData()));
    while (at != end) {
        const Utf8Character character = characterAt(at, Size(end - at));
        if (character.size == 0)
            result += byteEscape(*at);
        else if (isPlain(*at) || isPrintable(character.code))
            result.append(at, character.size);
        else
            result += escape(character.code).toLatin1();
        at += std::max(character.size, 1);
    }
    return result;
}

QString escapedName(const QByteArray &bytes)
{
    QString result;
    for (Size i = 0; i < bytes.size();) {
        const Utf8Character character = characterAt(bytes.constData() + i, bytes.size() - i);
        if (character.size == 0)
            result += QLatin1String(byteEscape(bytes[i]));
        else if (character.code == '\\')
            result += QStringLiteral("\\\\");
        else if (isPrintable(character.code))
            result += QString::fromUtf8(bytes.constData() + i, character.size);
        else
            result += escape(character.code);
        i += std::max(character.size, 1);
    }
    return result;
}

bool isUtf8(const QByteArray &bytes)
{
    constexpr Size most = 256; // bytes that are looked at again if one of them is not ASCII
    for (Size i = 0; i < bytes.size();) {
        const Size end = i + std::min(bytes.size() - i, most);
        if (REPORTGENERATOR::isAscii(bytes.constData() + i, end - i))
            i = end;
        while (i < end) {
            const int size = characterAt(bytes.constData() + i, bytes.size() - i).size;
            if (size == 0)
                return false;
            i += size;
        }
    }
    return true;
}

std::optional<QString> decoded(const QByteArray &utf8)
{
    if (!isUtf8(utf8))
        return {};
    // Qt drops a byte order mark at the beginning, and ends a QByteArray at its first NUL.
    const QByteArray afterLetter = 'x' + utf8;
    return QString::fromUtf8(afterLetter.constData(), afterLetter.size()).mid(1);
}

} // namespace Printable
