// SPDX-License-Identifier: MIT
#include <QCryptographicHash>
#include <QHash>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"
#include "files/Output.h"

using namespace TunerDocuments;

using namespace JobXml;

namespace {

const Option &unset()
{
    static const Option option{{QStringLiteral("unset")},
                               QStringLiteral("Unset the member, which then has its default value."),
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

/// Sets the flag of the chosen alternative, so that its members can be set next.
void setChosenAlternative(TunerProperties &document, const Paths::Target &choice)
{
    const QByteArray chosen = choice.member.GetValue().toString().toLatin1();
    Paths::Target alternative = choice;
    alternative.steps.last().member = QLatin1String(chosen);
    Paths::edit(document, alternative, [](MemberEditor &member) { member.EditChild(); });
}

/// Stores the value through the setter and its checks.
void store(TunerProperties &document, const Paths::Target &target, const QString &text)
{
    const QVariant value = TypedValue::parse(target.member, text);
    bool isStored = false;
    document.SetValidate(true); // propagates to the object of the member
    Paths::edit(document, target, [&](MemberEditor &member) { isStored = member.SetValue(value); });
    document.SetValidate(false);
    if (!isStored)
        throw TypedValue::Mismatch(QStringLiteral("cannot store '%1'").arg(text));
    if (target.member.GetKind() == MemberKind::Choice)
        setChosenAlternative(document, target);
}

void unsetMember(TunerProperties &document, const Paths::Target &target)
{
    if (target.isItem())
        throw TypedValue::Mismatch(QStringLiteral("cannot unset an item of a list; unset the whole list"));
    Paths::edit(document, target, [](MemberEditor &member) { member.Reset(); });
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

    /// Adds the problems that were not at the same path before. Returns whether there is any problem.
    bool addNew(const TunerProperties &document, Messages &messages)
    {
        bool isAny = false;
        Paths::Texts paths(document);
        document.VisitProblems([&](const Problem &problem) {
            isAny = true;
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
                messages.texts.append((path.isEmpty() ? path : path + QStringLiteral(": ")) + finding.message);
            }
            ++messages.count;
        });
        return isAny;
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

/// The text of a member; "nothing" if it does not exist.
QString textAt(const TunerProperties &document, const Paths::Target &target)
{
    const auto member = Paths::at(document, target.steps);
    return member ? ValueText::ofMember(*member) : QStringLiteral("nothing");
}

/// Reads the written bytes back, since not all forms store all values exactly.
void reportInexactValue(const QByteArray &bytes, const DocumentFile &file, const Paths::Target &target)
{
    QString text = QStringLiteral("nothing");
    try {
        const Document written = Document::fromBytes(bytes, {}, {file.document.form, std::numeric_limits<int>::max()});
        text = textAt(written.tuner, target);
    } catch (const DocumentError &) {
    }
    if (text != textAt(file.document.tuner, target)) // by position: the change may concern the identity
        Console::printError(file.input.shownName() + QStringLiteral(": ") + target.path
                            + QStringLiteral(": this form cannot store the value exactly; it reads back as ") + text);
}

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

/// The problems in the XML that the document does not contain, so that writing would lose their elements and
/// attributes.
class LostContent
{
public:
    void add(const Problem &problem)
    {
        if (problem.line == 0 || m_keptItems.contain(problem))
            return;
        if (m_messages.hasRoom()) {
            const Finding finding = findingOf(problem);
            m_messages.texts.append(
                QStringLiteral("line %1, column %2: %3").arg(finding.line).arg(finding.column).arg(finding.message));
        }
        ++m_messages.count;
    }

    const Messages &messages() const { return m_messages; }

private:
    Messages m_messages;
    KeptItems m_keptItems;
};

ExitStatus change(DocumentFile &source, const Messages &lost, const Invocation &invocation)
{
    const FileName &name = source.input.name();
    const QString file = name.shown();
    const bool mayHaveProblems = invocation.isSet(noValidate());
    TunerProperties &tuner = source.document.tuner;
    if (lost.count > 0)
        return reportAll(file, lost);
    const TunerProperties before = tuner;
    KnownProblems known(before);
    const Paths::Target target = Paths::find(tuner, invocation.text(1));
    try {
        if (invocation.isSet(unset()))
            unsetMember(tuner, target);
        else
            store(tuner, target, invocation.text(2));
    } catch (const TypedValue::Mismatch &mismatch) {
        return report(file, target.path + QStringLiteral(": ") + mismatch.text());
    } catch (const ReportException &exception) {
        return report(file, target.path + QStringLiteral(": ") + exception.GetMessageText());
    }
    bool isChanged = false;
    findDifferences(before, tuner, [&](const Difference &) { isChanged = true; });
    if (!isChanged && !name.isStandardStream())
        return ExitStatus::Ok;
    Messages problems;
    const bool hasProblems = known.addNew(tuner, problems);
    tuner.SetValidate(!hasProblems && tuner.HasData());
    if (problems.count > 0 && !mayHaveProblems)
        return reportAll(file, problems);
    const QByteArray bytes = source.document.toBytes(source.document.form, file);
    Output::replace(source.input, bytes);
    const QString note = Options::expansionNote(bytes, file);
    if (!note.isNull())
        Console::printError(note);
    if (isChanged && !invocation.isSet(unset()))
        reportInexactValue(bytes, source, target);
    return ExitStatus::Ok;
}

ExitStatus run(const Invocation &invocation)
{
    if (invocation.count() != (invocation.isSet(unset()) ? 2 : 3))
        throw WrongUsage(invocation.isSet(unset())
                             ? QStringLiteral("'set --unset' takes no value")
                             : QStringLiteral("'set' requires a value; use --unset to remove the value"));
    LostContent lost;
    ProblemVisitor visitor;
    if (!invocation.isSet(noValidate()))
        visitor = [&](const Problem &problem) { lost.add(problem); };
    DocumentFile source(invocation.file(0), Options::loading(invocation), visitor);
    try {
        return change(source, lost.messages(), invocation);
    } catch (const PathFailure &failure) {
        return report(source.input.shownName(), failure.text());
    }
}

} // namespace

Command setCommand()
{
    Command command;
    command.name = QStringLiteral("set");
    command.usages = QStringList{QStringLiteral("FILE PATH VALUE"), QStringLiteral("--unset FILE PATH")};
    command.summary = QStringLiteral("Change the value of one member.");
    command.details = QStringList{
        QStringLiteral("'tunerproperties get --help' describes paths. The value and then the document are checked as "
                       "the library checks them. The document is written in its own form, completely or not at all. "
                       "Nothing is written if nothing changes."),
        QStringLiteral("Separate several names by commas or line ends. To give an item another kind of value, first "
                       "set its ChoiceValueItem, with --no-validate, and then the members of that kind. The document "
                       "is written as the library writes it, so XML comments and the layout of the file are lost.")};
    command.options = {unset(), noValidate(), Options::from(), Options::maxExpansion()};
    command.examples = {
        {QStringLiteral("set receiver.xml quantity 3"), QStringLiteral("Change the quantity.")},
        {QStringLiteral("set receiver.xml 'Component[name=audio]/Node[id=balance]/ValueItem/value' -0.5"),
         QStringLiteral("Change a value of a node.")},
        {QStringLiteral("set --unset receiver.xml name"), QStringLiteral("Unset the name.")}};
    command.minArguments = 2;
    command.maxArguments = 3;
    command.argumentsMayBeEmpty = true;
    command.mayEndWithNumber = true;
    command.run = run;
    return command;
}
