// SPDX-License-Identifier: MIT
#include "console/Console.h"

#include <cerrno>
#include <mutex>

#include <sys/ioctl.h>
#include <unistd.h>

#include <QtGlobal>

#include "console/Interruption.h"
#include "text/Printable.h"

namespace Console {

namespace {

// One thread writes results, errors and the bar; another one writes the last error.
std::mutex mutex;
bool barIsShown = false;

/// Returns the system's error number, or 0. A single call may write only a part, to a pipe or a full disk.
int writeAll(int stream, const QByteArray &bytes)
{
    for (int done = 0; done < bytes.size();) {
        const ssize_t written = ::write(stream, bytes.constData() + done, std::size_t(bytes.size() - done));
        if (written < 0 && errno != EINTR)
            return errno;
        done += written > 0 ? int(written) : 0;
    }
    return 0;
}

void eraseBar()
{
    if (barIsShown)
        writeAll(STDERR_FILENO, "\r\x1b[K");
    barIsShown = false;
}

QByteArray errorLine(const QString &text)
{
    return "tunerproperties: " + Printable::onOneLine(text).toUtf8() + '\n';
}

} // namespace

QString streamName()
{
    return QStringLiteral("-");
}

void write(const QByteArray &bytes)
{
    writeEscaped(escapedFor(STDOUT_FILENO, bytes));
}

QByteArray escapedFor(int descriptor, const QByteArray &bytes)
{
    return isatty(descriptor) != 0 ? Printable::escaped(bytes) : bytes;
}

void writeEscaped(const QByteArray &bytes)
{
    int error = 0;
    {
        const std::lock_guard lock(mutex);
        eraseBar();
        error = writeAll(STDOUT_FILENO, bytes);
    }
    if (error == EPIPE)
        Interruption::endByBrokenPipe();
    if (error != 0)
        throw FileFailure(streamName() + QStringLiteral(": cannot write: ") + qt_error_string(error));
}

void printError(const QString &text)
{
    const std::lock_guard lock(mutex);
    eraseBar();
    writeAll(STDERR_FILENO, errorLine(text)); // there is nowhere to report a failure
}

void printErrors(const QStringList &texts)
{
    for (const QString &text : texts)
        printError(text);
}

void printOutOfMemory() noexcept
{
    // Console::printError() would allocate its line, and an exception in a handler ends the program by abort().
    static constexpr char line[] = "tunerproperties: out of memory\n";
    const std::lock_guard lock(mutex);
    std::size_t done = 0;
    while (done < sizeof line - 1) {
        const ssize_t written = ::write(STDERR_FILENO, line + done, sizeof line - 1 - done);
        if (written < 0 && errno != EINTR)
            return;
        done += written > 0 ? std::size_t(written) : 0;
    }
}

bool standardOutputIsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

bool canShowBar()
{
    const QByteArray terminal = qgetenv("TERM");
    return isatty(STDERR_FILENO) != 0 && !terminal.isEmpty() && terminal != "dumb";
}

int terminalWidth()
{
    constexpr int usual = 80;
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

void showBar(const QString &text)
{
    const std::lock_guard lock(mutex);
    if (text.isEmpty()) {
        eraseBar();
        return;
    }
    writeAll(STDERR_FILENO, '\r' + text.toUtf8() + "\x1b[K");
    barIsShown = true;
}

bool printLastError(const QString &text)
{
    if (!mutex.try_lock()) // never unlocked again
        return false;
    eraseBar();
    if (!text.isNull())
        writeAll(STDERR_FILENO, errorLine(text));
    return true;
}

} // namespace Console
