// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/TunerProperties.h>

namespace TunerDocuments {
namespace JsonReading {

/// Whether XML can carry the text: it has no form for most control characters.
bool fitsIntoXml(const QString &text);

/// A document that has read that version, if there is one: the document's own rule decides what it means.
JobXml::TunerProperties documentOfVersion(const QString &version);

} // namespace JsonReading
} // namespace TunerDocuments
