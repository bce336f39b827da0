// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "documents/values/ObjectEdit.h"

namespace TunerDocuments {

/// Makes the changes. Everything else stays as it is, flags and choices included. All or nothing.
void apply(const ObjectEdit &edit, JobXml::TunerProperties &document);

} // namespace TunerDocuments
