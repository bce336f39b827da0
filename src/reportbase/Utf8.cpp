// SPDX-License-Identifier: MIT
#include "Utf8.h"

#include <algorithm>
#include <limits>

#include "text/Ascii.h"
#include "text/Size.h"

namespace REPORTGENERATOR {

namespace {

constexpr qsizetype pieceSize = 1 << 12; // of a conversion, for which the converter reserves three bytes a character

/// The end of the piece that begins there, not within a surrogate pair.
qsizetype endOfPiece(QStringView text, qsizetype begin)
{
    const qsizetype end = std::min(text.size(), begin + pieceSize);
    return end < text.size() && text[end - 1].isHighSurrogate() ? end - 1 : end;
}

/// The size of the UTF-8 of a piece; 0 if the piece contains half of a surrogate pair.
qsizetype utf8Size(QStringView piece)
{
    if (isAscii(piece))
        return piece.size();
    return piece.isValidUtf16() ? piece.toUtf8().size() : 0;
}

/// Calls the action for each piece of the text, as long as it returns true; returns whether it always did.
template <class Action>
bool forEachPiece(QStringView text, Action &&action)
{
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        end = endOfPiece(text, begin);
        if (!action(text.mid(begin, end - begin)))
            return false;
    }
    return true;
}

} // namespace

QByteArray toUtf8(QStringView text)
{
    constexpr qint64 longest =
        std::numeric_limits<int>::max() - 64; // no reader takes more; Qt 5 also allocates a header
    qint64 size = 0;
    const bool isConvertible = forEachPiece(text, [&](QStringView piece) {
        const qsizetype more = utf8Size(piece);
        size += more;
        return more > 0 && size <= longest;
    });
    if (!isConvertible)
        return QByteArray();
    QByteArray utf8;
    utf8.reserve(Size(size));
    forEachPiece(text, [&](QStringView piece) {
        utf8 += isAscii(piece) ? piece.toLatin1() : piece.toUtf8();
        return true;
    });
    return utf8;
}

qint64 sizeAsUtf8(QStringView text)
{
    qint64 size = 0;
    forEachPiece(text, [&](QStringView piece) {
        size += isAscii(piece) ? piece.size() : qsizetype(piece.toUtf8().size());
        return true;
    });
    return size;
}

} // namespace REPORTGENERATOR
