// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace REPORTGENERATOR {

/// Gives a new file the owner, the group, the extended attributes (an access control list is one) and the mode of the
/// old one, both given by their descriptors. The new file must belong to the caller and be open to nobody else.
///
/// What the caller may not set is left out, as far as nobody but the caller gets an access that the old file did not
/// give them. Otherwise returns the reason why the new file must not take the place of the old one; else a null string.
QString keepAttributes(int old, int fresh);

} // namespace REPORTGENERATOR
