// SPDX-License-Identifier: MIT
#include "Utf8.h"

#include <algorithm>
#include <limits>

#include "text/Ascii.h"

namespace REPORTGENERATOR {

namespace {

constexpr qsizetype pieceSize = 1 << 12; // of a conversion, for which the converter reserves three bytes a character

/// The end of the piece that begins there, not within a surrogate pair.
qsizetype endOfPiece(QStringView text, qsizetype begin)
{
    const qsizetype end = std::min(text.size(), begin + pieceSize);
    return end < text.size() && text[end - 1].isHighSurrogate() ? end - 1 : end;
}

/// The UTF-8 of a piece of a text; null if the piece contains half of a surrogate pair.
QByteArray converted(QStringView piece)
{
    if (isAscii(piece))
        return piece.toLatin1();
    return piece.isValidUtf16() ? piece.toUtf8() : QByteArray();
}

} // namespace

QByteArray toUtf8(QStringView text)
{
    constexpr qint64 longest = std::numeric_limits<int>::max() - 64; // a QByteArray also allocates a header
    qint64 size = 0;
    const auto forEachPiece = [text](auto &&action) {
        for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
            end = endOfPiece(text, begin);
            if (!action(text.mid(begin, end - begin)))
                return false;
        }
        return true;
    };
    const bool isConvertible = forEachPiece([&](QStringView piece) {
        const int pieceSize = isAscii(piece) ? int(piece.size()) : converted(piece).size();
        size += pieceSize;
        return pieceSize > 0 && size <= longest;
    });
    if (!isConvertible)
        return QByteArray();
    QByteArray utf8;
    utf8.reserve(int(size));
    forEachPiece([&](QStringView piece) {
        utf8 += converted(piece);
        return true;
    });
    return utf8;
}

} // namespace REPORTGENERATOR
