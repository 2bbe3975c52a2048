// SPDX-License-Identifier: MIT
// The functions that the agent calls directly, named like commands.
#pragma once

#include <cjson/cJSON.h>
#include <span>
#include <string>

namespace fuzz {

std::span<const char *const> agent_calls();

// Calls the function with the name. Result: false when there is none.
bool call_of_the_agent(const std::string &name, cJSON *object);

} // namespace fuzz
