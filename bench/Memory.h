// SPDX-License-Identifier: MIT
#pragma once

#include "Operations.h"

namespace Bench {

/// Prints a line of JSON for each reader: what it leaves on the heap, and what it takes meanwhile. Only in the program
/// that is built with CountingHeap.cpp; the others have nothing to count with, and throw.
void countMemory(const std::vector<Operation> &operations, const Sample &sample);

} // namespace Bench
