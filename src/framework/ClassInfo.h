// SPDX-License-Identifier: MIT
#pragma once

#include <typeinfo>

#include <QtAlgorithms>

#include <reportbase/IRGObject.h>

namespace JobXml {

class Behavior;
class Member;
struct Block;

/// The description of a class for DataObject: a constant created by describe().
struct ClassInfo : REPORTGENERATOR::ObjectClass
{
    const std::type_info &type; // of the class itself, not of classes derived from it
    const Behavior &behavior;
    const Member *const *inBitOrder; // check, snapshot
    const Member *const *inWrittenOrder; // attributes, then elements: XML, records, equality
    int memberCount;
    int attributeCount; // the first in written order
    // Set flags as masks, bit for bit:
    quint16 mandatory;
    quint16 presentByValue;
    quint16 mayBeInvalid;
    quint16 children;
    quint16 createdWithTheBlock;
    quint16 childLists;
    Block *(*create)();
    Block *(*clone)(const Block &block);
    void (*destroy)(Block *block);

    /// Calls the function for each row in the mask, in bit order.
    template <class Function>
    void forEach(quint16 mask, Function &&function) const
    {
        for (unsigned rest = mask; rest != 0; rest &= rest - 1)
            function(*inBitOrder[qCountTrailingZeroBits(rest)]);
    }

    class Rows
    {
    public:
        constexpr Rows(const Member *const *first, int count) : m_first(first), m_count(count) { }
        const Member *const *begin() const { return m_first; }
        const Member *const *end() const { return m_first + m_count; }

    private:
        const Member *const *m_first;
        int m_count;
    };
    Rows bitOrder() const { return Rows(inBitOrder, memberCount); }
    Rows writtenOrder() const { return Rows(inWrittenOrder, memberCount); }
    Rows attributes() const { return Rows(inWrittenOrder, attributeCount); }
    Rows elements() const { return Rows(inWrittenOrder + attributeCount, memberCount - attributeCount); }
};

} // namespace JobXml
