// SPDX-License-Identifier: MIT
#pragma once

#include <tunerdocuments/Document.h>

#include "files/Input.h"

/// Loads the document of a file, as TunerDocuments::Document does. Throws FileFailure if there is no document in it, if
/// that expands too far, or if the file changes meanwhile.
TunerDocuments::Document loadDocument(Input &input, const TunerDocuments::LoadOptions &options = {},
                                      const JobXml::ProblemVisitor &visitor = {});

/// Loads it from its bytes, which the caller receives if it is XML or JSON, for TunerDocuments::lint().
TunerDocuments::Document loadDocumentWithText(Input &input, const TunerDocuments::LoadOptions &options,
                                              const JobXml::ProblemVisitor &visitor, QByteArray &text);

/// Loads it from its bytes, whatever its form is, which the caller receives for TunerDocuments::Editor. If the form is
/// unknown, the message names the option that sets it.
TunerDocuments::Document loadDocumentWithBytes(Input &input, const TunerDocuments::LoadOptions &options,
                                               QByteArray &bytes, const QString &formOption);

/// A document in the canonical layout, and as it is in its file.
struct FormattedDocument
{
    TunerDocuments::Form form;
    QByteArray before;
    QByteArray after; ///< the same if there is nothing to change

    bool isChanged() const { return after != before; }
};

/// Reads the document of a file and lays it out, see TunerDocuments::formatted(). Throws FileFailure.
FormattedDocument formatDocument(Input &input, const TunerDocuments::LoadOptions &options);

/// A document and the file that it was read from. It is read once, without validating, and does not validate.
struct DocumentFile
{
    /// Opens the file and loads the document. Throws FileFailure.
    DocumentFile(const FileName &name, const TunerDocuments::LoadOptions &options,
                 const JobXml::ProblemVisitor &visitor = {}, FileKinds kinds = FileKinds::All);

    Input input;
    TunerDocuments::Document document;
};
