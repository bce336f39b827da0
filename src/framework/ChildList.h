// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>
#include <utility>

#include "framework/Child.h"
#include "framework/ListOf.h"
#include "framework/XmlOutput.h"

namespace JobXml {

/// The row of a list of child objects.
template <class Data, class Item>
class ChildList : public ListOf<Data, Item>
{
    using Base = ListOf<Data, Item>;

public:
    constexpr ChildList(int bit, const char *name, quint32 tag, ItemList<Item> Data::*field, Traits traits)
        : Base(bit, name, tag, field, traits | HoldsChildren | ListOfChildren)
    {
    }

    using Base::append;
    using Base::modify;

    void set(DataObject &object, const QVector<Item> &items) const
    {
        ItemList<Item> ownItems(items);
        for (int i = 0; i < items.size(); ++i)
            Propagation::copy(items.at(i), std::as_const(ownItems).at(i));
        this->replace(object, std::move(ownItems));
    }

    void forEachChild(Block &block, const ChildAction &action) const override
    {
        const ItemList<Item> &items = detachedItems(block);
        for (int i = 0; i < items.size(); ++i)
            action(items.at(i), i);
    }

    void checkForWriting(const DataObject &object, const DataObject &child) const override
    {
        if (this->has(Mandatory) && !child.HasData())
            Errors::itemWithoutData(object, this->name());
    }

    MemberKind kind() const override { return MemberKind::ObjectList; }
    int childCount(const Block &block) const override { return list(block).size(); }
    const DataObject &child(const Block &block, int index) const override { return list(block).at(index); }
    DataObject &editChild(DataObject &object, int index) const override { return modify(object)[index]; }
    DataObject &appendChild(DataObject &object) const override
    {
        append(object, Item());
        Item &item = modify(object).last();
        Propagation::propagateTo(item, Propagation::forReading(object)); // like an item that is read
        return item;
    }

    void writeXml(const DataObject &object, Block &block, XmlOutput &output) const override
    {
        const bool validate = !output.composition() && object.GetValidate();
        writeItems(block, output, [&](const Item &item, bool isWritten) {
            if (validate)
                checkForWriting(object, item);
            if (isWritten)
                Child::writeXml(item, object, output, this->isSet(block)); // a check includes only set members
        });
    }

    void readXmlElement(DataObject &object, XmlInput &input) const override
    {
        const auto environment = Propagation::forReading(object);
        const auto read = [&](auto &&item) {
            if (Child::readXml(*item, input, this->xmlName()))
                item.keep(input);
        };
        if (Member::isInMemory(input))
            read(NewItem<Storage::InList>(*this, object, environment));
        else
            read(NewItem<Storage::Separate>(*this, object, environment));
    }

    void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        const auto record = writer.begin(this->tag());
        writer.put(qint32(list(block).size()));
        writeItems(block, writer, [&](const Item &item, bool isWritten) {
            if (isWritten)
                Child::writeRecord(item, object, writer, this->isSet(block));
        });
        writer.end(record);
    }

    void readRecord(DataObject &object, BinaryReader &reader, qint32) const override
    {
        const auto count = reader.read<qint32>(object);
        const auto environment = Propagation::forReading(object);
        const bool hadCapacity = hasCapacity(ObjectAccess::block(object));
        reserve(object, reader.itemsWithin(count));
        const auto read = [&](auto &&item, qint32 length) {
            Child::readRecord(*item, reader, length);
            item.keep(reader);
        };
        for (qint32 i = 0; i < count; ++i) {
            reader.innermost()->position = reader.position();
            const auto length = reader.read<qint32>(object);
            if (reader.isInMemory())
                read(NewItem<Storage::InList>(*this, object, environment), length);
            else
                read(NewItem<Storage::Separate>(*this, object, environment), length);
        }
        if (!hadCapacity)
            squeeze(ObjectAccess::block(object));
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        const ItemList<Item> &items = detachedItems(block);
        writer.put(qint32(items.size()));
        if (!this->isSet(block))
            return;
        for (const Item &item : items)
            Child::writeSnapshot(item, writer);
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        const bool hasItems = this->isSet(block) || this->has(SnapshotReadByCount);
        const bool hadCapacity = hasCapacity(block);
        qint32 count = 0;
        if (!reader.take(count))
            return false;
        if (!hasItems)
            return true;
        const auto environment = REPORTGENERATOR::EnvironmentPointer::plain(object.GetValidate()); // without a logger
        reserve(object, reader.itemsWithin(count));
        const auto read = [&](auto &&item) {
            if (!Child::readSnapshot(*item, reader))
                return false;
            item.keep(reader);
            return true;
        };
        for (qint32 i = 0; i < count; ++i) {
            if (reader.isInMemory() ? !read(NewItem<Storage::InList>(*this, object, environment))
                                    : !read(NewItem<Storage::Separate>(*this, object, environment)))
                return false;
        }
        if (!hadCapacity)
            squeeze(ObjectAccess::block(object));
        return true;
    }

