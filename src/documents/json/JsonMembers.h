// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QStringList>
#include <QVarLengthArray>

#include <jobxml/Visit.h>

namespace TunerDocuments {
namespace JsonReading {

/// Whether that is the key of the member.
bool isNamed(const JobXml::MemberView &member, const QByteArray &key);

/// The members of an object, found by their names. Those of a JSON object are mostly in the order of the model, so each
/// search begins after the last result.
class Members
{
public:
    explicit Members(JobXml::DataObject &object);

    JobXml::MemberEditor *find(const QByteArray &name);
    /// The choice between alternatives, if there is one; it comes first.
    JobXml::MemberEditor *choice();
    QStringList names() const;

private:
    using Entry = std::optional<JobXml::MemberEditor>; // the array needs a type that can be empty

    QVarLengthArray<Entry, 16> m_all;
    int m_next = 0;
};

} // namespace JsonReading
} // namespace TunerDocuments
