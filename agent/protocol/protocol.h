// SPDX-License-Identifier: MIT
// The commands as protocol/ describes them, one description for each (protocol/command.schema.json
// says what is in it).
#pragma once

#include "protocol/description.h"

#include <chrono>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

// Of the commands and of the lines of serve. The first number changes when something that a client
// may rely on is no longer there, the second when something has been added.
constexpr char kProtocolVersion[] = "1.0";

// All descriptions, by the commands' names.
const std::vector<Description> &descriptions();

// Null when there is no such command.
const Description *find_description(std::string_view command);

// How long the command may take; of one that is not described, as long as most of them.
std::chrono::seconds seconds_of(std::string_view command);

// Whether the command may leave the router other than it was. Nobody knows of one that is not
// described.
bool may_change(std::string_view command);

// What happens by itself, by the events' names (protocol/event.schema.json).
const std::vector<Description> &events();

// Null when there is no such event.
const Description *find_event(std::string_view event);

// The names that look most like this one, the nearest first, at most three.
std::vector<std::string> nearest_commands(std::string_view name);

// "no command \"NAME\"; the nearest are …", for people.
std::string no_such_command(std::string_view name);

// The keys, in lower case, that some description marks as secret.
const std::set<std::string> &secret_keys();

} // namespace agent
