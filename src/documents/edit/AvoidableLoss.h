// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/TunerProperties.h>

namespace TunerDocuments {

/// The first place where an edited text reads as something else than the description although its form can hold it:
/// "Component[1]/name: "a" would be read as "b"". Null if there is none.
///
/// `read` is what the text reads as, and `written` what the description reads as after it was written anew in the form
/// of the text. Where that differs from the description, the form cannot hold it, and the text may differ as well.
/// Items are compared by their positions, since a form keeps the order of what it holds.
QString avoidableLoss(const JobXml::TunerProperties &description, const JobXml::TunerProperties &read,
                      const JobXml::TunerProperties &written);

} // namespace TunerDocuments
