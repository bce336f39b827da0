// SPDX-License-Identifier: MIT
#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Patch.h>

#include "commands/ChangedFile.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "text/Printable.h"

using namespace TunerDocuments;

namespace {

const Option &dryRun()
{
    static const Option option{
        {QStringLiteral("dry-run")},
        QStringLiteral("Write nothing; list the differences that the changes make, as diff does."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

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

void list(const JobXml::TunerProperties &before, const JobXml::TunerProperties &after)
{
    BufferedOutput output(false);
    findDifferences(before, after, [&](const Difference &difference) {
        output.write(Printable::onOneLine(difference.text()).toUtf8() + '\n');
    });
    output.flush();
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> names = invocation.files();
    Options::checkStandardInput(names);
    ChangedFile file(names.first(), invocation);
    const Patch patch = patchIn(names.last());
    JobXml::TunerProperties changed = file.tuner();
    try {
        patch.apply(changed, invocation.isSet(reverse()) ? Patch::Direction::Backward : Patch::Direction::Forward);
    } catch (const PatchFailure &failure) {
        Console::printError(file.shownName() + QStringLiteral(": the changes do not fit: ") + failure.text());
        return ExitStatus::Problems;
    }
    if (invocation.isSet(dryRun())) {
        list(file.tuner(), changed);
        return ExitStatus::Ok;
    }
    if (file.reportLostContent(changed) || file.reportNewProblems(changed))
        return ExitStatus::Problems;
    file.write(changed);
    return ExitStatus::Ok;
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
        QStringLiteral("The document is written in its own form, completely or not at all, and not at all if nothing "
                       "changes. XML is written as the library writes it, so XML comments and the layout of the file "
                       "are lost. Values that the form cannot store exactly are listed.")};
    command.options = {dryRun(), reverse(), ChangedFile::noValidate(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("patch receiver.xml changes.json"), QStringLiteral("Make the changes.")},
        {QStringLiteral("patch --dry-run receiver.xml changes.json"), QStringLiteral("See what they would change.")},
        {QStringLiteral("patch --reverse receiver.xml changes.json"), QStringLiteral("Undo them.")}};
    command.minArguments = 2;
    command.maxArguments = 2;
    command.run = run;
    return command;
}
