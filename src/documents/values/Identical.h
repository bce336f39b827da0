// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// Whether two objects of one class have the same values, to the last bit, flags and choices, and lists the same items
/// in the same order. Much faster than finding the differences.
bool areIdentical(const JobXml::DataObject &first, const JobXml::DataObject &second);

} // namespace TunerDocuments
