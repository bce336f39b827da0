// SPDX-License-Identifier: MIT
#pragma once

#include "html/PageFindings.h"

/// Adds warnings about values that contradict their range or their options, of which at most `most` are listed. Members
/// are recognized by the shape of the object: value, min and max; value, index and a list; a text and a list.
void addValueWarnings(const JobXml::DataObject &document, int most, PageFindings &findings);
