// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <type_traits>

#include <QStringView>

#include "text/Utf16.h"

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
    qsizetype i = 0;
    for (quint64 several[4]; i < count - 4 * atOnce; i += 4 * atOnce) {
        std::memcpy(several, text + i, sizeof(several));
        all |= several[0] | several[1] | several[2] | several[3];
    }
    quint64 characters = 0;
    for (; i < count - atOnce; i += atOnce) {
        std::memcpy(&characters, text + i, sizeof(characters));
        all |= characters;
    }
    std::memcpy(&characters, text + count - atOnce, sizeof(characters)); // the last, which may overlap those before
    return ((all | characters) & beyond) == 0;
}

inline bool isAscii(QStringView text)
{
    return isAscii(Utf16::units(text), text.size());
}

/// Whether the text contains only characters from blank to tilde, as nearly all texts of documents do.
inline bool isPrintableAscii(QStringView text)
{
    constexpr qsizetype atOnce = qsizetype(sizeof(quint64) / sizeof(char16_t));
    const auto areAll = [](quint64 units) {
        constexpr quint64 each = 0x0001000100010001; // multiplied by a unit, four of them
        const quint64 beyond = (units | (units + each)) & (each * 0xFF80); // DEL is the one before 0x80
        const quint64 notControls = ((units | (each * 0x8000)) - each * ' ') & (each * 0x8000);
        return beyond == 0 && notControls == each * 0x8000;
    };
    const qsizetype count = text.size();
    const auto *const begin = Utf16::units(text);
    if (count < atOnce) {
        for (qsizetype i = 0; i < count; ++i) {
            if (begin[i] < ' ' || begin[i] >= 0x7F)
                return false;
        }
        return true;
    }
    quint64 units = 0;
    for (qsizetype i = 0; i < count - atOnce; i += atOnce) {
        std::memcpy(&units, begin + i, sizeof(units));
        if (!areAll(units))
            return false;
    }
    std::memcpy(&units, begin + count - atOnce, sizeof(units)); // the last, which may overlap those before
    return areAll(units);
}

} // namespace REPORTGENERATOR
