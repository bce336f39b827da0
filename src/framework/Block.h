// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <utility>

#include <QVector>

#include "framework/ListRoom.h"

namespace JobXml {

/// The set flags of an object: bit i belongs to member i.
class SetFlags
{
public:
    quint16 all() const noexcept { return m_bits; }
    bool test(int bit) const noexcept { return (m_bits >> bit) & 1U; }
    void set(int bit) noexcept { m_bits = quint16(m_bits | (1U << bit)); }
    void clear(int bit) noexcept { m_bits = quint16(m_bits & ~(1U << bit)); }
    void clearAll() noexcept { m_bits = 0; }

    /// The packed form in snapshots, least significant bit first.
    quint8 byte(int index) const noexcept { return quint8(m_bits >> (8 * index)); }
    void setBytes(quint8 first, quint8 second, int memberCount) noexcept
    {
        m_bits = quint16((first | second << 8) & ((1 << memberCount) - 1)); // bits that belong to no member are dropped
    }

private:
    quint16 m_bits = 0;
};

constexpr int mostMembers = 16; // the number of bits in SetFlags

/// The data of an object, shared after assignment until one side uses it.
struct Block
{
    Block() noexcept = default;
    Block(const Block &other) noexcept : flags(other.flags) { } // a copy starts with one owner
    Block &operator=(const Block &) = delete;

    // Acquire and release pair up: the last owner sees all changes that the former owners made.
    bool isShared() const noexcept { return m_owners.load(std::memory_order_acquire) != 1; }
    void addOwner() noexcept { m_owners.fetch_add(1, std::memory_order_relaxed); }
    bool dropOwner() noexcept { return m_owners.fetch_sub(1, std::memory_order_acq_rel) == 1; } // true for the last

private:
    std::atomic<int> m_owners{1};

public:
    SetFlags flags;

protected:
    ~Block() = default;
};

/// A block with the members of one class.
template <class Data>
struct BlockOf final : Block
{
    Data members{};
};

/// A list of items. Copying it copies the items immediately, so that two blocks, which two threads may use, never share
/// them: const functions change an object's flag and logger, and QVector checks with a relaxed load whether it is the
/// last owner, which does not synchronize with changes by the other owners.
template <class Item>
class ItemList : public QVector<Item>
{
public:
    ItemList() = default;
    explicit ItemList(const QVector<Item> &items) : QVector<Item>(items) { detachItems(); }
    ItemList(const ItemList &other) : QVector<Item>(other) { detachItems(); }
    ItemList &operator=(const ItemList &) = delete;
    ~ItemList() = default;

    using QVector<Item>::operator=;

    /// Removes the items. QVector::clear() would first copy items that callers share, only to destroy the copies.
    void clear()
    {
        QVector<Item> none;
        this->swap(none);
    }

    /// Makes the items, and the capacity that an emptied list keeps, unshared with the lists of callers.
    void detachItems()
    {
        if (this->isDetached() || this->capacity() == 0)
            return;
        // detach() would destroy a partly constructed item if copying it runs out of memory.
        QVector<Item> items;
        makeRoom(items, this->size());
        for (const Item &item : std::as_const(*this))
            items.append(item);
        this->swap(items);
    }
};

} // namespace JobXml
