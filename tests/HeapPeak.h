// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "Heap.h"

/// The peak of the heap use during the lifetime of this object, beyond the use before. Only one may exist at a time.
class HeapPeak final : Heap::Watcher
{
public:
    /// The limit for reading damaged data, whatever lengths they declare.
    static constexpr long long bound(long long inputBytes) { return (64LL << 20) + 200 * inputBytes; }

    HeapPeak() { Heap::watch(this); }
    HeapPeak(const HeapPeak &) = delete;
    HeapPeak &operator=(const HeapPeak &) = delete;
    ~HeapPeak() { Heap::watch(nullptr); }

    long long bytes() const { return m_most.load(std::memory_order_relaxed); }

    /// The present use beyond that; negative if more was freed.
    long long inUse() const { return m_inUse.load(std::memory_order_relaxed); }

private:
    bool mayAllocate(std::size_t) override { return true; }

    void bytesAllocated(std::size_t size) override
    {
        const auto more = static_cast<long long>(size);
        const long long now = m_inUse.fetch_add(more, std::memory_order_relaxed) + more;
        long long most = m_most.load(std::memory_order_relaxed);
        while (now > most && !m_most.compare_exchange_weak(most, now, std::memory_order_relaxed)) { }
    }

    void bytesFreed(std::size_t size) override
    {
        m_inUse.fetch_sub(static_cast<long long>(size), std::memory_order_relaxed);
    }

    std::atomic<long long> m_inUse{0};
    std::atomic<long long> m_most{0};
};
