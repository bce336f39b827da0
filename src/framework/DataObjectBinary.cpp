// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QDataStream>

#include "framework/Binary.h"
#include "framework/Errors.h"
#include "framework/Member.h"
#include "framework/Table.h"

namespace JobXml {

// --- Tagged records --------------------------------------------------------------------------------------------------

bool DataObject::GetBinary(QDataStream &stream, int tag, bool writeTag) const
{
    if (!mayWrite())
        return false;
    BinaryWriter writer(stream);
    const auto record = writeTag ? writer.begin(quint32(tag)) : writer.beginUntagged();
    writeMemberRecords(writer);
    if (isOfDerivedClass()) {
        QByteArray own;
        QDataStream ownStream(&own, QIODevice::WriteOnly);
        ownStream.setByteOrder(stream.byteOrder());
        ownStream.setVersion(stream.version());
        ownStream.setFloatingPointPrecision(stream.floatingPointPrecision());
        writeOwnRecords(ownStream);
        writer.putRecords(own);
    }
    writer.end(record);
    writer.flushTo(stream);
    return true;
}

void DataObject::writeOwnRecords(QDataStream &) const { }

bool DataObject::readOwnRecord(QDataStream &, quint32, qint32)
{
    return false;
}

void DataObject::writeNestedRecord(BinaryWriter &writer, Preparation preparation) const
{
    if (!mayWriteNested(preparation))
        return;
    const auto record = writer.beginUntagged();
    writeMemberRecords(writer);
    writer.end(record);
}

void DataObject::writeNestedRecord(BinaryWriter &writer, quint32 tag, Preparation preparation) const
{
    if (!mayWriteNested(preparation))
        return;
    const auto record = writer.begin(tag);
    writeMemberRecords(writer);
    writer.end(record);
}

void DataObject::writeMemberRecords(BinaryWriter &writer) const
{
    Block &own = Member::block(*this);
    for (const Member *member : info().writtenOrder())
        member->writeRecord(*this, own, writer);
}

void DataObject::SetBinary(QDataStream &stream, int length)
{
    handOver();
    BinaryReader reader(stream);
    readRecord(reader, length);
}

void DataObject::readRecord(BinaryReader &reader, qint32 length)
{
    block();
    qint64 remainder = length; // 64 bits: no length word of a hostile record can make it wrap
    const ClassInfo::Rows rows = info().writtenOrder();
    const Member *const *expected = rows.begin(); // objects write them in this order
    while (remainder > 0 && !reader.atEnd()) {
        const BinaryReader::Head head = reader.readHead(*this);
        remainder -= 8 + qint64(head.length);
        if (expected != rows.end() && (*expected)->tag() == head.tag)
            (*expected++)->readRecord(*this, reader, head.length);
        else
            readMemberRecord(reader, head.tag, head.length);
    }
    if (remainder != 0)
        Errors::wrongLength(*this);
}

void DataObject::readMemberRecord(BinaryReader &reader, quint32 tag, qint32 length)
{
    for (const Member *member : info().writtenOrder()) {
        if (member->tag() == tag) {
            member->readRecord(*this, reader, length);
            return;
        }
    }
    const auto readOwn = [&](QDataStream &stream) { return readOwnRecord(stream, tag, length); };
    if (!isOfDerivedClass() || length < 0 || !reader.readByStream(*this, length, readOwn))
        reader.skip(*this, length, tag);
}

// --- Snapshots -------------------------------------------------------------------------------------------------------

void DataObject::GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const
{
    block();
    BinaryWriter writer(stream);
    writeSnapshot(writer);
    writer.flushTo(stream);
}

void DataObject::SetVersionSpecificBinaryWithoutValidation(QDataStream &stream)
{
    block();
    BinaryReader reader(stream);
    readSnapshot(reader);
}

void DataObject::writeSnapshot(BinaryWriter &writer) const
{
    writeSnapshotFlags(writer);
    writeSnapshotMembers(writer);
}

bool DataObject::readSnapshot(BinaryReader &reader)
{
    return readSnapshotFlags(reader) && readSnapshotMembers(reader);
}

void DataObject::writeSnapshotFlags(BinaryWriter &writer) const
{
    const SetFlags &flags = Member::block(*this).flags;
    writer.put(flags.byte(0));
    if (info().memberCount > 8)
        writer.put(flags.byte(1));
}

bool DataObject::readSnapshotFlags(BinaryReader &reader)
{
    quint8 first = 0;
    quint8 second = 0;
    if (!reader.take(first) || (info().memberCount > 8 && !reader.take(second)))
        return false;
    Member::block(*this).flags.setBytes(first, second, info().memberCount);
    return true;
}

void DataObject::writeSnapshotMembers(BinaryWriter &writer) const
{
    Block &own = Member::block(*this);
    for (const Member *member : info().bitOrder())
        member->writeSnapshot(*this, own, writer);
}

bool DataObject::readSnapshotMembers(BinaryReader &reader)
{
    Block *own = &Member::block(*this);
    const bool isInMemory = reader.isInMemory();
    for (const Member *member : info().bitOrder()) {
        if (!member->readSnapshot(*this, *own, reader))
            return false;
        if (!isInMemory) // a device may have copied the object meanwhile, whose data are shared then
            own = &Member::block(*this);
    }
    return true;
}

} // namespace JobXml
