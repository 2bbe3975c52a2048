// SPDX-License-Identifier: MIT
#include "firmware/machine.h"

#include "io/files.h"
#include "io/text.h"
#include "simulated_gateway/simulated_gateway.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace simulated_gateway {
namespace {

constexpr char kReboot[] = "sync;reboot"; // the command that the plug-in uses
constexpr char kRealReboot[] = "not flashed: the reboot would restart this machine; link "
                               "the gateway to the host, load it by LD_PRELOAD, or export a "
                               "system() from the host";

using System = int (*)(const char *);

// The function that the gateway's own system() overrides.
System system_behind()
{
    return reinterpret_cast<System>(dlsym(RTLD_NEXT, "system"));
}

} // namespace

bool reboot_would_be_real()
{
    const auto called = reinterpret_cast<System>(dlsym(RTLD_DEFAULT, "system"));
    return called == nullptr || called == system_behind();
}

void refuse_real_reboot()
{
    if (reboot_would_be_real()) {
        write_all(STDERR_FILENO, std::string("simulated gateway: ") + kRealReboot + "\n");
        throw Error(kRealReboot);
    }
}

} // namespace simulated_gateway

// Overrides the C library's function in a host that is linked with the gateway: a command to
// restart the router restarts the model. Any other command is passed on to the C library.
extern "C" __attribute__((visibility("default"))) int system(const char *command)
{
    using namespace simulated_gateway;
    if (command != nullptr && std::strcmp(command, kReboot) == 0) {
        write_all(STDERR_FILENO, "simulated gateway: restarts the model instead of this machine\n");
        simulated_gateway_power_cycle();
        return 0;
    }
    const System behind = system_behind();
    return behind != nullptr ? behind(command) : -1;
}
