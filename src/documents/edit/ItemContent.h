// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

namespace TunerDocuments {

/// Reads an object that is to be added to a document, from the JSON of the object, or from its element in XML with or
/// without a declaration before it. An empty text is an object without content.
///
/// `steps` lead from the document to where the object will be. Throws DocumentError, whose message begins with `name`
/// and the place in the text, for everything that would be lost in reading it.
void readItem(JobXml::DataObject &item, const QVector<JobXml::Step> &steps, const QByteArray &text,
              const QString &name);

} // namespace TunerDocuments
