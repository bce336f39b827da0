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
    static constexpr Position noPosition = -1;

    /// An object that is being read. If that is a child of it, `children` is the row of the child.
    struct Frame
    {
        QT_WARNING_PUSH
        // g++ 12 warns although the destructor removes the address again.
        QT_WARNING_DISABLE_GCC("-Wdangling-pointer")
        Frame(Source &theSource, DataObject &theObject)
            : object(theObject), source(theSource), outer(theSource.m_innermost)
        {
            source.m_innermost = this;
        }
        QT_WARNING_POP
        Frame(const Frame &) = delete;
        Frame &operator=(const Frame &) = delete;
        ~Frame() { source.m_innermost = outer; }

        DataObject &object;
        const Member *children = nullptr;

        Source &source;
        Frame *const outer;
    };

    /// Whether reading may call code of the caller's program, which may use the objects that are being read.
    bool runsForeignCode() const { return m_runsForeignCode; }

    /// Notes that a child of the innermost object is read next. Snapshots have no places, and note nothing.
    void readChildOf(const Member &row)
    {
        if (m_innermost)
            m_innermost->children = &row;
    }

    /// The place of the element, attribute or record that was read last.
    virtual Position position() const = 0;

    /// Whether problems are collected, so that what is stored may be needed twice.
    bool isCollecting() const { return m_visitor != nullptr; }

    /// Stores what was read last into a member of the innermost object. An exception by which the object refuses it
    /// receives the place. If problems are collected, the exception is one of them, and the action is repeated without
    /// validation.
    template <class Action>
    void store(const Member *member, Action &&action)
    {
        try {
            action();
        } catch (ReportException &refusal) {
            refused(refusal, member, position());
            storeUnvalidated(ActionOn<>(action));
        }
    }

    /// The same for what was read at an earlier position, if it is known.
    template <class Action>
    void store(const Member *member, Position position, Action &&action)
    {
        try {
            action();
        } catch (ReportException &refusal) {
            refused(refusal, member, position == noPosition ? this->position() : position);
            storeUnvalidated(ActionOn<>(action));
        }
    }

    /// The same for a text, which the problem shows. `textOf` returns it.
    template <class TextOf, class Action>
    void storeText(const Member *member, Position position, const TextOf &textOf, Action &&action)
    {
        try {
            action();
        } catch (ReportException &refusal) {
            refused(refusal, member, position == noPosition ? this->position() : position, textOf());
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
            refused(refusal, nullptr, position());
        }
    }

    /// Adds the place to an exception that ends the reading of the innermost object.
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

    void refused(ReportException &refusal, const Member *member, Position position, const QString &value = {}) const;
    void setPlace(ReportException &exception, const ObjectPath &path, Position position) const;
    void storeUnvalidated(const ActionOn<> &action) const;
    ObjectPath pathTo(const Frame &frame) const;
    const QString &labelOf(const Frame &frame, int depth, int index) const;

    struct Label
    {
        QString identification; // keeps the text, so that no other one has its address
        QString name;
        int index = 0;
        QString text;
    };

    const ProblemVisitor *const m_visitor;
    // The last label of each depth. Problems share it: it may be as long as the document.
    mutable QVector<Label> m_labels;
    Frame *m_innermost = nullptr;
    const bool m_runsForeignCode;
};

} // namespace JobXml
