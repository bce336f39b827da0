// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <QByteArray>
#include <QString>

/// What the program tells whoever started it.
enum class ExitStatus {
    Ok = 0,
    Problems = 1, ///< a document does not validate
    WrongUsage = 2,
    FileFailure = 3, ///< a file cannot be read or written
};

/// A file, or a standard stream, that cannot be read or written. The text names the file.
class FileFailure : public std::runtime_error
{
public:
    explicit FileFailure(const QString &text);
    QString text() const { return m_text; }

private:
    QString m_text;
};

/// The standard streams, in UTF-8 whatever the locale is: what the program writes is read by other programs as well.
namespace Console {

/// The name of standard input and output on the command line.
QString streamName();

/// What of the bytes goes to an open file: they themselves to a file or a pipe; to a terminal, with whatever is not
/// printable escaped (see Printable.h). The bytes are whole characters.
QByteArray shownOn(int descriptor, const QByteArray &bytes);

/// Writes to standard output what shownOn() makes of the bytes. Throws FileFailure if writing is not possible.
void write(const QByteArray &bytes);

/// The same for text in which whatever came from a document or a file name is escaped already, so that colors remain.
void writeEscaped(const QByteArray &bytes);

/// Writes one line to standard error, the name of the program in front.
void complain(const QString &text);

/// Whether people look at it, and not a file or another program.
bool standardOutputIsTerminal();

/// Whether people look at standard error, on a terminal on which the cursor can go back.
bool canShowBar();

/// How many characters fit a line of the terminal behind standard error.
int terminalWidth();

/// Shows a line at the cursor of standard error, in place of the last one that was shown so; an empty one takes that
/// away. Whatever is written or complained meanwhile stands above it.
void showBar(const QString &text);

/// Takes the bar away, complains about this unless it is null, and lets nobody write any more: for one who is about to
/// end the process. Returns false, and does nothing, as long as somebody else is writing.
bool tellAtLast(const QString &text);

} // namespace Console
