// SPDX-License-Identifier: MIT
#include <QCryptographicHash>
#include <QHash>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/DocumentFile.h"
#include "files/Output.h"
#include "text/Printable.h"

using namespace TunerDocuments;
using JobXml::Problem;
using JobXml::Step;
using JobXml::TunerProperties;

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

const Option &noValidate()
{
    static const Option option{{QStringLiteral("no-validate")},
                               QStringLiteral("Write the document even if the change causes new problems."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &dryRun()
{
    static const Option option{{QStringLiteral("dry-run")},
                               QStringLiteral("Write the differences that the command would make to standard output, "
                                              "as 'diff' lists them, and nothing else."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &rewrite()
{
    static const Option option{{QStringLiteral("rewrite")},
                               QStringLiteral("Write the whole document anew instead of editing it in place, and list "
                                              "what is lost."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

/// A member and its new value.
struct Assignment
{
    QString path;
    QString value; ///< null to unset the member
};

/// The "=" of PATH=VALUE, which is outside of brackets and quotes; -1 if there is none.
int equalsSignIn(const QString &text)
{
    int depth = 0;
    bool isQuoted = false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (isQuoted && character == QLatin1Char('\\'))
            ++i;
        else if (character == QLatin1Char('"') && depth > 0)
            isQuoted = !isQuoted;
        else if (!isQuoted && character == QLatin1Char('['))
            ++depth;
        else if (!isQuoted && character == QLatin1Char(']'))
            --depth;
        else if (!isQuoted && depth <= 0 && character == QLatin1Char('='))
            return i;
    }
    return -1;
}

QVector<Assignment> assignmentsOf(const Invocation &invocation)
{
    QVector<Assignment> assignments;
    const bool isUnset = invocation.isSet(unset());
    const QString first = invocation.text(1);
    if (!isUnset && invocation.count() == 3 && equalsSignIn(first) < 0) {
        const QString value = invocation.text(2);
        return {{first, value.isNull() ? QStringLiteral("") : value}};
    }
    if (!isUnset && invocation.count() == 2 && equalsSignIn(first) < 0)
        throw WrongUsage(QStringLiteral("'set' requires a value; use --unset to remove the value"));
    for (int i = 1; i < invocation.count(); ++i) {
        const QString text = invocation.text(i);
        const int equals = equalsSignIn(text);
        if (isUnset && equals >= 0)
            throw WrongUsage(QStringLiteral("'set --unset' takes no value: '%1'").arg(text));
        if (!isUnset && equals < 0)
            throw WrongUsage(QStringLiteral("'%1' is not of the form PATH=VALUE").arg(text));
        assignments.append(isUnset ? Assignment{text, QString()} : Assignment{text.left(equals), text.mid(equals + 1)});
    }
    return assignments;
}

/// The first messages, and the number of all.
struct Messages
{
    bool hasRoom() const { return texts.size() < Options::usualProblemCount; }

    QStringList texts;
    qint64 count = 0;
};

/// The problems of a document, for comparison with those of a changed document.
class KnownProblems
{
public:
    explicit KnownProblems(const TunerProperties &document)
    {
        document.VisitProblems([this](const Problem &problem) { ++m_counts[keyOf(problem)]; });
    }

    /// The problems that were not at the same path before.
    Messages newOnesIn(const TunerProperties &document)
    {
        Messages messages;
        Paths::Texts paths(document);
        document.VisitProblems([&](const Problem &problem) {
            if (problem.xmlOnly) // the writer reports these, if the form is XML
                return;
            const auto known = m_counts.find(keyOf(problem));
            if (known != m_counts.end() && *known > 0) {
                --*known;
                return;
            }
            if (messages.hasRoom()) {
                const Finding finding = findingOf(problem);
                const QString path = paths.of(finding.steps);
                messages.texts.append((path.isEmpty() ? path : path + QStringLiteral(": ")) + finding.explained());
            }
            ++messages.count;
        });
        return messages;
    }

private:
    /// The key contains positions instead of names, since the change may concern a name. It is a digest, because a
    /// document may have a problem for every few bytes.
    static QByteArray keyOf(const Problem &problem)
    {
        QString text = problem.message;
        for (const Step &step : problem.steps)
            text += QLatin1Char('/') + step.member + QString::number(step.index);
        return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    }

    QHash<QByteArray, int> m_counts;
};

ExitStatus report(const QString &file, const QString &text)
{
    Console::printError(file + QStringLiteral(": ") + text);
    return ExitStatus::Problems;
}

ExitStatus reportAll(const QString &file, const Messages &messages)
{
    for (const QString &text : messages.texts)
        report(file, text);
    if (messages.count > messages.texts.size())
        report(file, countText(messages.count, messages.texts.size()));
    return ExitStatus::Problems;
}

/// Lists what would be lost. Returns whether it may be lost.
bool accepts(const QVector<Loss> &losses, const QString &file, bool mayRewrite)
{
    Messages messages;
    for (const Loss &loss : losses) {
        if (messages.hasRoom())
            messages.texts.append(loss.text());
        ++messages.count;
    }
    reportAll(file, messages);
    if (messages.count > 0 && !mayRewrite)
        report(file,
               QStringLiteral("nothing was written; use %1 to write the document with these losses")
                   .arg(rewrite().typed()));
    return messages.count == 0 || mayRewrite;
}

/// Applies the assignments in order, all or none.
void change(Editor &editor, const QVector<Assignment> &assignments)
{
    for (const Assignment &assignment : assignments) {
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

void showDifferences(const TunerProperties &before, const TunerProperties &after)
{
    BufferedOutput output;
    findDifferences(before, after, [&](const Difference &difference) {
        output.write(Printable::onOneLine(difference.text()).toUtf8() + '\n');
    });
    output.flush();
}

ExitStatus write(const Editor &editor, Input &input, const Invocation &invocation)
{
    const QString file = input.shownName();
    if (!editor.isInPlace() && !accepts(editor.losses(), file, invocation.isSet(rewrite())))
        return ExitStatus::Problems;
    const QByteArray bytes = editor.toBytes();
    Output::replace(input, bytes);
    const QString note = Options::expansionNote(bytes, file);
    if (!note.isNull())
        Console::printError(note);
    return ExitStatus::Ok;
}

ExitStatus run(const Invocation &invocation)
{
    const QVector<Assignment> assignments = assignmentsOf(invocation);
    Input input(invocation.file(0));
    const QString file = input.shownName();
    QByteArray bytes;
    Document document = loadDocumentWithBytes(input, Options::loading(invocation), bytes);
    const std::optional<TunerProperties> before =
        invocation.isSet(dryRun()) ? std::optional<TunerProperties>(document.tuner) : std::nullopt;
    KnownProblems known(document.tuner);
    Editor editor(std::move(document), bytes, file);
    if (invocation.isSet(rewrite()))
        editor.rewrite();
    try {
        change(editor, assignments);
    } catch (const PathFailure &failure) {
        return report(file, failure.text());
    }
    if (!editor.isChanged() && !input.name().isStandardStream())
        return ExitStatus::Ok;
    const Messages problems = known.newOnesIn(editor.document().tuner);
    if (problems.count > 0 && !invocation.isSet(noValidate()))
        return reportAll(file, problems);
    if (!editor.reasonAgainst().isNull() && !invocation.isSet(rewrite()))
        return report(file,
                      QStringLiteral("cannot edit the document in place: %1; use %2 to write it anew")
                          .arg(editor.reasonAgainst(), rewrite().typed()));
    if (before) {
        showDifferences(*before, editor.document().tuner);
        return ExitStatus::Ok;
    }
    return write(editor, input, invocation);
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
        QStringLiteral("Separate several names by commas or line ends. To give an item another kind of value, first "
                       "set its ChoiceValueItem, with --no-validate, and then the members of that kind.")};
    command.options = {unset(), noValidate(), dryRun(), rewrite(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("set receiver.xml quantity=3"), QStringLiteral("Change the quantity.")},
        {QStringLiteral("set receiver.xml 'Component[name=audio]/Node[id=balance]/ValueItem/value' -0.5"),
         QStringLiteral("Change a value of a node.")},
        {QStringLiteral("set --dry-run receiver.xml name='Rack B' quantity=3"),
         QStringLiteral("Show what two changes would do.")},
        {QStringLiteral("set --unset receiver.xml name"), QStringLiteral("Unset the name.")}};
    command.minArguments = 2;
    command.takes = Takes::Assignment;
    command.argumentsMayBeEmpty = true;
    command.mayEndWithNumber = true;
    command.run = run;
    return command;
}
