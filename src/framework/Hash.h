// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// The hash of an object by its set members, which are what equality looks at. Only for classes that compare every
/// member by both flags.
uint hashOf(const DataObject &object, uint seed);

} // namespace JobXml
