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
/// built with, defines `malloc` and its relatives: the program's own definitions take the place of all others.
/// `operator new` is watched as well, since the one of the C++ library allocates by `malloc`.
namespace Heap {

#ifdef HEAP_OF_A_SANITIZER
constexpr bool isWatched = false; // it brings an allocator of its own
#else
constexpr bool isWatched = true;
#endif

/// Sees what happens on the heap. Must not allocate while it does.
class Watcher
{
public:
    /// Asked before each allocation, and before each change of an allocation's size: false makes it fail, as it would
    /// if there was no memory left.
    virtual bool mayAllocate(std::size_t size) = 0;

    /// A block has come into being, or has gone. Changing a size is neither.
    virtual void allocated() { }
    virtual void freed() { }

    /// So many bytes have been taken, or given back. Changing a size is both: the block as it is now, then as it was,
    /// as if they stood side by side for a moment. A sanitizer's allocator tells this, and nothing else.
    virtual void taken(std::size_t) { }
    virtual void given(std::size_t) { }

protected:
    ~Watcher() = default;
};

/// From now on tells this watcher of all threads' allocations; null ends it.
void watch(Watcher *watcher);

} // namespace Heap
