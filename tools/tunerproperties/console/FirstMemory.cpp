// SPDX-License-Identifier: MIT
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>

#include "console/Console.h"

namespace {

/// Libraries allocate before main(), and some end the process by a signal if they cannot. So whether there is memory
/// for them is found out before, by a function that the loader calls before it initializes any library.
void requireFirstMemory(int /*argc*/, char ** /*argv*/, char ** /*environment*/)
{
    constexpr std::size_t size = std::size_t(FIRST_MEBIBYTES) << 20;
    void *const memory = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory != MAP_FAILED) {
        munmap(memory, size);
        return;
    }
    Console::printOutOfMemory();
    _exit(int(ExitStatus::FileFailure));
}

using Initializer = void (*)(int, char **, char **);
[[gnu::section(".preinit_array"), gnu::used]] const Initializer initializer = requireFirstMemory;

} // namespace
