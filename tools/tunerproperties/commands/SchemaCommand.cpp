// SPDX-License-Identifier: MIT
#include "commands/Commands.h"
#include "documents/Schema.h"

namespace {

ExitStatus run(const Invocation &)
{
    Console::write(Schema::text());
    return ExitStatus::Ok;
}

} // namespace

Command schemaCommand()
{
    Command command;
    command.name = QStringLiteral("schema");
    command.usages = QStringList{QString()};
    command.summary = QStringLiteral("Write the XML Schema of documents.");
    command.examples = {{QStringLiteral("schema > tuner-properties.xsd"),
                         QStringLiteral("Save the schema for an editor or for xmllint.")}};
    command.minArguments = 0;
    command.maxArguments = 0;
    command.run = run;
    command.takes = Takes::Nothing;
    return command;
}
