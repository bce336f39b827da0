// SPDX-License-Identifier: MIT
#include "framework/Utf8Places.h"

#include "framework/Utf8.h"

namespace JobXml {

namespace {

constexpr int pieceSize = 1024;

} // namespace

void Utf8Places::find(qint64 offset, int &line, int &column)
{
    const auto piece = Size(offset / pieceSize);
    if (m_pieces.isEmpty())
        m_pieces.append(Place());
    while (m_pieces.size() <= piece) {
        Place next = m_pieces.constLast();
        const qint64 begin = (m_pieces.size() - 1) * qint64(pieceSize);
        advance(next, begin, begin + pieceSize);
        m_pieces.append(next);
    }
    Place place = m_pieces.at(piece);
    advance(place, piece * qint64(pieceSize), offset);
    line = place.line;
    column = place.column;
}

/// A carriage return before a line feed does not end a line. The byte order mark does not count.
void Utf8Places::advance(Place &place, qint64 from, qint64 to) const
{
    const char *const bytes = m_document.constData();
    for (qint64 i = from; i < to; ++i) {
        const auto byte = uchar(bytes[i]);
        if (byte == '\n' || (byte == '\r' && bytes[i + 1] != '\n')) {
            ++place.line;
            place.column = 1;
        } else if (byte >= 0xF0) {
            place.column += 2; // a surrogate pair
        } else if (byte < 0x80 || byte >= 0xC0) {
            ++place.column;
        }
    }
    if (from == 0 && m_document.startsWith("\xEF\xBB\xBF") && to >= 3 && place.line == 1)
        --place.column;
}

} // namespace JobXml
