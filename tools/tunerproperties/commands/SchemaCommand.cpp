// SPDX-License-Identifier: MIT
#include <QMap>

#include <tunerdocuments/Schema.h>

#include "commands/Commands.h"

using namespace TunerDocuments;

namespace {

const Option &formatOption()
{
    static const Option option{
        {QStringLiteral("format")},
        QStringLiteral(
            "Output: xsd, the XML Schema of what the library writes (the default); author, the XML Schema for "
            "people who write documents, and for their editors; json, the JSON Schema of documents as JSON; "
            "or model, a JSON list of all classes and members with their tags and defaults."),
        QStringLiteral("FORMAT"),
        Takes::Word,
        QStringList{QStringLiteral("xsd"), QStringLiteral("author"), QStringLiteral("json"), QStringLiteral("model")}};
    return option;
}

ExitStatus run(const Invocation &invocation)
{
    static const QMap<QString, QByteArray (*)()> outputs{{QStringLiteral("author"), Schema::forAuthors},
                                                         {QStringLiteral("json"), Schema::forJson},
                                                         {QStringLiteral("model"), Schema::model}};
    Console::write(outputs.value(invocation.value(formatOption()), Schema::text)());
    return ExitStatus::Ok;
}

} // namespace

Command schemaCommand()
{
    Command command;
    command.name = QStringLiteral("schema");
    command.usages = QStringList{QString()};
    command.summary = QStringLiteral("Write the schema of documents, for XML or JSON.");
    command.options = {formatOption()};
    command.examples = {{QStringLiteral("schema > tuner-properties.xsd"),
                         QStringLiteral("Save the schema of what the library writes, for xmllint.")},
                        {QStringLiteral("schema --format author > tuner-properties-author.xsd"),
                         QStringLiteral("Save the schema for an editor, which then completes names and values.")},
                        {QStringLiteral("schema --format json > tuner-properties.schema.json"),
                         QStringLiteral("Save the schema of documents as JSON.")},
                        {QStringLiteral("schema --format model > model.json"),
                         QStringLiteral("Save the list of classes and members for a reader of your own.")}};
    command.minArguments = 0;
    command.maxArguments = 0;
    command.run = run;
    command.takes = Takes::Nothing;
    return command;
}
