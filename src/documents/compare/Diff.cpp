// SPDX-License-Identifier: MIT
#include <tunerdocuments/Diff.h>

#include <algorithm>
#include <vector>

#include <QHash>
#include <QStringList>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

using namespace JobXml;

namespace TunerDocuments {

namespace {

bool holdsObjects(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Object:
    case MemberKind::ObjectList:
    case MemberKind::Alternative:
        return true;
    default:
        return false;
    }
}

std::vector<MemberView> membersOf(const DataObject &object)
{
    std::vector<MemberView> members;
    visit(object, [&](const MemberView &member) { members.push_back(member); });
    return members;
}

// --- What an object holds, on one line -------------------------------------------------------------------------------

/// Whether the member is set or its value is not the default.
bool differsFromDefault(const MemberView &member)
{
    return member.IsSet() || ValueText::ofValue(member.GetValue()) != ValueText::ofValue(member.GetDefaultValue());
}

enum class Contents {
    Brief, ///< lists are shown by their size
    Whole,
};

QString contents(const DataObject &object, Contents how, bool withIdentity);

QString contents(const MemberView &member, Contents how)
{
    const QString flag = member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet();
    if (member.GetKind() != MemberKind::ObjectList) {
        const bool isChosen = member.GetKind() == MemberKind::Alternative && member.IsChosen();
        // The path of an item contains its identity, which is that of the chosen alternative.
        const QString child =
            member.GetSize() == 0 ? QString() : contents(member.GetChild(), how, how == Contents::Whole || !isChosen);
        if (how == Contents::Brief && isChosen && member.IsSet())
            return member.GetName() + (child.isEmpty() ? QString() : QLatin1Char(' ') + child);
        return child.isEmpty() && !member.IsSet()
            ? QString()
            : member.GetName() + QStringLiteral(" {") + child + QLatin1Char('}') + flag;
    }
    if (member.GetSize() == 0 && !member.IsSet())
        return QString();
    if (how == Contents::Brief)
        return QString::number(member.GetSize()) + QLatin1Char(' ') + member.GetName() + flag;
    QStringList items;
    for (int i = 0; i < member.GetSize(); ++i)
        items.append(QLatin1Char('{') + contents(member.GetChild(i), how, true) + QLatin1Char('}'));
    return member.GetName() + QStringLiteral(" [") + items.join(QStringLiteral(", ")) + QLatin1Char(']') + flag;
}

/// Empty for an object that is equal to a new one.
QString contents(const DataObject &object, Contents how, bool withIdentity)
{
    QStringList parts;
    visit(object, [&](const MemberView &member) {
        QString part;
        if (holdsObjects(member))
            part = contents(member, how);
        else if (member.GetKind() == MemberKind::Choice)
            part = how == Contents::Whole && member.IsSet() ? ValueText::ofMember(member) : QString();
        else if ((withIdentity || !member.IsIdentifying()) && differsFromDefault(member))
            part = member.GetName() + QLatin1Char(' ') + ValueText::ofMember(member);
        if (!part.isEmpty())
            parts.append(part);
    });
    return parts.join(QStringLiteral(", "));
}

// --- Which items belong together -------------------------------------------------------------------------------------

/// The pairs of items of two lists: for each item the index of the other one, or -1.
class Pairs
{
public:
    Pairs(const MemberView &first, const MemberView &second)
        : m_ofFirst(first.GetSize(), -1), m_ofSecond(second.GetSize(), -1)
    {
        pairByKey(first, second, [](const DataObject &item) { return Paths::identityOf(item); });
        pairByKey(first, second, [](const DataObject &item) {
            return Paths::identityOf(item).isNull() ? QLatin1Char('{') + contents(item, Contents::Whole, true)
                                                    : QString();
        });
        pairByKey(first, second, [](const DataObject &item) {
            return Paths::identityOf(item).isNull() ? QStringLiteral("") : QString();
        });
    }

    int ofFirst(int index) const { return m_ofFirst[index]; }
    int ofSecond(int index) const { return m_ofSecond[index]; }

