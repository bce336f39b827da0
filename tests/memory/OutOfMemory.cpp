// SPDX-License-Identifier: MIT
#include "OutOfMemory.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QMap>

#include "Heap.h"

namespace OutOfMemory {

namespace {

constexpr int mostFrames = 48;
constexpr int mostFindings = 4000;
constexpr unsigned secondsPerAttempt = 100; // which takes a millisecond or two

struct Frames
{
    void *addresses[mostFrames];
    int count = 0;

    void note() { count = backtrace(addresses, mostFrames); }
};

/// Makes the n-th allocation fail, and counts the blocks.
class ScarceHeap final : public Heap::Watcher
{
public:
    bool mayAllocate(std::size_t) override
    {
        if (!m_scarce)
            return true;
        ++m_allocations;
        const bool fails = m_once ? m_allocations == m_first : m_allocations >= m_first;
        if (fails && !m_failed) {
            m_failed = true;
            m_scarce = false; // walking the stack may allocate
            m_frames->note();
            m_scarce = true;
        }
        return !fails;
    }
    void allocated() override { ++m_blocks; }
    void freed() override { --m_blocks; }

    /// From now on allocation number `first`, counted from 1, fails, alone or with all that follow.
    void begin(int first, bool once, Frames *frames)
    {
        m_first = first;
        m_once = once;
        m_frames = frames;
        m_allocations = 0;
        m_failed = false;
        m_scarce = true;
    }
    void end() { m_scarce = false; }

    int allocations() const { return m_allocations; }
    bool hasFailed() const { return m_failed; }
    long long blocks() const { return m_blocks; }

private:
    int m_first = 0;
    bool m_once = true;
    Frames *m_frames = nullptr;
    int m_allocations = 0;
    bool m_failed = false;
    bool m_scarce = false;
    long long m_blocks = 0;
};

ScarceHeap heap;

struct RawFinding
{
    Outcome outcome;
    int allocation;
    bool once;
    Frames frames;
    char details[400];
};

/// The results of a child process, however it ends.
struct Notes
{
    int attempt; ///< that is made just now; each allocation takes two
    Frames frames; ///< of the allocation that fails in it
    bool done;
    int allocations;
    int findingCount;
    RawFinding findings[mostFindings];

    int allocation() const { return (attempt + 1) / 2; }
    bool once() const { return attempt % 2 != 0; }

    void add(Outcome outcome, const char *details)
    {
        if (findingCount == mostFindings)
            return;
        RawFinding &finding = findings[findingCount++];
        finding.outcome = outcome;
        finding.allocation = allocation();
        finding.once = once();
        finding.frames = frames;
        std::snprintf(finding.details, sizeof finding.details, "%s", details);
    }
};

Notes *notes = nullptr; // shared with the child

[[noreturn]] void onSignal(int signal)
{
    heap.end();
    notes->add(signal == SIGALRM ? Outcome::Hung : Outcome::Ended, strsignal(signal));
    _exit(1);
}

[[noreturn]] void onTerminate()
{
    heap.end();
    notes->add(Outcome::Ended, "std::terminate");
    _exit(1);
}

void onMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    heap.end(); // one finding is enough; what the message itself allocates is not the matter
    notes->add(Outcome::Printed, text.toUtf8().constData());
}

/// How an operation ended.
struct Ending
{
    bool outOfMemory = false;
    QByteArray exception; ///< type and message of another exception

    static Ending of(Attempt &attempt)
    {
        Ending ending;
        try {
            attempt.perform();
            heap.end();
        } catch (const std::bad_alloc &) {
            heap.end();
            ending.outOfMemory = true;
        } catch (const std::exception &e) {
            heap.end();
            ending.exception = QByteArray(typeid(e).name()) + ": " + e.what();
        } catch (...) {
            heap.end();
            ending.exception = "an unknown exception";
        }
        return ending;
    }
};

/// The operation when nothing fails.
struct Undisturbed
{
    QByteArray exception;
    QByteArray state;
    QString failure; ///< the error, although no allocation failed

