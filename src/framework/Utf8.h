// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace JobXml {

/// QString::fromUtf8() with a byte order mark at the start as part of the text, which the converter drops. Never null.
QString utf8ToString(const char *utf8, int size);

} // namespace JobXml
