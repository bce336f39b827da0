// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>

namespace TunerDocuments::Paths {

/// A text as it is after the "=" of a condition.
QString written(const QString &text);

/// The texts that identify an object, including null ones. A value has those of its chosen alternative.
QVector<Path::Condition> identifyingTexts(const JobXml::DataObject &object);

/// The steps to the items of a list, each of which is unique. An item with a long identity is selected by its position.
class ItemSteps
{
public:
    explicit ItemSteps(const JobXml::MemberView &list);
    /// The items have these identities, see identityOf().
    ItemSteps(const QString &list, QVector<QString> identities);

    /// The step to the item at that index, counted from 0.
    QString at(int index) const;

private:
    QString m_list;
    QVector<QString> m_identities; ///< null if the item is selected by its position
    QVector<int> m_positions; ///< from 1; 0 if the identity is unique
};

} // namespace TunerDocuments::Paths
