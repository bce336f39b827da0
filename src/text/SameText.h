// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include <QStringView>

namespace REPORTGENERATOR {

/// The same as `left == right`, without a call for texts of different lengths; names in documents are short, and most
/// of their comparisons are false.
inline bool isSameText(QStringView left, QStringView right) noexcept
{
    return left.size() == right.size()
        && (left.isEmpty() // which may have no address
            || std::memcmp(left.utf16(), right.utf16(), std::size_t(left.size()) * sizeof(ushort)) == 0);
}

} // namespace REPORTGENERATOR
