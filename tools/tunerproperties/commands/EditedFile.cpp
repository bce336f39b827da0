// SPDX-License-Identifier: MIT
#include "commands/EditedFile.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Path.h>

#include "commands/Options.h"
#include "console/BufferedOutput.h"
#include "files/Output.h"
#include "text/Printable.h"

using namespace TunerDocuments;
using namespace JobXml;

namespace {

/// The first messages, and the number of all.
struct Messages
{
    void add(const QString &text)
    {
        if (texts.size() < Options::usualProblemCount)
            texts.append(text);
        ++count;
    }

    void print(const QString &file) const
    {
        for (const QString &text : texts)
            Console::printError(file + QStringLiteral(": ") + text);
        if (count > texts.size())
            Console::printError(file + QStringLiteral(": ") + countText(count, texts.size()));
    }

    QStringList texts;
    qint64 count = 0;
};

/// A problem for counting. It is a digest, since a document may have a problem for every few bytes.
QByteArray digestOf(const Problem &problem, const QStringList &place)
{
    const QString text = problem.message + QLatin1Char('/') + place.join(QLatin1Char('/'));
    return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
}

/// Which problem it is, wherever the changes have moved its object.
QByteArray kindOf(const Problem &problem)
{
    QStringList members;
    for (const Step &step : problem.steps)
        members.append(step.member);
    return digestOf(problem, members);
}

/// The problem at its place, unless its object has another name or position now.
QByteArray placeOf(const Problem &problem)
{
    return digestOf(problem, problem.path);
}

/// Whether the document has a problem. Not texts that XML cannot carry: its writer reports these.
bool hasProblem(const TunerProperties &document)
{
    bool isAny = false;
    document.VisitProblems([&](const Problem &problem) { isAny = isAny || !problem.xmlOnly; });
    return isAny;
}

/// The problems that the changed document has, and the original did not have.
Messages newProblems(const TunerProperties &original, const TunerProperties &changed)
{
    QHash<QByteArray, int> further; // of each kind
    QSet<QByteArray> known;
    changed.VisitProblems([&](const Problem &problem) {
        if (!problem.xmlOnly)
            ++further[kindOf(problem)];
    });
    original.VisitProblems([&](const Problem &problem) {
        --further[kindOf(problem)];
        known.insert(placeOf(problem));
    });
    Messages messages;
    Paths::Texts paths(changed);
    changed.VisitProblems([&](const Problem &problem) {
        const auto left = further.find(kindOf(problem));
        if (problem.xmlOnly || left == further.end() || *left <= 0 || known.contains(placeOf(problem)))
            return;
        --*left;
        const bool isListed = messages.count < Options::usualProblemCount;
        const Finding finding = isListed ? findingOf(problem) : Finding();
        const QString path = isListed ? paths.of(finding.steps) : QString();
        messages.add((path.isEmpty() ? path : path + QStringLiteral(": ")) + finding.explained());
    });
    return messages;
}

Messages textsOf(const QVector<Loss> &losses, const QString &start)
{
    Messages messages;
    for (const Loss &loss : losses)
        messages.add(start + loss.text());
    return messages;
}

QString inexactly()
{
    return QStringLiteral("this form cannot store the document exactly: ");
}

} // namespace

