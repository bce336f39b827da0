// SPDX-License-Identifier: MIT
#include "commands/Commands.h"
#include "commands/HelpText.h"

namespace {

ExitStatus run(const Invocation &invocation)
{
    if (invocation.count() == 0) {
        Console::write(HelpText::ofProgram().toUtf8());
        return ExitStatus::Ok;
    }
    const QString name = invocation.text(0);
    const std::optional<Command> command = commandNamed(name);
    if (!command)
        throw WrongUsage(unknownCommand(name));
    Console::write(HelpText::ofCommand(*command).toUtf8());
    return ExitStatus::Ok;
}

} // namespace

Command helpCommand()
{
    Command command;
    command.name = QStringLiteral("help");
    command.usages = QStringList{QStringLiteral("[COMMAND]")};
    command.summary = QStringLiteral("Show help for the program or for a command.");
    command.examples = {
        {QStringLiteral("help convert"), QStringLiteral("Show the same as 'tunerproperties convert --help'.")}};
    command.minArguments = 0;
    command.maxArguments = 1;
    command.run = run;
    command.takes = Takes::Word;
    command.words = commandNames;
    return command;
}
