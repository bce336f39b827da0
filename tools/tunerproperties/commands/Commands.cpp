// SPDX-License-Identifier: MIT
#include "commands/Commands.h"

#include "text/Suggestion.h"

const QVector<Command> &allCommands()
{
    static const QVector<Command> commands = {
        showCommand(), validateCommand(), convertCommand(), diffCommand(), getCommand(),
        setCommand(),  newCommand(),      schemaCommand(),  helpCommand(),
    };
    return commands;
}

const Command *commandNamed(const QString &name)
{
    for (const Command &command : allCommands()) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

QStringList commandNames()
{
    QStringList names;
    for (const Command &command : allCommands())
        names.append(command.name);
    return names;
}

QString unknownCommand(const QString &name)
{
    return QStringLiteral("unknown command '") + name + QLatin1Char('\'') + Suggestion::hint(name, commandNames());
}