    explicit Undisturbed(const MakeAttempt &make)
    {
        const std::unique_ptr<Attempt> attempt = make();
        const Ending ending = Ending::of(*attempt);
        exception = ending.exception;
        state = attempt->state();
        if (!attempt->isRight())
            failure = QStringLiteral("the operation fails by itself: ") + QString::fromUtf8(ending.exception);
        const QString complaint = attempt->complaint(false);
        if (!complaint.isNull())
            failure = QStringLiteral("complaint although nothing failed: ") + complaint;
    }
};

/// Uses everything that the test itself uses, so that it is initialized.
void prepareForFailure()
{
    Frames().note();
    try {
        throw std::bad_alloc();
    } catch (const std::bad_alloc &) {
    }
}

int firstFreeDescriptor()
{
    const int descriptor = dup(STDERR_FILENO);
    close(descriptor);
    return descriptor;
}

/// Records the outcome of an attempt, unless it is std::bad_alloc.
void judge(Attempt &attempt, const Ending &ending, const Undisturbed &undisturbed)
{
    if (!ending.outOfMemory) {
        if (ending.exception != undisturbed.exception || attempt.state() != undisturbed.state || !attempt.isRight())
            notes->add(Outcome::Wrong, ending.exception.constData());
        else if (heap.hasFailed())
            notes->add(Outcome::Unnoticed, ending.exception.constData());
    }
    if (heap.hasFailed()) {
        const QString complaint = attempt.complaint(ending.outOfMemory);
        if (!complaint.isNull())
            notes->add(Outcome::Spoilt, complaint.toUtf8().constData());
    }
}

void makeAttempt(const MakeAttempt &make, const Undisturbed &undisturbed)
{
    const long long blocks = heap.blocks();
    const int descriptor = firstFreeDescriptor();
    {
        const std::unique_ptr<Attempt> attempt = make();
        heap.begin(notes->allocation(), notes->once(), &notes->frames);
        const Ending ending = Ending::of(*attempt);
        judge(*attempt, ending, undisturbed);
    }
    if (heap.blocks() != blocks)
        notes->add(Outcome::Leaked, QByteArray::number(heap.blocks() - blocks).constData());
    if (firstFreeDescriptor() != descriptor)
        notes->add(Outcome::Leaked, "an open file");
}

void makeAttemptAtFirstUse(const MakeAttempt &make)
{
    const std::unique_ptr<Attempt> attempt = make();
    heap.begin(notes->allocation(), notes->once(), &notes->frames);
    const Ending ending = Ending::of(*attempt);
    const Undisturbed second(make);
    if (!second.failure.isNull())
        notes->add(Outcome::Spoilt, second.failure.toUtf8().constData());
    judge(*attempt, ending, second);
}

/// Makes attempts until all allocations have failed once, or a single one if each has a process of its own.
template <class Try>
[[noreturn]] void goThroughAllocations(Try &&makeOne, bool oneOnly)
{
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGALRM})
        std::signal(signal, onSignal);
    std::set_terminate(onTerminate);
    qInstallMessageHandler(onMessage);
    prepareForFailure();
    Heap::watch(&heap);
    try {
        do {
            ++notes->attempt;
            alarm(secondsPerAttempt);
            makeOne();
            notes->done = !heap.hasFailed();
        } while (!notes->done && !oneOnly);
        notes->allocations = heap.allocations();
    } catch (const std::exception &e) { // from the preparations, or the objects' further use
        notes->add(Outcome::Spoilt, e.what());
    }
    _exit(0);
}

/// The function around an address, without its parameters; null for one of this program. A function
/// without a symbol has the name of its library.
QString nameOfFunction(const void *address)
{
    Dl_info own;
    Dl_info info;
    if (!dladdr(reinterpret_cast<const void *>(&nameOf), &own) || !dladdr(address, &info)
        || info.dli_fbase == own.dli_fbase)
        return QString();
    if (!info.dli_sname) {
        const QString file = QString::fromLocal8Bit(info.dli_fname);
        return file.mid(file.lastIndexOf(QLatin1Char('/')) + 1);
    }
    int status = 0;
    const std::unique_ptr<char, void (*)(void *)> name(abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status),
                                                       std::free);
    return QString::fromLatin1(name ? name.get() : info.dli_sname).section(QLatin1Char('('), 0, 0);
}

/// The functions between the heap and the operation, both of which belong to this program.
QStringList namesOf(const Frames &frames)
{
    QStringList names;
    for (int i = 1; i < frames.count; ++i) {
        // The address of the call, since the return address may be in the next function.
        const QString name = nameOfFunction(static_cast<const char *>(frames.addresses[i]) - 1);
        if (name.isNull() && !names.isEmpty())
            break;
        if (!name.isNull() && (names.isEmpty() || names.constLast() != name))
            names.append(name);
    }
    return names;
}

