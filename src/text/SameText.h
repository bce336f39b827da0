// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include <QStringView>

namespace REPORTGENERATOR {

/// Equivalent to `left == right`, but without a function call for texts of different lengths: names in documents are
/// short, and most comparisons are false.
inline bool isSameText(QStringView left, QStringView right) noexcept
{
    return left.size() == right.size()
        && (left.isEmpty() // its pointer may be null
            || std::memcmp(left.data(), right.data(), std::size_t(left.size()) * sizeof(QChar)) == 0);
}

} // namespace REPORTGENERATOR
