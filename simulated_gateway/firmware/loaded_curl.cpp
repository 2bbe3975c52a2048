// SPDX-License-Identifier: MIT
#include "firmware/curl.h"

#include "io/text.h"

#include <dlfcn.h>
#include <filesystem>

namespace simulated_gateway {
namespace {

constexpr char kModule[] = "libsimulated_gateway_curl.so";

// In the folder of this library, wherever a host has found that.
std::string module_path()
{
    Dl_info own = {};
    dladdr(kModule, &own);
    return std::filesystem::path(own.dli_fname).replace_filename(kModule);
}

const Curl &load()
{
    void *module = dlopen(module_path().c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto functions = module != nullptr ? reinterpret_cast<decltype(&simulated_gateway_curl)>(
                                                   dlsym(module, "simulated_gateway_curl"))
                                             : nullptr;
    if (functions == nullptr) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the text is per thread
        throw Error(std::string("transfers are not possible: ") + dlerror());
    }
    return *functions();
}

} // namespace

// A later call tries again if loading has failed.
const Curl &curl()
{
    static const Curl &functions = load();
    return functions;
}

} // namespace simulated_gateway
