// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

/// The signals by which a user or the system ends the program: SIGINT (Ctrl-C), SIGTERM and SIGHUP, and SIGPIPE when
/// nobody reads its output any more. The program ends by the same signal, so that a shell sees it; but not while a file
/// is on its way to its place, and not without telling how far it came. A second one ends it at once.
namespace Interruption {

/// Looks out for signals, in a thread of its own, as long as it lives. One, in main(). Signals that are ignored when
/// the program starts, as nohup does it, stay so.
class Watch
{
public:
    Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    ~Watch();
};

/// While one lives no signal ends the program. Once a signal has come, making one does not return.
class Shield
{
public:
    Shield();
    Shield(const Shield &) = delete;
    Shield &operator=(const Shield &) = delete;
    ~Shield();
};

/// As long as it lives, this is what is told before a signal ends the program; nothing, if the text is null.
class Report
{
public:
    explicit Report(std::function<QString()> text);
    Report(const Report &) = delete;
    Report &operator=(const Report &) = delete;
    ~Report();
};

/// To be called when writing has failed since nobody reads: ends the program as SIGPIPE would have done. Returns if
/// SIGPIPE was ignored when the program started.
void endSinceNobodyReads();

} // namespace Interruption
