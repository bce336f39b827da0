// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include <tunerdocuments/Format.h>

#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"
#include "files/Output.h"

using namespace TunerDocuments;

namespace {

const Option &check()
{
    static const Option option{
        {QStringLiteral("check")},
        QStringLiteral("Write nothing, and name the files that would change. The exit status is 1 "
                       "if there are any."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

/// What to do with each file.
struct Plan
{
    QVector<FileName> files;
    FileKinds kinds = FileKinds::All;
    LoadOptions loading;
    bool isCheck = false;
};

/// Each file once: two jobs that replace the same one would be in each other's way.
QVector<FileName> withoutRepetitions(const QVector<FileName> &files)
{
    QVector<FileName> result;
    std::set<std::filesystem::path> known;
    for (const FileName &file : files) {
        std::error_code error;
        const std::filesystem::path path = std::filesystem::canonical(file.bytes().toStdString(), error);
        if (error || file.isStandardStream() || known.insert(path).second)
            result.append(file);
    }
    return result;
}

Plan planOf(const Invocation &invocation)
{
    Plan plan;
    plan.files = withoutRepetitions(invocation.files());
    plan.kinds = Options::fileKinds(invocation, invocation.count());
    plan.loading = Options::loading(invocation);
    plan.isCheck = invocation.isSet(check());
    if (!plan.isCheck && invocation.count() == 1 && !invocation.isSet(Options::specialFiles()))
        plan.kinds = FileKinds::Replaceable;
    Options::checkStandardInput(plan.files);
    const bool hasStream =
        std::any_of(plan.files.begin(), plan.files.end(), [](const FileName &file) { return file.isStandardStream(); });
    if (hasStream && !plan.isCheck && invocation.isSet(Options::json()))
        throw WrongUsage(QStringLiteral("--json cannot be combined with a document on standard output"));
    if (hasStream && !plan.isCheck && plan.files.size() > 1)
        throw WrongUsage(QStringLiteral("'fmt' writes the document from standard input to standard output and cannot "
                                        "combine it with other files, except with --check"));
    return plan;
}

/// "receiver.tpb: the form 'tagged' has no layout; nothing to format"; null for other forms.
QString noteOn(const FileName &file, Form form)
{
    return hasLayout(form)
        ? QString()
        : QStringLiteral("%1: the form '%2' has no layout; nothing to format").arg(file.shown(), Forms::nameOf(form));
}

/// Writes the document unless the file has it already.
FileStatus write(const Input &input, const FormattedDocument &document, const Batch::Done &done)
{
    const bool isStream = input.name().isStandardStream();
    if (isStream || document.isChanged())
        Output::replace(input, document.after, [&] { done(FileStatus::Changed); });
    return document.isChanged() && !isStream ? FileStatus::Changed : FileStatus::Done;
}

Outcome format(const Plan &plan, int index, const Batch::Done &done)
{
    const FileName &file = plan.files.at(index);
    Outcome outcome;
    Input input(file, plan.kinds);
    const FormattedDocument document = formatDocument(input, plan.loading);
    outcome.note = noteOn(file, document.form);
    if (plan.isCheck) {
        outcome.status = document.isChanged() ? FileStatus::Changed : FileStatus::Done;
        return outcome;
    }
    try {
        outcome.status = write(input, document, done);
    } catch (const FileFailure &failure) {
        outcome.status = FileStatus::Unwritable;
        outcome.error = failure.text();
    }
    return outcome;
}

ExitStatus run(const Invocation &invocation)
{
    Batch batch(Options::batch(invocation));
    const Plan plan = planOf(invocation);
    batch.doneStatus = QStringLiteral("unchanged");
    batch.changedStatus = plan.isCheck ? QStringLiteral("unformatted") : QStringLiteral("formatted");
    batch.changedExit = plan.isCheck ? ExitStatus::Problems : ExitStatus::Ok;
    batch.problemsToStandardOutput = false;
    batch.work = [&](int index, const Batch::Done &done) { return format(plan, index, done); };
    return batch.run(plan.files);
}

} // namespace

Command fmtCommand()
{
    Command command;
    command.name = QStringLiteral("fmt");
    command.usages = QStringList{QStringLiteral("FILE...")};
    command.summary = QStringLiteral("Lay documents out as the library writes them, in place.");
    command.details = QStringList{
        QStringLiteral(
            "In XML, each element is on a line, indented by two spaces, with its attributes in double quotes. "
            "JSON has the layout of 'convert'. Only the layout changes: comments, values as they are "
            "spelled, order, encoding and content that the model does not have stay, and texts keep their "
            "blanks. Of empty lines between elements, one is kept. Line ends become LF."),
        QStringLiteral("A comment at the end of a line, after a tag, stays there; other comments have lines of their "
                       "own. The content of an element stays as it is if there is text between its elements, or if it "
                       "has the attribute xml:space=\"preserve\"."),
        QStringLiteral("A file is replaced only if it changes, completely or not at all, and is then named on standard "
                       "output. Standard input is written to standard output. A document with problems is laid out as "
                       "well. The result is read and compared with the document before it is written."),
        QStringLiteral("The binary forms have no layout: such files stay as they are."),
        QStringLiteral("Several files are processed at once and reported in order, with a summary on standard error. A "
                       "file that fails does not stop the others."),
        QStringLiteral("With --json, each line is a JSON object for one file, with \"file\", \"status\" "
                       "(\"unchanged\", \"formatted\", with --check \"unformatted\" instead, \"problems\" for JSON "
                       "that is not a document and for text that cannot be laid out, \"unreadable\" or "
                       "\"unwritable\"), \"problems\", \"problemCount\" and \"error\", as described in "
                       "'validate --help'.")};
    command.options = {check(),         Options::from(),        Options::jobs(),         Options::quiet(),
                       Options::json(), Options::maxProblems(), Options::maxExpansion(), Options::specialFiles()};
    command.examples = {
        {QStringLiteral("fmt receiver.xml"), QStringLiteral("Lay a document out, in place.")},
        {QStringLiteral("fmt - < receiver.xml | diff receiver.xml -"), QStringLiteral("Show what would change.")},
        {QStringLiteral("fmt --check -- *.xml"), QStringLiteral("Name the documents that have another layout.")}};
    command.run = run;
    return command;
}
