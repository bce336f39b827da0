// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"

/// A reason for which a document would be refused. Either it has a place in an XML file, line and column counting from
/// 1, or a path in the document, which is empty for what the document as such lacks.
struct Finding
{
    QStringList path;
    int line = 0;
    int column = 0;
    QString message;
    QVector<JobXml::Step> steps = {}; ///< the path, for programs

    bool hasPlace() const { return line > 0; }

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;
};

/// A problem with labels and message shortened where they are long: many problems may have the same long label, and
/// each of them would repeat it. A shortened label has the object's place.
Finding findingOf(const JobXml::Problem &problem);

/// "3001 problems; only the first 100 are listed"
QString countText(qint64 count, int listed);

/// The problems of a document: the first ones, and how many there are. A hostile document has one for every few bytes,
/// so those that nobody wants to see are counted and not kept.
class Findings
{
public:
    Findings() = default;
    /// Keeps so many.
    explicit Findings(int most) : m_most(most) { }

    void add(const Finding &finding)
    {
        if (isListed())
            m_listed.append(finding);
        ++m_count;
        if (finding.hasPlace())
            ++m_placedCount;
    }

    /// Whether the next one would be kept.
    bool isListed() const { return m_listed.size() < m_most; }

    const QVector<Finding> &listed() const { return m_listed; }
    qint64 count() const { return m_count; }
    /// How many of them have a place in an XML file.
    qint64 placedCount() const { return m_placedCount; }
    bool isEmpty() const { return m_count == 0; }

    /// "FILE: ..." for each that is kept, and a last line that says how many more there are.
    QStringList lines(const QString &fileName) const;

private:
    int m_most = 0;
    QVector<Finding> m_listed;
    qint64 m_count = 0;
    qint64 m_placedCount = 0;
};

/// Every reason for which the document would be refused while validating, by its reader or by a writer; the first
/// `most` of them are listed. The document is the one that was loaded from the input while not validating.
Findings findProblems(const JobXml::TunerProperties &document, Input &input, Form form, int most);
