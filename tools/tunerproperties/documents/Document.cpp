// SPDX-License-Identifier: MIT
#include "documents/Document.h"

Document::Document(const FileName &name, std::optional<Form> from, FileKinds kinds)
    : input(name, kinds), form(from ? *from : Forms::recognise(input))
{
    tuner.SetValidate(false);
    Forms::load(tuner, input, form);
}
