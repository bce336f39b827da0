// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QVariant>

#include <jobxml/Export.h>

namespace JobXml {

class DataObject;

/// Sees the members of an object, see DataObject::Accept(). Derive from it to show, compare or export a document
/// without a list of members of one's own.
class JOBXML_EXPORT Visitor
{
public:
    virtual ~Visitor();

    /// A text, boolean, number, or an enumeration value by its name. `value` is what the member holds, set or not.
    virtual void VisitValue(QLatin1String name, const QVariant &value, bool set) = 0;

    /// A list, with its number of items; the items follow by VisitChild() or, if they are enumeration values, by
    /// VisitValue().
    virtual void VisitList(QLatin1String name, int size, bool set) = 0;

    /// A child object: an item of a list (`index` counts from 0), or a member by itself (`index` is -1). Of a choice
    /// only the selected alternative is shown. Call `child.Accept(*this)` to descend.
    virtual void VisitChild(QLatin1String name, const DataObject &child, int index) = 0;

protected:
    Visitor() = default;
    Visitor(const Visitor &) = default;
    Visitor &operator=(const Visitor &) = default;
};

} // namespace JobXml
