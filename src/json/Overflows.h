// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "text/Size.h"

/// Numbers in JSON that are too large for a double. The parser gives up at the first one, although the rest of the text
/// can be read.
namespace Overflows {

/// The text with a smaller number of the same size in place of each of them.
QByteArray replaced(const QByteArray &text);

/// The spelling that a message of the parser about the result should quote: a token that ends at that offset in the
/// original text, in which the parser shows control characters as "<U+000A>".
QByteArray originalToken(QByteArray token, const QByteArray &original, REPORTGENERATOR::Size end);

} // namespace Overflows
