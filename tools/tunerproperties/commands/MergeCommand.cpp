// SPDX-License-Identifier: MIT
#include <tunerdocuments/Merge.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"

using namespace TunerDocuments;

namespace {

const Option &output()
{
    static const Option option{
        {QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the result to FILE, in the form of its suffix, or to standard output for - (default: to "
                       "OURS, in place)."),
        QStringLiteral("FILE"),
        Takes::File,
        {}};
    return option;
}

/// Version control passes an empty file for a document that both sides have added.
JobXml::TunerProperties baseIn(const FileName &name, const Invocation &invocation)
{
    Input input(name);
    if (input.head(1).isEmpty())
        return JobXml::TunerProperties();
    return loadDocument(input, Options::loading(invocation)).tuner;
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> names = invocation.files();
    Options::checkStandardInput(names);
    const JobXml::TunerProperties base = baseIn(names[0], invocation);
    EditedFile ours(names[1], invocation, Options::loading(invocation));
    const DocumentFile theirs(names[2], Options::loading(invocation));
    const MergeResult result = merge(base, ours.tuner(), theirs.document.tuner);
    const FileName target = invocation.fileValue(output());
    if (!ours.hasFormOf(target))
        ours.editor().rewrite();
    ours.editor().become(result.document);
    const ExitStatus status = ours.finishUnchecked(target);
    if (status != ExitStatus::Ok)
        return status;
    for (const MergeConflict &conflict : result.conflicts)
        Console::printError(ours.shownName() + QStringLiteral(": conflict: ") + conflict.text());
    return result.conflicts.isEmpty() ? ExitStatus::Ok : ExitStatus::Problems;
}

} // namespace

Command mergeCommand()
{
    Command command;
    command.name = QStringLiteral("merge");
    command.usages = QStringList{QStringLiteral("BASE OURS THEIRS")};
    command.summary = QStringLiteral("Merge two documents that were made from the same one.");
    command.details = QStringList{
        QStringLiteral(
            "The result has the changes from BASE to OURS and those from BASE to THEIRS. Items are the same "
            "ones as for diff. What both sides have changed differently is a conflict: it is listed by path, "
            "the result has the value of OURS there, and the exit status is 1. The files may have different "
            "forms; an empty BASE is a document without data."),
        QStringLiteral(
            "Nothing is written if the result is OURS. XML and JSON are edited in place, so the comments and "
            "the layout of OURS stay; other forms are written anew, as 'set' does. The result is not validated. "
            "The manual's page on version control shows how git uses this command."),
    };
    command.options = {output(), EditedFile::dryRun(), EditedFile::rewrite(), Options::from(), Options::maxExpansion()};
    command.examples = {{QStringLiteral("merge base.xml ours.xml theirs.xml"),
                         QStringLiteral("Add the changes of theirs.xml to ours.xml.")},
                        {QStringLiteral("merge -o merged.xml base.xml ours.xml theirs.xml"),
                         QStringLiteral("Write the result to another file.")}};
    command.minArguments = 3;
    command.maxArguments = 3;
    command.run = run;
    return command;
}
