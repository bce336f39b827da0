// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

/// A reason why a document is invalid. It has either a location in an XML file, line and column counted from 1, or a
/// path in the document, which is empty for the document itself.
struct Finding
{
    QStringList path;
    int line = 0;
    int column = 0;
    QString message;
    QVector<JobXml::Step> steps = {}; ///< the path, for programs

    bool hasLocation() const { return line > 0; }

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;
};

/// A problem with label and message shortened if they are long: many problems may have the same long label. A shortened
/// label includes the position of the object. A problem with a location has no path.
Finding findingOf(const JobXml::Problem &problem);

/// "3001 problems; only the first 100 are listed"
QString countText(qint64 count, int listed);

/// The problems of a document: the first ones, and the number of all. A hostile document has a problem for every few
/// bytes, so the others are counted and not kept.
class Findings
{
public:
    Findings() = default;
    /// Keeps at most that many.
    explicit Findings(int most) : m_most(most) { }

    /// Counts a problem that concerns every form of the document: other forms carry the characters that XML cannot, and
    /// XML never holds them.
    void add(const JobXml::Problem &problem);

    /// Adds problems, as long as this object exists.
    JobXml::ProblemVisitor collector()
    {
        return [this](const JobXml::Problem &problem) { add(problem); };
    }

    const QVector<Finding> &listed() const { return m_listed; }
    qint64 count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }

    /// "FILE: ..." for each problem that is kept, and a last line with the total if there are more.
    QStringList lines(const QString &fileName) const;

private:
    int m_most = 0;
    QVector<Finding> m_listed;
    qint64 m_count = 0;
};
