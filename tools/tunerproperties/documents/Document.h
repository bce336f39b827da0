// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"
#include "documents/Validate.h"

/// How documents are read.
struct Reading
{
    std::optional<Form> from; ///< without one, content and name of the file say it
    int maxExpansion; ///< how many times its size a compressed document may declare
};

/// A document and where it comes from, read as it stands: not validated.
struct Document
{
    /// Throws FileFailure if the file does not hold a document, or one that expands too far.
    Document(const FileName &name, const Reading &reading, FileKinds kinds = FileKinds::All);

    /// See Validate.h.
    Findings findings(int most) { return findProblems(tuner, input, form, most); }

    Input input;
    Form form;
    JobXml::TunerProperties tuner;
};
