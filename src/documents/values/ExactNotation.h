// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// Whether what a document has for a value denotes exactly what the user has typed: "0.50" and "0.5" are the same
/// number, "1" and "true" the same boolean. Readers accept more: they read "abc" as 0, "maybe" as true, and digits that
/// a number cannot hold as the nearest one. Other kinds than numbers and booleans are read as they are written.
bool isExactNotation(JobXml::MemberKind kind, const QString &written, const QString &typed);

} // namespace TunerDocuments
