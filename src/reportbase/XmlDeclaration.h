// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>

#include "text/Size.h"

namespace REPORTGENERATOR {

/// An XML declaration: version, encoding and standalone, each once at most, and no references, which readers would
/// resolve.
struct XmlDeclaration
{
    /// Reads a declaration from "<?xml" to "?>"; no value if it has anything else.
    static std::optional<XmlDeclaration> read(const QString &text);

    /// The declaration with UTF-8 in the place of its encoding. Everything that follows the name stays in its column.
    static QString inUtf8(const QString &text);

    /// Whether an encoding may have this name. The reader refuses others in its own words.
    static bool isEncodingName(const QString &name);

    QString encoding; ///< null if it names none
    Size encodingBegin = 0; ///< the index of its first character
};

} // namespace REPORTGENERATOR
