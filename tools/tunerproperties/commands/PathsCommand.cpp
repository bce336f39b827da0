// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

const Option &complete()
{
    static const Option option{{QStringLiteral("complete")},
                               QStringLiteral("List how a path that begins like this can go on, for completions of a "
                                              "shell. A step that can go on ends with /."),
                               QStringLiteral("BEGINNING"),
                               Takes::Anything,
                               {}};
    return option;
}

const Option &assignments()
{
    static const Option option{{QStringLiteral("assignments")},
                               QStringLiteral("With --complete: include members that are not set, and complete "
                                              "PATH=VALUE as 'set' accepts it."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &objects()
{
    static const Option option{{QStringLiteral("objects")},
                               QStringLiteral("List objects and items of lists as well, each before what is in it."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

ExitStatus listCompletions(const Invocation &invocation)
{
    const QString beginning = invocation.value(complete());
    if (beginning.contains(QLatin1Char('\n')))
        return ExitStatus::Ok; // every result begins like that, and has one line
    // A shell must not wait for what a pipe may have.
    const DocumentFile source(invocation.file(0), Options::loading(invocation), {}, FileKinds::RegularOnly);
    const auto what = invocation.isSet(assignments()) ? Paths::Completing::Assignment : Paths::Completing::Path;
    BufferedOutput output;
    const QStringList found = Paths::completions(source.document.tuner, beginning, what);
    for (const QString &path : found)
        output.write(path.toUtf8() + '\n');
    output.flush();
    return ExitStatus::Ok;
}

ExitStatus run(const Invocation &invocation)
{
    if (invocation.isSet(complete()) && invocation.isSet(objects()))
        throw WrongUsage(QStringLiteral("--objects and --complete cannot be combined"));
    if (invocation.isSet(complete()))
        return listCompletions(invocation);
    if (invocation.isSet(assignments()))
        throw WrongUsage(QStringLiteral("--assignments requires --complete"));
    const DocumentFile source(invocation.file(0), Options::loading(invocation));
    BufferedOutput output;
    const auto write = [&](const QString &path) { output.write(path.toUtf8() + '\n'); };
    if (invocation.isSet(objects()))
        Paths::listAll(source.document.tuner, [&](const Paths::Target &target) { write(target.path); });
    else
        Paths::list(source.document.tuner, [&](const QString &path, const JobXml::MemberView &) { write(path); });
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
                                   "With --objects, the paths of objects and items are among them, as 'get', 'remove' "
                                   "and 'move' accept them. 'tunerproperties get --help' describes paths.")};
    command.options = {objects(), complete(), assignments(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("paths receiver.xml | grep gain"), QStringLiteral("Find a value by its name.")},
        {QStringLiteral("paths --objects receiver.xml | grep '/Node[^/]*$'"), QStringLiteral("List all nodes.")},
        {QStringLiteral("paths receiver.xml --complete 'Component[name=audio]/'"),
         QStringLiteral("List the members and nodes of a component.")}};
    command.maxArguments = 1;
    command.run = run;
    return command;
}
