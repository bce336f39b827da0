// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <QString>
#include <QVariant>

#include <jobxml/Visit.h>

/// Values as users type them on the command line, and read them in a script.
namespace TypedValue {

/// The text is not a value of the member. The text of the exception says why.
class Mismatch : public std::runtime_error
{
public:
    explicit Mismatch(const QString &text) : std::runtime_error(text.toStdString()) { }
    QString text() const { return QString::fromUtf8(what()); }
};

/// Converts a text to a value for the member. Numbers are written as in JSON, or "inf", "-inf" and "nan"; names of an
/// EnumerationList are separated by commas. Throws Mismatch.
QVariant parse(const JobXml::MemberView &member, const QString &text);

/// A value as parse() reads it, except that lists have a name on each line. Null for a null text and for the invalid
/// value of an enumeration.
QString print(const QVariant &value);

} // namespace TypedValue
