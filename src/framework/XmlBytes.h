// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <QtGlobal>

namespace JobXml {

/// The classes of the bytes of an XML document in UTF-8.
namespace XmlBytes {

enum Class : quint16 {
    Blank = 1 << 0,
    BeginsName = 1 << 1,
    InName = 1 << 2, ///< also at its begin
    PlainInText = 1 << 3, ///< ASCII that needs no second look in the text of an element
    PlainInDoubleQuotes = 1 << 4,
    PlainInSingleQuotes = 1 << 5,
    Character = 1 << 6, ///< ASCII that a document may contain at all
    // What readers return as other characters:
    Reference = 1 << 7, ///< its '&'
    CarriageReturn = 1 << 8,
    OtherBlank = 1 << 9, ///< a line feed or a tabulator, which becomes a blank in an attribute
};

constexpr bool isIn(const char *set, int byte)
{
    for (; *set != '\0'; ++set) {
        if (*set == byte)
            return true;
    }
    return false;
}

constexpr quint16 classesOf(int byte)
{
    int classes = 0;
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
    const bool isCharacter = (byte >= ' ' && byte < 0x80) || isIn("\t\n\r", byte);
    if (isIn(" \t\n\r", byte))
        classes |= Blank;
    if (isLetter)
        classes |= BeginsName | InName;
    if ((byte >= '0' && byte <= '9') || isIn(".-", byte))
        classes |= InName;
    if (isCharacter)
        classes |= Character;
    if (isCharacter && !isIn("<&]", byte))
        classes |= PlainInText;
    if (isCharacter && !isIn("<&\"", byte))
        classes |= PlainInDoubleQuotes;
    if (isCharacter && !isIn("<&'", byte))
        classes |= PlainInSingleQuotes;
    if (byte == '&')
        classes |= Reference;
    if (byte == '\r')
        classes |= CarriageReturn;
    if (isIn("\t\n", byte))
        classes |= OtherBlank;
    return quint16(classes);
}

constexpr auto classes = [] {
    std::array<quint16, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        table[byte] = classesOf(int(byte));
    return table;
}();

inline bool is(char byte, int anyOf)
{
    return (classes[uchar(byte)] & anyOf) != 0;
}

/// The size in bytes of the character beyond ASCII at the beginning of the text, which ends with a NUL; 0 if it is
/// encoded incorrectly, or U+FFFE or U+FFFF.
inline int sizeBeyondAscii(const char *utf8)
{
    const auto byte = [utf8](int index) { return unsigned(uchar(utf8[index])); };
    const auto continues = [&](int index) { return (byte(index) & 0xC0) == 0x80; };
    const unsigned first = byte(0);
    if (first < 0xC2 || first > 0xF4 || !continues(1))
        return 0;
    if (first < 0xE0)
        return 2;
    if (!continues(2))
        return 0;
    if (first < 0xF0) {
        const unsigned unit = (first & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
        const bool isSurrogate = unit >= 0xD800 && unit <= 0xDFFF;
        return unit < 0x800 || isSurrogate || unit >= 0xFFFE ? 0 : 3;
    }
    const unsigned plane = (first & 0x07) << 2 | (byte(1) & 0x30) >> 4;
    return continues(3) && plane >= 1 && plane <= 16 ? 4 : 0;
}

/// Reads the character reference that begins with the '&' at the beginning of the text, which ends with a NUL. Returns
/// the place after it; null if it is not a reference to a character that XML can carry.
inline const char *readCharacterReference(const char *utf8, quint32 &character)
{
    constexpr quint32 most = 0x10FFFF;
    const char *at = utf8 + 2;
    const bool isHexadecimal = *at == 'x';
    const unsigned base = isHexadecimal ? 16 : 10;
    if (isHexadecimal)
        ++at;
    const char *const digits = at;
    character = 0;
    for (; *at != ';'; ++at) {
        const char lower = char(*at | 0x20);
        const bool isLetter = isHexadecimal && lower >= 'a' && lower <= 'f';
        if (!isLetter && (*at < '0' || *at > '9'))
            return nullptr;
        character = character * base + unsigned(isLetter ? lower - 'a' + 10 : *at - '0');
        if (character > most)
            return nullptr;
    }
    const bool isCharacter = character >= 0x20
        ? character < 0xD800 || (character >= 0xE000 && character < 0xFFFE) || character >= 0x10000
        : isIn("\t\n\r", int(character)) && character != 0;
    return isCharacter && at != digits ? at + 1 : nullptr;
}

} // namespace XmlBytes
} // namespace JobXml
