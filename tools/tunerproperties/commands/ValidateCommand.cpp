// SPDX-License-Identifier: MIT
#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "documents/Document.h"

namespace {

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> files = invocation.files();
    const FileKinds kinds = Options::fileKinds(invocation, files.size());
    const Reading reading = Options::reading(invocation);
    Batch batch(Options::batch(invocation));
    Options::checkStandardInput(files);
    batch.doneWord = QStringLiteral("valid");
    batch.work = [&](int index, const std::function<void()> &) {
        Outcome outcome;
        outcome.findings = Document(files.at(index), reading, kinds).findings(batch.mostProblems());
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
    command.summary = QStringLiteral("Tells every problem of the documents, a line each.");
    command.details = QStringList{
        QStringLiteral(
            "A problem has its line and column, where only the reader of an XML document sees it, or else the "
            "path of the object that has it. Nothing is told about a valid document."),
        QStringLiteral(
            "The first 100 problems of a document are listed, and how many there are if there are more. The label of "
            "an object in a path is shortened if it is long, and has the object's place then: Component 3 \"abc...\" "
            "is what 'get FILE Component[3]' shows in full."),
        QStringLiteral(
            "Several files are worked on at once, and told about in their order; behind them comes a summary, "
            "on standard error."),
        QStringLiteral(
            "With --json a line for each file is an object with \"file\", \"status\" (\"valid\", \"problems\" "
            "or \"unreadable\"), \"problems\" (those that are listed), \"problemCount\" (how many there are) and "
            "\"error\" (why it is unreadable, or null). A problem has "
            "\"path\" (the objects from the outermost to the one at fault), \"line\", \"column\" and "
            "\"message\"; either path or line and column are null. There is no summary then. A \"file\" that is not "
            "UTF-8 is escaped as in messages, and \"fileBytes\" has its bytes as hexadecimal digits.")};
    command.options = {Options::from(),        Options::jobs(),         Options::quiet(),       Options::json(),
                       Options::maxProblems(), Options::maxExpansion(), Options::specialFiles()};
    command.examples = {{QStringLiteral("validate receiver.xml"),
                         QStringLiteral("Tells every problem of a document, and nothing if there is none.")},
                        {QStringLiteral("validate --quiet -- *.xml && echo fine"),
                         QStringLiteral("Asks whether all documents are valid.")},
                        {QStringLiteral("validate --json -- *.xml"),
                         QStringLiteral("Tells the problems of many documents to a program.")}};
    command.run = run;
    return command;
}
