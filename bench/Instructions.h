// SPDX-License-Identifier: MIT
#pragma once

#include "Operations.h"

namespace Bench {

/// Runs each operation once under callgrind's eyes, after a run that has warmed everything up. Every operation leaves
/// a file of callgrind's whose description reads "Trigger: Client Request: OPERATION/SHAPE/NODES".
void countInstructions(const std::vector<Operation> &operations, Sample &sample);

} // namespace Bench
