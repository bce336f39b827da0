// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/BandwidthSelection.h>
#include <jobxml/Component.h>
#include <jobxml/Node.h>
#include <jobxml/StartupModes.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/ValueItem.h>

/// Sets the members of a new object of any class, by its public setters, as the seed determines. An object that
/// validates becomes complete; in one that does not, some members are missing, null, empty or reset.
void build(JobXml::DataObject &object, const QByteArray &seed);
