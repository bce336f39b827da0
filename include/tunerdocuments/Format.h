// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// The document in the canonical layout: XML and JSON as the library lays out what it writes. What the library has
/// written stays as it is, and so does the result of this function. The manual's page on the layout describes it.
///
/// Only the layout changes: blanks and line ends between elements, blanks within tags, and the quotes of attributes; in
/// JSON, blanks and line ends between values. Everything else stays: comments and processing instructions, values as
/// they are spelled, order, encoding, and what the model does not have. Texts keep their blanks, and so does the
/// content of an element that has text besides other elements, or the attribute `xml:space="preserve"`.
///
/// The binary forms have no layout: such a document is returned as it is.
///
/// A document with problems is laid out as well. What the library reads from the result is compared with what it reads
/// from `bytes`, values and problems.
///
/// `name` is what messages call the document, and its suffix may determine the form. Throws what Document::fromBytes()
/// throws, and UnstorableContent if the text cannot be laid out without changing what is read from it, or only in many
/// times its size, as with elements nested hundreds of levels deep.
TUNERDOCUMENTS_EXPORT QByteArray formatted(const QByteArray &bytes, const QString &name,
                                           const LoadOptions &options = {});

/// Whether a form has a layout: XML and JSON.
TUNERDOCUMENTS_EXPORT bool hasLayout(Form form);

} // namespace TunerDocuments
