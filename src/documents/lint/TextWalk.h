// SPDX-License-Identifier: MIT
#pragma once

#include <reportbase/XmlMarkup.h>

#include "documents/lint/Places.h"
#include "documents/lint/Report.h"

namespace TunerDocuments {

/// Whether the markup is a document whose text can be examined.
bool canLintText(const REPORTGENERATOR::XmlMarkup &markup);

/// Applies the rules about the text. Adds the places of the objects to `places`, which may be null. Returns whether any
/// object has several alternatives in the text.
bool lintText(const REPORTGENERATOR::XmlMarkup &markup, Report &report, Places *places);

} // namespace TunerDocuments
