// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Counts the heap use of all code of a program, in the bytes that it has requested. CountingHeap.cpp defines `malloc`
/// and its relatives, which replace all others and would distort times.
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

/// Starts from zero; blocks that were allocated before are not counted, and must not be freed while counting.
void start();
Counts stop();

} // namespace Bench::CountingHeap
