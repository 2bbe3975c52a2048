// SPDX-License-Identifier: MIT
// What the protocol says of commands and events, as pages for people.
#pragma once

#include <string>

namespace agent {

// Name and summary of the commands, or events, whose names contain the pattern or, where it has * ?
// or [, match it; upper or lower case is the same. Empty when there is none.
std::string list_page(const std::string &pattern);
std::string event_list_page(const std::string &pattern);

// Everything that is described of one command or event. Empty when there is none.
std::string description_page(const std::string &name);

} // namespace agent
