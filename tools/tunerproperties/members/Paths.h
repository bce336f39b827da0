// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stdexcept>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/Visit.h>

/// An error in a path, or a path to nothing.
class PathFailure : public std::runtime_error
{
public:
    explicit PathFailure(const QString &text) : std::runtime_error(text.toStdString()) { }
    QString text() const { return QString::fromUtf8(what()); }
};

/// Paths to members, as users write and read them: `Component[type=Filter,name=Pre]/Node[id=gain]/...`. An item of a
/// list is selected by the texts that identify it, by its position, counted from 1, or by both: `[id=gain][2]` is the
/// second of those. docs/paths.md describes them.
namespace Paths {

/// The steps to the items of a list, one after the other, each of which is unique. An item with a long identity is
/// selected by its position. Keeps the identities, but not the steps.
class ItemSteps
{
public:
    explicit ItemSteps(const JobXml::MemberView &list);

    /// The step to the next item; call it at most once for each.
    QString next();

private:
    /// Null if the item is selected by its position.
    QString identityAt(int index) const;

    struct Alike
    {
        int count = 0;
        int passed = 0;
    };

    JobXml::MemberView m_list;
    QHash<QString, Alike> m_alike; // by identity
    int m_next = 0;
};

/// The steps to all items of a list.
QStringList stepsTo(const JobXml::MemberView &list);

/// The identity of an object among its siblings: "type=Filter,name=Pre". Null if a text of it is missing. Values are
/// identified by their content.
QString identityOf(const JobXml::DataObject &object);

/// "unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?"
QString unknownMember(const QString &name, const QString &className, const QStringList &known);

/// The result of a path.
struct Target
{
    QVector<JobXml::Step> steps; ///< from the root; the last one is the member, with an index if it is an item
    QString path; ///< complete
    JobXml::MemberView member;

    bool isItem() const { return steps.last().index >= 0; }
};

/// Finds the member of a path. The chosen alternative needs no step of its own, and a list with one item no selection.
/// Throws PathFailure.
Target find(const JobXml::DataObject &root, const QString &path);

/// The member at the end of the steps, if it exists.
std::optional<JobXml::MemberView> at(const JobXml::DataObject &root, const QVector<JobXml::Step> &steps);

/// Calls the action with the MemberEditor of the target's member; all objects on the way count as set afterwards.
template <class Action>
void edit(JobXml::DataObject &root, const Target &target, Action &&action, int depth = 0)
{
    const JobXml::Step &step = target.steps[depth];
    JobXml::visit(root, [&](JobXml::MemberEditor &member) {
        if (member.GetName() != step.member)
            return;
        if (depth + 1 == target.steps.size())
            action(member);
        else
            edit(member.EditChild(step.index < 0 ? 0 : step.index), target, action, depth + 1);
    });
}

} // namespace Paths
