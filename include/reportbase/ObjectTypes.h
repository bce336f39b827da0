// SPDX-License-Identifier: MIT
#pragma once

namespace REPORTGENERATOR {

/// The kind of report object an IRGObject says it is. A data model that needs kinds of its own adds them here.
enum class ObjectTypes {
    Undefined ///< no kind was given; what the default constructor of IRGObject sets
};

} // namespace REPORTGENERATOR
