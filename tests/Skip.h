// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

/// Leaves out what this machine or user does not allow. QSKIP takes further arguments, which it ignores, but clang
/// warns of a call without any.
#define SKIP(reason) QSKIP(reason, )
