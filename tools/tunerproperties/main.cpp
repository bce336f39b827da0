// SPDX-License-Identifier: MIT
#include <new>

#include <QCoreApplication>

#include "batch/Interruption.h"
#include "commands/CommandLine.h"
#include "commands/HelpText.h"

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const Interruption::Watch watch;
    QCoreApplication::setApplicationName(HelpText::program());
    try {
        return int(runCommandLine(QCoreApplication::arguments()));
    } catch (const std::bad_alloc &) {
        Console::complain(QStringLiteral("the memory does not suffice"));
    } catch (const std::exception &e) {
        Console::complain(QString::fromUtf8(e.what()));
    }
    return int(ExitStatus::FileFailure);
}
