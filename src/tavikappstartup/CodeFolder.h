// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// The folder of the file that contains this code, with links resolved: of the shared library, or of the program or
/// plug-in that is linked with the static one. Empty if it cannot be found. As bytes: most programs that load this
/// library never need a translation, and Qt takes long to decode its first file name.
std::string codeFolder();
