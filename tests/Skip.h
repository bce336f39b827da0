// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

/// Skips a test that this machine or user does not allow. QSKIP accepts further arguments, which it ignores, but clang
/// warns about a call without any.
#define SKIP(reason) QSKIP(reason, )
