// SPDX-License-Identifier: MIT
// Replies as shown to a person at a terminal.
#pragma once

#include <cjson/cJSON.h>

#include <string>

namespace agent {

// The item on several lines. Nothing in it can control the terminal: invisible characters are
// written as JSON escapes, and the only terminal escapes are those for colours. Very long text is
// truncated, with a note that it was.
std::string text_for_terminal(const cJSON *item, bool coloured);

// The event's name and data on one line.
std::string event_for_terminal(const std::string &name, const cJSON *data, bool coloured);

} // namespace agent
