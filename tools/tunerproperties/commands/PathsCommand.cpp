// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

ExitStatus run(const Invocation &invocation)
{
    const DocumentFile source(invocation.file(0), Options::loading(invocation));
    BufferedOutput output;
    Paths::list(source.document.tuner,
                [&](const QString &path, const JobXml::MemberView &) { output.write(path.toUtf8() + '\n'); });
    output.flush();
    return ExitStatus::Ok;
}

} // namespace

Command pathsCommand()
{
    Command command;
    command.name = QStringLiteral("paths");
    command.usages = QStringList{QStringLiteral("FILE")};
    command.summary = QStringLiteral("List the paths of all members that are set.");
    command.details =
        QStringList{QStringLiteral("Each line is a complete path to a value, as 'get' and 'set' accept it. "
                                   "'tunerproperties get --help' describes paths.")};
    command.options = {Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("paths receiver.xml | grep gain"), QStringLiteral("Find a value by its name.")}};
    command.maxArguments = 1;
    command.run = run;
    return command;
}
