// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <jobxml/Visit.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// \name Parts of a document as JSON
/// An object of the model, or the value of a member, as it is in a document; indented, with a line feed at the end. The
/// manual's page on JSON describes the mapping. Changes and checks nothing. Throws DocumentError for a text that JSON
/// cannot represent; its message begins with `name`.
///
/// For whole documents see Document.
/// @{
TUNERDOCUMENTS_EXPORT QByteArray toJson(const JobXml::DataObject &object, const QString &name);
TUNERDOCUMENTS_EXPORT QByteArray toJson(const JobXml::MemberView &member, const QString &name);
/// @}

} // namespace TunerDocuments
