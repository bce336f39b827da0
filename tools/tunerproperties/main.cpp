// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <new>

#include "commands/CommandLine.h"
#include "commands/HelpText.h"
#include "console/Interruption.h"
#include "console/StandardStreams.h"

namespace {

bool isAscii(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80; });
}

/// Whether the environment selects the language of C for a category, in any encoding. Looks where setlocale() does.
bool isOfC(const char *category)
{
    QByteArray locale;
    for (const char *variable : {"LC_ALL", category, "LANG"}) {
        if (locale.isEmpty())
            locale = qgetenv(variable);
    }
    return locale.isEmpty() || locale == "C" || locale == "POSIX" || locale.startsWith("C.");
}

/// Whether the system's language or encoding matters: for its messages, which are ASCII in the language of C, and for
/// names that Qt decodes, which are those of temporary files. Files that are named here are opened by their bytes.
bool needsLocale()
{
    return !isOfC("LC_CTYPE") || !isOfC("LC_MESSAGES") || !qgetenv("LANGUAGE").isEmpty() || !isAscii(qgetenv("TMPDIR"));
}

ExitStatus run(const QByteArrayList &arguments)
{
    const Interruption::Watch watch;
    try {
        return runCommandLine(arguments);
    } catch (const std::bad_alloc &) {
        Console::printOutOfMemory();
    } catch (const std::exception &e) {
        Console::printError(QString::fromUtf8(e.what()));
    }
    return ExitStatus::FileFailure;
}

} // namespace

int main(int argc, char **argv)
{
    StandardStreams::prepare();
    QByteArrayList arguments; // unchanged: Qt would decode them, and interpret some
    for (int i = 1; i < argc; ++i)
        arguments.append(argv[i]);
    // The language and encoding of the system's messages are all that the program needs of a QCoreApplication, which
    // would take a tenth of the time of a short run. They themselves take a thirtieth, in scripts mostly for nothing.
    if (needsLocale() || !std::all_of(arguments.begin(), arguments.end(), isAscii))
        StandardStreams::useLocale();
    const ExitStatus status = run(arguments);
#ifdef TOOL_RETURNS
    return int(status);
#else
    // Everything has been written. Destroying what the libraries still have would take a thirtieth of a short run.
    std::_Exit(int(status));
#endif
}
