// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QtGlobal>

namespace TunerDocuments {

class LintedObject;
class LintedText;
struct Shape;

/// What a rule about the text of XML examines.
enum class TextSubject {
    None, ///< the rule is about objects
    Boolean, ///< the text of a boolean
    Number, ///< the text of a number, unless it is obviously right
    Attribute, ///< an attribute that no member has
    Element, ///< an element that no member has
    RepeatedMember, ///< a value that a further one of the same member replaces
    RepeatedAlternative, ///< an alternative that a further one of the same kind replaces
    StrayText, ///< a text between the elements of an object
    ElementInValue, ///< an element in the text of a member
    Version, ///< the version of the document, which may be missing
    Comment, ///< a comment that disables rules
};

/// A rule: a row of the table in Rules.cpp.
struct Rule
{
    const char *name;
    const char *finds; ///< a sentence
    const char *why; ///< sentences

    /// For rules about objects: whether objects of that shape are examined, and the function that does.
    bool (*applies)(const Shape &) = nullptr;
    void (*checkObject)(const LintedObject &) = nullptr;

    /// For rules about the text.
    TextSubject subject = TextSubject::None;
    void (*checkText)(const LintedText &) = nullptr;
};

/// All rules. A rule is identified by its index, and sets of rules have a bit for each.
const std::vector<Rule> &allRules();

/// The rules that apply to objects of that shape.
quint64 rulesFor(const Shape &shape);

/// The rules that examine the text if there is one.
quint64 rulesAboutText();

/// The rules about alternatives that are not chosen. A document whose text has at most one alternative for each value
/// has none of these.
quint64 rulesAboutAlternatives();

inline quint64 bitOf(int rule)
{
    return quint64(1) << rule;
}

} // namespace TunerDocuments
