// SPDX-License-Identifier: MIT
#include "text/Encoding.h"

#include <algorithm>
#include <string_view>

namespace Encodings {

namespace {

using namespace std::string_view_literals;

constexpr ushort none = 0; // the character of bytes that have none

/// The characters of the bytes 80 to 9F in windows-1252.
constexpr ushort windows1252[] = {
    0x20AC, none,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, none,   0x017D, none,   none,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, none,   0x017E, 0x0178,
};

/// What ISO 8859-15 has in the place of a character of ISO 8859-1.
ushort latin9Character(uchar byte)
{
    switch (byte) {
    case 0xA4:
        return 0x20AC;
    case 0xA6:
        return 0x0160;
    case 0xA8:
        return 0x0161;
    case 0xB4:
        return 0x017D;
    case 0xB8:
        return 0x017E;
    case 0xBC:
        return 0x0152;
    case 0xBD:
        return 0x0153;
    case 0xBE:
        return 0x0178;
    default:
        return byte;
    }
}

/// The character of a byte from 80 on in an encoding of single bytes.
ushort characterOf(Encoding encoding, uchar byte)
{
    switch (encoding) {
    case Encoding::Latin1:
        return byte;
    case Encoding::Latin9:
        return latin9Character(byte);
    case Encoding::Windows1252:
        return byte < 0xA0 ? windows1252[byte - 0x80] : byte;
    default:
        return none;
    }
}

/// The byte from 80 on for a character; 0 if there is none.
uchar byteOf(Encoding encoding, uint character)
{
    for (uint byte = 0x80; byte <= 0xFF; ++byte) {
        if (characterOf(encoding, uchar(byte)) == character)
            return uchar(byte);
    }
    return 0;
}

/// The next character of some bytes.
struct Next
{
    uint character = 0;
    int size = 0; // 0 if it is incomplete or invalid
    bool isInvalid = false;
};

constexpr Next incomplete = {};
constexpr Next invalid = {0, 0, true};

Next nextInUtf8(const uchar *bytes, Size left)
{
    const uchar first = bytes[0];
    if (first < 0x80)
        return {first, 1};
    if (first < 0xC2 || first > 0xF4)
        return invalid;
    const int size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    uint character = first & (0xFFU >> (size + 1));
    for (int i = 1; i < size; ++i) {
        if (i == left)
            return incomplete;
        if ((bytes[i] & 0xC0) != 0x80)
            return invalid;
        character = character << 6 | (bytes[i] & 0x3FU);
        // The second byte decides whether it is longer than necessary, a surrogate or too large.
        const bool isWrong = i == 1
            && ((first == 0xE0 && bytes[1] < 0xA0) || (first == 0xED && bytes[1] > 0x9F)
                || (first == 0xF0 && bytes[1] < 0x90) || (first == 0xF4 && bytes[1] > 0x8F));
        if (isWrong)
            return invalid;
    }
    return {character, size};
}

ushort unitAt(const uchar *bytes, bool isLittleEndian)
{
    return ushort(isLittleEndian ? bytes[0] | bytes[1] << 8 : bytes[0] << 8 | bytes[1]);
}

Next nextInUtf16(const uchar *bytes, Size left, bool isLittleEndian)
{
    if (left < 2)
        return incomplete;
    const ushort first = unitAt(bytes, isLittleEndian);
    if (!QChar::isSurrogate(first))
        return {first, 2};
    if (!QChar::isHighSurrogate(first))
        return invalid;
    if (left < 4)
        return incomplete;
    const ushort second = unitAt(bytes + 2, isLittleEndian);
    return QChar::isLowSurrogate(second) ? Next{QChar::surrogateToUcs4(first, second), 4} : invalid;
}

Next nextInUtf32(const uchar *bytes, Size left, bool isLittleEndian)
{
    if (left < 4)
        return incomplete;
    const uint high = unitAt(isLittleEndian ? bytes + 2 : bytes, isLittleEndian);
    const uint character = high << 16 | unitAt(isLittleEndian ? bytes : bytes + 2, isLittleEndian);
    return character > QChar::LastValidCodePoint || QChar::isSurrogate(character) ? invalid : Next{character, 4};
}

Next next(Encoding encoding, const uchar *bytes, Size left)
{
    switch (encoding) {
    case Encoding::Utf8:
        return nextInUtf8(bytes, left);
    case Encoding::Utf16LittleEndian:
    case Encoding::Utf16BigEndian:
        return nextInUtf16(bytes, left, encoding == Encoding::Utf16LittleEndian);
    case Encoding::Utf32LittleEndian:
    case Encoding::Utf32BigEndian:
        return nextInUtf32(bytes, left, encoding == Encoding::Utf32LittleEndian);
    default:
        break;
    }
    if (bytes[0] < 0x80)
        return {bytes[0], 1};
    const ushort character = characterOf(encoding, bytes[0]);
    return character == none ? invalid : Next{character, 1};
}

/// Calls the action with each character up to the first one that is invalid or incomplete.
template <class Action>
Decoded forEachCharacter(Encoding encoding, const char *bytes, Size size, Action &&action)
{
    const auto *const begin = reinterpret_cast<const uchar *>(bytes);
    Decoded decoded;
    while (decoded.size < size) {
        const Next found = next(encoding, begin + decoded.size, size - decoded.size);
        if (found.size == 0) {
            decoded.isInvalid = found.isInvalid;
            break;
        }
        action(found.character);
        decoded.size += found.size;
    }
    return decoded;
}

void appendUnit(QByteArray &bytes, uint unit, bool isLittleEndian)
{
    const char low = char(unit & 0xFF), high = char(unit >> 8 & 0xFF);
    bytes.append(isLittleEndian ? low : high).append(isLittleEndian ? high : low);
}

void appendUtf32(QByteArray &bytes, uint character, bool isLittleEndian)
{
    const uint low = character & 0xFFFF, high = character >> 16;
    appendUnit(bytes, isLittleEndian ? low : high, isLittleEndian);
    appendUnit(bytes, isLittleEndian ? high : low, isLittleEndian);
}

/// A name without case, '-' and '_', and the encoding; two if the first bytes decide.
struct Name
{
    std::string_view name;
    Encoding encoding;
    Encoding other;
};

constexpr Name names[] = {
    {"utf8"sv, Encoding::Utf8, Encoding::Utf8},
    {"utf16"sv, Encoding::Utf16LittleEndian, Encoding::Utf16BigEndian},
    {"utf16le"sv, Encoding::Utf16LittleEndian, Encoding::Utf16LittleEndian},
    {"utf16be"sv, Encoding::Utf16BigEndian, Encoding::Utf16BigEndian},
    {"utf32"sv, Encoding::Utf32LittleEndian, Encoding::Utf32BigEndian},
    {"utf32le"sv, Encoding::Utf32LittleEndian, Encoding::Utf32LittleEndian},
    {"utf32be"sv, Encoding::Utf32BigEndian, Encoding::Utf32BigEndian},
    {"usascii"sv, Encoding::Ascii, Encoding::Ascii},
    {"ascii"sv, Encoding::Ascii, Encoding::Ascii},
    {"iso88591"sv, Encoding::Latin1, Encoding::Latin1},
    {"latin1"sv, Encoding::Latin1, Encoding::Latin1},
    {"iso885915"sv, Encoding::Latin9, Encoding::Latin9},
    {"latin9"sv, Encoding::Latin9, Encoding::Latin9},
    {"windows1252"sv, Encoding::Windows1252, Encoding::Windows1252},
    {"cp1252"sv, Encoding::Windows1252, Encoding::Windows1252},
};

const Name *find(const QString &name)
{
    QString plain = name.toLower();
    plain.remove(QLatin1Char('-')).remove(QLatin1Char('_'));
    const auto *const found = std::find_if(std::begin(names), std::end(names), [&](const Name &known) {
        return plain == QLatin1String(known.name.data(), int(known.name.size()));
    });
    return found != std::end(names) ? found : nullptr;
}

bool hasSingleBytesForAscii(Encoding encoding)
{
    return encoding == Encoding::Utf8 || encoding >= Encoding::Ascii;
}

} // namespace

std::optional<Encoding> ofFirstBytes(const char *bytes, Size size)
{
    static constexpr struct
    {
        std::string_view begin;
        Encoding encoding;
    } beginnings[] = {
        // Before UTF-16, whose mark is the beginning of one of these.
        {"\x00\x00\xFE\xFF"sv, Encoding::Utf32BigEndian},
        {"\xFF\xFE\x00\x00"sv, Encoding::Utf32LittleEndian},
        {"\x00\x00\x00<"sv, Encoding::Utf32BigEndian},
        {"<\x00\x00\x00"sv, Encoding::Utf32LittleEndian},
        {"\xFE\xFF"sv, Encoding::Utf16BigEndian},
        {"\xFF\xFE"sv, Encoding::Utf16LittleEndian},
        {"\x00<"sv, Encoding::Utf16BigEndian},
        {"<\x00"sv, Encoding::Utf16LittleEndian},
        {"\xEF\xBB\xBF"sv, Encoding::Utf8},
    };
    const std::string_view head(bytes, std::size_t(size));
    for (const auto &beginning : beginnings) {
        if (head.substr(0, beginning.begin.size()) == beginning.begin)
            return beginning.encoding;
    }
    return std::nullopt;
}

bool isKnown(const QString &name)
{
    return find(name) != nullptr;
}

std::optional<Encoding> declared(const QString &name, std::optional<Encoding> ofFirstBytes)
{
    const Name *const known = find(name);
    if (!known)
        return std::nullopt;
    if (!ofFirstBytes && hasSingleBytesForAscii(known->encoding))
        return known->encoding;
    return known->encoding == ofFirstBytes || known->other == ofFirstBytes ? ofFirstBytes : std::nullopt;
}

QString name(Encoding encoding)
{
    switch (encoding) {
    case Encoding::Utf8:
        return QString(QLatin1String("UTF-8"));
    case Encoding::Utf16LittleEndian:
        return QString(QLatin1String("UTF-16LE"));
    case Encoding::Utf16BigEndian:
        return QString(QLatin1String("UTF-16BE"));
    case Encoding::Utf32LittleEndian:
        return QString(QLatin1String("UTF-32LE"));
    case Encoding::Utf32BigEndian:
        return QString(QLatin1String("UTF-32BE"));
    case Encoding::Ascii:
        return QString(QLatin1String("US-ASCII"));
    case Encoding::Latin1:
        return QString(QLatin1String("ISO-8859-1"));
    case Encoding::Latin9:
        return QString(QLatin1String("ISO-8859-15"));
    case Encoding::Windows1252:
        break;
    }
    return QString(QLatin1String("windows-1252"));
}

QString all()
{
    return QString(QLatin1String("UTF-8, UTF-16, UTF-32, US-ASCII, ISO-8859-1, ISO-8859-15 and windows-1252"));
}

Decoded decode(Encoding encoding, const char *bytes, Size size)
{
    QString text;
    Decoded decoded = forEachCharacter(encoding, bytes, size, [&](uint character) {
        if (QChar::requiresSurrogates(character))
            text.append(QChar(QChar::highSurrogate(character))).append(QChar(QChar::lowSurrogate(character)));
        else
            text.append(QChar(ushort(character)));
    });
    decoded.text = text;
    return decoded;
}

Decoded checkUtf8(const char *bytes, Size size)
{
    return forEachCharacter(Encoding::Utf8, bytes, size, [](uint) {});
}

bool canEncode(Encoding encoding, uint character)
{
    const bool hasTable = encoding >= Encoding::Ascii;
    return !hasTable || character < 0x80 || byteOf(encoding, character) != 0;
}

QByteArray encode(Encoding encoding, const QString &text)
{
    if (encoding == Encoding::Utf8)
        return text.toUtf8();
    QByteArray bytes;
    const bool isUtf16 = encoding == Encoding::Utf16LittleEndian || encoding == Encoding::Utf16BigEndian;
    const bool isUtf32 = encoding == Encoding::Utf32LittleEndian || encoding == Encoding::Utf32BigEndian;
    for (auto i = text.cbegin(), end = text.cend(); i != end; ++i) {
        if (isUtf16) {
            appendUnit(bytes, i->unicode(), encoding == Encoding::Utf16LittleEndian);
            continue;
        }
        uint character = i->unicode();
        if (i->isHighSurrogate() && end - i > 1 && (i + 1)->isLowSurrogate()) {
            character = QChar::surrogateToUcs4(*i, *(i + 1));
            ++i;
        }
        if (isUtf32)
            appendUtf32(bytes, character, encoding == Encoding::Utf32LittleEndian);
        else if (character < 0x80)
            bytes.append(char(character));
        else
            bytes.append(canEncode(encoding, character) ? char(byteOf(encoding, character)) : '?');
    }
    return bytes;
}

} // namespace Encodings
