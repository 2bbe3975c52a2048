// Scenarios: homes to start from, built in or in files of the user.
#pragma once

#include "model/model.h"

#include <string>

namespace simulated_gateway {

constexpr char kDefaultScenario[] = "three_storey_house";

// The name that a scenario goes by: of a file, its own name without ".json".
std::string scenario_name(const std::string &name_or_file);

// Loads and checks it. Throws an Error.
Home load_scenario(const std::string &name_or_file);

} // namespace simulated_gateway
