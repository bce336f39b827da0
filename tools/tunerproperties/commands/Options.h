// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <tunerdocuments/Lint.h>

#include "batch/Batch.h"
#include "commands/Command.h"
#include "files/DocumentFile.h"

/// Options that several commands have. An option of a single command is defined in the file of that command.
namespace Options {

const Option &help();
const Option &version();
const Option &from();
const Option &to();
const Option &jobs();
const Option &quiet();
const Option &json();
const Option &specialFiles();
const Option &maxProblems();
const Option &maxExpansion();
const Option &disable();
const Option &error();

/// The values of --max-expansion and of the option that has the form of the input. Throws WrongUsage.
TunerDocuments::LoadOptions loading(const Invocation &invocation, const Option &formOption = from());

/// The values of --disable and --error. Throws WrongUsage for unknown rules.
TunerDocuments::LintOptions linting(const Invocation &invocation);

/// A note for a document that cannot be read without --max-expansion; null for others. `fileName` is the shown name.
QString expansionNote(const QByteArray &bytes, const QString &fileName);

/// The value of --from or --to, if the option is set.
std::optional<TunerDocuments::Form> form(const Invocation &invocation, const Option &option);

/// The kinds of files to accept among `count` files.
FileKinds fileKinds(const Invocation &invocation, int count);

/// The values of --jobs, --quiet, --json and --max-problems; without --jobs, the number of processors. Throws
/// WrongUsage, also if both --quiet and --json are set.
BatchSettings batch(const Invocation &invocation);

/// Throws WrongUsage if standard input is named more than once.
void checkStandardInput(const QVector<FileName> &inputs);

/// The value of --max-problems, or the default. Throws WrongUsage.
int problemCount(const Invocation &invocation);

constexpr int usualProblemCount = TunerDocuments::LoadOptions::UsualProblems;

} // namespace Options
