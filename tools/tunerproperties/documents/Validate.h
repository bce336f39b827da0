// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

/// A reason why a document is invalid, or a warning about a valid one. A reason has either a location in an XML file,
/// line and column counted from 1, or a path in the document, which is empty for the document itself; a warning may
/// have both.
struct Finding
{
    QStringList path;
    int line = 0;
    int column = 0;
    QString message;
    QVector<JobXml::Step> steps = {}; ///< the path, for programs
    QString member = {}; ///< the member of the object at the path; null if it is not a single one
    QString rule = {}; ///< the rule that warns; null for a reason why the document is invalid

    bool isWarning() const { return !rule.isNull(); }
    bool hasLocation() const { return line > 0; }

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;
};

/// A problem with label and message shortened if they are long: many problems may have the same long label. A shortened
/// label includes the position of the object. A problem with a location has no path.
Finding findingOf(const JobXml::Problem &problem);

/// Recognizes what a reader refuses although the document then has it: incomplete items of lists.
class KeptItems
{
public:
    /// Whether the problem, one with a place in the document that was read, is about such an item.
    bool contain(const JobXml::Problem &problem);

private:
    QHash<QString, bool> m_known; // by class and member
};

/// "3001 problems; only the first 100 are listed"
QString countText(qint64 count, int listed);

/// The problems of a document: the first ones, and the number of all. A hostile document has a problem for every few
/// bytes, so the others are counted and not kept.
///
/// What a reader refuses is a problem of its own if the document does not show it, and has a location in XML: an empty
/// boolean, for example. An incomplete item of a list, and what the reader of records refuses, is in the document and
/// usually a problem there, with what it lacks and with a path. So it is one here only if there is no other: in a value
/// that a later one has replaced.
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

    const QVector<Finding> &listed() const { return shown().listed; }
    qint64 count() const { return shown().count; }
    bool isEmpty() const { return count() == 0; }
    /// How many it keeps at most.
    int most() const { return m_most; }

    /// "FILE: ..." for each problem that is kept, and a last line with the total if there are more.
    QStringList lines(const QString &fileName) const;

private:
    struct List
    {
        QVector<Finding> listed;
        qint64 count = 0;
    };

    const List &shown() const { return m_problems.count > 0 ? m_problems : m_heldBack; }

    int m_most = 0;
    List m_problems;
    List m_heldBack;
    KeptItems m_keptItems;
};
