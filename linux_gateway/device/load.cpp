// SPDX-License-Identifier: MIT
// Opens the gateway when the library is loaded: the first call may come much later, and the rules
// have to be in force before. Not part of programs that test the library's parts.
#include "core/device_call.h"

namespace linux_gateway {

__attribute__((constructor)) static void open_at_load()
{
    open_gateway();
}

__attribute__((destructor)) static void close_at_exit()
{
    close_gateway();
}

} // namespace linux_gateway

// For agents that end without destructors while threads are running, as hgagent does.
extern "C" __attribute__((visibility("default"))) void device_library_close();
void device_library_close()
{
    linux_gateway::close_gateway();
}
