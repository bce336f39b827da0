// SPDX-License-Identifier: MIT
#include "CountingHeap.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <malloc.h>

// The names of the C library's own definitions besides their public ones.
extern "C" void *__libc_malloc(std::size_t size); // NOLINT
extern "C" void *__libc_calloc(std::size_t number, std::size_t size); // NOLINT
extern "C" void *__libc_realloc(void *memory, std::size_t size); // NOLINT
extern "C" void *__libc_memalign(std::size_t alignment, std::size_t size); // NOLINT
extern "C" void __libc_free(void *memory); // NOLINT

namespace {

// The requested size is stored at the very end of a block, so that beginning and alignment of blocks are as usual.
constexpr std::size_t note = sizeof(std::size_t);

// Initialized as constants: the loader allocates before anything else is initialized.
bool isCounting = false;
Bench::CountingHeap::Counts counts;

char *noteOf(void *memory)
{
    return static_cast<char *>(memory) + malloc_usable_size(memory) - note;
}

std::size_t sizeOf(void *memory)
{
    std::size_t size = 0;
    std::memcpy(&size, noteOf(memory), note);
    return size;
}

void *noted(void *memory, std::size_t size)
{
    if (memory)
        std::memcpy(noteOf(memory), &size, note);
    return memory;
}

void *taken(void *memory, std::size_t size)
{
    if (memory && isCounting) {
        ++counts.allocations;
        ++counts.blocks;
        counts.bytes += size;
        counts.peak = std::max(counts.peak, counts.bytes);
    }
    return noted(memory, size);
}

} // namespace

namespace Bench::CountingHeap {

bool isThere()
{
    return true;
}

void start()
{
    counts = {};
    isCounting = true;
}

Counts stop()
{
    isCounting = false;
    return counts;
}

} // namespace Bench::CountingHeap

#define TAKES_THE_PLACE extern "C" __attribute__((visibility("default")))

TAKES_THE_PLACE void *malloc(std::size_t size)
{
    return taken(__libc_malloc(size + note), size);
}

TAKES_THE_PLACE void *calloc(std::size_t number, std::size_t size)
{
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(number, size, &bytes)) {
        errno = ENOMEM;
        return nullptr;
    }
    return taken(__libc_calloc(1, bytes + note), bytes);
}

TAKES_THE_PLACE void free(void *memory)
{
    if (memory && isCounting) {
        --counts.blocks;
        counts.bytes -= sizeOf(memory);
    }
    __libc_free(memory);
}

TAKES_THE_PLACE void *realloc(void *memory, std::size_t size)
{
    if (!memory)
        return malloc(size);
    if (size == 0) {
        free(memory); // as the C library's does
        return nullptr;
    }
    const std::size_t before = isCounting ? sizeOf(memory) : 0;
    void *const resized = __libc_realloc(memory, size + note);
    if (!resized)
        return nullptr;
    if (isCounting) {
        --counts.blocks; // which taken() counts again
        counts.bytes -= before;
    }
    return taken(resized, size);
}

TAKES_THE_PLACE void *memalign(std::size_t alignment, std::size_t size)
{
    return taken(__libc_memalign(alignment, size + note), size);
}

TAKES_THE_PLACE void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

TAKES_THE_PLACE int posix_memalign(void **memory, std::size_t alignment, std::size_t size)
{
    void *const got = memalign(alignment, size);
    if (!got)
        return ENOMEM;
    *memory = got;
    return 0;
}
