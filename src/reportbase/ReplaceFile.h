// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QByteArray;
class QFileDevice;

namespace REPORTGENERATOR {

/// Saves a file as SaveFile() does: whole or not at all. If there is an `original`, only that very file is replaced.
/// The path is not empty and contains no NUL. Returns the reason why it cannot be saved, or a null string.
QString replaceFile(const QByteArray &path, const QByteArray &content, const QFileDevice *original);

} // namespace REPORTGENERATOR
