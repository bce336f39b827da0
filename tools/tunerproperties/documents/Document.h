// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"
#include "documents/Validate.h"

/// Options for reading documents.
struct Reading
{
    std::optional<Form> from; ///< if not set, content and name of the file determine it
    int maxExpansion; ///< how many times its size a compressed document may expand to
};

/// A document and its input. Reading does not validate it.
struct Document
{
    /// Throws FileFailure if the file does not contain a document, or one that expands too far.
    Document(const FileName &name, const Reading &reading, FileKinds kinds = FileKinds::All);

    /// See Validate.h.
    Findings findings(int most) { return findProblems(tuner, input, form, most); }

    Input input;
    Form form;
    JobXml::TunerProperties tuner;
};
