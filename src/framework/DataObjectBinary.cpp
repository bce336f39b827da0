// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QDataStream>
#include <QIODevice>

#include "framework/Behavior.h"
#include "framework/Binary.h"
#include "framework/Child.h"
#include "framework/CollectedReading.h"
#include "framework/Errors.h"
#include "framework/Member.h"
#include "framework/Propagation.h"

namespace JobXml {

// --- Tagged records --------------------------------------------------------------------------------------------------

bool DataObject::GetBinary(QDataStream &stream, int tag, bool writeTag) const
{
    BinaryWriter writer(stream);
    const bool isWritten = compose(*this, writer, [&] {
        const auto record = writeTag ? writer.begin(quint32(tag)) : writer.beginUntagged();
        ObjectAccess::behavior(*this).writeRecords(*this, writer);
        if (ObjectAccess::isOfDerivedClass(*this)) {
            QByteArray own;
            QDataStream ownStream(&own, QIODevice::WriteOnly);
            ownStream.setByteOrder(stream.byteOrder());
            ownStream.setVersion(stream.version());
            ownStream.setFloatingPointPrecision(stream.floatingPointPrecision());
            writeOwnRecords(ownStream);
            writer.putRecords(own);
        }
        writer.end(record);
    });
    if (isWritten)
        writer.flushTo(stream);
    return isWritten;
}

bool DataObject::composeBinary(const QDataStream &form, QByteArray &record) const
{
    if (ObjectAccess::isOfDerivedClass(*this))
        return false; // a derived class may override GetBinary()
    BinaryWriter writer(form);
    const bool isWritten = compose(*this, writer, [&] {
        const auto start = writer.begin(quint32(m_classIdentifier));
        ObjectAccess::behavior(*this).writeRecords(*this, writer);
        writer.end(start);
    });
    if (isWritten)
        record = writer.take();
    return true;
}

void DataObject::writeOwnRecords(QDataStream &) const { }

bool DataObject::readOwnRecord(QDataStream &, quint32, qint32)
{
    return false;
}

void Child::writeRecord(const DataObject &child, const DataObject &parent, BinaryWriter &writer, bool isChecked)
{
    if (!prepareToWrite(child, parent, writer, isChecked))
        return;
    const auto record = writer.beginUntagged();
    ObjectAccess::behavior(child).writeRecords(child, writer);
    writer.end(record);
}

void Child::writeRecord(const DataObject &child, const DataObject &parent, BinaryWriter &writer, quint32 tag,
                        bool isChecked)
{
    if (!prepareToWrite(child, parent, writer, isChecked))
        return;
    const auto record = writer.begin(tag);
    ObjectAccess::behavior(child).writeRecords(child, writer);
    writer.end(record);
}

void Behavior::writeRecords(const DataObject &object, BinaryWriter &writer) const
{
    Block &own = ObjectAccess::block(object);
    for (const Member *member : ObjectAccess::info(object).writtenOrder())
        member->writeRecord(object, own, writer);
}

void DataObject::SetBinary(QDataStream &stream, int length)
{
    Propagation::propagate(*this);
    const int unchanged = ObjectAccess::isOfDerivedClass(*this) ? 0 : length; // readOwnRecord() may change the buffer
    BinaryReader reader(stream, unchanged, CollectedReading::visitorFor(*this));
    Child::readRecord(*this, reader, length);
}

namespace {

constexpr int sizeOfHead = 8; // of a representation: the leading word and the length

} // namespace

int DataObject::readMembers(const QDataStream &form, const char *members, int size)
{
    if (ObjectAccess::isOfDerivedClass(*this) || !BinaryReader::isReadDirectly(form))
        return -1; // a derived class may override SetBinary()
    Propagation::propagate(*this);
    BinaryReader reader(form, members, size, sizeOfHead, CollectedReading::visitorFor(*this));
    Child::readRecord(*this, reader, size);
    return reader.bytesRead();
}

void Child::readRecord(DataObject &child, BinaryReader &reader, qint32 length)
{
    ObjectAccess::block(child);
    const Source::Frame frame(reader, child);
    const ClassInfo &info = ObjectAccess::info(child);
    qint64 remainder = length; // 64 bits, so that no length in a hostile record can overflow it
    const ClassInfo::Rows rows = info.writtenOrder();
    const Member *const *expected = rows.begin(); // objects write them in this order
    while (remainder > 0 && !reader.atEnd()) {
        const BinaryReader::Head head = reader.readHead(child);
        remainder -= 8 + qint64(head.length);
        if (expected != rows.end() && (*expected)->tag() == head.tag)
            (*expected++)->readRecord(child, reader, head.length);
        else
            info.behavior.readRecord(child, reader, head.tag, head.length);
    }
    if (remainder != 0)
        reader.wrongLength(child);
}

void Behavior::readRecord(DataObject &object, BinaryReader &reader, quint32 tag, qint32 length) const
{
    for (const Member *member : ObjectAccess::info(object).writtenOrder()) {
        if (member->tag() == tag) {
            member->readRecord(object, reader, length);
            return;
        }
    }
    const auto readOwn = [&](QDataStream &stream) { return ObjectAccess::readOwnRecord(object, stream, tag, length); };
    if (!ObjectAccess::isOfDerivedClass(object) || length < 0 || !reader.readByStream(object, length, readOwn))
        reader.skip(object, length, tag);
}

// --- Snapshots -------------------------------------------------------------------------------------------------------

void DataObject::GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const
{
    BinaryWriter writer(stream);
    Child::writeSnapshot(*this, writer);
    writer.flushTo(stream);
}

void DataObject::SetVersionSpecificBinaryWithoutValidation(QDataStream &stream)
{
    BinaryReader reader(stream);
    Child::readSnapshot(*this, reader);
}

void Behavior::writeSnapshot(const DataObject &object, BinaryWriter &writer) const
{
    writeSnapshotFlags(object, writer);
    writeSnapshotMembers(object, writer);
}

bool Behavior::readSnapshot(DataObject &object, BinaryReader &reader) const
{
    return readSnapshotFlags(object, reader) && readSnapshotMembers(object, reader);
}

void Behavior::writeSnapshotFlags(const DataObject &object, BinaryWriter &writer)
{
    const SetFlags &flags = ObjectAccess::block(object).flags;
    writer.put(flags.byte(0));
    if (ObjectAccess::info(object).memberCount > 8)
        writer.put(flags.byte(1));
}

bool Behavior::readSnapshotFlags(DataObject &object, BinaryReader &reader)
{
    const int memberCount = ObjectAccess::info(object).memberCount;
    quint8 first = 0;
    quint8 second = 0;
    if (!reader.take(first) || (memberCount > 8 && !reader.take(second)))
        return false;
    ObjectAccess::block(object).flags.setBytes(first, second, memberCount);
    return true;
}

void Behavior::writeSnapshotMembers(const DataObject &object, BinaryWriter &writer)
{
    Block &own = ObjectAccess::block(object);
    for (const Member *member : ObjectAccess::info(object).bitOrder())
        member->writeSnapshot(object, own, writer);
}

bool Behavior::readSnapshotMembers(DataObject &object, BinaryReader &reader)
{
    Block *own = &ObjectAccess::block(object);
    for (const Member *member : ObjectAccess::info(object).bitOrder()) {
        if (!member->readSnapshot(object, *own, reader))
            return false;
        own = &ForeignCode::blockAfterReading(reader, object, *own);
    }
    return true;
}

} // namespace JobXml
