// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Repeats an operation, and lets a different allocation fail each time: only that one, as if its size were too large,
/// and then that one and all that follow until the operation ends, as if no memory were left.
namespace OutOfMemory {

/// An operation, once, with objects of its own, which begin the same each time.
class Attempt
{
public:
    virtual ~Attempt() = default;

    /// The operation. Memory fails in here and nowhere else.
    virtual void perform() = 0;

    /// The visible state of the objects, as text: the same every time that the operation succeeds.
    virtual QByteArray state() = 0;

    /// Whether the operation has left them in the right state.
    virtual bool isRight() = 0;

    /// The problem of the objects after the operation succeeded or failed; null if they are still usable.
    virtual QString complaint(bool failed) = 0;
};

using MakeAttempt = std::function<std::unique_ptr<Attempt>()>;

/// Results of a failed allocation other than std::bad_alloc without leaks and with usable objects.
enum class Outcome {
    Unnoticed, ///< the operation succeeded, or failed as it does with enough memory
    Wrong, ///< it ended in another way
    Spoilt, ///< an object is in a wrong state
    Leaked, ///< memory is never freed, or a file never closed
    Printed, ///< a message went to the log
    Ended, ///< the process was ended, by a signal or by std::terminate()
    Hung,
};

const char *nameOf(Outcome outcome);

struct Finding
{
    Outcome outcome;
    int allocation; ///< counted from 1
    bool once; ///< whether only this one failed
    QStringList functions; ///< on the stack when the allocation failed, innermost first
    QString details;
};

struct Report
{
    int allocations = 0; ///< how many there are in the operation, each of which has failed
    QString failure; ///< why the operation could not be tried; null if it could
    QVector<Finding> findings;
};

Report failEveryAllocation(const MakeAttempt &make);

/// The same in processes that perform the operation for the first time, one for each attempt: Qt's one-time
/// initialization has not happened then, unless the caller has caused it. Nothing counts as leaked then, since much is
/// kept permanently.
Report failEveryAllocationOfFirstUse(const MakeAttempt &make);

/// A place in Qt or below that does not survive running out of memory: the result, and one of the functions on the
/// stack.
struct KnownPlace
{
    Outcome outcome;
    const char *function;
    int mostBlocks = 0; ///< that it leaks
};

/// Findings besides the known places, and known places that were not found: a line each, none if there is no problem.
QStringList surprises(const Report &report, const QVector<KnownPlace> &known);

} // namespace OutOfMemory
