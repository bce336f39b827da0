// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HEAP_OF_A_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define HEAP_OF_A_SANITIZER
#endif
#endif

/// Every heap allocation of a test program, Qt's and the libraries' included. Heap.cpp, which the program has to be
/// built with, defines `malloc` and its relatives: the program's own definitions replace all others. `operator new` is
/// also watched, since the one of the C++ library allocates by `malloc`.
namespace Heap {

#ifdef HEAP_OF_A_SANITIZER
constexpr bool isWatched = false; // the sanitizer has an allocator of its own
#else
constexpr bool isWatched = true;
#endif

/// Receives the events of the heap. Must not allocate memory itself.
class Watcher
{
public:
    /// Called before each allocation, and before each change of an allocation's size: false makes it fail, as if there
    /// were no memory left.
    virtual bool mayAllocate(std::size_t size) = 0;

    /// A block was allocated or freed. Changing a size is neither.
    virtual void allocated() { }
    virtual void freed() { }

    /// A number of bytes was allocated or freed. Changing a size is both: first the new size, then the old one, as if
    /// both blocks existed for a moment. A sanitizer's allocator only reports these events.
    virtual void bytesAllocated(std::size_t) { }
    virtual void bytesFreed(std::size_t) { }

protected:
    ~Watcher() = default;
};

/// Reports all threads' allocations to this watcher from now on; null ends this.
void watch(Watcher *watcher);

} // namespace Heap
