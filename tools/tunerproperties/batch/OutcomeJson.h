// SPDX-License-Identifier: MIT
#pragma once

#include <tunerdocuments/Finding.h>

#include "files/FileName.h"
#include "json/Json.h"

/// Parts of the JSON about files.
namespace OutcomeJson {

/// Adds the name; a name that is not UTF-8 is escaped, and its bytes follow as hexadecimal digits: "file" and
/// "fileBytes".
void insertName(Json &json, const QByteArray &key, const FileName &name);

Json textOrNull(const QString &text);

/// A problem with "path", "line", "column", "message", "value", "choices" and "suggestion".
Json problem(const TunerDocuments::Finding &finding);

/// A problem or a warning, with the path of its member, and with "rule" and "level".
Json finding(const TunerDocuments::Finding &finding);

/// "error" or "warning"
const char *levelOf(const TunerDocuments::Finding &finding);

} // namespace OutcomeJson
