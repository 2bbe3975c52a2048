// SPDX-License-Identifier: MIT
// Defines every function of a test's device library as weak and failing; another file of the
// library overrides those that it defines.
#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

template <class... Arguments> static void ignore(Arguments...) {}

#define FAILING(result, name, parameters, arguments)                                               \
    extern "C" __attribute__((weak)) result name parameters                                        \
    {                                                                                              \
        ignore arguments;                                                                          \
        return static_cast<result>(-1);                                                            \
    }
DEVICE_FUNCTIONS(FAILING)
