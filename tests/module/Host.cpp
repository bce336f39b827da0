// SPDX-License-Identifier: MIT

// A small host: loads the library given as its first argument and, with "unload", unloads it twice, or with "exit"
// simply ends with the library loaded.

#include <dlfcn.h>

#include <cstdio>
#include <cstring>

namespace {

void say(const char *text)
{
    std::printf("%s\n", text);
    std::fflush(stdout);
}

void *load(const char *path)
{
    say("loading");
    void *library = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
    say(library ? "loaded" : dlerror());
    return library;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    if (std::strcmp(argv[2], "exit") == 0) {
        if (!load(argv[1]))
            return 1;
        say("exiting");
        return 0;
    }
    for (int i = 0; i < 2; ++i) {
        void *library = load(argv[1]);
        if (!library)
            return 1;
        say("unloading");
        dlclose(library);
        say(dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) ? "still there" : "gone");
    }
    return 0;
}
