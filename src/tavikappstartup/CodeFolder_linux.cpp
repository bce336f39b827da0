// SPDX-License-Identifier: MIT
#include "CodeFolder.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <dlfcn.h>
#include <link.h>

namespace {

/// The program has no name here, and dladdr() would return the name with which it was started, which need not be a
/// path.
const char *fileOf(const link_map &loaded)
{
    return *loaded.l_name ? loaded.l_name : "/proc/self/exe";
}

} // namespace

// If /lib is a link to /usr/lib, the data folder is relative to the latter.
std::string codeFolder()
{
    static const char anchor = 0;
    Dl_info info = {};
    void *loaded = nullptr;
    if (dladdr1(&anchor, &info, &loaded, RTLD_DL_LINKMAP) == 0 || !loaded)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(fileOf(*static_cast<link_map *>(loaded)), nullptr),
                                                           &std::free);
    const std::string file = path ? path.get() : "";
    const std::size_t end = file.rfind('/');
    return file.substr(0, end == std::string::npos ? 0 : std::max(end, std::size_t(1)));
}
