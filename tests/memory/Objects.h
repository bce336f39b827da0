// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QBuffer>

#include "Encodings.h"
#include "OutOfMemory.h"
#include "WholeTree.h"

/// The initial state of the object that an operation changes.
enum class Begins {
    New, ///< without data
    Filled, ///< with other data than those of the source
    Shared, ///< the same, and it shares them with a third object
};

/// The state in which an operation leaves the object that it changes when memory runs out.
enum class Leaves {
    Parts, ///< the values read or copied before, as with every other exception
    Nothing, ///< the object is as it was
    Gaps, ///< items of lists without data, as there were before
};

/// The objects that take part in an operation.
template <class T>
struct Objects
{
    T source; ///< complete; only read
    T target;
    T sharer; ///< the other owner of shared data; only read

    // The input and the result of the operation.
    QByteArray bytes;
    QString text;
    bool answer = false;
    std::shared_ptr<void> held; ///< by the caller

    // For operations that expect an open stream; made by prepare(), on the bytes if by openStream().
    std::unique_ptr<QIODevice> device;
    std::unique_ptr<QDataStream> stream;
    std::unique_ptr<QXmlStreamReader> reader;
    std::unique_ptr<QXmlStreamWriter> writer;

    void openStream(QIODevice::OpenMode mode)
    {
        device = std::make_unique<QBuffer>(&bytes);
        device->open(mode);
        stream = std::make_unique<QDataStream>(device.get());
    }
};

template <class T>
struct Operation
{
    using Action = std::function<void(Objects<T> &)>;
    using Question = std::function<bool(Objects<T> &)>;

    QByteArray name;
    Begins target;
    Leaves leaves;
    Action prepare;
    Action perform;
    Question isRight; ///< whether the result is correct when nothing failed
    QVector<OutOfMemory::KnownPlace> places; ///< where it cannot survive
    Question isUnharmed; ///< whether, after a failure, everything else is unchanged
};

/// A complete object of a class, its encodings, and another, smaller object.
template <class T>
struct Samples
{
    T complete;
    T other;
    QString xml = xmlOf(complete);
    QByteArray record = recordOf(complete);
    QByteArray snapshot = snapshotOf(complete);
    QByteArray otherSnapshot = snapshotOf(other);

    Samples(const T &completeObject, const T &otherObject) : complete(completeObject), other(otherObject) { }
};

/// To be specialized: makes the samples of a class once.
template <class T>
const Samples<T> &samples();

/// Whether every item in every list may be appended to a list.
inline bool listsAreWhole(const JobXml::DataObject &root)
{
    bool whole = true;
    JobXml::visit(root, [&](const JobXml::MemberView &member) {
        WholeTree::forEachChild(member, [&](const JobXml::DataObject &child, int index) {
            whole = whole && (index < 0 || child.HasData()) && listsAreWhole(child);
        });
    });
    return whole;
}

/// One attempt at an operation on objects of the class T.
template <class T>
class ObjectsAttempt : public OutOfMemory::Attempt
{
public:
    explicit ObjectsAttempt(const Operation<T> &operation) : m_operation(operation)
    {
        m_objects.source = T(samples<T>().complete);
        if (m_operation.target != Begins::New)
            m_objects.target = T(samples<T>().other);
        if (m_operation.target == Begins::Shared)
            m_objects.sharer = m_objects.target;
        m_operation.prepare(m_objects);
    }

    void perform() override { m_operation.perform(m_objects); }
    bool isRight() override { return m_operation.isRight(m_objects) && onlookersAreUnchanged(); }

    QByteArray state() override
    {
        return (m_objects.target.IsInitialized() ? "initialized " : "new ") + snapshotOf(m_objects.target)
            + m_objects.bytes + m_objects.text.toUtf8() + (m_objects.answer ? "yes" : "no")
            + m_objects.target.GetErrorString().toUtf8();
    }

    QString complaint(bool failed) override
    {
        if (!onlookersAreUnchanged())
            return QStringLiteral("an object changed that was only to be looked at");
        if (failed && m_operation.leaves == Leaves::Nothing && !isUnchanged())
            return QStringLiteral("the object changed although the operation failed");
        if (failed && m_operation.isUnharmed && !m_operation.isUnharmed(m_objects))
            return QStringLiteral("the operation changed something other than an object");
        if (failed && !m_objects.target.GetErrorString().isNull())
            return QStringLiteral("there is an error string besides the exception");
        if (m_operation.leaves != Leaves::Gaps && !listsAreWhole(m_objects.target))
            return QStringLiteral("a list holds an item without data");
        return furtherUse();
    }

private:
    bool isUnchanged()
    {
        const T &begun = m_operation.target == Begins::New ? m_unused : samples<T>().other;
        return m_objects.target == begun && snapshotOf(m_objects.target) == snapshotOf(begun);
    }

    bool onlookersAreUnchanged() const
    {
        const bool shared = m_operation.target == Begins::Shared;
        return m_objects.source == samples<T>().complete && snapshotOf(m_objects.source) == samples<T>().snapshot
            && (!shared || snapshotOf(m_objects.sharer) == samples<T>().otherSnapshot);
    }

    /// The operations that every object must still support.
    QString furtherUse()
    {
        T &object = m_objects.target;
        object.SetValidate(false);
        xmlOf(object);
        recordOf(object);
        snapshotOf(object);
        const QVector<JobXml::Problem> problems = object.GetProblems();
        T copy(object);
        if (copy.GetValidate() || snapshotOf(copy) != snapshotOf(object))
            return QStringLiteral("a copy of the object differs");
        if (copy.GetProblems().size() != problems.size())
            return QStringLiteral("a copy of the object has other problems");

        object.SetValidate(true);
        T assigned;
        assigned = object;
        object.Reset();
        if (object.AnyData())
            return QStringLiteral("the object has data although it was reset");
        if (snapshotOf(assigned) != snapshotOf(copy))
            return QStringLiteral("the object's data were lost to the one it was assigned to");

        const Samples<T> &expected = samples<T>();
        readXml(object, expected.xml);
        if (object != expected.complete || xmlOf(object) != expected.xml)
            return QStringLiteral("XML does not read the same");
        object.Reset();
        readRecord(object, expected.record);
        if (object != expected.complete || recordOf(object) != expected.record)
            return QStringLiteral("a record does not read the same");
        object.Reset();
        readSnapshot(object, expected.snapshot);
        if (object != expected.complete || snapshotOf(object) != expected.snapshot)
            return QStringLiteral("a snapshot does not read the same");

        object = m_objects.sharer;
        object = m_objects.source;
        if (object != expected.complete)
            return QStringLiteral("the object cannot be assigned to");
        return QString();
    }

    const Operation<T> &m_operation;
    Objects<T> m_objects;
    const T m_unused;
};
