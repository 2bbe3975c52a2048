// SPDX-License-Identifier: MIT
// hgagent list and describe: the protocol, for people.
#pragma once

#include <string>

namespace agent {

// Prints the commands whose names match the pattern. Result: the exit status.
int run_list(const std::string &pattern);

// The same for events.
int run_list_of_events(const std::string &pattern);

// Prints the full description of one command or event. Result: the exit status.
int run_describe(const std::string &name);

} // namespace agent
