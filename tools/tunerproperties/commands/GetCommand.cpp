// SPDX-License-Identifier: MIT
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"

using namespace TunerDocuments;

namespace {

QByteArray jsonOf(const Paths::Target &target, const QString &file)
{
    return target.isItem() ? toJson(target.member.GetChild(target.steps.last().index), file)
                           : toJson(target.member, file);
}

bool holdsObjects(JobXml::MemberKind kind)
{
    return kind == JobXml::MemberKind::Object || kind == JobXml::MemberKind::ObjectList
        || kind == JobXml::MemberKind::Alternative;
}

ExitStatus run(const Invocation &invocation)
{
    const DocumentFile source(invocation.file(0), Options::loading(invocation));
    const QString file = source.input.shownName();
    const auto fail = [&](const QString &text) {
        Console::printError(file + QStringLiteral(": ") + text);
        return ExitStatus::Problems;
    };
    try {
        const Paths::Target target = Paths::find(source.document.tuner, invocation.text(1));
        if (!target.isItem() && !target.member.IsSet())
            return fail(target.path + QStringLiteral(": is not set"));
        if (holdsObjects(target.member.GetKind())) {
            Console::write(jsonOf(target, file));
            return ExitStatus::Ok;
        }
        const QString text = TypedValue::print(target.member.GetValue());
        if (text.isNull())
            return fail(target.path + QStringLiteral(": is set, but has no value"));
        Console::write(text.isEmpty() && target.member.GetKind() == JobXml::MemberKind::EnumerationList
                           ? QByteArray()
                           : text.toUtf8() + '\n');
        return ExitStatus::Ok;
    } catch (const PathFailure &failure) {
        return fail(failure.text());
    }
}

} // namespace

Command getCommand()
{
    Command command;
    command.name = QStringLiteral("get");
    command.usages = QStringList{QStringLiteral("FILE PATH")};
    command.summary = QStringLiteral("Print the value of one member.");
    command.details = QStringList{
        QStringLiteral("A path consists of the names of members, separated by /. An item of a list is selected by the "
                       "members that identify it, or by its position, counted from 1: "
                       "Component[name=Pre]/Node[id=gain]/ValueItem[1]/value."),
        QStringLiteral("A text is printed without quotes, a list of names with one name per line, and an object as "
                       "JSON. If the member is not set or not found, there is no output and the exit status is 1.")};
    command.options = {Options::from(), Options::maxExpansion()};
    command.examples = {{QStringLiteral("get receiver.xml quantity"), QStringLiteral("Print the quantity.")},
                        {QStringLiteral("get receiver.xml 'Component[name=tuning]/Node[id=span]/ValueItem/value'"),
                         QStringLiteral("Print a value of a node.")}};
    command.minArguments = 2;
    command.maxArguments = 2;
    command.argumentsMayBeEmpty = true;
    command.run = run;
    return command;
}
