// SPDX-License-Identifier: MIT
#pragma once

#include "documents/lint/LintedText.h"

/// The rules about the text of XML, a function each. Rules.cpp describes them.
namespace TunerDocuments {
namespace TextRules {

void notANumber(const LintedText &value);
void numberOutOfRange(const LintedText &value);
void lostDecimals(const LintedText &value);
void notABoolean(const LintedText &value);
void unknownAttribute(const LintedText &attribute);
void unknownElement(const LintedText &element);
void repeatedMember(const LintedText &value);
void repeatedAlternative(const LintedText &alternative);
void strayText(const LintedText &text);
void elementInValue(const LintedText &element);
void unknownVersion(const LintedText &version);
void resetByVersion(const LintedText &version);
void uselessComment(const LintedText &comment);

} // namespace TextRules
} // namespace TunerDocuments
