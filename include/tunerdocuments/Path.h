// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// An error in a path, or a path to nothing.
class TUNERDOCUMENTS_EXPORT PathFailure : public std::runtime_error
{
public:
    explicit PathFailure(const QString &text); ///< what() has the text as UTF-8, with U+0000 escaped
    PathFailure(const PathFailure &other); ///< for throwing
    ~PathFailure() override;

    /// The error, and its place in the path.
    QString text() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// A path to a member, as users write and read it: `Component[type=Filter,name=Pre]/Node[id=gain]/...`. An item of a
/// list is selected by the texts that identify it, by its position, counted from 1, or by both: `[id=gain][2]` is the
/// second of those. A pattern has `[*]` for every item of a list, or `*` for every member that is set. The manual's
/// page on paths describes all of it.
///
/// An alternative that an item has not chosen is a member like others if it has data, which lint() reports: a path that
/// names it leads to it, and `*` matches it if it is set. A step that is omitted is always the chosen one.
///
/// Identifying texts stay the same when other items are added, removed or moved; positions do not.
class TUNERDOCUMENTS_EXPORT Path
{
public:
    /// A text that identifies an item: `name=Pre`. No later version adds members.
    struct Condition
    {
        QString member; ///< the member of the item, or of the kind of value that it holds
        QString text; ///< its whole value
    };

    /// A step, to a member or to items of a list. What later versions can select by, functions of this class will set.
    struct Step
    {
        /// A step to nothing.
        Step() = default;
        /// To a member, or to the items of a list that fulfill the conditions.
        Step(const QString &theMember, const QVector<Condition> &theConditions = {}, int thePosition = 0,
             bool selectsAll = false)
            : member(theMember), conditions(theConditions), position(thePosition), isAll(selectsAll)
        {
        }

        QString member{}; ///< "*" for every member that is set
        QVector<Condition> conditions{}; ///< all of which an item fulfills
        int position = 0; ///< counted from 1; 0 is none
        bool isAll = false; ///< `[*]`

    private:
        struct Additions;
        std::shared_ptr<Additions> m_additions{}; // what later versions add
    };

    Path(); ///< Without steps.
    explicit Path(const QVector<Step> &steps); ///< From the document to the member.
    /// \cond
    Path(const Path &other);
    Path(Path &&other) noexcept;
    Path &operator=(const Path &other);
    Path &operator=(Path &&other) noexcept;
    ~Path();
    /// \endcond

    /// Reads a path. Throws PathFailure with the position of an error: "expected ']' at character 12 of the path".
    static Path parse(const QString &text);

    /// The path as parse() reads it, with quotes where they are required.
    QString text() const;

    /// From the document to the member.
    const QVector<Step> &steps() const { return m_steps; }

    /// Whether it has an asterisk.
    bool isPattern() const;

private:
    QVector<Step> m_steps;
};

/// Places in documents.
namespace Paths {

/// The steps to all items of a list, each of which is unique. An item with a long identity is selected by its position.
TUNERDOCUMENTS_EXPORT QStringList stepsTo(const JobXml::MemberView &list);

/// The complete paths to many places in one document, which must not change meanwhile: the steps to the items of a list
/// are found once, as long as the places are in it.
class TUNERDOCUMENTS_EXPORT Texts
{
public:
    explicit Texts(const JobXml::DataObject &root); ///< The root must outlive this object.
    Texts(const Texts &) = delete;
    Texts &operator=(const Texts &) = delete;
    ~Texts();

