// SPDX-License-Identifier: MIT
#include "commands/Commands.h"
#include "commands/Options.h"
#include "documents/Document.h"
#include "html/Html.h"
#include "members/Show.h"

namespace {

/// One way to show a document.
struct Format
{
    QString name;
    QByteArray (*shown)(Document &document);
};

QByteArray shownAsTree(Document &document)
{
    return show(document.tuner).toUtf8();
}

QByteArray shownAsHtml(Document &document)
{
    const FileName &name = document.input.name();
    return html(document.tuner, document.findings(),
                name.isStandardStream() ? QStringLiteral("standard input") : name.withoutFolder().shown());
}

QByteArray shownAsJson(Document &document)
{
    return Forms::compose(document.tuner, Form::Json, document.input.shownName());
}

const QVector<Format> &formats()
{
    static const QVector<Format> all = {{QStringLiteral("tree"), shownAsTree},
                                        {QStringLiteral("json"), shownAsJson},
                                        {QStringLiteral("html"), shownAsHtml}};
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
                               QStringLiteral("How to show it: as a tree, which is the default, as json, or as html, a "
                                              "page for a browser that needs no other file and no network."),
                               QStringLiteral("FORMAT"),
                               Takes::Word,
                               formatNames()};
    return option;
}

ExitStatus run(const Invocation &invocation)
{
    Document document(invocation.file(0), Options::form(invocation, Options::from()));
    const Format *chosen = &formats().first();
    for (const Format &format : formats()) {
        if (format.name == invocation.value(formatOption()))
            chosen = &format;
    }
    Console::write(chosen->shown(document));
    return ExitStatus::Ok;
}

} // namespace

Command showCommand()
{
    Command command;
    command.name = QStringLiteral("show");
    command.usages = QStringList{QStringLiteral("FILE")};
    command.summary =
        QStringLiteral("Shows all that a document holds, as a tree, as JSON, or as a page for a browser.");
    command.details =
        QStringList{QStringLiteral("Numbers are shown exactly, texts in quotes; what is not set is marked.")};
    command.options = {formatOption(), Options::from()};
    command.examples = {{QStringLiteral("show receiver.xml"), QStringLiteral("Shows the tree of a document.")},
                        {QStringLiteral("show --format html receiver.xml > receiver.html"),
                         QStringLiteral("Makes a page of it, for a browser.")},
                        {QStringLiteral("show --from snapshot - < dump"),
                         QStringLiteral("Shows a snapshot whose name does not tell that it is one.")}};
    command.most = 1;
    command.run = run;
    return command;
}
