// SPDX-License-Identifier: MIT
#include "text/TextLocation.h"

namespace {

/// How many UTF-16 units the character has that begins with this byte; 0 within a character.
int unitsOf(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x80 && code < 0xC0)
        return 0;
    return code >= 0xF0 ? 2 : 1;
}

} // namespace

TextLocator::TextLocator(const QByteArray &utf8) : m_utf8(utf8)
{
    restart();
}

TextLocation TextLocator::at(int offset)
{
    if (offset < m_offset)
        restart();
    for (; m_offset < offset; ++m_offset) {
        const char byte = m_utf8.at(m_offset);
        if (byte == '\n')
            m_location = {m_location.line + 1, 1};
        else
            m_location.column += unitsOf(byte);
    }
    return m_location;
}

void TextLocator::restart()
{
    m_offset = m_utf8.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    m_location = {1, 1};
}
