// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace REPORTGENERATOR {

/// Calls the system until no signal interrupts it.
template <class Call>
auto uninterrupted(Call &&call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Owns a file descriptor, if it has one.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) { }
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) { }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        const int error = errno; // the caller may still have to report it
        if (m_number >= 0)
            close(m_number);
        errno = error;
    }

    explicit operator bool() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number = -1;
};

} // namespace REPORTGENERATOR
