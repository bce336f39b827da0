// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace Bench {

/// Reads all tokens of a document with Qt's stream reader and stores nothing: what XML costs without a model. Returns
/// the number of tokens.
int walkTokens(const QByteArray &xml);

} // namespace Bench
