// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <utility>

#include "framework/ListRoom.h"
#include "framework/Propagation.h"
#include "framework/Utf8.h"

namespace JobXml {

/// Memory for the objects of a list that is being read. An object stays what it is when its list moves to other memory:
/// it keeps its flag and its logger, which moving the object would not.
class ItemRoom
{
public:
    /// Appends a new object. Nearly all lists are short, and the list's own growth would leave half of the capacity
    /// unused.
    template <class Item>
    static Item &appendNew(ItemList<Item> &items, Size firstRoom)
    {
        if (items.size() == items.capacity())
            grow(items, firstRoom);
        items.resize(items.size() + 1);
        return items.last();
    }

    /// Makes room for further objects.
    template <class Item>
    static void reserve(ItemList<Item> &items, Size further)
    {
        // Reserving for each of many small records would be quadratic.
        if (further > items.size() && items.size() + further > items.capacity())
            setCapacity(items, items.size() + further);
    }

    /// Releases the capacity that is not used.
    template <class Item>
    static void releaseSpare(ItemList<Item> &items)
    {
        if (items.size() != items.capacity() && items.size() != 0 && items.isDetached())
            setCapacity(items, items.size());
    }

private:
    template <class Item>
    static void grow(ItemList<Item> &items, Size firstRoom)
    {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        items.reserve(std::max(firstRoom, 2 * items.size()));
#else
        // A list that has items doubles its memory by itself, and moves memory, not objects.
        if (items.isEmpty())
            makeRoom(items, firstRoom);
#endif
    }

    template <class Item>
    static void setCapacity(ItemList<Item> &items, Size capacity)
    {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        // Moves memory, not objects.
        if (capacity > items.size())
            items.reserve(capacity);
        else
            items.squeeze();
#else
        // The list's own reserve() and squeeze() copy or move the objects.
        QVector<Item> moved;
        makeRoom(moved, capacity);
        for (Item &item : items) {
            const auto environment = ObjectAccess::environment(item);
            moved.append(std::move(item));
            Propagation::propagateTo(moved.last(), environment);
        }
        items.swap(moved);
#endif
    }
};

} // namespace JobXml
