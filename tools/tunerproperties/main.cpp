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

/// A standard stream that is closed would be given to the next file that is opened, which would then get what is meant
/// for the stream. Used in its place, this fails as a closed one does.
void occupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // the least number that is free
    }
}

} // namespace

int main(int argc, char **argv)
{
    occupyStandardStreams();
    QByteArrayList arguments; // as they are: Qt would decode them, and take some for its own
    for (int i = 1; i < argc; ++i)
        arguments.append(argv[i]);
    int justTheName = std::min(argc, 1);
    QCoreApplication application(justTheName, argv);
    const Interruption::Watch watch;
    QCoreApplication::setApplicationName(HelpText::program());
    try {
        return int(runCommandLine(arguments));
    } catch (const std::bad_alloc &) {
        Console::complain(QStringLiteral("out of memory"));
    } catch (const std::exception &e) {
        Console::complain(QString::fromUtf8(e.what()));
    }
    return int(ExitStatus::FileFailure);
}
