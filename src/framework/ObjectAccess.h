// SPDX-License-Identifier: MIT
#pragma once

#include <typeinfo>
#include <utility>

#include <jobxml/DataObject.h>

#include "framework/Block.h"
#include "framework/ClassInfo.h"

namespace JobXml {

/// The framework's access to objects; DataObject has no other friend. Contains what the classes of the model need
/// besides the public operations, so that the public header does not show it.
class ObjectAccess
{
public:
    static const ClassInfo &info(const DataObject &object) noexcept
    {
        return static_cast<const ClassInfo &>(object.objectClass());
    }
    static const Behavior &behavior(const DataObject &object) noexcept { return info(object).behavior; }

    /// Derived classes may override the operations that propagate flag and logger or write and read content. For all
    /// other objects the framework knows what these operations do and uses faster code.
    static bool isOfDerivedClass(const DataObject &object) noexcept { return &typeid(object) != &info(object).type; }

    /// The object's data. Creates them if there are none, and detaches them if they are shared.
    static Block &block(const DataObject &object)
    {
        return object.m_block && !object.m_block->isShared() ? *object.m_block : createOrDetach(object);
    }
    /// The object's data, detached if they are shared; null if there are none.
    static Block *detachedBlock(const DataObject &object)
    {
        Block *const block = object.m_block;
        return block && block->isShared() ? &createOrDetach(object) : block;
    }
    static const Block *existingBlock(const DataObject &object) noexcept { return object.m_block; }
    /// Exchanges the data of two objects of one class; each keeps its validate flag and its logger.
    static void swapBlocks(DataObject &left, DataObject &right) noexcept { std::swap(left.m_block, right.m_block); }

    // Protected operations of the base library.
    using EnvironmentPointer = REPORTGENERATOR::EnvironmentPointer;
    static const EnvironmentPointer &environment(const DataObject &object) { return object.environment(); }
    /// As IRGObject::environmentForCopy(), nearly always without calling it: most copies share the environment.
    static EnvironmentPointer environmentForCopy(const DataObject &object)
    {
        const EnvironmentPointer &environment = object.environment();
        const bool isShared = !isOfDerivedClass(object) && !environment.isOfOneObject() && !environment->logger;
        return isShared ? environment : object.environmentForCopy();
    }
    static void setEnvironment(const DataObject &object, const EnvironmentPointer &environment)
    {
        object.setEnvironment(environment);
    }
    static void changeEnvironment(const DataObject &object, bool validate,
                                  const std::shared_ptr<REPORTGENERATOR::Logger> &logger,
                                  const EnvironmentPointer &shared)
    {
        object.changeEnvironment(validate, logger, shared);
    }
    static void processStartElement(DataObject &object, QXmlStreamReader &reader)
    {
        object.ProcessXmlStartElement(reader);
    }

    // The operations by which derived classes write and read their own content.
    static void writeOwnAttributes(const DataObject &object, QXmlStreamWriter &writer)
    {
        object.writeOwnAttributes(writer);
    }
    static void writeOwnElements(const DataObject &object, QXmlStreamWriter &writer)
    {
        object.writeOwnElements(writer);
    }
    static bool readOwnRecord(DataObject &object, QDataStream &stream, quint32 tag, qint32 length)
    {
        return object.readOwnRecord(stream, tag, length);
    }

private:
    static Block &createOrDetach(const DataObject &object);
};

} // namespace JobXml