    /// Which items of the first list have to be moved to their position in the second one. As few as possible are
    /// moved, preferably those whose position differs.
    QVector<bool> moved() const
    {
        // The items that stay form the heaviest sequence with increasing positions in the second list: each item weighs
        // more than all unchanged positions together. best[i] ends the heaviest sequence in a range of positions that
        // ends with i, as in a binary indexed tree.
        const int size = m_ofFirst.size();
        QVector<int> best(m_ofSecond.size() + 1, -1);
        QVector<int> previous(size, -1);
        QVector<qint64> weight(size, 0);
        int last = -1;
        const auto heavier = [&](int one, int other) {
            return other < 0 || (one >= 0 && weight[one] > weight[other]) ? one : other;
        };
        for (int i = 0; i < size; ++i) {
            const int position = m_ofFirst[i];
            if (position < 0)
                continue;
            for (int end = position; end > 0; end -= end & -end)
                previous[i] = heavier(best[end], previous[i]);
            weight[i] = size + 1 + (position == i ? 1 : 0) + (previous[i] < 0 ? 0 : weight[previous[i]]);
            for (int end = position + 1; end < best.size(); end += end & -end)
                best[end] = heavier(i, best[end]);
            last = heavier(i, last);
        }
        QVector<bool> result(size);
        for (int i = 0; i < size; ++i)
            result[i] = m_ofFirst[i] >= 0;
        for (int i = last; i >= 0; i = previous[i])
            result[i] = false;
        return result;
    }

private:
    /// Pairs the unpaired items by a key, in order among those with the same key; a null key pairs nothing.
    template <class Key>
    void pairByKey(const MemberView &first, const MemberView &second, Key keyOf)
    {
        QHash<QString, QVector<int>> waiting; // the last one first
        for (int i = m_ofSecond.size() - 1; i >= 0; --i) {
            if (m_ofSecond[i] < 0) {
                const QString key = keyOf(second.GetChild(i));
                if (!key.isNull())
                    waiting[key].append(i);
            }
        }
        for (int i = 0; i < m_ofFirst.size() && !waiting.isEmpty(); ++i) {
            if (m_ofFirst[i] >= 0)
                continue;
            const QString key = keyOf(first.GetChild(i));
            const auto found = key.isNull() ? waiting.end() : waiting.find(key);
            if (found == waiting.end() || found->isEmpty())
                continue;
            m_ofFirst[i] = found->takeLast();
            m_ofSecond[m_ofFirst[i]] = i;
        }
    }

    QVector<int> m_ofFirst;
    QVector<int> m_ofSecond;
};

// --- Comparing -------------------------------------------------------------------------------------------------------

class Comparison
{
public:
    explicit Comparison(const std::function<void(const Difference &)> &action) : m_action(action) { }

    void compare(const DataObject &first, const DataObject &second, const QString &path)
    {
        const std::vector<MemberView> ofFirst = membersOf(first);
        const std::vector<MemberView> ofSecond = membersOf(second);
        for (std::size_t i = 0; i < ofFirst.size(); ++i)
            compare(ofFirst[i], ofSecond[i], path);
    }

private:
    void compare(const MemberView &first, const MemberView &second, const QString &parent)
    {
        const QString path = below(parent, first.GetName());
        switch (first.GetKind()) {
        case MemberKind::Choice:
            compareChoices(first, second, parent);
            break;
        case MemberKind::Object:
        case MemberKind::Alternative:
            compareObjects(first, second, path);
            break;
        case MemberKind::ObjectList:
            compareLists(first, second, parent);
            break;
        default:
            note(Difference::Changed, path, ValueText::ofMember(first), ValueText::ofMember(second));
        }
    }

    // The choice is shown without quotes and with the path of the item: it is the kind of value that the item holds.
    void compareChoices(const MemberView &first, const MemberView &second, const QString &item)
    {
        const auto name = [](const MemberView &choice) {
            return choice.IsSet() ? choice.GetValue().toString() : QStringLiteral("(nothing)");
        };
        note(Difference::Changed, item, name(first), name(second));
    }

