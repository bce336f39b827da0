// SPDX-License-Identifier: MIT
#include "commands/Commands.h"
#include "commands/Options.h"
#include "documents/Document.h"
#include "documents/JsonForm.h"
#include "members/Paths.h"
#include "members/TypedValue.h"

namespace {

QByteArray jsonOf(const Paths::Target &target)
{
    return JsonText::pretty(target.isItem() ? JsonForm::ofObject(target.member.GetChild(target.steps.last().index))
                                            : JsonForm::ofMember(target.member));
}

bool holdsObjects(JobXml::MemberKind kind)
{
    return kind == JobXml::MemberKind::Object || kind == JobXml::MemberKind::ObjectList
        || kind == JobXml::MemberKind::Alternative;
}

ExitStatus run(const Invocation &invocation)
{
    const Document document(invocation.file(0), Options::reading(invocation));
    const QString file = document.input.shownName();
    const auto tell = [&](const QString &text) {
        Console::complain(file + QStringLiteral(": ") + text);
        return ExitStatus::Problems;
    };
    try {
        const Paths::Target target = Paths::find(document.tuner, invocation.text(1));
        if (!target.isItem() && !target.member.IsSet())
            return tell(target.path + QStringLiteral(": is not set"));
        if (holdsObjects(target.member.GetKind())) {
            Console::write(jsonOf(target));
            return ExitStatus::Ok;
        }
        const QString text = TypedValue::print(target.member.GetValue());
        if (text.isNull())
            return tell(target.path + QStringLiteral(": is set, but to no value"));
        Console::write(text.isEmpty() && target.member.GetKind() == JobXml::MemberKind::EnumerationList
                           ? QByteArray()
                           : text.toUtf8() + '\n');
        return ExitStatus::Ok;
    } catch (const PathFailure &failure) {
        return tell(failure.text());
    } catch (const JsonFailure &failure) {
        throw FileFailure(failure.text(file));
    }
}

} // namespace

Command getCommand()
{
    Command command;
    command.name = QStringLiteral("get");
    command.usages = QStringList{QStringLiteral("FILE PATH")};
    command.summary = QStringLiteral("Writes the value of one member.");
    command.details = QStringList{
        QStringLiteral("A path names members, with / between them. An item of a list is told by what identifies it, as "
                       "far as it takes to tell it, or by its place, counted from 1: "
                       "Component[name=Pre]/Node[id=gain]/ValueItem[1]/value."),
        QStringLiteral("A text is written as it is, a list of names with one on each line, and what holds objects as "
                       "JSON. Nothing is written, and the exit status is 1, if the member is not set or not found.")};
    command.options = {Options::from(), Options::maxExpansion()};
    command.examples = {{QStringLiteral("get receiver.xml quantity"), QStringLiteral("Writes how many there are.")},
                        {QStringLiteral("get receiver.xml 'Component[name=tuning]/Node[id=span]/ValueItem/value'"),
                         QStringLiteral("Writes a value of a node.")}};
    command.fewest = 2;
    command.most = 2;
    command.argumentsMayBeEmpty = true;
    command.run = run;
    return command;
}
