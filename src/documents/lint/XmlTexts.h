// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>

namespace TunerDocuments {

/// Texts in an XML document, as its readers return them.
namespace XmlTexts {

/// The value of an attribute, from what is between its quotes. No value if it has a reference to an entity that XML
/// does not define.
std::optional<QString> attribute(QLatin1String utf8);

/// The text of an element without that of nested elements, from its content.
std::optional<QString> element(QLatin1String utf8);

} // namespace XmlTexts

} // namespace TunerDocuments
