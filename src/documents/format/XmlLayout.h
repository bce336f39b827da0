// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace TunerDocuments {

/// The canonical layout of an XML document, as XmlDocument writes it in the model's library. It has no other form: it
/// needs the text alone, and changes nothing but blanks, line ends and quotes.
namespace XmlLayout {

/// Lays out a document in UTF-8 that a reader has accepted. Throws CannotEdit if the elements are nested deeper than
/// XmlMarkup allows, or so deeply that the indentation takes many times the size of the text.
QByteArray laidOut(const QByteArray &utf8);

} // namespace XmlLayout

} // namespace TunerDocuments
