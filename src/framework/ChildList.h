// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <type_traits>

#include "framework/Member.h"

namespace JobXml {

/// The row of a list of child objects.
template <class Data, class Item>
class ChildList : public FieldOf<Data, ItemList<Item>>
{
    using Base = FieldOf<Data, ItemList<Item>>;

public:
    constexpr ChildList(int bit, const char *name, quint32 tag, ItemList<Item> Data::*field, Traits traits)
        : Base(bit, name, tag, field, traits | HoldsChildren | GrowsByReading | PresentByValue)
    {
    }

    using Base::reset;

    // Every way to the items owns them first: two objects never share an item, whatever lists callers passed around.
    const QVector<Item> &get(const DataObject &object) const { return owned(Member::block(object)); }
    QVector<Item> &modify(DataObject &object) const
    {
        QVector<Item> &items = owned(Member::block(object)); // first, because it may run out of memory
        Base::modify(object);
        return items;
    }
    void set(DataObject &object, const QVector<Item> &items) const
    {
        ItemList<Item> ownItems(items);
        for (int i = 0; i < items.size(); ++i)
            Member::copyEnvironments(items.at(i), std::as_const(ownItems).at(i));
        Base::modify(object).swap(ownItems);
    }

    void append(DataObject &object, const Item &item) const
    {
        Block &block = Member::block(object);
        checkForAppending(object, item);
        owned(block).append(item);
        block.flags.set(this->bit());
    }

    bool isPresent(const Block &block) const override { return !list(block).isEmpty(); }

    void reset(Block &block) const override { list(block).clear(); }

    bool equals(Block *left, Block *right) const override
    {
        // Comparing may leave items initialized, which must not happen to a list that a caller holds.
        for (Block *block : {left, right}) {
            if (block)
                owned(*block);
        }
        if (!this->has(ComparedByRightFlag))
            return this->areEqual(left, right, same);
        const ItemList<Item> none;
        const ItemList<Item> &leftItems = left ? list(*left) : none;
        return right && this->isSet(*right) ? same(leftItems, list(*right)) : leftItems.isEmpty();
    }

    void forEachChild(Block &block, const ChildAction &action) const override
    {
        const ItemList<Item> &items = owned(block);
        for (int i = 0; i < items.size(); ++i)
            action(items.at(i), i);
    }

    void checkForWriting(const DataObject &object, const DataObject &child) const override
    {
        if (this->has(Mandatory) && !child.HasData())
            Errors::itemWithoutData(object, this->name());
    }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (!Member::isSet(other))
            return;
        if (this->get(other).isEmpty())
            this->modify(object); // otherwise appending marks it, if it is not refused
        for (const Item &item : this->get(other))
            append(object, item);
    }

    MemberKind kind() const override { return MemberKind::ObjectList; }
    int childCount(const Block &block) const override { return list(block).size(); }
    const DataObject &child(const Block &block, int index) const override { return list(block).at(index); }
    DataObject &editChild(DataObject &object, int index) const override { return modify(object)[index]; }
    DataObject &appendChild(DataObject &object) const override
    {
        append(object, Item());
        Item &item = modify(object).last();
        Member::takeEnvironment(item, Member::environmentForReading(object)); // it is to be filled like one
        return item;
    }

    void writeXml(const DataObject &object, Block &block, XmlOutput &output) const override
    {
        const auto preparation = Member::preparation(object, this->isSet(block)); // a check covers what is set
        const bool validate = object.GetValidate();
        for (const Item &item : std::as_const(list(block))) {
            if (validate)
                checkForWriting(object, item);
            if (this->writesChildren(block))
                Member::writeNestedXml(item, output, preparation);
        }
    }

    void readXmlElement(DataObject &object, QXmlStreamReader &reader) const override
    {
        const auto environment = Member::environmentForReading(object);
        const auto read = [&](auto &&item) {
            if (this->readNestedXml(*item, reader))
                item.keep();
        };
        if (Member::isInMemory(reader))
            read(NewItem<Place::InTheList>(*this, object, environment));
        else
            read(NewItem<Place::Apart>(*this, object, environment));
    }

