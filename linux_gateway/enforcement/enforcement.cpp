// SPDX-License-Identifier: MIT
#include "enforcement/enforcement.h"

namespace linux_gateway {

std::string Enforcement::apply(const Rules &rules)
{
    if (!rules.blocked.empty() || !rules.limits.empty() || !rules.periods.empty()) {
        return "this build cannot block or limit hosts";
    }
    rules_ = rules;
    return "";
}

void Enforcement::stop() {}

} // namespace linux_gateway
