// SPDX-License-Identifier: MIT
#pragma once

#include "framework/Codec.h"
#include "framework/Member.h"
#include "framework/XmlOutput.h"
#include "text/SameText.h"
#include "text/XmlCharacters.h"

namespace JobXml {

/// The row of a text, boolean, number or enumeration.
template <class Data, class T>
class Scalar : public FieldOf<Data, T>
{
public:
    constexpr Scalar(int bit, const char *name, quint32 tag, T Data::*field, Traits traits)
        : FieldOf<Data, T>(bit, name, tag, field, traits | Codec<T>::traits)
    {
    }
    using FieldOf<Data, T>::reset;

    T get(const DataObject &object) const { return this->field(ObjectAccess::block(object)); }

    void set(DataObject &object, T value) const
    {
        Block &block = ObjectAccess::block(object);
        if (!Codec<T>::isValid(value) && object.GetValidate())
            Codec<T>::refuse(object, this->name());
        this->field(block) = std::move(value);
        block.flags.set(this->bit());
    }

    T defaultValue() const
    {
        BlockOf<Data> defaults;
        return this->field(static_cast<Block &>(defaults));
    }

    bool isValid(const T &value) const { return this->has(IsValidAcceptsNull) || Codec<T>::isValid(value); }

    bool isPresent(const Block &block) const override
    {
        return Codec<T>::isPresent(this->field(block), this->isSet(block));
    }

    void reset(Block &block) const override { this->field(block) = defaultValue(); }

    bool equals(Block *left, Block *right) const override
    {
        return this->areEqual(left, right, [](const T &one, const T &other) {
            if constexpr (std::is_same_v<T, QString>)
                return REPORTGENERATOR::isSameText(one, other);
            else
                return one == other;
        });
    }

    bool isInvalid(Block &block) const override { return !Codec<T>::isValid(this->field(block)); }

    QString xmlProblem(const DataObject &object, const Block &block) const override
    {
        if constexpr (std::is_same_v<T, QString>) {
            const REPORTGENERATOR::Size at =
                isOmitted(block) ? -1 : REPORTGENERATOR::firstNotForXml(this->field(block));
            if (at >= 0)
                return Errors::notForXml(object, this->name(), this->field(block), at);
        }
        return QString();
    }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (Member::isSet(other))
            set(object, get(other));
    }

    MemberKind kind() const override { return Codec<T>::kind; }
    QStringList names() const override { return Codec<T>::names(); }
    QVariant value(const Block *block) const override
    {
        return Codec<T>::variant(block ? this->field(*block) : defaultValue());
    }
    bool setValue(DataObject &object, const QVariant &value) const override
    {
        T own{};
        if (!Codec<T>::fromVariant(value, own))
            return false;
        set(object, std::move(own));
        return true;
    }

    QString identification(const Block &block) const override
    {
        if constexpr (std::is_same_v<T, QString>) {
            if (this->has(Identifies))
                return this->field(block);
        }
        return QString();
    }

    void writeXml(const DataObject &, Block &block, XmlOutput &output) const override
    {
        if (isOmitted(block))
            return;
        noteInvalid(block, output);
        Codec<T>::withText(this->field(block), [&](const auto &text) {
            if (this->has(Attribute))
                output.writeAttribute(this->text(), text);
            else
                output.writeTextElement(this->text(), text);
        });
    }

    void readXmlAttribute(DataObject &object, XmlInput &input, const XmlText &text) const override
    {
        storeText(object, input, text);
    }

    void readXmlElement(DataObject &object, XmlInput &input) const override
    {
        XmlText text;
        if (input.readText(text))
            storeText(object, input, text);
    }

    void writeRecord(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        if (isOmitted(block))
            return;
        noteInvalid(block, writer);
        const auto record = writer.begin(this->tag());
        Codec<T>::writePayload(writer, this->field(block));
        writer.end(record);
    }

    // The member's type determines how much is read. A wrong length is detected when the record's lengths are added up.
    void readRecord(DataObject &object, BinaryReader &reader, qint32) const override
    {
        if constexpr (Codec<T>::kind == MemberKind::Enumeration) {
            QString name = reader.readText(object);
            reader.storeText(
                this, Source::noPosition, [&] { return name; }, [&] { set(object, Codec<T>::fromName(name)); });
        } else {
            T value = Codec<T>::readPayload(reader, object);
            reader.store(this, [&] { set(object, reader.isCollecting() ? value : std::move(value)); });
        }
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        if (!isOmitted(block))
            Codec<T>::writeSnapshot(writer, this->field(block));
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        if (isOmitted(block) && !this->has(SnapshotReadAlways))
            return true;
        // The flag has already been read, with all others.
        return Member::readPart(
            object, block, reader, [this](Block &found) -> T & { return this->field(found); },
            [&](T &value) { return Codec<T>::readSnapshot(reader, value); });
    }

private:
    void storeText(DataObject &object, XmlInput &input, const XmlText &text) const
    {
        input.storeText(
            this, Source::noPosition, [&] { return text.toString(); },
            [&] { set(object, Codec<T>::fromText(object, this->name(), text)); });
    }

    void noteInvalid(const Block &block, WriteTarget &target) const
    {
        if (!Codec<T>::isValid(this->field(block)))
            target.noteProblem();
    }

    bool isOmitted(const Block &block) const { return this->has(WrittenWhenSet) && !this->isSet(block); }
};

template <class Data, class T>
Scalar(int, const char *, quint32, T Data::*, Traits) -> Scalar<Data, T>;

} // namespace JobXml
