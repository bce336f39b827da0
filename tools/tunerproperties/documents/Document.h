// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"

/// Options for reading documents.
struct Reading
{
    std::optional<Form> from; ///< if not set, content and name of the file determine it
    int maxExpansion; ///< how many times its size a compressed document may expand to
    int maxProblems = Findings::usualMost; ///< how many problems to list of JSON that is not a document
};

/// A document and its input. It is read once, without validating, and does not validate.
struct Document
{
    /// Calls `visitor` with the problems of the document, as Forms::load() does. Throws FileFailure if the file does
    /// not contain a document, or one that expands too far, and InvalidContent if it contains other JSON.
    Document(const FileName &name, const Reading &reading, const JobXml::ProblemVisitor &visitor = {},
             FileKinds kinds = FileKinds::All);

    Input input;
    Form form;
    JobXml::TunerProperties tuner;
};
