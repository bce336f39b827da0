// SPDX-License-Identifier: MIT
#include "CodeFolder.h"

// Qt knows the folder of the program alone, and only when there is an application.
std::string codeFolder()
{
    return {};
}
