// SPDX-License-Identifier: MIT
#pragma once

#include "documents/lint/LintedObject.h"

/// The rules about objects, a function each, and the shapes to which they apply. Rules.cpp describes them.
namespace TunerDocuments::ObjectRules {

// RangeRules.cpp: numbers with a range
bool isRange(const Shape &shape);
void valueOutOfRange(const LintedObject &object);
void minAboveMax(const LintedObject &object);
void stepNotPositive(const LintedObject &object);
void valueOffGrid(const LintedObject &object);

// OptionRules.cpp: a value and the options that it can be chosen from
bool isSelection(const Shape &shape);
void indexOutOfRange(const LintedObject &object);
void optionDiffers(const LintedObject &object);
bool isTextWithList(const Shape &shape);
void valueNotListed(const LintedObject &object);

// DuplicateRules.cpp: items of a list that are the same
bool hasOptions(const Shape &shape);
void duplicateOption(const LintedObject &object);
bool hasComponents(const Shape &shape);
void duplicateComponent(const LintedObject &object);
bool hasNodes(const Shape &shape);
void duplicateNode(const LintedObject &object);
bool hasValues(const Shape &shape);
void duplicateValue(const LintedObject &object);
bool hasBandwidths(const Shape &shape);
void duplicateBandwidth(const LintedObject &object);
bool hasNames(const Shape &shape);
void duplicateStartupMode(const LintedObject &object);

// MemberRules.cpp: single members
bool isBandwidth(const Shape &shape);
void bandwidthNotPositive(const LintedObject &object);
bool isChoice(const Shape &shape);
void unchosenData(const LintedObject &object);
bool hasTexts(const Shape &shape);
void unprintableText(const LintedObject &object);
bool hasUnsignedNumbers(const Shape &shape);
void numberOutOfRange(const LintedObject &object);
bool hasRoundedNumbers(const Shape &shape);
void lostDecimals(const LintedObject &object);

} // namespace TunerDocuments::ObjectRules
