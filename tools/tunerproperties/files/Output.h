// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>

#include "files/Input.h"

namespace Output {

/// Writes the bytes to a file, or to standard output for "-". A file is written completely or stays unchanged. A pipe
/// or a device receives the bytes directly (a terminal as Console::escapedFor() returns them), unless only regular
/// files are allowed. Throws FileFailure.
///
/// No signal ends the program until the file is in its place and `written` has been called for it.
void writeWhole(const FileName &name, const QByteArray &bytes, FileKinds kinds = FileKinds::All,
                const std::function<void()> &written = {});

/// Writes the bytes to the file that the input was read from, as writeWhole() does. A file is replaced only if it is
/// still the one that was read and has not changed since, so that no changes of others are lost. Throws FileFailure,
/// also for pipes and devices.
void replace(const Input &input, const QByteArray &bytes, const std::function<void()> &written = {});

} // namespace Output
