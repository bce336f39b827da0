// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// Documents that the library reads in memory must be read as by QXmlStreamReader. Reads them both ways, step by
/// step and into objects, and compares all that can be observed, problems and their places included.
namespace XmlSources {

/// The first difference between the two ways, with what led to it; null if there is none. A document that is not in
/// the subset that is read in memory has none. The seed determines the order of the steps, the objects, and the form
/// of the document, text or file.
QString difference(const QByteArray &document, quint32 seed);

/// The document with a long comment at its end: short texts of small documents are not shared.
QByteArray longEnoughToShareTexts(const QByteArray &document);

/// The same as difference() for the steps alone: tags, attributes and texts.
QString differenceOfSteps(const QByteArray &document, quint32 seed);

/// The same for objects alone.
QString differenceOfObjects(const QByteArray &document, quint32 seed);

} // namespace XmlSources
