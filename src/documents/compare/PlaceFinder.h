// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// A path and the step after it.
QString joinedPath(const QString &path, const QString &step);

/// A member, or an item of a list, in the document that is being changed.
struct ChangePlace
{
    QVector<JobXml::Step> steps; ///< to the object that has the member
    JobXml::MemberView member;
    int index; ///< of the item; -1 if this is not an item

    QVector<JobXml::Step> stepsToChild() const { return steps + QVector<JobXml::Step>{{member.GetName(), index}}; }
};

/// Finds the places of changes in a document, which must not change meanwhile. Many changes concern the same lists,
/// whose steps are found once.
class PlaceFinder
{
public:
    explicit PlaceFinder(const JobXml::DataObject &root) : m_root(root) { }

    /// The place at the end of the path. For an item that does not exist yet, the list alone. Throws PatchFailure.
    ChangePlace find(const QString &path, bool isNew);

private:
    ChangePlace memberIn(const JobXml::DataObject &object, const QVector<JobXml::Step> &steps, const QString &text,
                         bool isNew, const QString &path);
    const QHash<QString, int> &indexesIn(const JobXml::DataObject &object, const JobXml::MemberView &list);

    const JobXml::DataObject &m_root;
    QHash<QPair<const JobXml::DataObject *, QString>, QHash<QString, int>> m_indexes;
};

} // namespace TunerDocuments
