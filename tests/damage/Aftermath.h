// SPDX-License-Identifier: MIT
#pragma once

#include "Expected.h"
#include "every_class/ClassUnderTest.h"

namespace Damage {

enum class Encoding { Record, Snapshot, Xml };

/// What must hold of every object into which something was read that failed, or may as well have failed: it can be
/// copied, assigned, written, read into again, reset and destroyed, and each gives what it must.
class Aftermath
{
public:
    /// `good` is what is read into the object afterwards.
    Aftermath(const ClassUnderTest &type, const JobXml::DataObject &good);

    /// What is wrong with the object, null if nothing is. `state` is what it must hold; if it is null, only what the
    /// object holds is known. Leaves the object holding `good`.
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
