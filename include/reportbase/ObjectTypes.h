// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <reportbase/Export.h>

QT_FORWARD_DECLARE_CLASS(QDebug)

namespace REPORTGENERATOR {

/// The kind of report object an IRGObject says it is. A data model that needs kinds of its own adds them here.
enum class ObjectTypes {
    Undefined ///< no kind was given; what the default constructor of IRGObject sets
};

/// Writes a type as C++ spells it: `ObjectTypes::Undefined`.
REPORTBASE_EXPORT QDebug operator<<(QDebug debug, ObjectTypes type);

} // namespace REPORTGENERATOR
