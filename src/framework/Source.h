// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

#include "framework/VisitedMember.h"

namespace JobXml {

class Member;

/// What objects are read from: XML or tagged records. Knows where it is, in the document and in the tree of objects, so
/// that a refused value can be reported with its place and path.
class Source
{
public:
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    /// A place in the document, as the source itself counts.
    using Position = qint64;

    /// An object that is being read. Its member and position are those of the element, attribute or record that is read
    /// into it.
    struct Frame
    {
        Frame(Source &theSource, DataObject &theObject)
            : object(theObject), source(theSource), outer(theSource.m_innermost)
        {
            source.m_innermost = this;
        }
        Frame(const Frame &) = delete;
        Frame &operator=(const Frame &) = delete;
        ~Frame() { source.m_innermost = outer; }

        DataObject &object;
        const Member *member = nullptr;
        Position position = -1;

        Source &source;
        Frame *const outer;
    };

    /// Whether reading may call code of the caller's program, which may use the objects that are being read.
    bool runsForeignCode() const { return m_runsForeignCode; }

    /// The object that is being read; null if it is read untagged, without places.
    Frame *innermost() const { return m_innermost; }

    /// Whether problems are collected, so that what is stored may be needed twice.
    bool isCollecting() const { return m_visitor != nullptr; }

    /// Stores what was read into the innermost object. An exception by which the object refuses it receives the place.
    /// If problems are collected, the exception is one of them, and the action is repeated without validation.
    template <class Action>
    void store(Action &&action)
    {
        try {
            action();
        } catch (ReportException &refusal) {
            refused(refusal);
            storeUnvalidated(ActionOn<>(action));
        }
    }

    /// Calls code of a derived class that reads from this source. If problems are collected, an exception is one of
    /// them.
    template <class Action>
    void readDerived(Action &&action)
    {
        try {
            action();
        } catch (ReportException &refusal) {
            refused(refusal);
        }
    }

    /// Adds the place of the innermost object to an exception that ends its reading, and has none.
    void locate(ReportException &exception) const;

protected:
    /// `visitor` receives the problems if they are collected; otherwise it is null.
    Source(bool runsForeignCode, const ProblemVisitor *visitor) : m_visitor(visitor), m_runsForeignCode(runsForeignCode)
    {
    }
    ~Source() = default;

private:
    /// Sets line, column and offset, as far as they are known.
    virtual void resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const = 0;

    void refused(ReportException &refusal) const;
    void storeUnvalidated(const ActionOn<> &action) const;
    ObjectPath pathTo(const Frame &frame) const;

    const ProblemVisitor *const m_visitor;
    Frame *m_innermost = nullptr;
    const bool m_runsForeignCode;
};

} // namespace JobXml
