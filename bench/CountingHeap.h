// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Counts what all code of a program takes from the heap, in the bytes that it asked for. CountingHeap.cpp defines
/// `malloc` and its relatives, which take the place of all others, and would be felt by a clock.
namespace Bench::CountingHeap {

struct Counts
{
    std::size_t bytes = 0; ///< that are allocated now
    std::size_t blocks = 0;
    std::size_t peak = 0; ///< the most bytes that were allocated at a time
    std::size_t allocations = 0; ///< changes of a block's size included
};

/// Whether the program is built with it.
bool isThere();

/// Starts from zero; blocks that were there before count for nothing, and must not be freed while counting.
void start();
Counts stop();

} // namespace Bench::CountingHeap
