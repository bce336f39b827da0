// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include <algorithm>
#include <numeric>

#include "documents/paths/Identity.h"
#include "documents/paths/ItemSteps.h"
#include "documents/paths/Notation.h"
#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

/// Where the last step and the value begin in a text that need not be complete.
struct Parts
{
    explicit Parts(const QString &text)
    {
        bool isInBrackets = false;
        bool isQuoted = false;
        for (int i = 0; i < text.size() && equalsSign < 0; ++i) {
            const QChar character = text.at(i);
            if (isQuoted && character == QLatin1Char('\\'))
                ++i;
            else if (character == QLatin1Char('"') && isInBrackets)
                isQuoted = !isQuoted;
            else if (!isQuoted && (character == QLatin1Char('[') || character == QLatin1Char(']')))
                isInBrackets = character == QLatin1Char('[');
            else if (!isInBrackets && character == QLatin1Char('/'))
                lastStep = i + 1;
            else if (!isInBrackets && character == QLatin1Char('='))
                equalsSign = i;
        }
    }

    int lastStep = 0;
    int equalsSign = -1; ///< its position; -1 for a path alone
};

/// The object in which the members of the next step are; null if there is none.
const DataObject *objectOf(const Target &target)
{
    const MemberView &member = target.member;
    if (target.isItem())
        return &member.GetChild(target.steps.last().index);
    return holdsObjects(member) && member.GetSize() == 1 ? &member.GetChild() : nullptr;
}

/// The steps to the items in every notation, the usual one first.
template <class Use>
void forEachNotation(const MemberView &list, const Use &use)
{
    if (use(ItemSteps(list)))
        return;
    QVector<QVector<Path::Condition>> texts;
    for (int i = 0; i < list.GetSize(); ++i)
        texts.append(identifyingTexts(list.GetChild(i)));
    const QString name = list.GetName();
    const int most = std::accumulate(texts.begin(), texts.end(), 0,
                                     [](int size, const auto &each) { return std::max(size, int(each.size())); });
    for (int which = 0; which < most; ++which) {
        QVector<QString> identities;
        for (const QVector<Path::Condition> &each : qAsConst(texts)) {
            const Path::Condition text = each.value(which);
            identities.append(text.text.isNull() ? QString() : written(text));
        }
        if (use(ItemSteps(name, identities)))
            return;
    }
    use(ItemSteps(name, QVector<QString>(list.GetSize())));
}

class Completer
{
public:
    Completer(const DataObject &root, const QString &beginning, Completing what)
        : m_root(root), m_typed(beginning), m_isAssignment(what == Completing::Assignment)
    {
    }

    QStringList complete()
    {
        const Parts parts(m_typed);
        if (parts.equalsSign >= 0) {
            if (m_isAssignment)
                addValues(parts.equalsSign);
            return m_found;
        }
        m_start = m_typed.left(parts.lastStep);
        m_rest = m_typed.mid(parts.lastStep);
        const DataObject *const object =
            m_start.isEmpty() ? &m_root : objectOf(find(m_root, m_start.chopped(int(qstrlen("/")))));
        if (object)
            addMembers(*object);
        return m_found;
    }

private:
    void addMembers(const DataObject &object)
    {
        visit(object, [this](const MemberView &member) { add(member); });
        // The chosen alternative needs no step.
        const auto chosen = chosenIn(object);
        if (m_found.isEmpty() && !m_rest.isEmpty() && chosen && chosen->GetSize() != 0)
            visit(chosen->GetChild(), [this](const MemberView &member) { add(member); });
    }

    void add(const MemberView &member)
    {
        if (!member.IsChosen() && !hasData(member))
            return;
        if (member.GetKind() == MemberKind::ObjectList)
            addItems(member);
        else if (!holdsObjects(member))
            addStep(member.GetName(), member.IsSet() || m_isAssignment,
                    m_isAssignment ? QStringLiteral("=") : QString());
        else
            addStep(member.GetName(), member.IsSet() && member.GetSize() != 0, QStringLiteral("/"));
    }

    void addItems(const MemberView &list)
    {
        const QString name = list.GetName();
        const bool mayFit =
            m_rest.size() <= name.size() ? name.startsWith(m_rest) : m_rest.startsWith(name + QLatin1Char('['));
        if (!mayFit)
            return;
        forEachNotation(list, [&](const ItemSteps &steps) {
            const auto before = m_found.size();
            for (int i = 0; i < list.GetSize(); ++i)
                addStep(steps.at(i), true, QStringLiteral("/"));
            return m_found.size() > before;
        });
    }

    void addStep(const QString &step, bool isThere, const QString &end)
    {
        if (isThere && step.startsWith(m_rest))
            m_found.append(m_start + step + end);
    }

    /// The names that the member accepts, of a list the next one.
    void addValues(int equalsSign)
    {
        const MemberView member = find(m_root, m_typed.left(equalsSign)).member;
        const int comma =
            member.GetKind() == MemberKind::EnumerationList ? int(m_typed.lastIndexOf(QLatin1Char(','))) : -1;
        const int begin = std::max(equalsSign, comma) + 1;
        m_start = m_typed.left(begin);
        m_rest = m_typed.mid(begin);
        const QStringList names = member.GetKind() == MemberKind::Boolean
            ? QStringList{QStringLiteral("true"), QStringLiteral("false")}
            : member.GetNames();
        for (const QString &name : names)
            addStep(name, true, QString());
    }

    const DataObject &m_root;
    const QString &m_typed;
    const bool m_isAssignment;
    QString m_start; ///< what stays as it was typed
    QString m_rest; ///< what is completed
    QStringList m_found;
};

} // namespace

QStringList completions(const DataObject &root, const QString &beginning, Completing what)
{
    try {
        return Completer(root, beginning, what).complete();
    } catch (const PathFailure &) {
        return {};
    }
}

std::optional<Assignment> assignmentIn(const QString &text)
{
    const int equalsSign = Parts(text).equalsSign;
    if (equalsSign < 0)
        return std::nullopt;
    return Assignment{text.left(equalsSign), text.mid(equalsSign + 1)};
}

} // namespace TunerDocuments::Paths
