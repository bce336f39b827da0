// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>

#include "documents/Input.h"

namespace Output {

/// Writes the bytes to a file, or to standard output for "-". A file is written whole or stays as it was; into a pipe
/// or a device, which holds nothing to keep, the bytes simply go (to a terminal as Console::shownOn() has them), unless
/// only regular files are written. Throws FileFailure.
///
/// No signal ends the program while a file is on its way to its place, nor before `written` has been called for it.
void writeWhole(const FileName &name, const QByteArray &bytes, FileKinds kinds = FileKinds::All,
                const std::function<void()> &written = {});

/// Writes the bytes to where the input was read from, as writeWhole() does. A file is replaced only if it still is the
/// one that was read and has not changed since, so that nobody else's changes are lost. Throws FileFailure.
void replace(const Input &input, const QByteArray &bytes);

} // namespace Output
