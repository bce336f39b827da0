// SPDX-License-Identifier: MIT

// With it, the system's headers define checked variants of these functions inline, so they could not be defined here.
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
#include <sys/xattr.h>
#include <unistd.h>

// The functions call the system by syscall(), never by the next function of the same name: this needs no initialization
// and bypasses the wrappers of a sanitizer, whose calls would be counted.

namespace {

using namespace FaultyCalls;

constexpr int MostCalls = 4096;
constexpr int MostFiles = 1024;

/// What a descriptor refers to: nothing that is counted, a folder or the old file, or the new file.
enum class Watched : char { No, Place, New };

bool counting = false;
Plan plan;
char calls[MostCalls + 1] = "";
int count = 0;
char failingForEver = 0;
Watched watched[MostFiles] = {}; // by descriptor; of files opened since begin()
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

/// Counts a call and applies the plan to it. `call` passes it to the system.
template <typename Call>
auto counted(Kind kind, Call &&call) -> decltype(call())
{
    record(kind);
    if (isPlanned(Action::DieHalfway))
        die();
    if (isPlanned(Action::Run)) {
        counting = false;
        plan.run();
        counting = true;
    }
    if (isPlanned(Action::Stop))
        raise(SIGSTOP);
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

Watched watchedAs(int descriptor)
{
    return counting && descriptor >= 0 && descriptor < MostFiles ? watched[descriptor] : Watched::No;
}

bool isCounted(int descriptor)
{
    return watchedAs(descriptor) == Watched::New;
}

/// Whether the path, which may be relative to the folder `at`, is in the folder whose calls are counted.
bool isInFolder(int at, const char *path)
{
    if (!folder)
        return true;
    const size_t size = std::strlen(folder);
    if (path[0] == '/')
        return std::strncmp(path, folder, size) == 0;
    char link[40] = "/proc/self/cwd";
    if (at != AT_FDCWD)
        std::snprintf(link, sizeof(link), "/proc/self/fd/%d", at);
    char target[4096] = "";
    return syscall(SYS_readlinkat, AT_FDCWD, link, target, sizeof(target) - 1) > 0
        && std::strncmp(target, folder, size) == 0;
}

/// The kind of an open() with these flags; 0 if it is not counted.
char kindOfOpen(int flags)
{
    if ((flags & O_TMPFILE) == O_TMPFILE)
        return CreateUnnamed;
    if (flags & O_CREAT)
        return Create;
    if (flags & O_PATH)
        return Find;
    return (flags & O_NOFOLLOW) && (flags & O_ACCMODE) == O_WRONLY ? OpenOld : 0;
}

int openCounted(int at, const char *path, int flags, mode_t mode)
{
    const auto open = [=] { return int(syscall(SYS_openat, at, path, flags, mode)); };
    const char kind = kindOfOpen(flags);
    if (!counting || kind == 0 || !isInFolder(at, path))
        return open();
    if (kind == CreateUnnamed && !plan.unnamedFiles) {
        errno = EOPNOTSUPP;
        return -1;
    }
    const int descriptor = counted(Kind(kind), open);
    if (descriptor >= 0 && descriptor < MostFiles)
        watched[descriptor] = kind == Create || kind == CreateUnnamed ? Watched::New : Watched::Place;
    return descriptor;
}

/// Counts a call if its descriptor refers to a folder, the old file or the new file.
template <typename Call>
auto countedIfWatched(int descriptor, Kind kind, Call &&call) -> decltype(call())
{
    return watchedAs(descriptor) == Watched::No ? call() : counted(kind, call);
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

__attribute__((constructor)) void readEnvironment()
{
    const char *const text = getenv(PlanVariable);
    folder = getenv(FolderVariable);
    if (!text || !folder)
        return;
    logName = getenv(LogVariable);
    Plan planFromEnvironment;
    int action = 0;
    int unnamedFiles = 0;
    if (std::sscanf(text, "%d %d %d %lld %d", &planFromEnvironment.call, &action, &planFromEnvironment.error,
                    &planFromEnvironment.room, &unnamedFiles)
        != 5)
        abort();
    planFromEnvironment.action = Action(action);
    planFromEnvironment.unnamedFiles = unnamedFiles != 0;
    begin(planFromEnvironment);
}

} // namespace

void FaultyCalls::begin(const Plan &newPlan)
{
    plan = newPlan;
    count = 0;
    failingForEver = 0;
    std::memset(watched, 0, sizeof(watched));
    counting = true;
}

const char *FaultyCalls::end()
{
    counting = false;
    calls[count < MostCalls ? count : MostCalls] = 0;
    return calls;
}

// The replaced functions, as the system declares them.

#define TAKES_THE_PLACE extern "C" __attribute__((visibility("default")))

/// Declares `mode`, the additional argument of open() and openat(), which only some flags require.
#define TAKE_MODE_AFTER(flags)                                                                                         \
    va_list arguments;                                                                                                 \
    va_start(arguments, flags);                                                                                        \
    const mode_t mode = modeOf(flags, arguments);                                                                      \
    va_end(arguments)

TAKES_THE_PLACE int open(const char *path, int flags, ...)
{
    TAKE_MODE_AFTER(flags);
    return openCounted(AT_FDCWD, path, flags, mode);
}

TAKES_THE_PLACE int open64(const char *path, int flags, ...)
{
    TAKE_MODE_AFTER(flags);
    return openCounted(AT_FDCWD, path, flags, mode);
}

TAKES_THE_PLACE int openat(int at, const char *path, int flags, ...)
{
    TAKE_MODE_AFTER(flags);
    return openCounted(at, path, flags, mode);
}

TAKES_THE_PLACE int openat64(int at, const char *path, int flags, ...)
{
    TAKE_MODE_AFTER(flags);
    return openCounted(at, path, flags, mode);
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

TAKES_THE_PLACE int fchown(int descriptor, uid_t user, gid_t group) noexcept
{
    return countedIfWatched(descriptor, Chown, [=] { return int(syscall(SYS_fchown, descriptor, user, group)); });
}

TAKES_THE_PLACE int fstat(int descriptor, struct stat *status) noexcept
{
    return countedIfWatched(descriptor, Status, [=] { return int(syscall(SYS_fstat, descriptor, status)); });
}

TAKES_THE_PLACE int fstat64(int descriptor, struct stat64 *status) noexcept
{
    return countedIfWatched(descriptor, Status, [=] { return int(syscall(SYS_fstat, descriptor, status)); });
}

TAKES_THE_PLACE ssize_t readlinkat(int at, const char *path, char *target, size_t size) noexcept
{
    return countedIfWatched(at, ReadLink, [=] { return ssize_t(syscall(SYS_readlinkat, at, path, target, size)); });
}

TAKES_THE_PLACE ssize_t fgetxattr(int descriptor, const char *name, void *value, size_t size) noexcept
{
    return countedIfWatched(descriptor, GetAttribute,
                            [=] { return ssize_t(syscall(SYS_fgetxattr, descriptor, name, value, size)); });
}

TAKES_THE_PLACE ssize_t flistxattr(int descriptor, char *names, size_t size) noexcept
{
    return countedIfWatched(descriptor, ListAttributes,
                            [=] { return ssize_t(syscall(SYS_flistxattr, descriptor, names, size)); });
}

TAKES_THE_PLACE int fsetxattr(int descriptor, const char *name, const void *value, size_t size, int flags) noexcept
{
    return countedIfWatched(descriptor, SetAttribute,
                            [=] { return int(syscall(SYS_fsetxattr, descriptor, name, value, size, flags)); });
}

TAKES_THE_PLACE int fremovexattr(int descriptor, const char *name) noexcept
{
    return countedIfWatched(descriptor, RemoveAttribute,
                            [=] { return int(syscall(SYS_fremovexattr, descriptor, name)); });
}

/// Closes the descriptor even if the plan makes the call fail, as the system does.
TAKES_THE_PLACE int close(int descriptor)
{
    const bool counts = isCounted(descriptor);
    if (watchedAs(descriptor) != Watched::No)
        watched[descriptor] = Watched::No;
    const int result = int(syscall(SYS_close, descriptor));
    if (!counts)
        return result;
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

TAKES_THE_PLACE int renameat(int oldFolder, const char *oldPath, int newFolder, const char *newPath) noexcept
{
    return renameCounted(oldFolder, oldPath, newFolder, newPath, 0);
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

TAKES_THE_PLACE int unlinkat(int at, const char *path, int flags) noexcept
{
    return removeCounted(at, path, flags);
}
