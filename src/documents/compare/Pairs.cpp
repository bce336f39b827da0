// SPDX-License-Identifier: MIT
#include "documents/compare/Pairs.h"

#include <algorithm>
#include <iterator>

#include <QHash>
#include <QSet>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/values/StayingItems.h"

using namespace JobXml;

namespace TunerDocuments {

// --- Renamed items ---------------------------------------------------------------------------------------------------

/// The items that are not paired by their identities, and what they contain besides.
class Pairs::Renames
{
public:
    Renames(Pairs &pairs, const MemberView &first, const MemberView &second)
        : m_pairs(pairs), m_first(itemsOf(first, pairs.m_ofFirst)),
          m_second(m_first.isEmpty() ? QVector<Item>() : itemsOf(second, pairs.m_ofSecond))
    {
    }

    void find()
    {
        if (m_second.isEmpty())
            return;
        pairAlike([](const Item &item) { return item.features; });
        pairAlike([](const Item &item) { return item.withoutNames; });
        pairSimilar();
    }

private:
    using Features = QVector<HashValue>; // hashes, sorted

    struct Item
    {
        int index;
        QString alternative; ///< the kind of value: another one is another item
        Features features{}; ///< of all values in it, without its own identity
        Features withoutNames{}; ///< the same without any identity
        bool isPaired = false;
    };

    struct Candidate
    {
        double similarity;
        int first;
        int second;
    };

    static QVector<Item> itemsOf(const MemberView &list, const QVector<int> &pairs)
    {
        QVector<Item> items;
        for (int i = 0; i < pairs.size(); ++i) {
            if (pairs[i] >= 0 || Paths::identityOf(list.GetChild(i)).isNull())
                continue;
            const auto chosen = chosenIn(list.GetChild(i));
            Item item{i, chosen ? QString(chosen->GetName()) : QString()};
            addFeatures(list.GetChild(i), false, item);
            std::sort(item.features.begin(), item.features.end());
            std::sort(item.withoutNames.begin(), item.withoutNames.end());
            items.append(item);
        }
        return items;
    }

    static void addFeatures(const DataObject &object, bool withIdentity, Item &item)
    {
        visit(object, [&](const MemberView &member) {
            const bool isChosen = member.GetKind() == MemberKind::Alternative && member.IsChosen();
            if (holdsObjects(member)) {
                for (int i = 0; i < member.GetSize(); ++i)
                    addFeatures(member.GetChild(i), withIdentity || !isChosen, item);
            } else if ((withIdentity || !member.IsIdentifying()) && Contents::differsFromDefault(member)) {
                const HashValue feature = qHash(member.GetName() + QLatin1Char(' ') + ValueText::ofMember(member));
                item.features.append(feature);
                if (!member.IsIdentifying())
                    item.withoutNames.append(feature);
            }
        });
    }

    /// Pairs items of which these features are the same, in order.
    template <class Key>
    void pairAlike(Key keyOf)
    {
        QHash<QPair<QString, Features>, QVector<int>> waiting; // the last one first
        for (int i = int(m_second.size()) - 1; i >= 0; --i) {
            if (!m_second[i].isPaired && !keyOf(m_second[i]).isEmpty())
                waiting[{m_second[i].alternative, keyOf(m_second[i])}].append(i);
        }
        for (int i = 0; i < m_first.size(); ++i) {
            const auto found =
                m_first[i].isPaired ? waiting.end() : waiting.find({m_first[i].alternative, keyOf(m_first[i])});
            if (found == waiting.end() || found->isEmpty())
                continue;
            const int other = found->takeLast();
            if (similarity(m_first[i], m_second[other]) > leastSimilarity)
                pair(i, other);
        }
    }

    void pairSimilar()
    {
        QVector<Candidate> candidates;
        const auto add = [&](int first, int second) {
            if (m_first[first].isPaired || m_second[second].isPaired)
                return;
            const double howMuch = similarity(m_first[first], m_second[second]);
            if (howMuch > leastSimilarity)
                candidates.append({howMuch, first, second});
        };
        forEachLikelyPair(add);
        // The same pairs in both directions: candidates that are equal in this order have no item in common.
        std::sort(candidates.begin(), candidates.end(), [](const Candidate &one, const Candidate &other) {
            const auto key = [](const Candidate &candidate) {
                return std::make_tuple(-candidate.similarity, candidate.first + candidate.second,
                                       std::abs(candidate.first - candidate.second));
            };
            return key(one) < key(other);
        });
        for (const Candidate &candidate : qAsConst(candidates)) {
            if (!m_first[candidate.first].isPaired && !m_second[candidate.second].isPaired)
                pair(candidate.first, candidate.second);
        }
    }

