// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include <QStringView>

namespace REPORTGENERATOR {

/// The same as `left == right`, without a call for texts of different lengths; names in documents are short, and most
/// comparisons of them are in vain.
inline bool isSameText(QStringView left, QStringView right) noexcept
{
    return left.size() == right.size()
        && (left.isEmpty() // where there may be no address at all
            || std::memcmp(left.utf16(), right.utf16(), std::size_t(left.size()) * sizeof(ushort)) == 0);
}

} // namespace REPORTGENERATOR
