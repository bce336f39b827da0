// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Sarif.h>

#include "batch/JsonLine.h"
#include "console/Console.h"
#include "files/FileName.h"

/// What the user of a command with that option can do if not all problems are listed.
inline const QLatin1String howToListMore("; use --max-problems to list more"); // clang knows no constant strlen()

/// The result of processing one file.
enum class FileStatus {
    Done, ///< valid or converted
    Changed, ///< done, and the file has another content than before, or should have
    Problems, ///< the document is invalid, or cannot be stored as required
    Unreadable,
    Unwritable,
};

/// How many files are processed at once, and how much is reported about them.
struct BatchSettings
{
    int jobs = 1;
    bool quiet = false; ///< report only files that cannot be read or written; not together with `json`
    bool json = false; ///< a line of JSON for each file
    int problemLimit = 0; ///< the number of problems per file to list
};

struct Outcome
{
    FileName file;
    FileName output; ///< empty if nothing is written
    FileStatus status = FileStatus::Done;
    TunerDocuments::Findings findings;
    /// The number of warnings to report instead of the warnings themselves; -1 for none.
    qint64 warningCount = -1;
    QString note; ///< for standard error, unless quiet
    QVector<TunerDocuments::Loss> losses; ///< what the output does not have; as many as problems are listed
    qint64 lossCount = 0;
    QString error; ///< why it is unreadable, unwritable or cannot be stored
};

/// Processes any number of files, several at once. Results are written in the order of the files, each as soon as the
/// previous ones are; a file that fails does not stop the others. Waiting results are few and short, so memory does not
/// grow with the number of files or problems. With more than one file, a summary on standard error follows, also when a
/// signal ends the program; a terminal shows a progress bar.
class Batch
{
public:
    explicit Batch(const BatchSettings &settings) : m_settings(settings) { }

    /// The number of problems per file to list, and to keep: 0 with --quiet.
    int problemLimit() const { return m_settings.quiet ? 0 : m_settings.problemLimit; }

    /// The status of a file that is done: "valid" or "converted".
    QString doneStatus;

    /// The status of a file that is changed, and the exit status for it. Such files are named on standard output, one
    /// per line, unless it has JSON.
    QString changedStatus;
    ExitStatus changedExit = ExitStatus::Ok;

    /// The status of a file with findings.
    QString foundStatus = QStringLiteral("problems");

    /// Whether warnings are part of the JSON, as "warnings" (their number) and "findings".
    bool listsWarnings = false;

    /// Composes what is written to standard output about a file, in place of the usual JSON. Called from several
    /// threads at once.
    std::function<QByteArray(const Outcome &)> compose;

    /// Receives the result of each file instead of standard output, in the order of the files, unless null. Errors are
    /// also written to standard error.
    TunerDocuments::Sarif::Writer *sarif = nullptr;

    /// The names of the output files, one per input file, or none.
    QVector<FileName> outputs;

    using Done = std::function<void(FileStatus)>;
    /// Processes the file of that index. Called from several threads at once. The function may call `done` as soon as
    /// the result is final; otherwise the file counts when the function returns. InvalidContent and
    /// UnstorableContent count as problems, FileFailure and other exceptions as a file that cannot be read.
    std::function<Outcome(int index, const Done &done)> work;

    /// Whether problems are written to standard output, as the result, or to standard error. With JSON they are part of
    /// the JSON.
    bool problemsToStandardOutput = true;

    /// Processes all files and returns the worst result.
    ExitStatus run(const QVector<FileName> &files);

    /// "file" and "status" of the JSON about a file, to which compose() adds others.
    JsonLine json(const Outcome &outcome) const;

    /// "'lint' has 3 warnings"; null if there are none.
    static QString warningNote(qint64 count);

private:
    class Tally;

    struct Result;

    Outcome workOn(const FileName &file, int index, Tally &tally) const;
    Result resultOf(const Outcome &outcome) const;
    QByteArray lineOf(const Outcome &outcome) const;
    void write(const Result &result) const;
    QString summary(const Tally &tally) const;

    const BatchSettings m_settings;
};
