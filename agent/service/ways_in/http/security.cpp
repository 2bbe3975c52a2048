// SPDX-License-Identifier: MIT
#include "service/ways_in/http/security.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

namespace agent::service {

namespace {

namespace fs = std::filesystem;

constexpr char kModule[] = "libagent_security.so";

// In the installed place, or in the directory lib next to the executable's.
fs::path module_path()
{
    std::error_code problem;
    const fs::path folder = fs::read_symlink("/proc/self/exe", problem).parent_path();
    const fs::path installed = (folder / HGAGENT_LIBRARIES / kModule).lexically_normal();
    return fs::exists(installed, problem) ? installed : folder.parent_path() / "lib" / kModule;
}

} // namespace

const Security &load_security()
{
    static const Security *loaded = nullptr;
    if (loaded == nullptr) {
        void *library = dlopen(module_path().c_str(), RTLD_NOW | RTLD_LOCAL);
        const auto get =
            library != nullptr
                ? reinterpret_cast<const Security *(*)()>(dlsym(library, "agent_security"))
                : nullptr;
        if (get == nullptr) {
            // NOLINTNEXTLINE(concurrency-mt-unsafe): the text is per thread
            throw std::runtime_error(std::string("cannot load TLS: ") + dlerror());
        }
        loaded = get();
    }
    return *loaded;
}

} // namespace agent::service
