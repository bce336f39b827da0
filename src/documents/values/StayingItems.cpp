// SPDX-License-Identifier: MIT
#include "documents/values/StayingItems.h"

namespace TunerDocuments {

QVector<bool> stayingItems(const QVector<int> &positions, int end)
{
    // They form the heaviest sequence with increasing positions: each item weighs more than all unchanged positions
    // together. best[i] ends the heaviest sequence in a range of positions that ends with i, as in a binary indexed
    // tree.
    const int size = int(positions.size());
    QVector<int> best(end + 1, -1);
    QVector<int> previous(size, -1);
    QVector<qint64> weight(size, 0);
    int last = -1;
    const auto heavier = [&](int one, int other) {
        return other < 0 || (one >= 0 && weight[one] > weight[other]) ? one : other;
    };
    for (int i = 0; i < size; ++i) {
        const int position = positions[i];
        if (position < 0)
            continue;
        for (int at = position; at > 0; at -= at & -at)
            previous[i] = heavier(best[at], previous[i]);
        weight[i] = size + 1 + (position == i ? 1 : 0) + (previous[i] < 0 ? 0 : weight[previous[i]]);
        for (int at = position + 1; at < best.size(); at += at & -at)
            best[at] = heavier(i, best[at]);
        last = heavier(i, last);
    }
    QVector<bool> isStaying(size, false);
    for (int i = last; i >= 0; i = previous[i])
        isStaying[i] = true;
    return isStaying;
}

} // namespace TunerDocuments
