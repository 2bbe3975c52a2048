// SPDX-License-Identifier: MIT
// For programs that link the module, such as tests.
#include "firmware/curl.h"

const simulated_gateway::Curl &simulated_gateway::curl()
{
    return *simulated_gateway_curl();
}
