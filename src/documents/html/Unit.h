// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "documents/html/Members.h"

namespace TunerDocuments {

/// The unit of the numbers of a node: a sibling value named `unit` that holds a text.
class Unit
{
public:
    /// Whether an alternative of a value is a unit.
    static bool isUnit(const JobXml::MemberView &alternative);

    /// No unit.
    Unit() = default;

    /// The unit in a list of values, if exactly one of them is named `unit` and its text is short and printable: a long
    /// one beside each number would make a page much larger than its document.
    static Unit of(const JobXml::MemberView &list);

    bool isNone() const { return m_text.isEmpty(); }
    const QString &text() const { return m_text; }

    /// The number with the usual prefix of an engineer, one to three digits before the point, and all other digits:
    /// "98500000" and "Hz" is "98.5 MHz". Null if the number is as short without it, or if the unit takes no prefixes:
    /// decibels, percent, degrees, bytes and whatever is not a known unit.
    QString withPrefix(const QString &number) const;

private:
    explicit Unit(const QString &text) : m_text(text) { }

    QString m_text;
};

} // namespace TunerDocuments
