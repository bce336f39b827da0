// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tunerdocuments/Editor.h>

#include "commands/Command.h"
#include "commands/Options.h"
#include "files/DocumentFile.h"

/// A document file that a command changes: in place if its form is XML or JSON. Everything that such commands have in
/// common: what they report before they write, and what they refuse to write.
class EditedFile
{
public:
    /// \name Options
    /// A command has those that apply to it.
    /// @{
    static const Option &noValidate();
    static const Option &dryRun();
    static const Option &rewrite();
    /// @}

    /// Loads the file. The document is written to it, or to `target` if that is not empty. The option has the form of
    /// the file. Throws FileFailure, also if the file could not be replaced.
    EditedFile(const FileName &name, const Invocation &invocation, const FileName &target = {},
               const Option &formOption = Options::from());

    QString shownName() const { return m_input.shownName(); }
    TunerDocuments::Editor &editor() { return m_editor; }
    const JobXml::TunerProperties &tuner() const { return m_editor.document().tuner; }

    const QByteArray &bytes() const { return m_bytes; } ///< of the file, as it was read

    /// Whether the document is written in the form that it has.
    bool keepsItsForm() const;

    /// Prints an error that begins with the name of the file.
    ExitStatus fail(const QString &why) const;

    /// Writes the document, to a target in the form of its name. Prints what the form cannot store exactly. Writes
    /// nothing to its own file if nothing has changed.
    ///
    /// Refuses new problems unless --no-validate is set, and losses by rewriting and documents that cannot be edited in
    /// place unless --rewrite is set; with --dry-run, the differences are printed instead. Throws FileFailure, and the
    /// exceptions of the writers.
    ExitStatus finish();

    /// The same without looking for problems.
    ExitStatus finishUnchecked();

private:
    bool hasNewProblems() const;
    bool mayBeWritten() const;
    QByteArray bytesFor(TunerDocuments::Form form, const QString &name) const;
    ExitStatus showDifferences() const;
    TunerDocuments::Form formToWrite() const;
    ExitStatus write();

    const Invocation &m_invocation;
    const FileName m_target;
    Input m_input;
    QByteArray m_bytes;
    TunerDocuments::Editor m_editor;
};
