// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <tunerdocuments/Finding.h>

#include "documents/html/Markup.h"
#include "documents/html/Members.h"

namespace TunerDocuments {

/// The path of an object in a document, as findings have it.
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

/// The problems of a document and the warnings about it, by object.
class Problems
{
public:
    struct Count
    {
        int problems = 0;
        int warnings = 0;

        bool isZero() const { return problems == 0 && warnings == 0; }
        /// "1 problem, 2 warnings"
        QString text() const;
    };

    explicit Problems(const Findings &findings);

    /// Whether any listed finding is that of an object in the document.
    bool areInObjects() const { return !m_at.isEmpty(); }

    bool hasAt(const ObjectPath &path) const { return m_at.contains(path.key()); }

    /// Whether there is a finding about this member of the object.
    bool hasAt(const ObjectPath &path, const QString &member) const;

    /// The number of listed findings at the object and below it.
    Count countFrom(const ObjectPath &path) const { return m_from.value(path.key()); }

    /// Shows the findings of the object, except those of its members that are among `facts`, which showMember() shows.
    /// Call it where the object is shown.
    void show(Markup &out, const ObjectPath &path, const Members &facts = {});

    /// Shows the findings of a member of the object. Call it where the value is shown.
    void showMember(Markup &out, const ObjectPath &path, const QString &member);

    /// Shows all listed findings and their total, with links to those that have been shown at their objects.
    void showAll(Markup &out) const;

private:
    void show(Markup &out, int index);
    void showHeading(Markup &out) const;
    void showEntry(Markup &out, int index) const;

    const QVector<Finding> m_listed;
    const qint64 m_problems; // listed or not
    const qint64 m_warnings;
    QHash<QString, QVector<int>> m_at;
    QHash<QString, Count> m_from;
    QSet<int> m_shown;
};

} // namespace TunerDocuments
