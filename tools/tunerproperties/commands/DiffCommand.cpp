// SPDX-License-Identifier: MIT
#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Html.h>

#include "commands/Commands.h"
#include "commands/HtmlPage.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"
#include "text/Printable.h"
#include "json/JsonText.h"

using namespace TunerDocuments;

namespace {

const Option &exitCode()
{
    static const Option option{{QStringLiteral("exit-code")},
                               QStringLiteral("Exit with status 1 if the documents differ."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &color()
{
    static const Option option{
        {QStringLiteral("color")},
        QStringLiteral("When to use colors: auto (on a terminal, unless NO_COLOR is set), always or never."),
        QStringLiteral("WHEN"),
        Takes::Word,
        {QStringLiteral("auto"), QStringLiteral("always"), QStringLiteral("never")}};
    return option;
}

const Option &jsonLines()
{
    static const Option option{
        {QStringLiteral("json")},
        QStringLiteral(
            "Write each difference as a line of JSON, complete, for programs and for 'tunerproperties patch'."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

const QString textFormat = QStringLiteral("text");
const QString jsonFormat = QStringLiteral("json");
const QString htmlFormat = QStringLiteral("html");

const Option &formatOption()
{
    static const Option option{{QStringLiteral("format")},
                               QStringLiteral("Output format: text (default), json, as --json, or html, a page for a "
                                              "browser with the values side by side."),
                               QStringLiteral("FORMAT"),
                               Takes::Word,
                               QStringList{textFormat, jsonFormat, htmlFormat}};
    return option;
}

QString formatOf(const Invocation &invocation)
{
    const bool isJson = invocation.isSet(jsonLines());
    QString format = invocation.isSet(formatOption()) ? invocation.value(formatOption())
        : isJson                                      ? jsonFormat
                                                      : textFormat;
    if (isJson && format != jsonFormat)
        throw WrongUsage(QStringLiteral("--json and --format %1 cannot be combined").arg(format));
    return format;
}

bool usesColors(const Invocation &invocation)
{
    const QString when = invocation.value(color());
    if (when == QLatin1String("always") || when == QLatin1String("never"))
        return when == QLatin1String("always");
    return Console::standardOutputIsTerminal() && qEnvironmentVariableIsEmpty("NO_COLOR")
        && qgetenv("TERM") != QByteArrayLiteral("dumb");
}

QByteArray colored(const Difference &difference)
{
    const QByteArray text = Printable::onOneLine(difference.text()).toUtf8();
    const auto in = [&](const char *ansiColor) { return QByteArray("\x1B[") + ansiColor + 'm' + text + "\x1B[m"; };
    switch (difference.kind) {
    case Difference::Removed:
        return in("31");
    case Difference::Added:
        return in("32");
    case Difference::Changed:
    case Difference::Renamed:
        return in("33");
    case Difference::Moved:
        break;
    }
    return in("36");
}

/// The page takes a kilobyte of memory for each difference, and browsers take more.
void checkNumberOfDifferences(const DocumentFile &first, const DocumentFile &second)
{
    constexpr qint64 most = 100000;
    qint64 count = 0;
    findDifferences(first.document.tuner, second.document.tuner, [&](const Difference &) { ++count; });
    if (count > most)
        throw FileFailure(
            first.input.shownName()
            + QStringLiteral(": cannot show more than %1 differences on a page; use 'diff --json'").arg(most));
}

/// Writes the differences, and returns whether there are none.
bool writePage(const DocumentFile &first, const DocumentFile &second)
{
    for (const DocumentFile *file : {&first, &second})
        HtmlPage::checkSize(file->document, file->input.shownName(), QStringLiteral("diff --json"));
    checkNumberOfDifferences(first, second);
    QString firstSource = HtmlPage::sourceOf(first.input.name());
    QString secondSource = HtmlPage::sourceOf(second.input.name());
    if (firstSource == secondSource) { // in two folders
        firstSource = first.input.shownName();
        secondSource = second.input.shownName();
    }
    BufferedOutput output;
    const qint64 count = htmlOfDifferences(first.document.tuner, firstSource, second.document.tuner, secondSource,
                                           [&](const QByteArray &piece) { output.write(piece); });
    output.flush();
    return count == 0;
}

bool writeLines(const DocumentFile &first, const DocumentFile &second, bool isJson, bool withColors)
{
    bool areTheSame = true;
    BufferedOutput output(withColors);
    findDifferences(first.document.tuner, second.document.tuner, [&](const Difference &difference) {
        areTheSame = false;
        output.write(isJson           ? toJson(difference, first.input.shownName())
                         : withColors ? colored(difference)
                                      : Printable::onOneLine(difference.text()).toUtf8());
        output.write("\n");
    });
    output.flush();
    return areTheSame;
}

ExitStatus run(const Invocation &invocation)
{
    const QString format = formatOf(invocation);
    const QVector<FileName> names = invocation.files();
    Options::checkStandardInput(names);
    const LoadOptions loading = Options::loading(invocation);
    const DocumentFile first(names.first(), loading);
    const DocumentFile second(names.last(), loading);
    const bool areTheSame = format == htmlFormat
        ? writePage(first, second)
        : writeLines(first, second, format == jsonFormat, format == textFormat && usesColors(invocation));
    return invocation.isSet(exitCode()) && !areTheSame ? ExitStatus::Problems : ExitStatus::Ok;
}

} // namespace

Command diffCommand()
{
    Command command;
    command.name = QStringLiteral("diff");
    command.usages = QStringList{QStringLiteral("FILE FILE")};
    command.summary = QStringLiteral("Compare two documents and list the differences by path.");
    command.details = QStringList{
        QStringLiteral("The documents may have different forms. A line begins with - for what only the first document "
                       "has, + for what only the second one has, with its position in its list, ~ for a changed "
                       "value or name, and > for an item that has moved. Items are compared if they have the same "
                       "identity: type and name of a component, id of a node or a value. An item with another identity "
                       "and mostly the same content was renamed. There is no output if the documents are equal."),
    };
    command.options = {exitCode(), color(), formatOption(), jsonLines(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("diff old.xml new.tpb"), QStringLiteral("List the differences.")},
        {QStringLiteral("diff --json old.xml new.xml > changes.json"),
         QStringLiteral("Write the changes for 'tunerproperties patch'.")},
        {QStringLiteral("diff --format html old.xml new.xml > changes.html"),
         QStringLiteral("Create a page with the values of both documents side by side.")},
        {QStringLiteral("diff --exit-code old.xml new.xml > /dev/null || echo changed"),
         QStringLiteral("Check whether there are any differences.")},
    };
    command.meant = {{QStringLiteral("--html"), QStringLiteral("--format html")}};
    command.minArguments = 2;
    command.maxArguments = 2;
    command.run = run;
    return command;
}
