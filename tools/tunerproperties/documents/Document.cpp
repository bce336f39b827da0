// SPDX-License-Identifier: MIT
#include "documents/Document.h"

Document::Document(const QString &name, std::optional<Form> from)
    : input(name), form(from ? *from : Forms::recognise(input))
{
    tuner.SetValidate(false);
    Forms::load(tuner, input, form);
}
