// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>
#include <utility>

#include "framework/Binary.h"
#include "framework/Errors.h"
#include "framework/ForeignCode.h"
#include "framework/ObjectAccess.h"
#include "framework/Propagation.h"
#include "framework/Text.h"
#include "framework/VisitedMember.h"
#include "framework/XmlInput.h"
#include <QLatin1String>

namespace JobXml {

class XmlOutput;

/// One row of a class's table: a constant that describes where a member is stored, and implements each operation of
/// DataObject for it. All rows of one kind share the code of their row type (Scalar, ChildList, ...).
class Member : public VisitedMember
{
public:
    int bit() const { return m_bit; }
    /// The name as a QString, without allocating memory.
    QString text() const { return m_text.string(); }
    XmlName xmlName() const { return {m_text.view(), name().data()}; }
    quint32 tag() const { return m_tag; }

    bool isSet(const Block &block) const { return block.flags.test(m_bit); }
    bool isSet(const DataObject &object) const
    {
        const Block *existing = ObjectAccess::existingBlock(object);
        return existing && isSet(*existing);
    }

    virtual bool isPresent(const Block &block) const = 0;
    bool isList() const { return kind() == MemberKind::ObjectList || kind() == MemberKind::EnumerationList; }

    /// The accessor `ResetX()`, and the part of it that restores the default.
    void reset(DataObject &object) const override
    {
        if (!ObjectAccess::existingBlock(object))
            return;
        Block &own = ObjectAccess::block(object);
        own.flags.clear(m_bit);
        reset(own);
    }
    virtual void reset(Block &block) const = 0;

    /// Compares the members of two objects, either of which may have no block.
    virtual bool equals(Block *left, Block *right) const = 0;

    /// Whether the value, which is set, fails the check. Only for rows with the trait MayBeInvalid.
    virtual bool isInvalid(Block &) const { return false; }

    /// Throws if the member itself, without its children, fails the check.
    virtual void check(const DataObject &object, Block &block) const
    {
        if (isSet(block) ? isInvalid(block) : has(Mandatory))
            Errors::notSet(object, name());
    }

    /// Whether the child objects are written, once the object itself is.
    virtual bool writesChildren(const Block &block) const { return isSet(block); }

    /// Calls the action for each child object, written or not.
    virtual void forEachChild(Block &, const ChildAction &) const { }

    /// For lists: whether memory for items is reserved; releases memory reserved for further items.
    virtual bool hasCapacity(const Block &) const { return false; }
    virtual void squeeze(Block &) const { }

    /// Throws if the child passes check() but cannot be written.
    virtual void checkForWriting(const DataObject &, const DataObject &) const { }

    /// The problem if only XML cannot represent the member; otherwise null.
    virtual QString xmlProblem(const DataObject &, const Block &) const { return QString(); }

    /// Merges the member of another object of the same class, if it is set there.
    virtual void merge(DataObject &object, const DataObject &other) const = 0;

    bool isSet(const Block *block) const override { return block && isSet(*block); }
    void setFlag(DataObject &object, bool set) const override
    {
        SetFlags &flags = ObjectAccess::block(object).flags;
        set ? flags.set(m_bit) : flags.clear(m_bit);
    }

    /// The text that distinguishes the object from its siblings; null for rows without `Identifies`.
    virtual QString identification(const Block &) const { return QString(); }

    virtual void writeXml(const DataObject &object, Block &block, XmlOutput &output) const = 0;
    virtual void readXmlAttribute(DataObject &, XmlInput &, const XmlText &) const { }
    virtual void readXmlElement(DataObject &object, XmlInput &input) const = 0;
    virtual void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const = 0;
    virtual void readRecord(DataObject &object, BinaryReader &reader, qint32 length) const = 0;
    virtual void writeSnapshot(const DataObject &object, Block &block, BinaryWriter &writer) const = 0;
    virtual bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const = 0;

    // For the checks of tables by the compiler.
    constexpr int constantBit() const { return m_bit; }
    constexpr quint32 constantTag() const { return m_tag; }

protected:
    constexpr Member(int bit, const char *name, quint32 tag, Traits traits)
        : VisitedMember(name, traits), m_text(name), m_tag(tag), m_bit(bit)
    {
    }
    ~Member() = default; // rows are constants: they are never deleted, and trivial destruction keeps them constexpr

    /// Reads into a part of an object's data, which `find` returns for a block; `block` is the object's current one.
    template <class Find, class Read>
    static bool readPart(DataObject &object, Block &block, const Source &source, const Find &find, const Read &read)
    {
        return source.runsForeignCode() ? ForeignCode::readPartApart(object, find, read) : read(find(block));
    }

private:
    static constexpr int longestName = 20;

    JobXml::Text<longestName> m_text;
    quint32 m_tag;
    int m_bit;
};

/// A row of the class whose members are in `Data`. Contains the only cast from the untyped block to them.
template <class Data>
class MemberOf : public Member
{
public:
    using Members = Data;

protected:
    using Member::Member;
    ~MemberOf() = default;

    static Data &members(Block &block) { return static_cast<BlockOf<Data> &>(block).members; }
    static const Data &members(const Block &block) { return static_cast<const BlockOf<Data> &>(block).members; }
};

/// A row whose member is one field of the struct.
template <class Data, class Field>
class FieldOf : public MemberOf<Data>
{
public:
    constexpr FieldOf(int bit, const char *name, quint32 tag, Field Data::*field, Traits traits)
        : MemberOf<Data>(bit, name, tag, traits), m_field(field)
    {
    }

    using Member::reset;

    /// The accessors `GetX() const` and `GetX()`; the latter sets the flag.
    const Field &get(const DataObject &object) const { return field(ObjectAccess::block(object)); }
    Field &modify(DataObject &object) const
    {
        Block &block = ObjectAccess::block(object);
        block.flags.set(this->bit());
        return field(block);
    }

protected:
    ~FieldOf() = default;

    Field &field(Block &block) const { return this->members(block).*m_field; }
    const Field &field(const Block &block) const { return this->members(block).*m_field; }

    /// Whether both are set and equal, or neither is set.
    template <class Same>
    bool areEqual(const Block *left, const Block *right, Same same) const
    {
        const bool leftSet = left && this->isSet(*left);
        const bool rightSet = right && this->isSet(*right);
        return leftSet == rightSet && (!leftSet || same(field(*left), field(*right)));
    }

private:
    Field Data::*m_field;
};

} // namespace JobXml
