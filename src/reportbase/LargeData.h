// SPDX-License-Identifier: MIT
#pragma once

#include <reportbase/ReadLimits.h>

#include "text/LongestText.h"

namespace REPORTGENERATOR {

static_assert(LongestText == ReadLimits::LargestPossible / 2); // both are what Qt 5 can hold

/// For handlers of std::bad_alloc that was thrown while `size` bytes were read: only data that may contain a longer
/// text are the cause; otherwise the caller's memory has run out.
inline void rethrowUnlessLarge(qint64 size)
{
    if (size <= LongestText)
        throw;
}

} // namespace REPORTGENERATOR
