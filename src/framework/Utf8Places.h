// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

namespace JobXml {

/// Finds lines and columns in a document. A document may have a problem for every few bytes, in no particular order, so
/// nothing is counted twice but the bytes of a short piece.
class Utf8Places
{
public:
    /// The document must outlive this object.
    explicit Utf8Places(const QByteArray &document) : m_document(document) { }

    /// Line and column, counted from 1, of an offset; columns in UTF-16 units.
    void find(qint64 offset, int &line, int &column);

private:
    struct Place
    {
        int line = 1;
        int column = 1;
    };

    void advance(Place &place, qint64 from, qint64 to) const;

    const QByteArray &m_document;
    QVector<Place> m_pieces; // where each piece begins; as far as they were needed
};

} // namespace JobXml
