// SPDX-License-Identifier: MIT
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Path.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"

using namespace TunerDocuments;

namespace {

const Option &contentFile()
{
    static const Option option{{QStringLiteral("from")},
                               QStringLiteral("Read the content from FILE, or from standard input for -."),
                               QStringLiteral("FILE"),
                               Takes::File,
                               {}};
    return option;
}

const Option &fileForm()
{
    static const Option option = [] {
        Option form = Options::from();
        form.names = QStringList{QStringLiteral("file-form")};
        form.help.replace(QLatin1String("the input"), QLatin1String("FILE"));
        return form;
    }();
    return option;
}

/// The content of what is added, and what messages call it.
struct Content
{
    QByteArray text{};
    QString name{};
};

Content contentFor(const Invocation &invocation)
{
    const bool hasFile = invocation.isSet(contentFile());
    if (hasFile && invocation.count() > 2)
        throw WrongUsage(QStringLiteral("'add' takes the content from an argument or from a file, not both"));
    if (!hasFile)
        return {invocation.count() > 2 ? invocation.text(2).toUtf8() : QByteArray(), QStringLiteral("VALUE")};
    const FileName file = invocation.fileValue(contentFile());
    Options::checkStandardInput({invocation.file(0), file});
    Input input(file);
    const QByteArray text = input.bytes();
    input.check();
    return {text, input.shownName()};
}

ExitStatus run(const Invocation &invocation)
{
    const QString path = invocation.text(1);
    const Content content = contentFor(invocation);
    EditedFile file(invocation.file(0), invocation, {}, fileForm());
    try {
        file.editor().add(path, content.text, content.name);
    } catch (const PathFailure &failure) {
        return file.fail(failure.text());
    } catch (const InvalidContent &) {
        throw;
    } catch (const DocumentError &error) {
        Console::printError(error.text());
        return ExitStatus::Problems;
    }
    return file.finish();
}

} // namespace

Command addCommand()
{
    Command command;
    command.name = QStringLiteral("add");
    command.usages = QStringList{QStringLiteral("FILE PATH [VALUE]"), QStringLiteral("--from FILE FILE PATH")};
    command.summary = QStringLiteral("Add an item to a list of a document.");
    command.details = QStringList{
        QStringLiteral("PATH leads to the new item afterwards: its last step names the list and what identifies the "
                       "item. The item is the last one of its list, unless the step has a position as well, which "
                       "counts the items that fit the rest of it."),
        QStringLiteral("VALUE, or the file, is the content of the item: its JSON, or its element in XML. Without it, "
                       "the item has what the path says. What would be lost in reading it is refused; comments in it "
                       "are not added. For a list of names, VALUE is a name, or several separated by commas."),
        QStringLiteral("XML and JSON are edited in place, and other forms are written anew, as 'set' does. The new "
                       "item is laid out as its neighbors are.")};
    command.options = {contentFile(), EditedFile::noValidate(), EditedFile::dryRun(), EditedFile::rewrite(),
                       fileForm(),    Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("add receiver.xml BandwidthSelection[Name=Wide] '{\"MaxBandwidth\": 20000}'"),
         QStringLiteral("Add a bandwidth at the end.")},
        {QStringLiteral("add --no-validate receiver.xml 'Component[name=audio]/Node[id=treble]'"),
         QStringLiteral("Add a node, to be filled later.")},
        {QStringLiteral("add --from node.xml receiver.xml 'Component[name=audio]/Node[1]'"),
         QStringLiteral("Add a node as the first one.")},
        {QStringLiteral("add receiver.xml StartupModes/StartupMode DF"), QStringLiteral("Add a start-up mode.")}};
    command.minArguments = 2;
    command.maxArguments = 3;
    command.takes = Takes::Path;
    command.argumentsMayBeEmpty = true;
    command.run = run;
    return command;
}
