// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/Export.h>

namespace JobXml {

/// Registers every class with QMetaType by its name, "JobXml::TunerProperties" and so on, so that objects can be sent
/// through queued signals and created by name. May be called several times, from any thread.
///
/// The library never does so by itself: types cannot be unregistered from Qt, so a program that has called this must
/// keep the library loaded. A QVariant that holds an object registers its class as well. The objects in a QVariant are
/// copies, and share nothing with the original.
JOBXML_EXPORT void RegisterMetaTypes();

} // namespace JobXml
