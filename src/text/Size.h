// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace REPORTGENERATOR {

/// The type of sizes and positions in Qt's texts, bytes and lists: int in Qt 5, which ends at 2 GiB, qsizetype in Qt 6.
using Size = decltype(QString().size());

} // namespace REPORTGENERATOR
