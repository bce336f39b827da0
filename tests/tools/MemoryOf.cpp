// SPDX-License-Identifier: MIT

// memory_of FILE PROGRAM [ARGUMENT...] runs the program, writes to the file how many KiB of it were resident at most,
// and ends with its status. The system counts the memory of the program that starts another one as that of the other
// one: this one has little, unlike a test program.

#include <cstdio>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int count, char *arguments[])
{
    constexpr int failure = 127;
    if (count < 3)
        return failure;
    const pid_t child = fork();
    if (child == 0) {
        execv(arguments[2], arguments + 2);
        _exit(failure);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) != child)
        return failure;
    std::FILE *const file = std::fopen(arguments[1], "w");
    if (!file || std::fprintf(file, "%ld\n", usage.ru_maxrss) < 0 || std::fclose(file) != 0)
        return failure;
    return WIFEXITED(status) ? WEXITSTATUS(status) : failure;
}
