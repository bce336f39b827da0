// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include "text/Ascii.h"
#include "text/Size.h"

namespace REPORTGENERATOR {

/// The index of the first character that XML cannot represent, and QXmlStreamWriter drops or replaces; -1 if there is
/// none. These are U+0000 to U+001F except TAB, LF and CR, U+FFFE, U+FFFF and halves of surrogate pairs.
inline Size firstNotForXml(QStringView text)
{
    if (isPrintableAscii(text))
        return -1;
    const auto size = Size(text.size());
    for (Size i = 0; i < size; ++i) {
        const ushort unit = text[i].unicode();
        if (unit >= 0x20 && unit < 0xD800)
            continue;
        if (unit < 0x20) {
            if (unit != '\t' && unit != '\n' && unit != '\r')
                return i;
        } else if (QChar::isHighSurrogate(unit) && i + 1 < size && text[i + 1].isLowSurrogate()) {
            ++i;
        } else if (QChar::isSurrogate(unit) || unit >= 0xFFFE) {
            return i;
        }
    }
    return -1;
}

} // namespace REPORTGENERATOR
