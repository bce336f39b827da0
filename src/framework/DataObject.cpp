// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include "framework/Behavior.h"
#include "framework/Member.h"
#include "framework/Propagation.h"

namespace JobXml {

using REPORTGENERATOR::EnvironmentPointer;

// --- Construction, copies, moves -------------------------------------------------------------------------------------

const Behavior Behavior::regular;

namespace {

void release(const ClassInfo &info, Block *block) noexcept
{
    if (block && block->dropOwner())
        info.destroy(block);
}

} // namespace

DataObject::DataObject(const ClassInfo &info) : IRGObject(info) { }

DataObject::DataObject(const DataObject &other)
    : IRGObject(other.objectClass(), ObjectAccess::environmentForCopy(other))
{
    if (!other.m_block)
        return;
    const ClassInfo &info = ObjectAccess::info(other);
    m_block = info.clone(*other.m_block);
    if ((info.children | info.createdWithTheBlock) != 0)
        info.behavior.propagateToCopies(*this);
}

DataObject::DataObject(DataObject &&other) noexcept
    : IRGObject(other.objectClass(), ObjectAccess::environmentForCopy(other)),
      m_block(std::exchange(other.m_block, nullptr))
{
}

DataObject &DataObject::operator=(const DataObject &other) noexcept
{
    if (this == &other)
        return *this;
    if (other.m_block)
        other.m_block->addOwner();
    release(ObjectAccess::info(*this), std::exchange(m_block, other.m_block));
    return *this;
}

DataObject &DataObject::operator=(DataObject &&other) noexcept
{
    if (this != &other)
        release(ObjectAccess::info(*this), std::exchange(m_block, std::exchange(other.m_block, nullptr)));
    return *this;
}

DataObject::~DataObject()
{
    release(ObjectAccess::info(*this), m_block);
}

// --- State -----------------------------------------------------------------------------------------------------------

Block &ObjectAccess::createOrDetach(const DataObject &object)
{
    const ClassInfo &info = ObjectAccess::info(object);
    Block *&block = object.m_block;
    if (!block) {
        block = info.create();
        const bool isNew = environment(object) == EnvironmentPointer::plain(true); // as everything in the block is
        if (isOfDerivedClass(object) || (info.createdWithTheBlock != 0 && !isNew))
            Propagation::propagate(object);
    } else if (block->isShared()) {
        Block *own = info.clone(*block);
        release(info, std::exchange(block, own));
    }
    return *block;
}

bool DataObject::IsInitialized() const noexcept
{
    return m_block != nullptr;
}

bool DataObject::HasData() const
{
    if (!m_block)
        return false;
    const ClassInfo &info = ObjectAccess::info(*this);
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
    for (const Member *member : ObjectAccess::info(*this).bitOrder()) {
        if (member->isPresent(*m_block))
            return true;
    }
    return false;
}

void DataObject::Reset()
{
    if (!m_block)
        return;
    Block &own = ObjectAccess::block(*this);
    own.flags.clearAll();
    for (const Member *member : ObjectAccess::info(*this).bitOrder())
        member->reset(own);
}

void DataObject::ResetToDefault()
{
    const bool existed = IsInitialized();
    ObjectAccess::block(*this);
    if (existed)
        Reset();
}

bool Behavior::equals(const DataObject &left, const DataObject &right) const
{
    Block *const leftBlock = ObjectAccess::detachedBlock(left);
    Block *const rightBlock = ObjectAccess::detachedBlock(right);
    if (!leftBlock && !rightBlock)
        return true;
    for (const Member *member : ObjectAccess::info(left).writtenOrder()) {
        if (!member->equals(leftBlock, rightBlock))
            return false;
    }
    return true;
}

bool DataObject::MergeRGObject(const REPORTGENERATOR::IRGObject &other)
{
    const auto *source = dynamic_cast<const DataObject *>(&other);
    // A derived class with its own identifier is a different class, although it has the same members.
    if (!source || source->m_classIdentifier != m_classIdentifier
        || &ObjectAccess::info(*source) != &ObjectAccess::info(*this))
        return false;
    if (source == this || !source->m_block)
        return true;
    ObjectAccess::block(*this);
    for (const Member *member : ObjectAccess::info(*this).bitOrder())
        member->merge(*this, *source);
    return true;
}

void Behavior::forEachMember(const DataObject &object, const MemberAction &action) const
{
    for (const Member *member : ObjectAccess::info(object).writtenOrder())
        action(*member);
}

void DataObject::SetObjectType(REPORTGENERATOR::ObjectTypes) { }

} // namespace JobXml
