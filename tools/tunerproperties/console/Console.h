// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tunerdocuments/DocumentError.h>

/// The exit status of the program.
enum class ExitStatus {
    Ok = 0,
    Problems = 1, ///< a document does not validate
    WrongUsage = 2,
    FileFailure = 3, ///< a file cannot be read or written
};

/// A file or a standard stream that cannot be read or written. The text begins with its name.
using FileFailure = TunerDocuments::DocumentError;

/// The standard streams, in UTF-8 in every locale: other programs read the output as well.
namespace Console {

/// The name of standard input and output on the command line.
QString streamName();

/// The bytes as they are written to the open file `descriptor`: unchanged to a file or a pipe; to a terminal, with what
/// is not printable escaped (see Printable.h). The bytes must be complete characters.
QByteArray escapedFor(int descriptor, const QByteArray &bytes);

/// Writes the bytes to standard output, as escapedFor() returns them. Throws FileFailure if writing fails.
void write(const QByteArray &bytes);

/// Writes text whose parts from documents and file names are already escaped, so that colors remain.
void writeEscaped(const QByteArray &bytes);

/// Writes one line to standard error, prefixed with the name of the program.
void printError(const QString &text);

/// The same for each of the texts.
void printErrors(const QStringList &texts);

/// The same for "out of memory", without allocating any.
void printOutOfMemory() noexcept;

/// Whether standard output is a terminal.
bool standardOutputIsTerminal();

/// Whether standard error is a terminal whose cursor can be moved back.
bool canShowBar();

/// The number of characters in a line of the terminal of standard error.
int terminalWidth();

/// Shows a line at the cursor of standard error in place of the previous one; an empty text removes it. Other output
/// appears above it.
void showBar(const QString &text);

/// Removes the bar, writes the text unless it is null, and blocks all further output. For the thread that is about to
/// end the process. Returns false and does nothing while another thread is writing.
bool printLastError(const QString &text);

} // namespace Console
