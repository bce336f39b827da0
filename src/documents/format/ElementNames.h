// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>

namespace TunerDocuments {

/// Which elements of an XML document have text as their content, and which have other elements. Names are without
/// prefixes, and no name is of both kinds.
namespace ElementNames {

/// Whether an element of the name may hold the value of a member: blanks in it are part of the value.
bool isValue(QLatin1String name);

/// Whether an element of the name may hold an object, in which blanks mean nothing.
bool isObject(QLatin1String name);

} // namespace ElementNames

} // namespace TunerDocuments
