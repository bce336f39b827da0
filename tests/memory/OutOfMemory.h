// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Repeats an operation and makes another of its allocations fail each time: first that one alone, as for a large
/// request, then that one and all that follow until the operation ends, as when all memory is used.
namespace OutOfMemory {

/// One run of an operation, with objects of its own, which start in the same state each time.
class Attempt
{
public:
    virtual ~Attempt() = default;

    /// The operation. Allocations fail only in here.
    virtual void perform() = 0;

    /// The visible state of the objects, as text: the same every time that the operation succeeds.
    virtual QByteArray state() = 0;

    /// Whether the operation had the correct result.
    virtual bool isRight() = 0;

    /// The error found in the objects after the operation succeeded or failed; null if there is none.
    virtual QString complaint(bool failed) = 0;
};

using MakeAttempt = std::function<std::unique_ptr<Attempt>()>;

/// The outcomes of a failed allocation other than std::bad_alloc with nothing lost and all objects usable.
enum class Outcome {
    Unnoticed, ///< the operation succeeded, or failed as it does with enough memory
    Wrong, ///< it ended in another way
    Spoilt, ///< an object has a wrong state
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
    bool once; ///< whether only this allocation failed
    QStringList functions; ///< that called the allocation, innermost first
    QString details;
};

struct Report
{
    int allocations = 0; ///< how many there are in the operation, each of which has failed
    QString failure; ///< why the operation could not be tried at all; null if it could
    QVector<Finding> findings;
};

Report failEveryAllocation(const MakeAttempt &make);

/// The same with a process for each attempt, which performs the operation for the first time: Qt has not initialized
/// its global data yet, unless the caller did. Leaks are not counted, since Qt keeps such data.
Report failEveryAllocationOfFirstUse(const MakeAttempt &make);

/// A place in Qt or below that does not survive running out of memory: the outcome, and one of the functions that
/// call the allocation.
struct KnownPlace
{
    Outcome outcome;
    const char *function;
    int mostBlocks = 0; ///< that it leaks
};

/// The findings that are not known places, and the known places without a finding: a line each.
QStringList surprises(const Report &report, const QVector<KnownPlace> &known);

} // namespace OutOfMemory
