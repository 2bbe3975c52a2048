// What the agent calls by itself, by names as if they were commands.
#pragma once

#include <cjson/cJSON.h>
#include <span>
#include <string>

namespace fuzz {

std::span<const char *const> agent_calls();

// Calls the function of the name with the object. Result: false when there is none.
bool call_of_the_agent(const std::string &name, cJSON *object);

} // namespace fuzz
