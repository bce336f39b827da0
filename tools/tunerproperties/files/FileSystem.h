// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "files/FileName.h"

/// What the system says about a name, and what can only be written to without replacing it.
namespace FileSystem {

bool exists(const FileName &name);

/// Whether the file exists and is neither a regular file nor a folder.
bool isPipeOrDevice(const FileName &name);

/// Writes into a pipe or a device, such as a terminal; returns the error, or a null string. Atomic writing would
/// replace it with a file.
QString writeInto(const FileName &name, const QByteArray &bytes);

} // namespace FileSystem
