// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <limits>
#include <memory>

#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// Something about a document that its author should know: a reason why it is invalid, or a warning. What later
/// versions know about it, functions of this class will return.
struct TUNERDOCUMENTS_EXPORT Finding
{
    /// How serious it is.
    enum class Kind {
        Problem, ///< the model refuses the document
        Warning, ///< a rule of lint() found it
    };

    Kind kind = Kind::Problem; ///< how serious it is
    QString rule{}; ///< the name of the rule of a warning; null for problems
    QVector<JobXml::Step> steps{}; ///< to the object concerned, from the document; for programs
    QString member{}; ///< the member of that object; null if the object as a whole is concerned
    /// The same place as a path, without the member: "Component[type=Filter,name=Pre]/Node[id=gain]". Null until
    /// Findings::describePaths() or the function that found it has set it; empty for the document itself.
    QString path{};
    QString message{}; ///< the problem, without its place; of the model's problems, the model's own text
    /// What the document has instead of one of the choices: the text of a member, the name of an element, the number of
    /// a value without a name. Long ones are shortened. Null if the document has nothing there, or if it is not known.
    QString value{};
    QStringList choices{}; ///< what a problem would accept instead: names; empty if they cannot be listed
    /// What to write instead, as part of a sentence: "did you mean 'gain'?". Null if there is none.
    QString suggestion{};
    /// What explained() adds to the message of a problem: "unknown name 'scp'; expected MCP, SCP or FFP; did you mean
    /// 'SCP'?". Null if the message says it, or if there is nothing to add.
    QString explanation{};
    int line = 0; ///< in the text of the document, counted from 1; 0 if unknown
    int column = 0; ///< in UTF-16 units, counted from 1; 0 if unknown
    bool isError = false; ///< of a warning: whether LintOptions::errors() names its rule

    /// Whether line and column are known.
    bool hasLocation() const { return line > 0; }

    /// The path of the member, or of the object if there is none: "Component[type=Filter,name=Pre]/optional".
    QString place() const;

    /// The message for people: that of a problem with its explanation, that of a warning with its suggestion.
    QString explained() const;

    /// "FILE:LINE:COLUMN: PATH: ", without what is not known, and explained(). A warning has the path of the member and
    /// ends with its rule: "FILE:LINE:COLUMN: PATH/MEMBER: message; suggestion [rule]", or "[error: rule]".
    QString text(const QString &fileName) const;

    /// "error" for problems, and for warnings with isError; "warning" for other warnings.
    QString level() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// A problem with its message shortened if it is long, and with the explanation as far as the document is not required
/// for it. A problem with a location has steps, but no path.
TUNERDOCUMENTS_EXPORT Finding findingOf(const JobXml::Problem &problem);

/// "3001 problems; only the first 100 are listed". `what` is "problems" or "warnings".
TUNERDOCUMENTS_EXPORT QString countText(qint64 count, int listed, const QString &what = QStringLiteral("problems"));

/// The problems of a document, and the warnings of lint(): the first ones, and the number of all. A hostile document
/// has a problem for every few bytes, so the others are counted and not kept.
///
/// What a reader refuses is a problem of its own if the document does not show it, and has a location in XML: an empty
/// boolean, for example. An incomplete item of a list, and what the reader of records refuses, is in the document and
/// usually a problem there, with what it lacks and with a path. So it is one here only if there is no other: in a value
/// that a later one has replaced.
///
/// Copies share their content. One that was moved from can only be assigned to or destroyed.
class TUNERDOCUMENTS_EXPORT Findings
{
public:
    Findings(); ///< Keeps all.
    /// Keeps at most that many, and counts the others.
    explicit Findings(int most);
    /// \cond
    Findings(const Findings &other);
    Findings(Findings &&other) noexcept;
    Findings &operator=(const Findings &other);
    Findings &operator=(Findings &&other) noexcept;
    ~Findings();
    /// \endcond

    /// How many problems, and how many warnings, it keeps at most.
    int most() const;

    /// Counts a problem that concerns every form of the document: other forms carry the characters that XML cannot, and
    /// XML never holds them.
    void add(const JobXml::Problem &problem);

    /// Counts something else that was found.
    void add(const Finding &finding);

    /// Counts problems that are known only by their number.
    void addUnlisted(qint64 number);

    /// Adds problems, as long as this object exists.
    JobXml::ProblemVisitor collector();

    /// Sets the paths of the problems that have no location, and their values. The document must be the one in which
    /// they were found.
    void describePaths(const JobXml::TunerProperties &document);

    /// Calls the function with each problem that is kept, which it may change.
    void changeProblems(const std::function<void(Finding &problem)> &change);

    /// Adds the first warnings, and the number of all.
    void addWarnings(const QVector<Finding> &first, qint64 count);

    /// \name Problems
    /// @{
    /// Those that are kept, in the order in which they were found.
    const QVector<Finding> &listed() const;
    qint64 count() const; ///< of all, kept or not
    bool isEmpty() const; ///< whether the document has no problem
    /// @}

    /// \name Warnings
    /// @{
    const QVector<Finding> &warnings() const; ///< those that are kept, by place
    qint64 warningCount() const; ///< of all, kept or not
    /// @}

    /// "FILE: ..." for each problem and each warning that is kept, and a line with the total of either if there are
    /// more, which ends with `hint`.
    QStringList lines(const QString &fileName, const QString &hint = {}) const;

private:
    class Private;
    QSharedDataPointer<Private> d;
};

/// The problems of a changed document (JobXml::DataObject::VisitProblems()) that the original did not have, with their
/// paths. At most `most` are kept; the others are counted.
///
/// An object may have another name or position after the change, and still has its problems. So a problem is not new if
/// the original has a problem with the same message at the same path. Of the others, which have the same message and
/// the same member in objects of the same kind, only as many are new as there are more of them than in the original:
/// the last of them are taken for those that were there. A problem that is solved at one place and caused at another
/// one is not new.
TUNERDOCUMENTS_EXPORT Findings newProblems(const JobXml::TunerProperties &original,
                                           const JobXml::TunerProperties &changed,
                                           int most = std::numeric_limits<int>::max());

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::Finding, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Findings, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(TunerDocuments::Finding)
Q_DECLARE_METATYPE(TunerDocuments::Findings)
