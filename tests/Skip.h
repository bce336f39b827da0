// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

/// Skips a test that this machine or user does not allow. QSKIP ignores further arguments, but clang warns if there are
/// none.
#define SKIP(reason) QSKIP(reason, )
