// SPDX-License-Identifier: MIT
#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> files = invocation.files();
    const FileKinds kinds = Options::fileKinds(invocation, files.size());
    const LoadOptions loading = Options::loading(invocation);
    Batch batch(Options::batch(invocation));
    Options::checkStandardInput(files);
    batch.doneStatus = QStringLiteral("valid");
    batch.work = [&](int index, const std::function<void()> &) {
        Outcome outcome;
        outcome.findings = Findings(batch.problemLimit());
        const DocumentFile file(files.at(index), loading, outcome.findings.collector(), kinds);
        outcome.findings.describePaths(file.document.tuner);
        outcome.status = outcome.findings.isEmpty() ? FileStatus::Done : FileStatus::Problems;
        return outcome;
    };
    return batch.run(files);
}

} // namespace

Command validateCommand()
{
    Command command;
    command.name = QStringLiteral("validate");
    command.usages = QStringList{QStringLiteral("FILE...")};
    command.summary = QStringLiteral("List the problems of documents, one per line.");
    command.details = QStringList{
        QStringLiteral("A problem is reported with its line and column if only the XML reader can find it, otherwise "
                       "with the path of the object, which 'get' accepts. If JSON is not a document, each reason is a "
                       "problem with line, column and path. There is no output for a valid document."),
        QStringLiteral("The first 100 problems of a document are listed, followed by their total if there are more."),
        QStringLiteral("Several files are processed at once and reported in order, with a summary on standard error."),
        QStringLiteral("With --json, each line is a JSON object for one file, with \"file\", \"status\" (\"valid\", "
                       "\"problems\" or \"unreadable\"), \"problems\" (those that are listed), \"problemCount\" (their "
                       "total) and \"error\" (why the file is unreadable, or null). A problem has \"path\" (of the "
                       "object, as 'get' accepts it; empty for the document itself), \"line\", \"column\" and "
                       "\"message\"; what is not known is null. There is no summary. A \"file\" that is not UTF-8 is "
                       "escaped as in messages, and \"fileBytes\" contains its bytes as hexadecimal digits.")};
    command.options = {Options::from(),        Options::jobs(),         Options::quiet(),       Options::json(),
                       Options::maxProblems(), Options::maxExpansion(), Options::specialFiles()};
    command.examples = {{QStringLiteral("validate receiver.xml"), QStringLiteral("List the problems of a document.")},
                        {QStringLiteral("validate --quiet -- *.xml && echo fine"),
                         QStringLiteral("Check whether all documents are valid.")},
                        {QStringLiteral("validate --json -- *.xml"),
                         QStringLiteral("Report the problems of many documents to a program.")}};
    command.run = run;
    return command;
}
