// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>

/// The texts that identify an item among those of its list.
namespace TunerDocuments::Paths {

/// The texts that identify an object, including null ones. A value has those of its chosen alternative.
QVector<Path::Condition> identifyingTexts(const JobXml::DataObject &object);

/// The identity that these texts are, as identityOf() writes it.
QString identityOf(const QVector<Path::Condition> &texts);

/// The texts that identify the items of one list, compared without collecting them.
class Identities
{
public:
    /// The list must outlive this object.
    explicit Identities(const JobXml::MemberView &list);

    /// Whether the item has these texts, and maybe others.
    bool fits(int item, const QVector<Path::Condition> &conditions) const;

    /// Whether the item has these texts, which are all that identify another item.
    bool isAlike(int item, const QVector<Path::Condition> &all) const;

private:
    bool hasTexts(const JobXml::DataObject &object, const QVector<Path::Condition> &conditions) const;

    const JobXml::MemberView &m_list;
    QVector<JobXml::MemberView> m_members; // empty for values, which are identified by what they hold
};

} // namespace TunerDocuments::Paths
