// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// The first value or flag in which an object differs from what its text reads as, with the objects in it or without
/// them: "MaxFFPDelay: 9223372036854775808 would be read as 0". Null if there is none. Values that are not set do not
/// matter.
QString firstUnlikeRead(const JobXml::DataObject &described, const JobXml::DataObject &read, bool withObjects);

} // namespace TunerDocuments
