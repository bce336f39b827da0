// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include <QHash>
#include <QPair>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/compare/Change.h"
#include "documents/compare/PlaceFinder.h"
#include "documents/values/ObjectEdit.h"

namespace TunerDocuments {

/// Collects the edits of a document that changes mean, and checks that they fit. Throws PatchFailure otherwise.
class EditBinder
{
public:
    /// The document must not change meanwhile.
    explicit EditBinder(const JobXml::TunerProperties &document);
    EditBinder(const EditBinder &) = delete;
    EditBinder &operator=(const EditBinder &) = delete;
    ~EditBinder();

    void add(const Change &change);

    /// The edits of all changes that were added; they refer to objects of the changes and of this object.
    const ObjectEdit &edits();

private:
    struct ListChanges;

    void addAt(const Change &change, const QString &path);
    void addOrRemoveItem(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path);
    void addOrRemoveObject(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path);
    void replaceObject(const Change &change, const ChangePlace &place, MemberEdit &edit, const QString &path);
    void replace(MemberEdit &edit, const JobXml::DataObject *replacement, bool isSet, const QString &path);
    void rename(const Change &change, const ChangePlace &place, const QString &path);
    ListChanges &listChanges(const ChangePlace &place, MemberEdit &edit);
    static void arrange(const ListChanges &changes);
    const JobXml::DataObject *kept(const WholeObject &whole);

    PlaceFinder m_finder;
    ObjectEdit m_root;
    std::vector<std::unique_ptr<ListChanges>> m_lists;
    QHash<const MemberEdit *, ListChanges *> m_listsByEdit;
    QVector<QPair<const MemberEdit *, QString>> m_replaced;
    std::vector<std::shared_ptr<JobXml::TunerProperties>> m_owners;
};

} // namespace TunerDocuments
