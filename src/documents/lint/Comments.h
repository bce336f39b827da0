// SPDX-License-Identifier: MIT
#pragma once

#include <reportbase/XmlMarkup.h>

#include "documents/lint/Report.h"

namespace TunerDocuments {

/// Makes the comments that disable rules effective. Returns whether there are any.
bool applyComments(const REPORTGENERATOR::XmlMarkup &markup, Report &report);

} // namespace TunerDocuments