    void compareObjects(const MemberView &first, const MemberView &second, const QString &path)
    {
        const auto inside = [](const MemberView &member) {
            return member.GetSize() == 0 ? QString() : contents(member.GetChild(), Contents::Brief, true);
        };
        const QString before = inside(first);
        const QString after = inside(second);
        if (!before.isEmpty() && !after.isEmpty()) {
            const auto flag = [](const MemberView &member) {
                return member.IsSet() ? QStringLiteral("(set)") : ValueText::notSet();
            };
            note(Difference::Changed, path, flag(first), flag(second));
            compare(first.GetChild(), second.GetChild(), path);
        } else if (first.IsSet() && !second.IsSet() && after.isEmpty()) {
            m_action({Difference::Removed, path, before, QString()});
        } else if (second.IsSet() && !first.IsSet() && before.isEmpty()) {
            m_action({Difference::Added, path, QString(), after});
        } else {
            const auto whole = [](const MemberView &member, const QString &text) {
                return QLatin1Char('{') + text + QLatin1Char('}')
                    + (member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet());
            };
            note(Difference::Changed, path, whole(first, before), whole(second, after));
        }
    }

    void compareLists(const MemberView &first, const MemberView &second, const QString &parent)
    {
        compareFlags(first, second, below(parent, first.GetName()));
        const QStringList stepsInFirst = Paths::stepsTo(first);
        const QStringList stepsInSecond = Paths::stepsTo(second);
        const Pairs pairs(first, second);
        const QVector<bool> moved = pairs.moved();
        // An added item follows the item that precedes it in the second list.
        QHash<int, QVector<int>> added;
        for (int i = 0, previous = -1; i < second.GetSize(); ++i) {
            if (pairs.ofSecond(i) >= 0)
                previous = pairs.ofSecond(i);
            else
                added[previous].append(i);
        }
        for (int i = -1; i < first.GetSize(); ++i) {
            if (i >= 0)
                compareItem(first, i, second, pairs.ofFirst(i), below(parent, stepsInFirst[i]), moved[i]);
            const QVector<int> here = added.value(i);
            for (const int index : here)
                m_action({Difference::Added, below(parent, stepsInSecond[index]), QString(),
                          itemContents(second.GetChild(index))});
        }
    }

    void compareItem(const MemberView &first, int i, const MemberView &second, int pair, const QString &path,
                     bool isMoved)
    {
        const DataObject &item = first.GetChild(i);
        if (pair < 0) {
            m_action({Difference::Removed, path, itemContents(item), QString()});
            return;
        }
        if (isMoved)
            m_action({Difference::Moved, path, QString::number(i + 1), QString::number(pair + 1)});
        compare(item, second.GetChild(pair), path);
    }

    // Added and removed items describe the list; a difference of the flags alone is reported here.
    void compareFlags(const MemberView &first, const MemberView &second, const QString &path)
    {
        const auto isUsual = [](const MemberView &list) { return list.IsSet() == (list.GetSize() != 0); };
        if (first.IsSet() == second.IsSet() || (isUsual(first) && isUsual(second)))
            return;
        const auto text = [](const MemberView &list) {
            const QString size =
                list.GetSize() == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(list.GetSize());
            return list.IsSet() ? size : size + QLatin1Char(' ') + ValueText::notSet();
        };
        note(Difference::Changed, path, text(first), text(second));
    }

    static QString itemContents(const DataObject &item)
    {
        return contents(item, Contents::Brief, Paths::identityOf(item).isNull());
    }

    static QString below(const QString &path, const QString &step)
    {
        return path.isEmpty() ? step : path + QLatin1Char('/') + step;
    }

    void note(Difference::Kind kind, const QString &path, const QString &before, const QString &after)
    {
        if (before != after)
            m_action({kind, path, before, after});
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
        return QStringLiteral("+ ") + path + afterColon(after);
    case Changed:
        return QStringLiteral("~ ") + path + QStringLiteral(": ") + before + QStringLiteral(" -> ") + after;
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
    Comparison(action).compare(first, second, QString());
}

} // namespace TunerDocuments
