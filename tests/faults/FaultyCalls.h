// SPDX-License-Identifier: MIT
#pragma once

/// Replaces the system calls by which files are put in place, to make them fail on demand, in a program that
/// FaultyCalls.cpp is linked into or preloaded into. Counted are calls that resolve a path, create a file, access the
/// old or new file, or name a file. All other calls are passed to the system.
namespace FaultyCalls {

/// The kind of a call. A sequence of these letters describes what a program did.
enum Kind : char {
    Find = 'f', ///< open() of a path to examine the file
    ReadLink = 'k',
    OpenOld = 'o', ///< open() for writing, which does not follow a link
    Status = 't',
    GetAttribute = 'g', ///< of an extended attribute
    ListAttributes = 'i',
    SetAttribute = 'a',
    RemoveAttribute = 'v',
    Chown = 'h',
    CreateUnnamed = 'u', ///< open() of a file without a name
    Create = 'c',
    Chmod = 'm',
    Write = 'w',
    Sync = 's',
    Link = 'l',
    Rename = 'r',
    Close = 'x',
    Remove = 'd',
};

enum class Action {
    Fail, ///< the call fails with the error
    FailForEver, ///< the call and all later ones of its kind fail with the error
    DieHalfway, ///< the process is killed in the middle of a write, or before a call of another kind
    DieAfter, ///< the process is killed after the call
    Run, ///< a function is called before the call
    Stop, ///< the process stops by SIGSTOP; when it is continued, it makes the call
};

struct Plan
{
    int call = 0; ///< the number of the call that the action applies to, from 1; 0 for none
    Action action = Action::Fail;
    int error = 0;
    long long room = -1; ///< how many bytes can be written before the disk is full; -1 for any number
    bool unnamedFiles = true; ///< whether the file system supports files without a name
    void (*run)() = nullptr; ///< the function of Action::Run; its own calls are not counted
};

/// Starts counting calls and applies the plan. Files are not synchronized with the disk, which would only take time.
void begin(const Plan &plan);

/// Stops counting. Returns the counted calls, a letter each.
const char *end();

/// \name For a program into which the calls are preloaded
/// These environment variables configure it: PlanVariable contains the first five members of Plan as numbers, in their
/// order. Only calls in the folder FolderVariable are counted. The letters are appended to the file LogVariable.
/// @{
constexpr char PlanVariable[] = "FAULTY_CALLS";
constexpr char FolderVariable[] = "FAULTY_CALLS_FOLDER";
constexpr char LogVariable[] = "FAULTY_CALLS_LOG";
/// @}

} // namespace FaultyCalls
