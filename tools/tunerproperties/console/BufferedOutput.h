// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "console/Console.h"

/// Standard output, written in large pieces, so that output of any size needs little memory and few system calls.
class BufferedOutput
{
public:
    /// Pass true if the bytes are already escaped; colors are then kept on a terminal, see Console::writeEscaped().
    explicit BufferedOutput(bool isEscaped = false) : m_isEscaped(isEscaped) { }

    /// Throws FileFailure if standard output cannot be written.
    void write(const QByteArray &bytes)
    {
        m_buffer += bytes;
        if (m_buffer.size() >= mostBytes)
            flush();
    }

    /// Writes what is left. Call it at the end; the destructor does not.
    void flush()
    {
        m_isEscaped ? Console::writeEscaped(m_buffer) : Console::write(m_buffer);
        m_buffer.clear();
    }

private:
    static constexpr int mostBytes = 1 << 16;

    const bool m_isEscaped;
    QByteArray m_buffer;
};
