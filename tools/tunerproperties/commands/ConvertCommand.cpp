// SPDX-License-Identifier: MIT
#include <filesystem>
#include <system_error>

#include <QHash>

#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Lint.h>

#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"
#include "files/Output.h"

using namespace TunerDocuments;

namespace {

const Option &noValidate()
{
    static const Option option{{QStringLiteral("no-validate")},
                               QStringLiteral("Write the document even if it has problems."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &exact()
{
    static const Option option{{QStringLiteral("exact")},
                               QStringLiteral("Do not convert a document that the form cannot hold exactly, or an XML "
                                              "document of which something is lost in reading it."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &outDir()
{
    static const Option option{{QStringLiteral("out-dir")},
                               QStringLiteral("Write into the folder DIR, which is created if it does not exist, under "
                                              "the names of the inputs with the suffix of the form. Requires --to."),
                               QStringLiteral("DIR"),
                               Takes::Folder,
                               {}};
    return option;
}

/// What to do with each file.
struct Plan
{
    QVector<FileName> files;
    QVector<FileName> outputs;
    FileKinds inputKinds = FileKinds::All;
    FileKinds outputKinds = FileKinds::All;
    LoadOptions loading;
    int problemLimit = 0;
    Form to = Form::Xml;
    bool validate = true;
    bool isExact = false;
};

/// The name of the output in the folder.
QByteArray outputName(const FileName &file, Form to)
{
    const FileName name = file.withoutFolder();
    const auto itsForm = Forms::bySuffix(QString::fromLatin1(name.bytes()));
    return (itsForm ? name.bytes().chopped(Forms::suffixOf(*itsForm).size()) : name.bytes())
        + Forms::suffixOf(to).toLatin1();
}

/// Checks that no output would replace another one before anything is written.
void planManyFiles(Plan &plan, const Invocation &invocation)
{
    if (!invocation.isSet(Options::to()))
        throw WrongUsage(QStringLiteral("--out-dir requires --to"));
    plan.to = *Options::form(invocation, Options::to());
    plan.files = invocation.files();
    plan.inputKinds = Options::fileKinds(invocation, int(plan.files.size()));
    if (!invocation.isSet(Options::specialFiles()))
        plan.outputKinds = FileKinds::RegularOnly; // their names are not chosen one by one
    const FileName folder = invocation.fileValue(outDir());
    if (folder.isEmpty())
        throw WrongUsage(QStringLiteral("the folder name of --out-dir is empty"));
    const QByteArray start = folder.bytes().endsWith('/') ? folder.bytes() : folder.bytes() + '/';
    QHash<QByteArray, FileName> inputs;
    for (const FileName &file : qAsConst(plan.files)) {
        if (file.isStandardStream())
            throw WrongUsage(QStringLiteral("cannot convert standard input into the folder '%1': it has no file name")
                                 .arg(folder.shown()));
        const FileName output(start + outputName(file, plan.to));
        if (inputs.contains(output.bytes()))
            throw WrongUsage(QLatin1Char('\'') + inputs.value(output.bytes()).shown() + QStringLiteral("' and '")
                             + file.shown() + QStringLiteral("' would both be written to '") + output.shown()
                             + QLatin1Char('\''));
        inputs.insert(output.bytes(), file);
        plan.outputs.append(output);
    }
    std::error_code error;
    std::filesystem::create_directories(folder.bytes().toStdString(), error);
    if (error)
        throw FileFailure(folder.shown() + QStringLiteral(": cannot create the folder: ")
                          + qt_error_string(error.value()));
}

void planOneFile(Plan &plan, const Invocation &invocation)
{
    if (invocation.count() != 2)
        throw WrongUsage(QStringLiteral("'convert' expects IN OUT; use --out-dir to convert several files"));
    const FileName out = invocation.file(1);
    std::optional<Form> to = Options::form(invocation, Options::to());
    if (!to)
        to = out.isStandardStream() ? Form::Xml : Forms::bySuffix(QString::fromLatin1(out.bytes()));
    if (!to)
        throw WrongUsage(QStringLiteral("cannot determine the form of '%1' from its name; use --to").arg(out.shown()));
    if (out.isStandardStream() && invocation.isSet(Options::json()))
        throw WrongUsage(QStringLiteral("--json cannot be combined with a document on standard output"));
    plan.to = *to;
    plan.files = {invocation.file(0)};
    plan.outputs = {out};
}

Outcome convert(const Plan &plan, int index, const Batch::Done &done)
{
    Outcome outcome;
    outcome.findings = Findings(plan.problemLimit);
    const JobXml::ProblemVisitor visitor = plan.validate ? outcome.findings.collector() : JobXml::ProblemVisitor();
    Input input(plan.files.at(index), plan.inputKinds);
    QByteArray text; // for the warnings
    Document document = plan.isExact ? loadDocumentWithText(input, plan.loading, visitor, text)
                                     : loadDocument(input, plan.loading, visitor);
    const FileName &output = plan.outputs.at(index);
    if (!outcome.findings.isEmpty()) {
        outcome.findings.describePaths(document.tuner);
        outcome.status = FileStatus::Problems;
        return outcome;
    }
    if (plan.isExact && document.form == Form::Xml)
        lint(document, text, outcome.findings, LintOptions::lostByReading());
    text.clear();
    document.tuner.SetValidate(plan.validate);
    try {
        const QByteArray bytes = document.toBytes(plan.to, output.shown());
        outcome.losses = document.lossesIn(bytes, plan.to, plan.problemLimit, &outcome.lossCount);
        if (plan.isExact && (outcome.lossCount > 0 || outcome.findings.warningCount() > 0)) {
            outcome.status = FileStatus::Problems;
            return outcome;
        }
        Output::writeWhole(output, bytes, plan.outputKinds, [&] { done(FileStatus::Done); });
        outcome.note = Options::expansionNote(bytes, output.shown());
    } catch (const UnstorableContent &) {
        throw;
    } catch (const FileFailure &failure) {
        outcome.status = FileStatus::Unwritable;
        outcome.error = failure.text();
    }
    return outcome;
}

ExitStatus run(const Invocation &invocation)
{
    Batch batch(Options::batch(invocation));
    batch.doneStatus = QStringLiteral("converted");
    Plan plan;
    plan.loading = Options::loading(invocation);
    plan.problemLimit = batch.problemLimit();
    plan.validate = !invocation.isSet(noValidate());
    plan.isExact = invocation.isSet(exact());
    if (invocation.isSet(outDir()))
        planManyFiles(plan, invocation);
    else
        planOneFile(plan, invocation);
    batch.outputs = plan.outputs;
    batch.work = [&](int index, const Batch::Done &done) { return convert(plan, index, done); };
    batch.problemsToStandardOutput = false;
    batch.listsWarnings = plan.isExact;
    return batch.run(plan.files);
}

} // namespace

Command convertCommand()
{
    Command command;
    command.name = QStringLiteral("convert");
    command.usages = QStringList{QStringLiteral("IN OUT"), QStringLiteral("--to FORM --out-dir DIR FILE...")};
    command.summary = QStringLiteral("Convert documents to another form.");
    command.details = QStringList{
        QStringLiteral("An output is written completely or not at all. A document with problems is not converted; the "
                       "problems are written to standard error."),
        QStringLiteral("XML and tagged records have numbers with two decimals, and no null texts. What the output does "
                       "not have is listed on standard error; --exact makes it an error. Comments of an XML document "
                       "are not a part of what is converted."),
        QStringLiteral(
            "Reading XML skips attributes and elements that the model does not have, and replaces texts that "
            "are not numbers or booleans. --exact refuses that, and lists it as 'lint' does."),
        QStringLiteral("With --out-dir, any number of files are converted, several at once. A file that fails does not "
                       "stop the others. If two inputs would have the same output, nothing is written. A summary "
                       "follows on standard error."),
        QStringLiteral(
            "With --json, each line is a JSON object for one file, with \"file\", \"output\", \"status\" "
            "(\"converted\", \"problems\", \"unreadable\" or \"unwritable\"), \"problems\", \"problemCount\" and "
            "\"error\", as described in 'validate --help'; \"error\" is also why the form cannot hold the document. "
            "\"outputBytes\" corresponds to \"fileBytes\". \"losses\" lists what the output does not have, each with "
            "\"path\", \"before\" and \"after\"; \"lossCount\" is their total. With --exact, \"findings\" lists what "
            "was lost in reading, as 'lint --json' does, and \"warnings\" is the number of all.")};
    command.options = {
        Options::from(),        Options::to(),    outDir(),        noValidate(),           exact(),
        Options::jobs(),        Options::quiet(), Options::json(), Options::maxProblems(), Options::maxExpansion(),
        Options::specialFiles()};
    command.examples = {
        {QStringLiteral("convert receiver.xml receiver.tpz"), QStringLiteral("Write the compressed form.")},
        {QStringLiteral("convert receiver.tpz - | less"), QStringLiteral("Write XML to standard output.")},
        {QStringLiteral("convert --to tagged --out-dir records -- *.xml"),
         QStringLiteral("Write records/NAME.tpb for every NAME.xml.")}};
    command.meant = {{QStringLiteral("--format"), QStringLiteral("--to")}};
    command.run = run;
    return command;
}
