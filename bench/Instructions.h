// SPDX-License-Identifier: MIT
#pragma once

#include "Operations.h"

namespace Bench {

/// Runs each operation once under callgrind, after a warm-up run. For every operation, callgrind writes a file with the
/// description "Trigger: Client Request: OPERATION/SHAPE/NODES".
void countInstructions(const std::vector<Operation> &operations, Sample &sample);

} // namespace Bench
