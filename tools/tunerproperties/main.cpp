// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <new>

#include <QCoreApplication>

#include "commands/CommandLine.h"
#include "commands/HelpText.h"
#include "console/Interruption.h"

namespace {

/// Opens /dev/null in place of standard streams that are closed. The next file to be opened would otherwise receive
/// the descriptor of a stream, and its output. Reading or writing it fails as for a closed stream.
void occupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // uses the lowest free number
    }
}

} // namespace

int main(int argc, char **argv)
{
    occupyStandardStreams();
    QByteArrayList arguments; // unchanged: Qt would decode them, and interpret some
    for (int i = 1; i < argc; ++i)
        arguments.append(argv[i]);
    int justTheName = std::min(argc, 1);
    QCoreApplication application(justTheName, argv);
    const Interruption::Watch watch;
    QCoreApplication::setApplicationName(HelpText::program());
    try {
        return int(runCommandLine(arguments));
    } catch (const std::bad_alloc &) {
        Console::printError(QStringLiteral("out of memory"));
    } catch (const std::exception &e) {
        Console::printError(QString::fromUtf8(e.what()));
    }
    return int(ExitStatus::FileFailure);
}
