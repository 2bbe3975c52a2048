// SPDX-License-Identifier: MIT
// Words from the descriptions of the commands, for generating requests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

struct CommandWords {
    std::string name;
    std::vector<std::string> keys;  // of the request, including those of its elements
    std::vector<std::string> texts; // in the example and the replies
    std::string request;            // the objects of the example, as JSON
    std::string reply;
};

// Sorted by name.
const std::vector<CommandWords> &commands();

// Null when there is no such command.
const CommandWords *find_command(std::string_view name);

} // namespace fuzz
