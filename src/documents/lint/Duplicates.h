// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include <QVarLengthArray>

#include <jobxml/DataObject.h>

#include "documents/lint/LintedObject.h"

/// Finds items of a list that are the same. What makes them so is a key: a class with has(), whether an item has any,
/// and hash(), isSame() and compare().
namespace TunerDocuments::ObjectRules {

/// The same as findDuplicates(), for a few items: compares each with each.
template <class Key, class Found>
void findDuplicatesAmongFew(const std::vector<LintedItem> &items, const Key &key, const Found &found)
{
    for (std::size_t i = 1; i < items.size(); ++i) {
        for (std::size_t earlier = 0; key.has(items[i]) && earlier < i; ++earlier) {
            if (key.has(items[earlier]) && key.isSame(items[i], items[earlier])) {
                found(int(i), int(earlier));
                break;
            }
        }
    }
}

/// Calls `found(item, earlier)` for each item that has the same key as an earlier one, with the first of these. Takes
/// time in proportion to the size of the keys, however many are the same or have the same hash.
template <class Key, class Found>
void findDuplicates(const std::vector<LintedItem> &items, const Key &key, const Found &found)
{
    constexpr std::size_t mostAmongFew = 8;
    if (items.size() <= mostAmongFew)
        return findDuplicatesAmongFew(items, key, found);
    struct Entry
    {
        JobXml::HashValue hash;
        int index;
    };
    constexpr int few = 64;
    QVarLengthArray<Entry, few> entries;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (key.has(items[i]))
            entries.append({key.hash(items[i]), int(i)});
    }
    const auto compare = [&](const Entry &one, const Entry &other) {
        return key.compare(items[std::size_t(one.index)], items[std::size_t(other.index)]);
    };
    std::sort(entries.begin(), entries.end(), [&](const Entry &one, const Entry &other) {
        if (one.hash != other.hash)
            return one.hash < other.hash;
        const int order = compare(one, other);
        return order != 0 ? order < 0 : one.index < other.index;
    });
    std::vector<std::pair<int, int>> duplicates;
    for (int i = 1, first = 0; i < entries.size(); ++i) {
        if (entries[i].hash != entries[first].hash || compare(entries[i], entries[first]) != 0)
            first = i;
        else
            duplicates.emplace_back(entries[i].index, entries[first].index);
    }
    std::sort(duplicates.begin(), duplicates.end());
    for (const auto &duplicate : duplicates)
        found(duplicate.first, duplicate.second);
}

} // namespace TunerDocuments::ObjectRules
