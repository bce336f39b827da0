// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"
#include "documents/Validate.h"

/// A document and where it comes from, read as it stands: not validated.
struct Document
{
    /// Throws FileFailure if the file does not hold a document. Without a form the content and the name tell it.
    Document(const FileName &name, std::optional<Form> from, FileKinds kinds = FileKinds::All);

    /// See Validate.h.
    QVector<Finding> findings() { return findProblems(tuner, input, form); }

    Input input;
    Form form;
    JobXml::TunerProperties tuner;
};