const Option &EditedFile::noValidate()
{
    static const Option option{{QStringLiteral("no-validate")},
                               QStringLiteral("Write the document even if the changes cause new problems."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &EditedFile::dryRun()
{
    static const Option option{{QStringLiteral("dry-run")},
                               QStringLiteral("Write the differences that the command would make to standard output, "
                                              "as 'diff' lists them, and nothing else."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &EditedFile::rewrite()
{
    static const Option option{{QStringLiteral("rewrite")},
                               QStringLiteral("Write the whole document anew instead of editing it in place, and list "
                                              "what is lost."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

EditedFile::EditedFile(const FileName &name, const Invocation &invocation, const LoadOptions &loading)
    : m_invocation(invocation), m_loading(loading), m_input(name),
      m_editor(loadDocumentWithBytes(m_input, loading, m_bytes), m_bytes, m_input.shownName())
{
    if (invocation.isSet(rewrite()))
        m_editor.rewrite();
}

bool EditedFile::hasFormOf(const FileName &target) const
{
    return formFor(target) == m_editor.document().form;
}

ExitStatus EditedFile::fail(const QString &why) const
{
    Console::printError(shownName() + QStringLiteral(": ") + why);
    return ExitStatus::Problems;
}

ExitStatus EditedFile::finish(const FileName &target)
{
    if (m_editor.mayCauseProblems() && !m_invocation.isSet(noValidate()) && hasNewProblems())
        return ExitStatus::Problems;
    return finishUnchecked(target);
}

ExitStatus EditedFile::finishUnchecked(const FileName &target)
{
    if (m_invocation.isSet(dryRun()))
        return showDifferences();
    const bool isStream = target.isEmpty() && m_input.name().isStandardStream();
    if (!m_editor.isChanged() && target.isEmpty() && !isStream)
        return ExitStatus::Ok;
    return write(target);
}

ExitStatus EditedFile::write(const FileName &target)
{
    const Form form = formFor(target);
    const bool isSameForm = hasFormOf(target);
    if (m_editor.isChanged() && isSameForm && !m_editor.reasonAgainst().isNull())
        return fail(QStringLiteral("cannot edit the document in place: %1; use %2 to write it anew")
                        .arg(m_editor.reasonAgainst(), rewrite().typed()));
    const QString name = target.isEmpty() ? shownName() : target.shown();
    const QByteArray bytes = !isSameForm ? bytesFor(form, name) : m_editor.isChanged() ? m_editor.toBytes() : m_bytes;
    if (m_editor.isChanged() && isSameForm && !mayBeWritten())
        return ExitStatus::Problems;
    if (target.isEmpty())
        Output::replace(m_input, bytes);
    else
        Output::writeWhole(target, bytes);
    const QString note = Options::expansionNote(bytes, name);
    if (!note.isNull())
        Console::printError(note);
    return ExitStatus::Ok;
}

Document EditedFile::original() const
{
    LoadOptions loading = m_loading;
    loading.form = m_editor.document().form;
    return Document::fromBytes(m_bytes, shownName(), loading);
}

bool EditedFile::hasNewProblems() const
{
    if (!hasProblem(tuner()))
        return false; // and the original needs no look
    const Messages messages = newProblems(original().tuner, tuner());
    messages.print(shownName());
    return messages.count > 0;
}

/// Lists what would be lost. In place, that is only what the form cannot hold of the changes.
bool EditedFile::mayBeWritten() const
{
    const QVector<Loss> losses = m_editor.losses();
    textsOf(losses, m_editor.isInPlace() ? inexactly() : QString()).print(shownName());
    if (losses.isEmpty() || m_editor.isInPlace() || m_invocation.isSet(rewrite()))
        return true;
    fail(QStringLiteral("nothing was written; use %1 to write the document with these losses").arg(rewrite().typed()));
    return false;
}

/// The document in another form than that of its file.
QByteArray EditedFile::bytesFor(Form form, const QString &name) const
{
    Document document(tuner(), form);
    document.tuner.SetValidate(!hasProblem(tuner()) && tuner().HasData());
    QByteArray bytes = document.toBytes(form, name);
    textsOf(document.lossesIn(bytes, form), inexactly()).print(name);
    return bytes;
}

ExitStatus EditedFile::showDifferences() const
{
    BufferedOutput output;
    findDifferences(original().tuner, tuner(), [&](const Difference &difference) {
        output.write(Printable::onOneLine(difference.text()).toUtf8() + '\n');
    });
    output.flush();
    return ExitStatus::Ok;
}

Form EditedFile::formFor(const FileName &target) const
{
    const Form own = m_editor.document().form;
    if (target.isEmpty() || target.isStandardStream())
        return own;
    return Forms::bySuffix(QString::fromLatin1(target.bytes())).value_or(own);
}
