// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringView>

namespace REPORTGENERATOR {

/// The UTF-8 of a text, in exactly as much memory as it takes. Null if the text is empty or contains half of a
/// surrogate pair, or if its UTF-8 is too long for a QByteArray.
QByteArray toUtf8(QStringView text);

/// The size of QString::toUtf8().
qint64 sizeAsUtf8(QStringView text);

} // namespace REPORTGENERATOR