    void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        const ItemList<Item> &items = list(block);
        const auto preparation = Member::preparation(object, this->isSet(block));
        const auto record = writer.begin(this->tag());
        writer.put(qint32(items.size()));
        if (this->writesChildren(block)) {
            for (const Item &item : items)
                Member::writeNestedRecord(item, writer, preparation);
        }
        writer.end(record);
    }

    void readRecord(DataObject &object, BinaryReader &reader, qint32) const override
    {
        const auto count = reader.read<qint32>(object);
        const auto environment = Member::environmentForReading(object);
        const bool hadRoom = hasRoom(Member::block(object));
        reserve(object, reader.itemsWithin(count));
        const auto read = [&](auto &&item, qint32 length) {
            Member::readNestedRecord(*item, reader, length);
            item.keep();
        };
        for (qint32 i = 0; i < count; ++i) {
            const auto length = reader.read<qint32>(object);
            if (reader.isInMemory())
                read(NewItem<Place::InTheList>(*this, object, environment), length);
            else
                read(NewItem<Place::Apart>(*this, object, environment), length);
        }
        if (!hadRoom)
            squeeze(Member::block(object));
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        const ItemList<Item> &items = owned(block);
        writer.put(qint32(items.size()));
        if (!this->isSet(block))
            return;
        for (const Item &item : items)
            Member::writeNestedSnapshot(item, writer);
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        const bool holdsItems = this->isSet(block) || this->has(SnapshotReadByCount);
        const bool hadRoom = hasRoom(block);
        qint32 count = 0;
        if (!reader.take(count))
            return false;
        if (!holdsItems)
            return true;
        const auto environment = REPORTGENERATOR::EnvironmentPointer::plain(object.GetValidate()); // and no logger
        reserve(object, reader.itemsWithin(count));
        const auto read = [&](auto &&item) {
            if (!Member::readNestedSnapshot(*item, reader))
                return false;
            item.keep();
            return true;
        };
        for (qint32 i = 0; i < count; ++i) {
            if (reader.isInMemory() ? !read(NewItem<Place::InTheList>(*this, object, environment))
                                    : !read(NewItem<Place::Apart>(*this, object, environment)))
                return false;
        }
        if (!hadRoom)
            squeeze(Member::block(object));
        return true;
    }

    bool hasRoom(const Block &block) const final { return list(block).capacity() != 0; }
    void squeeze(Block &block) const final { list(block).giveRoomBack(); }

private:
    ItemList<Item> &list(Block &block) const { return this->field(block); }
    const ItemList<Item> &list(const Block &block) const { return this->field(block); }
    ItemList<Item> &owned(Block &block) const
    {
        ItemList<Item> &items = list(block);
        items.own();
        return items;
    }

    // Item by item even where both lists are one: an item that holds a NaN does not equal itself.
    static bool same(const ItemList<Item> &left, const ItemList<Item> &right)
    {
        return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin());
    }

    void checkForAppending(const DataObject &object, const Item &item) const
    {
        if (object.GetValidate() && !item.HasData())
            Errors::incompleteItem(object, this->name());
    }

    /// Where an item that is being read stands until it is kept.
    enum class Place {
        InTheList, ///< at its end already; for reading from memory
        Apart, ///< where a device is asked for more, whoever wrote it may look at the document, or copy it
    };

    /// An item that is being read. Unless it is kept, the list is as it was.
    template <Place place>
    class NewItem
    {
        static constexpr bool isApart = place == Place::Apart;

    public:
        NewItem(const ChildList &row, DataObject &object, const REPORTGENERATOR::EnvironmentPointer &environment)
            : m_row(row), m_object(object), m_environment(environment), m_item(begin())
        {
            Member::takeEnvironment(m_item, environment);
        }
        NewItem(const NewItem &) = delete;
        NewItem &operator=(const NewItem &) = delete;
        ~NewItem()
        {
            if (!isApart && !m_isKept)
                m_row.list(Member::block(m_object)).removeLast();
        }

        Item &operator*() { return m_item; }

        /// As append(), without a copy of what was just read. What was read apart does not bring its logger along.
        void keep()
        {
            m_row.checkForAppending(m_object, m_item);
            if constexpr (isApart) {
                Item &inTheList = append();
                inTheList.swap(m_item);
                Member::takeEnvironment(inTheList, m_environment);
            }
            Member::block(m_object).flags.set(m_row.bit());
            m_isKept = true;
        }

    private:
        decltype(auto) begin()
        {
            if constexpr (isApart)
                return Item();
            else
                return append();
        }
        Item &append()
        {
            return m_row.owned(Member::block(m_object)).appendNew(m_row.has(UsuallyHoldsSeveral) ? 4 : 1);
        }

        const ChildList &m_row;
        DataObject &m_object;
        const REPORTGENERATOR::EnvironmentPointer &m_environment;
        std::conditional_t<isApart, Item, Item &> m_item;
        bool m_isKept = false;
    };

    void reserve(DataObject &object, int further) const
    {
        ItemList<Item> &items = owned(Member::block(object));
        if (further > items.size()) // otherwise growing by itself is as good, and linear over many small records
            items.reserve(items.size() + further);
    }
};

} // namespace JobXml
