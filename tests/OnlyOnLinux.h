// SPDX-License-Identifier: MIT
#pragma once

#include "Skip.h"

/// Begins a test of what the library or the tool promises on Linux alone: with TUNERPROPERTIES_PORTABLE, it is skipped.
#ifdef TP_PORTABLE
#define ONLY_ON_LINUX(reason) SKIP("only on Linux: " reason)
#else
#define ONLY_ON_LINUX(reason)
#endif
