// SPDX-License-Identifier: MIT

// Checked variants of these functions are inline in the system's headers and cannot be defined here.
#undef _FORTIFY_SOURCE

#include "FaultyCalls.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// The system is asked by syscall(), never by the next function of the name: that needs no start-up, and what a
// sanitizer puts around those functions stays out of the count.

namespace {

using namespace FaultyCalls;

constexpr int MostCalls = 4096;
constexpr int MostFiles = 1024;

bool counting = false;
Plan plan;
char calls[MostCalls + 1] = "";
int count = 0;
char failingForEver = 0;
bool isNew[MostFiles] = {}; // by descriptor: made since the count began
const char *folder = nullptr;
const char *logName = nullptr;

[[noreturn]] void die()
{
    syscall(SYS_kill, syscall(SYS_getpid), SIGKILL);
    for (;;)
        pause();
}

bool isPlanned(Action action)
{
    return count == plan.call && plan.action == action;
}

void record(Kind kind)
{
    if (count < MostCalls)
        calls[count] = kind;
    ++count;
    if (logName) {
        const int log = int(syscall(SYS_openat, AT_FDCWD, logName, O_WRONLY | O_CREAT | O_APPEND, 0666));
        syscall(SYS_write, log, &kind, 1);
        syscall(SYS_close, log);
    }
}

/// A call with all that may happen to it; `call` asks the system.
template <typename Call>
auto counted(Kind kind, Call &&call) -> decltype(call())
{
    record(kind);
    if (isPlanned(Action::DieHalfway))
        die();
    if (isPlanned(Action::FailForEver))
        failingForEver = kind;
    if (isPlanned(Action::Fail) || failingForEver == kind) {
        errno = plan.error;
        return -1;
    }
    const auto result = call();
    if (isPlanned(Action::DieAfter))
        die();
    return result;
}

bool isCounted(int descriptor)
{
    return counting && descriptor >= 0 && descriptor < MostFiles && isNew[descriptor];
}

int openCounted(const char *path, int flags, mode_t mode)
{
    const auto open = [=] { return int(syscall(SYS_openat, AT_FDCWD, path, flags, mode)); };
    const bool unnamed = (flags & O_TMPFILE) == O_TMPFILE;
    if (!counting || !(unnamed || (flags & O_CREAT))
        || (folder && std::strncmp(path, folder, std::strlen(folder)) != 0))
        return open();
    if (unnamed && !plan.unnamedFiles) {
        errno = EOPNOTSUPP;
        return -1;
    }
    const int descriptor = counted(unnamed ? CreateUnnamed : Create, open);
    if (descriptor >= 0 && descriptor < MostFiles)
        isNew[descriptor] = true;
    return descriptor;
}

mode_t modeOf(int flags, va_list arguments)
{
    const bool hasOne = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
    return hasOne ? mode_t(va_arg(arguments, unsigned int)) : 0;
}

ssize_t writeCounted(int descriptor, const void *bytes, size_t size)
{
    const auto write = [=](size_t part) { return ssize_t(syscall(SYS_write, descriptor, bytes, part)); };
    if (plan.call == count + 1 && plan.action == Action::DieHalfway) {
        record(Write);
        write(size / 2);
        die();
    }
    return counted(Write, [&]() -> ssize_t {
        if (plan.room < 0)
            return write(size);
        if (plan.room == 0 && size > 0) {
            errno = ENOSPC;
            return -1;
        }
        const ssize_t written = write(size_t(plan.room) < size ? size_t(plan.room) : size);
        if (written > 0)
            plan.room -= written;
        return written;
    });
}

int linkCounted(int oldFolder, const char *oldPath, int newFolder, const char *newPath, int flags)
{
    const auto link = [=] { return int(syscall(SYS_linkat, oldFolder, oldPath, newFolder, newPath, flags)); };
    return counting ? counted(Link, link) : link();
}

int renameCounted(int oldFolder, const char *oldPath, int newFolder, const char *newPath, unsigned int flags)
{
    const auto rename = [=] { return int(syscall(SYS_renameat2, oldFolder, oldPath, newFolder, newPath, flags)); };
    return counting ? counted(Rename, rename) : rename();
}

int removeCounted(int atFolder, const char *path, int flags)
{
    const auto remove = [=] { return int(syscall(SYS_unlinkat, atFolder, path, flags)); };
    return counting ? counted(Remove, remove) : remove();
}

__attribute__((constructor)) void takePlanFromEnvironment()
{
    const char *const text = getenv(PlanVariable);
    folder = getenv(FolderVariable);
    if (!text || !folder)
        return;
    logName = getenv(LogVariable);
    Plan given;
    int action = 0;
    int unnamedFiles = 0;
    if (std::sscanf(text, "%d %d %d %lld %d", &given.call, &action, &given.error, &given.room, &unnamedFiles) != 5)
        abort();
    given.action = Action(action);
    given.unnamedFiles = unnamedFiles != 0;
    begin(given);
}

} // namespace

