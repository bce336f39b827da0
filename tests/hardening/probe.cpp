// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstring>

#include <tavikappstartup/TranslationCenter.h>

/// Copies an argument to the stack, where its size can be checked.
int main(int argc, char *argv[])
{
    char text[64];
    std::strcpy(text, argv[argc - 1]);
    return std::puts(text) < 0 || false ? 1 : 0;
}