    bool hasCapacity(const Block &block) const final { return list(block).capacity() != 0; }
    void squeeze(Block &block) const final { list(block).releaseSpareCapacity(); }

private:
    using Base::detachedItems;
    using Base::list;

    /// Calls `write` for each item, with whether it is written.
    template <class Write>
    void writeItems(Block &block, WriteTarget &target, const Write &write) const
    {
        const ItemList<Item> &items = detachedItems(block);
        const bool areWritten = this->writesChildren(block);
        if (this->has(Mandatory) && items.isEmpty())
            target.noteProblem();
        for (const Item &item : items) {
            write(item, areWritten);
            if (target.composition() && !areWritten)
                skipChild(item, *target.composition());
        }
    }

    void checkForAppending(const DataObject &object, const Item &item) const final
    {
        if (object.GetValidate() && !item.HasData())
            Errors::incompleteItem(object, this->name());
    }

    /// Where an item is stored until it has been read.
    enum class Storage {
        InList, ///< at the end of the list, if the data are read from memory
        Separate, ///< outside the list: a device may run code that reads or copies the document
    };

    /// An item that is being read. Unless keep() is called, the list remains unchanged.
    template <Storage storage>
    class NewItem
    {
        static constexpr bool isSeparate = storage == Storage::Separate;

    public:
        NewItem(const ChildList &row, DataObject &object, const REPORTGENERATOR::EnvironmentPointer &environment)
            : m_row(row), m_object(object), m_environment(environment), m_item(begin())
        {
            Propagation::propagateTo(m_item, environment);
        }
        NewItem(const NewItem &) = delete;
        NewItem &operator=(const NewItem &) = delete;
        ~NewItem()
        {
            if (!isSeparate && !m_isKept)
                m_row.list(ObjectAccess::block(m_object)).removeLast();
        }

        Item &operator*() { return m_item; }

        /// Like append(), without copying the item. A separate item inherits the logger of the list's object.
        void keep(Source &source)
        {
            source.store([this] { m_row.checkForAppending(m_object, m_item); });
            if constexpr (isSeparate) {
                Item &inList = append();
                inList.swap(m_item);
                Propagation::propagateTo(inList, m_environment);
            }
            ObjectAccess::block(m_object).flags.set(m_row.bit());
            m_isKept = true;
        }

    private:
        decltype(auto) begin()
        {
            if constexpr (isSeparate)
                return Item();
            else
                return append();
        }
        Item &append()
        {
            return m_row.detachedItems(ObjectAccess::block(m_object)).appendNew(m_row.has(UsuallySeveralItems) ? 4 : 1);
        }

        const ChildList &m_row;
        DataObject &m_object;
        const REPORTGENERATOR::EnvironmentPointer &m_environment;
        std::conditional_t<isSeparate, Item, Item &> m_item;
        bool m_isKept = false;
    };

    void reserve(DataObject &object, int further) const
    {
        ItemList<Item> &items = detachedItems(ObjectAccess::block(object));
        if (further > items.size()) // reserving for each of many small records would be quadratic
            items.reserve(items.size() + further);
    }
};

} // namespace JobXml
