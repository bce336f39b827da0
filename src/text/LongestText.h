// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include "text/Size.h"

namespace REPORTGENERATOR {

/// The most characters that a text of a document has, whatever Qt there is: half of ReadLimits::LargestPossible, 115
/// less than a QString of Qt 5 can hold.
constexpr qint64 LongestText = 1073741696;

/// The length, for a text that is about to be made. Throws std::bad_alloc, as a QString of Qt 5 does, if it is too
/// long.
inline Size lengthOfText(Size length)
{
    if (length > LongestText)
        throw std::bad_alloc();
    return length;
}

} // namespace REPORTGENERATOR
