// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Performs an operation again and again, and lets another of its allocations fail each time: that one alone, as when
/// something large was asked for, and then that one and all that follow until the operation is left, as when there is
/// nothing left at all.
namespace OutOfMemory {

/// An operation, once, with objects of its own, which begin the same each time.
class Attempt
{
public:
    virtual ~Attempt() = default;

    /// The operation. Memory fails in here and nowhere else.
    virtual void perform() = 0;

    /// All that can be seen of the objects, as text: the same every time that the operation succeeds.
    virtual QByteArray state() = 0;

    /// Whether they are as the operation should leave them.
    virtual bool isRight() = 0;

    /// What is wrong with the objects now, after the operation succeeded or failed; null if they are as good as ever.
    virtual QString complaint(bool failed) = 0;
};

using MakeAttempt = std::function<std::unique_ptr<Attempt>()>;

/// What else can come of a failed allocation than std::bad_alloc, nothing lost and all objects fit for use.
enum class Outcome {
    Unnoticed, ///< the operation succeeded all the same, or failed as it does without a lack of memory
    Wrong, ///< it ended in another way
    Spoilt, ///< an object is not what it should be
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
    bool once; ///< whether it failed alone
    QStringList functions; ///< that were asking for memory when it failed, innermost first
    QString details;
};

struct Report
{
    int allocations = 0; ///< how many there are in the operation, each of which has failed
    QString failure; ///< why the operation could not be tried at all; null if it could
    QVector<Finding> findings;
};

Report failEveryAllocation(const MakeAttempt &make);

/// The same in processes that perform the operation for the first time, one for each attempt: what Qt sets up once has
/// not been set up yet if it has not been by the caller. Nothing counts as leaked then, for much is kept for good.
Report failEveryAllocationOfFirstUse(const MakeAttempt &make);

/// A place in Qt or below that does not survive a lack of memory, whoever calls it: what comes of it, and one of the
/// functions that are asking for memory then.
struct KnownPlace
{
    Outcome outcome;
    const char *function;
    int mostBlocks = 0; ///< that it leaks
};

/// What was found besides the known places, and which of those were not: a line each, none if all is well.
QStringList surprises(const Report &report, const QVector<KnownPlace> &known);

} // namespace OutOfMemory
