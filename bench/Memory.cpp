// SPDX-License-Identifier: MIT
#include "Memory.h"

#include <cstdio>
#include <stdexcept>

#include "CountingHeap.h"

void Bench::countMemory(const std::vector<Operation> &operations, const Sample &sample)
{
    if (!CountingHeap::isThere())
        throw std::runtime_error("this program does not count; tunerproperties_bench_memory does");
    for (const Operation &operation : operations) {
        if (!operation.keep)
            continue;
        operation.keep(sample); // once before, so that one-time allocations are not counted
        CountingHeap::start();
        std::shared_ptr<void> kept = operation.keep(sample);
        const CountingHeap::Counts counts = CountingHeap::stop();
        std::printf("{\"name\": \"%s/%s/%d\", \"bytes\": %zu, \"blocks\": %zu, \"peak\": %zu, \"allocations\": %zu, "
                    "\"document\": %d}\n",
                    operation.name.c_str(), nameOf(sample.shape), sample.nodes, counts.bytes, counts.blocks,
                    counts.peak, counts.allocations, sample.xml.size());
    }
}
