// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "framework/Member.h"

namespace JobXml {

/// The row of a list; the base of the rows of lists of child objects and of values.
///
/// Every access first detaches the items: two objects never share an item, whichever lists callers copied.
template <class Data, class Item>
class ListOf : public FieldOf<Data, ItemList<Item>>
{
    using Base = FieldOf<Data, ItemList<Item>>;

public:
    constexpr ListOf(int bit, const char *name, quint32 tag, ItemList<Item> Data::*field, Traits traits)
        : Base(bit, name, tag, field, traits | PresentByValue)
    {
    }

    using Base::reset;

    const QVector<Item> &get(const DataObject &object) const { return detachedItems(ObjectAccess::block(object)); }
    QVector<Item> &modify(DataObject &object) const
    {
        QVector<Item> &items = detachedItems(ObjectAccess::block(object)); // first, because it may run out of memory
        Base::modify(object);
        return items;
    }
    void set(DataObject &object, const QVector<Item> &items) const { replace(object, ItemList<Item>(items)); }

    void append(DataObject &object, const Item &item) const
    {
        Block &block = ObjectAccess::block(object);
        checkForAppending(object, item);
        detachedItems(block).append(item);
        block.flags.set(this->bit());
    }

    bool isPresent(const Block &block) const override { return !list(block).isEmpty(); }

    void reset(Block &block) const override { list(block).clear(); }

    bool equals(Block *left, Block *right) const override
    {
        // Comparing may initialize items, so a list that a caller shares is detached first.
        for (Block *block : {left, right}) {
            if (block)
                detachedItems(*block);
        }
        if (!this->has(ComparedByRightFlag))
            return this->areEqual(left, right, same);
        const ItemList<Item> none;
        const ItemList<Item> &leftItems = left ? list(*left) : none;
        return right && this->isSet(*right) ? same(leftItems, list(*right)) : leftItems.isEmpty();
    }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (!Member::isSet(other))
            return;
        if (get(other).isEmpty())
            modify(object); // if there are items, append() sets the flag, unless it throws
        for (const Item &item : get(other))
            append(object, item);
    }

protected:
    ~ListOf() = default;

    /// Throws if the append rule refuses the item.
    virtual void checkForAppending(const DataObject &object, const Item &item) const = 0;

    ItemList<Item> &list(Block &block) const { return this->field(block); }
    const ItemList<Item> &list(const Block &block) const { return this->field(block); }
    ItemList<Item> &detachedItems(Block &block) const
    {
        ItemList<Item> &items = list(block);
        items.detachItems();
        return items;
    }
    void replace(DataObject &object, ItemList<Item> &&items) const { Base::modify(object).swap(items); }

private:
    // Compares the items even if both lists share their data: an item that contains a NaN does not equal itself.
    static bool same(const ItemList<Item> &left, const ItemList<Item> &right)
    {
        return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin());
    }
};

} // namespace JobXml
