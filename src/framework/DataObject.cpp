// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QDataStream>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Binary.h"
#include "framework/Errors.h"
#include "framework/HandDown.h"
#include "framework/Member.h"
#include "framework/Table.h"
#include "framework/XmlDocument.h"
#include "framework/XmlOutput.h"

namespace JobXml {

using REPORTGENERATOR::EnvironmentPointer;

Visitor::~Visitor() = default;

// --- Construction, copies, moves -------------------------------------------------------------------------------------

inline const ClassInfo &DataObject::info() const noexcept
{
    return static_cast<const ClassInfo &>(objectClass());
}

// Objects of derived classes may have their own way with what they are told. Of all others the framework knows what
// SetValidate() and SetLogger() do, so it hands down both at once.
inline bool DataObject::isOfDerivedClass() const noexcept
{
    return &typeid(*this) != &info().type;
}

// The base's own answer, nearly always without asking for it: the environment as it is.
inline EnvironmentPointer DataObject::environmentForCopy() const
{
    const bool hasMore = isOfDerivedClass() || environment()->own || environment()->logger;
    return hasMore ? IRGObject::environmentForCopy() : environment();
}

DataObject::DataObject(const ClassInfo &info) : IRGObject(info) { }

// The copies of children follow their own flags, and each of them all of its tree. So where a child's flag is the right
// one there is nothing left to do below it.
DataObject::DataObject(const DataObject &other) : IRGObject(other.objectClass(), other.environmentForCopy())
{
    if (!other.m_block)
        return;
    m_block = info().clone(*other.m_block);
    if (info().children == 0)
        return;
    const EnvironmentPointer environment = environmentForChildren();
    const HandDown handDown(environment, HandDown::Validate);
    auto follow = [&](const DataObject &child, int) {
        if (child.environment()->validate != environment->validate)
            child.takeDown(handDown);
    };
    info().forEach(info().children, [&](const Member &member) { member.forEachChild(*m_block, ChildAction(follow)); });
}

DataObject::DataObject(DataObject &&other) noexcept
    : IRGObject(other.objectClass(), other.environmentForCopy()), m_block(std::exchange(other.m_block, nullptr))
{
}

DataObject &DataObject::operator=(const DataObject &other) noexcept
{
    if (this == &other)
        return *this;
    if (other.m_block)
        other.m_block->addOwner();
    release(info(), std::exchange(m_block, other.m_block));
    return *this;
}

DataObject &DataObject::operator=(DataObject &&other) noexcept
{
    if (this != &other)
        release(info(), std::exchange(m_block, std::exchange(other.m_block, nullptr)));
    return *this;
}

DataObject::~DataObject()
{
    release(info(), m_block);
}

void DataObject::release(const REPORTGENERATOR::ObjectClass &objectClass, Block *block) noexcept
{
    if (block && block->dropOwner())
        static_cast<const ClassInfo &>(objectClass).destroy(block);
}

void DataObject::swapData(DataObject &other) noexcept
{
    std::swap(m_block, other.m_block);
}

// --- State -----------------------------------------------------------------------------------------------------------

Block &DataObject::block() const
{
    if (!m_block) {
        m_block = info().create();
        if (info().builtWithTheBlock != 0 || isOfDerivedClass())
            handOver();
    } else if (m_block->isShared()) {
        Block *own = info().clone(*m_block);
        release(info(), std::exchange(m_block, own));
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
    const ClassInfo &info = this->info();
    const auto byFlag = quint16(info.mandatory & ~info.presentByValue);
    bool isPresent = (m_block->flags.all() & byFlag) == byFlag;
    info.forEach(info.mandatory & info.presentByValue,
                 [&](const Member &member) { isPresent = isPresent && member.isPresent(*m_block); });
    return isPresent;
}

bool DataObject::AnyData() const
{
    if (!m_block)
        return false;
    for (const Member *member : info().bitOrder()) {
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
    for (const Member *member : info().bitOrder())
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
    Block *left = m_block ? &Member::block(*this) : nullptr;
    Block *right = other.m_block ? &Member::block(other) : nullptr;
    for (const Member *member : info().writtenOrder()) {
        if (!member->equals(left, right))
            return false;
    }
    return true;
}

bool DataObject::MergeRGObject(const REPORTGENERATOR::IRGObject &other)
{
    const auto *source = dynamic_cast<const DataObject *>(&other);
    if (!source || &source->info() != &info())
        return false;
    if (source == this || !source->m_block)
        return true;
    block();
    for (const Member *member : info().bitOrder())
        member->merge(*this, *source);
    return true;
}

void DataObject::Accept(Visitor &visitor) const
{
    if (!m_block)
        return;
    Block &own = block(); // a visitor gets to see objects, which change behind const
    for (const Member *member : info().writtenOrder())
        member->accept(own, visitor);
}

// --- Validate flag and logger ----------------------------------------------------------------------------------------

void DataObject::SetValidate(bool validate) const
{
    IRGObject::SetValidate(validate);
    const EnvironmentPointer environment = environmentForChildren();
    handDownToChildren(HandDown(environment, HandDown::Validate));
}

void DataObject::SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const
{
    IRGObject::SetLogger(std::move(logger));
    const EnvironmentPointer environment = environmentForChildren();
    handDownToChildren(HandDown(environment, HandDown::Logger));
}

void DataObject::SetObjectType(REPORTGENERATOR::ObjectTypes) { }

void DataObject::handOver() const
{
    if (isOfDerivedClass()) {
        SetValidate(GetValidate());
        SetLogger(GetLogger());
    } else {
        const EnvironmentPointer environment = environmentForChildren();
        handDownToChildren(HandDown(environment, HandDown::Both));
    }
}

void DataObject::handDownToChildren(const HandDown &handDown) const
{
    if (!m_block || info().children == 0)
        return;
    Block &own = Member::block(*this);
    auto hand = [&](const DataObject &child, int) { child.takeDown(handDown); };
    info().forEach(info().children, [&](const Member &member) { member.forEachChild(own, ChildAction(hand)); });
}

void DataObject::takeDown(const HandDown &handDown) const
{
    handDown.change(*this);
    if (m_block && (info().children | info().builtWithTheBlock) != 0)
        handDownToChildren(handDown);
}

// --- Check -----------------------------------------------------------------------------------------------------------

void DataObject::Check(bool flag) const
{
    if (isOfDerivedClass()) {
        handOver();
        checkTree(flag, nullptr);
        return;
    }
    try {
        const EnvironmentPointer environment = environmentForChildren();
        checkTree(flag, &environment); // one walk for both
    } catch (...) {
        handOver(); // what a check does not reach is told all the same
        throw;
    }
}

void DataObject::Check() const
{
    Check(false);
}

void DataObject::checkTree(bool flag, const EnvironmentPointer *handedDown) const
{
    Block &own = Member::block(*this);
    const ClassInfo &info = this->info();
    const quint16 set = own.flags.all();
    bool isGood = (set & info.mandatory) == info.mandatory;
    info.forEach(set & info.mayHoldTheInvalid,
                 [&](const Member &member) { isGood = isGood && !member.holdsTheInvalid(own); });
    if (!isGood)
        checkMemberByMember(flag, handedDown, own);
    info.forEach(info.children, [&](const Member &member) { checkChildren(member, flag, handedDown, own); });
}

// Something is wrong with a member. A child of a member in front of it comes first, if something is wrong there too.
void DataObject::checkMemberByMember(bool flag, const EnvironmentPointer *handedDown, Block &own) const
{
    for (const Member *member : info().bitOrder()) {
        member->check(*this, own);
        checkChildren(*member, flag, handedDown, own);
    }
}

void DataObject::checkChildren(const Member &member, bool flag, const EnvironmentPointer *handedDown, Block &own) const
{
    const bool isSet = member.isSet(own);
    auto check = [=](const DataObject &child, int) {
        if (handedDown)
            child.takeEnvironment(*handedDown);
        if (isSet)
            child.checkTree(flag, handedDown);
        else if (handedDown)
            child.handDownToChildren(HandDown(*handedDown, HandDown::Both));
    };
    member.forEachChild(own, ChildAction(check));
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
    for (const Member *member : info().bitOrder()) {
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
        for (const Member *member : info().bitOrder()) {
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
    if (GetValidate() && !HasData()) // asked anew: a derived class may have its own way with what it is told
        return false;
    block();
    return true;
}

// For an object whose tree has been handed flag and logger. Where the parent's check included it, checking again
// at every level would be work times depth.
bool DataObject::mayWriteNested(bool checkedByParent) const
{
    if (environment()->validate) {
        if (!checkedByParent)
            checkTree(false, nullptr);
        if (!HasData())
            return false;
    }
    block();
    return true;
}

void DataObject::GetXml(QXmlStreamWriter &writer) const
{
    if (!mayWrite())
        return;
    XmlWriterOutput output(writer);
    writeElement(output);
}

bool DataObject::composeXml(QByteArray &utf8) const
{
    if (isOfDerivedClass())
        return false; // whose GetXml() may be another
    if (!mayWrite())
        return true;
    XmlDocument document;
    writeElement(document);
    if (document.isFaithful())
        utf8 = document.takeUtf8();
    return document.isFaithful();
}

void DataObject::writeNestedXml(XmlOutput &output, bool checkedByParent) const
{
    if (mayWriteNested(checkedByParent))
        writeElement(output);
}

void DataObject::writeElement(XmlOutput &output) const
{
    output.writeStartElement(GetObjectName());
    writeMembers(output);
    output.writeEndElement();
}

void DataObject::writeMembers(XmlOutput &output) const
{
    Block &own = Member::block(*this);
    for (const Member *member : info().writtenOrder())
        member->writeXml(*this, own, output);
}

/// While the content of an object is read, exceptions or not: it is known whether the object has handed over, and the
/// reader does not process namespaces. It looks each name up among all that are declared around it, and unknown
/// elements can be nested without end.
class DataObject::ReadingContent
{
public:
    ReadingContent(const DataObject &object, QXmlStreamReader &reader, bool hasHandedOver)
        : m_object(object), m_reader(reader), m_outer(innermost), m_namespaces(reader.namespaceProcessing()),
          m_handedOver(hasHandedOver)
    {
        innermost = this;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(false);
    }
    ReadingContent(const ReadingContent &) = delete;
    ReadingContent &operator=(const ReadingContent &) = delete;
    ~ReadingContent()
    {
        innermost = m_outer;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(true);
    }

    /// Whether this is the first time that the object asks while it is read; always true if it is not.
    static bool isFirstTime(const DataObject &object)
    {
        return !innermost || &innermost->m_object != &object || !std::exchange(innermost->m_handedOver, true);
    }

private:
    // Objects have no room for what matters only while they are read.
    static thread_local ReadingContent *innermost;

    const DataObject &m_object;
    QXmlStreamReader &m_reader;
    ReadingContent *const m_outer;
    const bool m_namespaces;
    bool m_handedOver;
};

thread_local DataObject::ReadingContent *DataObject::ReadingContent::innermost = nullptr;

void DataObject::handOverOnce() const
{
    if (ReadingContent::isFirstTime(*this))
        handOver();
}

void DataObject::ProcessXml(QXmlStreamReader &reader)
{
    const bool isNew = !m_block;
    block();
    readAttributes(reader);
    readContent(reader, reader.name().toString(), isNew);
}

// For a child, on whose start the reader stands.
void DataObject::readElement(QXmlStreamReader &reader, const QString &name)
{
    const bool isNew = !m_block;
    block();
    if (info().attributeCount != 0)
        readAttributes(reader);
    readStartedContent(reader, name, isNew);
}

// The reader's attributes are given back before it reads on: what holds on to them makes it copy them.
void DataObject::readAttributes(QXmlStreamReader &reader)
{
    const QXmlStreamAttributes attributes = reader.attributes();
    const int count = attributes.size();
    int next = 0; // where the next one is expected: objects write them in the order of the rows
    for (const Member *member : info().attributes()) {
        int at = next;
        for (int tried = 0; tried < count; ++tried, ++at) {
            if (at == count)
                at = 0;
            if (member->isNamed(attributes.at(at).qualifiedName())) {
                member->readXmlAttribute(*this, attributes.at(at).value());
                next = at + 1;
                break;
            }
        }
    }
}

void DataObject::readContent(QXmlStreamReader &reader, const QString &name, bool isNew)
{
    if (!reader.atEnd() && !reader.hasError())
        readStartedContent(reader, name, isNew);
}

void DataObject::readStartedContent(QXmlStreamReader &reader, const QString &name, bool isNew)
{
    if (info().children == 0 && !reader.namespaceProcessing() && !isOfDerivedClass()) {
        processContent(reader, name); // most objects: there is nobody to hand over to
        return;
    }
    // With new data there is nobody either: what there is was handed flag and logger with the data.
    const ReadingContent reading(*this, reader, isNew && !isOfDerivedClass());
    const quint16 lists = listsToFill();
    processContent(reader, name);
    squeeze(lists);
}

// Lists to which something is added again and again keep their room, and so do those that a caller has given some.
quint16 DataObject::listsToFill() const
{
    if (info().lists == 0)
        return 0;
    const Block &own = Member::block(*this);
    unsigned lists = 0;
    info().forEach(info().lists, [&](const Member &member) {
        if (!member.hasRoom(own))
            lists |= 1U << member.bit();
    });
    return quint16(lists);
}

void DataObject::squeeze(quint16 lists)
{
    if (lists == 0)
        return;
    Block &own = block();
    info().forEach(lists, [&](const Member &member) { member.squeeze(own); });
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
    const QStringView name = reader.name();
    const auto read = [&](const ClassInfo::Rows &rows) {
        for (const Member *member : rows) {
            if (member->isNamed(name)) {
                member->readXmlElement(*this, reader);
                return true;
            }
        }
        return false;
    };
    return read(info().elements()) || read(info().attributes()); // elements are what is expected
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
    BinaryWriter writer(stream);
    const auto record = writeTag ? writer.begin(quint32(tag)) : writer.beginUntagged();
    writeMemberRecords(writer);
    writer.end(record);
    writer.flushTo(stream);
    return true;
}

void DataObject::writeNestedRecord(BinaryWriter &writer, bool checkedByParent) const
{
    if (!mayWriteNested(checkedByParent))
        return;
    const auto record = writer.beginUntagged();
    writeMemberRecords(writer);
    writer.end(record);
}

void DataObject::writeNestedRecord(BinaryWriter &writer, quint32 tag, bool checkedByParent) const
{
    if (!mayWriteNested(checkedByParent))
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
