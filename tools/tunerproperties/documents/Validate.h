// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

struct JsonProblem;

/// A reason why a document is invalid. It has either a location in a file, line and column counted from 1, or a path in
/// the document, which is empty for the document itself; in JSON that is not a document, it has both.
struct Finding
{
    QStringList path;
    int line = 0;
    int column = 0;
    QString message;
    QVector<JobXml::Step> steps = {}; ///< the path, for programs
    QString memberPath = {}; ///< in JSON: the path of the member, see Paths; empty for the document itself

    bool hasLocation() const { return line > 0; }

    /// "FILE:LINE:COLUMN: message", "FILE: PATH: message" or "FILE:LINE:COLUMN: PATH: message"
    QString text(const QString &fileName) const;
};

/// A problem with label and message shortened if they are long: many problems may have the same long label. A shortened
/// label includes the position of the object. A problem with a location has no path.
Finding findingOf(const JobXml::Problem &problem);

/// The same for a problem in JSON, whose texts are short.
Finding findingOf(const JsonProblem &problem);

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
    static constexpr int usualMost = 100;

    Findings() = default;
    /// Keeps at most that many.
    explicit Findings(int most) : m_most(most) { }

    /// Counts a problem that concerns every form of the document: other forms carry the characters that XML cannot, and
    /// XML never holds them.
    void add(const JobXml::Problem &problem);

    /// Counts a problem in JSON.
    void add(const JsonProblem &problem);

    /// Counts problems that are known only by their number.
    void countUnlisted(qint64 number) { m_problems.count += number; }

    /// Adds problems, as long as this object exists.
    JobXml::ProblemVisitor collector()
    {
        return [this](const JobXml::Problem &problem) { add(problem); };
    }

    const QVector<Finding> &listed() const { return shown().listed; }
    qint64 count() const { return shown().count; }
    bool isEmpty() const { return count() == 0; }

    /// What the user of a command with that option can do if not all problems are listed.
    static QString howToListMore();

    /// "FILE: ..." for each problem that is kept, and a last line with the total if there are more.
    QStringList lines(const QString &fileName, const QString &ifThereAreMore = howToListMore()) const;

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
