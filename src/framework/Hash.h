// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// The hash of an object's set members, which are the ones that equality compares. Only for classes that compare every
/// member by the flags of both objects.
HashValue hashOf(const DataObject &object, HashValue seed);

} // namespace JobXml
