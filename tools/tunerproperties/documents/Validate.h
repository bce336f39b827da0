// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"

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
/// label includes the position of the object.
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

    void add(const Finding &finding)
    {
        if (hasRoom())
            m_listed.append(finding);
        ++m_count;
        if (finding.hasLocation())
            ++m_locatedCount;
    }

    /// Whether the next problem would be kept.
    bool hasRoom() const { return m_listed.size() < m_most; }

    const QVector<Finding> &listed() const { return m_listed; }
    qint64 count() const { return m_count; }
    /// The number of problems with a location in an XML file.
    qint64 locatedCount() const { return m_locatedCount; }
    bool isEmpty() const { return m_count == 0; }

    /// "FILE: ..." for each problem that is kept, and a last line with the total if there are more.
    QStringList lines(const QString &fileName) const;

private:
    int m_most = 0;
    QVector<Finding> m_listed;
    qint64 m_count = 0;
    qint64 m_locatedCount = 0;
};

/// Finds all problems that reader and writers report while validating; the first `most` are listed. The document must
/// have been loaded from the input while not validating.
Findings findProblems(const JobXml::TunerProperties &document, Input &input, Form form, int most);