    /// The path of these steps: "Component[type=Filter,name=Pre]/Node[id=gain]". Empty without steps; up to the first
    /// step that leads nowhere.
    QString of(const QVector<JobXml::Step> &steps);

private:
    struct Lists;
    const JobXml::DataObject &m_root;
    std::unique_ptr<Lists> m_lists;
};

/// The identity of an object among its siblings: "type=Filter,name=Pre". Null if a text of it is missing. Values are
/// identified by their content.
TUNERDOCUMENTS_EXPORT QString identityOf(const JobXml::DataObject &object);

/// "unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?"
TUNERDOCUMENTS_EXPORT QString unknownMember(const QString &name, const QString &className, const QStringList &known);

/// A member and its new value, as users write both: `Component[name=Pre]/optional=true`. No later version adds members.
struct Assignment
{
    QString path; ///< of the member
    QString value; ///< as TypedValue::parse() reads it; empty if nothing is after the `=`
};

/// The parts of an assignment: its first `=` outside of brackets ends the path. No value if there is none, as in a path
/// alone. The path is not checked.
TUNERDOCUMENTS_EXPORT std::optional<Assignment> assignmentIn(const QString &text);

/// The result of a path. What later versions know about it, functions of this class will return.
struct TUNERDOCUMENTS_EXPORT Target
{
    /// The member at the end of the steps.
    Target(const QVector<JobXml::Step> &theSteps, const QString &thePath, const JobXml::MemberView &theMember)
        : steps(theSteps), path(thePath), member(theMember)
    {
    }

    QVector<JobXml::Step> steps; ///< from the root; the last one is the member, with an index if it is an item
    QString path; ///< complete
    JobXml::MemberView member; ///< valid as long as the root is neither changed nor destroyed

    /// Whether it is an item of a list, and not the list as a whole.
    bool isItem() const { return steps.last().index >= 0; }

    /// Whether it is an object or a list of objects, which toJson() writes, and not a value, which TypedValue::print()
    /// writes.
    bool holdsObjects() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// Finds every member that a pattern matches, in the order of the document. Every step selects all that it fits: a list
/// without brackets all of its items. Members that are not set are not found; a path without asterisk is a pattern as
/// well.
TUNERDOCUMENTS_EXPORT QVector<Target> findAll(const JobXml::DataObject &root, const Path &pattern);

/// Calls the action with the complete path of every member that is set and has a value, in the order of the document,
/// as soon as it is found.
TUNERDOCUMENTS_EXPORT void
list(const JobXml::DataObject &root,
     const std::function<void(const QString &path, const JobXml::MemberView &member)> &action);

/// The same with the objects and the items of lists, each before what is in it, and the lists without items: everything
/// that a document has set. find() accepts every path, and Editor::remove() and move() those of items.
TUNERDOCUMENTS_EXPORT void listAll(const JobXml::DataObject &root,
                                   const std::function<void(const Target &target)> &action);

/// Finds the member of a path. The chosen alternative needs no step of its own, and a list with one item no selection.
/// Throws PathFailure, also for an alternative that is not chosen and has no data.
TUNERDOCUMENTS_EXPORT Target find(const JobXml::DataObject &root, const QString &path);

/// What is typed when a path is completed.
enum class Completing {
    Path, ///< the path of a member that is set: `quantity`
    Assignment, ///< a member, set or not, and its new value: `quantity=2`
};

/// How a path, of which the beginning has been typed, can go on: by the rest of its last step. Every result begins with
/// what was typed. A step that can go on ends with "/", and a member of an assignment with "=", after which the names
/// that it accepts follow. Empty if nothing fits, if the beginning is wrong, and for patterns.
///
/// Items of a list are written like stepsTo(); if none begins like that, by another one of the texts that identify them
/// or by their positions. The members of the chosen alternative are found without its step as well. Takes time for the
/// lists on the way and for what is listed, not for what is below it.
TUNERDOCUMENTS_EXPORT QStringList completions(const JobXml::DataObject &root, const QString &beginning,
                                              Completing what = Completing::Path);

/// The member at the end of the steps, if it exists.
TUNERDOCUMENTS_EXPORT std::optional<JobXml::MemberView> at(const JobXml::DataObject &root,
                                                           const QVector<JobXml::Step> &steps);

/// Calls the action with the MemberEditor of the target's member; all objects on the way count as set afterwards. What
/// items have chosen stays, unless the member is a choice or an alternative, which the action may choose.
TUNERDOCUMENTS_EXPORT void edit(JobXml::DataObject &root, const Target &target,
                                const std::function<void(JobXml::MemberEditor &member)> &action);

} // namespace Paths

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::Path, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Path::Condition, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Path::Step, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Paths::Target, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Paths::Assignment, Q_MOVABLE_TYPE);
