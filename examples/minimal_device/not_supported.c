/* SPDX-License-Identifier: MIT */
/*
 * Every device function, with the result for one that is not supported: -1, with nothing written.
 * device_functions.h lists all of them, so none is ever missing.
 *
 * The functions are weak: a function that another file of the library defines replaces the one
 * here, so a library can be written function by function.
 */
#include "smart_router_service/device_access.h"

#include "smart_router_service/device_functions.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

#define NOT_SUPPORTED(result, name, parameters, arguments)                                         \
    __attribute__((weak)) result name parameters                                                   \
    {                                                                                              \
        NOT_SUPPORTED_##result;                                                                    \
    }
#define NOT_SUPPORTED_int32_t return -1
#define NOT_SUPPORTED_void

DEVICE_FUNCTIONS(NOT_SUPPORTED)

/* The version of device_access.h that the library is built with: agents refuse one that is not
 * compatible. */
__attribute__((weak)) int32_t device_access_version(void)
{
    return DEVICE_ACCESS_VERSION;
}
