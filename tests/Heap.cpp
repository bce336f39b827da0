// SPDX-License-Identifier: MIT
#include "Heap.h"

#include <cerrno>
#include <cstdlib>

#ifdef HEAP_OF_A_SANITIZER
// As in <sanitizer/allocator_interface.h>, which GCC does not provide.
extern "C" {
std::size_t __sanitizer_get_allocated_size(const volatile void *memory); // NOLINT
int __sanitizer_install_malloc_and_free_hooks(void (*onAllocation)(const volatile void *, std::size_t), // NOLINT
                                              void (*onFree)(const volatile void *));
}
#else
#include <malloc.h>
#endif

namespace {

Heap::Watcher *watcher = nullptr; // a constant at the start: the loader allocates before anything is initialized

} // namespace

void Heap::watch(Watcher *theWatcher)
{
    watcher = theWatcher;
}

#ifdef HEAP_OF_A_SANITIZER
namespace {

void onAllocation(const volatile void *, std::size_t size)
{
    if (watcher)
        watcher->bytesAllocated(size);
}

void onFree(const volatile void *memory)
{
    if (watcher && memory)
        watcher->bytesFreed(__sanitizer_get_allocated_size(memory));
}

[[maybe_unused]] const int installed = __sanitizer_install_malloc_and_free_hooks(onAllocation, onFree);

} // namespace
#else
namespace {

bool mayAllocate(std::size_t size)
{
    if (!watcher || watcher->mayAllocate(size))
        return true;
    errno = ENOMEM;
    return false;
}

void *allocated(void *memory)
{
    if (watcher && memory) {
        watcher->allocated();
        watcher->bytesAllocated(malloc_usable_size(memory));
    }
    return memory;
}

} // namespace

// The names of the C library's own definitions besides their public ones.
extern "C" void *__libc_malloc(std::size_t size); // NOLINT
extern "C" void *__libc_calloc(std::size_t number, std::size_t size); // NOLINT
extern "C" void *__libc_realloc(void *memory, std::size_t size); // NOLINT
extern "C" void *__libc_memalign(std::size_t alignment, std::size_t size); // NOLINT
extern "C" void __libc_free(void *memory); // NOLINT

#define TAKES_THE_PLACE extern "C" __attribute__((visibility("default")))

TAKES_THE_PLACE void *malloc(std::size_t size)
{
    return mayAllocate(size) ? allocated(__libc_malloc(size)) : nullptr;
}

TAKES_THE_PLACE void *calloc(std::size_t number, std::size_t size)
{
    return mayAllocate(number * size) ? allocated(__libc_calloc(number, size)) : nullptr;
}

TAKES_THE_PLACE void free(void *memory)
{
    if (watcher && memory) {
        watcher->freed();
        watcher->bytesFreed(malloc_usable_size(memory));
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
    if (!mayAllocate(size))
        return nullptr;
    const std::size_t before = malloc_usable_size(memory);
    void *const resized = __libc_realloc(memory, size);
    if (watcher && resized) {
        watcher->bytesAllocated(malloc_usable_size(resized));
        watcher->bytesFreed(before);
    }
    return resized;
}

TAKES_THE_PLACE void *memalign(std::size_t alignment, std::size_t size)
{
    return mayAllocate(size) ? allocated(__libc_memalign(alignment, size)) : nullptr;
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
#endif
