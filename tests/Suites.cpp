// SPDX-License-Identifier: MIT
#include "Suites.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Entry
{
    std::string name;
    Suites::Run run;
};

std::vector<Entry> &entries()
{
    static std::vector<Entry> all;
    return all;
}

std::string nameOf(const char *source)
{
    const char *const slash = std::strrchr(source, '/');
    const std::string file = slash ? slash + 1 : source;
    return file.substr(0, file.rfind('.'));
}

void list(std::FILE *file)
{
    for (const Entry &entry : entries())
        std::fprintf(file, "%s\n", entry.name.c_str());
}

} // namespace

Suites::Suite::Suite(const char *source, Run run)
{
    const Entry entry{nameOf(source), run};
    const auto isBefore = [](const Entry &left, const Entry &right) { return left.name < right.name; };
    entries().insert(std::upper_bound(entries().begin(), entries().end(), entry, isBefore), entry);
}

int main(int argc, char **argv)
{
    const std::string name = argc > 1 ? argv[1] : "";
    if (name == "-suites") {
        list(stdout);
        return 0;
    }
    const auto found =
        std::find_if(entries().begin(), entries().end(), [&](const Entry &entry) { return entry.name == name; });
    if (found != entries().end()) {
        argv[1] = argv[0];
        return found->run(argc - 1, argv + 1);
    }
    if (name.empty())
        std::fprintf(stderr, "%s: no suite specified; usage: %s SUITE [ARGUMENT OF QT TEST...]\n", argv[0], argv[0]);
    else
        std::fprintf(stderr, "%s: unknown suite '%s'\n", argv[0], name.c_str());
    std::fprintf(stderr, "The suites are:\n");
    list(stderr);
    return 2;
}
