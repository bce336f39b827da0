// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace Bench {

/// Reads all tokens of a document by Qt's stream reader and keeps nothing: what XML costs before there is a model.
/// Returns the number of tokens.
int walkTokens(const QByteArray &xml);

} // namespace Bench
