// SPDX-License-Identifier: MIT
#include "documents/Document.h"

Document::Document(const FileName &name, const Reading &reading, const JobXml::ProblemVisitor &visitor, FileKinds kinds)
    : input(name, kinds), form(reading.from ? *reading.from : Forms::recognize(input))
{
    if (form == Form::Tagged || form == Form::Compressed)
        Forms::checkExpansion(input, reading.maxExpansion);
    tuner.SetValidate(false);
    Forms::load(tuner, input, form, visitor, reading.maxProblems);
}
