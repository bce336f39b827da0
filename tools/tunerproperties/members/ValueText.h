// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include <jobxml/Visit.h>

/// How values look to people, on one line.
namespace ValueText {

/// The shortest text from which the same number is read again; no exponent for the numbers that people write without.
QString exactly(float value);
QString exactly(double value);

/// A value as a visitor sees it: texts in quotes, a null one as "(null)", lists in brackets.
QString ofValue(const QVariant &value);

/// The value of a member, and whether it is set; of what is not there, only that: "(not set)".
QString ofMember(const JobXml::MemberView &member);

/// "(not set)"
QString notSet();

} // namespace ValueText
