// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include <QByteArray>

#include <sys/mman.h>
#include <unistd.h>

/// A copy of bytes at the end of readable memory: reading the byte after them ends the program, in every build.
class GuardedBytes
{
public:
    explicit GuardedBytes(const QByteArray &bytes)
        : m_pageSize(std::size_t(sysconf(_SC_PAGESIZE))),
          m_readable((std::size_t(bytes.size()) + m_pageSize - 1) / m_pageSize * m_pageSize),
          m_memory(static_cast<char *>(
              mmap(nullptr, m_readable + m_pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        if (m_memory == MAP_FAILED || mprotect(m_memory + m_readable, m_pageSize, PROT_NONE) != 0)
            qFatal("no memory can be protected");
        m_end = m_memory + m_readable;
        std::memcpy(m_end - bytes.size(), bytes.constData(), std::size_t(bytes.size()));
    }
    GuardedBytes(const GuardedBytes &) = delete;
    GuardedBytes &operator=(const GuardedBytes &) = delete;
    ~GuardedBytes() { munmap(m_memory, m_readable + m_pageSize); }

    /// The last bytes, as raw data without a NUL after them.
    QByteArray last(int size) const { return QByteArray::fromRawData(m_end - size, size); }

private:
    const std::size_t m_pageSize;
    const std::size_t m_readable;
    char *const m_memory;
    char *m_end = nullptr;
};
