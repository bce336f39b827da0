// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

/// The signals that end the program: SIGINT (Ctrl-C), SIGTERM and SIGHUP, and SIGPIPE when nobody reads the output any
/// more. The program ends by the same signal, so that a shell sees it, but only after a file in progress is in its
/// place, and after a report of the progress. A second signal ends it at once.
namespace Interruption {

/// Waits for signals in a thread of its own, from the first Shield or Report on: a short run that needs neither does
/// without the thread. Create one, in main(). Signals that are ignored when the program starts, as by nohup, stay
/// ignored.
class Watch
{
public:
    Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    ~Watch();
};

/// While an object of this class exists, no signal ends the program. After a signal has arrived, the constructor does
/// not return. Before the first one on another thread than that of main(), there has to be a Report: only threads that
/// are started later leave the signals to the watch.
class Shield
{
public:
    Shield();
    Shield(const Shield &) = delete;
    Shield &operator=(const Shield &) = delete;
    ~Shield();
};

/// While an object of this class exists, `text` provides the message that is written before a signal ends the program;
/// none if it returns a null string.
class Report
{
public:
    explicit Report(std::function<QString()> text);
    Report(const Report &) = delete;
    Report &operator=(const Report &) = delete;
    ~Report();
};

/// Ends the program as SIGPIPE does. Call it when nobody reads the output any more. Returns if SIGPIPE was ignored when
/// the program started.
void endByBrokenPipe();

} // namespace Interruption
