// SPDX-License-Identifier: MIT
// hgagent policy test: what the gate would say, without a service.
#pragma once

#include "service/common/request.h"

#include <string>
#include <vector>

namespace agent::service {

struct PolicyQuestion {
    std::string file;
    std::vector<std::string> principals; // or "owner"
    std::string request;                 // as a rule writes it: "report:topology"
};

// Who a client with these principals would be: a user that this system knows has its groups as
// well.
Identity identity_of(const std::vector<std::string> &principals);

// Prints the answer. Result: the exit status.
int test_policy(const PolicyQuestion &question);

} // namespace agent::service
