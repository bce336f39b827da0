// SPDX-License-Identifier: MIT
#include <tunerdocuments/Schema.h>

#include "commands/Commands.h"

using namespace TunerDocuments;

namespace {

const QString modelFormat = QStringLiteral("model");

const Option &formatOption()
{
    static const Option option{{QStringLiteral("format")},
                               QStringLiteral("Output: xsd, the XML Schema (the default), or model, a JSON list of "
                                              "all classes and members with their tags and defaults."),
                               QStringLiteral("FORMAT"),
                               Takes::Word,
                               QStringList{QStringLiteral("xsd"), modelFormat}};
    return option;
}

ExitStatus run(const Invocation &invocation)
{
    Console::write(invocation.value(formatOption()) == modelFormat ? Schema::model() : Schema::text());
    return ExitStatus::Ok;
}

} // namespace

Command schemaCommand()
{
    Command command;
    command.name = QStringLiteral("schema");
    command.usages = QStringList{QString()};
    command.summary = QStringLiteral("Write the XML Schema of documents.");
    command.options = {formatOption()};
    command.examples = {{QStringLiteral("schema > tuner-properties.xsd"),
                         QStringLiteral("Save the schema for an editor or for xmllint.")},
                        {QStringLiteral("schema --format model > model.json"),
                         QStringLiteral("Save the list of classes and members for a reader of your own.")}};
    command.minArguments = 0;
    command.maxArguments = 0;
    command.run = run;
    command.takes = Takes::Nothing;
    return command;
}
