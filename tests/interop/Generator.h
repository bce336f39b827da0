// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/BandwidthSelection.h>
#include <jobxml/Component.h>
#include <jobxml/Node.h>
#include <jobxml/StartupModes.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/ValueItem.h>

/// Fills a new object, of any class, through its public setters with what follows from the seed. An object that
/// validates becomes whole; in one that does not, members are missing, null, empty or reset here and there.
void build(JobXml::DataObject &object, const QByteArray &seed);
