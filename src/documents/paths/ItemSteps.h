// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments::Paths {

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

/// What ItemSteps has for one item, without the texts of the others.
QString stepTo(const JobXml::MemberView &list, int index);

} // namespace TunerDocuments::Paths
