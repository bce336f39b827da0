// SPDX-License-Identifier: MIT
#include "commands/EditedFile.h"

#include <algorithm>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Finding.h>

#include "console/BufferedOutput.h"
#include "files/Output.h"
#include "text/Printable.h"

using namespace TunerDocuments;
using namespace JobXml;

namespace {

/// Whether the document has a problem. Not texts that XML cannot carry: its writer reports these.
bool hasProblem(const TunerProperties &document)
{
    Findings findings(0);
    document.VisitProblems(findings.collector());
    return !findings.isEmpty();
}

/// The first losses, and the number of all.
void printLosses(const QVector<Loss> &losses, const QString &file, const QString &start)
{
    const int listed = std::min(int(losses.size()), Options::usualProblemCount);
    for (int i = 0; i < listed; ++i)
        Console::printError(file + QStringLiteral(": ") + start + losses.at(i).text());
    if (losses.size() > listed)
        Console::printError(file + QStringLiteral(": ") + countText(losses.size(), listed));
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

EditedFile::EditedFile(const FileName &name, const Invocation &invocation, const FileName &target,
                       const Option &formOption)
    : m_invocation(invocation), m_target(target),
      m_input(name, target.isEmpty() && !invocation.isSet(dryRun()) ? FileKinds::Replaceable : FileKinds::All),
      m_editor(loadDocumentWithBytes(m_input, Options::loading(invocation, formOption), m_bytes, formOption.typed()),
               m_bytes, m_input.shownName())
{
    if (invocation.isSet(rewrite()))
        m_editor.rewrite();
}

bool EditedFile::keepsItsForm() const
{
    return formToWrite() == m_editor.document().form;
}

ExitStatus EditedFile::fail(const QString &why) const
{
    Console::printError(shownName() + QStringLiteral(": ") + why);
    return ExitStatus::Problems;
}

ExitStatus EditedFile::finish()
{
    if (!m_invocation.isSet(noValidate()) && hasNewProblems())
        return ExitStatus::Problems;
    return finishUnchecked();
}

ExitStatus EditedFile::finishUnchecked()
{
    if (m_invocation.isSet(dryRun()))
        return showDifferences();
    const bool isStream = m_target.isEmpty() && m_input.name().isStandardStream();
    if (!m_editor.isChanged() && m_target.isEmpty() && !isStream)
        return ExitStatus::Ok;
    return write();
}

ExitStatus EditedFile::write()
{
    const Form form = formToWrite();
    const bool isSameForm = keepsItsForm();
    if (m_editor.isChanged() && isSameForm && !m_editor.reasonAgainst().isNull())
        return fail(QStringLiteral("cannot edit the document in place: %1; use %2 to write it anew")
                        .arg(m_editor.reasonAgainst(), rewrite().typed()));
    const QString name = m_target.isEmpty() ? shownName() : m_target.shown();
    const QByteArray bytes = !isSameForm ? bytesFor(form, name) : m_editor.isChanged() ? m_editor.toBytes() : m_bytes;
    if (m_editor.isChanged() && isSameForm && !mayBeWritten())
        return ExitStatus::Problems;
    if (m_target.isEmpty())
        Output::replace(m_input, bytes);
    else
        Output::writeWhole(m_target, bytes);
    const QString note = Options::expansionNote(bytes, name);
    if (!note.isNull())
        Console::printError(note);
    return ExitStatus::Ok;
}

bool EditedFile::hasNewProblems() const
{
    const Findings problems = m_editor.newProblems(Options::usualProblemCount);
    Console::printErrors(problems.lines(shownName()));
    return !problems.isEmpty();
}

/// Lists what would be lost. In place, that is only what the form cannot hold of the changes.
bool EditedFile::mayBeWritten() const
{
    const QVector<Loss> losses = m_editor.losses();
    printLosses(losses, shownName(), m_editor.isInPlace() ? inexactly() : QString());
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
    printLosses(document.lossesIn(bytes, form), name, inexactly());
    return bytes;
}

ExitStatus EditedFile::showDifferences() const
{
    BufferedOutput output;
    findDifferences(m_editor.original().tuner, tuner(), [&](const Difference &difference) {
        output.write(Printable::onOneLine(difference.text()).toUtf8() + '\n');
    });
    output.flush();
    return ExitStatus::Ok;
}

Form EditedFile::formToWrite() const
{
    const Form own = m_editor.document().form;
    if (m_target.isEmpty() || m_target.isStandardStream())
        return own;
    return Forms::bySuffix(QString::fromLatin1(m_target.bytes())).value_or(own);
}
