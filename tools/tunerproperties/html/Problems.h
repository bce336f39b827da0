// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include "documents/Validate.h"
#include "html/Markup.h"

/// Where an object of a document is: the way from the root, as problems tell it.
class Spot
{
public:
    Spot() = default;
    explicit Spot(const QVector<JobXml::Step> &steps)
    {
        for (const JobXml::Step &step : steps)
            *this = below(step.member, step.index);
    }

    Spot below(const QString &member, int index = -1) const
    {
        Spot spot;
        spot.m_key = m_key + QLatin1Char('/') + member + QLatin1Char(' ') + QString::number(index);
        return spot;
    }

    const QString &key() const { return m_key; }

private:
    QString m_key;
};

/// The problems of a document, by the objects that have them.
class Problems
{
public:
    explicit Problems(const Findings &findings);

    bool hasAt(const Spot &spot) const { return m_at.contains(spot.key()); }

    /// How many there are at the object and below it.
    int countFrom(const Spot &spot) const { return m_from.value(spot.key()); }

    /// Shows those at the object; to be called where the object is shown.
    void show(Markup &out, const Spot &spot);

    /// All that are listed, and how many there are, with links to those that were shown at their objects.
    void showAll(Markup &out) const;

private:
    Findings m_all;
    QVector<Finding> m_findings; // those of them that are listed
    QHash<QString, QVector<int>> m_at;
    QHash<QString, int> m_from;
    QSet<int> m_shown;
};
