// SPDX-License-Identifier: MIT
#include "console/Interruption.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

namespace Interruption {

namespace {

using namespace std::chrono_literals;

const int endingSignals[] = {SIGINT, SIGTERM};
constexpr int noSignal = 0;

// What a signal handler may use.
std::atomic<int> shields{0};
std::atomic<int> arrived{noSignal};
static_assert(std::atomic<int>::is_always_lock_free);

/// Ends the process by the default action of the signal.
void terminateBy(int number)
{
    std::signal(number, SIG_DFL);
    std::raise(number);
}

extern "C" void handleSignal(int number)
{
    const bool isFirst = arrived.exchange(number) == noSignal;
    if (!isFirst || shields == 0)
        terminateBy(number);
    else
        std::signal(number, handleSignal); // some systems have reset it
}

void leaveShield()
{
    if (--shields == 0 && arrived != noSignal)
        terminateBy(arrived);
}

} // namespace

Watch::Watch()
{
    for (const int number : endingSignals) {
        if (std::signal(number, handleSignal) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
}

Watch::~Watch()
{
    for (const int number : endingSignals) {
        if (std::signal(number, SIG_DFL) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
}

Shield::Shield()
{
    ++shields;
    if (arrived == noSignal)
        return;
    leaveShield();
    for (;;) // another thread is about to end the process
        std::this_thread::sleep_for(1s);
}

Shield::~Shield()
{
    leaveShield();
}

// A handler must not write what would have to be composed.
Report::Report(std::function<QString()>) { }

Report::~Report() = default;

void endByBrokenPipe() { }

} // namespace Interruption
