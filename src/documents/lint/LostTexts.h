// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// Applies the rules about texts that readers convert or skip to a document in XML, whatever its comments disable: what
/// is lost is lost. The action receives the findings in the order of the text, with the offset in the markup.
void visitLostTexts(const Document &document, const REPORTGENERATOR::XmlMarkup &markup,
                    const std::function<void(const Finding &finding, int offset)> &action);

} // namespace TunerDocuments
