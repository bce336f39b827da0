// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "PlainStructs.h"

namespace Bench {

/// The tagged representation as a hand-written program makes it: each tag, length and value through QDataStream on a
/// QBuffer, each length as a placeholder that is patched once the payload is there.
QByteArray writeRecords(const PlainDocument &document);

/// And back: each tag and length through QDataStream, unknown records skipped.
/// Throws std::runtime_error if the lengths do not add up.
PlainDocument readRecords(const QByteArray &representation);

} // namespace Bench
