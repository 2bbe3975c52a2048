/* SPDX-License-Identifier: MIT */
/*
 * The device functions that this library does not support: each returns -1 and writes nothing. They
 * are generated for all functions and weak, so the functions in the other files take their place.
 */
#include "smart_router_service/device_access.h"

#include "smart_router_service/device_functions.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

enum { kNotSupported = -1 };

#define WEAK_FUNCTION(result, name, parameters, arguments)                                         \
    __attribute__((weak)) result name parameters                                                   \
    {                                                                                              \
        WEAK_RESULT_##result;                                                                      \
    }
#define WEAK_RESULT_int32_t return kNotSupported
#define WEAK_RESULT_void

DEVICE_FUNCTIONS(WEAK_FUNCTION)

int32_t device_access_version(void)
{
    return DEVICE_ACCESS_VERSION;
}
