// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "text/Size.h"

namespace JobXml {

using REPORTGENERATOR::Size;

/// QString::fromUtf8() with a byte order mark at the start as part of the text, which the converter drops. Never null.
QString utf8ToString(const char *utf8, Size size);

} // namespace JobXml
