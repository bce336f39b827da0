// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QStringList>
#include <QVector>

#include "documents/values/StayingItems.h"

namespace TunerDocuments {

/// Arranges the text of a list of names. As many names as possible stay; others take the places of those that go, and
/// what is left is added or removed there.
///
/// `text` knows the names by their places in the text. `name` is an index in the list as it is afterwards, and `origin`
/// the place where the text had the same name; -1 for a new one:
///
///     void replace(int place, int name, int origin);
///     void remove(int place);
///     void addBefore(int place, int name, int origin);
///     void addAfter(int place, int name, int origin);
///     void addFirst(int name); // to a list without names
template <class Text>
void arrangeNames(Text &text, const QStringList &before, const QStringList &after)
{
    QHash<QString, QVector<int>> places; // of each name, the first one last
    for (int place = int(before.size()); place-- > 0;)
        places[before.at(place)].append(place);
    QVector<int> origins;
    for (const QString &name : after) {
        QVector<int> &left = places[name];
        origins.append(left.isEmpty() ? -1 : left.takeLast());
    }
    const QVector<bool> isStaying = stayingItems(origins, int(before.size()));
    int first = 0; // place after the last name that stays
    QVector<int> waiting; // names that come after that
    const auto arrangeUpTo = [&](int end) {
        for (int i = 0; i < waiting.size(); ++i) {
            const int name = waiting.at(i);
            if (first + i < end)
                text.replace(first + i, name, origins.at(name));
            else if (end > 0)
                text.addAfter(end - 1, name, origins.at(name));
            else if (!before.isEmpty())
                text.addBefore(0, name, origins.at(name));
            else
                text.addFirst(name);
        }
        for (int place = first + int(waiting.size()); place < end; ++place)
            text.remove(place);
        waiting.clear();
    };
    for (int name = 0; name < after.size(); ++name) {
        if (!isStaying.at(name)) {
            waiting.append(name);
            continue;
        }
        arrangeUpTo(origins.at(name));
        first = origins.at(name) + 1;
    }
    arrangeUpTo(int(before.size()));
}

} // namespace TunerDocuments
