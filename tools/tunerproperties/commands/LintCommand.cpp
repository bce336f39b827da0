// SPDX-License-Identifier: MIT
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Sarif.h>

#include "batch/Batch.h"
#include "batch/OutcomeJson.h"
#include "commands/Commands.h"
#include "commands/HelpText.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"
#include "text/TextLayout.h"

using namespace TunerDocuments;

namespace {

const QString textFormat = QStringLiteral("text");
const QString jsonFormat = QStringLiteral("json");
const QString sarifFormat = QStringLiteral("sarif");

const Option &rulesOption()
{
    static const Option option{{QStringLiteral("rules")},
                               QStringLiteral("List the rules: what each finds, and why it matters."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &formatOption()
{
    static const Option option{
        {QStringLiteral("format")},
        QStringLiteral("Output format: text (default), json, as --json, or sarif, one document in "
                       "SARIF 2.1.0 for all files, which tools for code review read."),
        QStringLiteral("FORMAT"),
        Takes::Word,
        QStringList{textFormat, jsonFormat, sarifFormat}};
    return option;
}

QString formatOf(const Invocation &invocation)
{
    const bool isJson = invocation.isSet(Options::json());
    QString format = invocation.isSet(formatOption()) ? invocation.value(formatOption())
        : isJson                                      ? jsonFormat
                                                      : textFormat;
    if (isJson && format != jsonFormat)
        throw WrongUsage(QStringLiteral("--json and --format %1 cannot be combined").arg(format));
    if (invocation.isSet(Options::quiet()) && format != textFormat)
        throw WrongUsage(QStringLiteral("--quiet and --format %1 cannot be combined").arg(format));
    return format;
}

void listRules(bool asJson)
{
    if (!asJson) {
        QString text;
        for (const LintRule &rule : lintRules()) {
            constexpr int indentation = 4;
            text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + rule.name + QLatin1Char('\n')
                + QString(indentation, QLatin1Char(' '))
                + TextLayout::wrapped(rule.finds + QLatin1Char(' ') + rule.why, indentation, indentation);
        }
        Console::write(text.toUtf8());
        return;
    }
    for (const LintRule &rule : lintRules()) {
        JsonLine line;
        line.add("rule", rule.name.toUtf8());
        line.add("finds", rule.finds.toUtf8());
        line.add("why", rule.why.toUtf8());
        Console::write(line.text() + '\n');
    }
}

QByteArray jsonLine(const Batch &batch, const Outcome &outcome)
{
    JsonLine line = batch.json(outcome);
    OutcomeJson::addFindings(line, outcome.findings.listed() + outcome.findings.warnings());
    line.add("problemCount", outcome.findings.count());
    line.add("warningCount", outcome.findings.warningCount());
    OutcomeJson::addError(line, outcome.error);
    return line.text() + '\n';
}

ExitStatus lintFiles(const Invocation &invocation, const QString &format)
{
    const QVector<FileName> files = invocation.files();
    const FileKinds kinds = Options::fileKinds(invocation, int(files.size()));
    const LoadOptions loading = Options::loading(invocation);
    const LintOptions linting = Options::linting(invocation);
    BatchSettings settings = Options::batch(invocation);
    settings.json = settings.json || format != textFormat;
    Batch batch(settings);
    Options::checkStandardInput(files);
    batch.doneStatus = QStringLiteral("clean");
    batch.foundStatus = QStringLiteral("findings");
    batch.work = [&](int index, const Batch::Done &) {
        Outcome outcome;
        outcome.findings = Findings(batch.problemLimit());
        Input input(files.at(index), kinds);
        QByteArray text;
        const Document document = loadDocumentWithText(input, loading, outcome.findings.collector(), text);
        outcome.findings.describePaths(document.tuner);
        lint(document, text, outcome.findings, linting);
        const bool isClean = outcome.findings.isEmpty() && outcome.findings.warningCount() == 0;
        outcome.status = isClean ? FileStatus::Done : FileStatus::Problems;
        return outcome;
    };
    if (format == jsonFormat)
        batch.compose = [&](const Outcome &outcome) { return jsonLine(batch, outcome); };
    if (format != sarifFormat)
        return batch.run(files);

    Sarif::Writer writer(HelpText::program(), QStringLiteral(TOOL_VERSION), Console::write);
    batch.sarif = &writer;
    const ExitStatus status = batch.run(files);
    writer.finish();
    return status;
}

ExitStatus run(const Invocation &invocation)
{
    const QString format = formatOf(invocation);
    if (!invocation.isSet(rulesOption())) {
        if (invocation.count() == 0)
            throw WrongUsage(QStringLiteral("'lint' expects FILE... or --rules"));
        return lintFiles(invocation, format);
    }
    if (invocation.count() > 0)
        throw WrongUsage(QStringLiteral("'lint --rules' takes no files"));
    if (format == sarifFormat)
        throw WrongUsage(QStringLiteral("--rules and --format sarif cannot be combined"));
    listRules(format == jsonFormat);
    return ExitStatus::Ok;
}

} // namespace

Command lintCommand()
{
    Command command;
    command.name = QStringLiteral("lint");
    command.usages = QStringList{QStringLiteral("FILE..."), QStringLiteral("--rules")};
    command.summary = QStringLiteral("List what is suspicious in documents: for reviews.");
    command.details = QStringList{
        QStringLiteral(
            "The problems of a document come first, as 'validate' lists them. The warnings of named rules "
            "follow, with the line and column in XML and JSON, the path, a suggestion, and the name of the rule in "
            "brackets. The exit status is 1 if there is anything."),
        QStringLiteral("In XML, the comment <!-- tunerproperties-lint-disable RULE... --> directly before an element "
                       "disables rules for the element and everything in it."),
        QStringLiteral("The first 100 problems and the first 100 warnings of a document are listed, each followed by "
                       "their total if there are more. Several files are processed at once and reported in order, with "
                       "a summary on standard error."),
        QStringLiteral("With --json, each line is a JSON object for one file, with \"file\", \"status\" (\"clean\", "
                       "\"findings\" or \"unreadable\"), \"findings\" (those that are listed), \"problemCount\", "
                       "\"warningCount\" (their totals) and \"error\" (why the file is unreadable, or null). A finding "
                       "has \"path\", \"line\", \"column\", \"message\", \"value\", \"choices\", "
                       "\"suggestion\", \"rule\" (null for a problem) and \"level\" (\"error\" or \"warning\").")};
    command.options = {rulesOption(),          Options::disable(),      Options::error(),       formatOption(),
                       Options::from(),        Options::jobs(),         Options::quiet(),       Options::json(),
                       Options::maxProblems(), Options::maxExpansion(), Options::specialFiles()};
    command.examples = {
        {QStringLiteral("lint receiver.xml"), QStringLiteral("List what a reviewer should look at.")},
        {QStringLiteral("lint --disable lost-decimals,value-off-grid -- *.xml"),
         QStringLiteral("Check many documents without two of the rules.")},
        {QStringLiteral("lint --format sarif -- *.xml > lint.sarif"), QStringLiteral("Report to a code review tool.")}};
    command.minArguments = 0;
    command.run = run;
    return command;
}
