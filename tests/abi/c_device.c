/* A device library in C that supports nothing: what a function of c_host.c does not replace. */
#include "smart_router_service/device_access.h"

#include "device_functions.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

#define NOT_SUPPORTED(result, name, parameters, arguments)                                         \
    __attribute__((weak)) result name parameters                                                   \
    {                                                                                              \
        NOT_SUPPORTED_##result;                                                                    \
    }
#define NOT_SUPPORTED_int32_t return -1
#define NOT_SUPPORTED_void

DEVICE_FUNCTIONS(NOT_SUPPORTED)
