// SPDX-License-Identifier: MIT
#pragma once

#include "Expected.h"
#include "every_class/ClassUnderTest.h"

namespace Damage {

enum class Encoding { Record, Snapshot, Xml };

/// Checks an object after damaged data were read into it, whether or not reading failed: it can be copied, assigned,
/// written, read again, reset and destroyed, each with the correct result.
class Aftermath
{
public:
    /// `good` is read into the object afterwards.
    Aftermath(const ClassUnderTest &type, const JobXml::DataObject &good);

    /// Returns the first error found, null if there is none. `state` is the expected state; if it is null, the object's
    /// present state is expected. Leaves the object equal to `good`.
    QString wrongWith(JobXml::DataObject &object, const Expected *state, Encoding encoding) const;

private:
    QString wrongCopies(const JobXml::DataObject &object) const;
    QString wrongWriting(const JobXml::DataObject &object, Encoding encoding) const;
    QString wrongRewriting(const JobXml::DataObject &object, Encoding encoding) const;
    QString wrongReading(JobXml::DataObject &object, const Expected *state, Encoding encoding) const;
    const QByteArray &good(Encoding encoding) const;
    void readGood(Expected &object, Encoding encoding) const;

    const ClassUnderTest &m_type;
    ClassUnderTest::Pointer m_good;
    QByteArray m_record;
    QByteArray m_snapshot;
    QByteArray m_xml;
    XmlTokens m_tokens;
};

} // namespace Damage
