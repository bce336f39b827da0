// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "console/Console.h"

/// Standard output, written in large pieces, so that an output of any size takes little memory and few system calls.
class BufferedOutput
{
public:
    /// Colors are kept on a terminal if the bytes are escaped already, see Console::writeEscaped().
    explicit BufferedOutput(bool isEscaped = false) : m_isEscaped(isEscaped) { }

    /// Throws FileFailure if standard output cannot be written.
    void write(const QByteArray &bytes)
    {
        m_buffer += bytes;
        if (m_buffer.size() >= mostBytes)
            flush();
    }

    /// To be called at the end: what is left is not written otherwise.
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
