// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVariant>

#include "documents/json/JsonMembers.h"
#include "json/Json.h"

namespace TunerDocuments {
namespace JsonReading {

/// The value of an enumeration: its name or its number; not valid if it is neither.
QVariant nameOrNumber(const Json &json);

/// Which alternative an object chooses, according to its JSON.
class Choice
{
public:
    Choice(Members &members, const Json &json);

    /// Reading an alternative chooses it; this chooses the right one again.
    void restoreAfter(const JobXml::MemberView &alternative) const;

private:
    void chooseNothing() const;

    JobXml::MemberEditor *m_member;
    const Json *m_given = nullptr;
    QByteArray m_inferred;
};

} // namespace JsonReading
} // namespace TunerDocuments
