// SPDX-License-Identifier: MIT
#include "Instructions.h"

#include <stdexcept>
#include <thread>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

namespace Bench {
namespace {

void count(const Operation &operation, Sample &sample)
{
    const std::string name = operation.name + '/' + nameOf(sample.shape) + '/' + std::to_string(sample.nodes);
    const Run prepared = operation.prepare(sample);
    const auto prepare = [&] {
        if (prepared.before)
            prepared.before();
    };
    prepare();
    prepared.run();
    prepare();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    prepared.run();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

} // namespace

void countInstructions(const std::vector<Operation> &operations, Sample &sample)
{
    // Fixed at its default, so that a text that grows beyond it is moved by the system in every run. Otherwise the
    // warm run raises it, and whether a large text has to be copied depends on the block that follows it by chance.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    for (const Operation &operation : operations) {
        if (!operation.hasInstructions)
            continue;
        // In a process of its own, so that an operation finds the same heap whatever ran before it.
        const pid_t child = fork();
        if (child == 0) {
            count(operation, sample);
            _exit(0);
        }
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
            throw std::runtime_error(operation.name + " did not run to its end");
    }
}

} // namespace Bench
