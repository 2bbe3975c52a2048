/* A device library in C that supports nothing: what a function of c_host.c does not replace. */
#include "smart_router_service/device_access.h"

#include "device_functions.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

#define NOT_SUPPORTED(result, name, parameters, arguments)                                         \
    __attribute__((weak)) result name parameters                                                   \
    {                                                                                              \
        return -1;                                                                                 \
    }

DEVICE_FUNCTIONS(NOT_SUPPORTED)
