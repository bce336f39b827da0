// SPDX-License-Identifier: MIT
#include "framework/Utf8.h"

#include <cstring>

#include "framework/Text.h"
#include "text/Ascii.h"
#include "text/LongestText.h"

namespace JobXml {

QString utf8ToString(const char *utf8, Size size)
{
    static constexpr char mark[] = "\xEF\xBB\xBF";
    if (size == 0)
        return emptyText;
    REPORTGENERATOR::lengthOfText(size);
    if (REPORTGENERATOR::isAscii(utf8, size))
        return QString::fromLatin1(utf8, size);
    const QString text = QString::fromUtf8(utf8, size);
    const bool isMarked = size >= 3 && std::memcmp(utf8, mark, 3) == 0;
    return isMarked ? QChar(QChar::ByteOrderMark) + text : text;
}

} // namespace JobXml
