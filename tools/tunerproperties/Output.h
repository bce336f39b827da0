// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace Output {

/// Writes the bytes to a file, or to standard output for "-". A file is written whole or stays as it was; into a pipe
/// or a device, which holds nothing to keep, the bytes simply go. Throws FileFailure.
void writeWhole(const QString &name, const QByteArray &bytes);

} // namespace Output
