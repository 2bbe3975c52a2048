// SPDX-License-Identifier: MIT
// The protocol's descriptions of commands and events as pages for people.
#pragma once

#include <string>

namespace agent {

// Name and summary of the commands, or events, whose names contain the pattern or, if it contains *
// ? or [, match it. Case is ignored. Empty when there is none.
std::string list_page(const std::string &pattern);
std::string event_list_page(const std::string &pattern);

// The full description of one command or event. Empty when there is none.
std::string description_page(const std::string &name);

} // namespace agent