void FaultyCalls::begin(const Plan &newPlan)
{
    plan = newPlan;
    count = 0;
    failingForEver = 0;
    std::memset(isNew, 0, sizeof(isNew));
    counting = true;
}

const char *FaultyCalls::end()
{
    counting = false;
    calls[count < MostCalls ? count : MostCalls] = 0;
    return calls;
}

// The functions themselves, as the system declares them.

#define TAKES_THE_PLACE extern "C" __attribute__((visibility("default")))

TAKES_THE_PLACE int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openCounted(path, flags, mode);
}

TAKES_THE_PLACE int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openCounted(path, flags, mode);
}

TAKES_THE_PLACE ssize_t write(int descriptor, const void *bytes, size_t size)
{
    return isCounted(descriptor) ? writeCounted(descriptor, bytes, size)
                                 : ssize_t(syscall(SYS_write, descriptor, bytes, size));
}

TAKES_THE_PLACE int fsync(int descriptor)
{
    return isCounted(descriptor) ? counted(Sync, [] { return 0; }) : int(syscall(SYS_fsync, descriptor));
}

TAKES_THE_PLACE int fdatasync(int descriptor)
{
    return isCounted(descriptor) ? counted(Sync, [] { return 0; }) : int(syscall(SYS_fdatasync, descriptor));
}

TAKES_THE_PLACE int fchmod(int descriptor, mode_t mode) noexcept
{
    const auto chmod = [=] { return int(syscall(SYS_fchmod, descriptor, mode)); };
    return isCounted(descriptor) ? counted(Chmod, chmod) : chmod();
}

/// A close that fails has closed nevertheless.
TAKES_THE_PLACE int close(int descriptor)
{
    const bool counts = isCounted(descriptor);
    const int result = int(syscall(SYS_close, descriptor));
    if (!counts)
        return result;
    isNew[descriptor] = false;
    return counted(Close, [=] { return result; });
}

TAKES_THE_PLACE int link(const char *oldPath, const char *newPath) noexcept
{
    return linkCounted(AT_FDCWD, oldPath, AT_FDCWD, newPath, 0);
}

TAKES_THE_PLACE int linkat(int oldFolder, const char *oldPath, int newFolder, const char *newPath, int flags) noexcept
{
    return linkCounted(oldFolder, oldPath, newFolder, newPath, flags);
}

TAKES_THE_PLACE int rename(const char *oldPath, const char *newPath) noexcept
{
    return renameCounted(AT_FDCWD, oldPath, AT_FDCWD, newPath, 0);
}

TAKES_THE_PLACE int renameat2(int oldFolder, const char *oldPath, int newFolder, const char *newPath,
                              unsigned int flags) noexcept
{
    return renameCounted(oldFolder, oldPath, newFolder, newPath, flags);
}

TAKES_THE_PLACE int unlink(const char *path) noexcept
{
    return removeCounted(AT_FDCWD, path, 0);
}
