// The part of the test's device library that knows every function: each fails, unless another file
// of the library defines it.
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
