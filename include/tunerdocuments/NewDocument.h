// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// New documents.
namespace NewDocument {

/// A document with the mandatory members only. The members of the document itself that are in `values` have these
/// texts; other texts are the name of the member, so that the user sees what to replace.
TUNERDOCUMENTS_EXPORT JobXml::TunerProperties minimal(const QHash<QString, QString> &values);

/// The XML of the document with comments that describe all members, including those that are not set.
TUNERDOCUMENTS_EXPORT QByteArray explained(const QByteArray &xml, const JobXml::TunerProperties &document);

} // namespace NewDocument

} // namespace TunerDocuments
