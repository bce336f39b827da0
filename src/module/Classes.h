// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "module/TypeList.h"

namespace JobXml {

// clang-format off

/// The classes of the model, as Classes.def lists them.
#define JOBXML_CLASS(folder, Class) + ClassTag<Class>()
using Classes = decltype(TypeList<>()
#include "module/Classes.def"
);

/// Those of them among which a ValueItem chooses, in the order of ChoiceValueItem.
#define JOBXML_CLASS(folder, Class)
#define JOBXML_KIND(folder, Class) + ClassTag<Class>()
using Kinds = decltype(TypeList<>()
#include "module/Classes.def"
);

// clang-format on

} // namespace JobXml
