// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <tunerdocuments/Finding.h>

#include "batch/JsonLine.h"
#include "files/FileName.h"

/// Parts of the JSON about files.
namespace OutcomeJson {

/// Adds the name; a name that is not UTF-8 is escaped, and its bytes follow as hexadecimal digits: "file" and
/// "fileBytes".
void addName(JsonLine &line, const QByteArray &key, const FileName &name);

/// Adds why the file cannot be read or written, or null.
void addError(JsonLine &line, const QString &error);

/// Adds a list of problems and warnings.
void addFindings(JsonLine &line, const QVector<TunerDocuments::Finding> &findings);

} // namespace OutcomeJson
