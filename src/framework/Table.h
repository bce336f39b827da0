// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "framework/Behavior.h"
#include "framework/ClassInfo.h"
#include "framework/Member.h"

namespace JobXml {

/// The rows of a class in bit order, and in the order of writing, which follows from them.
template <class Data, std::size_t count>
struct Table
{
    static_assert(count <= mostMembers, "this table has more rows than there are set flags");

    using Members = Data;
    static constexpr std::size_t size = count;

    template <class... Rows>
    constexpr explicit Table(const Rows &...rows) : inBitOrder{&rows...}
    {
        static_assert((std::is_same_v<typename Rows::Members, Data> && ...),
                      "a row of this table belongs to another struct");
        std::size_t next = 0;
        for (const Member *member : inBitOrder) {
            if (member->has(Attribute))
                inWrittenOrder[next++] = member;
        }
        for (const Member *member : inBitOrder) {
            if (!member->has(Attribute))
                inWrittenOrder[next++] = member;
        }
    }

    std::array<const Member *, count> inBitOrder;
    std::array<const Member *, count> inWrittenOrder{};
};

template <class First, class... Others>
Table(const First &, const Others &...) -> Table<typename First::Members, 1 + sizeof...(Others)>;

namespace TableChecks {

template <class Table>
constexpr bool bitsCountUp(const Table &table)
{
    for (std::size_t i = 0; i < Table::size; ++i) {
        if (table.inBitOrder[i]->constantBit() != int(i))
            return false;
    }
    return true;
}

template <class Table>
constexpr bool tagsDiffer(const Table &table)
{
    for (std::size_t i = 0; i < Table::size; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (table.inBitOrder[i]->constantTag() == table.inBitOrder[j]->constantTag())
                return false;
        }
    }
    return true;
}

template <class Table>
constexpr quint16 maskOf(const Table &table, Traits traits)
{
    quint16 mask = 0;
    for (const Member *member : table.inBitOrder) {
        if (member->has(traits))
            mask = quint16(mask | 1U << member->constantBit());
    }
    return mask;
}

template <class Table>
constexpr int countOf(const Table &table, Traits traits)
{
    int count = 0;
    for (const Member *member : table.inBitOrder)
        count += member->has(traits) ? 1 : 0;
    return count;
}

struct ConvertibleToAnything
{
    template <class T>
    operator T() const;
};

template <class Data, class Indices, class = void>
struct AcceptsFields : std::false_type
{
};

template <class Data, std::size_t... index>
struct AcceptsFields<Data, std::index_sequence<index...>,
                     std::void_t<decltype(Data{(static_cast<void>(index), ConvertibleToAnything{})...})>>
    : std::true_type
{
};

/// The number of fields of a struct: the greatest number of values that its braces accept.
template <class Data, std::size_t guess = mostMembers + 4>
constexpr std::size_t fieldCount()
{
    if constexpr (AcceptsFields<Data, std::make_index_sequence<guess>>::value)
        return guess;
    else
        return fieldCount<Data, guess - 1>();
}

} // namespace TableChecks

/// Describes the class `Object` by its table, after checking the table. `name` must exist as long as the library.
/// `otherFields` is the number of fields of the struct that are not members; it is negative if one field contains
/// several members.
template <class Object, const auto &table, int otherFields = 0>
constexpr ClassInfo describe(const QString &name, qint64 identifier, const Behavior &behavior = Behavior::regular)
{
    using Table = std::decay_t<decltype(table)>;
    using Data = typename Table::Members;
    constexpr int fields = int(Table::size) + otherFields;
    static_assert(TableChecks::bitsCountUp(table), "this table's rows are not in bit order 0, 1, 2, ...");
    static_assert(TableChecks::tagsDiffer(table), "two rows of this table share a tag");
    static_assert(int(TableChecks::fieldCount<Data>()) <= fields, "a member of the struct has no row in this table");
    static_assert(int(TableChecks::fieldCount<Data>()) >= fields,
                  "two rows of this table belong to one member of the struct");

    return ClassInfo{
        {name, identifier},
        typeid(Object),
        behavior,
        table.inBitOrder.data(),
        table.inWrittenOrder.data(),
        int(Table::size),
        TableChecks::countOf(table, Attribute),
        TableChecks::maskOf(table, Mandatory),
        TableChecks::maskOf(table, PresentByValue),
        TableChecks::maskOf(table, MayBeInvalid),
        TableChecks::maskOf(table, HoldsChildren),
        TableChecks::maskOf(table, CreatedWithTheBlock),
        TableChecks::maskOf(table, ListOfChildren),
        []() -> Block * { return new BlockOf<Data>; },
        [](const Block &block) -> Block * { return new BlockOf<Data>(static_cast<const BlockOf<Data> &>(block)); },
        [](Block *block) { delete static_cast<BlockOf<Data> *>(block); }};
}

} // namespace JobXml
