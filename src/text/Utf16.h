// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

namespace Utf16 {

/// The code units of a text, where they are. QString::utf16() may copy them first in Qt 6, although it is const, for
/// instance those of a literal: it needs a NUL at the end. Two threads that read the same text would then both change
/// it.
inline const QStringView::storage_type *units(QStringView text) noexcept
{
    return text.utf16();
}

} // namespace Utf16
