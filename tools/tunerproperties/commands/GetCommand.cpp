// SPDX-License-Identifier: MIT
#include <algorithm>

#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "batch/JsonLine.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"
#include "files/FileSystem.h"

using namespace TunerDocuments;

namespace {

const Option &jsonLines()
{
    static const Option option{
        {QStringLiteral("json")},
        QStringLiteral("Write each value as a line of JSON: an object with the members file, path and value."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

ExitStatus fail(const QString &file, const QString &text)
{
    Console::printError(file + QStringLiteral(": ") + text);
    return ExitStatus::Problems;
}

/// Prints a single value as it is.
ExitStatus printValue(const Document &document, const QString &path, const QString &file)
{
    const Paths::Target target = Paths::find(document.tuner, path);
    if (!target.isItem() && !target.member.IsSet())
        return fail(file, target.path + QStringLiteral(": is not set"));
    if (target.holdsObjects()) {
        Console::write(toJson(target, file));
        return ExitStatus::Ok;
    }
    const QString text = TypedValue::print(target.member.GetValue());
    if (text.isNull())
        return fail(file, target.path + QStringLiteral(": is set, but has no value"));
    Console::write(text.isEmpty() && target.member.GetKind() == JobXml::MemberKind::EnumerationList
                       ? QByteArray()
                       : text.toUtf8() + '\n');
    return ExitStatus::Ok;
}

QByteArray cell(const QString &text)
{
    return TypedValue::onOneLine(text).toUtf8();
}

QByteArray lineOf(const Paths::Target &target, const QString &file, bool asJson)
{
    if (asJson) {
        JsonLine line;
        line.add("file", file.toUtf8());
        line.add("path", target.path.toUtf8());
        line.addComposed("value", toJson(target, file, JsonLayout::OneLine));
        return line.text() + '\n';
    }
    const QByteArray value = target.holdsObjects() ? toJson(target, file, JsonLayout::OneLine)
                                                   : cell(TypedValue::print(target.member.GetValue()));
    return cell(file) + '\t' + cell(target.path) + '\t' + value + '\n';
}

/// Prints every value that the pattern matches in the files.
ExitStatus printTable(const Invocation &invocation, const QString &pattern, const QVector<FileName> &files)
{
    Options::checkStandardInput(files);
    const Path path = Path::parse(pattern);
    BufferedOutput output;
    ExitStatus status = ExitStatus::Ok;
    bool isAny = false;
    for (const FileName &name : files) {
        try {
            const DocumentFile source(name, Options::loading(invocation), {},
                                      Options::fileKinds(invocation, int(files.size())));
            const QVector<Paths::Target> targets = Paths::findAll(source.document.tuner, path);
            for (const Paths::Target &target : targets)
                output.write(lineOf(target, name.shown(), invocation.isSet(jsonLines())));
            isAny = isAny || !targets.isEmpty();
        } catch (const InvalidContent &content) { // also a FileFailure
            output.flush();
            Console::printErrors(content.problems().lines(content.name()));
            status = std::max(status, ExitStatus::Problems);
        } catch (const FileFailure &failure) {
            output.flush();
            Console::printError(failure.text());
            status = ExitStatus::FileFailure;
        }
    }
    output.flush();
    if (!isAny && status == ExitStatus::Ok)
        return fail(pattern,
                    QStringLiteral("matches nothing in %1")
                        .arg(files.size() == 1 ? files.first().shown() : QStringLiteral("these files")));
    return status;
}

bool isFile(const FileName &name)
{
    return name.isStandardStream() || FileSystem::exists(name);
}

ExitStatus run(const Invocation &invocation)
{
    // FILE PATH, unless the second argument is a file and the first is not.
    const bool isPathFirst = invocation.count() > 2 || (!isFile(invocation.file(0)) && isFile(invocation.file(1)));
    const QVector<FileName> files = isPathFirst ? invocation.files().mid(1) : invocation.files().mid(0, 1);
    const QString path = invocation.text(isPathFirst ? 0 : 1);
    try {
        if (files.size() > 1 || invocation.isSet(jsonLines()) || Path::parse(path).isPattern())
            return printTable(invocation, path, files);
        const DocumentFile source(files.first(), Options::loading(invocation));
        return printValue(source.document, path, source.input.shownName());
    } catch (const PathFailure &failure) {
        return fail(files.size() == 1 ? files.first().shown() : path, failure.text());
    }
}

} // namespace

Command getCommand()
{
    Command command;
    command.name = QStringLiteral("get");
    command.usages = QStringList{QStringLiteral("FILE PATH"), QStringLiteral("PATH FILE...")};
    command.summary = QStringLiteral("Print the values of members.");
    command.details = QStringList{
        QStringLiteral("A path consists of the names of members, separated by /. An item of a list is selected by the "
                       "members that identify it, or by its position, counted from 1: "
                       "Component[name=Pre]/Node[id=gain]/ValueItem[1]/value. [*] selects every item, and * every "
                       "member."),
        QStringLiteral("A text is printed without quotes, a list of names with one name per line, and an object as "
                       "JSON. If the member is not set or not found, there is no output and the exit status is 1."),
        QStringLiteral("With several files or a path with *, each value has a line with the file, its path and the "
                       "value, separated by tabs; line ends, tabs and backslashes in them are escapes.")};
    command.options = {jsonLines(), Options::from(), Options::maxExpansion(), Options::specialFiles()};
    command.examples = {{QStringLiteral("get receiver.xml quantity"), QStringLiteral("Print the quantity.")},
                        {QStringLiteral("get receiver.xml 'Component[name=tuning]/Node[id=span]/ValueItem/value'"),
                         QStringLiteral("Print a value of a node.")},
                        {QStringLiteral("get 'Component[*]/Node[id=gain]/ValueItem/value' *.xml"),
                         QStringLiteral("Print all gains of several documents.")}};
    command.minArguments = 2;
    command.takes = Takes::Path;
    command.argumentsMayBeEmpty = true;
    command.run = run;
    return command;
}
