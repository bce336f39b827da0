// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "documents/paths/ItemSteps.h"
#include "documents/paths/Notation.h"
#include "documents/paths/Parser.h"
#include "documents/paths/Selection.h"
#include "documents/values/FindMember.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

QStringList namesIn(const DataObject &object)
{
    QStringList names;
    visit(object, [&](const MemberView &member) { names.append(member.GetName()); });
    return names;
}

/// Follows the steps from the root.
class Finder
{
public:
    explicit Finder(const DataObject &root) : m_object(&root) { }

    Target find(const QVector<Path::Step> &steps)
    {
        for (int i = 0; i < steps.size(); ++i) {
            try {
                go(steps[i], i + 1 == steps.size());
            } catch (const PathFailure &failure) {
                const QString tried = written(steps[i]);
                throw PathFailure((m_path.isEmpty() ? tried : m_path + QLatin1Char('/') + tried) + QStringLiteral(": ")
                                  + failure.text());
            }
        }
        return {m_steps, m_path, *m_member};
    }

private:
    void go(const Path::Step &step, bool isLast)
    {
        if (hasAsterisk(step))
            throw PathFailure(QStringLiteral("a pattern does not select a single member"));
        const MemberView member = memberOf(step);
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        if (choosesItem(step) && !isList)
            throw PathFailure(QStringLiteral("'%1' is not a list of objects").arg(step.member));
        if (member.GetKind() == MemberKind::Alternative && !member.IsChosen() && !hasData(member))
            throw notChosen();
        m_member.emplace(member);
        if (isList && (choosesItem(step) || !isLast)) {
            const int index = itemOf(member, step);
            add({member.GetName(), index}, stepTo(member, index));
            m_object = &member.GetChild(index);
        } else if (isLast) {
            add({member.GetName(), -1}, member.GetName());
        } else if (member.GetKind() == MemberKind::Object || member.GetKind() == MemberKind::Alternative) {
            enter(member);
        } else {
            throw PathFailure(QStringLiteral("is a value and has no members"));
        }
    }

    /// The member of that name, or of that name in the chosen alternative, which needs no step.
    MemberView memberOf(const Path::Step &step)
    {
        if (const auto own = memberNamed(*m_object, step.member))
            return *own;
        const auto chosen = chosenIn(*m_object);
        if (!chosen || chosen->GetSize() == 0)
            throw PathFailure(unknownMember(step.member, m_object->GetObjectName(), namesIn(*m_object)));
        const auto inChosen = memberNamed(chosen->GetChild(), step.member);
        if (!inChosen)
            throw PathFailure(unknownMember(step.member, chosen->GetName(), namesIn(chosen->GetChild())));
        enter(*chosen);
        return *inChosen;
    }

    PathFailure notChosen() const
    {
        const auto chosen = chosenIn(*m_object);
        return PathFailure(chosen ? QStringLiteral("the item holds a %1").arg(chosen->GetName())
                                  : QStringLiteral("the item has no value"));
    }

    void enter(const MemberView &member)
    {
        if (member.GetSize() == 0)
            throw PathFailure(QStringLiteral("has no data"));
        add({member.GetName(), -1}, member.GetName());
        m_object = &member.GetChild();
    }

    void add(const Step &step, const QString &text)
    {
        m_steps.append(step);
        m_path += (m_path.isEmpty() ? QString() : QStringLiteral("/")) + text;
    }

    const DataObject *m_object;
    std::optional<MemberView> m_member;
    QVector<Step> m_steps;
    QString m_path;
};

} // namespace

QString unknownMember(const QString &name, const QString &className, const QStringList &known)
{
    const QString meant = Suggestion::hint(name, known);
    return QStringLiteral("unknown member '%1' of %2").arg(name, className)
        + (meant.isNull() ? QStringLiteral("; expected ") + Suggestion::listed(known) : meant);
}

bool Target::holdsObjects() const
{
    return isItem() || TunerDocuments::holdsObjects(member);
}

Target find(const DataObject &root, const QString &path)
{
    return Finder(root).find(parsed(path));
}

std::optional<MemberView> at(const DataObject &root, const QVector<Step> &steps)
{
    const DataObject *object = &root;
    std::optional<MemberView> member;
    for (int i = 0; i < steps.size(); ++i) {
        member = memberNamed(*object, steps[i].member);
        const int index = qMax(steps[i].index, 0);
        const bool isLast = i + 1 == steps.size();
        if (!member || (!isLast && index >= member->GetSize()))
            return {};
        if (!isLast)
            object = &member->GetChild(index);
    }
    return member;
}

} // namespace TunerDocuments::Paths
