// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QDataStream>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Errors.h"
#include "framework/Member.h"
#include "framework/Records.h"
#include "framework/Table.h"

namespace JobXml {

Visitor::~Visitor() = default;

// --- Construction, copies, moves -------------------------------------------------------------------------------------

DataObject::DataObject(const ClassInfo &info) : m_info(&info)
{
    SetObjectName(info.objectName());
    m_classIdentifier = info.identifier;
}

// The const_cast is for GetObjectType(), which is not const although it reads only.
DataObject::DataObject(const DataObject &other)
    : IRGObject(const_cast<DataObject &>(other).GetObjectType()), m_info(other.m_info)
{
    SetObjectName(m_info->objectName());
    m_classIdentifier = m_info->identifier;
    if (other.m_block)
        m_block = m_info->clone(*other.m_block);
    DataObject::SetValidate(other.GetValidate());
}

DataObject::DataObject(DataObject &&other) noexcept
    : IRGObject(other.GetObjectType()), m_info(other.m_info), m_block(std::exchange(other.m_block, nullptr))
{
    SetObjectName(m_info->objectName());
    m_classIdentifier = m_info->identifier;
    IRGObject::SetValidate(other.GetValidate());
}

DataObject &DataObject::operator=(const DataObject &other) noexcept
{
    if (this == &other)
        return *this;
    if (other.m_block)
        other.m_block->addOwner();
    release(*m_info, std::exchange(m_block, other.m_block));
    return *this;
}

DataObject &DataObject::operator=(DataObject &&other) noexcept
{
    if (this != &other)
        release(*m_info, std::exchange(m_block, std::exchange(other.m_block, nullptr)));
    return *this;
}

DataObject::~DataObject()
{
    release(*m_info, m_block);
}

void DataObject::release(const ClassInfo &info, Block *block) noexcept
{
    if (block && block->dropOwner())
        info.destroy(block);
}

void DataObject::swapData(DataObject &other) noexcept
{
    std::swap(m_block, other.m_block);
}

// --- State -----------------------------------------------------------------------------------------------------------

Block &DataObject::block() const
{
    if (!m_block) {
        m_block = m_info->create();
        handOver();
    } else if (m_block->isShared()) {
        Block *own = m_info->clone(*m_block);
        release(*m_info, std::exchange(m_block, own));
    }
    return *m_block;
}

bool DataObject::IsInitialized() const noexcept
{
    return m_block != nullptr;
}

bool DataObject::HasData() const
{
    if (!m_block)
        return false;
    for (const Member *member : m_info->bitOrder()) {
        if (member->has(Mandatory) && !member->isPresent(*m_block))
            return false;
    }
    return true;
}

bool DataObject::AnyData() const
{
    if (!m_block)
        return false;
    for (const Member *member : m_info->bitOrder()) {
        if (member->isPresent(*m_block))
            return true;
    }
    return false;
}

void DataObject::Reset()
{
    if (!m_block)
        return;
    Block &own = block();
    own.flags.clearAll();
    for (const Member *member : m_info->bitOrder())
        member->reset(own);
}

void DataObject::ResetToDefault()
{
    const bool existed = IsInitialized();
    block();
    if (existed)
        Reset();
}

bool DataObject::equals(const DataObject &other) const
{
    if (!m_block && !other.m_block)
        return true;
    Block *left = m_block ? &block() : nullptr;
    Block *right = other.m_block ? &other.block() : nullptr;
    for (const Member *member : m_info->writtenOrder()) {
        if (!member->equals(left, right))
            return false;
    }
    return true;
}

bool DataObject::MergeRGObject(const REPORTGENERATOR::IRGObject &other)
{
    const auto *source = dynamic_cast<const DataObject *>(&other);
    if (!source || source->m_info != m_info)
        return false;
    if (source == this || !source->m_block)
        return true;
    block();
    for (const Member *member : m_info->bitOrder())
        member->merge(*this, *source);
    return true;
}

void DataObject::Accept(Visitor &visitor) const
{
    if (!m_block)
        return;
    Block &own = block(); // a visitor gets to see objects, which change behind const
    for (const Member *member : m_info->writtenOrder())
        member->accept(own, visitor);
}

// --- Validate flag and logger ----------------------------------------------------------------------------------------

namespace {

template <class Action>
void forEachChild(const ClassInfo &info, Block &block, Action action)
{
    for (const Member *member : info.bitOrder())
        member->forEachChild(block, ChildAction(action));
}

} // namespace

void DataObject::SetValidate(bool validate) const
{
    IRGObject::SetValidate(validate);
    if (m_block && m_info->hasChildren)
        forEachChild(*m_info, block(), [=](const DataObject &child, int) { child.SetValidate(validate); });
}

void DataObject::SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const
{
    IRGObject::SetLogger(logger);
    if (m_block && m_info->hasChildren)
        forEachChild(*m_info, block(), [&](const DataObject &child, int) { child.SetLogger(logger); });
}

void DataObject::SetObjectType(REPORTGENERATOR::ObjectTypes) { }

void DataObject::takeLogger(const std::shared_ptr<REPORTGENERATOR::Logger> &logger) const
{
    IRGObject::SetLogger(logger);
}

void DataObject::handOver() const
{
    SetValidate(GetValidate());
    SetLogger(GetLogger());
}

void DataObject::handOverOnce() const
{
    if (m_reading == Reading::HandedOver)
        return;
    handOver();
    if (m_reading == Reading::NothingHandedOver)
        m_reading = Reading::HandedOver;
}

// --- Check -----------------------------------------------------------------------------------------------------------

void DataObject::Check(bool flag) const
{
    handOver();
    checkTree(flag);
}

void DataObject::Check() const
{
    Check(false);
}

void DataObject::checkTree(bool flag) const
{
    Block &own = block();
    auto checkChild = [=](const DataObject &child, int) { child.checkTree(flag); };
    for (const Member *member : m_info->bitOrder()) {
        member->check(*this, own);
        if (member->isSet(own))
            member->forEachChild(own, ChildAction(checkChild));
    }
}

QVector<Problem> DataObject::GetProblems() const
{
    handOver();
    QVector<Problem> problems;
    collectProblems({}, problems);
    return problems;
}

void DataObject::collectProblems(const QStringList &path, QVector<Problem> &problems) const
{
    Block &own = block();
    const auto collect = [&](auto &&check) {
        try {
            check();
        } catch (const RGException &e) {
            problems.append({path, e.GetMessageText()});
        }
    };
    for (const Member *member : m_info->bitOrder()) {
        collect([&] { member->check(*this, own); });
        auto checkChild = [&](const DataObject &child, int index) {
            const int before = problems.size();
            child.collectProblems(path + QStringList{child.label(index)}, problems);
            if (problems.size() == before)
                collect([&] { member->checkForWriting(*this, child); });
        };
        if (member->writesChildren(own))
            member->forEachChild(own, ChildAction(checkChild));
    }
}

// What tells an object from its siblings: its name if it has one, else its place, counted from 1 as people do.
QString DataObject::label(int index) const
{
    if (m_block) {
        for (const Member *member : m_info->bitOrder()) {
            const QString identification = member->identification(*m_block);
            if (!identification.isEmpty())
                return GetObjectName() + QStringLiteral(" \"") + identification + QLatin1Char('"');
        }
    }
    return index < 0 ? GetObjectName() : GetObjectName() + QLatin1Char(' ') + QString::number(index + 1);
}

// --- XML -------------------------------------------------------------------------------------------------------------

// Check() hands over; asking it first, and not both, keeps writing at one walk over the tree.
bool DataObject::mayWrite() const
{
    if (GetValidate())
        Check();
    else
        handOver();
    return mayWriteNested(true);
}

// For an object whose tree has been handed flag and logger. Where the parent's check included it, checking again
// at every level would be work times depth.
bool DataObject::mayWriteNested(bool checkedByParent) const
{
    if (GetValidate()) {
        if (!checkedByParent)
            checkTree(false);
        if (!HasData())
            return false;
    }
    block();
    return true;
}

void DataObject::GetXml(QXmlStreamWriter &writer) const
{
    if (mayWrite())
        writeElement(writer);
}

void DataObject::writeNestedXml(QXmlStreamWriter &writer, bool checkedByParent) const
{
    if (mayWriteNested(checkedByParent))
        writeElement(writer);
}

void DataObject::writeElement(QXmlStreamWriter &writer) const
{
    writer.writeStartElement(GetObjectName());
    writeMembers(writer);
    writer.writeEndElement();
}

void DataObject::writeMembers(QXmlStreamWriter &writer) const
{
    Block &own = block();
    for (const Member *member : m_info->writtenOrder())
        member->writeXml(*this, own, writer);
}

/// While the content of an object is read, exceptions or not: the object is marked, and the reader does not process
/// namespaces. It looks each name up among all that are declared around it, and unknown elements can be nested without
/// end.
class DataObject::ReadingContent
{
public:
    ReadingContent(const DataObject &object, QXmlStreamReader &reader)
        : m_object(object), m_reader(reader), m_before(object.m_reading), m_namespaces(reader.namespaceProcessing())
    {
        m_object.m_reading = Reading::NothingHandedOver;
        m_reader.setNamespaceProcessing(false);
    }
    ReadingContent(const ReadingContent &) = delete;
    ReadingContent &operator=(const ReadingContent &) = delete;
    ~ReadingContent()
    {
        m_object.m_reading = m_before;
        m_reader.setNamespaceProcessing(m_namespaces);
    }

private:
    const DataObject &m_object;
    QXmlStreamReader &m_reader;
    Reading m_before;
    bool m_namespaces;
};

void DataObject::ProcessXml(QXmlStreamReader &reader)
{
    block();
    readAttributes(reader);
    readContent(reader);
}

void DataObject::readAttributes(QXmlStreamReader &reader)
{
    const QXmlStreamAttributes attributes = reader.attributes();
    if (attributes.isEmpty())
        return;
    for (const Member *member : m_info->writtenOrder()) {
        if (member->has(Attribute) && attributes.hasAttribute(member->name()))
            member->readXmlAttribute(*this, attributes.value(member->name()).toString());
    }
}

void DataObject::readContent(QXmlStreamReader &reader)
{
    const ReadingContent reading(*this, reader);
    IRGObject::ProcessXml(reader);
}

void DataObject::ProcessXmlStartElement(QXmlStreamReader &reader)
{
    handOverOnce();
    block();
    if (!readMemberElement(reader))
        skipElement(reader);
}

bool DataObject::readMemberElement(QXmlStreamReader &reader)
{
    for (const Member *member : m_info->writtenOrder()) {
        if (reader.name() == member->name()) {
            member->readXmlElement(*this, reader);
            return true;
        }
    }
    return false;
}

// By name, not by depth: an element of the same name inside ends the skipping, as readers of these documents expect.
void DataObject::skipElement(QXmlStreamReader &reader)
{
    const QString name = reader.name().toString();
    do {
        reader.readNext();
    } while (!reader.atEnd() && !reader.hasError() && reader.name() != name); // a device may claim more than it has
}

// --- Tagged records --------------------------------------------------------------------------------------------------

bool DataObject::GetBinary(QDataStream &stream, int tag, bool writeTag) const
{
    if (!mayWrite())
        return false;
    RecordWriter writer(stream);
    const auto record = writeTag ? writer.begin(quint32(tag)) : writer.beginUntagged();
    writeMemberRecords(writer);
    writer.end(record);
    writer.flushTo(stream);
    return true;
}

void DataObject::writeNestedRecord(RecordWriter &writer, bool checkedByParent) const
{
    if (!mayWriteNested(checkedByParent))
        return;
    const auto record = writer.beginUntagged();
    writeMemberRecords(writer);
    writer.end(record);
}

void DataObject::writeNestedRecord(RecordWriter &writer, quint32 tag, bool checkedByParent) const
{
    if (!mayWriteNested(checkedByParent))
        return;
    const auto record = writer.begin(tag);
    writeMemberRecords(writer);
    writer.end(record);
}

void DataObject::writeMemberRecords(RecordWriter &writer) const
{
    Block &own = block();
    for (const Member *member : m_info->writtenOrder())
        member->writeRecord(*this, own, writer);
}

void DataObject::SetBinary(QDataStream &stream, int length)
{
    handOver();
    readRecord(stream, length);
}

void DataObject::readRecord(QDataStream &stream, qint32 length)
{
    block();
    RecordReader reader(stream, *this);
    qint64 remainder = length; // 64 bits: no length word of a hostile record can make it wrap
    while (remainder > 0 && !stream.atEnd()) {
        const auto tag = reader.read<quint32>();
        const auto memberLength = reader.read<qint32>();
        remainder -= 8 + qint64(memberLength);
        readMemberRecord(reader, tag, memberLength);
    }
    if (remainder != 0)
        Errors::wrongLength(*this);
}

void DataObject::readMemberRecord(RecordReader &reader, quint32 tag, qint32 length)
{
    for (const Member *member : m_info->writtenOrder()) {
        if (member->tag() == tag) {
            member->readRecord(*this, reader, length);
            return;
        }
    }
    reader.skip(length, tag);
}

// --- Snapshots -------------------------------------------------------------------------------------------------------

void DataObject::GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const
{
    block();
    writeSnapshot(stream);
}

void DataObject::SetVersionSpecificBinaryWithoutValidation(QDataStream &stream)
{
    block();
    readSnapshot(stream);
}

void DataObject::writeSnapshot(QDataStream &stream) const
{
    writeSnapshotFlags(stream);
    writeSnapshotMembers(stream);
}

bool DataObject::readSnapshot(QDataStream &stream)
{
    return readSnapshotFlags(stream) && readSnapshotMembers(stream);
}

void DataObject::writeSnapshotFlags(QDataStream &stream) const
{
    const SetFlags &flags = block().flags;
    stream << flags.byte(0);
    if (m_info->memberCount > 8)
        stream << flags.byte(1);
}

bool DataObject::readSnapshotFlags(QDataStream &stream)
{
    quint8 first = 0;
    quint8 second = 0;
    if (!readIfThere(stream, first) || (m_info->memberCount > 8 && !readIfThere(stream, second)))
        return false;
    block().flags.setBytes(first, second, m_info->memberCount);
    return true;
}

void DataObject::writeSnapshotMembers(QDataStream &stream) const
{
    Block &own = block();
    for (const Member *member : m_info->bitOrder())
        member->writeSnapshot(*this, own, stream);
}

bool DataObject::readSnapshotMembers(QDataStream &stream)
{
    for (const Member *member : m_info->bitOrder()) {
        if (!member->readSnapshot(*this, stream))
            return false;
    }
    return true;
}

} // namespace JobXml
