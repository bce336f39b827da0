// SPDX-License-Identifier: MIT
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Html.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Tree.h>

#include "commands/Commands.h"
#include "commands/HtmlPage.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

/// An output format.
struct Format
{
    QString name;
    /// The findings are empty; a format that shows them looks for them.
    void (*show)(Input &input, const LoadOptions &loading, Findings &findings);
};

void showAsTree(Input &input, const LoadOptions &loading, Findings &)
{
    const Document document = loadDocument(input, loading);
    BufferedOutput output;
    show(document.tuner, [&](const QString &line) { output.write(line.toUtf8() + '\n'); });
    output.flush();
}

void showAsJson(Input &input, const LoadOptions &loading, Findings &)
{
    Console::write(loadDocument(input, loading).toBytes(Form::Json, input.shownName()));
}

void showAsHtml(Input &input, const LoadOptions &loading, Findings &findings)
{
    QByteArray text;
    const Document document = loadDocumentWithText(input, loading, findings.collector(), text);
    HtmlPage::checkSize(document, input.shownName(), QStringLiteral("show --format json"));
    findings.describePaths(document.tuner);
    lint(document, text, findings);
    text.clear(); // the page may take much memory itself
    BufferedOutput output;
    html(document.tuner, findings, HtmlPage::sourceOf(input.name()),
         [&](const QByteArray &piece) { output.write(piece); });
    output.flush();
}

const QVector<Format> &formats()
{
    static const QVector<Format> all = {{QStringLiteral("tree"), showAsTree},
                                        {QStringLiteral("json"), showAsJson},
                                        {QStringLiteral("html"), showAsHtml}};
    return all;
}

QStringList formatNames()
{
    QStringList names;
    for (const Format &format : formats())
        names.append(format.name);
    return names;
}

const Option &formatOption()
{
    static const Option option{{QStringLiteral("format")},
                               QStringLiteral("Output format: tree (default), json, or html, a page for a browser that "
                                              "needs no other file and no network."),
                               QStringLiteral("FORMAT"),
                               Takes::Word,
                               formatNames()};
    return option;
}

ExitStatus run(const Invocation &invocation)
{
    const Format *chosen = &formats().first();
    for (const Format &format : formats()) {
        if (format.name == invocation.value(formatOption()))
            chosen = &format;
    }
    Findings findings(Options::problemCount(invocation));
    const LoadOptions loading = Options::loading(invocation);
    Input input(invocation.file(0));
    chosen->show(input, loading, findings);
    return ExitStatus::Ok;
}

} // namespace

Command showCommand()
{
    Command command;
    command.name = QStringLiteral("show");
    command.usages = QStringList{QStringLiteral("FILE")};
    command.summary = QStringLiteral("Show a document as a tree, as JSON, or as a page for a browser.");
    command.details = QStringList{
        QStringLiteral("Numbers are shown exactly and texts in quotes; members that are not "
                       "set are marked. The page also shows the problems of the document and the warnings of 'lint'.")};
    command.options = {formatOption(), Options::from(), Options::maxProblems(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("show receiver.xml"), QStringLiteral("Show a document as a tree.")},
        {QStringLiteral("show --format html receiver.xml > receiver.html"),
         QStringLiteral("Create a page for a browser.")},
        {QStringLiteral("show --from snapshot - < dump"), QStringLiteral("Show a snapshot from standard input.")}};
    command.maxArguments = 1;
    command.meant = {{QStringLiteral("--json"), QStringLiteral("--format json")},
                     {QStringLiteral("--html"), QStringLiteral("--format html")}};
    command.run = run;
    return command;
}
