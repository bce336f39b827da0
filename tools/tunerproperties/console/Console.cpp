// SPDX-License-Identifier: MIT
#include "console/Console.h"

#include <cerrno>
#include <mutex>

#include <QtGlobal>

#include "console/Interruption.h"
#include "console/StandardStreams.h"
#include "text/Printable.h"

namespace Console {

namespace {

// One thread writes results, errors and the bar; another one writes the last error.
std::mutex mutex;
bool barIsShown = false;

int writeAll(int stream, const QByteArray &bytes)
{
    return StandardStreams::write(stream, bytes.constData(), std::size_t(bytes.size()));
}

void eraseBar()
{
    if (barIsShown)
        writeAll(StandardStreams::error, "\r\x1b[K");
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
    writeEscaped(escapedFor(StandardStreams::output, bytes));
}

QByteArray escapedFor(int descriptor, const QByteArray &bytes)
{
    return StandardStreams::isTerminal(descriptor) ? Printable::escaped(bytes) : bytes;
}

void writeEscaped(const QByteArray &bytes)
{
    int error = 0;
    {
        const std::lock_guard lock(mutex);
        eraseBar();
        error = writeAll(StandardStreams::output, bytes);
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
    writeAll(StandardStreams::error, errorLine(text)); // there is nowhere to report a failure
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
    StandardStreams::write(StandardStreams::error, line, sizeof line - 1);
}

bool standardOutputIsTerminal()
{
    return StandardStreams::isTerminal(StandardStreams::output);
}

bool canShowBar()
{
    const QByteArray terminal = qgetenv("TERM");
    return StandardStreams::isTerminal(StandardStreams::error) && !terminal.isEmpty() && terminal != "dumb";
}

int terminalWidth()
{
    constexpr int usual = 80;
    const int width = StandardStreams::terminalWidth(StandardStreams::error);
    return width > 0 ? width : usual;
}

void showBar(const QString &text)
{
    const std::lock_guard lock(mutex);
    if (text.isEmpty()) {
        eraseBar();
        return;
    }
    writeAll(StandardStreams::error, '\r' + text.toUtf8() + "\x1b[K");
    barIsShown = true;
}

bool printLastError(const QString &text)
{
    if (!mutex.try_lock()) // never unlocked again
        return false;
    eraseBar();
    if (!text.isNull())
        writeAll(StandardStreams::error, errorLine(text));
    return true;
}

} // namespace Console
