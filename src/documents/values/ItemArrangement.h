// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

#include "documents/values/ObjectEdit.h"

namespace TunerDocuments {

/// Arranges the text of a list as an edit has arranged its items. As many items as possible stay where they are; the
/// others are moved, with their own bytes, next to the item that they follow.
///
/// `text` knows the items by numbers of its own, which `before` has in the order of the list:
///
///     void changeItem(int item, const DataObject &described, const ObjectEdit &edit); // in its place
///     QByteArray movedItem(int item, const DataObject &described, const ObjectEdit &edit); // its text, changed
///     QByteArray newItem(const DataObject &described, int neighbor); // laid out as that one; -1 if there is none
///     void remove(int item);
///     void addBefore(int item, const QByteArray &text);
///     void addAfter(int item, const QByteArray &text); // takes the place of an item that is removed
///     void addFirst(const QByteArrayList &texts); // to a list without items
template <class Text>
void arrangeItems(Text &text, const QVector<int> &before, const JobXml::MemberView &list, const MemberEdit &edit)
{
    if (!edit.order && edit.added.isEmpty()) {
        for (const auto &[place, change] : edit.children)
            text.changeItem(before.at(place), list.GetChild(place), change);
        return;
    }
    const QVector<int> order = edit.orderOf(int(before.size()));
    const QVector<bool> isStaying = MemberEdit::stayingItems(order, int(before.size()));
    QVector<bool> isLeft(before.size(), true);
    QByteArrayList front; // before all items that stay
    int anchor = -1; // the place of the last one that stayed
    const auto add = [&](const QByteArray &item) {
        if (anchor < 0)
            front.append(item);
        else
            text.addAfter(before.at(anchor), item);
    };
    for (int i = 0; i < order.size(); ++i) {
        const JobXml::DataObject &item = list.GetChild(i);
        const int place = order.at(i);
        if (place >= before.size()) {
            add(text.newItem(item, before.isEmpty() ? -1 : before.at(qMax(anchor, 0))));
            continue;
        }
        const auto nested = edit.children.find(place);
        const ObjectEdit change = nested == edit.children.end() ? ObjectEdit() : nested->second;
        if (!isStaying.at(i)) {
            add(text.movedItem(before.at(place), item, change));
            continue;
        }
        text.changeItem(before.at(place), item, change);
        isLeft[place] = false;
        if (anchor < 0) {
            for (const QByteArray &moved : qAsConst(front))
                text.addBefore(before.at(place), moved);
            front.clear();
        }
        anchor = place;
    }
    for (int i = 0; i < before.size(); ++i) {
        if (isLeft.at(i))
            text.remove(before.at(i));
    }
    if (before.isEmpty() && !front.isEmpty())
        text.addFirst(front);
    for (const QByteArray &item : before.isEmpty() ? QByteArrayList() : front)
        text.addAfter(before.first(), item);
}

} // namespace TunerDocuments
