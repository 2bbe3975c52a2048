// SPDX-License-Identifier: MIT
// hgagent policy test: the gate's decision on a request, without a service.
#pragma once

#include "service/common/request.h"

#include <string>
#include <vector>

namespace agent::service {

struct PolicyQuestion {
    std::string file;
    std::vector<std::string> principals; // or "owner"
    std::string request;                 // in the notation of rules: "report:topology"
};

// The identity of a client with these principals: a user known to this system has its groups as
// well.
Identity identity_of(const std::vector<std::string> &principals);

// Prints the answer. Result: the exit status.
int test_policy(const PolicyQuestion &question);

} // namespace agent::service
