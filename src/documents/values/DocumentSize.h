// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

#include <QByteArray>

#include <tunerdocuments/DocumentError.h>

namespace TunerDocuments {

/// Throws a DocumentError for a document in memory of 2 GiB or more, which only Qt 6 can hold: places in documents are
/// counted in `int`.
inline void checkSize(const QByteArray &bytes, const QString &name)
{
    constexpr int largest = std::numeric_limits<int>::max();
    if (bytes.size() > largest)
        throw DocumentError(name + QStringLiteral(": too large: more than %1 bytes").arg(largest));
}

} // namespace TunerDocuments
