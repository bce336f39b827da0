// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// Exists while all problems of an object are collected as it is read. A caller's reader or stream, which overridden
/// operations of the object receive, cannot carry the visitor along.
class CollectedReading
{
public:
    /// `visitor` is null if only unreadable documents are problems.
    CollectedReading(const DataObject &object, const ProblemVisitor *visitor)
        : m_object(object), m_visitor(visitor), m_outer(innermost)
    {
        innermost = this;
    }
    CollectedReading(const CollectedReading &) = delete;
    CollectedReading &operator=(const CollectedReading &) = delete;
    ~CollectedReading() { innermost = m_outer; }

    /// The visitor for the problems of an object; null if they are not collected.
    static const ProblemVisitor *visitorFor(const DataObject &object)
    {
        return innermost ? innermost->findVisitor(object) : nullptr;
    }

    /// The path to the object whose content ended the reading.
    static void setPathOfEnd(const ObjectPath &path)
    {
        if (innermost)
            innermost->m_pathOfEnd = path;
    }
    const ObjectPath &pathOfEnd() const { return m_pathOfEnd; }

private:
    const ProblemVisitor *findVisitor(const DataObject &object) const
    {
        if (&m_object == &object)
            return m_visitor;
        return m_outer ? m_outer->findVisitor(object) : nullptr;
    }

    static thread_local CollectedReading *innermost;

    const DataObject &m_object;
    const ProblemVisitor *const m_visitor;
    CollectedReading *const m_outer;
    ObjectPath m_pathOfEnd;
};

} // namespace JobXml
