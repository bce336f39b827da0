// SPDX-License-Identifier: MIT
#include <tunerdocuments/Document.h>
#include <tunerdocuments/Form.h>
#include <tunerdocuments/NewDocument.h>

#include "commands/Commands.h"
#include "text/Suggestion.h"

using namespace TunerDocuments;

using JobXml::TunerProperties;

namespace {

const Option &type()
{
    static const Option option{{QStringLiteral("type")},
                               QStringLiteral("Kind of tuner (required)."),
                               QStringLiteral("TYPE"),
                               Takes::Word,
                               TunerProperties::Gettypes()};
    return option;
}

const Option &name()
{
    static const Option option{{QStringLiteral("name")},
                               QStringLiteral("Name of the tuner (default: none)."),
                               QStringLiteral("TEXT"),
                               Takes::Anything,
                               {}};
    return option;
}

const Option &baseresource()
{
    static const Option option{{QStringLiteral("baseresource")},
                               QStringLiteral("Resource on which the tuner is based."),
                               QStringLiteral("TEXT"),
                               Takes::Anything,
                               {}};
    return option;
}

ExitStatus run(const Invocation &invocation)
{
    if (invocation.count() != 0) {
        const QString meant = Suggestion::nearest(invocation.text(0), TunerProperties::Gettypes());
        throw WrongUsage(QStringLiteral("'new' takes no arguments")
                         + (meant.isNull() ? QString() : Suggestion::hintAt(QStringLiteral("--type ") + meant)));
    }
    if (!invocation.isSet(type()))
        throw WrongUsage(QStringLiteral("'new' requires --type: ") + Suggestion::listed(TunerProperties::Gettypes()));
    QHash<QString, QString> values;
    for (const Option &option : {type(), name(), baseresource()}) {
        if (invocation.isSet(option))
            values.insert(option.names.first(), invocation.value(option));
    }
    const Document document(NewDocument::minimal(values));
    const QByteArray xml = document.toBytes(Form::Xml, Console::streamName());
    Console::write(NewDocument::explained(xml, document.tuner));
    return ExitStatus::Ok;
}

} // namespace

Command newCommand()
{
    Command command;
    command.name = QStringLiteral("new");
    command.usages = QStringList{QString()};
    command.summary = QStringLiteral("Write a new document as XML with comments.");
    command.details = QStringList{
        QStringLiteral("The document contains the mandatory members and is valid; texts to be replaced are the names "
                       "of their members. The comments describe all members, including the optional ones.")};
    command.options = {type(), name(), baseresource()};
    command.examples = {{QStringLiteral("new --type Receiver > receiver.xml"),
                         QStringLiteral("Create the description of a receiver.")}};
    command.minArguments = 0;
    command.run = run;
    command.takes = Takes::Nothing;
    return command;
}
