// SPDX-License-Identifier: MIT
#pragma once

/// The system calls by which files are put in place, made to fail on demand. A program that FaultyCalls.cpp is linked
/// into, or preloaded into, makes them through it. Calls count that look for the place of a file, that make a new file,
/// that are about the old file or the new one, or that give a file its name; everything else goes to the system
/// untouched.
namespace FaultyCalls {

/// What kind of call was made; a word of such letters says what a program did.
enum Kind : char {
    Find = 'f', ///< open() of a path to examine the file
    ReadLink = 'k',
    OpenOld = 'o', ///< open() of a file, but not of a link, for writing
    Status = 't',
    GetAttribute = 'g', ///< an extended one
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
    Fail, ///< with the error
    FailForEver, ///< and so does every later call of that kind
    DieHalfway, ///< the process is killed in the middle of a write, and instead of a call of another kind
    DieAfter,
    Run, ///< something happens meanwhile; the call goes to the system afterwards
    Stop, ///< the process stops, as by SIGSTOP, and makes the call when it is continued
};

struct Plan
{
    int call = 0; ///< to which call it happens, counted from 1; 0 for none
    Action action = Action::Fail;
    int error = 0;
    long long room = -1; ///< how many bytes the disk takes before it is full; -1 for any number
    bool unnamedFiles = true; ///< whether the file system knows files without a name
    void (*run)() = nullptr; ///< of Action::Run; what it calls does not count
};

/// From here on calls count, and the plan holds. Files are not synchronized with the disk, which would only take time.
void begin(const Plan &plan);

/// Ends that; the calls made since, a letter each.
const char *end();

/// \name For a program into which the calls are preloaded
/// The plan is taken from the variable PlanVariable, as the five numbers of a Plan in their order; files count in the
/// folder that FolderVariable names; the letters are appended to the file that LogVariable names.
/// @{
constexpr char PlanVariable[] = "FAULTY_CALLS";
constexpr char FolderVariable[] = "FAULTY_CALLS_FOLDER";
constexpr char LogVariable[] = "FAULTY_CALLS_LOG";
/// @}

} // namespace FaultyCalls
