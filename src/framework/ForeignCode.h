// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>
#include <utility>

#include "framework/ObjectAccess.h"
#include "framework/Propagation.h"
#include "framework/Source.h"

namespace JobXml {

/// Precautions while a caller's device or XML reader is read, whose code may use the object that is being read, copy it
/// or assign to it. That shares, replaces or destroys the object's data, so nothing may refer to them meanwhile.
/// Reading from memory runs no such code and needs none of this.
namespace ForeignCode {

/// Swaps a child's data: copying them for each of many small records or elements would make reading quadratic.
template <class Part>
void extract(Part &original, Part &part)
{
    if constexpr (std::is_base_of_v<DataObject, Part>) {
        Propagation::propagateTo(part, ObjectAccess::environment(original));
        part.swap(original);
    } else {
        part = original;
    }
}

/// Extracts the part that `find` returns for the object's block, reads it, and puts it back into the block that the
/// object has then, also if reading throws. Copies of the object made in between lack the part.
template <class Find, class Read>
Q_NEVER_INLINE bool readPartApart(DataObject &object, const Find &find, const Read &read)
{
    std::decay_t<decltype(find(ObjectAccess::block(object)))> part{};
    extract(find(ObjectAccess::block(object)), part);
    const auto putBack = [&] {
        using std::swap;
        swap(find(ObjectAccess::block(object)), part);
    };
    bool isRead = false;
    try {
        isRead = read(part);
    } catch (...) {
        putBack();
        throw;
    }
    putBack();
    return isRead;
}

/// Reads a new item of a list outside the list. `append` makes it the last one once it is complete; like an appended
/// item it inherits flag and logger of the list's object. Returns false without appending it if `read` does.
template <class Item, class Read, class Append>
bool readItemApart(const REPORTGENERATOR::EnvironmentPointer &environment, const Read &read, const Append &append)
{
    Item item;
    Propagation::propagateTo(item, environment);
    if (!read(item))
        return false;
    Item &inList = append(item);
    inList.swap(item);
    Propagation::propagateTo(inList, environment);
    return true;
}

/// The object's block after a part was read: the code may have copied the object, which shares its data then.
inline Block &blockAfterReading(const Source &source, const DataObject &object, Block &before)
{
    return source.runsForeignCode() ? ObjectAccess::block(object) : before;
}

} // namespace ForeignCode
} // namespace JobXml
