// What the protocol's descriptions say of the commands, for whoever makes up requests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

struct CommandWords {
    std::string name;
    std::vector<std::string> keys;  // of the request, also those of its elements
    std::vector<std::string> texts; // that an example or a reply holds
    std::string request;            // the example's objects, as JSON
    std::string reply;
};

// In the order of their names.
const std::vector<CommandWords> &commands();

// Null when there is no such command.
const CommandWords *find_command(std::string_view name);

} // namespace fuzz
