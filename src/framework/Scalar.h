// SPDX-License-Identifier: MIT
#pragma once

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Codec.h"
#include "framework/Member.h"

namespace JobXml {

/// The row of a text, boolean, number or enumeration.
template <class Data, class T>
class Scalar : public MemberOf<Data>
{
public:
    constexpr Scalar(int bit, const char *name, quint32 tag, T Data::*field, Traits traits)
        : MemberOf<Data>(bit, name, tag, traits), m_field(field)
    {
    }

    T get(const DataObject &object) const { return value(Member::block(object)); }

    void set(DataObject &object, T value) const
    {
        Block &block = Member::block(object);
        if (object.GetValidate() && !Codec<T>::isValid(value))
            Codec<T>::refuse(object, this->name());
        store(block, std::move(value));
    }

    void reset(DataObject &object) const { this->resetIfInitialized(object); }

    T defaultValue() const { return Data{}.*m_field; }

    bool isValid(const T &value) const { return this->has(NullPassesIsValid) || Codec<T>::isValid(value); }

    bool isPresent(const Block &block) const override { return Codec<T>::isPresent(value(block), this->isSet(block)); }

    void reset(Block &block) const override { value(block) = defaultValue(); }

    bool equals(const Block *left, const Block *right) const override
    {
        const bool leftSet = left && this->isSet(*left);
        const bool rightSet = right && this->isSet(*right);
        return leftSet == rightSet && (!leftSet || value(*left) == value(*right));
    }

    void check(const DataObject &object, const Block &block) const override
    {
        if (this->isSet(block) ? !Codec<T>::isValid(value(block)) : this->has(Mandatory))
            Errors::notSet(object, this->name());
    }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (Member::isSet(other))
            set(object, get(other));
    }

    void accept(const Block &block, Visitor &visitor) const override
    {
        visitor.VisitValue(this->name(), Codec<T>::variant(value(block)), this->isSet(block));
    }

    QString identification(const Block &block) const override
    {
        return this->has(Identifies) ? Codec<T>::text(value(block)) : QString();
    }

    void writeXml(const DataObject &, Block &block, QXmlStreamWriter &writer) const override
    {
        if (leftOut(block))
            return;
        if (this->has(Attribute))
            writer.writeAttribute(this->name(), Codec<T>::text(value(block)));
        else
            writer.writeTextElement(this->name(), Codec<T>::text(value(block)));
    }

    void readXmlAttribute(DataObject &object, const QString &text) const override
    {
        set(object, Codec<T>::fromText(object, this->name(), text));
    }

    void readXmlElement(DataObject &object, QXmlStreamReader &reader) const override
    {
        readXmlAttribute(object, Member::elementText(object, reader));
    }

    void writeRecord(const DataObject &, Block &block, RecordWriter &writer) const override
    {
        if (leftOut(block))
            return;
        const auto record = writer.begin(this->tag());
        Codec<T>::writePayload(writer.payload(), value(block));
        writer.end(record);
    }

    // By the member's type, not by the length: a length that disagrees shows when the record's lengths are added up.
    void readRecord(DataObject &object, RecordReader &reader, qint32) const override
    {
        set(object, Codec<T>::readPayload(reader));
    }

    void writeSnapshot(const DataObject &, Block &block, QDataStream &stream) const override
    {
        if (!leftOut(block))
            Codec<T>::writeSnapshot(stream, value(block));
    }

    bool readSnapshot(DataObject &object, QDataStream &stream) const override
    {
        Block &block = Member::block(object);
        if (leftOut(block) && !this->has(SnapshotReadAlways))
            return true;
        return Codec<T>::readSnapshot(stream, value(block)); // the flag was read before, with all others
    }

private:
    T &value(Block &block) const { return this->members(block).*m_field; }
    const T &value(const Block &block) const { return this->members(block).*m_field; }

    bool leftOut(const Block &block) const { return this->has(WrittenWhenSet) && !this->isSet(block); }

    void store(Block &block, T value) const
    {
        this->value(block) = std::move(value);
        block.flags.set(this->bit());
    }

    T Data::*m_field;
};

} // namespace JobXml
