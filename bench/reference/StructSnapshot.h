// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "PlainStructs.h"

namespace Bench {

/// The untagged snapshot as a hand-written program makes it: each value through QDataStream, one after the other.
QByteArray writeSnapshot(const PlainDocument &document);
PlainDocument readSnapshot(const QByteArray &snapshot);

} // namespace Bench
