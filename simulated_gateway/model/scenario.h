// SPDX-License-Identifier: MIT
// Scenarios: homes to start from, built in or in the user's files.
#pragma once

#include "model/model.h"

#include <string>
#include <vector>

namespace simulated_gateway {

constexpr char kDefaultScenario[] = "three_storey_house";

// The name of a scenario; for a file, the file name without ".json".
std::string scenario_name(const std::string &name_or_file);

// Whether it is a file rather than a built-in scenario.
bool is_scenario_file(const std::string &name_or_file);

// The names of the built-in scenarios.
std::vector<std::string> built_in_scenarios();

// Loads and checks a scenario. Throws an Error.
Home load_scenario(const std::string &name_or_file);
// Does so in advance: load_scenario() then only copies it.
void prepare_scenario(const std::string &name_or_file);

} // namespace simulated_gateway
