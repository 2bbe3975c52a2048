// SPDX-License-Identifier: MIT
// References every device function, so that one missing from this library is reported by name when
// the library is linked, not when it is called.
#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

extern const void *const simulated_gateway_every_function[];

#define FUNCTION_ADDRESS(result, name, parameters, arguments) reinterpret_cast<const void *>(name),
__attribute__((used))
const void *const simulated_gateway_every_function[] = {DEVICE_FUNCTIONS(FUNCTION_ADDRESS)};
#undef FUNCTION_ADDRESS

int32_t device_access_version()
{
    return DEVICE_ACCESS_VERSION;
}
