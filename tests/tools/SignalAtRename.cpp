// SPDX-License-Identifier: MIT

// Preloaded into the tool: sends a signal just before a file receives its name, and waits so that the signal can
// interrupt the tool.

#include <csignal>
#include <cstdio>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

/// Once: a second signal would end the tool at once.
void interrupt()
{
    static bool isDone = false;
    if (std::exchange(isDone, true))
        return;
    kill(getpid(), SIGINT);
    timespec rest = {0, 300 * 1000 * 1000};
    while (nanosleep(&rest, &rest) != 0) { }
}

} // namespace

#ifdef TP_PORTABLE
// Qt does so for a name that no file has yet.
EXPORTED int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    interrupt();
    return int(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
#else
EXPORTED int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept
{
    interrupt();
    return int(syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0));
}
#endif
