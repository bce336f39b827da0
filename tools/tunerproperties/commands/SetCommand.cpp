// SPDX-License-Identifier: MIT
#include <optional>

#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "commands/Commands.h"
#include "commands/EditedFile.h"
#include "commands/Options.h"

using namespace TunerDocuments;

namespace {

const Option &unset()
{
    static const Option option{{QStringLiteral("unset")},
                               QStringLiteral("Unset the members, which then have their default values."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

/// The members and their new values; a null one is for a member to unset.
QVector<Paths::Assignment> assignmentsOf(const Invocation &invocation)
{
    QVector<Paths::Assignment> assignments;
    const bool isUnset = invocation.isSet(unset());
    const QString first = invocation.text(1);
    if (!isUnset && invocation.count() == 3 && !Paths::assignmentIn(first)) {
        const QString value = invocation.text(2);
        return {{first, value.isNull() ? QStringLiteral("") : value}};
    }
    if (!isUnset && invocation.count() == 2 && !Paths::assignmentIn(first))
        throw WrongUsage(QStringLiteral("'set' requires a value; use --unset to remove the value"));
    for (int i = 1; i < invocation.count(); ++i) {
        const QString text = invocation.text(i);
        const std::optional<Paths::Assignment> assignment = Paths::assignmentIn(text);
        if (isUnset && assignment)
            throw WrongUsage(QStringLiteral("'set --unset' takes no value: '%1'").arg(text));
        if (!isUnset && !assignment)
            throw WrongUsage(QStringLiteral("'%1' is not of the form PATH=VALUE").arg(text));
        assignments.append(isUnset ? Paths::Assignment{text, QString()} : *assignment);
    }
    return assignments;
}

/// Applies the assignments in order, all or none.
void change(Editor &editor, const QVector<Paths::Assignment> &assignments)
{
    for (const Paths::Assignment &assignment : assignments) {
        const auto withPath = [&](const QString &why) {
            const Paths::Target target = Paths::find(editor.document().tuner, assignment.path);
            return PathFailure(target.path + QStringLiteral(": ") + why);
        };
        try {
            if (assignment.value.isNull())
                editor.unset(assignment.path);
            else
                editor.set(assignment.path, assignment.value);
        } catch (const TypedValue::Mismatch &mismatch) {
            throw withPath(mismatch.text());
        } catch (const ReportException &exception) {
            throw withPath(exception.GetMessageText());
        }
    }
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<Paths::Assignment> assignments = assignmentsOf(invocation);
    EditedFile file(invocation.file(0), invocation);
    try {
        change(file.editor(), assignments);
    } catch (const PathFailure &failure) {
        return file.fail(failure.text());
    }
    return file.finish();
}

} // namespace

Command setCommand()
{
    Command command;
    command.name = QStringLiteral("set");
    command.usages = QStringList{QStringLiteral("FILE PATH=VALUE..."), QStringLiteral("FILE PATH VALUE"),
                                 QStringLiteral("--unset FILE PATH...")};
    command.summary = QStringLiteral("Change values in a document.");
    command.details = QStringList{
        QStringLiteral("'tunerproperties get --help' describes paths. Several values are changed in order, all or none "
                       "of them. The values and then the document are checked as the library checks them. Nothing is "
                       "written if nothing changes."),
        QStringLiteral(
            "XML and JSON are edited in place: only the values concerned change. Comments, layout, order, encoding, "
            "line ends, other numbers and content that the model does not have stay as they are. The other "
            "forms are written anew, completely or not at all; if anything else would change, the command "
            "lists it and writes nothing, unless --rewrite allows it."),
        QStringLiteral("Separate several names by commas or line ends. To give an item another kind of value, set its "
                       "ChoiceValueItem and then, in the same command, the members that this kind needs.")};
    command.options = {unset(),         EditedFile::noValidate(), EditedFile::dryRun(), EditedFile::rewrite(),
                       Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("set receiver.xml quantity=3"), QStringLiteral("Change the quantity.")},
        {QStringLiteral("set receiver.xml 'Component[name=audio]/Node[id=balance]/ValueItem/value' -0.5"),
         QStringLiteral("Change a value of a node.")},
        {QStringLiteral("set --dry-run receiver.xml name='Rack B' quantity=3"),
         QStringLiteral("Show what two changes would do.")},
        {QStringLiteral("set --unset receiver.xml name"), QStringLiteral("Unset the name.")}};
    command.minArguments = 2;
    command.takes = Takes::Assignment;
    command.withoutValues = unset().typed();
    command.argumentsMayBeEmpty = true;
    command.mayEndWithNumber = true;
    command.run = run;
    return command;
}
