// SPDX-License-Identifier: MIT
#pragma once

#include "framework/Behavior.h"
#include "framework/XmlInput.h"

namespace JobXml {

/// The operations of rows on child objects.
namespace Child {

/// The steps that writing the parent has done for its children: propagating flag and logger, or also checking. If a
/// derived class overrides these operations, they need not have reached the children.
enum class Preparation { Nothing, Propagated, Checked };

inline Preparation preparation(const DataObject &parent, bool isChecked)
{
    if (ObjectAccess::isOfDerivedClass(parent))
        return Preparation::Nothing;
    return isChecked ? Preparation::Checked : Preparation::Propagated;
}

/// \name Writing
/// While validating, a child without data writes nothing, and one that has not been checked is checked.
/// @{
void writeXml(const DataObject &child, XmlOutput &output, Preparation preparation);
void writeRecord(const DataObject &child, BinaryWriter &writer, Preparation preparation);
void writeRecord(const DataObject &child, BinaryWriter &writer, quint32 tag, Preparation preparation);
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
/// The same for a child whose parent is being written.
bool prepareToWrite(const DataObject &child, Child::Preparation preparation);

} // namespace JobXml
