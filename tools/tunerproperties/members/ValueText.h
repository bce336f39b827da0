// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include <jobxml/Visit.h>

/// Values as text on one line.
namespace ValueText {

/// The shortest text that reads back as the same number, without exponent for numbers of usual size.
QString exactly(float value);
QString exactly(double value);

/// A value of visit(): texts in quotes, a null text as "(null)", lists in brackets.
QString ofValue(const QVariant &value);

/// The value of a member, and whether it is set; for a member that is not set and has no value: "(not set)".
QString ofMember(const JobXml::MemberView &member);

/// "(not set)"
QString notSet();

} // namespace ValueText
