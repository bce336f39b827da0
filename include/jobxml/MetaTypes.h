// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/Export.h>

namespace JobXml {

/// Registers every class with QMetaType by its name, "JobXml::TunerProperties" and so on, so that objects can travel
/// through queued signals and be made by name. May be called several times, from any thread.
///
/// The library never does so by itself: what is registered with Qt cannot be taken back, so a program that has called
/// this must keep the library loaded. A QVariant that holds an object registers its class as well. The objects in a
/// QVariant are copies, and share nothing with the original.
JOBXML_EXPORT void RegisterMetaTypes();

} // namespace JobXml
