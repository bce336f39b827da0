// SPDX-License-Identifier: MIT
#include "commands/Commands.h"

#include "text/Suggestion.h"

namespace {

Command (*const descriptions[])() = {
    showCommand,  validateCommand, lintCommand, convertCommand, fmtCommand,  diffCommand,
    patchCommand, mergeCommand,    getCommand,  setCommand,     addCommand,  removeCommand,
    moveCommand,  pathsCommand,    newCommand,  schemaCommand,  helpCommand,
};

} // namespace

const QVector<Command> &allCommands()
{
    static const QVector<Command> commands = [] {
        QVector<Command> all;
        for (const auto description : descriptions)
            all.append(description());
        return all;
    }();
    return commands;
}

std::optional<Command> commandNamed(const QString &name)
{
    for (const auto description : descriptions) {
        Command command = description();
        if (command.name == name)
            return command;
    }
    return {};
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
