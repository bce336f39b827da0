// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "commands/Command.h"
#include "documents/Forms.h"

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

/// What --from or --to says, if anything.
std::optional<Form> form(const Invocation &invocation, const Option &option);

/// Which kinds of files to read or write among so many.
FileKinds fileKinds(const Invocation &invocation, int count);

/// How many files to work on at once: what --jobs says, or as many as there are processors. Throws WrongUsage.
int jobCount(const Invocation &invocation);

} // namespace Options
