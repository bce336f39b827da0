// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "TypeList.h"

namespace JobXml {

// clang-format off
// NOLINTBEGIN(bugprone-macro-parentheses): they are operands of a sum

/// The classes of the model, as Classes.def lists them.
#define JOBXML_CLASS(folder, Class) + ClassTag<Class>()
using Classes = decltype(TypeList<>()
#include "Classes.def"
);

/// The alternatives of a ValueItem, in the order of ChoiceValueItem.
#define JOBXML_CLASS(folder, Class)
#define JOBXML_KIND(folder, Class) + ClassTag<Class>()
using Kinds = decltype(TypeList<>()
#include "Classes.def"
);

// NOLINTEND(bugprone-macro-parentheses)
// clang-format on

} // namespace JobXml