/// The C++ library reserves memory for exceptions, so throwing one does not fail. The C library searches for
/// translations of its texts, and does without them.
bool isHarmless(const Finding &finding)
{
    return finding.outcome == Outcome::Unnoticed
        && (finding.functions.value(0) == QLatin1String("__cxa_allocate_exception")
            || finding.functions.contains(QStringLiteral("strerror_l")));
}

bool isAt(const Finding &finding, const KnownPlace &place)
{
    if (finding.outcome != place.outcome || !finding.functions.contains(QLatin1String(place.function)))
        return false;
    const int blocks = finding.details.toInt(); // 0 for everything else that can be lost
    return finding.outcome != Outcome::Leaked || (blocks > 0 && blocks <= place.mostBlocks);
}

QString line(const Finding &finding)
{
    return QStringLiteral("%1 %2 [%3] in %4")
        .arg(QLatin1String(nameOf(finding.outcome)),
             finding.once ? QStringLiteral("once") : QStringLiteral("from then on"), finding.details,
             finding.functions.join(QStringLiteral(" < ")));
}

} // namespace

const char *nameOf(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Unnoticed:
        return "unnoticed";
    case Outcome::Wrong:
        return "wrong";
    case Outcome::Spoilt:
        return "spoilt";
    case Outcome::Leaked:
        return "leaked";
    case Outcome::Printed:
        return "printed";
    case Outcome::Ended:
        return "ended";
    case Outcome::Hung:
        return "hung";
    }
    return "";
}

QStringList surprises(const Report &report, const QVector<KnownPlace> &known)
{
    if (!report.failure.isNull())
        return {report.failure};
    if (report.allocations == 0)
        return {QStringLiteral("the operation allocates nothing")};

    QVector<bool> met(known.size(), false);
    QMap<QString, QVector<int>> unknown; // what and where, and the allocations
    for (const Finding &finding : report.findings) {
        bool isKnown = false;
        for (int i = 0; i < known.size(); ++i) {
            if (isAt(finding, known.at(i)))
                isKnown = met[i] = true;
        }
        if (!isKnown && !isHarmless(finding))
            unknown[line(finding)].append(finding.allocation);
    }

    QStringList lines;
    for (auto it = unknown.cbegin(); it != unknown.cend(); ++it)
        lines.append(QStringLiteral("%1 (%2 times, first at allocation %3)")
                         .arg(it.key())
                         .arg(it.value().size())
                         .arg(it.value().constFirst()));
    for (int i = 0; i < known.size(); ++i) {
        if (!met.at(i))
            lines.append(QStringLiteral("no longer %1 in %2")
                             .arg(QLatin1String(nameOf(known.at(i).outcome)), QLatin1String(known.at(i).function)));
    }
    return lines;
}

namespace {

/// Makes attempts in child processes, another one whenever one ends, until all allocations have failed once.
template <class Try>
Report failEveryAllocation(Try &&makeOne, bool oneOnly)
{
    Report report;
    void *const shared = mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        report.failure = QStringLiteral("no memory to share");
        return report;
    }
    notes = new (shared) Notes();
    while (!notes->done && report.failure.isNull()) {
        const int before = notes->attempt;
        const pid_t child = fork();
        if (child == 0)
            goThroughAllocations(makeOne, oneOnly);
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1
            || notes->attempt == before || notes->findingCount == mostFindings) {
            report.failure = QStringLiteral("the process ended with status %1 at allocation %2 and %3 findings")
                                 .arg(status)
                                 .arg(notes->allocation())
                                 .arg(notes->findingCount);
        }
    }
    report.allocations = notes->allocations;
    for (int i = 0; i < notes->findingCount; ++i) {
        const RawFinding &raw = notes->findings[i];
        report.findings.append(
            {raw.outcome, raw.allocation, raw.once, namesOf(raw.frames), QString::fromUtf8(raw.details)});
    }
    munmap(shared, sizeof(Notes));
    notes = nullptr;
    return report;
}

} // namespace

Report failEveryAllocation(const MakeAttempt &make)
{
    const Undisturbed undisturbed(make);
    if (!undisturbed.failure.isNull())
        return {0, undisturbed.failure, {}};
    return failEveryAllocation([&] { makeAttempt(make, undisturbed); }, false);
}

Report failEveryAllocationOfFirstUse(const MakeAttempt &make)
{
    return failEveryAllocation([&] { makeAttemptAtFirstUse(make); }, true);
}

} // namespace OutOfMemory
