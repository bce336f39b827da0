// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// A place in a text as people count it: from 1. Columns are UTF-16 units, as elsewhere in the libraries; a byte order
/// mark at the beginning has none.
struct TextLocation
{
    int line = 0;
    int column = 0;
};

/// Finds lines and columns in a text. Each search continues at the last one, so the locations of any number of places
/// in ascending order take the time of one pass.
class TextLocator
{
public:
    /// The text is UTF-8, with line feeds at the ends of lines. It must exist as long as the locator.
    explicit TextLocator(const QByteArray &utf8);

    /// The location of the byte at that offset, which is at most the size of the text.
    TextLocation at(int offset);

private:
    void restart();

    const QByteArray &m_utf8;
    int m_offset = 0; // of m_location
    TextLocation m_location;
};
