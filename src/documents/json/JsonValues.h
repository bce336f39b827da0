// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QVariant>

#include <jobxml/Visit.h>

#include "documents/json/JsonProblems.h"
#include "json/Json.h"

namespace TunerDocuments {
namespace JsonReading {

/// Reads values that are not objects. Of one that is refused, the problem is reported, and the result is not valid.
class Values
{
public:
    explicit Values(Problems &problems) : m_problems(problems) { }

    /// The value for a member.
    QVariant read(const JobXml::MemberView &member, const Json &json, const Where &where);
    /// The same for a member whose kind is neither an enumeration nor a list.
    QVariant valueFor(const JobXml::MemberView &member, const Json &json, const Where &where);
    QVariant text(const Where &where, const Json &json);

    /// A member that is an enumeration decides which names and numbers it has.
    void readName(JobXml::MemberEditor &member, const Json &json, const Where &where);
    void readNames(JobXml::MemberEditor &member, const Json &json, const Where &where);

private:
    template <class T>
    QVariant wholeNumber(const Where &where, const Json &json, bool mayBeText = false);
    template <class T>
    QVariant real(const Where &where, const Json &json);
    QVariant boolean(const Where &where, const Json &json);
    void refuseName(const Where &where, const Json &json, const QStringList &names);

    Problems &m_problems;
};

} // namespace JsonReading
} // namespace TunerDocuments
