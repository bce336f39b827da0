// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace REPORTGENERATOR {

/// Sets the owner, the group, the extended attributes (an access control list is one) and the mode of a new file to
/// those of the old one, both passed as descriptors. The new file must belong to the caller and be open to nobody else.
///
/// Attributes that the caller may not set are omitted, if this grants nobody but the caller an access that the old file
/// did not grant. Otherwise returns the reason why the new file must not replace the old one; else a null string.
QString keepAttributes(int old, int fresh);

} // namespace REPORTGENERATOR
