// SPDX-License-Identifier: MIT
#include "documents/lint/Rules.h"

#include "documents/lint/ObjectRules.h"
#include "documents/lint/TextRules.h"

namespace TunerDocuments {

namespace {

Rule objectRule(const char *name, const char *finds, const char *why, bool (*applies)(const Shape &),
                void (*check)(const LintedObject &))
{
    Rule rule{name, finds, why};
    rule.applies = applies;
    rule.checkObject = check;
    return rule;
}

Rule textRule(const char *name, const char *finds, const char *why, TextSubject subject,
              void (*check)(const LintedText &))
{
    Rule rule{name, finds, why};
    rule.subject = subject;
    rule.checkText = check;
    return rule;
}

/// A rule that examines the text if there is one, and objects otherwise.
Rule textOrObjectRule(Rule rule, TextSubject subject, void (*check)(const LintedText &))
{
    rule.subject = subject;
    rule.checkText = check;
    return rule;
}

} // namespace

const std::vector<Rule> &allRules()
{
    using namespace ObjectRules;
    using namespace TextRules;
    static const std::vector<Rule> rules = {
        objectRule("value-out-of-range", "A value is below its min or above its max, or not a number.",
                   "Readers do not enforce the range: devices may refuse or clip such a value.", isRange,
                   valueOutOfRange),
        objectRule("min-above-max", "A min is above its max, or one of them is not a number.",
                   "No value is in such a range.", isRange, minAboveMax),
        objectRule("step-not-positive", "A step is zero, negative or not finite.",
                   "User interfaces cannot offer values in such steps.", isRange, stepNotPositive),
        objectRule("value-off-grid", "A value is not its min plus a multiple of its step.",
                   "User interfaces that offer the steps never offer this value.", isRange, valueOffGrid),
        objectRule("index-out-of-range", "The index of a selection is not that of one of its options.",
                   "The selection has no chosen option.", isSelection, indexOutOfRange),
        objectRule("option-differs", "The value or the text of a selection is not that of the option at its index.",
                   "Programs that use the index, the value or the text choose different options.", isSelection,
                   optionDiffers),
        objectRule("duplicate-option", "Two options of a value have the same text or the same number.",
                   "A user cannot distinguish options with the same text; a program that knows only the number or the "
                   "text finds the first one.",
                   hasOptions, duplicateOption),
        objectRule("value-not-listed", "The value of a list of texts is neither in the list nor empty.",
                   "User interfaces that offer the list do not offer the present value. An empty one means that "
                   "nothing is chosen.",
                   isTextWithList, valueNotListed),
        objectRule("duplicate-component", "Two components have the same type and the same name.",
                   "Paths and comparisons identify components by type and name.", hasComponents, duplicateComponent),
        objectRule("duplicate-node", "Two nodes of a component have the same id.",
                   "Programs find a node by its id: they find the first one.", hasNodes, duplicateNode),
        objectRule("duplicate-value", "Two values of a node have the same id.",
                   "Programs find a value by its id: they find the first one.", hasValues, duplicateValue),
        objectRule("duplicate-bandwidth", "Two bandwidths have the same name.", "Users choose a bandwidth by its name.",
                   hasBandwidths, duplicateBandwidth),
        objectRule("duplicate-startup-mode", "A start-up mode is listed twice.", "The second one has no effect.",
                   hasNames, duplicateStartupMode),
        objectRule("bandwidth-not-positive", "A bandwidth is zero, negative, infinite or not a number.",
                   "There is no such bandwidth.", isBandwidth, bandwidthNotPositive),
        objectRule("unchosen-data", "An alternative of a value has data although it is not chosen.",
                   "Documents are written as XML and records without these data.", isChoice, unchosenData),
        objectRule("unprintable-text",
                   "A text contains a control character, an invisible one, or one that changes the order of others.",
                   "The text looks like a different one. It usually comes from copying.", hasTexts, unprintableText),
        textRule("not-a-number", "The text of a number is not a number.", "Readers take it for 0.", TextSubject::Number,
                 notANumber),
        textOrObjectRule(objectRule("number-out-of-range", "A number is out of the range that readers of XML accept.",
                                    "They take it for a different number.", hasUnsignedNumbers,
                                    ObjectRules::numberOutOfRange),
                         TextSubject::Number, TextRules::numberOutOfRange),
        textOrObjectRule(objectRule("lost-decimals",
                                    "A number has more than two decimals, or in XML more digits than its type keeps.",
                                    "XML and records hold two, and a float holds about seven digits, so writing the "
                                    "document changes the number.",
                                    hasRoundedNumbers, ObjectRules::lostDecimals),
                         TextSubject::Number, TextRules::lostDecimals),
        textRule("not-a-boolean", "The text of a boolean is none of true, false, 1 and 0, in upper or lower case.",
                 "Readers take every other text for true, even 'no'.", TextSubject::Boolean, notABoolean),
        textRule("unknown-attribute",
                 "An element has an attribute that its class does not have, or any if it is a value.",
                 "Readers ignore it, so a misspelt one is lost without a message. Attributes of other namespaces are "
                 "accepted.",
                 TextSubject::Attribute, unknownAttribute),
        textRule("unknown-element", "An element contains one that its class does not have.",
                 "Readers skip it, so a misspelt one is lost without a message.", TextSubject::Element, unknownElement),
        textRule("repeated-member", "A member that is not a list has several values.",
                 "Readers keep the last one, and take child elements after attributes.", TextSubject::RepeatedMember,
                 repeatedMember),
        textRule("repeated-alternative", "A value has the same alternative twice.", "Readers keep the last one.",
                 TextSubject::RepeatedAlternative, repeatedAlternative),
        textRule("stray-text", "There is a text between the elements of an object.",
                 "Readers ignore it, so a value without its element is lost without a message.", TextSubject::StrayText,
                 strayText),
        textRule("element-in-value", "The text of a member contains an element.",
                 "Readers skip it with everything in it, and join the texts around it.", TextSubject::ElementInValue,
                 elementInValue),
        textRule("unknown-version", "The version of the document is newer than the library.",
                 "Readers ignore what they do not know of it.", TextSubject::Version, unknownVersion),
        textRule(
            "reset-by-version", "The version of the document is missing, not a number, or older than 1.1.",
            "Readers then reset the document to its defaults before they read it, which sets the quantity, and in XML "
            "skip unknown elements without a message.",
            TextSubject::Version, resetByVersion),
        textRule("useless-comment",
                 "A comment disables an unknown rule, no rule, or is not directly before an element.",
                 "It has no effect, so what it should hide is reported.", TextSubject::Comment, uselessComment),
    };
    return rules;
}

namespace {

template <class Predicate>
quint64 rulesWhere(const Predicate &predicate)
{
    quint64 rules = 0;
    for (std::size_t i = 0; i < allRules().size(); ++i) {
        if (predicate(allRules()[i]))
            rules |= bitOf(int(i));
    }
    return rules;
}

} // namespace

quint64 rulesFor(const Shape &shape)
{
    return rulesWhere([&](const Rule &rule) { return rule.applies && rule.applies(shape); });
}

quint64 rulesAboutText()
{
    return rulesWhere([](const Rule &rule) { return rule.checkText; });
}

quint64 rulesAboutAlternatives()
{
    return rulesWhere([](const Rule &rule) { return rule.applies == ObjectRules::isChoice; });
}

} // namespace TunerDocuments
