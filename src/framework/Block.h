// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <utility>

#include <QVector>

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

    /// The packed form, least significant bit first, as snapshots carry it.
    quint8 byte(int index) const noexcept { return quint8(m_bits >> (8 * index)); }
    void setBytes(quint8 first, quint8 second, int memberCount) noexcept
    {
        m_bits = quint16((first | second << 8) & ((1 << memberCount) - 1)); // bits that no member owns are dropped
    }

private:
    quint16 m_bits = 0;
};

constexpr int mostMembers = 16; // what SetFlags can hold

/// The data of an object, shared after assignment until one side uses it.
struct Block
{
    Block() noexcept = default;
    Block(const Block &other) noexcept : flags(other.flags) { } // a copy begins with an owner of its own
    Block &operator=(const Block &) = delete;

    // Acquire and release pair up: who finds itself the only owner sees all that the former owners did.
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

/// A list of items. Copying it copies the items at once, so that two blocks, which may live in two threads, never share
/// them: objects carry a flag and a logger that change behind const, and the vector itself finds out by a relaxed load
/// that it is the last owner, which does not wait for what the others did.
template <class Item>
class ItemList : public QVector<Item>
{
public:
    ItemList() = default;
    explicit ItemList(const QVector<Item> &items) : QVector<Item>(items) { own(); }
    ItemList(const ItemList &other) : QVector<Item>(other) { own(); }
    ItemList &operator=(const ItemList &) = delete;
    ~ItemList() = default;

    using QVector<Item>::operator=;

    /// Gives the items up. QVector's own would first make copies of items that callers hold, only to destroy them.
    void clear()
    {
        QVector<Item> none;
        this->swap(none);
    }

    /// A new item at the end, for a list that is being read: nearly all lists are short, and QVector's own growth would
    /// leave half of the room unused.
    Item &appendNew(int firstRoom)
    {
        if (this->size() == this->capacity())
            this->reserve(std::max(firstRoom, 2 * this->size()));
        this->resize(this->size() + 1);
        return this->last();
    }

    /// Gives back the room that is left.
    void giveRoomBack()
    {
        if (this->size() != this->capacity() && this->size() != 0 && this->isDetached())
            this->squeeze();
    }

    /// Gives up sharing with lists that callers hold: the items, and the room that an emptied list keeps.
    void own()
    {
        if (this->isDetached() || this->capacity() == 0)
            return;
        // Not by detach(): should an item's copy run out of memory, that would destroy the item half made.
        QVector<Item> items;
        items.reserve(this->size());
        for (const Item &item : std::as_const(*this))
            items.append(item);
        this->swap(items);
    }
};

} // namespace JobXml
