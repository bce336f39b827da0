// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <tunerdocuments/Finding.h>

#include "commands/Command.h"
#include "files/DocumentFile.h"

/// A document file that a command changes and writes in its own form.
class ChangedFile
{
public:
    /// --no-validate
    static const Option &noValidate();

    /// Loads the file. Throws FileFailure.
    ChangedFile(const FileName &name, const Invocation &invocation);

    QString shownName() const { return m_file.input.shownName(); }
    const JobXml::TunerProperties &tuner() const { return m_file.document.tuner; }

    /// Prints what write() would lose: content of an XML file that its document does not have. Returns whether there is
    /// any. Never with --no-validate.
    bool reportLostContent(const JobXml::TunerProperties &changed, const FileName &target = {}) const;

    /// Prints the problems of the changed document that this one does not have, other than texts that XML cannot carry.
    /// Returns whether there are any. Never with --no-validate.
    bool reportNewProblems(const JobXml::TunerProperties &changed) const;

    /// Writes the changed document, in the form of this one, to this file, or to `target` if it is not empty, in the
    /// form of its name. Writes nothing if the file has this document already. Prints what the form cannot store
    /// exactly. Throws FileFailure, and the exceptions of the writers.
    void write(const JobXml::TunerProperties &changed, const FileName &target = {});

private:
    /// False if the file itself has the bytes to be written.
    bool isWritten(const JobXml::TunerProperties &changed, TunerDocuments::Form form) const;
    TunerDocuments::Form formFor(const FileName &target) const;
    QByteArray bytesOf(const JobXml::TunerProperties &changed, TunerDocuments::Form form, const QString &name);

    bool m_mayHaveProblems;
    QStringList m_lost; ///< the first ones
    qint64 m_lostCount = 0;
    TunerDocuments::KeptItems m_keptItems;
    DocumentFile m_file;
};
