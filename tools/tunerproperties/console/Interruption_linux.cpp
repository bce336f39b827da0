// SPDX-License-Identifier: MIT
#include "console/Interruption.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

#include "console/Console.h"

namespace Interruption {

namespace {

using namespace std::chrono_literals;

const int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int wakingSignal = SIGUSR1; // wakes the watch when the program ends normally
constexpr int noSignal = 0;

// These signals are blocked in all threads but the one that waits for them, which may do what signal handlers must not.
sigset_t awaited;
sigset_t usualMask;
std::atomic<bool> leaving{false};
bool pipeSignalWasIgnored = true;

std::mutex shieldMutex;
std::condition_variable shieldsChanged;
int shields = 0;
bool ending = false;

std::mutex reportMutex;
std::function<QString()> report;

bool isIgnored(int number)
{
    struct sigaction current = {};
    return sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

/// Ends the process by the default action of the signal.
[[noreturn]] void terminateBy(int number)
{
    signal(number, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    raise(number);
    _exit(128 + number); // not reached
}

/// Whether the program has sent the signal to itself, at its end.
bool isOwn(int number)
{
    return number == wakingSignal && leaving;
}

/// The next signal, or noSignal if none arrives within that time.
int nextSignal(int milliseconds)
{
    const timespec time = {0, milliseconds * 1000000L};
    const int number = sigtimedwait(&awaited, nullptr, &time);
    return number > 0 && !isOwn(number) ? number : noSignal;
}

bool startEnding()
{
    const std::lock_guard lock(shieldMutex);
    ending = true;
    return shields == 0;
}

QString reportText()
{
    // A thread that holds this mutex sets or clears the report and releases it soon.
    const std::lock_guard lock(reportMutex);
    return report ? report() : QString();
}

[[noreturn]] void endBy(int number)
{
    while (!startEnding()) {
        if (const int second = nextSignal(5); second != noSignal)
            terminateBy(second);
    }
    // If the reader of our output has stopped reading, another thread may be blocked in writing; then no report is
    // written.
    const QString text = reportText();
    for (int i = 0; i < 200 && !Console::printLastError(text); ++i) {
        if (const int second = nextSignal(5); second != noSignal)
            terminateBy(second);
    }
    terminateBy(number);
}

std::thread watcher;

void startWatcher()
{
    sigemptyset(&awaited);
    sigaddset(&awaited, wakingSignal);
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            sigaddset(&awaited, number);
    }
    pthread_sigmask(SIG_BLOCK, &awaited, &usualMask); // in all threads, which inherit the mask
    try {
        watcher = std::thread([] {
            int number = noSignal;
            while (sigwait(&awaited, &number) != 0) { }
            if (!isOwn(number))
                endBy(number);
        });
    } catch (const std::system_error &) {
        pthread_sigmask(SIG_SETMASK, &usualMask, nullptr); // the signals then have their default action
    }
}

bool isWatching = false;

/// Until there is something to protect or to report, the default actions of the signals are just right.
void needWatcher()
{
    static std::once_flag started;
    if (isWatching)
        std::call_once(started, startWatcher);
}

} // namespace

Watch::Watch()
{
    pipeSignalWasIgnored = isIgnored(SIGPIPE);
    if (!pipeSignalWasIgnored)
        signal(SIGPIPE, SIG_IGN);
    isWatching = true;
}

Watch::~Watch()
{
    if (!watcher.joinable())
        return;
    leaving = true;
    pthread_kill(watcher.native_handle(), wakingSignal);
    watcher.join();
    pthread_sigmask(SIG_SETMASK, &usualMask, nullptr);
}

Shield::Shield()
{
    needWatcher();
    std::unique_lock lock(shieldMutex);
    shieldsChanged.wait(lock, [] { return !ending; }); // never after a signal
    ++shields;
}

Shield::~Shield()
{
    const std::lock_guard lock(shieldMutex);
    --shields;
}

Report::Report(std::function<QString()> text)
{
    needWatcher();
    const std::lock_guard lock(reportMutex);
    report = std::move(text);
}

Report::~Report()
{
    const std::lock_guard lock(reportMutex);
    report = nullptr;
}

void endByBrokenPipe()
{
    if (pipeSignalWasIgnored)
        return;
    while (!startEnding())
        std::this_thread::sleep_for(5ms);
    terminateBy(SIGPIPE);
}

} // namespace Interruption
