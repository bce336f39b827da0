// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <type_traits>

#include <QStringView>

namespace REPORTGENERATOR {

/// Whether the text contains only ASCII characters, which are one byte each, in UTF-8, or two, in UTF-16.
template <class Character>
bool isAscii(const Character *text, qsizetype count)
{
    static_assert(sizeof(Character) == 1 || sizeof(Character) == 2);
    constexpr qsizetype atOnce = qsizetype(sizeof(quint64) / sizeof(Character));
    constexpr quint64 beyond = sizeof(Character) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    quint64 all = 0;
    if (count < atOnce) {
        for (qsizetype i = 0; i < count; ++i)
            all |= std::make_unsigned_t<Character>(text[i]);
        return all < 0x80;
    }
    quint64 characters = 0;
    for (qsizetype i = 0; i < count - atOnce; i += atOnce) {
        std::memcpy(&characters, text + i, sizeof(characters));
        all |= characters;
    }
    std::memcpy(&characters, text + count - atOnce, sizeof(characters)); // the last, which may overlap those before
    return ((all | characters) & beyond) == 0;
}

inline bool isAscii(QStringView text)
{
    return isAscii(text.utf16(), text.size());
}

} // namespace REPORTGENERATOR
