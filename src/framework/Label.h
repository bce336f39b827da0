// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// The text that distinguishes an object from its siblings; null or empty if there is none.
QString identification(const DataObject &object);

/// What people call an object in a path: its name with what distinguishes it from its siblings, or with its position,
/// counted from 1. The index is -1 if the object is not in a list.
QString label(const DataObject &object, int index);

} // namespace JobXml
