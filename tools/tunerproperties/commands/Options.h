// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "batch/Batch.h"
#include "commands/Command.h"
#include "documents/Document.h"

/// Options that several commands have. One that only one command has stands in the file of that command.
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

/// What --from and --max-expansion say. Throws WrongUsage.
Reading reading(const Invocation &invocation);

/// What --from or --to says, if anything.
std::optional<Form> form(const Invocation &invocation, const Option &option);

/// Which kinds of files to read or write among so many.
FileKinds fileKinds(const Invocation &invocation, int count);

/// What --jobs, --quiet, --json and --max-problems say; without --jobs, as many as there are processors. Throws
/// WrongUsage, also if both --quiet and --json are set.
BatchSettings batch(const Invocation &invocation);

/// Throws WrongUsage if standard input is named more than once.
void checkStandardInput(const QVector<FileName> &inputs);

/// How many problems of a file to list: what --max-problems says, or 100. Throws WrongUsage.
int problemCount(const Invocation &invocation);

constexpr int usualProblemCount = 100;

} // namespace Options
