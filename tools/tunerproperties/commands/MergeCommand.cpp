// SPDX-License-Identifier: MIT
#include <algorithm>

#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Merge.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"

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

const Option &allowLosses()
{
    static const Option option{
        {QStringLiteral("allow-losses")},
        QStringLiteral("Merge although content of THEIRS is lost, which is listed nevertheless."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

MergeInput readFrom(Input &input, const Invocation &invocation)
{
    QByteArray bytes;
    const Document document = loadDocumentWithText(input, Options::loading(invocation), {}, bytes);
    return {document, bytes};
}

/// Version control passes an empty file for a document that both sides have added.
MergeInput baseIn(const FileName &name, const Invocation &invocation)
{
    Input input(name);
    return input.head(1).isEmpty() ? MergeInput() : readFrom(input, invocation);
}

void noteComments(const QVector<Finding> &comments, const QString &file)
{
    constexpr int mostLines = 5;
    QStringList lines;
    for (const Finding &comment : comments) {
        const QString line = QString::number(comment.line);
        if (lines.isEmpty() || lines.last() != line)
            lines.append(line);
    }
    if (lines.size() > mostLines)
        lines = lines.mid(0, mostLines) + QStringList{QStringLiteral("...")};
    if (comments.size() == 1)
        Console::printError(file + QStringLiteral(": 1 comment is not merged (line %1)").arg(lines.first()));
    else if (!comments.isEmpty())
        Console::printError(file
                            + QStringLiteral(": %1 comments are not merged (lines %2)")
                                  .arg(comments.size())
                                  .arg(lines.join(QStringLiteral(", "))));
}

/// Lists what would be lost. Returns whether there is anything.
bool listLosses(const QVector<Finding> &losses, const QString &file)
{
    const int listed = std::min(int(losses.size()), Options::usualProblemCount);
    for (int i = 0; i < listed; ++i)
        Console::printError(losses.at(i).text(file));
    if (losses.size() > listed)
        Console::printError(file + QStringLiteral(": ")
                            + countText(losses.size(), listed, QStringLiteral("parts of the text would be lost")));
    return !losses.isEmpty();
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> names = invocation.files();
    Options::checkStandardInput(names);
    const MergeInput base = baseIn(names[0], invocation);
    EditedFile ours(names[1], invocation, invocation.fileValue(output()));
    Input theirInput(names[2]);
    const MergeInput theirs = readFrom(theirInput, invocation);
    const UnmergedContent unmerged = unmergedContent(base, {ours.editor().document(), ours.bytes()}, theirs);
    noteComments(unmerged.comments, theirInput.shownName());
    if (listLosses(unmerged.losses, theirInput.shownName()) && !invocation.isSet(allowLosses()))
        return ours.fail(
            QStringLiteral("nothing was written; use %1 to merge without this content").arg(allowLosses().typed()));
    const MergeResult result = merge(base.document.tuner, ours.tuner(), theirs.document.tuner);
    if (!ours.keepsItsForm())
        ours.editor().rewrite();
    ours.editor().become(result.document);
    const ExitStatus status = ours.finishUnchecked();
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
            "What the reader of XML converts or skips, such as a misspelt number or an unknown attribute, is not "
            "merged. If THEIRS has such content that neither BASE nor OURS has, it is listed with line, column and "
            "path, nothing is written, and the exit status is 1. New comments of THEIRS are not merged, either; they "
            "are noted."),
        QStringLiteral(
            "Nothing is written if the result is OURS. XML and JSON are edited in place, so the comments and "
            "the layout of OURS stay; other forms are written anew, as 'set' does. The result is not validated. "
            "The manual's page on version control shows how git uses this command."),
    };
    command.options = {output(),        allowLosses(),          EditedFile::dryRun(), EditedFile::rewrite(),
                       Options::from(), Options::maxExpansion()};
    command.examples = {{QStringLiteral("merge base.xml ours.xml theirs.xml"),
                         QStringLiteral("Add the changes of theirs.xml to ours.xml.")},
                        {QStringLiteral("merge -o merged.xml base.xml ours.xml theirs.xml"),
                         QStringLiteral("Write the result to another file.")}};
    command.minArguments = 3;
    command.maxArguments = 3;
    command.run = run;
    return command;
}
