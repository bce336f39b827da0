// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stdexcept>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <jobxml/TunerProperties.h>

#include "documents/Input.h"
#include "documents/Validate.h"

/// The forms of a document in a file.
enum class Form {
    Xml,
    Tagged,
    Compressed,
    Snapshot,
    Json,
};

/// A file contains JSON, which is not a document.
class InvalidContent : public std::runtime_error
{
public:
    /// The problems are those of the file, which is shown under that name.
    InvalidContent(const QString &fileName, Findings problems);

    const QString &fileName() const { return m_fileName; }
    const Findings &problems() const { return m_problems; }

private:
    QString m_fileName;
    Findings m_problems;
};

namespace Forms {

/// "xml, tagged, compressed, snapshot or json", for messages.
QString names();

/// Their names on the command line.
QStringList list();

/// ".xml, .tpb, .tpz, .tps or .json", for messages.
QString suffixes();

/// The suffix of a form: ".xml".
QString suffixOf(Form form);

std::optional<Form> named(const QString &name);

/// The form of the suffix of a file name: .xml, .tpb, .tpz, .tps or .json.
std::optional<Form> bySuffix(const FileName &fileName);

/// Determines the form of a file: XML, JSON and the binary forms by their first bytes, a snapshot, which has no mark,
/// by its name. If the first bytes are inconclusive, the name decides for all forms, so that the reader can report the
/// error. Throws FileFailure if the name does not help either.
Form recognize(Input &input);

/// Throws FileFailure if the file holds a compressed record that declares more than `times` its own size. The check
/// expands nothing, so a small file cannot make the program use memory and time for a large one.
void checkExpansion(Input &input, int times);

/// How many times its own size a compressed record declares, rounded up; 0 for other forms.
int expansionOf(const QByteArray &bytes);

/// Reads the document once, without validating, and calls `visitor` with everything that a validating reader or a
/// writer would refuse; without a visitor, nothing of that is looked for. The document must not validate. Tagged and
/// compressed documents are read in the same way.
///
/// Throws FileFailure if the file does not contain a document in this form, and InvalidContent for JSON that is not a
/// document, with at most that many problems listed; the document is unchanged then.
void load(JobXml::TunerProperties &document, Input &input, Form form, const JobXml::ProblemVisitor &visitor = {},
          int maxProblems = Findings::usualMost);

/// Reads the document from bytes that compose() has returned. Returns false if that fails.
bool readBack(JobXml::TunerProperties &document, QByteArray bytes, Form form);

/// Returns the document in this form. Throws FileFailure, with `fileName` as the name of the output, if the form cannot
/// hold it; exceptions of the document propagate.
QByteArray compose(JobXml::TunerProperties &document, Form form, const QString &fileName);

} // namespace Forms
