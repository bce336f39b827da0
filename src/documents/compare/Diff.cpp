// SPDX-License-Identifier: MIT
#include <tunerdocuments/Diff.h>

#include <vector>

#include <QHash>
#include <QStringList>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/compare/ObjectPlace.h"
#include "documents/compare/Pairs.h"

using namespace JobXml;

namespace TunerDocuments {

const DataObject *DifferencePlace::object() const
{
    if (!member || !holdsObjects(*member))
        return nullptr;
    const int index = member->GetKind() == MemberKind::ObjectList ? position() : 0;
    return index >= 0 && index < member->GetSize() ? &member->GetChild(index) : nullptr;
}

namespace {

struct Places
{
    ObjectPlace first{};
    ObjectPlace second{};

    Places below(const MemberView &member) const { return {first.below(member), second.below(member)}; }
};

class Comparison
{
public:
    explicit Comparison(const std::function<void(const Difference &)> &action) : m_action(action) { }

    /// `isRenamed`: whether the identity of the objects was reported already.
    void compare(const DataObject &first, const DataObject &second, const Places &places, bool isRenamed = false)
    {
        const std::vector<MemberView> ofFirst = membersOf(first);
        const std::vector<MemberView> ofSecond = membersOf(second);
        for (std::size_t i = 0; i < ofFirst.size(); ++i) {
            if (!isRenamed || !ofFirst[i].IsIdentifying())
                compare(ofFirst[i], ofSecond[i], places, isRenamed && ofFirst[i].IsChosen());
        }
    }

private:
    void compare(const MemberView &first, const MemberView &second, const Places &parent, bool isRenamed)
    {
        switch (first.GetKind()) {
        case MemberKind::Choice:
            note(first, second, parent, choice(first), choice(second));
            break;
        case MemberKind::Object:
        case MemberKind::Alternative:
            compareObjects(first, second, parent, isRenamed);
            break;
        case MemberKind::ObjectList:
            compareLists(first, second, parent);
            break;
        default:
            note(first, second, parent, ValueText::ofMember(first), ValueText::ofMember(second));
        }
    }

    // The choice is shown without quotes: it is the kind of value that the item holds.
    static QString choice(const MemberView &member)
    {
        return member.IsSet() ? member.GetValue().toString() : QStringLiteral("(nothing)");
    }

    void compareObjects(const MemberView &first, const MemberView &second, const Places &parent, bool isRenamed)
    {
        const QString before = Contents::textOfChild(first);
        const QString after = Contents::textOfChild(second);
        if (!before.isEmpty() && !after.isEmpty()) {
            const auto flag = [](const MemberView &member) {
                return member.IsSet() ? QStringLiteral("(set)") : ValueText::notSet();
            };
            note(first, second, parent, flag(first), flag(second), true);
            compare(first.GetChild(), second.GetChild(), parent.below(first), isRenamed);
        } else if (first.IsSet() && !second.IsSet() && after.isEmpty()) {
            m_action(difference(Difference::Removed, first, second, parent, before, QString()));
        } else if (second.IsSet() && !first.IsSet() && before.isEmpty()) {
            m_action(difference(Difference::Added, first, second, parent, QString(), after));
        } else {
            const auto whole = [](const MemberView &member, const QString &text) {
                return QLatin1Char('{') + text + QLatin1Char('}')
                    + (member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet());
            };
            note(first, second, parent, whole(first, before), whole(second, after));
        }
    }

    /// Two lists that are being compared.
    struct Lists
    {
        Lists(const MemberView &listInFirst, const MemberView &listInSecond, const Places &object)
            : first(listInFirst), second(listInSecond), parent(object), stepsInFirst(Paths::stepsTo(first)),
              stepsInSecond(Paths::stepsTo(second)), pairs(first, second), moved(pairs.moved())
        {
            if (first.IsSet() != second.IsSet() && !(isUsual(first) && isUsual(second)))
                return; // the flags are a difference of their own
            if (!isUsual(first))
                firstIsSet = first.IsSet();
            if (!isUsual(second))
                secondIsSet = second.IsSet();
        }

        static bool isUsual(const MemberView &list) { return list.IsSet() == (list.GetSize() != 0); }

        ObjectPlace inFirst(int index) const
        {
            return parent.first.below(stepsInFirst[index], {first.GetName(), index});
        }
        ObjectPlace inSecond(int index) const
        {
            return parent.second.below(stepsInSecond[index], {first.GetName(), index});
        }

        const MemberView &first;
        const MemberView &second;
        const Places &parent;
        const QStringList stepsInFirst;
        const QStringList stepsInSecond;
        const Pairs pairs;
        const QVector<bool> moved;
        std::optional<bool> firstIsSet{};
        std::optional<bool> secondIsSet{};
    };

    void compareLists(const MemberView &first, const MemberView &second, const Places &parent)
    {
        compareFlags(first, second, parent);
        const Lists lists(first, second, parent);
        // An added item follows the item that precedes it in the second list.
        QHash<int, QVector<int>> added;
        for (int i = 0, previous = -1; i < second.GetSize(); ++i) {
            if (lists.pairs.ofSecond(i) >= 0)
                previous = lists.pairs.ofSecond(i);
            else
                added[previous].append(i);
        }
        for (int i = -1, next = 0; i < first.GetSize(); i = next++) {
            if (i >= 0)
                compareItems(lists, i, lists.pairs.ofFirst(i));
            for (; next < first.GetSize() && lists.pairs.ofFirst(next) < 0; ++next)
                noteRemoved(lists, next);
            const QVector<int> here = added.value(i);
            for (const int index : here)
                noteAdded(lists, index);
        }
    }

