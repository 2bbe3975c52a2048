// SPDX-License-Identifier: MIT
// Replies as a person at a terminal is shown them.
#pragma once

#include <cjson/cJSON.h>

#include <string>

namespace agent {

// The item over several lines. Nothing in it can steer the terminal: what cannot be seen as it
// stands is written as JSON's escapes, and the colours are the only other escapes. What is very
// long is cut, and the text says so.
std::string text_for_terminal(const cJSON *item, bool coloured);

// The name and what it says on one line.
std::string event_for_terminal(const std::string &name, const cJSON *data, bool coloured);

} // namespace agent
