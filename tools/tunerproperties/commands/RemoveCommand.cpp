// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"

using namespace TunerDocuments;

namespace {

ExitStatus run(const Invocation &invocation)
{
    QStringList paths;
    for (int i = 1; i < invocation.count(); ++i)
        paths.append(invocation.text(i));
    EditedFile file(invocation.file(0), invocation);
    try {
        file.editor().remove(paths);
    } catch (const PathFailure &failure) {
        return file.fail(failure.text());
    }
    return file.finish();
}

} // namespace

Command removeCommand()
{
    Command command;
    command.name = QStringLiteral("remove");
    command.usages = QStringList{QStringLiteral("FILE PATH...")};
    command.summary = QStringLiteral("Remove items from a document.");
    command.details = QStringList{
        QStringLiteral("Removes items of lists, or members as a whole, with everything in them, all or none of them. "
                       "All paths refer to the document before the command. Patterns, as 'get --help' describes them, "
                       "remove all that fits."),
        QStringLiteral("XML and JSON are edited in place, and other forms are written anew, as 'set' does. Comments "
                       "in an element that is removed are removed with it; others stay.")};
    command.options = {EditedFile::noValidate(), EditedFile::dryRun(), EditedFile::rewrite(), Options::from(),
                       Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("remove receiver.xml 'BandwidthSelection[Name=Wide]'"), QStringLiteral("Remove a bandwidth.")},
        {QStringLiteral("remove --dry-run receiver.xml 'Component[*]/Node[id=test]'"),
         QStringLiteral("See which nodes with that id would be removed.")}};
    command.minArguments = 2;
    command.takes = Takes::Path;
    command.run = run;
    return command;
}
