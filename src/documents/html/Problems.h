// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <tunerdocuments/Finding.h>

#include "documents/html/Markup.h"

namespace TunerDocuments {

/// The path of an object in a document, as problems have it.
class ObjectPath
{
public:
    ObjectPath() = default;
    explicit ObjectPath(const QVector<JobXml::Step> &steps)
    {
        for (const JobXml::Step &step : steps)
            *this = below(step.member, step.index);
    }

    ObjectPath below(const QString &member, int index = -1) const
    {
        ObjectPath path;
        path.m_key = m_key + QLatin1Char('/') + member + QLatin1Char(' ') + QString::number(index);
        return path;
    }

    const QString &key() const { return m_key; }

private:
    QString m_key;
};

/// The problems of a document, by object.
class Problems
{
public:
    explicit Problems(const Findings &findings);

    /// Whether any listed problem is that of an object in the document.
    bool areInObjects() const { return !m_at.isEmpty(); }

    bool hasAt(const ObjectPath &path) const { return m_at.contains(path.key()); }

    /// The number of problems at the object and below it.
    int countFrom(const ObjectPath &path) const { return m_from.value(path.key()); }

    /// Shows the problems of the object. Call it where the object is shown.
    void show(Markup &out, const ObjectPath &path);

    /// Shows all listed problems and their total, with links to those that have been shown at their objects.
    void showAll(Markup &out) const;

private:
    Findings m_all;
    QVector<Finding> m_findings; // the listed ones
    QHash<QString, QVector<int>> m_at;
    QHash<QString, int> m_from;
    QSet<int> m_shown;
};

} // namespace TunerDocuments
