// SPDX-License-Identifier: MIT
#include <filesystem>
#include <system_error>

#include <QHash>

#include "batch/Batch.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "documents/Document.h"
#include "documents/Output.h"

namespace {

const Option &noValidate()
{
    static const Option option{{QStringLiteral("no-validate")},
                               QStringLiteral("Writes the document as it stands, whatever its problems are."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &outDir()
{
    static const Option option{
        {QStringLiteral("out-dir")},
        QStringLiteral("Writes into this folder, which is made if it is missing, under the names "
                       "of the inputs with the suffix of the form. Takes --to."),
        QStringLiteral("DIR"),
        Takes::Folder,
        {}};
    return option;
}

/// What is to be done with each file.
struct Plan
{
    QVector<FileName> files;
    QVector<FileName> outputs;
    FileKinds inputKinds = FileKinds::All;
    FileKinds outputKinds = FileKinds::All;
    Reading reading;
    int mostProblems = 0;
    Form to = Form::Xml;
    bool validate = true;
};

/// The name of the output in the folder.
QByteArray outputName(const FileName &file, Form to)
{
    const FileName name = file.withoutFolder();
    const auto itsForm = Forms::bySuffix(name);
    return (itsForm ? name.bytes().chopped(Forms::suffixOf(*itsForm).size()) : name.bytes())
        + Forms::suffixOf(to).toLatin1();
}

/// Nothing may be written before it is sure that no output would replace another one.
void planManyFiles(Plan &plan, const Invocation &invocation)
{
    if (!invocation.isSet(Options::to()))
        throw WrongUsage(QStringLiteral("--out-dir takes --to"));
    plan.to = *Options::form(invocation, Options::to());
    plan.files = invocation.files();
    plan.inputKinds = Options::fileKinds(invocation, plan.files.size());
    if (!invocation.isSet(Options::specialFiles()))
        plan.outputKinds = FileKinds::RegularOnly; // their names are not chosen one by one
    const FileName folder = invocation.fileValue(outDir());
    if (folder.isEmpty())
        throw WrongUsage(QStringLiteral("the name of the folder is empty"));
    const QByteArray start = folder.bytes().endsWith('/') ? folder.bytes() : folder.bytes() + '/';
    QHash<QByteArray, FileName> inputs;
    for (const FileName &file : qAsConst(plan.files)) {
        if (file.isStandardStream())
            throw WrongUsage(QStringLiteral("standard input has no name for a file in '%1'").arg(folder.shown()));
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
        throw FileFailure(folder.shown() + QStringLiteral(": cannot make the folder: ")
                          + qt_error_string(error.value()));
}

void planOneFile(Plan &plan, const Invocation &invocation)
{
    if (invocation.count() != 2)
        throw WrongUsage(QStringLiteral("without --out-dir the arguments of 'convert' are IN OUT"));
    const FileName out = invocation.file(1);
    std::optional<Form> to = Options::form(invocation, Options::to());
    if (!to)
        to = out.isStandardStream() ? Form::Xml : Forms::bySuffix(out);
    if (!to)
        throw WrongUsage(QStringLiteral("the name of '%1' does not tell the form to write; use --to").arg(out.shown()));
    if (out.isStandardStream() && invocation.isSet(Options::json()))
        throw WrongUsage(QStringLiteral("--json and a document on standard output exclude each other"));
    plan.to = *to;
    plan.files = {invocation.file(0)};
    plan.outputs = {out};
}

Outcome convert(const Plan &plan, int index, const std::function<void()> &done)
{
    Document document(plan.files.at(index), plan.reading, plan.inputKinds);
    const FileName &output = plan.outputs.at(index);
    Outcome outcome;
    if (plan.validate)
        outcome.findings = document.findings(plan.mostProblems);
    if (!outcome.findings.isEmpty()) {
        outcome.status = FileStatus::Problems;
        return outcome;
    }
    document.tuner.SetValidate(plan.validate);
    try {
        Output::writeWhole(output, Forms::compose(document.tuner, plan.to, output.shown()), plan.outputKinds, done);
    } catch (const FileFailure &failure) {
        outcome.status = FileStatus::Unwritable;
        outcome.error = failure.text();
    }
    return outcome;
}

ExitStatus run(const Invocation &invocation)
{
    Batch batch(Options::batch(invocation));
    batch.doneWord = QStringLiteral("converted");
    Plan plan;
    plan.reading = Options::reading(invocation);
    plan.mostProblems = batch.mostProblems();
    plan.validate = !invocation.isSet(noValidate());
    if (invocation.isSet(outDir()))
        planManyFiles(plan, invocation);
    else
        planOneFile(plan, invocation);
    batch.outputs = plan.outputs;
    batch.work = [&](int index, const std::function<void()> &done) { return convert(plan, index, done); };
    batch.problemsAreTheResult = false;
    return batch.run(plan.files);
}

} // namespace

Command convertCommand()
{
    Command command;
    command.name = QStringLiteral("convert");
    command.usages = QStringList{QStringLiteral("IN OUT"), QStringLiteral("--to FORM --out-dir DIR FILE...")};
    command.summary = QStringLiteral("Writes documents in another form.");
    command.details = QStringList{
        QStringLiteral(
            "An output is complete or stays as it was. A document that does not validate is not converted; its "
            "problems go to standard error."),
        QStringLiteral("Into a folder any number of files are converted, several at once. One that fails does not keep "
                       "the others from being converted. If two would get the same name nothing is written at all. A "
                       "summary comes at the end, on standard error."),
        QStringLiteral("With --json a line for each file is an object with \"file\", \"output\", \"status\" "
                       "(\"converted\", \"problems\", \"unreadable\" or \"unwritable\"), \"problems\", "
                       "\"problemCount\" and \"error\", "
                       "as 'validate --json' writes them; \"outputBytes\" is like \"fileBytes\".")};
    command.options = {Options::from(),         Options::to(),          outDir(),        noValidate(),
                       Options::jobs(),         Options::quiet(),       Options::json(), Options::maxProblems(),
                       Options::maxExpansion(), Options::specialFiles()};
    command.examples = {
        {QStringLiteral("convert receiver.xml receiver.tpz"), QStringLiteral("Writes the compressed form.")},
        {QStringLiteral("convert receiver.tpz - | less"), QStringLiteral("Writes XML to standard output.")},
        {QStringLiteral("convert --to tagged --out-dir records -- *.xml"),
         QStringLiteral("Writes records/NAME.tpb for every NAME.xml.")}};
    command.run = run;
    return command;
}
