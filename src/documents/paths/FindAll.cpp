// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "documents/paths/ItemSteps.h"
#include "documents/paths/Selection.h"
#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

/// Follows all branches of a pattern.
class Matcher
{
public:
    explicit Matcher(const QVector<Path::Step> &steps) : m_pattern(steps) { }

    QVector<Target> match(const DataObject &root)
    {
        go(root, 0);
        return m_found;
    }

private:
    void go(const DataObject &object, int depth)
    {
        const Path::Step &step = m_pattern.at(depth);
        bool isOwnMember = false;
        visit(object, [&](const MemberView &member) {
            if (!selectsMember(step, member))
                return;
            isOwnMember = true;
            if (member.IsSet())
                enter(member, step, depth);
        });
        if (isOwnMember)
            return;
        // The chosen alternative needs no step.
        if (const auto chosen = chosenIn(object); chosen && chosen->GetSize() != 0) {
            push({chosen->GetName(), -1}, chosen->GetName());
            go(chosen->GetChild(), depth);
            pop();
        }
    }

    void enter(const MemberView &member, const Path::Step &step, int depth)
    {
        const bool isLast = depth + 1 == m_pattern.size();
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        const bool selectsItems = step.isAll || choosesItem(step);
        if (selectsItems && !isList)
            return;
        if (!isList || (isLast && !selectsItems)) {
            push({member.GetName(), -1}, member.GetName());
            if (isLast)
                m_found.append({m_steps, m_path.join(QLatin1Char('/')), member});
            else if (member.GetSize() != 0 && !isList)
                go(member.GetChild(), depth + 1);
            pop();
            return;
        }
        QVector<int> fitting = fittingItems(member, step);
        if (step.position > 0)
            fitting = fitting.mid(step.position - 1);
        if (fitting.isEmpty())
            return;
        if (fitting.size() == 1)
            return enterItem(member, fitting.first(), stepTo(member, fitting.first()), depth);
        const ItemSteps steps(member);
        for (const int item : qAsConst(fitting))
            enterItem(member, item, steps.at(item), depth);
    }

    void enterItem(const MemberView &list, int item, const QString &step, int depth)
    {
        push({list.GetName(), item}, step);
        if (depth + 1 == m_pattern.size())
            m_found.append({m_steps, m_path.join(QLatin1Char('/')), list});
        else
            go(list.GetChild(item), depth + 1);
        pop();
    }

    void push(const Step &step, const QString &text)
    {
        m_steps.append(step);
        m_path.append(text);
    }

    void pop()
    {
        m_steps.removeLast();
        m_path.removeLast();
    }

    const QVector<Path::Step> &m_pattern;
    QVector<Step> m_steps;
    QStringList m_path;
    QVector<Target> m_found;
};

} // namespace

QVector<Target> findAll(const DataObject &root, const Path &pattern)
{
    return pattern.steps().isEmpty() ? QVector<Target>() : Matcher(pattern.steps()).match(root);
}

} // namespace TunerDocuments::Paths
