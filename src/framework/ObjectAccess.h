// SPDX-License-Identifier: MIT
#pragma once

#include <typeinfo>
#include <utility>

#include <jobxml/DataObject.h>

#include "framework/Block.h"
#include "framework/ClassInfo.h"

namespace JobXml {

/// The framework's access to objects; DataObject has no other friend. What the classes of the model need of an object
/// besides its public operations is here, so that the public header need not show it.
class ObjectAccess
{
public:
    static const ClassInfo &info(const DataObject &object) noexcept
    {
        return static_cast<const ClassInfo &>(object.objectClass());
    }
    static const Behavior &behavior(const DataObject &object) noexcept { return info(object).behavior; }

    /// Derived classes may override the operations through which flag, logger and content pass; of all other objects
    /// the framework knows what these do, and takes shorter ways.
    static bool isOfDerivedClass(const DataObject &object) noexcept { return &typeid(object) != &info(object).type; }

    /// The object's data, created if there are none, and detached if they are shared.
    static Block &block(const DataObject &object)
    {
        return object.m_block && !object.m_block->isShared() ? *object.m_block : createOrDetach(object);
    }
    static const Block *existingBlock(const DataObject &object) noexcept { return object.m_block; }
    /// Exchanges the data of two objects of one class; each keeps its validate flag and its logger.
    static void swapBlocks(DataObject &left, DataObject &right) noexcept { std::swap(left.m_block, right.m_block); }

    // What the base library offers to derived classes.
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
    static QString readElementText(DataObject &object, QXmlStreamReader &reader) { return object.GetTextValue(reader); }
    static void processContent(DataObject &object, QXmlStreamReader &reader, const QString &name)
    {
        object.processContent(reader, name);
    }

    // What derived classes write and read themselves.
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
    static void collectProblems(const DataObject &object, const ObjectPath &path, const ProblemVisitor &visitor)
    {
        object.collectProblems(path, visitor);
    }

private:
    static Block &createOrDetach(const DataObject &object);
};

} // namespace JobXml
