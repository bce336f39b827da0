// SPDX-License-Identifier: MIT

// Preloaded into the tool: sends a signal just before a file receives its name, and waits so that the signal can
// interrupt the tool.

#include <csignal>
#include <cstdio>
#include <ctime>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" __attribute__((visibility("default"))) int renameat(int fromFolder, const char *from, int toFolder,
                                                               const char *to) noexcept
{
    kill(getpid(), SIGINT);
    timespec rest = {0, 300 * 1000 * 1000};
    while (nanosleep(&rest, &rest) != 0) { }
    return int(syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0));
}
