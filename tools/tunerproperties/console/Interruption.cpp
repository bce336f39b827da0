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
constexpr int wakingSignal = SIGUSR1; // by which the watch is told that the program ends by itself
constexpr int noSignal = 0;

// No thread takes these signals but the one that waits for them: it may do what handlers must not.
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

/// Ends the process by the signal, as if nobody had looked out for it.
[[noreturn]] void dieBy(int number)
{
    signal(number, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    raise(number);
    _exit(128 + number); // not reached
}

/// Whether the signal was sent by the program itself, which has come to its end.
bool isOwn(int number)
{
    return number == wakingSignal && leaving;
}

/// The next signal, or none if there is none within that time.
int nextSignal(int milliseconds)
{
    const timespec time = {0, milliseconds * 1000000L};
    const int number = sigtimedwait(&awaited, nullptr, &time);
    return number > 0 && !isOwn(number) ? number : noSignal;
}

bool noShieldIsLeft()
{
    const std::lock_guard lock(shieldMutex);
    ending = true;
    return shields == 0;
}

QString reportText()
{
    // Whoever holds this one is about to set or drop the report, and does not keep it.
    const std::lock_guard lock(reportMutex);
    return report ? report() : QString();
}

[[noreturn]] void endBy(int number)
{
    while (!noShieldIsLeft()) {
        if (const int second = nextSignal(5); second != noSignal)
            dieBy(second);
    }
    // A reader of ours may have stopped reading, and hold up a thread that writes; then nothing is told.
    const QString text = reportText();
    for (int i = 0; i < 200 && !Console::tellAtLast(text); ++i) {
        if (const int second = nextSignal(5); second != noSignal)
            dieBy(second);
    }
    dieBy(number);
}

std::thread watcher;

} // namespace

Watch::Watch()
{
    pipeSignalWasIgnored = isIgnored(SIGPIPE);
    if (!pipeSignalWasIgnored)
        signal(SIGPIPE, SIG_IGN);
    sigemptyset(&awaited);
    sigaddset(&awaited, wakingSignal);
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            sigaddset(&awaited, number);
    }
    pthread_sigmask(SIG_BLOCK, &awaited, &usualMask); // in all threads, since they take it over
    try {
        watcher = std::thread([] {
            int number = noSignal;
            while (sigwait(&awaited, &number) != 0) { }
            if (!isOwn(number))
                endBy(number);
        });
    } catch (const std::system_error &) {
        pthread_sigmask(SIG_SETMASK, &usualMask, nullptr); // they end the program as they do others
    }
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
    std::unique_lock lock(shieldMutex);
    shieldsChanged.wait(lock, [] { return !ending; }); // which it never is again
    ++shields;
}

Shield::~Shield()
{
    const std::lock_guard lock(shieldMutex);
    --shields;
}

Report::Report(std::function<QString()> text)
{
    const std::lock_guard lock(reportMutex);
    report = std::move(text);
}

Report::~Report()
{
    const std::lock_guard lock(reportMutex);
    report = nullptr;
}

void endSinceNobodyReads()
{
    if (pipeSignalWasIgnored)
        return;
    while (!noShieldIsLeft())
        std::this_thread::sleep_for(5ms);
    dieBy(SIGPIPE);
}

} // namespace Interruption
