// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>
#include <QVector>

#include "console/Console.h"
#include "documents/Validate.h"
#include "text/FileName.h"

/// What became of one of many files.
enum class FileStatus {
    Done, ///< valid, or converted
    Problems, ///< it does not validate
    Unreadable,
    Unwritable,
};

/// How many files are worked on at once, and how much is told about them.
struct BatchSettings
{
    int jobs = 1;
    bool quiet = false; ///< nothing but what cannot be read or written; not together with `json`
    bool json = false; ///< a line of JSON for each file
    int mostProblems = 0; ///< that are listed of a file
};

struct Outcome
{
    FileName file;
    FileName output; ///< none if none is written
    FileStatus status = FileStatus::Done;
    Findings findings;
    QString error; ///< why it is unreadable or unwritable
};

/// Work on any number of files, several at once. Results are told in the order of the files, each as soon as those in
/// front of it are; a file that fails does not keep the others from being worked on. Results that wait to be told are
/// few and short, so that memory does not grow with the number of files or of their problems. Behind more than one file
/// there is a summary, on standard error, and so there is if a signal ends the program; a bar shows on a terminal how
/// far it is.
class Batch
{
public:
    explicit Batch(const BatchSettings &settings) : m_settings(settings) { }

    /// How many problems of a file are told, and need to be kept: none with --quiet.
    int mostProblems() const { return m_settings.quiet ? 0 : m_settings.mostProblems; }

    /// What a file is called that is done: "valid" or "converted".
    QString doneWord;

    /// The names of the files that are written, if any are; as many as files.
    QVector<FileName> outputs;

    /// Works on the file of that index. Called from several threads at once. `done` may be called as soon as the result
    /// is there for good, for one who asks how far the work came; otherwise that is when this returns. FileFailure and
    /// the like count as a file that cannot be read.
    std::function<Outcome(int index, const std::function<void()> &done)> work;

    /// Where problems go, if not into JSON: to standard output, as the result, or to standard error.
    bool problemsAreTheResult = true;

    /// Does all the work. The worst result counts.
    ExitStatus run(const QVector<FileName> &files);

private:
    class Tally;

    struct Result;

    Outcome workOn(const FileName &file, int index, Tally &tally) const;
    Result resultOf(const Outcome &outcome) const;
    static void write(const Result &result);
    QString summary(const Tally &tally) const;

    const BatchSettings m_settings;
};
