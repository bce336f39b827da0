// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <set>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Path.h>

#include "documents/values/ObjectEdit.h"

namespace TunerDocuments {

/// What to add, remove or move in a document, by paths, as an edit of it. See Editor, which has the same operations.
class PathEdits
{
public:
    /// The document must not change meanwhile.
    explicit PathEdits(const JobXml::TunerProperties &document);
    PathEdits(const PathEdits &) = delete;
    PathEdits &operator=(const PathEdits &) = delete;
    ~PathEdits();

    void add(const QString &path, const QByteArray &content, const QString &contentName);
    void remove(const QStringList &paths);
    void move(const QString &path, int position);

    /// Refers to objects that this one owns.
    const ObjectEdit &edits() const { return m_edits; }

private:
    MemberEdit &editOf(const Paths::Target &target);
    MemberEdit &settingEditOf(const Paths::Target &target);
    JobXml::DataObject &newObject(const QVector<JobXml::Step> &steps);
    void addItem(const Paths::Target &list, const Path::Step &step, const QByteArray &content,
                 const QString &contentName);
    void addObject(const Paths::Target &target, const QByteArray &content, const QString &contentName);
    void addNames(const Paths::Target &list, const QByteArray &content);
    void removeTarget(const Paths::Target &target);
    void removeObject(const Paths::Target &target);
    void chooseRemaining(const QVector<JobXml::Step> &item);

    const JobXml::TunerProperties &m_document;
    ObjectEdit m_edits;
    std::vector<std::unique_ptr<JobXml::TunerProperties>> m_owners; // of what is added
};

} // namespace TunerDocuments
