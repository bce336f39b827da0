// SPDX-License-Identifier: MIT
#include <jobxml/Visit.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "documents/Document.h"
#include "documents/Validate.h"
#include "html/Html.h"
#include "html/ValueWarnings.h"
#include "members/Show.h"

namespace {

/// An output format.
struct Format
{
    QString name;
    void (*show)(Document &document, const Findings &findings);
    bool showsProblems;
};

void showAsTree(Document &document, const Findings &)
{
    BufferedOutput output;
    show(document.tuner, [&](const QString &line) { output.write(line.toUtf8() + '\n'); });
    output.flush();
}

/// The number of objects below this one, or a larger number than `most`.
int countObjects(const JobXml::DataObject &object, int most)
{
    int count = 0;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        for (int i = 0; i < member.GetSize() && count <= most; ++i)
            count += 1 + countObjects(member.GetChild(i), most - count - 1);
    });
    return count;
}

/// An empty object takes four bytes of a record and a kilobyte of a page.
void checkSizeOfPage(const Document &document)
{
    constexpr int mostObjects = 1000000;
    if (countObjects(document.tuner, mostObjects) > mostObjects)
        throw FileFailure(document.input.shownName()
                          + QStringLiteral(": cannot show more than %1 objects on a page; use 'show --format json'")
                                .arg(mostObjects));
}

void showAsHtml(Document &document, const Findings &findings)
{
    checkSizeOfPage(document);
    const FileName &name = document.input.name();
    PageFindings all(findings);
    addValueWarnings(document.tuner, findings.most(), all);
    BufferedOutput output;
    html(document.tuner, all, name.isStandardStream() ? QStringLiteral("standard input") : name.withoutFolder().shown(),
         [&](const QByteArray &piece) { output.write(piece); });
    output.flush();
}

void showAsJson(Document &document, const Findings &)
{
    Console::write(Forms::compose(document.tuner, Form::Json, document.input.shownName()));
}

const QVector<Format> &formats()
{
    static const QVector<Format> all = {{QStringLiteral("tree"), showAsTree, false},
                                        {QStringLiteral("json"), showAsJson, false},
                                        {QStringLiteral("html"), showAsHtml, true}};
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
    const JobXml::ProblemVisitor visitor = chosen->showsProblems ? findings.collector() : JobXml::ProblemVisitor();
    Document document(invocation.file(0), Options::reading(invocation), visitor);
    chosen->show(document, findings);
    return ExitStatus::Ok;
}

} // namespace

Command showCommand()
{
    Command command;
    command.name = QStringLiteral("show");
    command.usages = QStringList{QStringLiteral("FILE")};
    command.summary = QStringLiteral("Show a document as a tree, as JSON, or as a page for a browser.");
    command.details = QStringList{QStringLiteral(
        "Numbers are shown exactly and texts in quotes; members that are not "
        "set are marked. The page also shows the problems of the document and warnings about its values.")};
    command.options = {formatOption(), Options::from(), Options::maxProblems(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("show receiver.xml"), QStringLiteral("Show a document as a tree.")},
        {QStringLiteral("show --format html receiver.xml > receiver.html"),
         QStringLiteral("Create a page for a browser.")},
        {QStringLiteral("show --from snapshot - < dump"), QStringLiteral("Show a snapshot from standard input.")}};
    command.maxArguments = 1;
    command.run = run;
    return command;
}
