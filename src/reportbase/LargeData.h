// SPDX-License-Identifier: MIT
#pragma once

#include <reportbase/ReadLimits.h>

namespace REPORTGENERATOR {

/// More bytes than this may contain a text that no QString can hold, however much memory there is.
constexpr qint64 LongestText = ReadLimits::LargestPossible / 2;

/// For handlers of std::bad_alloc that was thrown while `size` bytes were read: only large data are the cause;
/// otherwise the caller's memory has run out.
inline void rethrowUnlessLarge(qint64 size)
{
    if (size <= LongestText)
        throw;
}

} // namespace REPORTGENERATOR
