// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <QString>
#include <QVariant>

#include <jobxml/Visit.h>

/// Values as one types them on the command line, and reads them in a script.
namespace TypedValue {

/// The text is no value of the member. The text of the exception tells why.
class Mismatch : public std::runtime_error
{
public:
    explicit Mismatch(const QString &text) : std::runtime_error(text.toStdString()) { }
    QString text() const { return QString::fromUtf8(what()); }
};

/// The value for the member. Numbers are written as in JSON, or "inf", "-inf" and "nan"; names of an EnumerationList
/// with commas between them. Throws Mismatch.
QVariant parse(const JobXml::MemberView &member, const QString &text);

/// A value of a member as parse() takes it, but for lists, which have a name on each line. Null for no value: a null
/// text, the invalid value of an enumeration.
QString print(const QVariant &value);

} // namespace TypedValue
