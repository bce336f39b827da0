// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"
#include "text/WholeNumber.h"

using namespace TunerDocuments;

namespace {

ExitStatus run(const Invocation &invocation)
{
    const auto position = WholeNumber::read<int>(invocation.text(2));
    if (!position)
        throw WrongUsage(QStringLiteral("the position '%1' is not a number").arg(invocation.text(2)));
    EditedFile file(invocation.file(0), invocation);
    try {
        file.editor().move(invocation.text(1), *position);
    } catch (const PathFailure &failure) {
        return file.fail(failure.text());
    }
    return file.finish();
}

} // namespace

Command moveCommand()
{
    Command command;
    command.name = QStringLiteral("move");
    command.usages = QStringList{QStringLiteral("FILE PATH POSITION")};
    command.summary = QStringLiteral("Move an item within its list.");
    command.details = QStringList{
        QStringLiteral("POSITION is the one that the item has afterwards, counted from 1."),
        QStringLiteral("XML and JSON are edited in place, and other forms are written anew, as 'set' does. The item "
                       "keeps its text, with the comments in it; other comments stay where they are.")};
    command.options = {EditedFile::noValidate(), EditedFile::dryRun(), EditedFile::rewrite(), Options::from(),
                       Options::maxExpansion()};
    command.examples = {{QStringLiteral("move receiver.xml 'Component[name=audio]' 1"),
                         QStringLiteral("Make a component the first one.")}};
    command.minArguments = 3;
    command.maxArguments = 3;
    command.takes = Takes::Path;
    command.mayEndWithNumber = true;
    command.run = run;
    return command;
}
