// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stdexcept>

#include <QString>
#include <QVariant>

#include <jobxml/Visit.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// Values as users type them on the command line, and read them in a script.
namespace TypedValue {

/// The text is not a value of the member. The text of the exception says why.
class TUNERDOCUMENTS_EXPORT Mismatch : public std::runtime_error
{
public:
    explicit Mismatch(const QString &text); ///< what() has the text as UTF-8, with U+0000 escaped
    Mismatch(const Mismatch &other); ///< for throwing
    ~Mismatch() override;

    /// Why the text is not a value of the member.
    QString text() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// Converts a text to a value for the member. Numbers are written as in JSON, or "inf", "-inf" and "nan"; names of an
/// EnumerationList are separated by commas or line ends. Throws Mismatch.
TUNERDOCUMENTS_EXPORT QVariant parse(const JobXml::MemberView &member, const QString &text);

/// A value as parse() reads it, except that lists have a name on each line. Null for a null text and for the invalid
/// value of an enumeration.
TUNERDOCUMENTS_EXPORT QString print(const QVariant &value);

/// A text on one line, for tables with a tab between two cells: line ends, tabs and other characters that are not
/// printable are the escapes `\n`, `\r`, `\t` and `\uXXXX`, and a backslash is `\\`.
TUNERDOCUMENTS_EXPORT QString onOneLine(const QString &text);

} // namespace TypedValue

/// Values as text on one line, for people.
namespace ValueText {

/// \name Exact numbers
/// The shortest text that reads back as the same number, without exponent for numbers of usual size.
/// @{
TUNERDOCUMENTS_EXPORT QString exactly(float value);
TUNERDOCUMENTS_EXPORT QString exactly(double value);
/// @}

/// A value of visit(): texts in quotes, a null text as "(null)", lists in brackets.
TUNERDOCUMENTS_EXPORT QString ofValue(const QVariant &value);

/// The value of a member, and whether it is set; for a member that is not set and has no value: "(not set)".
TUNERDOCUMENTS_EXPORT QString ofMember(const JobXml::MemberView &member);

/// "(not set)"
TUNERDOCUMENTS_EXPORT QString notSet();

} // namespace ValueText

} // namespace TunerDocuments
