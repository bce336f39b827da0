// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <reportbase/Export.h>

QT_FORWARD_DECLARE_CLASS(QDebug)

namespace REPORTGENERATOR {

/// The kind of a report object. A data model that needs kinds of its own adds them here.
enum class ObjectTypes {
    Undefined ///< no kind; set by the default constructor of IRGObject
};

/// Writes a type as spelled in C++: `ObjectTypes::Undefined`.
REPORTBASE_EXPORT QDebug operator<<(QDebug debug, ObjectTypes type);

} // namespace REPORTGENERATOR
