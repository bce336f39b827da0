// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>
#include <utility>

#include "framework/Child.h"
#include "framework/ItemRoom.h"
#include "framework/ListOf.h"
#include "framework/ListRoom.h"
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
    int childCount(const Block &block) const override { return int(list(block).size()); }
    const DataObject &child(const Block &block, int index) const override { return list(block).at(index); }
    DataObject &editChild(DataObject &object, int index) const override { return modify(object)[index]; }
    DataObject &appendChild(DataObject &object) const override
    {
        append(object, Item());
        Item &item = modify(object).last();
        Propagation::propagateTo(item, Propagation::forReading(object)); // like an item that is read
        return item;
    }
    void arrangeChildren(DataObject &object, const QVector<int> &order) const override
    {
        QVector<Item> &items = modify(object);
        ItemList<Item> arranged;
        makeRoom(arranged, order.size()); // first, because it may run out of memory
        for (const int index : order) {
            const auto environment = ObjectAccess::environment(items[index]); // a move leaves the logger
            arranged.append(std::move(items[index]));
            Propagation::propagateTo(arranged.last(), environment);
        }
        items.swap(arranged);
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
        const Source::Position begin = input.elementPosition();
        const auto read = [&](Item &item) { return Child::readXml(item, input, this->xmlName()); };
        input.readChildOf(*this);
        if (input.runsForeignCode()) {
            readApart(object, input, begin, environment, read);
            return;
        }
        Block &block = ObjectAccess::block(object);
        readInPlace(object, block, detachedItems(block), input, begin, environment, read);
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
        const auto readLength = [&] { return reader.read<qint32>(object); };
        readItems(object, reader, count, Propagation::forReading(object), readLength, [&](Item &item, qint32 length) {
            Child::readRecord(item, reader, length);
            return true;
        });
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
        qint32 count = 0;
        if (!reader.take(count))
            return false;
        if (!hasItems)
            return true;
        const auto environment = REPORTGENERATOR::EnvironmentPointer::plain(object.GetValidate()); // without a logger
        return readItems(
            object, reader, count, environment, [] { return 0; },
            [&](Item &item, qint32) { return Child::readSnapshot(item, reader); });
    }

    bool hasCapacity(const Block &block) const final { return list(block).capacity() != 0; }
    void squeeze(Block &block) const final { ItemRoom::releaseSpare(list(block)); }

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

    /// Reads `count` items with their lengths and appends them. Returns false, without the last item, if `read` does.
    template <class ReadLength, class Read>
    bool readItems(DataObject &object, BinaryReader &reader, qint32 count,
                   const REPORTGENERATOR::EnvironmentPointer &environment, const ReadLength &readLength,
                   const Read &read) const
    {
        const int likelyCount = reader.itemsWithin(count); // first, because it calls the device
        Block &block = ObjectAccess::block(object);
        const bool hadCapacity = hasCapacity(block);
        ItemList<Item> &items = detachedItems(block);
        ItemRoom::reserve(items, likelyCount);
        reader.readChildOf(*this);
        for (qint32 i = 0; i < count; ++i) {
            const Source::Position begin = reader.nextPosition();
            const qint32 length = readLength();
            const auto readItem = [&](Item &item) { return read(item, length); };
            if (reader.runsForeignCode() ? !readApart(object, reader, begin, environment, readItem)
                                         : !readInPlace(object, block, items, reader, begin, environment, readItem))
                return false;
        }
        if (!hadCapacity)
            squeeze(ObjectAccess::block(object));
        return true;
    }

    /// Reads an item in its place at the end of the list. Returns false, and leaves the list unchanged, if `read` does.
    template <class Read>
    bool readInPlace(const DataObject &object, Block &block, ItemList<Item> &items, Source &source,
                     Source::Position begin, const REPORTGENERATOR::EnvironmentPointer &environment,
                     const Read &read) const
    {
        struct Unread
        {
            ItemList<Item> *items;
            ~Unread()
            {
                if (items)
                    items->removeLast();
            }
        };
        Item &item = appendNew(items);
        Unread unread{&items};
        Propagation::propagateTo(item, environment);
        if (!read(item))
            return false;
        source.store(this, begin, [&] { checkForAppending(object, item); });
        block.flags.set(this->bit());
        unread.items = nullptr;
        return true;
    }

    template <class Read>
    bool readApart(DataObject &object, Source &source, Source::Position begin,
                   const REPORTGENERATOR::EnvironmentPointer &environment, const Read &read) const
    {
        return ForeignCode::readItemApart<Item>(environment, read, [&](const Item &item) -> Item & {
            source.store(this, begin, [&] { checkForAppending(object, item); });
            Block &block = ObjectAccess::block(object);
            Item &inList = appendNew(detachedItems(block));
            block.flags.set(this->bit());
            return inList;
        });
    }

    Item &appendNew(ItemList<Item> &items) const
    {
        return ItemRoom::appendNew(items, this->has(UsuallySeveralItems) ? 4 : 1);
    }
};

} // namespace JobXml
