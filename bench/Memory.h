// SPDX-License-Identifier: MIT
#pragma once

#include "Operations.h"

namespace Bench {

/// Prints a line of JSON for each reader: the heap use of its result, and its peak. Throws in programs that are built
/// without CountingHeap.cpp, which cannot count.
void countMemory(const std::vector<Operation> &operations, const Sample &sample);

} // namespace Bench
