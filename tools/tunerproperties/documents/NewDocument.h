// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <jobxml/TunerProperties.h>

/// Documents to begin with.
namespace NewDocument {

/// A document that holds what is mandatory and no more. The members of the document itself that are given have these
/// texts; of the others, texts are the member's name, so that one sees what to replace.
JobXml::TunerProperties minimal(const QHash<QString, QString> &given);

/// The XML of the document, with comments that tell what there is and what there could be.
QByteArray explained(const QByteArray &xml, const JobXml::TunerProperties &document);

} // namespace NewDocument
