// SPDX-License-Identifier: MIT
#include <tunerdocuments/Lint.h>

#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

const Option &strictOption()
{
    static const Option option{
        {QStringLiteral("strict")},
        QStringLiteral("List the warnings of 'lint' as well; a document that has any is not valid."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

/// "receiver.xml: valid; 'lint' has 3 warnings"; null if it has none.
QString noteOn(const FileName &file, const Outcome &outcome)
{
    const QString warnings = Batch::warningNote(outcome.warningCount);
    if (warnings.isNull())
        return QString();
    const qint64 count = outcome.findings.count();
    const QString status = count == 0 ? QStringLiteral("valid")
        : count == 1                  ? QStringLiteral("1 problem")
                                      : QStringLiteral("%1 problems").arg(count);
    return file.shown() + QStringLiteral(": ") + status + QStringLiteral("; ") + warnings;
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<FileName> files = invocation.files();
    const FileKinds kinds = Options::fileKinds(invocation, int(files.size()));
    const LoadOptions loading = Options::loading(invocation);
    const bool isStrict = invocation.isSet(strictOption());
    const LintOptions linting =
        isStrict ? Options::linting(invocation) : Options::linting(invocation).setMost(0); // counts alone
    if (!isStrict && invocation.isSet(Options::error()))
        throw WrongUsage(QStringLiteral("--error requires --strict"));
    const BatchSettings settings = Options::batch(invocation);
    Batch batch(settings);
    Options::checkStandardInput(files);
    batch.doneStatus = QStringLiteral("valid");
    batch.listsWarnings = isStrict;
    batch.work = [&](int index, const Batch::Done &) {
        Outcome outcome;
        outcome.findings = Findings(batch.problemLimit());
        Input input(files.at(index), kinds);
        QByteArray text;
        const bool isLinted = isStrict || !settings.quiet;
        const JobXml::ProblemVisitor problems = outcome.findings.collector();
        const Document document =
            isLinted ? loadDocumentWithText(input, loading, problems, text) : loadDocument(input, loading, problems);
        outcome.findings.describePaths(document.tuner);
        bool isValid = outcome.findings.isEmpty();
        if (isStrict) {
            lint(document, text, outcome.findings, linting);
            isValid = isValid && outcome.findings.warningCount() == 0;
        } else if (isLinted) {
            outcome.warningCount = lint(document, text, {}, linting);
            if (files.size() == 1 && !settings.json)
                outcome.note = noteOn(files.first(), outcome);
        }
        outcome.status = isValid ? FileStatus::Done : FileStatus::Problems;
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
        QStringLiteral("After the message follow the value in the document, the values that are accepted if they can "
                       "be listed, and the one that was probably meant."),
        QStringLiteral("The first 100 problems of a document are listed, followed by their total if there are more."),
        QStringLiteral("Several files are processed at once and reported in order, with a summary on standard error."),
        QStringLiteral("If 'lint' would list warnings, their number is reported on standard error. They do not affect "
                       "the exit status, except with --strict, which lists them after the problems."),
        QStringLiteral(
            "With --json, each line is a JSON object for one file, with \"file\", \"status\" (\"valid\", "
            "\"problems\" or \"unreadable\"), \"problems\" (those that are listed), \"problemCount\" (their "
            "total), \"warnings\" (the number of warnings of 'lint'; with --strict, \"findings\" has those "
            "that are listed) and \"error\" (why the file is unreadable, or null). A problem has \"path\" (of "
            "the object, as 'get' accepts it; empty for the document itself), \"line\", \"column\", "
            "\"message\", \"value\" (what the document has), \"choices\" (what is accepted instead) and "
            "\"suggestion\"; what is not known is null. There is no summary. A \"file\" that is not UTF-8 is "
            "escaped as in messages, and \"fileBytes\" contains its bytes as hexadecimal digits.")};
    command.options = {strictOption(),          Options::disable(),     Options::error(), Options::from(),
                       Options::jobs(),         Options::quiet(),       Options::json(),  Options::maxProblems(),
                       Options::maxExpansion(), Options::specialFiles()};
    command.examples = {
        {QStringLiteral("validate receiver.xml"), QStringLiteral("List the problems of a document.")},
        {QStringLiteral("validate --quiet -- *.xml && echo fine"),
         QStringLiteral("Check whether all documents are valid.")},
        {QStringLiteral("validate --strict -- *.xml"), QStringLiteral("Accept only documents without warnings.")},
        {QStringLiteral("validate --json -- *.xml"),
         QStringLiteral("Report the problems of many documents to a program.")}};
    command.run = run;
    return command;
}
