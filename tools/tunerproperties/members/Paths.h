// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stdexcept>

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/Visit.h>

/// Why a path leads nowhere.
class PathFailure : public std::runtime_error
{
public:
    explicit PathFailure(const QString &text) : std::runtime_error(text.toStdString()) { }
    QString text() const { return QString::fromUtf8(what()); }
};

/// The ways to members, as people write and read them: `Component[type=Filter,name=Pre]/Node[id=gain]/...`. An item of
/// a list is told by the texts that identify it, by its place, counted from 1, or by both: `[id=gain][2]` is the second
/// of those alike. docs/paths.md tells more.
namespace Paths {

/// The steps to all items of a list, each of which leads to that item only. An item whose identity is long is told by
/// its place.
QStringList stepsTo(const JobXml::MemberView &list);

/// What identifies an object among its siblings: "type=Filter,name=Pre". Null if a text for it is missing. Values are
/// identified by what they hold.
QString identityOf(const JobXml::DataObject &object);

/// "unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?"
QString unknownMember(const QString &name, const QString &className, const QStringList &known);

/// What a path leads to.
struct Target
{
    QVector<JobXml::Step> steps; ///< from the root; the last one is the member, with an index if it is an item
    QString path; ///< in full
    JobXml::MemberView member;

    bool isItem() const { return steps.last().index >= 0; }
};

/// Finds it. The alternative that is chosen needs no step of its own, and a list with one item no choice of an item.
/// Throws PathFailure.
Target find(const JobXml::DataObject &root, const QString &path);

/// The member that the steps lead to, or nothing.
std::optional<JobXml::MemberView> at(const JobXml::DataObject &root, const QVector<JobXml::Step> &steps);

/// Gives the action the MemberEditor of the target's member; on the way, all that is passed counts as set.
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
