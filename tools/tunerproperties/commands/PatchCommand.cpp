// SPDX-License-Identifier: MIT
#include <tunerdocuments/Patch.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"

using namespace TunerDocuments;

namespace {

const Option &reverse()
{
    static const Option option{{QStringLiteral("reverse")},
                               QStringLiteral("Undo the changes: make the first document from the second one."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

Patch patchIn(const FileName &name)
{
    Input input(name);
    const QByteArray lines = input.bytes();
    input.check();
    return Patch::fromJson(lines, input.shownName());
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> names = invocation.files();
    Options::checkStandardInput(names);
    EditedFile file(names.first(), invocation);
    const Patch patch = patchIn(names.last());
    JobXml::TunerProperties changed = file.tuner();
    try {
        patch.apply(changed, invocation.isSet(reverse()) ? Patch::Direction::Backward : Patch::Direction::Forward);
    } catch (const PatchFailure &failure) {
        return file.fail(QStringLiteral("the changes do not fit: ") + failure.text());
    }
    file.editor().become(changed);
    return file.finish();
}

} // namespace

Command patchCommand()
{
    Command command;
    command.name = QStringLiteral("patch");
    command.usages = QStringList{QStringLiteral("FILE CHANGES")};
    command.summary = QStringLiteral("Make the changes that 'diff --json' has listed.");
    command.details = QStringList{
        QStringLiteral(
            "The changes that 'diff --json OLD NEW' lists make NEW from OLD. They also fit other documents in "
            "which their paths lead to the same values and items as in OLD; everything else may differ. If "
            "one of them does not fit, nothing is written, and the exit status is 1."),
        QStringLiteral("Nothing is written if nothing changes. XML and JSON are edited in place, and other forms are "
                       "written anew, as 'set' does. What the form cannot hold of the changes is listed.")};
    command.options = {EditedFile::dryRun(),  reverse(),       EditedFile::noValidate(),
                       EditedFile::rewrite(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("patch receiver.xml changes.json"), QStringLiteral("Make the changes.")},
        {QStringLiteral("patch --dry-run receiver.xml changes.json"), QStringLiteral("See what they would change.")},
        {QStringLiteral("patch --reverse receiver.xml changes.json"), QStringLiteral("Undo them.")}};
    command.minArguments = 2;
    command.maxArguments = 2;
    command.run = run;
    return command;
}
