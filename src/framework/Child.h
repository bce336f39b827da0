// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include "framework/Behavior.h"
#include "framework/Composition.h"
#include "framework/Propagation.h"
#include "framework/XmlInput.h"

namespace JobXml {

/// The operations of rows on child objects.
namespace Child {

/// \name Writing
/// While validating, a child without data writes nothing, and one that has not been checked is checked. `isChecked`:
/// whether the check of the parent includes the child.
/// @{
void writeXml(const DataObject &child, const DataObject &parent, XmlOutput &output, bool isChecked);
void writeRecord(const DataObject &child, const DataObject &parent, BinaryWriter &writer, bool isChecked);
void writeRecord(const DataObject &child, const DataObject &parent, BinaryWriter &writer, quint32 tag, bool isChecked);
inline void writeSnapshot(const DataObject &child, BinaryWriter &writer)
{
    ObjectAccess::behavior(child).writeSnapshot(child, writer);
}
/// @}

/// \name Reading
/// @{

/// Reads the element `name`, whose start tag was read last. Returns false if the document ends prematurely.
bool readXml(DataObject &child, XmlInput &input, const XmlName &name);
void readRecord(DataObject &child, BinaryReader &reader, qint32 length);
inline bool readSnapshot(DataObject &child, BinaryReader &reader)
{
    ObjectAccess::block(child); // also if there is nothing to read
    return ObjectAccess::behavior(child).readSnapshot(child, reader);
}
/// @}

} // namespace Child

/// Whether the object has something to write. Propagates flag and logger, and checks while validating.
bool prepareToWrite(const DataObject &object);
/// The same for a child whose parent is being written; `isChecked` as for Child::writeXml().
bool prepareToWrite(const DataObject &child, const DataObject &parent, bool isChecked);

/// \name Writing in one traversal
/// Checking a tree and then writing it would take two traversals, and each fetches all objects from memory. Whatever is
/// composed in memory can be discarded, so it is checked while it is composed: objects by mayBegin(), values by the
/// rows that write them. If anything fails, the target is restarted and the steps are taken one by one, so that the
/// first failure is thrown in the order of the check and not in that of writing.
///
/// While validating, nothing is created for objects that have no data, and nothing below a failure is visited. So a
/// failure leaves the objects as the check alone does.
/// @{

/// Whether the object may be written: while validating, all its mandatory flags are set, and nothing was found before.
inline bool mayBegin(const DataObject &object, Composition &composition)
{
    if (!composition.validates)
        return true;
    const Block *const own = ObjectAccess::existingBlock(object);
    const quint16 mandatory = ObjectAccess::info(object).mandatory;
    composition.isSound = composition.isSound && own && (own->flags.all() & mandatory) == mandatory;
    return composition.isSound;
}

/// The same for a child, with or without a composition.
inline bool prepareToWrite(const DataObject &child, const DataObject &parent, const WriteTarget &target, bool isChecked)
{
    Composition *const composition = target.composition();
    if (!composition)
        return prepareToWrite(child, parent, isChecked);
    Propagation::propagateTo(child, composition->environment);
    return mayBegin(child, *composition);
}

/// Propagates to a child that is not written, and to everything below it.
inline void skipChild(const DataObject &child, const Composition &composition)
{
    Propagation(composition.environment).propagateTo(child);
}

/// Calls `write`, which writes the object to the target, unless the object has nothing to write; returns whether it
/// has.
template <class Target, class Write>
bool compose(const DataObject &object, Target &target, const Write &write)
{
    if (!ObjectAccess::isOfDerivedClass(object)) { // a derived class may override the steps
        Composition composition{Propagation::forChildren(object), object.GetValidate()};
        target.setComposition(&composition);
        try {
            if (mayBegin(object, composition))
                write();
        } catch (const std::bad_alloc &) {
            if (prepareToWrite(object)) // the check comes first
                throw;
            composition.isSound = false;
        }
        target.setComposition(nullptr);
        if (composition.isSound)
            return true;
        target.restart();
    }
    if (!prepareToWrite(object))
        return false;
    write();
    return true;
}
/// @}

} // namespace JobXml
