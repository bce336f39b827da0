// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

namespace TunerDocuments {

/// Which items of a list stay where they are while the others are moved: as many as possible. `positions` are those of
/// the items in the other order, below `end`; -1 for an item that is only in one of them, and does not stay.
QVector<bool> stayingItems(const QVector<int> &positions, int end);

} // namespace TunerDocuments