    /// All pairs of short lists; of others, those that have a value in common that few items have.
    template <class Action>
    void forEachLikelyPair(const Action &action) const
    {
        constexpr int mostPairs = 1024;
        constexpr int mostItemsWithFeature = 4;
        if (qint64(m_first.size()) * m_second.size() <= mostPairs) {
            for (int i = 0; i < m_first.size(); ++i) {
                for (int j = 0; j < m_second.size(); ++j)
                    action(i, j);
            }
            return;
        }
        const auto placesOf = [](const QVector<Item> &items) {
            QHash<HashValue, QVector<int>> places;
            for (int i = 0; i < items.size(); ++i) {
                for (const HashValue feature : items[i].features) {
                    QVector<int> &known = places[feature];
                    if (known.size() <= mostItemsWithFeature && (known.isEmpty() || known.last() != i))
                        known.append(i);
                }
            }
            return places;
        };
        const QHash<HashValue, QVector<int>> inFirst = placesOf(m_first);
        const QHash<HashValue, QVector<int>> inSecond = placesOf(m_second);
        QSet<QPair<int, int>> seen;
        for (auto feature = inFirst.begin(); feature != inFirst.end(); ++feature) {
            const QVector<int> others = inSecond.value(feature.key());
            if (feature->size() > mostItemsWithFeature || others.size() > mostItemsWithFeature)
                continue;
            for (const int i : *feature) {
                for (const int j : others) {
                    if (!seen.contains({i, j})) {
                        seen.insert({i, j});
                        action(i, j);
                    }
                }
            }
        }
    }

    /// How much of the larger one both have.
    static double similarity(const Item &first, const Item &second)
    {
        if (first.alternative != second.alternative)
            return 0;
        Features common;
        std::set_intersection(first.features.begin(), first.features.end(), second.features.begin(),
                              second.features.end(), std::back_inserter(common));
        const auto larger = std::max(first.features.size(), second.features.size());
        return larger == 0 ? 0 : double(common.size()) / double(larger);
    }

    void pair(int first, int second)
    {
        m_first[first].isPaired = true;
        m_second[second].isPaired = true;
        m_pairs.add(m_first[first].index, m_second[second].index);
        m_pairs.m_isRenamed[m_first[first].index] = true;
    }

    static constexpr double leastSimilarity = 0.5;

    Pairs &m_pairs;
    QVector<Item> m_first;
    QVector<Item> m_second;
};

// --- All items -------------------------------------------------------------------------------------------------------

Pairs::Pairs(const MemberView &first, const MemberView &second)
    : m_ofFirst(first.GetSize(), -1), m_ofSecond(second.GetSize(), -1), m_isRenamed(first.GetSize(), false)
{
    pairByKey(first, second, [](const DataObject &item) { return Paths::identityOf(item); });
    Renames(*this, first, second).find();
    pairByKey(first, second, [](const DataObject &item) {
        return Paths::identityOf(item).isNull() ? QLatin1Char('{') + Contents::text(item, Contents::Amount::Whole, true)
                                                : QString();
    });
    pairByKey(first, second,
              [](const DataObject &item) { return Paths::identityOf(item).isNull() ? QStringLiteral("") : QString(); });
}

template <class Key>
void Pairs::pairByKey(const MemberView &first, const MemberView &second, Key keyOf)
{
    QHash<QString, QVector<int>> waiting; // the last one first
    for (int i = int(m_ofSecond.size()) - 1; i >= 0; --i) {
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
        if (found != waiting.end() && !found->isEmpty())
            add(i, found->takeLast());
    }
}

QVector<bool> Pairs::moved() const
{
    QVector<bool> result = stayingItems(m_ofFirst, int(m_ofSecond.size()));
    for (int i = 0; i < result.size(); ++i)
        result[i] = m_ofFirst[i] >= 0 && !result[i];
    return result;
}

} // namespace TunerDocuments