    void noteRemoved(const Lists &lists, int index)
    {
        const ObjectPlace place = lists.inFirst(index);
        Difference removed;
        removed.kind = Difference::Removed;
        removed.path = place.path;
        removed.secondPath = lists.parent.second.below(lists.stepsInFirst[index], {}).path;
        removed.before = itemContents(lists.first.GetChild(index));
        removed.first = {place.steps, lists.first};
        removed.firstListIsSet = lists.firstIsSet;
        removed.secondListIsSet = lists.secondIsSet;
        m_action(removed);
    }

    void noteAdded(const Lists &lists, int index)
    {
        const ObjectPlace place = lists.inSecond(index);
        Difference added;
        added.kind = Difference::Added;
        added.path = lists.parent.first.below(lists.stepsInSecond[index], {}).path;
        added.secondPath = place.path;
        added.after = itemContents(lists.second.GetChild(index));
        added.second = {place.steps, lists.second};
        added.firstListIsSet = lists.firstIsSet;
        added.secondListIsSet = lists.secondIsSet;
        m_action(added);
    }

    void compareItems(const Lists &lists, int i, int j)
    {
        const Places places{lists.inFirst(i), lists.inSecond(j)};
        const auto noteItem = [&](Difference::Kind kind, const QString &before, const QString &after) {
            Difference noted;
            noted.kind = kind;
            noted.path = places.first.path;
            noted.secondPath = places.second.path;
            noted.before = before;
            noted.after = after;
            noted.first = {places.first.steps, lists.first};
            noted.second = {places.second.steps, lists.second};
            m_action(noted);
        };
        if (lists.moved[i])
            noteItem(Difference::Moved, QString::number(i + 1), QString::number(j + 1));
        if (lists.pairs.isRenamed(i))
            noteItem(Difference::Renamed, lists.stepsInFirst[i], lists.stepsInSecond[j]);
        compare(lists.first.GetChild(i), lists.second.GetChild(j), places, lists.pairs.isRenamed(i));
    }

    // Added and removed items describe the list; a difference of the flags alone is reported here.
    void compareFlags(const MemberView &first, const MemberView &second, const Places &parent)
    {
        if (first.IsSet() == second.IsSet() || (Lists::isUsual(first) && Lists::isUsual(second)))
            return;
        const auto text = [](const MemberView &list) {
            const QString size =
                list.GetSize() == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(list.GetSize());
            return list.IsSet() ? size : size + QLatin1Char(' ') + ValueText::notSet();
        };
        note(first, second, parent, text(first), text(second), true);
    }

    static QString itemContents(const DataObject &item)
    {
        return Contents::text(item, Contents::Amount::Brief, Paths::identityOf(item).isNull());
    }

    static Difference difference(Difference::Kind kind, const MemberView &first, const MemberView &second,
                                 const Places &parent, const QString &before, const QString &after)
    {
        const Places places = parent.below(first);
        Difference result;
        result.kind = kind;
        result.path = places.first.path;
        result.secondPath = places.second.path;
        result.before = before;
        result.after = after;
        result.first = {places.first.steps, first};
        result.second = {places.second.steps, second};
        return result;
    }

    void note(const MemberView &first, const MemberView &second, const Places &parent, const QString &before,
              const QString &after, bool isFlagOnly = false)
    {
        if (before == after)
            return;
        Difference changed = difference(Difference::Changed, first, second, parent, before, after);
        changed.isFlagOnly = isFlagOnly;
        m_action(changed);
    }

    const std::function<void(const Difference &)> &m_action;
};

} // namespace

QString Difference::text() const
{
    const auto afterColon = [](const QString &text) {
        return text.isEmpty() ? QString() : QStringLiteral(": ") + text;
    };
    switch (kind) {
    case Removed:
        return QStringLiteral("- ") + path + afterColon(before);
    case Added:
        return QStringLiteral("+ ") + path
            + (second.position() < 0 ? QString() : QStringLiteral(" (at %1)").arg(second.position() + 1))
            + afterColon(after);
    case Changed: {
        // The choice is what its item holds, so the path is that of the item.
        const bool isChoice = first.member && first.member->GetKind() == MemberKind::Choice;
        const QString place = isChoice ? path.left(path.lastIndexOf(QLatin1Char('/'))) : path;
        return QStringLiteral("~ ") + place + QStringLiteral(": ") + before + QStringLiteral(" -> ") + after;
    }
    case Renamed:
        return QStringLiteral("~ ") + path + QStringLiteral(": renamed to ") + after;
    case Moved:
        break;
    }
    return QStringLiteral("> ") + path
        + (before == after ? QStringLiteral(": moved among its neighbors")
                           : QStringLiteral(": moved from %1 to %2").arg(before, after));
}

QVector<Difference> findDifferences(const DataObject &first, const DataObject &second)
{
    QVector<Difference> differences;
    findDifferences(first, second, [&](const Difference &difference) { differences.append(difference); });
    return differences;
}

void findDifferences(const DataObject &first, const DataObject &second,
                     const std::function<void(const Difference &)> &action)
{
    Comparison(action).compare(first, second, {});
}

} // namespace TunerDocuments
